// Queues input and, at the beginning of the frame, dispatches it to the panels or to the scene.
#include "engine/input/InputRouter.h"

#include <algorithm>
#include <cmath>

#include "engine/gui/UIRoot.h"
#include "gui/GuiState.h"

namespace {

constexpr double MAX_POSITION = 1e6;  // pixels
constexpr int NOTCH = 120;
constexpr int MAX_TURN = 1000 * NOTCH;  // of the wheel, in one event

bool isKey(int key) {
    return key >= 0 && key < ControlApp::KEY_COUNT;
}

bool isButton(int button) {
    return button >= ControlApp::BUTTON_LEFT && button <= ControlApp::BUTTON_WHEEL;
}

template <class Handlers, class Event>
void notify(const Handlers& handlers, const Event& event) {
    for (const auto& handler : handlers) handler(event);
}

}  // namespace

InputRouter::InputRouter(ControlApp& control, UIRoot& panels) : m_control(control), m_panels(panels) {}

void InputRouter::keyEvent(int key, bool down, int modifiers) {
    if (isKey(key)) m_waiting.push_back({Event::KEY, key, down, modifiers});
}

void InputRouter::textEvent(char32_t codepoint) {
    m_waiting.push_back({Event::TEXT, static_cast<int>(codepoint)});
}

void InputRouter::mouseMove(double x, double y) {
    if (!std::isfinite(x) || !std::isfinite(y)) return;
    m_waiting.push_back({Event::MOVE, 0, false, 0, std::clamp(x, -MAX_POSITION, MAX_POSITION),
                         std::clamp(y, -MAX_POSITION, MAX_POSITION)});
}

void InputRouter::mouseButton(int button, bool down) {
    if (isButton(button)) m_waiting.push_back({Event::BUTTON, button, down});
}

void InputRouter::wheel(int delta) {
    m_waiting.push_back({Event::WHEEL, std::clamp(delta, -MAX_TURN, MAX_TURN)});
}

void InputRouter::resize(int width, int height) {
    m_waiting.push_back({Event::RESIZE, 0, false, 0, static_cast<double>(width), static_cast<double>(height)});
}

void InputRouter::focusLost() {
    m_waiting.push_back({Event::FOCUS_LOST});
}

void InputRouter::clearBindings() {
    m_key_press.clear();
    m_key_release.clear();
    m_mouse_down.clear();
    m_mouse_up.clear();
    m_mouse_move.clear();
    m_wheel.clear();
}

void InputRouter::dispatch() {
    if (m_dispatching) return;
    m_dispatching = true;
    m_batch.swap(m_waiting);
    {
        const HandlerScope scope(m_panels.getState());
        for (const Event& event : m_batch) apply(event);
    }
    m_batch.clear();
    m_dispatching = false;
}

void InputRouter::apply(const Event& event) {
    switch (event.kind) {
        case Event::KEY:
            return applyKey(event.code, event.down, event.modifiers);
        case Event::TEXT:
            if (m_panels.getState().takesKeys()) m_panels.getState().text(static_cast<char32_t>(event.code));
            return;
        case Event::MOVE:
            return applyMove(event.x, event.y);
        case Event::BUTTON:
            return applyButton(event.code, event.down);
        case Event::WHEEL:
            return applyWheel(event.code);
        case Event::RESIZE:
            return m_panels.setSize(static_cast<int>(event.x), static_cast<int>(event.y));
        case Event::FOCUS_LOST:
            return releaseAll();
    }
}

void InputRouter::applyKey(int key, bool down, int modifiers) {
    Owner& owner = m_key_owners[static_cast<std::size_t>(key)];
    GuiState& panels = m_panels.getState();
    const Owner before = owner;
    if (down && before == NOBODY) owner = panels.takesKeys() ? PANELS : SCENE;
    if (!down) owner = NOBODY;
    if (before == PANELS || owner == PANELS) {
        // Key repeats.
        if (down && panels.takesKeys()) panels.key(key, modifiers);
        return;
    }
    if (down == (before == SCENE)) return;  // a repeat, or a release without a press
    bool& pressed_with_ctrl = m_pressed_with_ctrl[static_cast<std::size_t>(key)];
    bool ctrl = (modifiers & MOD_CTRL) != 0 || m_control.isKeyPress(ControlApp::KEY_CTRL);
    if (down) pressed_with_ctrl = ctrl;
    ctrl = ctrl || pressed_with_ctrl;
    m_control.setKey(key, down);
    notify(down ? m_key_press : m_key_release,
           GUIEventKey{static_cast<std::uint16_t>(key), static_cast<std::uint8_t>(ctrl ? 1 : 0)});
}

bool InputRouter::isHolding(Owner owner) const {
    return std::find(m_button_owners.begin(), m_button_owners.end(), owner) != m_button_owners.end();
}

bool InputRouter::isOutside() const {
    return m_x < 0.0 || m_y < 0.0 || m_x >= m_panels.getWidth() || m_y >= m_panels.getHeight();
}

/// The owner of a held button keeps the mouse until all buttons are released.
InputRouter::Owner InputRouter::ownerOfMouse() const {
    if (isHolding(PANELS)) return PANELS;
    if (isHolding(SCENE)) return SCENE;
    const GUIEventMouse place = mouseEvent(0);
    return m_panels.getState().takesMouse(place.x, place.y) ? PANELS : SCENE;
}

GUIEventMouse InputRouter::mouseEvent(int button) const {
    return {static_cast<std::int32_t>(std::floor(m_x)), static_cast<std::int32_t>(std::floor(m_y)), button};
}

void InputRouter::applyMove(double x, double y) {
    const double dx = m_mouse_known ? x - m_x : 0.0;
    const double dy = m_mouse_known ? y - m_y : 0.0;
    m_mouse_known = true;
    m_x = x;
    m_y = y;
    GuiState& panels = m_panels.getState();
    const GUIEventMouse event = mouseEvent(0);
    if (isHolding(PANELS)) return panels.drag(event.x, event.y);
    const bool held = isHolding(SCENE);
    if (held) {
        panels.unhover();
    } else {
        panels.hover(event.x, event.y);
        if (panels.hovered || isOutside()) return;
    }
    m_control.addMotion(dx, dy);
    notify(m_mouse_move, event);
}

void InputRouter::applyButton(int button, bool down) {
    Owner& owner = m_button_owners[static_cast<std::size_t>(button)];
    if (down == (owner != NOBODY)) return;
    const Owner taker = down ? ownerOfMouse() : owner;
    owner = down ? taker : NOBODY;
    GuiState& panels = m_panels.getState();
    const GUIEventMouse event = mouseEvent(button);
    if (taker == PANELS) {
        if (button != ControlApp::BUTTON_LEFT) return;
        return down ? panels.press(event.x, event.y) : panels.release(event.x, event.y);
    }
    if (down) panels.endEdit(true);
    m_control.setButton(button, down);
    notify(down ? m_mouse_down : m_mouse_up, event);
}

void InputRouter::applyWheel(int delta) {
    if (ownerOfMouse() == PANELS) {
        const GUIEventMouse place = mouseEvent(0);
        return m_panels.getState().scroll(delta, place.x, place.y);
    }
    if (m_control.isKeyPress(ControlApp::KEY_SHIFT)) return m_control.addWheel(delta);
    while (delta != 0) {
        const int part = std::clamp(delta, -NOTCH, NOTCH);
        notify(m_wheel, GUIEventWheel{part, static_cast<std::uint8_t>(part > 0 ? 1 : 0)});
        delta -= part;
    }
}

void InputRouter::releaseAll() {
    // A release without a user action must not trigger a command of Ctrl or of a panel: Ctrl is released before the
    // characters, the record of keys pressed with Ctrl is cleared, and the widget held is not clicked.
    m_pressed_with_ctrl.fill(false);
    m_panels.getState().pressed = nullptr;
    for (int key = ControlApp::KEY_COUNT - 1; key >= 0; --key) {
        if (m_key_owners[static_cast<std::size_t>(key)] != NOBODY) applyKey(key, false, 0);
    }
    for (int button = ControlApp::BUTTON_LEFT; button <= ControlApp::BUTTON_WHEEL; ++button) {
        applyButton(button, false);
    }
    m_panels.getState().unhover();
    m_panels.getState().endEdit(true);
}
