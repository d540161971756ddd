// The sea's surface as triangles: fine under the eye, coarse towards the horizon.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/math/Transform.h"

class LevelTop;
class SeaGround;
class SeaSlopes;
class WaveField;

/// Four numbers as a processor takes them at once.
using SeaValues = float __attribute__((vector_size(16)));

/// What the mesh is made for. Local places are metres east, north and up from the eye.
struct SeaMeshView {
    struct Plane {
        double east = 0.0, north = 0.0, up = 0.0, offset = 0.0;
    };

    double east = 0.0, north = 0.0;                        ///< of the eye in the wave field
    double east_scale = 1.0, north_scale = 1.0;            ///< local metres for a metre of the field
    double east_radius = 6.378e6, north_radius = 6.336e6;  ///< of the earth's curve that way, metres
    double height = 0.0;                                   ///< of the eye above the mean level
    float rise = 1.0f;                                     ///< share of the waves' height that is drawn
    float reach_sideways = 0.0f, reach_upward = 0.0f;      ///< no water is further from its place at rest
    std::array<Plane, 4> sides;                            ///< of the view's pyramid, positive inside, local
    const LevelTop* cover = nullptr;                       ///< what hides water from the eye; may be null
    dmat4 to_cover;                                        ///< from local places to its frame
    /// Texture coordinates in the ground's picture: of the eye, and their growth for a metre of the field.
    double ground_column = 0.0, ground_row = 0.0, columns_per_metre = 0.0, rows_per_metre = 0.0;
};

/// A vertex as it is drawn.
struct SeaVertex {
    float east, north, up;            ///< local
    float rest_east, rest_north;      ///< its place at rest in the field, metres from the eye's place
    float crest;                      ///< height above the mean level
    float slope_east, slope_north;    ///< of the large cascade
    float foam;                       ///< of the large cascade
    float heave;                      ///< height of the large cascade as in its texture
    float ground_column, ground_row;  ///< texture coordinates in the ground's picture

    /// Moves everything a part (0..1) of the way to another vertex.
    void slide(const SeaVertex& to, float part);
};

/// A quadtree of patches of 4 by 4 cells round the eye. Every vertex lies on a fixed lattice of the field, whose finest
/// level are the samples of its small cascade, so that nothing swims when the eye moves; towards the end of a level's
/// range its vertices slide onto the next one's, so that nothing cracks or pops.
class SeaMesh {
public:
    static constexpr int CELLS = 4;                             ///< of a patch along a side
    static constexpr int VERTICES = (CELLS + 1) * (CELLS + 1);  ///< of a patch
    static constexpr int TRIANGLES = CELLS * CELLS * 2;         ///< of a patch
    static constexpr int MAX_PATCHES = 3000;
    static constexpr int MAX_LEVEL = 20;

    /// Patches are sorted by distance. The first band shows ripples; up to the third the large cascade's slopes come
    /// from the vertices; the last ones show swell instead of the small cascade.
    static constexpr int NUM_BANDS = 7, FINE_BANDS = 1, NEAR_BANDS = 3, MIDDLE_BANDS = 5;
    /// Ranges of the bands but the last, metres of the field.
    static constexpr std::array<double, NUM_BANDS - 1> BAND_RANGES{64.0, 150.0, 320.0, 1000.0, 2500.0, 8000.0};

    struct PatchList {
        std::vector<int> open, shore;  ///< shore: where the ground is close under the water
    };

    SeaMesh();

    /// Makes the mesh anew; `ground` may be null.
    void update(const SeaMeshView& view, const WaveField& field, const SeaSlopes& slopes, const SeaGround* ground);

    /// Rows of patches from the south-west, VERTICES each, of which the first are in use. They stay where they are.
    const std::vector<SeaVertex>& getVertices() const { return m_vertices; }
    int getNumPatches() const { return m_num_patches; }
    const PatchList& getPatches(int band) const { return m_bands[static_cast<std::size_t>(band)]; }
    /// Corners of a patch's triangles among its vertices: counter-clockwise from above, each cell split from its
    /// south-west to its north-east.
    static const std::array<unsigned, TRIANGLES * 3>& getPatchIndices();

private:
    struct Patch {
        int level;
        std::int64_t column, row;  ///< of its south-west corner, cells of its level
        double east, north;        ///< of that corner, metres of the field from the eye
        double size;               ///< metres of the field
    };

    void select(const Patch& patch);
    /// A patch's water lies between these, local.
    struct Box {
        dvec3 middle, half;
    };
    Box boxOf(const Patch& patch) const;
    bool isVisible(const Patch& patch) const;
    bool isCovered(const Box& box) const;
    void emit(const Patch& patch, double gap);
    bool isShore(const Patch& patch, bool& buried) const;
    void fill(const Patch& patch, SeaVertex* out, bool shore) const;
    SeaVertex makeVertex(std::int64_t column, std::int64_t row, bool shore) const;
    SeaValues displace(SeaVertex& out, std::int64_t column, std::int64_t row, double east, double north) const;
    void morph(const Patch& patch, SeaVertex* out) const;
    double getDistance(double east, double north) const;

    std::array<double, MAX_LEVEL + 1> m_ranges{};  ///< lattice steps at which the next level takes over
    std::array<double, MAX_LEVEL + 1> m_morphs{};  ///< and at which its vertices begin to move there
    double m_spacing = 1.0;                        ///< of the lattice, metres
    double m_lift = 0.0;                           ///< distance that the eye's height counts as
    double m_reach = 0.0;                          ///< nothing is seen further away, local metres
    const SeaMeshView* m_view = nullptr;           // these: during `update`
    const WaveField* m_field = nullptr;
    const SeaSlopes* m_slopes = nullptr;
    const SeaGround* m_ground = nullptr;
    std::vector<SeaVertex> m_vertices;
    std::array<PatchList, NUM_BANDS> m_bands;
    int m_num_patches = 0;
};
