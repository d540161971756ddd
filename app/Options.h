// The command line of deckview.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/scene/SceneCommand.h"

/// A picture to write to a file.
struct Screenshot {
    std::string file;
    long frame = 0;  ///< number of the frame, counted from 1; 0 for the last frame of the run
};

/// A fixed camera pose.
struct CameraPlace {
    std::array<double, 3> geodetic{};  ///< longitude, latitude in degrees, height in metres
    std::array<double, 3> wgs_hpr{};   ///< heading clockwise from north, pitch nose up, roll right wing down; degrees
};

/// The options of the command line; defaults hold for options that are not given.
struct Options {
    std::string root;    ///< runtime root; empty: the one beside the program
    std::string plugin;  ///< library of the logic; empty: the one beside the program
    std::string world;   ///< empty: the world of the logic
    std::string aircraft = "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.cfg";
    std::string airport = "start_deck";
    std::string carrier = "JT_CN_LNJ";
    std::optional<int> drive_ship;  ///< control mode of the driven carrier; without it the carrier does not move
    bool headless = false;
    std::array<int, 2> size{1280, 720};  ///< pixels
    bool fullscreen = false;
    bool no_panels = false;  ///< the picture contains the scene only
    std::string quality = "medium";
    std::string language;  ///< of the application's own texts, "zh" or "en"; empty: that of the environment
    std::string input;     ///< script of input events; empty for none
    std::string script;    ///< script of scene commands; empty for none
    std::string channel;   ///< name in "slaves" of the configuration; empty for the whole view
    std::vector<Screenshot> screenshots;
    std::optional<CameraPlace> camera;  ///< replaces the logic's view
    std::vector<command::SetTrack> tracks;
    std::optional<command::Visibility> visibility;
    std::optional<command::Date> date;
    long frames = 0;             ///< number of frames to run; 0: until stopped
    std::optional<double> step;  ///< seconds per frame, at full speed; without it frames follow the clock
    std::vector<std::pair<std::string, std::string>> overrides;  ///< keys of the configuration
    bool stats = false;
    std::string hash_file;  ///< empty: no hashes
    bool memory_report = false;
};

/// Reads the command line. Returns an exit status when the program must end at once: 0 after --help and --version, 2
/// after wrong usage, with a message on standard error.
std::optional<int> parseOptions(int argc, char** argv, Options& options);
