// The text form of scene commands. `describe` defines the values of each command once. Reading, writing and checking
// are three visitors of that definition.
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <iomanip>
#include <sstream>

#include "app/scene/SceneCommand.h"

namespace {

constexpr double MAX_DISTANCE = 100000.0, MIN_HEIGHT = -1000.0, MAX_HEIGHT = 30000.0;  // metres

constexpr const char* SWITCH[] = {"off", "on"};
constexpr const char* GEAR[] = {"up", "down"};
constexpr const char* VIEWS[] = {"cockpit", "orbit", "free"};
constexpr const char* MODES[] = {"data", "manual", "automatic"};

/// A line break would end the script line; other control characters would be invisible in it.
bool isName(const std::string& text) {
    return !text.empty() && std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < ' '; });
}

/// Reads values from a text.
class Reader {
public:
    Reader(const std::string& text, const std::vector<TargetType>& types) : m_text(text), m_types(types) {}

    bool isGood() { return m_good && isAtEnd(); }

    void verb(const char* verb) { require(word() == verb); }
    void number(double& value, double low, double high) {
        const std::string text = word();
        const char* const end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data(), end, value);
        require(error == std::errc() && rest == end && value >= low && value <= high);
    }
    void optionalNumber(double& value, double low, double high) {
        if (!isAtEnd()) number(value, low, high);
    }
    void integer(int& value, int low, int high) {
        double read = 0.0;
        number(read, low, high);
        require(read == std::floor(read));
        if (m_good) value = static_cast<int>(read);
    }
    template <class T, std::size_t N>
    void choice(T& value, const char* const (&names)[N]) {
        const auto* const found = std::find(names, names + N, word());
        require(found != names + N);
        value = static_cast<T>(found - names);
    }
    void name(std::string& name) {
        m_text >> std::quoted(name);
        require(isName(name));
    }
    void type(int& code) {
        const std::string text = word();
        const auto found = std::find_if(m_types.begin(), m_types.end(), [&](const TargetType& type) {
            return text == type.name || text == std::to_string(type.code);
        });
        require(found != m_types.end());
        if (m_good) code = found->code;
    }
    void require(bool good) { m_good = m_good && good; }

private:
    std::string word() {
        std::string word;
        m_text >> word;
        return word;
    }
    bool isAtEnd() { return (m_text >> std::ws).eof(); }

    std::istringstream m_text;
    const std::vector<TargetType>& m_types;
    bool m_good = true;
};

/// Writes the text.
class Writer {
public:
    const std::string& getText() const { return m_text; }

    void verb(const char* verb) { m_text = verb; }
    void number(double value, double, double) {
        char digits[32];
        word({digits, std::to_chars(digits, std::end(digits), value).ptr});
    }
    void optionalNumber(double value, double low, double high) { number(value, low, high); }
    void integer(int value, int, int) { word(std::to_string(value)); }
    template <class T, std::size_t N>
    void choice(T value, const char* const (&names)[N]) {
        const auto index = static_cast<std::size_t>(value);
        word(index < N ? names[index] : std::to_string(index));
    }
    void name(const std::string& name) {
        std::ostringstream quoted;
        quoted << std::quoted(name);
        word(name.find_first_of(" \t\"\\") == std::string::npos ? name : quoted.str());
    }
    void type(int code) { word(std::to_string(code)); }
    void require(bool) {}

private:
    void word(const std::string& word) { m_text.append(1, ' ').append(word); }

    std::string m_text;
};

/// Checks the ranges.
class Checker {
public:
    bool isGood() const { return m_good; }

    void verb(const char*) {}
    void number(double value, double low, double high) { require(value >= low && value <= high); }
    void optionalNumber(double value, double low, double high) { number(value, low, high); }
    void integer(int value, int low, int high) { require(value >= low && value <= high); }
    template <class T, std::size_t N>
    void choice(T value, const char* const (&)[N]) {
        require(static_cast<std::size_t>(value) < N);
    }
    void name(const std::string& name) { require(isName(name)); }
    void type(int) {}
    void require(bool good) { m_good = m_good && good; }

private:
    bool m_good = true;
};

// clang-format off
template <class Io> void describe(Io& io, command::Rain& c) { io.verb("rain"); io.number(c.percent, 0, 100); }
template <class Io> void describe(Io& io, command::Snow& c) { io.verb("snow"); io.number(c.percent, 0, 100); }
template <class Io> void describe(Io& io, command::Time& c) { io.verb("time"); io.number(c.hours, 0, 24); }
template <class Io> void describe(Io& io, command::Visibility& c) { io.verb("visibility"); io.number(c.metres, 0, 1e6); }
template <class Io> void describe(Io& io, command::Sea& c) { io.verb("sea"); io.number(c.beaufort, 0, 12); }
template <class Io> void describe(Io& io, command::NavigationLights& c) { io.verb("navigation_lights"); io.choice(c.on, SWITCH); }
template <class Io> void describe(Io& io, command::ToggleLight&) { io.verb("light"); }
template <class Io> void describe(Io& io, command::Wipers& c) { io.verb("wipers"); io.choice(c.on, SWITCH); }
template <class Io> void describe(Io& io, command::Gear& c) { io.verb("gear"); io.choice(c.down, GEAR); }
template <class Io> void describe(Io& io, command::Push& c) { io.verb("push"); io.choice(c.on, SWITCH); }
template <class Io> void describe(Io& io, command::BackToStart&) { io.verb("back"); }
template <class Io> void describe(Io& io, command::Fire&) { io.verb("fire"); }
template <class Io> void describe(Io& io, command::Explode&) { io.verb("explode"); }
template <class Io> void describe(Io& io, command::Reset&) { io.verb("reset"); }
template <class Io> void describe(Io& io, command::View& c) { io.verb("view"); io.choice(c.mode, VIEWS); }
template <class Io> void describe(Io& io, command::NextView&) { io.verb("next_view"); }
template <class Io> void describe(Io& io, command::LevelView&) { io.verb("level"); }
template <class Io> void describe(Io& io, command::FlightMode& c) { io.verb("mode"); io.choice(c.mode, MODES); }
template <class Io> void describe(Io& io, command::TestPanel& c) { io.verb("test_panel"); io.choice(c.on, SWITCH); }
template <class Io> void describe(Io& io, command::RemoveTarget& c) { io.verb("remove"); io.name(c.name); }
// clang-format on

template <class Io>
void describe(Io& io, command::Date& c) {
    namespace chrono = std::chrono;
    io.verb("date");
    io.integer(c.year, 1, 9999);
    io.integer(c.month, 1, 12);
    io.integer(c.day, 1, 31);
    io.require(chrono::year_month_day(chrono::year(c.year), chrono::month(static_cast<unsigned>(c.month)),
                                      chrono::day(static_cast<unsigned>(c.day)))
                   .ok());
}

template <class Io>
void describe(Io& io, command::SetTrack& c) {
    io.verb("track");
    io.name(c.name);
    io.number(c.percent, 0, 100);
}

template <class Io>
void describe(Io& io, RelativePlace& place) {
    io.number(place.bearing, -360, 360);
    io.number(place.distance, 0, MAX_DISTANCE);
    io.optionalNumber(place.height, MIN_HEIGHT, MAX_HEIGHT);
    io.optionalNumber(place.heading, -360, 360);
}

template <class Io>
void describe(Io& io, command::AddTarget& c) {
    io.verb("target");
    io.name(c.name);
    io.type(c.type);
    describe(io, c.place);
}

template <class Io>
void describe(Io& io, command::MoveTarget& c) {
    io.verb("move");
    io.name(c.name);
    describe(io, c.place);
}

template <class Io>
void describe(Io& io, command::PlayEffect& c) {
    io.verb("effect");
    io.choice(c.effect, command::EFFECT_NAMES);
    describe(io, c.place);
}

template <class Io>
void describe(Io& io, command::LaunchTorpedo& c) {
    io.verb("torpedo");
    describe(io, c.place);
}

template <class Visitor>
void visitCopy(SceneCommand command, Visitor& visitor) {
    std::visit([&](auto& c) { describe(visitor, c); }, command);
}

/// Tries the command types from index I on.
template <std::size_t I = 0>
std::optional<SceneCommand> parseFrom(const std::string& text, const std::vector<TargetType>& types) {
    if constexpr (I < std::variant_size_v<SceneCommand>) {
        Reader reader(text, types);
        std::variant_alternative_t<I, SceneCommand> command;
        describe(reader, command);
        return reader.isGood() ? SceneCommand(std::move(command)) : parseFrom<I + 1>(text, types);
    } else {
        return std::nullopt;
    }
}

}  // namespace

std::string printCommand(const SceneCommand& command) {
    Writer writer;
    visitCopy(command, writer);
    return writer.getText();
}

std::optional<SceneCommand> parseCommand(const std::string& text, const std::vector<TargetType>& types) {
    return parseFrom(text, types);
}

bool isInRange(const SceneCommand& command) {
    Checker checker;
    visitCopy(command, checker);
    return checker.isGood();
}
