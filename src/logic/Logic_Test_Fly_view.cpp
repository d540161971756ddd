// The view: after the physics step `swap` has the last word on the camera.
#include <engine/camera/CameraControl.h>
#include <engine/scene/Object.h>

#include "src/logic/Logic_Test_Fly.h"

void Logic_Test_Fly::swap() {
    if (m_player_mode == FIRST_VIEW) follow_aircraft();
}

/// The pilot's eye.
void Logic_Test_Fly::follow_aircraft() {
    if (!m_aircraft_node || !m_camera) return;
    dvec3 scale;
    decomposeTransform(m_aircraft_node->getWorldTransform() * m_head_transforms[0], m_camera->getPosition(),
                       m_camera->getRotation(), scale);
    m_camera->apply();
}
