// The command line of deckview.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// What the command line asks for, with the defaults of a start without any.
struct Options {
    std::string root;    ///< runtime root; empty takes the one beside the program
    std::string plugin;  ///< the logic's library; empty takes the one beside the program
    std::string world;   ///< empty takes the one that the logic names
    std::string aircraft = "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.cfg";
    std::string airport = "start_deck";
    std::string carrier = "JT_CN_LNJ";
    bool headless = false;
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
