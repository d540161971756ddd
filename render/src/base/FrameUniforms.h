// The uniforms of common.glsl: set once per frame, used by everything drawn.
#pragma once

#include <osg/StateSet>

#include "base/FrameView.h"

class FrameUniforms {
public:
    /// Adds the uniforms to the state of the scene's root.
    explicit FrameUniforms(osg::StateSet& state);
    void update(const FrameView& view);

private:
    osg::StateSet& m_state;
    bool m_has_weather = false;
    osg::ref_ptr<osg::Uniform> m_up, m_eye_to_local, m_light_direction, m_light_color, m_ambient_above, m_ambient_below,
        m_exposure, m_air, m_sun_side, m_weather;
};
