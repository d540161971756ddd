// The sea's surface as triangles: fine below the eye, coarse toward the horizon.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/math/Transform.h"

class LevelTop;
class SeaGround;
class SeaSlopes;
class WaveField;

/// Four floats in one SIMD register.
using SeaValues = float __attribute__((vector_size(16)));

/// Input of the mesh for a frame. Local positions are metres east, north and up from the eye.
struct SeaMeshView {
    struct Plane {
        double east = 0.0, north = 0.0, up = 0.0, offset = 0.0;
    };

    double east = 0.0, north = 0.0;                        ///< of the eye in the wave field, metres
    double east_scale = 1.0, north_scale = 1.0;            ///< local metres per metre of the field
    double east_radius = 6.378e6, north_radius = 6.336e6;  ///< radii of the earth's curvature, metres
    double height = 0.0;                                   ///< of the eye above the mean level, metres
    float rise = 1.0f;                                     ///< factor on the waves' height
    /// maximum displacement of water from its position at rest, metres
    float reach_sideways = 0.0f, reach_upward = 0.0f;
    std::array<Plane, 4> sides;       ///< sides of the view's frustum, positive inside, local
    const LevelTop* cover = nullptr;  ///< occluder that hides water from the eye; may be null
    dmat4 to_cover;                   ///< from local positions to the occluder's frame
    /// Texture coordinates in the ground's image: of the eye, and their change per metre of the field.
    double ground_column = 0.0, ground_row = 0.0, columns_per_metre = 0.0, rows_per_metre = 0.0;
};

/// A vertex to be drawn.
struct SeaVertex {
    float east, north, up;            ///< local
    float rest_east, rest_north;      ///< its position at rest in the field, metres from the eye's position
    float crest;                      ///< height above the mean level
    float slope_east, slope_north;    ///< of the large cascade
    float foam;                       ///< of the large cascade
    float heave;                      ///< height of the large cascade in texture units
    float ground_column, ground_row;  ///< texture coordinates in the ground's image

    /// Interpolates all values toward another vertex by a share (0..1).
    void slide(const SeaVertex& to, float part);
};

/// A quadtree of patches of 4 by 4 cells around the eye. Every vertex is on a fixed lattice of the field whose finest
/// level is the samples of the small cascade, so that vertices do not slide over the waves when the eye moves. Toward
/// the end of a level's range its vertices move onto those of the next level, which avoids cracks and popping.
class SeaMesh {
public:
    static constexpr int CELLS = 4;                             ///< cells per side of a patch
    static constexpr int VERTICES = (CELLS + 1) * (CELLS + 1);  ///< vertices of a patch
    static constexpr int TRIANGLES = CELLS * CELLS * 2;         ///< triangles of a patch
    static constexpr int MAX_PATCHES = 3000;
    static constexpr int MAX_LEVEL = 20;

    /// Patches are sorted by distance into bands. The first band shows ripples; up to the third band the large
    /// cascade's slopes are in the vertices; the last bands show swell instead of the small cascade.
    static constexpr int NUM_BANDS = 7, FINE_BANDS = 1, NEAR_BANDS = 3, MIDDLE_BANDS = 5;
    /// Ranges of all bands but the last, metres of the field.
    static constexpr std::array<double, NUM_BANDS - 1> BAND_RANGES{64.0, 150.0, 320.0, 1000.0, 2500.0, 8000.0};

    struct PatchList {
        std::vector<int> open, shore;  ///< shore: the ground is close below the water surface
    };

    SeaMesh();

    /// Computes the mesh of a frame; `ground` may be null.
    void update(const SeaMeshView& view, const WaveField& field, const SeaSlopes& slopes, const SeaGround* ground);

    /// Patches of VERTICES vertices, in rows from the south-west; the first getNumPatches() patches are in use. The
    /// address is constant.
    const std::vector<SeaVertex>& getVertices() const { return m_vertices; }
    int getNumPatches() const { return m_num_patches; }
    const PatchList& getPatches(int band) const { return m_bands[static_cast<std::size_t>(band)]; }
    /// Vertex indices of a patch's triangles: counter-clockwise from above, each cell split from its south-west to its
    /// north-east corner.
    static const std::array<unsigned, TRIANGLES * 3>& getPatchIndices();

private:
    struct Patch {
        int level;
        std::int64_t column, row;  ///< south-west corner in cells of its level
        double east, north;        ///< south-west corner, metres of the field from the eye
        double size;               ///< metres of the field
    };

    void select(const Patch& patch);
    /// Bounds of a patch's water, local.
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

    std::array<double, MAX_LEVEL + 1> m_ranges{};  ///< distances, in lattice steps, at which the next level begins
    std::array<double, MAX_LEVEL + 1> m_morphs{};  ///< distances at which the vertices begin to move onto it
    double m_spacing = 1.0;                        ///< of the lattice, metres
    double m_lift = 0.0;                           ///< contribution of the eye's height to distances
    double m_reach = 0.0;                          ///< maximum visible distance, local metres
    const SeaMeshView* m_view = nullptr;           // this and the following: valid during `update`
    const WaveField* m_field = nullptr;
    const SeaSlopes* m_slopes = nullptr;
    const SeaGround* m_ground = nullptr;
    std::vector<SeaVertex> m_vertices;
    std::array<PatchList, NUM_BANDS> m_bands;
    int m_num_patches = 0;
};
