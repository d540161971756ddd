// A triangle tree over one surface of a mesh, for segment queries.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/math/Bounds.h"

struct MeshSurface;
struct SurfaceTreeScene;

/// Immutable; keeps nothing of the surface that it was built from.
class SurfaceTree {
public:
    /// REQUIRES indices within the surface's positions and finite positions.
    explicit SurfaceTree(const MeshSurface& surface);
    ~SurfaceTree();
    SurfaceTree(const SurfaceTree&) = delete;
    SurfaceTree& operator=(const SurfaceTree&) = delete;

    /// Where the segment first meets a triangle, from either side, in the mesh's frame, metres. The place along the
    /// segment is found in double precision whatever its length. False without a hit and for a segment of no length;
    /// `hit` is then left alone.
    bool intersect(const dvec3& from, const dvec3& to, dvec3& hit) const;

    const BoundBox& getBounds() const { return m_bounds; }  ///< of the triangles; empty without any

private:
    using Corners = std::array<std::array<float, 3>, 3>;

    double meet(unsigned triangle, const dvec3& from, const dvec3& step, double guess) const;

    /// One triangle after the other, so that looking at the one that was hit costs one trip to memory, not four. The
    /// last is a spare: the pick library reads a little beyond a vertex.
    std::vector<Corners> m_triangles;
    std::shared_ptr<const std::vector<std::uint32_t>> m_indices;
    BoundBox m_bounds;
    BoundBox m_reach;      ///< the bounds and the slack round them
    double m_slack = 0.0;  ///< metres within which single precision places a hit
    std::unique_ptr<SurfaceTreeScene> m_scene;
};
