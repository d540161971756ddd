// The command line, read with CLI11.
#include "Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace {

/// Whether `end` is the length of the text.
bool isAll(const std::string& text, int end) {
    return static_cast<std::size_t>(end) == text.size();
}

/// Seconds, or a fraction such as 1/60.
bool readStep(const std::string& text, Options& options) {
    double step = 0.0, below = 1.0;
    int end = 0, fraction_end = 0;
    const int count = std::sscanf(text.c_str(), "%lf%n/%lf%n", &step, &end, &below, &fraction_end);
    if (count < 1 || !isAll(text, count == 2 ? fraction_end : end)) return false;
    options.step = step / below;
    return *options.step > 0.0 && std::isfinite(*options.step);
}

bool readSize(const std::string& text, Options& options) {
    constexpr int MAX_SIZE = 16384;
    auto& [width, height] = options.size;
    int end = 0;
    return std::sscanf(text.c_str(), "%dx%d%n", &width, &height, &end) == 2 && isAll(text, end) && width >= 1 &&
           width <= MAX_SIZE && height >= 1 && height <= MAX_SIZE;
}

bool readCamera(const std::string& text, Options& options) {
    auto& [g, h] = options.camera.emplace();
    int end = 0;
    const int count = std::sscanf(text.c_str(), "%lf,%lf,%lf%n,%lf%n,%lf%n,%lf%n", &g[0], &g[1], &g[2], &end, &h[0],
                                  &end, &h[1], &end, &h[2], &end);
    const auto isFinite = [](double v) { return std::isfinite(v); };
    return count >= 3 && isAll(text, end) && std::all_of(g.begin(), g.end(), isFinite) &&
           std::all_of(h.begin(), h.end(), isFinite) && std::fabs(g[1]) <= 90.0;
}

bool readDate(const std::string& text, Options& options) {
    command::Date& date = options.date.emplace();
    int end = 0;
    return std::sscanf(text.c_str(), "%d-%d-%d%n", &date.year, &date.month, &date.day, &end) == 3 && isAll(text, end) &&
           isInRange(date);
}

bool readVisibility(const std::string& text, Options& options) {
    int end = 0;
    command::Visibility& visibility = options.visibility.emplace();
    return std::sscanf(text.c_str(), "%lf%n", &visibility.metres, &end) == 1 && isAll(text, end) &&
           isInRange(visibility);
}

bool readTrack(const std::string& text, Options& options) {
    const auto equals = text.find('=');
    if (equals == std::string::npos) return false;
    command::SetTrack& track = options.tracks.emplace_back();
    track.name = text.substr(0, equals);
    int end = 0;
    const bool is_number = std::sscanf(text.c_str() + equals + 1, "%lf%n", &track.percent, &end) == 1 &&
                           isAll(text.substr(equals + 1), end) && std::isfinite(track.percent);
    track.percent = std::clamp(track.percent, 0.0, 100.0);
    return is_number && isInRange(track);
}

bool readOverride(const std::string& text, Options& options) {
    const auto equals = text.find('=');
    if (equals == std::string::npos || equals == 0) return false;
    options.overrides.emplace_back(text.substr(0, equals), text.substr(equals + 1));
    return true;
}

/// "out/deck.png@60" is the file "out/deck.png" at frame 60.
bool readScreenshot(const std::string& text, Options& options) {
    const auto at = text.rfind('@');
    const std::string number = at == std::string::npos ? "" : text.substr(at + 1);
    const bool has_frame =
        !number.empty() && number.size() <= 9 && number.find_first_not_of("0123456789") == std::string::npos;
    options.screenshots.push_back(has_frame ? Screenshot{text.substr(0, at), std::stol(number)} : Screenshot{text, 0});
    return true;
}

/// Adds an option whose text `read` stores in the options. With `many` it may be given more than once.
void addRead(CLI::App& app, Options& options, const char* name, const char* type,
             bool (*read)(const std::string&, Options&), const char* must, const char* help, bool many = false) {
    CLI::Option* const option = app.add_option_function<std::vector<std::string>>(
        name,
        [=, &options](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) {
                if (!read(text, options)) throw CLI::ValidationError(name, text + " must be " + must);
            }
        },
        help);
    option->type_name(type)->type_size(1)->allow_extra_args(false);
    if (!many) option->multi_option_policy(CLI::MultiOptionPolicy::Throw);
}

}  // namespace

std::optional<int> parseOptions(int argc, char** argv, Options& options) {
    CLI::App app("deckview: the visual system of a carrier flight simulation.", "deckview");
    const auto read = [&](auto... arguments) { addRead(app, options, arguments...); };
    app.add_option("--root", options.root, "Runtime root: the folder that holds config/ and data/");
    app.add_option("--plugin", options.plugin, "Library of the scene's logic");
    app.add_option("--world", options.world, "World file instead of the one that the logic names");
    app.add_option("--aircraft", options.aircraft, "Aircraft configuration file")->capture_default_str();
    app.add_option("--airport", options.airport, "Node at which the aircraft starts")->capture_default_str();
    app.add_option("--carrier", options.carrier, "Node of the carrier")->capture_default_str();
    app.add_option("--drive-ship", options.drive_ship,
                   "Let the carrier float and drive it: by the arrow keys, or ahead")
        ->type_name("keyboard|steady")
        ->transform(CLI::Transformer(std::map<std::string, int>{{"keyboard", 1}, {"steady", 2}}))
        ->check(CLI::IsMember({1, 2}));
    app.add_flag("--headless", options.headless, "Run without a window");
    read("--size", "WxH", readSize, "WIDTHxHEIGHT in pixels, 1 to 16384 each", "Size of the picture, such as 1280x720");
    app.add_flag("--fullscreen", options.fullscreen, "Fill the screen");
    app.add_flag("--no-panels", options.no_panels, "Show the scene alone");
    app.add_option("--quality", options.quality, "How much is spent on a frame")
        ->check(CLI::IsMember({"low", "medium", "high"}))
        ->capture_default_str();
    app.add_option("--language", options.language, "Language of the program's own texts, else the environment's")
        ->check(CLI::IsMember({"zh", "en"}));
    app.add_option("--input", options.input, "Play keys, mouse and wheel from a file");
    app.add_option("--script", options.script, "Do what an instructor does, from a file");
    app.add_option("--channel", options.channel, "Display channel, of the configuration's \"slaves\"");
    read("--screenshot", "FILE[@FRAME]", readScreenshot, "a file",
         "Write the picture of a frame (else of the last) as PNG", true);
    read("--camera", "PLACE", readCamera, "LON,LAT,HEIGHT[,HEADING[,PITCH[,ROLL]]]",
         "Look from LON,LAT,HEIGHT[,HEADING[,PITCH[,ROLL]]] instead of through the logic's camera");
    read("--track", "NAME=PERCENT", readTrack, "NAME=PERCENT, such as TOD=75",
         "Set a track: TOD, runway_wet, snow, autumn, airport_light_brightness ...", true);
    read("--visibility", "METRES", readVisibility, "0 to 1000000 metres", "Visibility, rounded to steps of 300 m");
    read("--date", "YEAR-MONTH-DAY", readDate, "YEAR-MONTH-DAY", "Date of the scene");
    app.add_option("--frames", options.frames, "End after this many frames")->check(CLI::PositiveNumber);
    read("--step", "SECONDS", readStep, "a number of seconds above 0, such as 0.016 or 1/60",
         "Frames of this many seconds, as fast as they go");
    read("--set", "KEY=VALUE", readOverride, "KEY=VALUE", "Override a key of config/Logic_Test_Fly.cfg", true);
    app.add_flag("--stats", options.stats, "Print one line a second");
    app.add_option("--hash", options.hash_file, "Write a hash of the world's state for each frame");
    app.add_flag("--memory-report", options.memory_report, "At the end, list what the logic left allocated");
    app.set_version_flag("--version", "deckview " DECKVIEW_VERSION);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    return std::nullopt;
}
