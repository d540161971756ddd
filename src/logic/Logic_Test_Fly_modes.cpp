// Flight modes and the manual push: set by the configuration at the end of `init`, by the panel's buttons and by the
// host application. The frame calls `move_forward` in every mode.
#include <engine/scene/Object.h>

#include "src/aircraft/PlaneBase.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr double FORWARD_SPEED = 30.0;  ///< metres per second

}  // namespace

void Logic_Test_Fly::set_fly_mode(FLY_MODE mode) {
    m_fly_mode = mode;
    if (mode == DATA_FLY) {
        set_fly_mode_text("数据飞行");
        m_fly_stopwatch.stop();
        local_data_reset_fly();
        if (!m_recv_ready) init_udp();
    } else if (mode == MANUAL_FLY) {
        show_warning(false);
        set_fly_mode_text("手动飞行");
    } else if (mode == AUTO_FLY) {
        show_warning(false);
        set_fly_mode_text("自动飞行");
        reset();
        local_data_start_fly();
    }
}

void Logic_Test_Fly::change_flymode() {
    set_fly_mode(static_cast<FLY_MODE>((std::int64_t{m_fly_mode} + 1) % 3));
}

void Logic_Test_Fly::move_forward(float dt) {
    if (!m_moving_forward || !m_aircraft_node) return;
    dvec3 position, scale;
    dquat rotation;
    decomposeTransform(m_aircraft_node->getWorldTransform(), position, rotation, scale);
    m_aircraft_node->setWorldPosition(position + rotation * dvec3(0.0, 1.0, 0.0) * (FORWARD_SPEED * dt));
}

void Logic_Test_Fly::on_move_foward(const GUIEventMouse&, UIElement*) {
    m_moving_forward = !m_moving_forward;
}

void Logic_Test_Fly::back_to_start() {
    m_moving_forward = false;
    const Node* const start = find_node(m_airport_node);
    if (start && m_aircraft) m_aircraft->setWorldTransform(start->getWorldTransform());
}

void Logic_Test_Fly::on_reset_postion(const GUIEventMouse&, UIElement*) {
    back_to_start();
}
