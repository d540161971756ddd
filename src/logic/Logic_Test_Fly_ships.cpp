// The carrier and its landing lens: found and placed in `init`. The carrier is at rest until the host application
// drives it: enables its body, sets the flag and calls `ships_auto_move` each frame, after `update`.
#include <engine/camera/CameraControl.h>
#include <engine/memory/Allocator.h>
#include <engine/scene/Object.h>
#include <engine/text/Log.h>

#include "common/ship/Ship.h"
#include "src/logic/AppData.h"
#include "src/logic/Logic_Test_Fly.h"

void Logic_Test_Fly::init_ships() {
    jLog::message("%s begin \n", "Logic_Test_Fly::init_ships");
    jDelete(m_ship);
    m_ship = nullptr;
    AppData::get();
    Node* const carrier = find_node(m_carrier_node);
    if (Object* const object = carrier ? carrier->asObject() : nullptr) {
        object->setEnabled(true);
        m_ship = jNew<Ship>({"src\\logic\\Logic_Test_Fly", "Logic_Test_Fly::init_ships"}, object, m_ocean);
        if (Body* const body = object->getBody()) body->setEnabled(false);
        const Node* const start = find_node("start_ship1");
        if (start) object->setWorldTransform(start->getWorldTransform());
        m_ship_start_transform = object->getWorldTransform();
    }
    m_ships_ready = true;
    jLog::message("%s complete!\n", "Logic_Test_Fly::init_ships");
}

void Logic_Test_Fly::ships_auto_move() {
    if (!m_ships_auto_move || !m_ship) return;
    m_ship->updateWakes();
    m_ship->update();
}

void Logic_Test_Fly::init_fresnel_light(Object* ship) {
    m_fresnel_light.fresnelLightInit(ship, m_camera ? m_camera->getNode() : nullptr);
}

void Logic_Test_Fly::select_lamp() {
    m_fresnel_light.selectByAngle(m_fresnel_light.getGlideAngle());
}
