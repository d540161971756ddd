// Flight and appearance of the helicopter: wipers, rotors, light, the forces on its body and the limits of its
// attitude. The logic calls `updateFlight` each frame, after the keys.
#include <engine/core/Clock.h>
#include <engine/core/Engine.h>
#include <engine/math/jMath.h>
#include <engine/physics/Body.h>
#include <engine/scene/Object.h>

#include <algorithm>
#include <cmath>

#include "src/aircraft/Helicopter.h"

namespace {

constexpr double WIPER_SWEEP = 67.56119, WIPER_OUTER = 90.70399;  ///< degrees
constexpr float DISC_SPEED = 50.0f;                   ///< degrees per frame above which the blades are shown as a disc
constexpr float ROTOR_SPEED = 3.0f * 400.0f * 30.0f;  ///< degrees per second at full collective
constexpr double DISC_TILT = -5.0;                    ///< degrees at full stick
constexpr float FLASH_BEGIN = 0.85f, FLASH_LENGTH = 0.15f;  ///< seconds within each second
constexpr float DARK = 0.001f;

constexpr float MAX_ROLL = 7.0f;
constexpr float PITCH_FORCE = 1500.0f, ROLL_FORCE = 500.0f, LIFT = 3500.0f;  ///< newtons
constexpr float YAW_TORQUE = 3800.0f;                                        ///< newton metres
constexpr float NO_FORCE = 1e-6f;

/// Limits of the attitude in the local frame: rotations about X (nose down), Y (left side down), Z.
constexpr double MAX_X = 25.0, MAX_Y = 17.0;         ///< degrees
constexpr double SLOWING_X = 15.0, SLOWING_Y = 7.0;  ///< degrees; from here to the limit the drift is reduced
constexpr double LEVELLING = 0.98;                   ///< factor of the tilt per frame

/// Reduces a drift toward the tilted side, to 0 at the limit.
float slowed(float drift, double tilt, double from, double limit) {
    if (!((drift < 0.0f && tilt > from) || (drift > 0.0f && tilt < -from))) return drift;
    const double u = (std::abs(tilt) - from) / (limit - from);
    return static_cast<float>(drift * (1.0 - u * u * u));
}

void enable(Node* node, bool enabled) {
    if (node) node->setEnabled(enabled);
}

void setThirdAngle(Node* node, double angle) {
    if (!node) return;
    dvec3 hpr = node->getHPR();
    hpr.z = angle;
    node->setHPR(hpr);
}

}  // namespace

void Helicopter::updateFlight(float dt) {
    sweepWipers();
    turnRotors();
    flashLight(dt);
    clampInputs();
    m_rotor_speed = dt * ROTOR_SPEED * m_collective;
    if (m_body) applyForces(m_body->getTransform());
}

void Helicopter::sweepWipers() {
    const double sweep = m_wipers_on ? jMath::linearToShock(jTimer::getTimeSecond()) : 1.0;
    const double angle = sweep * WIPER_SWEEP - WIPER_OUTER;
    setThirdAngle(m_left_wiper, angle);
    setThirdAngle(m_right_wiper, -angle);
}

void Helicopter::turnRotors() {
    m_rotor_angle = std::fmod(m_rotor_angle + m_rotor_speed, 360.0f);  // a float is precise only near 0
    const bool blurred = m_rotor_speed >= DISC_SPEED;
    enable(m_main_blades, !blurred);
    enable(m_tail_blades, !blurred);
    enable(m_main_disc, blurred);
    enable(m_tail_disc, blurred);
    const auto angle = static_cast<double>(m_rotor_angle);
    const dquat tilt = dquat::fromEulerZXY(0.0, DISC_TILT * m_roll, DISC_TILT * m_pitch);
    if (m_main_rotor) m_main_rotor->setRotation(tilt * dquat(dvec3(0.0, 0.0, -1.0), angle));
    if (m_tail_rotor) m_tail_rotor->setRotation(dquat(dvec3(1.0, 0.0, 0.0), angle));
}

/// Gives the lamp a material of its own to change. Only a material with emission gets the glow parameter.
void Helicopter::prepareLight() {
    m_anticollision_light->setSurfaceMaterialInherit(0, true);
    Material* const material = m_anticollision_light->getSurfaceMaterial(0);
    if (material && length(material->emission) > 0.0f) material->setParameter("density", {1.0f, 1.0f, 1.0f, 1.0f});
}

void Helicopter::flashLight(float dt) {
    m_light_phase += dt;
    if (m_light_phase >= 1.0f) m_light_phase -= 1.0f;
    Material* const material = m_anticollision_light ? m_anticollision_light->getSurfaceMaterial(0) : nullptr;
    if (!material || !material->getParameter("density")) return;
    const float glow = m_light_phase <= FLASH_BEGIN ? DARK : (1.0f - m_light_phase) / FLASH_LENGTH;
    material->setParameter("density", {glow, glow, glow, glow});
}

void Helicopter::clampInputs() {
    m_collective = std::clamp(m_collective, 0.0f, 1.0f);
    m_yaw = std::clamp(m_yaw, -1.0f, 1.0f);
    m_roll = std::clamp(m_roll, -MAX_ROLL, MAX_ROLL);
    m_pitch = std::clamp(m_pitch, -1.0f, 1.0f);
}

/// `place`: the body's transform at the start of the frame; its axes are used for all forces of the frame.
void Helicopter::applyForces(dmat4 place) {
    const dvec3 attitude = limitAttitude(place);
    limitVelocity(place, attitude);
    const vec3 ahead = narrow(normalize(place.getY())), left = narrow(normalize(-place.getX()));
    const vec3 up = narrow(place.getZ());
    m_body->addForce(up * (m_collective * LIFT));
    m_body->addForce(narrow(rotate(place, dvec3(m_hub_point))), ahead * (m_pitch * PITCH_FORCE));
    m_body->addForce(narrow(rotate(place, dvec3(m_side_point))), left * (m_roll * ROLL_FORCE));
    m_body->addTorque(up * (m_yaw * YAW_TORQUE));
}

/// Limits the tilts of the body and levels it about an axis whose stick is released. Returns the tilts, degrees.
dvec3 Helicopter::limitAttitude(const dmat4& place) {
    const dmat3 local = Engine::get()->getEllipsoid().getWGSTransform(place.getTranslation()).getMat3();
    dvec3 tilt = toEulerXYZ(transpose(place.getMat3()) * local);
    tilt.x = std::clamp(tilt.x, -MAX_X, MAX_X);
    tilt.y = std::clamp(tilt.y, -MAX_Y, MAX_Y);
    if (std::abs(m_roll * ROLL_FORCE) < NO_FORCE) tilt.x *= LEVELLING;
    if (std::abs(m_pitch * PITCH_FORCE) < NO_FORCE) tilt.y *= LEVELLING;
    m_body->setPreserveTransform({local * transpose(fromEulerXYZ(tilt)), place.getTranslation()});
    return tilt;
}

void Helicopter::limitVelocity(const dmat4& place, const dvec3& tilt) {
    const vec3 velocity = m_body->getLinearVelocity();
    const dmat3 to_model = transpose(place.getMat3());
    const vec3 own = narrow(to_model * dvec3(velocity));
    const float x = slowed(own.x, tilt.x, SLOWING_X, MAX_X), y = slowed(own.y, tilt.y, SLOWING_Y, MAX_Y);
    if (x == own.x && y == own.y) return;
    m_body->setLinearVelocity(narrow(place.getMat3() * dvec3(vec3(x, y, own.z))));
}
