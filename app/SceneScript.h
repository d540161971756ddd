// Scene commands from a file.
#pragma once

#include <string>
#include <vector>

#include "TimedLines.h"
#include "app/scene/SceneCommandQueue.h"

/// A played script of scene commands; docs/user_guide.md lists its lines. Outlives the queue that it gives to.
class SceneScript {
public:
    /// Replaces the file that is played. False, with `error` naming file and line and nothing changed, when it cannot
    /// be read or a line is no command. REQUIRES the configuration: it names the types of targets.
    bool open(const std::string& file, std::string& error);
    /// Gives what is due in the coming frame, counted from 1; `time`: seconds of the engine's clock.
    void play(SceneCommandQueue& commands, double time, long frame);

private:
    std::string m_file;
    TimedQueue m_queue;
    std::vector<SceneCommand> m_commands;  ///< one a line
    std::size_t m_next = 0;
};
