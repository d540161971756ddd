// The queue of commands from all front ends to the scene.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "app/scene/SceneCommand.h"

class SceneController;

/// Origin of a command, for the log.
struct CommandSource {
    std::string name;  ///< "panel", or the file of a script
    int line = 0;      ///< line number in the file; 0 for none
};

/// Holds commands in the order of `push` until the frame applies them.
class SceneCommandQueue {
public:
    void push(SceneCommand command, CommandSource source);  ///< any thread
    /// Executes all queued commands. Frame thread, directly after the frame has begun. A command that is out of range
    /// or fails gives one log line with its source. Commands pushed meanwhile are executed in the next frame.
    void apply(SceneController& controller);

private:
    struct Entry {
        SceneCommand command;
        CommandSource source;
    };

    std::mutex m_mutex;  ///< protects m_waiting
    std::vector<Entry> m_waiting;
    std::vector<Entry> m_batch;
};
