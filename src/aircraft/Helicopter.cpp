// The helicopter's model, and the effect of the keys on collective and stick. The logic calls `updateKeys` each frame,
// before the flight step.
#include "src/aircraft/Helicopter.h"

#include <engine/core/Engine.h>
#include <engine/input/ControlApp.h>
#include <engine/memory/Allocator.h>
#include <engine/physics/Body.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr vec3 HUB{0.0f, 0.0f, 4.0f}, SIDE{0.0f, 2.0f, 4.0f};   ///< model frame, metres
constexpr float LINEAR_DAMPING = 0.1f, ANGULAR_DAMPING = 3.5f;  ///< per second
constexpr float NO_COLLECTIVE = 1e-6f;
constexpr float KEY_RATE = 3.0f;
constexpr float COLLECTIVE_STEP = 0.01f, STICK_STEP = 0.5f, PEDAL_STEP = 0.05f;  ///< times the key rate, per second
constexpr float STICK_RELEASE = 0.05f;  ///< factor per frame; for roll and yaw times the frame time in seconds

void setFinite(float& value, float to) {
    if (std::isfinite(to)) value = to;
}

/// Changes an input by two opposite keys; without a key multiplies it by `release`.
void steer(const ControlApp& control, int more, int less, float step, float release, float& input) {
    if (control.isKeyPress(more))
        input += step;
    else if (control.isKeyPress(less))
        input -= step;
    else
        input *= release;
}

}  // namespace

Helicopter::Helicopter(World* world, const jString& path, bool body_enabled)
    : m_world(world), m_body_enabled(body_enabled) {
    m_model = jNew<ObjectPrefab>({"src\\aircraft\\Helicopter", "Helicopter::Helicopter"}, path);
    if (!world || !m_model->isLoaded()) {
        jLog::error("%s: \"%s\" can not be loaded", "Helicopter::Helicopter", path.c_str());
        jDelete(m_model);
        m_model = nullptr;
        return;
    }
    world->addChild(m_model);
    m_body = m_model->getBodyRigid();
    if (m_body) {
        if (!m_body_enabled) m_body->setEnabled(false);
        m_hub_point = HUB - m_body->getCenterOfMass();
        m_side_point = SIDE - m_body->getCenterOfMass();
    }
    findNodes();
}

Helicopter::~Helicopter() {
    if (m_model) m_world->removeNode(m_model);
}

void Helicopter::findNodes() {
    const auto find = [this](const char* name) { return m_model->getRoot()->getChildByName(name, true); };
    m_main_rotor = find("wing");
    m_main_blades = find("wing_mesh");
    m_main_disc = find("wing_plane");
    m_tail_rotor = find("tail");
    m_tail_blades = find("tail_mesh");
    m_tail_disc = find("tail_plane");
    m_right_wiper = find("wiper_right");
    m_left_wiper = find("wiper_left");
    m_front_light = find("front_proj");
    Node* const lamp = find("anticollision_tail_light");
    if (!lamp || lamp->getType() != Node::MESH_STATIC) return;
    m_anticollision_light = lamp->asObject();
    prepareLight();
}

void Helicopter::setRotorSpeed(float degrees) {
    setFinite(m_rotor_speed, degrees);
}

void Helicopter::setSurfaceHeight(float metres) {
    setFinite(m_surface_height, metres);
}

void Helicopter::setCollectiveDecay(float factor) {
    setFinite(m_collective_decay, factor);
}

void Helicopter::setWorldTransform(const dmat4& world) {
    m_start_transform = world;
    if (m_model) m_model->setWorldTransform(world);
    if (m_body) std::printf("body name is%s\n", m_body->getName().c_str());
    setPhysics();
}

void Helicopter::setPhysics() {
    if (!m_body) return;
    m_body->setLinearDamping(LINEAR_DAMPING);
    m_body->setAngularDamping(ANGULAR_DAMPING);
    m_physics_set = true;
}

void Helicopter::toggleLight() {
    if (m_front_light) m_front_light->setEnabled(!m_front_light->isEnabled());
}

/// After the keys are released, pitch decays by a fixed factor per frame, roll and yaw drop almost to 0 at once.
void Helicopter::updateKeys(float dt) {
    const ControlApp& control = *Engine::get()->getApp()->getControl();
    const float k = KEY_RATE * dt;
    updateCollective(control, COLLECTIVE_STEP * k);
    if (m_body) m_body->setFreezable(std::abs(m_collective) < NO_COLLECTIVE);
    steer(control, 'w', 's', STICK_STEP * k, STICK_RELEASE, m_pitch);
    steer(control, 'a', 'd', STICK_STEP * k, STICK_RELEASE * dt, m_roll);
    steer(control, 'q', 'e', PEDAL_STEP * k, STICK_RELEASE * dt, m_yaw);
}

void Helicopter::updateCollective(const ControlApp& control, float step) {
    if (control.isKeyPress('r')) {
        if (m_collective < -NO_COLLECTIVE) m_collective = 0.0f;
        m_collective = std::min(m_collective + step, 1.0f);
    } else if (control.isKeyPress('f')) {
        m_collective = std::max(m_collective - step, 0.0f);
    } else {
        m_collective *= m_collective_decay;
    }
}
