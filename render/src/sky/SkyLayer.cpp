// Decides when the sky is computed again, adapts the exposure and updates the drawn parts. Updated first in the frame,
// since all other parts depend on its light.
#include "sky/SkyLayer.h"

#include <cmath>

#include "engine/math/jMath.h"
#include "engine/scene/World.h"

namespace {

constexpr double ADAPTATION_TIME = 0.35;  // time constant of the exposure, seconds

double angleBetween(const dvec3& a, const dvec3& b) {
    return length(a - b) * jMath::RAD2DEG;
}

SkyConditions conditionsOf(const FrameView& view, const Environment& environment) {
    SkyConditions conditions;
    const double date = julianDateOfSolarTime(environment.year, environment.month, environment.day,
                                              static_cast<double>(environment.time_of_day), view.geodetic.x);
    conditions.heavens = computeHeavens(date, view.geodetic.x, view.geodetic.y);
    conditions.extinction = view.extinction;
    conditions.cloudiness = environment.cloudiness;
    conditions.eye_height = static_cast<float>(std::fmax(view.geodetic.z, 1.0));
    return conditions;
}

}  // namespace

SkyLayer::SkyLayer(osg::Group& root, ShaderLibrary& shaders)
    : m_group(new osg::Group), m_dome(*m_group, shaders), m_bodies(*m_group, shaders) {
    m_group->setCullingActive(false);
    root.addChild(m_group);
}

bool SkyLayer::isStale(const SkyConditions& now) const {
    // At dawn and dusk the light changes by a tenth per tenth of a degree.
    const bool dusk = std::fabs(now.heavens.sun.z + 0.1) < 0.27;
    const double angle = dusk ? 0.02 : 0.1;
    const float height = m_computed.eye_height;
    return m_is_first || angleBetween(now.heavens.sun, m_computed.heavens.sun) > angle ||
           angleBetween(now.heavens.moon, m_computed.heavens.moon) > 0.5 ||
           std::fabs(now.extinction - m_computed.extinction) > 0.01 * m_computed.extinction ||
           std::fabs(now.cloudiness - m_computed.cloudiness) > 0.005f ||
           std::fabs(now.eye_height - height) > 10.0f + 0.02f * height;
}

void SkyLayer::adapt(double dt) {
    const double target = std::log(static_cast<double>(exposureFor(m_picture.adaptation)));
    const double share = m_is_first ? 1.0 : 1.0 - std::exp(-std::fmax(dt, 0.0) / ADAPTATION_TIME);
    m_exposure += (target - m_exposure) * share;
    m_light.exposure = static_cast<float>(std::exp(m_exposure));
}

SkyLight SkyLayer::update(const FrameView& view, const Environment& environment) {
    const SkyConditions now = conditionsOf(view, environment);
    if (isStale(now)) {
        m_model.compute(now, m_light, m_picture);
        m_dome.setPicture(m_picture);
        m_computed = now;
    }
    aimLight(now.heavens, m_picture.body, m_light);
    adapt(view.dt);
    m_is_first = false;
    m_dome.update(view, m_light, environment, now.heavens, m_picture);
    m_bodies.update(view, m_light, now.heavens, m_picture);
    return m_light;
}

void SkyLayer::setVisible(bool visible) {
    m_group->setNodeMask(visible ? ~0u : 0u);
}
