// Shadows of the sun or the moon around the eye.
#pragma once

#include <osg/Camera>
#include <osg/Texture2D>

#include <array>
#include <vector>

#include "base/FrameView.h"
#include "mirror/Casters.h"

class MeshMirror;
class ShaderLibrary;
struct Cover;

/// A depth map seen from the light. It is drawn again when the light or the area has changed, and in part where casters
/// have moved.
class ShadowPass {
public:
    /// `scene` is drawn after the map and reads it; `meshes` are the shadow casters.
    ShadowPass(osg::Group& before_scene, osg::StateSet& scene, MeshMirror& meshes, ShaderLibrary& shaders,
               Quality quality);
    /// REQUIRES the view's light and the meshes' poses of this frame. The map moves with `cover`, so that objects on a
    /// ship's deck keep their shadows while the ship moves.
    void update(const FrameView& view, const Cover& cover);
    void setVisible(bool visible);

private:
    /// A part of the map in texels; empty unless left < right and bottom < top.
    struct Texels {
        int left, bottom, right, top;

        long getArea() const { return static_cast<long>(right - left) * (top - bottom); }
        Texels joined(const Texels& other) const;
    };
    static constexpr std::size_t MAX_PARTS = 4;  ///< parts drawn per frame, each by its own camera

    osg::ref_ptr<osg::Camera> makeCamera(osg::Texture2D* map, ShaderLibrary& shaders) const;
    bool placeArea(const FrameView& view);
    /// Finds the parts of the map that moved casters affect.
    void findDisturbed();
    void addPart(const Texels& part);
    void aim(osg::Camera& camera, const Texels& part) const;

    MeshMirror& m_meshes;
    osg::StateSet& m_scene;
    const Quality m_quality;
    const int m_size;  ///< texels per side
    std::array<osg::ref_ptr<osg::Camera>, MAX_PARTS> m_cameras;
    osg::ref_ptr<osg::Uniform> m_matrix;
    bool m_visible = true;
    dmat4 m_light;          ///< frame of the map: Z to the light, origin in the middle of the area
    dmat4 m_riding;         ///< the same relative to the surface that the map moves with
    double m_radius = 0.0;  ///< half its width, metres; 0 before the first frame
    std::vector<Reach> m_disturbed;
    std::vector<Texels> m_parts;  ///< to be drawn in this frame
};
