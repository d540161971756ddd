// The sea: the waves of the engine's ocean, drawn to the horizon.
#pragma once

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/MatrixTransform>

#include <array>
#include <memory>

#include "base/FrameView.h"
#include "sea/SeaMesh.h"
#include "sea/SeaSlopes.h"

class ObjectOcean;
class ObjectTerrain;
class SeaGround;
class SeaUniforms;
class SeaWake;
class ShaderLibrary;
struct Cover;

class SeaLayer {
public:
    SeaLayer(osg::Group& root, ShaderLibrary& shaders);
    ~SeaLayer();
    /// The ocean to draw; null for none. It must exist until it is replaced here.
    void setOcean(const ObjectOcean* ocean);
    /// The ground that gives the depth along the shore; null for none.
    void setTerrain(const ObjectTerrain* terrain);
    /// `cover` is an occluder that hides water from the eye.
    void update(const FrameView& view, const Cover& cover);
    void setVisible(bool visible);

private:
    /// Patches of one band that share a program.
    struct Part {
        osg::ref_ptr<osg::Geode> geode;
        osg::ref_ptr<osg::DrawElementsUInt> indices;
    };

    Part makePart(int band, bool shore, ShaderLibrary& shaders);
    static void fillPart(Part& part, const std::vector<int>& patches);
    void setUpState();
    SeaMeshView lookAt(const FrameView& view, const Cover& cover) const;
    std::array<osg::Array*, 4> getArrays() const;
    void takeMesh();

    osg::ref_ptr<osg::Group> m_group;
    osg::ref_ptr<osg::MatrixTransform> m_local;      ///< transform from the local frame below the eye
    osg::ref_ptr<osg::Vec3Array> m_places, m_rests;  ///< shared by all parts
    osg::ref_ptr<osg::Vec4Array> m_waves;
    osg::ref_ptr<osg::Vec2Array> m_grounds;
    std::array<Part, SeaMesh::NUM_BANDS> m_open, m_shore;
    osg::ref_ptr<osg::Texture2D> m_ground_texture;
    std::unique_ptr<SeaUniforms> m_uniforms;
    std::unique_ptr<SeaWake> m_wake;
    SeaMesh m_mesh;
    SeaSlopes m_slopes;
    std::unique_ptr<SeaGround> m_ground;
    const ObjectOcean* m_ocean = nullptr;
    const ObjectTerrain* m_terrain = nullptr;
    bool m_visible = true;
};
