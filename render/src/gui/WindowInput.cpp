// Translates the window's events for the engine; called before the frame begins.
#include "gui/WindowInput.h"

#include <utility>

#include "engine/input/InputRouter.h"

namespace {

using Event = osgGA::GUIEventAdapter;

constexpr int NOTCH = 120;

constexpr std::pair<int, int> SPECIAL_KEYS[] = {{Event::KEY_Escape, ControlApp::KEY_ESCAPE},
                                                {Event::KEY_Tab, ControlApp::KEY_TAB},
                                                {Event::KEY_BackSpace, ControlApp::KEY_BACKSPACE},
                                                {Event::KEY_Return, ControlApp::KEY_ENTER},
                                                {Event::KEY_KP_Enter, ControlApp::KEY_ENTER},
                                                {Event::KEY_Insert, ControlApp::KEY_INSERT},
                                                {Event::KEY_Delete, ControlApp::KEY_DELETE},
                                                {Event::KEY_Page_Up, ControlApp::KEY_PAGE_UP},
                                                {Event::KEY_Page_Down, ControlApp::KEY_PAGE_DOWN},
                                                {Event::KEY_Home, ControlApp::KEY_HOME},
                                                {Event::KEY_End, ControlApp::KEY_END},
                                                {Event::KEY_Right, ControlApp::KEY_RIGHT},
                                                {Event::KEY_Left, ControlApp::KEY_LEFT},
                                                {Event::KEY_Up, ControlApp::KEY_UP},
                                                {Event::KEY_Down, ControlApp::KEY_DOWN},
                                                {Event::KEY_Shift_L, ControlApp::KEY_SHIFT},
                                                {Event::KEY_Shift_R, ControlApp::KEY_SHIFT},
                                                {Event::KEY_Control_L, ControlApp::KEY_CTRL},
                                                {Event::KEY_Control_R, ControlApp::KEY_CTRL},
                                                {Event::KEY_Alt_L, ControlApp::KEY_ALT},
                                                {Event::KEY_Alt_R, ControlApp::KEY_ALT}};

/// The engine's key number, -1 for none.
int keyOf(int code) {
    if (code >= 'A' && code <= 'Z') return code - 'A' + 'a';
    if (code > 0 && code < 128 && code >= ' ') return code;
    if (code >= Event::KEY_F1 && code <= Event::KEY_F12) return code - Event::KEY_F1 + ControlApp::KEY_F1;
    for (const auto& [from, to] : SPECIAL_KEYS) {
        if (from == code) return to;
    }
    return -1;
}

int modifiersOf(const Event& event) {
    const int mask = event.getModKeyMask();
    return (mask & Event::MODKEY_SHIFT ? InputRouter::MOD_SHIFT : 0) |
           (mask & Event::MODKEY_CTRL ? InputRouter::MOD_CTRL : 0) |
           (mask & Event::MODKEY_ALT ? InputRouter::MOD_ALT : 0);
}

}  // namespace

void WindowInput::key(const Event& event, bool down) {
    const int number = keyOf(event.getUnmodifiedKey());
    if (number >= 0) m_input.keyEvent(number, down, modifiersOf(event));
    const int typed = event.getKey();
    const bool is_text = typed >= ' ' && typed < 0xFF00 && typed != 127;
    if (down && is_text && !(modifiersOf(event) & InputRouter::MOD_CTRL))
        m_input.textEvent(static_cast<char32_t>(typed));
}

void WindowInput::move(const Event& event) {
    const bool upward = event.getMouseYOrientation() == Event::Y_INCREASING_UPWARDS;
    const double y = event.getY() - event.getYmin(), height = event.getYmax() - event.getYmin();
    m_input.mouseMove(event.getX() - event.getXmin(), upward ? height - y : y);
}

void WindowInput::button(const Event& event, bool down) {
    move(event);
    const int button = event.getButton() == Event::LEFT_MOUSE_BUTTON    ? ControlApp::BUTTON_LEFT
                       : event.getButton() == Event::RIGHT_MOUSE_BUTTON ? ControlApp::BUTTON_RIGHT
                                                                        : ControlApp::BUTTON_WHEEL;
    m_input.mouseButton(button, down);
}

void WindowInput::wheel(const Event& event) {
    if (event.getScrollingMotion() == Event::SCROLL_UP) m_input.wheel(NOTCH);
    if (event.getScrollingMotion() == Event::SCROLL_DOWN) m_input.wheel(-NOTCH);
}

bool WindowInput::handle(const Event& event, osgGA::GUIActionAdapter&) {
    switch (event.getEventType()) {
        case Event::KEYDOWN:
            key(event, true);
            break;
        case Event::KEYUP:
            key(event, false);
            break;
        case Event::PUSH:
        case Event::DOUBLECLICK:
            button(event, true);
            break;
        case Event::RELEASE:
            button(event, false);
            break;
        case Event::MOVE:
        case Event::DRAG:
            move(event);
            break;
        case Event::SCROLL:
            wheel(event);
            break;
        default:
            return false;
    }
    return true;
}
