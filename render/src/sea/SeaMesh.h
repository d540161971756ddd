// The sea's surface as triangles: fine under the eye, coarse towards the horizon.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

class SeaGround;
class WaveField;

/// What the mesh is made for. Local places are metres east, north and up from the eye.
struct SeaMeshView {
    struct Plane {
        double east = 0.0, north = 0.0, up = 0.0, offset = 0.0;
    };

    double east = 0.0, north = 0.0;              ///< of the eye in the wave field
    double east_scale = 1.0, north_scale = 1.0;  ///< local metres for a metre of the field
    double east_radius = 6.378e6, north_radius = 6.336e6;  ///< of the earth's curve that way, metres
    double height = 0.0;                                   ///< of the eye above the mean level
    float rise = 1.0f;                                     ///< share of the waves' height that is drawn
    float reach_sideways = 0.0f, reach_upward = 0.0f;      ///< no water is further from its place at rest
    std::array<Plane, 4> sides;                            ///< of the view's pyramid, positive inside, local
};

/// A vertex as it is drawn.
struct SeaVertex {
    float east, north, up;             ///< local
    float rest_east, rest_north;       ///< its place at rest in the field, metres from the eye's place
    float crest;                       ///< height above the mean level
    float ground_column, ground_row;   ///< place on the ground's picture, 0..1 inside
};

/// A quadtree of patches of 8 by 8 cells round the eye. Every vertex lies on a fixed lattice of the field, whose finest
/// level are the samples of its small cascade, so that nothing swims when the eye moves; towards the end of a level's
/// range its vertices slide onto the next one's triangles, so that nothing cracks or pops.
class SeaMesh {
public:
    static constexpr int CELLS = 8;                               ///< of a patch along a side
    static constexpr int VERTICES = (CELLS + 1) * (CELLS + 1);    ///< of a patch
    static constexpr int TRIANGLES = CELLS * CELLS * 2;           ///< of a patch
    static constexpr int MAX_PATCHES = 1200;
    static constexpr int MAX_LEVEL = 20;

    /// How a patch is shaded. Near: within `getNearRange()`; shore: the ground is close under the water.
    enum Kind { NEAR, FAR, NEAR_SHORE, FAR_SHORE, NUM_KINDS };

    SeaMesh();

    /// Makes the mesh anew; `ground` may be null.
    void update(const SeaMeshView& view, const WaveField& field, const SeaGround* ground);

    /// Rows of patches from the south-west, VERTICES each. Room for MAX_PATCHES, of which the first are in use.
    const std::vector<SeaVertex>& getVertices() const { return m_vertices; }
    int getNumPatches() const { return m_num_patches; }
    /// Patches of that kind.
    const std::vector<int>& getPatches(Kind kind) const { return m_kinds[kind]; }
    /// Metres of the field from which on patches may be far ones.
    double getNearRange() const { return m_spacing * m_ranges[NEAR_LEVEL]; }

private:
    static constexpr int NEAR_LEVEL = 6;

    struct Patch {
        int level;
        std::int64_t column, row;  ///< of its south-west corner, cells of its level
        double east, north;        ///< of that corner, metres of the field from the eye
        double size;               ///< metres of the field
    };

    void select(const Patch& patch);
    bool isVisible(const Patch& patch) const;
    bool emit(const Patch& patch);
    void fill(const Patch& patch, SeaVertex* out) const;
    void morph(const Patch& patch, double farthest, SeaVertex* out) const;
    double getDistance(double east, double north) const;

    std::array<double, MAX_LEVEL + 1> m_ranges{};   ///< lattice steps at which the next level takes over
    std::array<double, MAX_LEVEL + 1> m_morphs{};   ///< and at which its vertices begin to move there
    double m_spacing = 1.0;                         ///< of the lattice, metres
    double m_floor = 0.0;                           ///< distance that the eye's height counts as
    const SeaMeshView* m_view = nullptr;            // these three: during `update`
    const WaveField* m_field = nullptr;
    const SeaGround* m_ground = nullptr;
    std::vector<SeaVertex> m_vertices;
    std::array<std::vector<int>, NUM_KINDS> m_kinds;
    int m_num_patches = 0;
};
