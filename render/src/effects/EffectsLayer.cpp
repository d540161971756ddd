// Particles, lamps, texts and precipitation: passes each node to its part; updates all parts once per frame.
#include "effects/EffectsLayer.h"

#include "engine/scene/SceneNodes.h"

namespace {

osg::ref_ptr<osg::Group> addGroup(osg::Group& root) {
    osg::ref_ptr<osg::Group> group = new osg::Group;
    root.addChild(group);
    return group;
}

}  // namespace

EffectsLayer::EffectsLayer(osg::Group& root, ShaderLibrary& shaders)
    : m_group(addGroup(root)),
      m_particles(*m_group, shaders),
      m_points(*m_group, shaders),
      m_lights(*root.getOrCreateStateSet()),
      m_texts(*m_group, shaders),
      m_precipitation(*m_group, shaders) {}

void EffectsLayer::updateLight(const NodeLight& light) {
    const Lamp lamp = readLamp(light);
    m_points.set(light.getId(), lamp);
    m_lights.set(light.getId(), lamp);
}

void EffectsLayer::remove(int id) {
    m_particles.remove(id);
    m_points.remove(id);
    m_lights.remove(id);
    m_texts.remove(id);
}

void EffectsLayer::update(const FrameView& view, const World& world) {
    m_lights.update(view, m_visible);
    if (!m_visible) return;
    m_particles.update(view);
    m_points.update(view);
    m_precipitation.update(view, world);
}

void EffectsLayer::setVisible(bool visible) {
    m_visible = visible;
    m_group->setNodeMask(visible ? ~0u : 0u);
}
