// The ground's tiles.
#include "terrain/TerrainLayer.h"

#include "frame/ShaderLibrary.h"

TerrainLayer::TerrainLayer(osg::Group& root, ShaderLibrary&) : m_group(new osg::Group) {
    root.addChild(m_group);
}

void TerrainLayer::setTerrain(const ObjectTerrain*) {}
void TerrainLayer::updateDecal(const DecalOrtho&) {}
void TerrainLayer::removeDecal(int) {}
void TerrainLayer::update(const FrameView&) {}

void TerrainLayer::setVisible(bool visible) {
    m_group->setNodeMask(visible ? ~0u : 0u);
}
