// A triangle tree over one surface of a mesh, for segment queries.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/math/Bounds.h"

struct MeshSurface;
struct SurfaceTreeScene;

/// Immutable; does not reference the surface that it was built from.
class SurfaceTree {
public:
    /// REQUIRES finite positions and indices inside them.
    explicit SurfaceTree(const MeshSurface& surface);
    ~SurfaceTree();
    SurfaceTree(const SurfaceTree&) = delete;
    SurfaceTree& operator=(const SurfaceTree&) = delete;

    /// The first intersection of the segment with a triangle, from either side, in the mesh's frame, metres. Computed
    /// in double precision whatever the segment's length. False without a hit and for a segment of length 0; `hit` is
    /// then unchanged.
    bool intersect(const dvec3& from, const dvec3& to, dvec3& hit) const;

    const BoundBox& getBounds() const { return m_bounds; }  ///< bounds of the triangles; empty without any

private:
    using Corners = std::array<std::array<float, 3>, 3>;

    double meet(unsigned triangle, const dvec3& from, const dvec3& step, double guess) const;

    /// Corners of each triangle together, so that reading a triangle needs one memory access instead of four. The last
    /// element is padding: the library reads slightly beyond a vertex.
    std::vector<Corners> m_triangles;
    std::shared_ptr<const std::vector<std::uint32_t>> m_indices;
    BoundBox m_bounds;
    BoundBox m_reach;      ///< the bounds enlarged by the slack
    double m_slack = 0.0;  ///< metres: accuracy of a hit in single precision
    std::unique_ptr<SurfaceTreeScene> m_scene;
};
