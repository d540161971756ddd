// Keys and mouse: polled each frame before the aircraft's own step, and received as events between frames. Picking of
// objects along a segment: used each frame by the terrain feedback to find the object under the aircraft.
#include <engine/core/Clock.h>
#include <engine/core/Engine.h>
#include <engine/input/ControlApp.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include <cstdio>
#include <cstdlib>
#include <span>

#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr int VIEW_KEYS[] = {ControlApp::KEY_F1, ControlApp::KEY_F5, ControlApp::KEY_F6,
                             ControlApp::KEY_F2, ControlApp::KEY_F3, ' '};  ///< the first key changes the view
constexpr int SPEED_KEYS[] = {'1', '2', '3', '4', '5'};
constexpr int SPEEDS[] = {10, 200, 1000, 10000, 10000};  ///< m/s
constexpr int LEVEL_KEY[] = {ControlApp::KEY_ENTER};
constexpr double ZOOM_OUT = 1.1, ZOOM_IN = 0.9;  ///< factor per frame
constexpr float HEAD_STEP = 5.0f;
constexpr double WHEEL_NOTCH = 120.0;

/// Consumes the first key of a list that was clicked this frame and returns its index; -1 when none was clicked.
int takeClick(ControlApp& control, std::span<const int> chain) {
    for (std::size_t i = 0; i < chain.size(); ++i) {
        if (!control.isKeyClick(chain[i])) continue;
        control.clearKey(chain[i]);
        return static_cast<int>(i);
    }
    return -1;
}

bool canBeHit(const Node& node) {
    return node.isActive() && node.isCollider();
}

/// The nearest hit so far; at equal distances the earlier one is kept.
class NearestHit {
public:
    NearestHit(const dvec3& from, const dvec3& to) : m_from(from), m_to(to) {}
    Object* getObject() const { return m_object; }
    const dvec3& getPoint() const { return m_point; }

    void test(Object& candidate) {
        const dmat4 to_local = inverse(candidate.getWorldTransform());
        const dvec3 from = to_local * m_from;
        const dvec3 to = to_local * m_to;
        dvec3 hit;
        for (int i = 0; i < candidate.getNumSurfaces(); ++i) {
            if (candidate.getIntersection(from, to, i, hit)) keep(candidate, candidate.toWorld(hit));
        }
    }

private:
    void keep(Object& candidate, const dvec3& point) {
        const double distance2 = length2(point - m_from);
        if (!(distance2 < m_distance2)) return;
        m_distance2 = distance2;
        m_object = &candidate;
        m_point = point;
    }

    const dvec3 m_from, m_to;
    double m_distance2 = 1e30;
    Object* m_object = nullptr;
    dvec3 m_point;
};

}  // namespace

void Logic_Test_Fly::update_input() {
    ControlApp& control = *Engine::get()->getApp()->getControl();
    update_keys(control);
    const auto sensitivity = static_cast<double>(control.getMouseSensitivity());
    const auto dx = static_cast<float>(control.getMouseDX() * sensitivity);
    const auto dy = static_cast<float>(control.getMouseDY() * sensitivity);
    switch (m_player_mode) {
        case FIRST_VIEW:
            follow_aircraft();
            break;
        case THIRD_VIEW:
            if (control.isLeftButtonDown()) rot_around(-dx, -dy);
            if (control.isWheelButtonDown()) zoom_third_view(ZOOM_OUT);
            if (control.isWheelButtonUp()) zoom_third_view(ZOOM_IN);
            update_third_view();
            break;
        case FREE_VIEW:
            cam_mov(Engine::get()->getFrameTime());
            cam_free_rot(dx, dy);
            break;
    }
}

/// Exit by keys is immediate, without a shutdown.
void Logic_Test_Fly::update_keys(ControlApp& control) {
    if (control.isKeyPress(ControlApp::KEY_F4) && control.isKeyPress(ControlApp::KEY_ALT)) std::exit(0);
    if (takeClick(control, VIEW_KEYS) == 0) change_view();
    const int speed = takeClick(control, SPEED_KEYS);
    if (speed >= 0) setCamSpeed(SPEEDS[speed]);
    if (takeClick(control, LEVEL_KEY) == 0) adjust_geo_rotation_forward();
}

/// The sign of the turn is ignored.
void Logic_Test_Fly::onMouseWheel(const GUIEventWheel& event, IApp*) {
    if (!m_aircraft_node || m_player_mode != THIRD_VIEW) return;
    const double turn = event.delta / WHEEL_NOTCH * event.flag;
    on_third_view_wheel(turn == 0.0 ? -1.0f : 1.0f);
}

void Logic_Test_Fly::onKeyRelease(const GUIEventKey& event, IApp* app) {
    const double start = jTimer::getTimeSecond();
    for (const jString& key : m_key_controls) {
        if (key.empty() || static_cast<unsigned char>(key[0]) != event.key) continue;
        std::printf("%f\n", jTimer::getTimeSecond() - start);
    }
    switch (event.key) {
        case 'g':
            toggle_light();
            break;
        case 'p':
            m_show_recv = !m_show_recv;
            std::printf("press p \n");
            break;
        case 'o':
            m_show_send = !m_show_send;
            std::printf("press o \n");
            break;
        case 'k':
        case 'l':
            m_target_head_offset += event.key == 'k' ? -HEAD_STEP : HEAD_STEP;
            std::printf("m_target_head_offset:%f\n", static_cast<double>(m_target_head_offset));
            break;
        default:
            LogicBase::onKeyRelease(event, app);
    }
}

Object* Logic_Test_Fly::select_object(const dvec3& from, const dvec3& to, dvec3* hit) const {
    if (!m_world) {
        jLog::error("%s:%s", "Logic_Test_Fly::select_object", "world");
        return nullptr;
    }
    if (!m_world->getIntersection(from, to, m_picked)) return nullptr;
    NearestHit nearest(from, to);
    for (Node* node : m_picked) {
        if (!canBeHit(*node)) continue;
        if (node->getType() == Node::PREFAB) {
            for (Object* object : static_cast<ObjectPrefab*>(node)->getObjects()) {
                if (canBeHit(*object)) nearest.test(*object);
            }
        } else if (Object* const object = node->asObject()) {
            nearest.test(*object);
        }
    }
    if (nearest.getObject() && hit) *hit = nearest.getPoint();
    return nearest.getObject();
}
