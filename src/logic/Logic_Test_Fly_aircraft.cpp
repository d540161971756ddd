// The aircraft: selected and placed in `init`, placed again on reset; the handlers of its body and its effects. Its own
// step runs last in the frame, in manual flight.
#include <engine/memory/Allocator.h>
#include <engine/scene/ObjectParticles.h>
#include <engine/scene/ObjectPrefab.h>

#include <cstdio>

#include "src/aircraft/AppData_AirCraft.h"
#include "src/aircraft/HeliEffectsKit.h"
#include "src/aircraft/Helicopter.h"
#include "src/aircraft/PlaneExtra300s.h"
#include "src/aircraft/PlaneJ15.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr const char* TYPE_JET = "PlaneJ15";
constexpr const char* TYPE_HELICOPTER = "Helicopter";
constexpr const char* TYPE_AEROBATIC = "extra300s";

constexpr MemTag TAG{"src\\logic\\Logic_Test_Fly", "Logic_Test_Fly::init_aircraft"};

const jString PILOT_EYE = "cam_first_player";

/// Reads the local transform of a node of the model; false, with `place` unchanged, when there is no such node.
bool readPlace(ObjectPrefab& model, const jString& name, dmat4& place) {
    const Node* const node = model.getNodeByName(name);
    if (node) place = node->getTransform();
    return node != nullptr;
}

/// The start node's transform, moved and turned by the configuration's offsets, in the node's frame.
dmat4 offsetStart(const dmat4& start) {
    dvec3 position, scale;
    dquat rotation;
    decomposeTransform(start, position, rotation, scale);
    const AppData_AirCraft& data = AppData_AirCraft::get();
    position += rotation * data.getSrcPosOffset();
    return composeTransform(position, rotation * dquat::fromEulerZXY(data.getSrcRotDeflection()), scale);
}

}  // namespace

bool Logic_Test_Fly::is_jet() const {
    return m_jet && m_aircraft_type == TYPE_JET;
}

bool Logic_Test_Fly::is_aerobatic() const {
    return m_aerobatic && m_aircraft_type == TYPE_AEROBATIC;
}

bool Logic_Test_Fly::is_helicopter() const {
    return m_helicopter && m_helicopter->getModel() && m_aircraft_type == TYPE_HELICOPTER;
}

void Logic_Test_Fly::init_aircraft() {
    const Node* const start = find_node(m_airport_node);
    if (!start) {
        std::printf("can not find %s\n", m_airport_node.c_str());
        return;
    }
    std::printf("start node is %s\n", m_airport_node.c_str());
    m_start_transform = start->getWorldTransform();

    AppData_AirCraft& data = AppData_AirCraft::get();
    data.setConfigPath(m_aircraft_path);
    data.open();
    m_aircraft_type = data.getType();
    std::printf("m_aircraft_type is %s:\n", m_aircraft_type.c_str());
    if (m_aircraft_type == TYPE_JET) init_jet();
    if (m_aircraft_type == TYPE_HELICOPTER) init_helicopter();
    if (m_aircraft_type == TYPE_AEROBATIC) init_aerobatic();
}

bool Logic_Test_Fly::init_plane(PlaneBase* plane, const jString& name) {
    m_aircraft = plane;
    const AirCraftInfo info = AppData_AirCraft::get().getAircraftInfo();
    plane->setAircraftInfo(info);
    if (!plane->init(m_world, info.path)) return false;
    ObjectPrefab* const model = plane->getModel();
    if (Body* const body = model->getBody()) body->setContactCallback(&m_hit_callback);
    model->setName(name);
    m_aircraft_node = model;
    std::printf("aircraft name:%s\n", model->getName().c_str());
    m_head_transforms.append(dmat4());
    return true;
}

void Logic_Test_Fly::place_plane() {
    m_aircraft->setBaseTransform(m_start_transform);
    m_aircraft->setWorldTransform(m_start_transform);
    register_object(m_aircraft_node);
}

void Logic_Test_Fly::init_jet() {
    m_jet = jNew<PlaneJ15>(TAG);
    if (!init_plane(m_jet, "plane_j15")) return;
    readPlace(*m_jet->getModel(), PILOT_EYE, m_head_transforms[0]);
    place_plane();
}

void Logic_Test_Fly::init_aerobatic() {
    std::printf("extra300s init start\n");
    m_aerobatic = jNew<PlaneExtra300s>(TAG);
    if (!init_plane(m_aerobatic, "extra300s")) return;
    const bool has_eye = readPlace(*m_aerobatic->getModel(), PILOT_EYE, m_head_transforms[0]);
    if (has_eye) m_aerobatic->setCameraTransform(m_head_transforms[0]);
    std::printf("extra300s cam_first_player %s live\n", has_eye ? "is" : "not");
    m_start_transform = offsetStart(m_start_transform);
    place_plane();
}

void Logic_Test_Fly::init_helicopter() {
    m_helicopter = jNew<Helicopter>(TAG, m_world, AppData_AirCraft::get().getPath());
    ObjectPrefab* const model = m_helicopter->getModel();
    if (!model) return;
    m_helicopter->setWorldTransform(m_start_transform);
    model->setEnabled(true);
    register_object(model);
    const std::pair<const char*, dmat4*> places[] = {
        {"dl_0", &m_heli_places.left[0]},        {"dl_1", &m_heli_places.left[1]},
        {"dl_2", &m_heli_places.left[2]},        {"dr_0", &m_heli_places.right[0]},
        {"dr_1", &m_heli_places.right[1]},       {"dr_2", &m_heli_places.right[2]},
        {"sonar", &m_heli_places.sonar},         {"winch", &m_heli_places.winch},
        {"deflector", &m_heli_places.deflector}, {PILOT_EYE.c_str(), &m_heli_places.eye}};
    for (const auto& [name, place] : places) readPlace(*model, name, *place);
    if (!m_heli_effects.init(m_helicopter)) return;
    m_heli_effects.registerEffects({[this](Node* effect, bool shown) {
        if (!effect) return;
        fire(m_signal_6_rotor_wash, effect, shown);
        m_deflected.append(effect);
    }});
}

void Logic_Test_Fly::register_object(Object* object) {
    m_objects.append(object);
}

int Logic_Test_Fly::getControlCount() const {
    if (m_jet) return m_jet->getNumNodes();
    return m_aerobatic ? m_aerobatic->getNumNodes() : 0;
}

Object* Logic_Test_Fly::getModel() const {
    return is_helicopter() ? m_helicopter->getModel() : m_aircraft_node;
}

void Logic_Test_Fly::update_aircraft(float dt) {
    if (m_aircraft && m_fly_mode == MANUAL_FLY) m_aircraft->update(dt);
}

void Logic_Test_Fly::reset_plane() {
    m_destroyed = false;
    const Node* const start = find_node(m_airport_node);
    if (!start) return;
    if (is_jet()) m_aircraft->resetAt(start->getWorldTransform());
    if (is_aerobatic()) m_aircraft->resetAt(m_start_transform);
    if (!is_helicopter()) return;
    m_helicopter->setCollectiveDecay(1.0f);
    if (BodyRigid* const body = m_helicopter->getBody()) {
        body->setLinearVelocity({});
        body->setAngularVelocity({});
    }
}

/// Finds whether the hull or a wheel has touched. Deliberately without effect: damage is set elsewhere.
void Logic_Test_Fly::on_plane_hit(Body* body, int shape) {
    if (!body->isEnabled() || shape >= body->getNumShapes() || m_destroyed) return;
    const Shape* const touched = body->getShape(shape);
    [[maybe_unused]] const bool hull = touched && touched->getName().find("body_box") != jString::npos;
}

void Logic_Test_Fly::on_plane_destory(Action*) {
    m_destroyed = true;
    if (m_aircraft) m_aircraft->showDestroyed();
}

void Logic_Test_Fly::update_deflector(Node* node) {
    if (!node || node->getType() != Node::PARTICLES) return;
    const dmat4 frame = is_helicopter() ? m_helicopter->getModel()->getWorldTransform() : dmat4();
    dmat4& deflector = m_heli_places.deflector;
    deflector.t.z = (inverse(frame) * node->getWorldTransform()).t.z;
    auto* const particles = static_cast<ObjectParticles*>(node);
    if (particles->getNumDeflectors() > 0) particles->setDeflector(0, frame * deflector);
}

/// Part of the helicopter's frame: after its flight step, before its effects are placed.
void Logic_Test_Fly::update_deflectors() {
    for (Node* effect : m_deflected) update_deflector(effect);
}
