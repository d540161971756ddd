// Lifetime and frame of the logic: the factory, the order of initialisation, the order of a frame, reset and release.
// The engine calls `init` once, then `update` each frame before the physics step.
#include "src/logic/Logic_Test_Fly.h"

#include <engine/memory/Allocator.h>
#include <engine/scene/Object.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include "common/ship/Ship.h"
#include "src/aircraft/Helicopter.h"
#include "src/aircraft/PlaneExtra300s.h"
#include "src/aircraft/PlaneJ15.h"
#include "src/kit/UdpDataKit.h"
#include "src/logic/AppData.h"
#include "src/logic/Target.h"

extern "C" LogicBase* CreateLogic(World* world, CameraControl* camera) {
    return jNew<Logic_Test_Fly>({"src\\logic\\Logic_Test_Fly", "CreateLogic"}, world, camera);
}

extern "C" const int LogicInterfaceVersion = LOGIC_INTERFACE_VERSION;

Logic_Test_Fly::Logic_Test_Fly(World* world, CameraControl* camera) : LogicBase(world, camera) {
    m_hit_callback.handlers.append([this](Body* body, int shape) { on_plane_hit(body, shape); });
    attach();
}

/// Disconnects the logic from all objects that outlive it.
Logic_Test_Fly::~Logic_Test_Fly() {
    detach();
    disconnect_triggers();
    if (m_aircraft_node && m_aircraft_node->getBody()) m_aircraft_node->getBody()->setContactCallback(nullptr);
    Logic_Test_Fly::release();
    for (const Missile& missile : m_missiles) remove_missile(missile);
    release_tracks();
    jDelete(m_jet);
    jDelete(m_aerobatic);
    if (m_aircraft_node) m_world->removeNode(m_aircraft_node);
    jDelete(m_helicopter);
    jDelete(m_ship);
    AppData::get().close();
}

jString Logic_Test_Fly::getWorldPath() const {
    return "data/DEMO_PROJECT/DEMO_PROJECT.world";
}

bool Logic_Test_Fly::init() {
    if (!LogicBase::init()) return false;
    jLog::message("%s start! \n", "Logic_Test_Fly::init");
    init_config();
    init_environment();
    init_aircraft();
    update_third_view();
    init_ui();
    init_ships();
    init_fresnel_light(m_ship ? m_ship->getObject() : nullptr);
    load_tracks();
    prefab_cache();
    init_udp();
    default_setting();
    init_triggers();
    jLog::message("%s end!\n", "Logic_Test_Fly::init");
    return true;
}

void Logic_Test_Fly::update(float dt) {
    update_sliders();
    if (is_slider_held()) return;  // while a slider is dragged, the rest of the frame is skipped
    receive_data();
    move_forward(dt);
    m_timer_manager.update(dt);
    update_ui_pos();
    local_data_update_fly();
    m_fresnel_light.updateScale();
    m_action_manager.update(dt);
    send_udp();
    update_input();
    update_aircraft(dt);
    m_fresnel_light.blink(dt);
    select_lamp();
    update_helicopter(dt);
}

void Logic_Test_Fly::release() {
    jDelete(m_receiver);
    m_receiver = nullptr;
    m_recv_ready = false;
    jDelete(m_sender);
    m_sender = nullptr;
    m_send_ready = false;
    while (!m_targets.empty()) m_targets.erase(std::prev(m_targets.end()));  // the world removes its last nodes fastest
    m_target_nodes_stale = true;
}

void Logic_Test_Fly::render() {}
void Logic_Test_Fly::onMouseDown(const GUIEventMouse&, IApp*) {}
void Logic_Test_Fly::onMouseUp(const GUIEventMouse&, IApp*) {}
void Logic_Test_Fly::onMouseMove(const GUIEventMouse&, IApp*) {}
void Logic_Test_Fly::onKeyPress(const GUIEventKey&, IApp*) {}

void Logic_Test_Fly::processMsg(UiMsg* msg) {
    if (msg->id == 654321) adjust_geo_rotation_forward();
    MsgNode::processMsg(msg);
}

void Logic_Test_Fly::reset() {
    m_fly_stopwatch.stop();
    local_data_reset_fly();
    end_missiles();
    end_glides();
    m_action_manager.removeAllActions();
    reset_plane();
    clear_all_particles();
    fire(m_signal_2_reset, 25);
    fire(m_signal_2_reset, 26);
}
