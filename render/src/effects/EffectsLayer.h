// What floats before the scene: particles, lamps, texts, rain and snow.
#pragma once

#include <osg/Group>

#include "frame/FrameView.h"

class Node;
class NodeLight;
class NodeText;
class ObjectParticles;
class ShaderLibrary;
class World;

class EffectsLayer {
public:
    EffectsLayer(osg::Group& root, ShaderLibrary& shaders);
    /// A node of one of these kinds that is new or has changed: moved, switched or another content.
    void updateParticles(ObjectParticles& particles);
    void updateLight(const NodeLight& light);
    void updateText(const NodeText& text);
    /// A node of one of them that left the world.
    void remove(int id);
    void update(const FrameView& view, const World& world);
    void setVisible(bool visible);

private:
    osg::ref_ptr<osg::Group> m_group;
};
