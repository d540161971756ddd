// The requests that a front end (key, panel, script) can make to the scene, each with one text form.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

/// A position relative to the aircraft, over level ground.
struct RelativePlace {
    double bearing = 0.0;   ///< degrees clockwise from north
    double distance = 0.0;  ///< metres
    double height = 0.0;    ///< metres above the deck, the ground or the sea at that position
    double heading = 0.0;   ///< of the placed object, degrees clockwise from north

    bool operator==(const RelativePlace&) const = default;
};

/// A kind of target.
struct TargetType {
    int code = 0;      ///< in "target_type" of the configuration
    std::string name;  ///< one word; scripts may use it instead of the code
};

/// One struct per command; docs/user_guide.md lists their text forms.
namespace command {

// Weather and date.
struct Rain {
    double percent = 0.0;  ///< 0 to 100
    bool operator==(const Rain&) const = default;
};
struct Snow {
    double percent = 0.0;  ///< 0 to 100
    bool operator==(const Snow&) const = default;
};
struct Time {
    double hours = 0.0;  ///< local solar time, 0 to 24
    bool operator==(const Time&) const = default;
};
struct Date {
    int year = 2024, month = 1, day = 1;
    bool operator==(const Date&) const = default;
};
struct Visibility {
    double metres = 0.0;  ///< 0 to 1,000,000; rounded to steps of 300
    bool operator==(const Visibility&) const = default;
};
struct Sea {
    double beaufort = 0.0;  ///< 0 to 12; rounded to whole numbers
    bool operator==(const Sea&) const = default;
};
/// Sets one of the environment's tracks directly.
struct SetTrack {
    std::string name;      ///< file name without folder and extension: "TOD", "road_light"
    double percent = 0.0;  ///< 0 to 100
    bool operator==(const SetTrack&) const = default;
};

// The aircraft.
struct NavigationLights {
    bool on = false;
    bool operator==(const NavigationLights&) const = default;
};
/// Landing light of the jet, search light of the helicopter: switches it on or off.
struct ToggleLight {
    bool operator==(const ToggleLight&) const = default;
};
struct Wipers {
    bool on = false;
    bool operator==(const Wipers&) const = default;
};
struct Gear {
    bool down = false;
    bool operator==(const Gear&) const = default;
};
/// Moves the aircraft forward at 30 m/s.
struct Push {
    bool on = false;
    bool operator==(const Push&) const = default;
};
struct BackToStart {
    bool operator==(const BackToStart&) const = default;
};
struct Fire {
    bool operator==(const Fire&) const = default;
};
struct Explode {
    bool operator==(const Explode&) const = default;
};
/// Returns the whole scene to its start; targets stay.
struct Reset {
    bool operator==(const Reset&) const = default;
};

// View and flight mode.
struct View {
    int mode = 0;  ///< a PLAYER_MODE
    bool operator==(const View&) const = default;
};
struct NextView {
    bool operator==(const NextView&) const = default;
};
struct LevelView {
    bool operator==(const LevelView&) const = default;
};
struct FlightMode {
    int mode = 0;  ///< a FLY_MODE
    bool operator==(const FlightMode&) const = default;
};
struct TestPanel {
    bool on = false;
    bool operator==(const TestPanel&) const = default;
};

// Targets and effects.
struct AddTarget {
    std::string name;
    int type = 0;  ///< code of a TargetType
    RelativePlace place;
    bool operator==(const AddTarget&) const = default;
};
/// The target glides to the new position; its model stays the same.
struct MoveTarget {
    std::string name;
    RelativePlace place;
    bool operator==(const MoveTarget&) const = default;
};
struct RemoveTarget {
    std::string name;
    bool operator==(const RemoveTarget&) const = default;
};
/// Plays an effect once.
struct PlayEffect {
    int effect = 0;  ///< index in EFFECT_NAMES
    RelativePlace place;
    bool operator==(const PlayEffect&) const = default;
};
/// A torpedo runs along its heading for a minute at 20 m/s.
struct LaunchTorpedo {
    RelativePlace place;
    bool operator==(const LaunchTorpedo&) const = default;
};

/// Effects that can be played.
inline constexpr const char* EFFECT_NAMES[] = {"explosion", "aircraft_explosion", "water_explosion", "water_drop",
                                               "decoy"};

}  // namespace command

using SceneCommand =
    std::variant<command::Rain, command::Snow, command::Time, command::Date, command::Visibility, command::Sea,
                 command::SetTrack, command::NavigationLights, command::ToggleLight, command::Wipers, command::Gear,
                 command::Push, command::BackToStart, command::Fire, command::Explode, command::Reset, command::View,
                 command::NextView, command::LevelView, command::FlightMode, command::TestPanel, command::AddTarget,
                 command::MoveTarget, command::RemoveTarget, command::PlayEffect, command::LaunchTorpedo>;

/// The text form: a line of a script without its time, that is the verb and its values with one blank between them.
/// Numbers keep full precision. A name that is not a plain word is quoted.
std::string printCommand(const SceneCommand& command);
/// Parses a text form. Empty when it is no command, a value is missing, superfluous or out of range, or `types` does
/// not contain a target's type. Types and effects may also be given by name. Parsing the text of `printCommand` returns
/// an equal command if all values are in range.
std::optional<SceneCommand> parseCommand(const std::string& text, const std::vector<TargetType>& types);
/// Whether every value is in its range. The type of a target is not checked.
bool isInRange(const SceneCommand& command);
