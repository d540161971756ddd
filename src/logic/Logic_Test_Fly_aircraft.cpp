// The aircraft: chosen and placed in `init`, put back on reset, its handlers; its own step runs last in the frame, in
// manual flight.
#include <engine/memory/Allocator.h>
#include <engine/scene/ObjectPrefab.h>

#include <cstdio>

#include "src/aircraft/AppData_AirCraft.h"
#include "src/aircraft/PlaneJ15.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr const char* TYPE_JET = "PlaneJ15";

}  // namespace

bool Logic_Test_Fly::is_jet() const {
    return m_jet && m_aircraft_type == TYPE_JET;
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
    if (m_aircraft_type == TYPE_JET) init_jet(m_start_transform);
}

void Logic_Test_Fly::init_jet(const dmat4& start) {
    const AirCraftInfo info = AppData_AirCraft::get().getAircraftInfo();
    jDelete(m_jet);
    m_jet = jNew<PlaneJ15>({"src\\logic\\Logic_Test_Fly", "Logic_Test_Fly::init_aircraft"});
    m_aircraft = m_jet;
    m_aircraft->setAircraftInfo(info);
    if (!m_aircraft->init(m_world, info.path)) return;

    ObjectPrefab* const model = m_aircraft->getModel();
    if (Body* const body = model->getBody()) body->setContactCallback(&m_hit_callback);
    model->setName("plane_j15");
    m_aircraft_node = model;
    std::printf("aircraft name:%s\n", model->getName().c_str());
    m_aircraft->setBaseTransform(start);
    m_aircraft->setWorldTransform(start);
    m_head_transforms.append(dmat4());
    if (const Node* const head = model->getNodeByName("cam_first_player")) m_head_transforms[0] = head->getTransform();
}

int Logic_Test_Fly::getControlCount() const {
    return m_jet ? m_jet->getNumNodes() : 0;
}

void Logic_Test_Fly::update_aircraft(float dt) {
    if (m_aircraft && m_fly_mode == MANUAL_FLY) m_aircraft->update(dt);
}

void Logic_Test_Fly::reset_plane() {
    m_destroyed = false;
    const Node* const start = find_node(m_airport_node);
    if (start && is_jet()) m_aircraft->resetAt(start->getWorldTransform());
}

void Logic_Test_Fly::on_open_undercarriage(const GUIEventMouse&, UIElement*) {
    if (!is_jet()) return;
    m_jet->setUndercarriage(true, false);
    m_jet->openUndercarriageNow();
}

void Logic_Test_Fly::on_close_undercarriage(const GUIEventMouse&, UIElement*) {
    if (!is_jet()) return;
    m_jet->setUndercarriage(false, false);
    m_jet->closeUndercarriageNow();
}

/// A touch of the hull is told from one of the wheels and changes nothing: damage is shown by whoever decides on it.
void Logic_Test_Fly::on_plane_hit(Body* body, int shape) {
    if (!body->isEnabled() || shape >= body->getNumShapes() || m_destroyed) return;
    const Shape* const touched = body->getShape(shape);
    [[maybe_unused]] const bool hull = touched && touched->getName().find("body_box") != jString::npos;
}
