// Input events for the logic, and change events of panels.
#pragma once

#include <cstdint>

/// A mouse button or motion, in pixels from the window's top left corner, y downward.
struct GUIEventMouse {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t button = 0;  ///< 0 none, 1 left, 2 right, 3 wheel
};

/// A turn of the wheel by at most one notch.
struct GUIEventWheel {
    std::int32_t delta = 0;  ///< 120 per notch, positive away from the user
    std::uint8_t flag = 1;   ///< 1 away from the user, 0 toward the user
};

/// A key: the lower-case code of a character, or a special key from 256 (see Keys).
struct GUIEventKey {
    std::uint16_t key = 0;
    std::uint8_t modifier = 0;  ///< 1 while Ctrl is held; at a release also 1 when the key was pressed with Ctrl
};

/// A change of a panel's value by the user.
struct GUIEventChange {
    double value = 0.0;  ///< the new value of a slider or an integer; 0 or 1 for a check box; 0 for texts and vectors
};
