// The command line of deckview.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/scene/SceneCommand.h"

/// A picture to be written as a file.
struct Screenshot {
    std::string file;
    long frame = 0;  ///< the frame that it shows, counted from 1; 0 for the last of the run
};

/// A place to look from.
struct CameraPlace {
    std::array<double, 3> geodetic{};  ///< longitude, latitude in degrees, height in metres
    std::array<double, 3> wgs_hpr{};   ///< heading clockwise from north, pitch nose up, roll right wing down; degrees
};

/// What the command line asks for, with the defaults of a start without any.
struct Options {
    std::string root;    ///< runtime root; empty takes the one beside the program
    std::string plugin;  ///< the logic's library; empty takes the one beside the program
    std::string world;   ///< empty takes the one that the logic names
    std::string aircraft = "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.cfg";
    std::string airport = "start_deck";
    std::string carrier = "JT_CN_LNJ";
    std::optional<int> drive_ship;  ///< control mode of the carrier under way; without one it stays where it is
    bool headless = false;
    std::array<int, 2> size{1280, 720};  ///< pixels
    bool fullscreen = false;
    bool no_panels = false;  ///< the picture shows the scene alone
    std::string quality = "medium";
    std::string language;  ///< of the application's own texts, "zh" or "en"; empty takes the environment's
    std::string input;     ///< script of input events; empty for none
    std::string script;    ///< script of the instructor's actions; empty for none
    std::string channel;   ///< of the configuration's "slaves"; empty for the whole view
    std::vector<Screenshot> screenshots;
    std::optional<CameraPlace> camera;  ///< instead of the logic's view
    std::vector<command::SetTrack> tracks;
    std::optional<command::Visibility> visibility;
    std::optional<command::Date> date;
    long frames = 0;             ///< 0 runs until it is stopped
    std::optional<double> step;  ///< seconds a frame, as fast as they go; without it frames follow the clock
    std::vector<std::pair<std::string, std::string>> overrides;  ///< keys of the configuration
    bool stats = false;
    std::string hash_file;  ///< empty writes none
    bool memory_report = false;
};

/// Reads the command line. An exit status instead when the program is to end at once: 0 after --help and --version, 2
/// after wrong usage, which is named on standard error.
std::optional<int> parseOptions(int argc, char** argv, Options& options);
