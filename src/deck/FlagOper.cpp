// The flag's step, called once a frame by the owner of the flag.
#include "src/deck/FlagOper.h"

#include <engine/math/jMath.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include <algorithm>
#include <cmath>

#include "src/deck/Swing.h"

namespace {

constexpr double FULL_WEIGHT = 10000.0;  ///< wind speed in m/s at which only the second yaw counts

/// Angle from `forward` to `to`, degrees, counter-clockwise seen against `up`.
double signedAngle(const dvec3& forward, const dvec3& to, const dvec3& up) {
    const double angle = std::acos(std::clamp(dot(forward, to), -1.0, 1.0)) * jMath::RAD2DEG;
    return dot(cross(forward, to), up) < 0.0 ? -angle : angle;
}

dquat yawTurn(double degrees) {
    return dquat(dvec3(0.0, 0.0, 1.0), degrees);
}

/// Interpolates between two rotations about one axis, along the shorter arc.
dquat blend(const dquat& a, const dquat& b, double weight) {
    const double both = a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w, side = both < 0.0 ? -1.0 : 1.0;
    const double angle = std::acos(std::min(std::fabs(both), 1.0));
    if (angle < 1e-9) return a;
    const double from = std::sin((1.0 - weight) * angle) / std::sin(angle);
    const double to = side * std::sin(weight * angle) / std::sin(angle);
    return dquat(a.x * from + b.x * to, a.y * from + b.y * to, a.z * from + b.z * to, a.w * from + b.w * to);
}

}  // namespace

bool FlagOper::init(Node* root) {
    m_root = root;
    return root != nullptr;
}

void FlagOper::setYawBias(float degrees) {
    if (m_root) m_yaw_bias = degrees;
}

void FlagOper::update(float dt) {
    if (!m_root) {
        jLog::error("%s:%s", "FlagOper::update", "root");
        return;
    }
    // `from`: the direction that the wind blows from. `forward`: the forward axis of the unturned flag, the parent's.
    const dmat4 local = m_root->getWGSTransform();
    const vec3 wind = m_root->getWorld() ? m_root->getWorld()->getEnvironment().wind : vec3();
    const dvec3 from =
        -normalize(local.getX() * static_cast<double>(wind.x) + local.getY() * static_cast<double>(wind.y));
    const dvec3 up = local.getZ();
    const dvec3 axis = m_root->getParent() ? m_root->getParent()->getWorldTransform().getY() : dvec3(0.0, 1.0, 0.0);
    const dvec3 forward = normalize(axis - up * dot(axis, up));
    const double swung = static_cast<double>(m_angle + m_yaw_bias);
    const double near_yaw = signedAngle(forward, from, up) + swung - 90.0;
    const double far_yaw = signedAngle(local.getX(), from, up) + swung + 180.0;
    const double speed = std::hypot(static_cast<double>(wind.x), static_cast<double>(wind.y));
    if (std::isfinite(near_yaw + far_yaw + speed)) {
        m_root->setRotation(blend(yawTurn(near_yaw), yawTurn(far_yaw), std::min(speed / FULL_WEIGHT, 1.0)));
    }
    swing(m_angle, m_direction, m_speed, m_limit, dt);
}
