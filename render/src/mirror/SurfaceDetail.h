// A mesh's surface with fewer triangles the further away it is seen.
#pragma once

#include <osg/Geometry>
#include <osg/Group>

#include <vector>

struct MeshSurface;

/// One degree of detail: a geometry and how far it lies off the surface's true shape at most, metres.
struct DetailLevel {
    osg::ref_ptr<osg::Geometry> geometry;
    float error = 0.0f;
};

/// The surface as it is, then coarser ones that share its vertices; as many as are worth it.
std::vector<DetailLevel> makeLevels(const MeshSurface& surface);

/// Draws the coarsest level that looks the same: from the eye by the camera's LOD scale, which is metres a pixel at a
/// distance of 1 m; into a shadow map always the same one, so that shadows do not change with the eye.
class SurfaceDetail : public osg::Group {
public:
    explicit SurfaceDetail(const std::vector<DetailLevel>& levels);
    void traverse(osg::NodeVisitor& visitor) override;

private:
    std::size_t levelFor(float error) const;

    std::vector<float> m_errors;  ///< ascending
};
