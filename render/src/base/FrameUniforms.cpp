// Converts the frame's light and air to shader values in the eye's frame.
#include "base/FrameUniforms.h"

#include <cmath>

#include "base/Convert.h"
#include "base/Uniforms.h"

FrameUniforms::FrameUniforms(osg::StateSet& state)
    : m_state(state),
      m_up(addUniform(state, "u_up", osg::Vec3f())),
      m_eye_to_local(addUniform(state, "u_eye_to_local", osg::Matrix3())),
      m_light_direction(addUniform(state, "u_light_direction", osg::Vec3f())),
      m_light_color(addUniform(state, "u_light_color", osg::Vec3f())),
      m_ambient_above(addUniform(state, "u_ambient_above", osg::Vec3f())),
      m_ambient_below(addUniform(state, "u_ambient_below", osg::Vec3f())),
      m_exposure(addUniform(state, "u_exposure", 1.0f)),
      m_air(addUniform(state, "u_air", osg::Vec3f())),
      m_sun_side(addUniform(state, "u_sun_side", osg::Vec2f())),
      m_weather(addUniform(state, "u_weather", osg::Vec2f())) {
    state.addUniform(new osg::Uniform("u_sky", static_cast<int>(UNIT_SKY)));
    state.addUniform(new osg::Uniform("u_shadow", static_cast<int>(UNIT_SHADOW)));
}

void FrameUniforms::update(const FrameView& view) {
    // Rows of the rotation from the eye's frame to east, north, up: the local axes seen from the eye.
    const auto toEye = [&](const dvec3& v) {
        return dvec3(dot(view.camera.x, v), dot(view.camera.y, v), dot(view.camera.z, v));
    };
    const dvec3 east = toEye(view.local.x), north = toEye(view.local.y), up = toEye(view.local.z);
    const auto fromLocal = [&](const vec3& v) { return toOsg(east * v.x + north * v.y + up * v.z); };
    const auto f = [](double v) { return static_cast<float>(v); };

    m_up->set(osg::Vec3f(toOsg(up)));
    // Column-major, as the shading language stores it.
    m_eye_to_local->set(
        osg::Matrix3(f(east.x), f(north.x), f(up.x), f(east.y), f(north.y), f(up.y), f(east.z), f(north.z), f(up.z)));
    m_light_direction->set(osg::Vec3f(fromLocal(view.light.light_direction)));
    m_light_color->set(toOsg(view.light.light_color));
    m_ambient_above->set(toOsg(view.light.ambient_above));
    m_ambient_below->set(toOsg(view.light.ambient_below));
    m_exposure->set(view.light.exposure);
    const double thinning = std::exp(-std::fmax(view.geodetic.z, 0.0) / HAZE_HEIGHT);
    m_air->set(osg::Vec3f(f(view.extinction * thinning), f(1.0 / HAZE_HEIGHT), f(view.geodetic.z)));
    const bool has_weather = view.wetness > 0.0f || view.snow > 0.0f;
    if (has_weather != m_has_weather) {
        m_has_weather = has_weather;
        m_state.setDefine("WEATHER", has_weather ? osg::StateAttribute::ON : osg::StateAttribute::OFF);
    }
    m_weather->set(osg::Vec2f(view.wetness, view.snow));
    const vec3& sun = view.light.sun_direction;
    const float side = std::hypot(sun.x, sun.y);
    m_sun_side->set(side > 1e-6f ? osg::Vec2f(sun.x / side, sun.y / side) : osg::Vec2f(0.0f, 1.0f));
}
