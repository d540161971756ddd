// Handlers of the panel's controls and of the gear buttons: called when the user changes one of them.
#include <engine/gui/UIElement.h>

#include <algorithm>
#include <limits>

#include "src/aircraft/Helicopter.h"
#include "src/aircraft/PlaneExtra300s.h"
#include "src/aircraft/PlaneJ15.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr int LAST_SURFACE = 5;          ///< last position of the aerobatic aircraft with a limited deflection
constexpr float MAX_DEFLECTION = 30.0f;  ///< degrees, to both sides

}  // namespace

void Logic_Test_Fly::store_control(int position, double value) {
    if (position >= 0 && position < m_control_values.size()) m_control_values[position] = static_cast<float>(value);
}

/// A control's value times the configured factor of its position.
float Logic_Test_Fly::scale_control(int position, double value) const {
    const jVector<AirCraftPartInfo>& parts = m_aircraft->getAircraftInfo().parts;
    const bool known = position >= 0 && position < parts.size();
    return static_cast<float>(value) * (known ? parts[position].digit : 1.0f);
}

void Logic_Test_Fly::set_node_deflection(const GUIEventChange& event, UIElement* element) {
    if (!is_jet() && !is_aerobatic()) return;
    const int position = element->getId();
    const auto angle = static_cast<float>(event.value);
    store_control(position, event.value);
    if (is_jet()) {
        m_jet->deflectSurface(position, angle);
    } else {
        const bool limited = position <= LAST_SURFACE;
        m_aerobatic->setWingDirect(position, limited ? std::clamp(angle, -MAX_DEFLECTION, MAX_DEFLECTION) : angle);
    }
}

void Logic_Test_Fly::set_node_offset(const GUIEventChange& event, UIElement* element) {
    if (!is_aerobatic()) return;
    store_control(element->getId(), event.value);
    m_aerobatic->setNodeOffset(element->getId(), scale_control(element->getId(), event.value));
}

void Logic_Test_Fly::set_node_uv_offset(const GUIEventChange& event, UIElement* element) {
    if (!is_aerobatic()) return;
    store_control(element->getId(), event.value);
    m_aerobatic->setUVOffset(element->getId(), scale_control(element->getId(), event.value));
}

void Logic_Test_Fly::set_node_digit(const GUIEventChange& event, UIElement* element) {
    if (!is_aerobatic()) return;
    constexpr double MAX = std::numeric_limits<int>::max();
    store_control(element->getId(), event.value);
    m_aerobatic->setUIText(element->getId(), static_cast<int>(std::clamp(event.value, -MAX, MAX)));
}

void Logic_Test_Fly::set_node_onoff(const GUIEventChange& event, UIElement* element) {
    if (!is_aerobatic()) return;
    store_control(element->getId(), event.value);
    m_aerobatic->setNodeEnable(element->getId(), event.value != 0.0);
}

void Logic_Test_Fly::toggle_light() {
    if (is_jet()) m_jet->toggleLight();
    if (is_helicopter()) m_helicopter->toggleLight();
}

void Logic_Test_Fly::set_gear(bool down) {
    if (!is_jet()) return;
    m_jet->setUndercarriage(down, false);
    down ? m_jet->openUndercarriageNow() : m_jet->closeUndercarriageNow();
}

void Logic_Test_Fly::on_open_undercarriage(const GUIEventMouse&, UIElement*) {
    set_gear(true);
}

void Logic_Test_Fly::on_close_undercarriage(const GUIEventMouse&, UIElement*) {
    set_gear(false);
}
