// The ground: tiles of the elevation raster with imagery and decals.
#pragma once

#include <osg/Group>

#include <memory>

#include "base/FrameView.h"
#include "terrain/GroundDecals.h"
#include "terrain/TerrainTree.h"

class DecalOrtho;
class ObjectTerrain;
class ShaderLibrary;

class TerrainLayer {
public:
    TerrainLayer(osg::Group& root, ShaderLibrary& shaders);
    /// The terrain to draw; null for none. It must exist until it is replaced here.
    void setTerrain(const ObjectTerrain* terrain);
    /// Called for a decal that was added or changed.
    void updateDecal(const DecalOrtho& decal);
    void removeDecal(int id);
    void update(const FrameView& view);
    void setVisible(bool visible);

private:
    void makeTree();
    void setDefine(const char* name, bool on, bool& was_on);

    osg::ref_ptr<osg::Group> m_group, m_tiles;
    TileStates m_states;
    osg::ref_ptr<osg::Uniform> m_weather, m_extent, m_pixel;
    GroundDecals m_decals;
    const ObjectTerrain* m_terrain = nullptr;
    std::unique_ptr<TerrainTree> m_tree;
    bool m_visible = true;
    bool m_has_weather = false, m_is_wet = false;  ///< state of the shaders' defines
};
