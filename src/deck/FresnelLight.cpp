// The steps of the lens: each frame the logic scales it, blinks it after the input, then chooses the lamp.
#include "src/deck/FresnelLight.h"

#include <engine/scene/Object.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace {

constexpr double FAR_AWAY = 6000.0;  ///< metres
constexpr double SCALE_NEAR = 2.5, SCALE_GAIN = 22.5;
constexpr const char* LAMP_NAMES[] = {"deng01", "deng02", "deng03", "deng04", "deng05"};

/// Lower bounds of the states from 1 on, degrees: bands of 0.34 around a glide path of 4.
constexpr double BOUNDS[] = {4.85, 4.51, 4.17, 3.83, 3.49, 3.15};

// Rounded values: the bands are calibrated with these.
constexpr double HALF_TURN = 3.1415926, RIGHT_ANGLE = 1.5707963;

int stateOf(float angle) {
    const auto wide = static_cast<double>(angle);
    int state = FresnelLight::FAR_ABOVE;
    for (const double bound : BOUNDS) {
        if (wide > bound) break;
        ++state;
    }
    return state;
}

void setEnabled(Node* node, bool enabled) {
    if (node) node->setEnabled(enabled);
}

}  // namespace

void FresnelLight::fresnelLightInit(Object* ship, Node* observer) {
    m_observer = observer;
    m_ready = false;
    m_lens = m_green = m_deck_1 = m_deck_2 = nullptr;
    for (Node*& lamp : m_lamps) lamp = nullptr;
    if (!ship) return;
    m_lens = ship->getChildByName("Fresnel_light", false);
    if (m_lens) {
        for (int i = 0; i < LAMPS; ++i) m_lamps[i] = m_lens->getChildByName(LAMP_NAMES[i], true);
        m_green = m_lens->getChildByName("green_light", true);
        m_ready = true;
        std::printf("%s success! \n", "FresnelLight::fresnelLightInit");
    }
    m_deck_1 = Node::GetNodeByName("deck_1");
    if (m_deck_1) std::printf("deck_1 node is live\n");
    m_deck_2 = Node::GetNodeByName("deck_2");
    if (m_deck_2) std::printf("deck_2 node is live\n");
}

void FresnelLight::updateScale() {
    if (!m_lens || !m_observer) return;
    const double distance = length(m_observer->getWorldPosition() - m_lens->getWorldPosition());
    const double scale = std::clamp(distance / FAR_AWAY, 0.0, 1.0) * SCALE_GAIN + SCALE_NEAR;
    m_lens->setScale({scale, scale, scale});
}

float FresnelLight::getGlideAngle() const {
    if (!m_lens || !m_observer || !m_deck_1 || !m_deck_2) return std::numeric_limits<float>::quiet_NaN();
    const dvec3 lens = m_lens->getWorldPosition();
    const dvec3 normal = cross(m_deck_1->getWorldPosition() - lens, m_deck_2->getWorldPosition() - lens);
    const dvec3 eye = m_observer->getWorldPosition() - lens;
    const double angle = std::acos(dot(eye, normal) / (length(eye) * length(normal)));
    return static_cast<float>(std::fabs(RIGHT_ANGLE - angle) * 180.0 / HALF_TURN);
}

void FresnelLight::selectByAngle(float angle) {
    if (!std::isnan(angle)) setState(stateOf(angle));
}

void FresnelLight::setState(int state) {
    if (!m_ready || state == m_state) return;
    resetLamps();
    m_state = state;
    if (state == OFF || state == FAR_ABOVE || state == FAR_BELOW) darken();
    lightSteady(state);
}

void FresnelLight::resetLamps() {
    m_blink_time = 0.0f;
    if (m_green) darken();
}

void FresnelLight::darken() {
    for (Node* lamp : m_lamps) setEnabled(lamp, false);
    setEnabled(m_green, false);
}

void FresnelLight::lightSteady(int state) {
    for (int i = 0; i < LAMPS; ++i) {
        if (state == ALL || state == TOP + i) setEnabled(m_lamps[i], true);
    }
    if (state == ALL || state == ON_PATH) setEnabled(m_green, true);
}

void FresnelLight::blink(float dt) {
    if (m_state != FAR_ABOVE && m_state != FAR_BELOW) return;
    m_blink_time += dt;
    if (!(m_blink_time > m_blink_period)) return;
    m_blink_time = 0.0f;
    Node* const lamp = m_lamps[m_state == FAR_ABOVE ? 0 : LAMPS - 1];
    if (lamp) lamp->setEnabled(!lamp->isEnabled());
}
