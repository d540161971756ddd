// Selects lamps for the surface shaders, once per frame at night.
#include "effects/LampLights.h"

#include <algorithm>
#include <cmath>

#include "base/Convert.h"
#include "base/Uniforms.h"
#include "engine/math/jMath.h"

namespace {

constexpr double LOOK_AHEAD = 15.0;       // metres in front of the eye: the point where illuminance is compared
constexpr double MIN_DISTANCE_2 = 100.0;  // m^2: nearer lamps rank the same
constexpr double MAX_LIT = 0.4;           // maximum radiance of lit ground, relative to that displayed as white
constexpr double LIT_AT = 0.125;          // distance of the limited ground, as a share of the lamp's range
constexpr double GROUND = 0.2;            // reflectance of lit ground

osg::Vec3f toEye(const FrameView& view, const dvec3& v) {
    return {static_cast<float>(dot(view.camera.x, v)), static_cast<float>(dot(view.camera.y, v)),
            static_cast<float>(dot(view.camera.z, v))};
}

/// Limits the lamp so that lit ground is displayed hardly brighter than white: exposure is set for the night and does
/// not react to it.
double limitLight(const Lamp& lamp, float exposure) {
    const double distance = lamp.range * LIT_AT;
    const double limit = MAX_LIT * distance * distance * jMath::PI / (GROUND * std::max(exposure, 1e-9f));
    return std::min(lamp.intensity * 0.001, limit);
}

}  // namespace

LampLights::LampLights(osg::StateSet& root_state)
    : m_root_state(root_state),
      m_count(addUniform(root_state, "u_num_lamps", 0)),
      m_places(addUniform(root_state, osg::Uniform::FLOAT_VEC4, "u_lamp_places", MAX_LAMPS)),
      m_colors(addUniform(root_state, osg::Uniform::FLOAT_VEC4, "u_lamp_colors", MAX_LAMPS)),
      m_axes(addUniform(root_state, osg::Uniform::FLOAT_VEC3, "u_lamp_axes", MAX_LAMPS)) {}

void LampLights::set(int id, const Lamp& lamp) {
    if (!(lamp.intensity > 0.0f && lamp.range > 0.0f)) return remove(id);
    const auto [slot, is_new] = m_slots.try_emplace(id, m_lamps.size());
    if (is_new) {
        m_lamps.push_back(lamp);
        m_ids.push_back(id);
    } else {
        m_lamps[slot->second] = lamp;
    }
}

void LampLights::remove(int id) {
    const auto found = m_slots.find(id);
    if (found == m_slots.end()) return;
    const std::size_t at = found->second;
    m_slots.erase(found);
    if (at + 1 != m_lamps.size()) {
        m_lamps[at] = m_lamps.back();
        m_ids[at] = m_ids.back();
        m_slots.at(m_ids[at]) = at;
    }
    m_lamps.pop_back();
    m_ids.pop_back();
}

int LampLights::choose(const dvec3& place, Chosen (&chosen)[MAX_LAMPS]) const {
    Chosen best[MAX_LAMPS + 1];  // the last is the best of the lamps not chosen
    for (const Lamp& lamp : m_lamps) {
        const double score = lamp.intensity / (length2(lamp.position - place) + MIN_DISTANCE_2);
        if (score <= best[MAX_LAMPS].score) continue;
        int at = MAX_LAMPS;
        for (; at > 0 && best[at - 1].score < score; --at) best[at] = best[at - 1];
        best[at] = {&lamp, score, 1.0};
    }
    int count = 0;
    for (; count < MAX_LAMPS && best[count].lamp; ++count) {
        chosen[count] = best[count];
        // A lamp fades out before the next one replaces it.
        const double rest = best[MAX_LAMPS].score;
        if (rest > 0.0) chosen[count].share = std::clamp(2.0 * (best[count].score / rest - 1.0), 0.0, 1.0);
    }
    return count;
}

void LampLights::update(const FrameView& view, bool enabled) {
    const float dark = std::clamp(view.light.night * 8.0f, 0.0f, 1.0f);
    Chosen chosen[MAX_LAMPS];
    const dvec3 place = view.camera.t - view.camera.z * LOOK_AHEAD;
    const int count = enabled && dark > 0.0f ? choose(place, chosen) : 0;
    m_count->set(count);
    if (m_defined != (count > 0)) {
        m_defined = count > 0;
        m_root_state.setDefine("LAMPS", m_defined ? osg::StateAttribute::ON : osg::StateAttribute::OFF);
    }
    for (int i = 0; i < count; ++i) {
        const Lamp& lamp = *chosen[i].lamp;
        const auto kcd = static_cast<float>(limitLight(lamp, view.light.exposure) * dark * chosen[i].share);
        const auto at = static_cast<unsigned>(i);
        m_places->setElement(at, osg::Vec4f(toEye(view, lamp.position - view.camera.t), 1.0f / lamp.range));
        m_colors->setElement(at, osg::Vec4f(toOsg(lamp.color) * kcd, lamp.cone));
        m_axes->setElement(at, toEye(view, dvec3(lamp.axis)));
    }
}
