// Shadows that the sun or the moon casts round the eye.
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

/// A depth map seen from the light. It is drawn again when the light or its area has changed, and in part where
/// something in it has moved.
class ShadowPass {
public:
    /// `scene` is drawn after it and reads it; `meshes` cast the shadows.
    ShadowPass(osg::Group& before_scene, osg::StateSet& scene, MeshMirror& meshes, ShaderLibrary& shaders,
               Quality quality);
    /// REQUIRES the view's light and the meshes' places of this frame. The map rides on `cover`, so that what stands on
    /// a ship's deck keeps its shadows while the ship moves.
    void update(const FrameView& view, const Cover& cover);
    void setVisible(bool visible);

private:
    /// A part of the map; empty unless left < right and bottom < top.
    struct Texels {
        int left, bottom, right, top;

        long getArea() const { return static_cast<long>(right - left) * (top - bottom); }
        Texels joined(const Texels& other) const;
    };
    static constexpr std::size_t MOST_PARTS = 4;  ///< drawn anew in a frame, each by a camera of its own

    osg::ref_ptr<osg::Camera> makeCamera(osg::Texture2D* map, ShaderLibrary& shaders) const;
    bool placeArea(const FrameView& view);
    /// Finds the parts where what moved may show.
    void findDisturbed();
    void addPart(const Texels& part);
    void aim(osg::Camera& camera, const Texels& part) const;

    MeshMirror& m_meshes;
    osg::StateSet& m_scene;
    const Quality m_quality;
    const int m_size;  ///< texels each way
    std::array<osg::ref_ptr<osg::Camera>, MOST_PARTS> m_cameras;
    osg::ref_ptr<osg::Uniform> m_matrix;
    bool m_visible = true;
    dmat4 m_light;          ///< frame of the map: Z to the light, origin in the middle of its area
    dmat4 m_riding;         ///< the same in the frame that it rides on
    double m_radius = 0.0;  ///< half its width, metres; 0 before the first frame
    std::vector<Reach> m_disturbed;
    std::vector<Texels> m_parts;  ///< to be drawn in this frame
};
