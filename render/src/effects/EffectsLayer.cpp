// Particles, lamps, texts and what falls from the sky.
#include "effects/EffectsLayer.h"

#include "frame/ShaderLibrary.h"

EffectsLayer::EffectsLayer(osg::Group& root, ShaderLibrary&) : m_group(new osg::Group) {
    root.addChild(m_group);
}

void EffectsLayer::updateParticles(ObjectParticles&) {}
void EffectsLayer::updateLight(const NodeLight&) {}
void EffectsLayer::updateText(const NodeText&) {}
void EffectsLayer::remove(int) {}
void EffectsLayer::update(const FrameView&, const World&) {}

void EffectsLayer::setVisible(bool visible) {
    m_group->setNodeMask(visible ? ~0u : 0u);
}
