// Scene commands from a file.
#pragma once

#include <string>
#include <vector>

#include "TimedLines.h"
#include "app/scene/SceneCommandQueue.h"

/// Plays a script of scene commands; docs/user_guide.md lists its lines.
class SceneScript {
public:
    /// Replaces the script. False when the file cannot be read or a line is no command; `error` then contains file and
    /// line, and nothing has changed. REQUIRES the configuration: it defines the names of target types.
    bool open(const std::string& file, std::string& error);
    /// Queues the commands due in the next frame, counted from 1. `time`: seconds of the engine's clock.
    void play(SceneCommandQueue& commands, double time, long frame);

private:
    std::string m_file;
    TimedQueue m_queue;
    std::vector<SceneCommand> m_commands;  ///< one per line
    std::size_t m_next = 0;
};
