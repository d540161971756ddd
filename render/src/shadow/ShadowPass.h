// Shadows that the sun or the moon casts round the eye.
#pragma once

#include <osg/Camera>
#include <osg/Texture2D>

#include "frame/FrameView.h"

class MeshMirror;
class ShaderLibrary;

/// A depth map seen from the light. It is drawn again when the light or its area has changed, and in part where
/// something in it has moved.
class ShadowPass {
public:
    /// `scene` is drawn after it and reads it; `meshes` cast the shadows.
    ShadowPass(osg::Group& before_scene, osg::StateSet& scene, MeshMirror& meshes, ShaderLibrary& shaders,
               Quality quality);
    /// REQUIRES the view's light and the meshes' places of this frame.
    void update(const FrameView& view);
    void setVisible(bool visible);

private:
    struct Texels {
        int left, bottom, right, top;
    };
    bool placeArea(const FrameView& view);
    /// Where what moved may show; empty for nothing.
    Texels findDisturbed() const;
    void aim(const Texels& part);

    MeshMirror& m_meshes;
    osg::StateSet& m_scene;
    const Quality m_quality;
    const int m_size;  ///< texels each way
    osg::ref_ptr<osg::Camera> m_camera;
    osg::ref_ptr<osg::Uniform> m_matrix;
    bool m_visible = true;
    dmat4 m_light;          ///< frame of the map: Z to the light, origin in the middle of its area
    double m_radius = 0.0;  ///< half its width, metres; 0 before the first frame
    std::vector<osg::BoundingSphere> m_disturbed;
};
