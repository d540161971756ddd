// The instructor's actions from a file instead of from hands.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "TimedLines.h"

class Instructor;

/// A played script of actions; docs/user_guide.md tells its lines.
class SceneScript {
public:
    /// Does something; false when the scene did not let it.
    using Action = std::function<bool(Instructor&)>;

    /// From now on plays this file in place of another. False, with `error` naming file and line and nothing changed,
    /// when it cannot be read or says what is unknown. REQUIRES the engine: the types of targets are the
    /// configuration's.
    bool open(const std::string& file, std::string& error);
    /// Does what is due in the frame that comes, counted from 1; `time`: seconds of the engine's clock.
    void play(Instructor& instructor, double time, long frame);

private:
    std::string m_file;
    TimedQueue m_queue;
    std::vector<Action> m_actions;  ///< one a line
    std::size_t m_next = 0;
};
