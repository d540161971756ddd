// The command line, read with CLI11.
#include "Options.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdlib>
#include <iostream>

namespace {

std::string checkStep(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (end == text.c_str() || *end != '\0' || !(value > 0.0) || std::isinf(value)) {
        return "must be a number of seconds above 0, such as 0.016";
    }
    return {};
}

std::string checkOverride(const std::string& text) {
    return text.find('=') == std::string::npos || text[0] == '=' ? "must be KEY=VALUE" : std::string();
}

}  // namespace

std::optional<int> parseOptions(int argc, char** argv, Options& options) {
    CLI::App app("deckview: the visual system of a carrier flight simulation.", "deckview");
    std::string step;
    std::vector<std::string> overrides;
    app.add_option("--root", options.root, "Runtime root: the folder that holds config/ and data/");
    app.add_option("--plugin", options.plugin, "Library of the scene's logic");
    app.add_option("--world", options.world, "World file instead of the one that the logic names");
    app.add_option("--aircraft", options.aircraft, "Aircraft configuration file")->capture_default_str();
    app.add_option("--airport", options.airport, "Node at which the aircraft starts")->capture_default_str();
    app.add_option("--carrier", options.carrier, "Node of the carrier")->capture_default_str();
    app.add_flag("--headless", options.headless, "Run without a window");
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
    if (!step.empty()) options.step = std::strtod(step.c_str(), nullptr);
    for (const std::string& entry : overrides) {
        const auto equals = entry.find('=');
        options.overrides.emplace_back(entry.substr(0, equals), entry.substr(equals + 1));
    }
    return std::nullopt;
}
