// The single entry for input: from a window, a script or a test to the panels, the input state and the logic.
#pragma once

#include <array>

#include "engine/Api.h"
#include "engine/gui/Events.h"
#include "engine/input/ControlApp.h"
#include "engine/text/Containers.h"

class UIRoot;

/// Events are queued in order until the frame begins. Panels have priority and consume the events that they use: mouse
/// events on their area and while one of their widgets is held, and the keyboard while a text is edited. A release goes
/// to the receiver of the press. Owned by the engine; frame thread only.
class ENGINE_API InputRouter {
public:
    using Modifier = Keys::Modifier;
    using enum Keys::Modifier;
    using KeyHandler = Function<void(const GUIEventKey&)>;
    using MouseHandler = Function<void(const GUIEventMouse&)>;
    using WheelHandler = Function<void(const GUIEventWheel&)>;

    InputRouter(ControlApp& control, UIRoot& panels);

    // Events. Positions are pixels from the window's top left corner, y downward; positions outside the window are
    // valid.
    /// A key of ControlApp's numbers; others are ignored. `modifiers`: bits of Modifier.
    void keyEvent(int key, bool down, int modifiers = 0);
    void textEvent(char32_t codepoint);  ///< a typed character, in addition to its key event
    void mouseMove(double x, double y);
    void mouseButton(int button, bool down);  ///< of ControlApp::Button, at the current mouse position
    /// A turn, 120 per notch, positive away from the user. Listeners receive one event per notch, so that equal turns
    /// in both directions cancel; with Shift held it is added to the input state instead, which is polled once per
    /// frame.
    void wheel(int delta);
    void resize(int width, int height);  ///< the window's new size
    void focusLost();                    ///< the window lost the input focus: releases everything that is held

    /// Applies the queued events; the engine calls it at the beginning of the frame. Events added by handlers are
    /// applied in the next frame.
    void dispatch();

    double getMouseX() const { return m_x; }  ///< at the last dispatch
    double getMouseY() const { return m_y; }

    // Listeners, called during `dispatch` after the change of the input state, without key repeats.
    void bindKeyPress(KeyHandler handler) { m_key_press.push_back(std::move(handler)); }
    void bindKeyRelease(KeyHandler handler) { m_key_release.push_back(std::move(handler)); }
    void bindMouseDown(MouseHandler handler) { m_mouse_down.push_back(std::move(handler)); }
    void bindMouseUp(MouseHandler handler) { m_mouse_up.push_back(std::move(handler)); }
    void bindMouseMove(MouseHandler handler) { m_mouse_move.push_back(std::move(handler)); }
    void bindWheel(WheelHandler handler) { m_wheel.push_back(std::move(handler)); }
    void clearBindings();  ///< REQUIRES that no listener is running

private:
    struct Event {
        enum Kind { KEY, TEXT, MOVE, BUTTON, WHEEL, RESIZE, FOCUS_LOST } kind;
        int code = 0;  ///< key, codepoint, button, wheel delta
        bool down = false;
        int modifiers = 0;
        double x = 0.0, y = 0.0;  ///< position or size
    };
    enum Owner : unsigned char { NOBODY, PANELS, SCENE };

    void apply(const Event& event);
    void applyKey(int key, bool down, int modifiers);
    void applyMove(double x, double y);
    void applyButton(int button, bool down);
    void applyWheel(int delta);
    void releaseAll();
    bool isHolding(Owner owner) const;
    bool isOutside() const;
    Owner ownerOfMouse() const;
    GUIEventMouse mouseEvent(int button) const;

    ControlApp& m_control;
    UIRoot& m_panels;
    std::vector<Event> m_waiting;
    std::vector<Event> m_batch;
    bool m_dispatching = false;
    bool m_mouse_known = false;
    double m_x = 0.0, m_y = 0.0;
    std::array<Owner, ControlApp::KEY_COUNT> m_key_owners{};
    std::array<bool, ControlApp::KEY_COUNT> m_pressed_with_ctrl{};  ///< of the keys held for the scene
    std::array<Owner, 4> m_button_owners{};
    jList<KeyHandler> m_key_press, m_key_release;
    jList<MouseHandler> m_mouse_down, m_mouse_up, m_mouse_move;
    jList<WheelHandler> m_wheel;
};
