// The foam of ships on the sea.
#pragma once

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/Texture2D>

#include <memory>
#include <vector>

#include "base/FrameView.h"
#include "sea/FoamMap.h"

class DecalOrtho;
class SeaMesh;
class ShaderLibrary;
class World;

/// Draws the patches of the sea that carry foam a second time, with the foam alone. Foam belongs to the decals that are
/// children of the node with the tag SEA_FOAM: each shows the particles below it. Without such decals nothing is drawn.
class SeaWake {
public:
    static constexpr const char* SEA_FOAM = "sea_foam";

    /// `local` is the sea's transform; the vertices are the sea's: local positions, positions at rest.
    SeaWake(osg::MatrixTransform& local, osg::Vec3Array& places, osg::Vec3Array& rests, ShaderLibrary& shaders);
    /// REQUIRES that the mesh of this frame is complete; a null world has no foam.
    void update(const FrameView& view, const World* world, const SeaMesh& mesh);

private:
    /// The foam of one decal.
    struct Sheet {
        FoamMap map;
        osg::ref_ptr<osg::Image> image;
        osg::ref_ptr<osg::Geode> geode;
        osg::ref_ptr<osg::DrawElementsUInt> indices;
        osg::ref_ptr<osg::Uniform> across, along;  ///< from local positions to the picture's 0..1
    };

    Sheet& getSheet(std::size_t i);
    void draw(Sheet& sheet, const DecalOrtho& decal, const FrameView& view, const SeaMesh& mesh);
    static void choosePatches(Sheet& sheet, const osg::Vec4f& across, const osg::Vec4f& along, const SeaMesh& mesh);

    osg::ref_ptr<osg::Group> m_group;
    osg::ref_ptr<osg::Vec3Array> m_places, m_rests;
    std::vector<std::unique_ptr<Sheet>> m_sheets;
};
