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
    /// Computes the light for the frame's position, date and air, and updates the drawn sky. Cheap while the sun does
    /// not move.
    SkyLight update(const FrameView& view, const Environment& environment);
    void setVisible(bool visible);
    /// Radiance of the sky, as read by common.glsl.
    osg::Texture2D* getRadiance() const { return m_dome.getRadiance(); }

private:
    bool isStale(const SkyConditions& now) const;
    void adapt(double dt);

    osg::ref_ptr<osg::Group> m_group;
    SkyModel m_model;
    SkyDome m_dome;
    SkyBodies m_bodies;
    SkyConditions m_computed;  ///< conditions for which `m_light` and `m_picture` were computed
    SkyLight m_light;
    SkyPicture m_picture;
    double m_exposure = 0.0;  ///< logarithm; adapts to the light over time
    bool m_is_first = true;
};
