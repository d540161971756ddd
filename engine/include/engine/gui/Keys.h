// Numbers of keys and modifiers, shared by panels and scene input.
#pragma once

/// Special keys. The number of a character's key is the character's lower-case code.
struct Keys {
    enum Key {
        KEY_ESCAPE = 256,
        KEY_TAB,
        KEY_BACKSPACE,
        KEY_ENTER = 259,
        KEY_INSERT,
        KEY_DELETE,
        KEY_PAGE_UP,
        KEY_PAGE_DOWN,
        KEY_HOME,
        KEY_END,
        KEY_RIGHT = 266,
        KEY_LEFT,
        KEY_UP,
        KEY_DOWN,
        KEY_SHIFT,
        KEY_CTRL,
        KEY_ALT,
        KEY_F1 = 277,
        KEY_F2,
        KEY_F3,
        KEY_F4,
        KEY_F5,
        KEY_F6,
        KEY_F7,
        KEY_F8,
        KEY_F9,
        KEY_F10,
        KEY_F11,
        KEY_F12,
        KEY_COUNT = 512
    };
    /// Bits of a mask.
    enum Modifier { MOD_SHIFT = 1, MOD_CTRL = 2, MOD_ALT = 4 };
};
