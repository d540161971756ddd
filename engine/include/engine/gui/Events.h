// Input events as the logic receives them, and what a panel tells.
#pragma once

#include <cstdint>

/// A mouse button or motion, pixels from the window's top left; y counts downward.
struct GUIEventMouse {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t button = 0;  ///< 0 none, 1 left, 2 right, 3 wheel
};

/// A turn of the wheel by one notch at most.
struct GUIEventWheel {
    std::int32_t delta = 0;  ///< 120 a notch, positive away from the user
    std::uint8_t flag = 1;   ///< 1 away from the user, 0 toward the user
};

/// A key of the engine's numbering: a character's lower-case code, or a special key from 256 (see Keys).
struct GUIEventKey {
    std::uint16_t key = 0;
    std::uint8_t modifier = 0;  ///< 1 while Ctrl is held; of a release also when the key was pressed so
};

/// A value that the user changed on a panel.
struct GUIEventChange {
    double value = 0.0;  ///< the new one: a slider's or an integer's; 0 or 1 of a check box; 0 of texts and vectors
};
