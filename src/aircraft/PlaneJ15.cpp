// The carrier jet: surfaces, exhaust, and forces of the controls. `update` is called each frame of manual flight.
#include "src/aircraft/PlaneJ15.h"

#include <engine/math/jMath.h>
#include <engine/physics/Body.h>
#include <engine/scene/ObjectParticles.h>
#include <engine/scene/ObjectPrefab.h>

#include <algorithm>
#include <cstdio>

#include "src/aircraft/ActionRotateSurfaceTo.h"
#include "src/kit/FlyFrame.h"

namespace {

constexpr int GROUP_A = 5, GROUP_B = 6;  ///< first positions of the surface groups; each group has every second one
constexpr int GROUP_SIZE = 6;
constexpr int HOOK = 20, LIGHT = 31, MATERIAL = 32, EXHAUST_1 = 33, EXHAUST_2 = 34;

constexpr float SPEED_FACTOR = 50.0f;                   ///< torque (Nm) and side force (N) for each m/s
constexpr vec3 TORQUE_LIMIT{1000.0f, 500.0f, 2000.0f};  ///< Nm about the right wing, the nose and the vertical
constexpr float MAX_PARTICLES = 1e6f;                   ///< per second
constexpr float DEAD_ZONE = 0.1f;                       ///< inputs up to this value count as 0

float liveInput(float input) {
    return std::abs(input) > DEAD_ZONE ? std::clamp(input, -1.0f, 1.0f) : 0.0f;
}

}  // namespace

bool PlaneJ15::init(World* world, const jString& path) {
    const ObjectPrefab* const before = m_model;
    if (!PlaneParts::init(world, path)) return false;
    if (m_model == before) return true;
    Node* const surface = getNode(MATERIAL);
    if (surface && surface->getType() == Node::MESH_STATIC) surface->asObject()->setSurfaceMaterialInherit(0, true);
    m_exhaust_1 = findEmitter(EXHAUST_1);
    m_exhaust_2 = findEmitter(EXHAUST_2);
    if (m_exhaust_2) m_exhaust_rate = static_cast<int>(std::clamp(m_exhaust_2->getSpawnRate(), 0.0f, MAX_PARTICLES));
    return true;
}

ObjectParticles* PlaneJ15::findEmitter(int position) const {
    Node* const node = getNode(position);
    return node && node->getType() == Node::PARTICLES ? static_cast<ObjectParticles*>(node) : nullptr;
}

bool PlaneJ15::update(float dt) {
    driveBody();
    updateExhaust();
    return PlaneBase::update(dt);
}

/// The effect of the surfaces grows with the speed along the nose. Each input causes a torque of input x speed x factor
/// about its axis, up to the axis's limit; a force turns the velocity toward the nose. There is no force without an
/// input beyond the dead zone or without forward speed.
void PlaneJ15::driveBody() {
    const vec3 input{liveInput(m_control_input.x), liveInput(m_control_input.y), liveInput(m_control_input.z)};
    BodyRigid* const body = m_model ? m_model->getBodyRigid() : nullptr;
    if (!body || (input.x == 0.0f && input.y == 0.0f && input.z == 0.0f)) return;
    const dmat4 place = body->getTransform();
    const vec3 nose = narrow(place.getY());
    const vec3 velocity = body->getLinearVelocity();
    const float speed = dot(velocity, nose);
    const float grip = speed * SPEED_FACTOR;
    if (grip <= 0.0f) return;
    const vec3 torque{std::clamp(input.x * grip, -TORQUE_LIMIT.x, TORQUE_LIMIT.x),
                      std::clamp(input.y * grip, -TORQUE_LIMIT.y, TORQUE_LIMIT.y),
                      std::clamp(input.z * grip, -TORQUE_LIMIT.z, TORQUE_LIMIT.z)};
    body->addTorque(narrow(rotate(place, dvec3(torque))));
    body->addForce((nose * speed - velocity) * SPEED_FACTOR);
}

void PlaneJ15::updateExhaust() {
    const auto rate = static_cast<float>(m_exhaust_rate * jMath::getFadeIn(m_thrust, 0.0, 0.1));
    if (m_exhaust_1) m_exhaust_1->setSpawnRate(rate);
    if (m_exhaust_2) m_exhaust_2->setSpawnRate(rate);
}

void PlaneJ15::deflectSurface(int position, float angle) {
    Node* const node = getNode(position);
    if (!node || position >= m_axes.size()) return;
    std::printf("id:%d\n", position);
    std::printf("m_surfs_node.count:%d\n", m_nodes.size());
    const dquat rotation_at =
        dquat::fromEulerZXY(dvec3(m_close_rots[position])) * dquat(dvec3(m_axes[position]), angle);
    node->setTransform({rotation_at, m_initial_transforms[position].getTranslation()});
}

void PlaneJ15::setFlightState(const FlyFrame* state) {
    for (int i = 0; i < GROUP_SIZE; ++i) deflectSurface(GROUP_A + 2 * i, -state->wing1);
    for (int i = 0; i < GROUP_SIZE; ++i) deflectSurface(GROUP_B + 2 * i, -state->wing2);
    placeAt(*state);
}

void PlaneJ15::flyPose() {
    poseNodes(m_close_rots);
    m_standing = false;
}

void PlaneJ15::standPose() {
    poseNodes(m_open_rots);
    m_standing = true;
    m_thrust = 0.0f;
    if (getNode(HOOK) && HOOK < m_close_rots.size()) poseNode(HOOK, m_close_rots[HOOK]);
    std::printf("%s\n", "PlaneJ15::standPose");
}

void PlaneJ15::stopPose() {
    m_thrust = 0.0f;
    openUndercarriageNow();
    std::printf("%s \n", "PlaneJ15::stopPose");
}

void PlaneJ15::toggleLight() {
    if (Node* const light = getNode(LIGHT)) light->setEnabled(!light->isEnabled());
}
