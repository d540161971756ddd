// The ship's step: buoyancy, control, propulsion and drag. Called by the logic's `ships_auto_move`, before the
// physics step.
#include "common/ship/Ship.h"

#include <engine/core/Engine.h>
#include <engine/input/ControlApp.h>
#include <engine/math/jMath.h>
#include <engine/memory/Allocator.h>
#include <engine/scene/ObjectPrefab.h>

#include <cmath>

#include "common/ship/Buoyancy.h"
#include "common/ship/Wakes.h"

namespace {

constexpr float DRIVE_FORCE = 300000.0f;      ///< N
constexpr float LINEAR_DAMPING_SCALE = 0.1f;  ///< per second, at full immersion
const jString WAKES = "wakes";

Node* findWakes(Object& object) {
    if (object.getType() != Node::PREFAB) return object.getChildByName(WAKES, false);
    return static_cast<ObjectPrefab&>(object).getRoot()->getChildByName(WAKES, true);
}

float axis(const ControlApp& keys, int more, int less) {
    return (keys.isKeyPress(more) ? 1.0f : 0.0f) - (keys.isKeyPress(less) ? 1.0f : 0.0f);
}

}  // namespace

Ship::Ship(Object* object, ObjectOcean* ocean) : m_object(object) {
    reset();
    m_body = object->getBodyRigid();
    if (m_body) {
        m_buoyancy = jNew<Buoyancy>({"..\\common\\ship\\Ship", "Ship::Ship"}, m_body, ocean);
        const Shape* const hull = m_body->getShape(0);
        if (hull && hull->getType() == Shape::BOX) {
            m_hull_volume = hull->getSize().x * hull->getSize().y * hull->getSize().z;
        }
    }
    Node* const wakes = findWakes(*object);
    if (wakes) m_wakes = jNew<Wakes>({"..\\common\\ship\\Ship", "Ship::Ship"}, wakes, this, ocean);
}

Ship::~Ship() {
    jDelete(m_buoyancy);
    jDelete(m_wakes);
}

void Ship::reset() {
    m_control = {};
    m_stored_velocity = {};
    m_hull_drag = 4000.0f;
    m_angular_damping_scale = 1.2f;
    m_reverse_thrust = 2000.0f;
    m_pitch_torque = 2000.0f;
    m_yaw_torque = 5400.0f;
    m_roll_torque = 3000.0f;
    m_forward_thrust = 1000.0f;
    m_control_mode = NO_INPUT;
    m_drive_angle = 0.0f;
    if (m_buoyancy) m_buoyancy->reset();
    if (m_wakes) m_wakes->reset();
}

vec3 Ship::getVelocity() const {
    return m_body ? m_body->getLinearVelocity() : m_stored_velocity;
}

void Ship::updateWakes() {
    if (m_object->isEnabled() && m_wakes) m_wakes->update();
}

void Ship::clearWakes() {
    if (m_wakes) m_wakes->clearParticles();
}

void Ship::update() {
    if (!m_object->isEnabled()) return;
    if (m_buoyancy) m_buoyancy->update();
    updateControl();
    if (!m_body) return;
    const float submerged = m_buoyancy->getSubmergedRatio();
    if (std::isnan(submerged)) return;  // no sample points: no forces
    const float hold = 0.5f - std::fabs(0.5f - submerged);
    m_control = m_control * (hold * hold);
    const dmat4& axes = m_body->getTransform();
    drive(axes);
    steer(axes);
    drag(submerged);
    m_body->setAngularDamping(submerged * m_angular_damping_scale);
    m_body->setLinearDamping(submerged * LINEAR_DAMPING_SCALE);
}

void Ship::updateControl() {
    m_control = {};
    if (m_control_mode == KEYBOARD) {
        const ControlApp& keys = *Engine::get()->getApp()->getControl();
        m_control.x = axis(keys, ControlApp::KEY_UP, ControlApp::KEY_DOWN);
        m_control.y = axis(keys, ControlApp::KEY_RIGHT, ControlApp::KEY_LEFT);
    } else if (m_control_mode == STEADY) {
        m_control.x = 1.0f;
    }
    m_control = normalize(m_control);
}

void Ship::drive(const dmat4& axes) {
    const double angle = static_cast<double>(getDriveAngle()) * jMath::DEG2RAD;
    if (angle != 0.0) {
        const dvec3 way = normalize(axes.getY() * std::sin(angle) + axes.getX() * std::cos(angle));
        m_body->addForce(narrow(way) * DRIVE_FORCE);
    }
    const float thrust = m_hull_volume * (m_control.x < 0.0f ? m_reverse_thrust : m_forward_thrust);
    m_body->addForce(narrow(axes.getY()) * (m_control.x * thrust));
}

void Ship::steer(const dmat4& axes) {
    m_body->addTorque(narrow(axes.getY()) * (-m_control.y * m_roll_torque));
    m_body->addTorque(narrow(axes.getZ()) * (m_control.y * m_yaw_torque));
    m_body->addTorque(narrow(axes.getX()) * (m_control.x * m_pitch_torque));
}

/// Drag of the water on the hull; the force is level.
void Ship::drag(float submerged) {
    const vec3 velocity = m_body->getLinearVelocity();
    const vec3 against = normalize(velocity) * (-dot(velocity, velocity) * submerged * m_hull_drag);
    const vec3 up =
        narrow(Engine::get()->getEllipsoid().getWGSTransform(m_body->getTransform().getTranslation()).getZ());
    m_body->addForce(against - up * dot(against, up));
}
