// Levels of detail of a mesh surface by distance.
#pragma once

#include <osg/Geometry>
#include <osg/Group>

#include <vector>

struct MeshSurface;

/// One level of detail: a geometry and its maximum deviation from the true surface, metres.
struct DetailLevel {
    osg::ref_ptr<osg::Geometry> geometry;
    float error = 0.0f;
};

/// The full surface, then coarser ones that share its vertices, as long as they save enough.
std::vector<DetailLevel> makeLevels(const MeshSurface& surface);

/// Draws the coarsest level that looks the same. For the eye this follows the camera's LOD scale, in metres per pixel
/// at a distance of 1 m. In a shadow map the level is fixed, so that shadows do not change with the eye.
class SurfaceDetail : public osg::Group {
public:
    explicit SurfaceDetail(const std::vector<DetailLevel>& levels);
    void traverse(osg::NodeVisitor& visitor) override;

private:
    std::size_t levelFor(float error) const;

    std::vector<float> m_errors;  ///< ascending
};
