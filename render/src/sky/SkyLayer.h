// The sky: its light on everything, its dome, sun, moon and stars.
#pragma once

#include <osg/Group>
#include <osg/Texture2D>

#include "base/FrameView.h"
#include "sky/SkyBodies.h"
#include "sky/SkyDome.h"
#include "sky/SkyModel.h"

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
    osg::Texture2D* getRadiance() const { return m_dome.getRadiance(); }

private:
    bool isStale(const SkyConditions& now) const;
    void adapt(double dt);

    osg::ref_ptr<osg::Group> m_group;
    SkyModel m_model;
    SkyDome m_dome;
    SkyBodies m_bodies;
    SkyConditions m_computed;  ///< what `m_light` and `m_picture` were computed for
    SkyLight m_light;
    SkyPicture m_picture;
    double m_exposure = 0.0;  ///< logarithm; the eye follows the light
    bool m_is_first = true;
};
