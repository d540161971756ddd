// The view: three modes of the one camera. The frame's input step moves it; after the physics step `swap` sets the
// final pose, so that it follows the aircraft.
#include <engine/camera/CameraControl.h>
#include <engine/core/Engine.h>
#include <engine/input/ControlApp.h>
#include <engine/scene/Object.h>
#include <engine/text/Log.h>

#include <algorithm>
#include <cstdio>
#include <limits>

#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr float MIN_DISTANCE = 1.0f;   ///< metres, third-person view
constexpr float FAST_FACTOR = 4.0f;    ///< speed factor of the free camera with Shift
constexpr double PITCH_TURN = 0.0001;  ///< degrees
constexpr dvec3 UP{0.0, 0.0, 1.0}, RIGHT{1.0, 0.0, 0.0};

/// Reads the pose of the camera's node; false without one.
bool readPose(const CameraControl* camera, dvec3& position, dquat& rotation) {
    if (!camera || !camera->getNode()) return false;
    dvec3 scale;
    decomposeTransform(camera->getNode()->getWorldTransform(), position, rotation, scale);
    return true;
}

}  // namespace

void Logic_Test_Fly::swap() {
    if (m_player_mode == FIRST_VIEW) follow_aircraft();
    if (m_player_mode == THIRD_VIEW && getModel()) update_third_view();
}

void Logic_Test_Fly::set_player_mode(PLAYER_MODE mode) {
    std::printf("%s %d\n", "Logic_Test_Fly::set_player_mode", static_cast<int>(mode));
    switch (mode) {
        case FIRST_VIEW:
            set_view_text("第一视角");
            break;
        case THIRD_VIEW:
            if (Node* const target = getModel()) m_third_target = target;
            place_camera(m_third_position, m_third_rotation);
            set_view_text("第三视角");
            break;
        case FREE_VIEW:
            set_view_text("自由视角");
            break;
    }
    m_player_mode = mode;
}

void Logic_Test_Fly::change_view() {
    set_player_mode(static_cast<PLAYER_MODE>((std::int64_t{m_player_mode} + 1) % 3));
}

void Logic_Test_Fly::place_camera(const dvec3& position, const dquat& rotation) {
    if (!m_camera) return;
    m_camera->getRotation() = rotation;
    m_camera->getPosition() = position;
    m_camera->apply();
}

/// Sets the camera to the pose of the pilot's eye.
void Logic_Test_Fly::follow_aircraft() {
    if (!m_aircraft_node || !m_camera) return;
    dvec3 scale;
    decomposeTransform(m_aircraft_node->getWorldTransform() * m_head_transforms[0], m_camera->getPosition(),
                       m_camera->getRotation(), scale);
    m_camera->apply();
}

bool Logic_Test_Fly::update_third_view() {
    if (!m_camera) return true;
    m_third_rotation = m_camera->getRotation();
    if (m_third_target) {
        const dvec3 back = convertFromZUpCoordinateSystem(m_third_rotation).getMat3().getColumn(0);
        m_camera->getPosition() = m_third_target->getWorldPosition() + back * static_cast<double>(m_third_distance);
    }
    m_camera->apply();
    m_third_position = m_camera->getPosition();
    return true;
}

bool Logic_Test_Fly::on_third_view_wheel(float step) {
    m_third_distance = std::max(MIN_DISTANCE, m_third_distance - step);
    return update_third_view();
}

/// Beyond a float's range the distance is not changed: an infinite one could not be reduced again.
void Logic_Test_Fly::zoom_third_view(double factor) {
    const double distance = static_cast<double>(m_third_distance) * factor;
    if (distance <= std::numeric_limits<float>::max()) m_third_distance = static_cast<float>(distance);
}

bool Logic_Test_Fly::rot_around(float dx, float dy) {
    dvec3 position;
    dquat rotation;
    if ((dx == 0.0f && dy == 0.0f) || !readPose(m_camera, position, rotation)) return false;
    const auto distance = static_cast<double>(m_third_distance);
    const dvec3 pivot = position - rotation.getMat3().getZ() * distance;
    const dquat level(Engine::get()->getEllipsoid().getWGSTransform(position).getMat3());
    const dquat turned = (dquat(UP, dx) * (level.inverse() * rotation)) * dquat(RIGHT, dy);
    rotation = (level * turned).normalize();
    place_camera(pivot + rotation.getMat3().getZ() * distance, rotation);
    return true;
}

void Logic_Test_Fly::cam_mov(float dt) {
    const ControlApp& control = *Engine::get()->getApp()->getControl();
    dvec3 position;
    dquat rotation;
    if (!readPose(m_camera, position, rotation)) return;
    if (!control.isLeftButtonDown() || control.isKeyPress(ControlApp::KEY_CTRL)) return;
    auto speed = static_cast<float>(getCamSpeed());
    if (control.isKeyPress(ControlApp::KEY_SHIFT)) speed *= FAST_FACTOR;
    const auto step = static_cast<double>(speed * dt);
    const dmat4& view = m_camera->getNode()->getWorldTransform();
    const struct {
        int key;
        dvec3 direction;
    } moves[] = {{'w', -view.getZ()}, {'s', view.getZ()}, {'a', -view.getX()}, {'d', view.getX()}};
    bool moved = false;
    for (const auto& move : moves) {
        if (!control.isKeyPress(move.key)) continue;
        position += move.direction * step;
        moved = true;
    }
    if (moved) place_camera(position, rotation);
}

/// The pitch axis is the X axis of a very small rotation about the vertical.
void Logic_Test_Fly::cam_free_rot(float dx, float dy) {
    const ControlApp& control = *Engine::get()->getApp()->getControl();
    if (!control.isLeftButtonDown() && !control.isRightButtonDown()) return;
    if (control.isKeyPress(ControlApp::KEY_CTRL)) return;
    dvec3 position;
    dquat rotation;
    if (!readPose(m_camera, position, rotation) || (dx == 0.0f && dy == 0.0f)) return;
    const dvec3 up = normalize(position);
    const dvec3 pitch_axis = dquat(up, PITCH_TURN).getMat3().getX();
    rotation = ((dquat(up, -dx) * rotation) * dquat(pitch_axis, -dy)).normalize();
    place_camera(position, rotation);
}

void Logic_Test_Fly::set_cam_pos_geo(const dvec3& geo) {
    if (!isFinite(geo)) {
        jLog::warning("%s: not a place (%f, %f, %f)", "Logic_Test_Fly::set_cam_pos_geo", geo.x, geo.y, geo.z);
        return;
    }
    if (m_camera) place_camera(Engine::get()->getEllipsoid().toWorld(geo), m_camera->getRotation());
}

dvec3 Logic_Test_Fly::get_cam_pos_geo() const {
    return m_camera ? Engine::get()->getEllipsoid().toWGS(m_camera->getPosition()) : dvec3();
}
