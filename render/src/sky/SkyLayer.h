// The sky: its light on everything, its dome, sun, moon and stars.
#pragma once

#include <osg/Group>
#include <osg/Texture2D>

#include "frame/FrameView.h"

class ShaderLibrary;
struct Environment;

class SkyLayer {
public:
    SkyLayer(osg::Group& root, ShaderLibrary& shaders);
    /// Computes the light for the frame's place, date and air, and what the sky shows. Costs little while the sun
    /// stands still.
    SkyLight update(const FrameView& view, const Environment& environment);
    void setVisible(bool visible);
    /// Radiance of the sky as common.glsl reads it.
    osg::Texture2D* getRadiance() const { return m_radiance; }

private:
    osg::ref_ptr<osg::Texture2D> m_radiance;
    osg::ref_ptr<osg::Geode> m_dome;
};
