// The command line, read with CLI11.
#include "Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>

namespace {

/// Seconds, or a fraction such as 1/60.
bool readStep(const std::string& text, double& step) {
    double below = 1.0;
    int end = 0, fraction_end = 0;
    const int count = std::sscanf(text.c_str(), "%lf%n/%lf%n", &step, &end, &below, &fraction_end);
    if (count < 1 || static_cast<std::size_t>(count == 2 ? fraction_end : end) != text.size()) return false;
    step /= below;
    return step > 0.0 && std::isfinite(step);
}

std::string checkStep(const std::string& text) {
    double step = 0.0;
    return readStep(text, step) ? std::string() : "must be a number of seconds above 0, such as 0.016 or 1/60";
}

bool readSize(const std::string& text, std::array<int, 2>& size) {
    constexpr int LARGEST = 16384;
    int end = 0;
    const bool complete = std::sscanf(text.c_str(), "%dx%d%n", &size[0], &size[1], &end) == 2 &&
                          static_cast<std::size_t>(end) == text.size();
    return complete && size[0] >= 1 && size[0] <= LARGEST && size[1] >= 1 && size[1] <= LARGEST;
}

bool readCamera(const std::string& text, CameraPlace& place) {
    auto& [g, h] = place;
    int end = 0;
    const int count = std::sscanf(text.c_str(), "%lf,%lf,%lf%n,%lf%n,%lf%n,%lf%n", &g[0], &g[1], &g[2], &end, &h[0],
                                  &end, &h[1], &end, &h[2], &end);
    const auto isFinite = [](double v) { return std::isfinite(v); };
    return count >= 3 && static_cast<std::size_t>(end) == text.size() && std::all_of(g.begin(), g.end(), isFinite) &&
           std::all_of(h.begin(), h.end(), isFinite) && std::fabs(g[1]) <= 90.0;
}

std::string checkCamera(const std::string& text) {
    CameraPlace place;
    return readCamera(text, place) ? std::string() : "must be LON,LAT,HEIGHT[,HEADING[,PITCH[,ROLL]]]";
}

bool readDate(const std::string& text, std::array<int, 3>& date) {
    auto& [year, month, day] = date;
    int end = 0;
    if (std::sscanf(text.c_str(), "%d-%d-%d%n", &year, &month, &day, &end) != 3) return false;
    // The calendar's types hold fewer bits and would wrap round.
    const bool is_near = year >= 1 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= 31;
    return is_near && static_cast<std::size_t>(end) == text.size() &&
           std::chrono::year_month_day{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                       std::chrono::day(static_cast<unsigned>(day))}
               .ok();
}

std::string checkDate(const std::string& text) {
    std::array<int, 3> date;
    return readDate(text, date) ? std::string() : "must be YEAR-MONTH-DAY";
}

bool readTrack(const std::string& text, std::pair<std::string, float>& track) {
    const auto equals = text.find('=');
    if (equals == std::string::npos || equals == 0) return false;
    char* end = nullptr;
    track = {text.substr(0, equals), std::strtof(text.c_str() + equals + 1, &end)};
    return end != text.c_str() + equals + 1 && *end == '\0' && std::isfinite(track.second);
}

std::string checkTrack(const std::string& text) {
    std::pair<std::string, float> track;
    return readTrack(text, track) ? std::string() : "must be NAME=PERCENT, such as TOD=75";
}

std::string checkOverride(const std::string& text) {
    return text.find('=') == std::string::npos || text[0] == '=' ? "must be KEY=VALUE" : std::string();
}

std::string checkSize(const std::string& text) {
    std::array<int, 2> size;
    return readSize(text, size) ? std::string() : "must be WIDTHxHEIGHT in pixels, 1 to 16384 each";
}

/// "out/deck.png@60" is the file "out/deck.png" at frame 60.
Screenshot readScreenshot(const std::string& text) {
    const auto at = text.rfind('@');
    const std::string number = at == std::string::npos ? "" : text.substr(at + 1);
    if (number.empty() || number.size() > 9 || number.find_first_not_of("0123456789") != std::string::npos) {
        return {text, 0};
    }
    return {text.substr(0, at), std::stol(number)};
}

}  // namespace

std::optional<int> parseOptions(int argc, char** argv, Options& options) {
    CLI::App app("deckview: the visual system of a carrier flight simulation.", "deckview");
    std::string step;
    std::string size, camera, date;
    std::vector<std::string> overrides, screenshots, tracks;
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
    app.add_option("--size", size, "Size of the picture, such as 1280x720")->check(CLI::Validator(checkSize, "WxH"));
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
    app.add_option("--screenshot", screenshots, "Write the picture of a frame (else of the last) as PNG")
        ->type_name("FILE[@FRAME]");
    app.add_option("--camera", camera, "Look from a place instead of through the logic's camera")
        ->type_name("LON,LAT,HEIGHT[,HEADING[,PITCH[,ROLL]]]")
        ->check(CLI::Validator(checkCamera, ""));
    app.add_option("--track", tracks, "Set a track: TOD, runway_wet, snow, autumn, airport_light_brightness ...")
        ->check(CLI::Validator(checkTrack, "NAME=PERCENT"));
    app.add_option("--visibility", options.visibility, "Visibility in metres, taken in steps of 300")
        ->check(CLI::Range(0, 1000000));
    app.add_option("--date", date, "Date of the scene")->check(CLI::Validator(checkDate, "YEAR-MONTH-DAY"));
    app.add_option("--frames", options.frames, "End after this many frames")->check(CLI::PositiveNumber);
    app.add_option("--step", step, "Frames of this many seconds, as fast as they go")
        ->check(CLI::Validator(checkStep, "SECONDS"));
    app.add_option("--set", overrides, "Override a key of config/Logic_Test_Fly.cfg")
        ->check(CLI::Validator(checkOverride, "KEY=VALUE"));
    app.add_flag("--stats", options.stats, "Print one line a second");
    app.add_option("--hash", options.hash_file, "Write a hash of the world's state for each frame");
    app.add_flag("--memory-report", options.memory_report, "At the end, list what the logic left allocated");
    app.set_version_flag("--version", "deckview " DECKVIEW_VERSION);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    if (!step.empty()) readStep(step, options.step.emplace());
    if (!size.empty()) readSize(size, options.size);
    if (!camera.empty()) readCamera(camera, options.camera.emplace());
    if (!date.empty()) readDate(date, options.date.emplace());
    for (const std::string& text : tracks) readTrack(text, options.tracks.emplace_back());
    for (const std::string& text : screenshots) options.screenshots.push_back(readScreenshot(text));
    for (const std::string& entry : overrides) {
        const auto equals = entry.find('=');
        options.overrides.emplace_back(entry.substr(0, equals), entry.substr(equals + 1));
    }
    return std::nullopt;
}
