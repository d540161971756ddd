// Control nodes, poses, wheels and visible damage of the fixed-wing aircraft. Set up once by `init`; the other
// operations are called when the logic changes a pose or the damage.
#include "src/aircraft/PlaneParts.h"

#include <engine/core/Engine.h>
#include <engine/physics/Body.h>
#include <engine/scene/ObjectParticles.h>
#include <engine/scene/ObjectPrefab.h>

#include <cstdio>

#include "src/aircraft/ActionRotateSurfaceTo.h"
#include "src/kit/FlyFrame.h"

namespace {

constexpr float FIRE_TORQUE = 300000.0f;  ///< Nm

float randomSign() {
    return Engine::get()->getRandom().getFloat(-1.0f, 1.0f) < 0.0f ? -1.0f : 1.0f;
}

}  // namespace

bool PlaneParts::init(World* world, const jString& path) {
    const ObjectPrefab* const before = m_model;
    if (!PlaneBase::init(world, path)) return false;
    if (m_model == before) return true;
    collectNodes();
    setUpPhysics();
    return true;
}

void PlaneParts::setAircraftInfo(AirCraftInfo info) {
    assignAircraftInfo(info);
    m_node_names.clear();
    m_open_rots.clear();
    m_close_rots.clear();
    m_axes.clear();
    m_rot_node_num = 0;
    for (const AirCraftPartInfo& part : m_info.parts) {
        m_node_names.append(part.node_name);
        m_open_rots.append(part.open_rot);
        m_close_rots.append(part.close_rot);
        m_axes.append(part.axis);
        if (part.type == PART_ROTATION) ++m_rot_node_num;
    }
    std::printf("%s::setAircraftInfo\n", m_class_name);
    std::printf("m_rot_node_num:%d\n", m_rot_node_num);
}

void PlaneParts::collectNodes() {
    m_nodes.clear();
    m_initial_transforms.clear();
    for (const jString& name : m_node_names) {
        if (Node* const node = m_model->getNodeByName(name)) {
            m_nodes.append(node);
            m_initial_transforms.append(node->getTransform());
        } else {
            std::printf("%s no find\n", name.c_str());
            m_initial_transforms.append(dmat4());
        }
    }
}

void PlaneParts::setUpPhysics() {
    m_wheels.clear();
    m_model->moveBodyFromRoot();
    if (!m_physics_enabled) {
        if (Body* const body = m_model->getBody()) body->setEnabled(false);
        std::printf("physics close\n");
        return;
    }
    for (Node* node : m_model->getNodes()) node->setCollider(false);
    findWheels();
}

void PlaneParts::findWheels() {
    const Body* const body = m_model->getBody();
    if (!body) return;
    constexpr const char* WHEELS[][2] = {
        {"F_wheel_pos", "f_wheel"}, {"L_wheel_pos", "l_wheel"}, {"R_wheel_pos", "r_wheel"}};
    for (const auto& [node_name, shape_name] : WHEELS) {
        Node* const node = m_model->getNodeByName(node_name);
        const int shape = body->findShape(shape_name);
        if (node && shape != -1) m_wheels[node] = shape;
    }
}

Node* PlaneParts::getNode(int position) const {
    return position >= 0 && position < m_nodes.size() ? m_nodes[position] : nullptr;
}

void PlaneParts::poseNode(int position, const vec3& hpr) {
    if (Node* const node = getNode(position)) node->setTransform(posedTransform(hpr, m_initial_transforms[position]));
}

void PlaneParts::poseNodes(const jVector<vec3>& rotations) {
    for (int i = 0; i < m_rot_node_num; ++i) poseNode(i, rotations[i]);
}

/// A state's heading is measured from +X, but a model faces +Y; a state's roll is positive with the left wing down.
void PlaneParts::placeAt(const FlyFrame& state) {
    const dquat attitude = dquat::fromEulerZXY(state.heading - 90.0, state.pitch, -state.roll);
    if (m_model) m_model->setTransform(m_base_transform * dmat4(attitude, state.pivot));
}

void PlaneParts::enableLook(const char* name, bool enabled) {
    Node* const node = m_model ? m_model->getNodeByName(name) : nullptr;
    if (node) node->setEnabled(enabled);
}

void PlaneParts::showDestroyed() {
    m_damage_state = DAMAGE_DESTROYED;
    enableLook("destroyed", true);
    enableLook("normal", false);
}

void PlaneParts::resetDamage() {
    m_actions.removeAllActions();
    standPose();
    m_thrust = 0.0f;
    enableLook("fire", false);
    enableLook("destroyed", false);
    enableLook("normal", true);
    if (Body* const body = m_model ? m_model->getBody() : nullptr) body->setEnabled(true);
    m_damage_state = DAMAGE_NONE;
}

void PlaneParts::resetToBase() {
    resetAt(m_base_transform);
}

void PlaneParts::resetAt(const dmat4& world) {
    resetDamage();
    setWorldTransform(world);
}

bool PlaneParts::catchFire() {
    m_thrust = 0.0f;
    if (!m_model) return true;
    if (BodyRigid* const body = m_model->getBodyRigid()) {
        const dmat4 place = body->getTransform();
        body->addTorque(narrow(place.getZ()) * (FIRE_TORQUE * randomSign()));
        body->addTorque(narrow(place.getX()) * (FIRE_TORQUE * randomSign()));
    }
    enableLook("fire", true);
    Node* const effect = m_model->getNodeByName("fire_spe");
    if (effect && effect->getType() == Node::PARTICLES) static_cast<ObjectParticles*>(effect)->play();
    return true;
}
