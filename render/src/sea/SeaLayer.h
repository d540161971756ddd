// The sea: the engine ocean's own waves out to the horizon.
#pragma once

#include <osg/Group>

#include "frame/FrameView.h"

class ObjectOcean;
class ObjectTerrain;
class ShaderLibrary;

class SeaLayer {
public:
    SeaLayer(osg::Group& root, ShaderLibrary& shaders);
    /// The ocean to draw; null for none. It outlives its being set here.
    void setOcean(const ObjectOcean* ocean);
    /// The ground whose depth the shore follows; null for none.
    void setTerrain(const ObjectTerrain* terrain);
    void update(const FrameView& view);
    void setVisible(bool visible);

private:
    osg::ref_ptr<osg::Group> m_group;
};
