// Effects: particles, lamps, texts, rain and snow.
#pragma once

#include <osg/Group>

#include "base/FrameView.h"
#include "effects/LampLights.h"
#include "effects/LampPoints.h"
#include "effects/ParticleDrawing.h"
#include "effects/Precipitation.h"
#include "effects/SceneTexts.h"

class Node;
class NodeLight;
class NodeText;
class ObjectParticles;
class ShaderLibrary;
class World;

class EffectsLayer {
public:
    /// Also adds the lamps' uniforms, used by all surfaces, to the root's state.
    EffectsLayer(osg::Group& root, ShaderLibrary& shaders);
    /// Called for a node of one of these kinds that was added or changed: moved, switched or with new content.
    void updateParticles(ObjectParticles& particles) { m_particles.add(particles); }
    void updateLight(const NodeLight& light);
    void updateText(const NodeText& text) { m_texts.set(text); }
    /// Called for a node of one of these kinds that left the world.
    void remove(int id);
    void update(const FrameView& view, const World& world);
    void setVisible(bool visible);

private:
    osg::ref_ptr<osg::Group> m_group;
    ParticleDrawing m_particles;
    LampPoints m_points;
    LampLights m_lights;
    SceneTexts m_texts;
    Precipitation m_precipitation;
    bool m_visible = true;
};
