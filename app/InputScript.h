// Keyboard, mouse and wheel input from a file.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "TimedLines.h"

class InputRouter;
class UIRoot;

/// Plays an input script; docs/user_guide.md describes its lines. The events use the same InputRouter as a window's.
class InputScript {
public:
    /// False when the file cannot be read or a line is invalid; `error` then contains file and line.
    bool open(const std::string& file, std::string& error);
    /// Queues the events due in the next frame, counted from 1. `time`: seconds of the engine's clock.
    void play(InputRouter& input, UIRoot& panels, double time, long frame);

private:
    struct Key {
        int code = 0;
        int modifiers = 0;  ///< bits of InputRouter::Modifier
    };

    static bool readKey(const std::string& text, Key& key);
    static bool isGood(const TimedLine& line);
    void act(const TimedLine& line, InputRouter& input, UIRoot& panels);
    void hit(const Key& key, InputRouter& input);
    void click(const TimedLine& line, InputRouter& input, UIRoot& panels);

    std::string m_file;
    TimedQueue m_queue;
    std::vector<Key> m_keys_down;                             ///< pressed by "key", released a frame later
    enum { NO_CLICK, IS_THERE, IS_DOWN } m_click = NO_CLICK;  ///< progress of a click
};
