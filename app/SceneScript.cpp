// Reads a script before the run and queues its commands during the run.
#include "SceneScript.h"

#include "TargetTypes.h"
#include "Texts.h"

bool SceneScript::open(const std::string& file, std::string& error) {
    std::vector<TimedLine> lines;
    if (!readTimedLines(file, lines, error)) return false;
    const std::vector<TargetType> types = readTargetTypes(Texts("en"));
    std::vector<SceneCommand> commands;
    for (const TimedLine& line : lines) {
        const std::string text = line.rest.empty() ? line.verb : line.verb + ' ' + line.rest;
        std::optional<SceneCommand> command = parseCommand(text, types);
        if (!command) {
            error = file + ":" + std::to_string(line.number) + ": \"" + text +
                    "\" is no action; docs/user_guide.md lists what is";
            return false;
        }
        commands.push_back(std::move(*command));
    }
    m_file = file;
    m_queue.set(std::move(lines));
    m_commands = std::move(commands);
    m_next = 0;
    return true;
}

void SceneScript::play(SceneCommandQueue& commands, double time, long frame) {
    while (const TimedLine* const line = m_queue.next(time, frame)) {
        commands.push(m_commands[m_next++], {m_file, line->number});
    }
}
