// Passes commands to the controller, frame by frame.
#include "app/scene/SceneCommandQueue.h"

#include "app/scene/SceneController.h"
#include "engine/text/Log.h"

void SceneCommandQueue::push(SceneCommand command, CommandSource source) {
    const std::lock_guard lock(m_mutex);
    m_waiting.push_back({std::move(command), std::move(source)});
}

void SceneCommandQueue::apply(SceneController& controller) {
    {
        const std::lock_guard lock(m_mutex);
        std::swap(m_waiting, m_batch);
    }
    for (const auto& [command, source] : m_batch) {
        std::string error;
        if (!isInRange(command))
            error = "a value is out of range";
        else if (controller.apply(command, error))
            continue;
        std::string where = source.name;
        if (source.line > 0) where += ':' + std::to_string(source.line);
        jLog::warning("%s: \"%s\" could not be done: %s", where.c_str(), printCommand(command).c_str(), error.c_str());
    }
    m_batch.clear();
}
