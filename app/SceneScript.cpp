// Plays a script of the instructor's actions: before each frame, those that have become due.
#include "SceneScript.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "Instructor.h"
#include "TargetTypes.h"
#include "Texts.h"
#include "engine/text/Log.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

using Action = SceneScript::Action;

using Types = std::vector<TargetType>;

/// The words behind a line's verb, taken one by one.
class Words {
public:
    Words(const std::string& text, const Types& types) : m_text(text), m_types(types) {}

    bool word(std::string& word) { return static_cast<bool>(m_text >> word); }
    bool number(double& value, double low, double high) {
        std::string text;
        if (!word(text)) return false;
        char* end = nullptr;
        value = std::strtod(text.c_str(), &end);
        return *end == '\0' && value >= low && value <= high;
    }
    /// One of the names; `index`: which.
    bool choice(std::initializer_list<const char*> names, int& index) {
        std::string text;
        if (!word(text)) return false;
        const auto found = std::find(names.begin(), names.end(), text);
        index = static_cast<int>(found - names.begin());
        return found != names.end();
    }
    /// A type of target by its code or its English name.
    bool type(int& code) {
        std::string text;
        if (!word(text)) return false;
        const auto found = std::find_if(m_types.begin(), m_types.end(), [&](const TargetType& type) {
            return text == type.name || text == std::to_string(type.code);
        });
        if (found == m_types.end()) return false;
        code = found->code;
        return true;
    }
    bool atEnd() { return (m_text >> std::ws).eof(); }

private:
    std::istringstream m_text;
    const Types& m_types;
};

template <class Operation>
Action always(Operation operation) {
    return [operation](Instructor& instructor) {
        operation(instructor);
        return true;
    };
}

/// A verb without words behind it.
template <auto Operation>
bool readPlain(Words&, Action& action) {
    action = always([](Instructor& instructor) { (instructor.*Operation)(); });
    return true;
}

template <auto Operation, int High>
bool readNumber(Words& words, Action& action) {
    double value = 0.0;
    if (!words.number(value, 0.0, High)) return false;
    action = always([value](Instructor& instructor) { (instructor.*Operation)(value); });
    return true;
}

template <auto Operation>
bool readSwitch(Words& words, Action& action) {
    int on = 0;
    if (!words.choice({"off", "on"}, on)) return false;
    action = always([on](Instructor& instructor) { (instructor.*Operation)(on == 1); });
    return true;
}

bool readGear(Words& words, Action& action) {
    int down = 0;
    if (!words.choice({"up", "down"}, down)) return false;
    action = always([down](Instructor& instructor) { instructor.setGear(down == 1); });
    return true;
}

bool readView(Words& words, Action& action) {
    int view = 0;
    if (!words.choice({"cockpit", "orbit", "free"}, view)) return false;
    action = always([view](Instructor& instructor) { instructor.setView(view); });
    return true;
}

bool readMode(Words& words, Action& action) {
    int mode = 0;
    if (!words.choice({"data", "manual", "automatic"}, mode)) return false;
    action = always([mode](Instructor& instructor) { instructor.setFlightMode(mode); });
    return true;
}

/// Bearing and distance, then height and heading where they are given.
bool readPlace(Words& words, TargetPlace& place) {
    constexpr double FARTHEST = 100000.0, HIGHEST = 30000.0;  // metres
    if (!words.number(place.bearing, -360.0, 360.0) || !words.number(place.distance, 0.0, FARTHEST)) return false;
    if (!words.atEnd() && !words.number(place.height, -1000.0, HIGHEST)) return false;
    return words.atEnd() || words.number(place.heading, -360.0, 360.0);
}

bool readTarget(Words& words, Action& action) {
    std::string name;
    int type = 0;
    TargetPlace place;
    if (!words.word(name) || !words.type(type) || !readPlace(words, place)) return false;
    action = [=](Instructor& instructor) { return instructor.addTarget(name, type, place); };
    return true;
}

bool readMove(Words& words, Action& action) {
    std::string name;
    TargetPlace place;
    if (!words.word(name) || !readPlace(words, place)) return false;
    action = [=](Instructor& instructor) { return instructor.moveTarget(name, place); };
    return true;
}

bool readRemove(Words& words, Action& action) {
    std::string name;
    if (!words.word(name)) return false;
    action = [=](Instructor& instructor) { return instructor.removeTarget(name); };
    return true;
}

bool readEffect(Words& words, Action& action) {
    std::string name;
    TargetPlace place;
    if (!words.word(name) || !readPlace(words, place)) return false;
    const std::vector<std::string> known = Instructor::getEffects();
    if (std::find(known.begin(), known.end(), name) == known.end()) return false;
    action = [=](Instructor& instructor) { return instructor.playEffect(name, place); };
    return true;
}

bool readTorpedo(Words& words, Action& action) {
    TargetPlace place;
    if (!readPlace(words, place)) return false;
    action = [=](Instructor& instructor) { return instructor.launchTorpedo(place); };
    return true;
}

/// A verb without words behind it whose operation may fail.
template <auto Operation>
bool readAttempt(Words&, Action& action) {
    action = std::mem_fn(Operation);
    return true;
}

constexpr struct {
    const char* name;
    bool (*read)(Words& words, Action& action);
} VERBS[] = {{"rain", readNumber<&Instructor::setRain, 100>},
             {"snow", readNumber<&Instructor::setSnow, 100>},
             {"time", readNumber<&Instructor::setTime, 24>},
             {"visibility", readNumber<&Instructor::setVisibility, 1000000>},
             {"sea", readNumber<&Instructor::setSea, 12>},
             {"navigation_lights", readSwitch<&Instructor::setNavigationLights>},
             {"light", readPlain<&Instructor::switchLight>},
             {"gear", readGear},
             {"push", readSwitch<&Instructor::setPush>},
             {"back", readPlain<&Instructor::backToStart>},
             {"fire", readAttempt<&Instructor::fire>},
             {"explode", readAttempt<&Instructor::explode>},
             {"reset", readPlain<&Instructor::reset>},
             {"view", readView},
             {"level", readPlain<&Instructor::levelView>},
             {"mode", readMode},
             {"target", readTarget},
             {"move", readMove},
             {"remove", readRemove},
             {"effect", readEffect},
             {"torpedo", readTorpedo}};

bool readAction(const TimedLine& line, const Types& types, Action& action) {
    for (const auto& verb : VERBS) {
        Words words(line.rest, types);
        if (line.verb == verb.name) return verb.read(words, action) && words.atEnd();
    }
    return false;
}

}  // namespace

bool SceneScript::open(const std::string& file, std::string& error) {
    std::vector<TimedLine> lines;
    if (!readTimedLines(file, lines, error)) return false;
    const Types types = readTargetTypes(Texts("en"));
    std::vector<Action> actions;
    for (const TimedLine& line : lines) {
        if (readAction(line, types, actions.emplace_back())) continue;
        error = file + ":" + std::to_string(line.number) + ": \"" + line.verb + " " + line.rest +
                "\" is no action; docs/user_guide.md lists what is";
        return false;
    }
    m_file = file;
    m_queue.set(std::move(lines));
    m_actions = std::move(actions);
    m_next = 0;
    return true;
}

void SceneScript::play(Instructor& instructor, double time, long frame) {
    while (const TimedLine* const line = m_queue.next(time, frame)) {
        if (m_actions[m_next++](instructor)) continue;
        jLog::warning("%s:%d: \"%s %s\" could not be done", m_file.c_str(), line->number, line->verb.c_str(),
                      line->rest.c_str());
    }
}
