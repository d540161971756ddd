// The sea's surface.
#include "sea/SeaLayer.h"

#include "frame/ShaderLibrary.h"

SeaLayer::SeaLayer(osg::Group& root, ShaderLibrary&) : m_group(new osg::Group) {
    root.addChild(m_group);
}

void SeaLayer::setOcean(const ObjectOcean*) {}
void SeaLayer::setTerrain(const ObjectTerrain*) {}
void SeaLayer::update(const FrameView&) {}

void SeaLayer::setVisible(bool visible) {
    m_group->setNodeMask(visible ? ~0u : 0u);
}
