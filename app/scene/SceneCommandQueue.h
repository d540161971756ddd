// The one way for commands from the front ends to the scene.
#pragma once

#include <mutex>
#include <string_view>
#include <vector>

#include "app/scene/SceneCommand.h"

class SceneController;

/// Who gave a command, for the log.
struct CommandSource {
    std::string_view name;  ///< "panel", or a script's file; its text must outlive the queue
    int line = 0;           ///< of the file; 0 for none
};

/// Commands wait in the order in which they were given until the frame applies them.
class SceneCommandQueue {
public:
    void push(SceneCommand command, CommandSource source);  ///< any thread
    /// Carries out what waits. Frame thread, directly after the frame has begun. A command that is out of range or
    /// cannot be done costs one log line, which names its source. What is given meanwhile waits for the next frame.
    void apply(SceneController& controller);

private:
    struct Entry {
        SceneCommand command;
        CommandSource source;
    };

    std::mutex m_mutex;  ///< of m_waiting
    std::vector<Entry> m_waiting;
    std::vector<Entry> m_batch;
};
