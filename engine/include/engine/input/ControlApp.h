// The input state of the frame: held keys, keys pressed this frame, mouse motion.
#pragma once

#include <array>

#include "engine/Api.h"
#include "engine/gui/Keys.h"

/// Set by the window, a script or a test; polled by the logic. Keys are numbered as in Keys.
class ENGINE_API ControlApp {
public:
    using Key = Keys::Key;
    using enum Keys::Key;
    enum Button { BUTTON_LEFT = 1, BUTTON_RIGHT = 2, BUTTON_WHEEL = 3 };

    virtual ~ControlApp() = default;
    bool isKeyPress(int key) const { return valid(key) && m_held[static_cast<std::size_t>(key)]; }     ///< held
    bool isKeyClick(int key) const { return valid(key) && m_clicked[static_cast<std::size_t>(key)]; }  ///< this frame
    /// Marks a clicked key as consumed.
    virtual void clearKey(int key) {
        if (valid(key)) m_clicked[static_cast<std::size_t>(key)] = false;
    }
    bool isLeftButtonDown() const { return m_buttons[BUTTON_LEFT]; }
    bool isRightButtonDown() const { return m_buttons[BUTTON_RIGHT]; }
    bool isWheelButtonDown() const { return m_wheel < 0; }       ///< a polled turn toward the user in this frame
    bool isWheelButtonUp() const { return m_wheel > 0; }         ///< a polled turn away from the user in this frame
    float getMouseSensitivity() const { return m_sensitivity; }  ///< degrees per pixel
    virtual double getMouseDX() const { return m_dx; }           ///< pixels of this frame
    virtual double getMouseDY() const { return m_dy; }           ///< pixels of this frame, downward

    // For the source of the input.
    void setKey(int key, bool down);
    void setButton(int button, bool down) {
        if (button > 0 && button < 4) m_buttons[static_cast<std::size_t>(button)] = down;
    }
    void addMotion(double dx, double dy) { m_dx += dx, m_dy += dy; }
    void addWheel(int delta) { m_wheel += delta; }
    void setMouseSensitivity(float degrees) { m_sensitivity = degrees; }
    /// Clears clicks, motion and wheel; held keys and buttons are kept.
    void endFrame();

private:
    static bool valid(int key) { return key >= 0 && key < KEY_COUNT; }

    std::array<bool, KEY_COUNT> m_held{};
    std::array<bool, KEY_COUNT> m_clicked{};
    std::array<bool, 4> m_buttons{};
    double m_dx = 0.0;
    double m_dy = 0.0;
    int m_wheel = 0;
    float m_sensitivity = 0.2f;
};
