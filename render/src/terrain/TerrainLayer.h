// The ground: tiles of the elevation raster, and the pictures laid on it.
#pragma once

#include <osg/Group>

#include "frame/FrameView.h"

class DecalOrtho;
class ObjectTerrain;
class ShaderLibrary;

class TerrainLayer {
public:
    TerrainLayer(osg::Group& root, ShaderLibrary& shaders);
    /// The terrain to draw; null for none. It outlives its being set here.
    void setTerrain(const ObjectTerrain* terrain);
    /// A decal that is new or has changed.
    void updateDecal(const DecalOrtho& decal);
    void removeDecal(int id);
    void update(const FrameView& view);
    void setVisible(bool visible);

private:
    osg::ref_ptr<osg::Group> m_group;
};
