// deckview as a user starts it: options, failures, signals, and the same run twice.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/FakeHost.h"
#include "support/Paths.h"
#include "support/Program.h"
#include "support/TestScene.h"

namespace {

using Strings = std::vector<std::string>;

std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// Ports of its own, so that runs beside each other do not meet.
Strings withPorts(Strings arguments, int local, int from, int to) {
    const Strings ports{"--set", "local_port=" + std::to_string(local),
                        "--set", "recv_from_flightSimulation_port=" + std::to_string(from),
                        "--set", "send_to_flightSimulation_port=" + std::to_string(to)};
    arguments.insert(arguments.end(), ports.begin(), ports.end());
    return arguments;
}

int countLines(const std::string& text, const std::string& part) {
    std::istringstream in(text);
    int count = 0;
    for (std::string line; std::getline(in, line);) count += line.find(part) != std::string::npos;
    return count;
}

}  // namespace

TEST(Deckview, TellsWrongUsageFromFailure) {
    const struct {
        Strings arguments;
        int status;
        std::string says;
    } cases[] = {
        {{"--version"}, 0, "deckview "},
        {{"--help"}, 0, "--airport"},
        {{"--no-such-option"}, 2, "no-such-option"},
        {{"--step", "0"}, 2, "seconds above 0"},
        {{"--step", "-0.1"}, 2, "seconds above 0"},
        {{"--step", "1/0"}, 2, "seconds above 0"},
        {{"--step", "1/60s"}, 2, "seconds above 0"},
        {{"--step", "nan"}, 2, "seconds above 0"},
        {{"--frames", "-3"}, 2, "frames"},
        {{"--drive-ship", "sideways"}, 2, "drive-ship"},
        {{"--set", "fly_mode"}, 2, "KEY=VALUE"},
        {{"--root", "/nowhere"}, 1, "give it with --root"},
        {{"--plugin", "/nowhere.so"}, 1, "/nowhere.so"},
        {{"--plugin", DECKVIEW_LIB "/libengine.so"}, 1, "CreateLogic"},
        {{"--world", "data/none.world"}, 1, "data/none.world"},
        {{"--world", "../../etc/passwd"}, 1, "cannot be loaded"},
        {{"--hash", "/nowhere/hash.txt"}, 1, "/nowhere/hash.txt"},
        {{"--size", "0x10"}, 2, "WIDTHxHEIGHT"},
        {{"--size", "99999x10"}, 2, "WIDTHxHEIGHT"},
        {{"--size", "64"}, 2, "WIDTHxHEIGHT"},
        {{"--quality", "best"}, 2, "medium"},
        {{"--track", "TOD"}, 2, "PERCENT"},
        {{"--date", "2026-2-30"}, 2, "YEAR-MONTH-DAY"},
        {{"--date", "2026-257-15"}, 2, "YEAR-MONTH-DAY"},
        {{"--date", "2026-1-271"}, 2, "YEAR-MONTH-DAY"},
        {{"--date", "67562-1-15"}, 2, "YEAR-MONTH-DAY"},
        {{"--camera", "1,2"}, 2, "LON,LAT,HEIGHT"},
        {{"--camera", "1,95,3"}, 2, "LON,LAT,HEIGHT"},
        {{"--headless", "--screenshot", "/proc/none/a.png@1", "--size", "8x8"}, 1, "/proc/none/a.png"},
        {{"--headless", "--channel", "none"}, 1, "no channel \"none\""},
    };
    for (const auto& c : cases) {
        Program program("deckview", c.arguments);
        EXPECT_EQ(program.wait(), c.status) << c.arguments[0] << ' ' << c.arguments.back() << '\n'
                                            << program.getOutput();
        EXPECT_NE(program.getOutput().find(c.says), std::string::npos) << program.getOutput();
    }
}

TEST(Deckview, SaysWhatTheSceneLacksAndRunsOn) {
    const Strings cases[] = {{"--airport", "nowhere", "no start node \"nowhere\""},
                             {"--track", "rain=50", "no track \"rain\""},
                             {"--carrier", "nobody", "no carrier \"nobody\""},
                             {"--aircraft", "data/none.cfg", "Open config file failed:data/none.cfg"}};
    for (const Strings& c : cases) {
        Program program("deckview", withPorts({"--headless", "--step", "0.02", "--frames", "3", "--set",
                                               "ignore_order=true", c[0], c[1]},
                                              findFreePort(), findFreePort(), findFreePort()));
        EXPECT_EQ(program.wait(), 0) << program.getOutput();
        EXPECT_EQ(countLines(program.getOutput(), c[2]), 1) << program.getOutput();
    }
}

TEST(Deckview, SameRunGivesTheSameHashesWithAndWithoutAPicture) {
    const TestFolder folder;
    const int local = findFreePort(), from = findFreePort(), to = findFreePort();
    std::string runs[2];
    for (int i = 0; i < 2; ++i) {
        const auto file = folder.getPath() / ("hash" + std::to_string(i));
        Strings arguments{"--headless",        "--step", "0.0166667",  "--frames", "600",  "--hash", file, "--set",
                          "ignore_order=true", "--set",  "fly_mode=0", "--size",   "64x36"};
        for (int frame = 1; i == 1 && frame <= 600; frame += 20) {
            const std::string picture = (folder.getPath() / "a.png").string();
            arguments.insert(arguments.end(), {"--screenshot", picture + '@' + std::to_string(frame)});
        }
        Program program("deckview", withPorts(arguments, local, from, to));
        ASSERT_EQ(program.wait(), 0) << program.getOutput();
        runs[i] = readFile(file);
    }
    EXPECT_EQ(countLines(runs[0], " "), 600);
    EXPECT_EQ(runs[0], runs[1]);
    // The bytes sent are part of the state: with a counter in each feedback no frame is like the last.
    std::istringstream in(runs[0]);
    std::string last;
    for (std::string frame, hash; in >> frame >> hash; last = hash) EXPECT_NE(hash, last) << "frame " << frame;
}

TEST(Deckview, SignalsEndTheRunCleanlyAndLittleIsLeft) {
    for (const int number : {SIGTERM, SIGINT}) {
        FakeHost host(findFreePort());
        Program program("deckview", withPorts({"--headless", "--memory-report", "--stats"}, host.getViewerPort(),
                                              host.getSendPort(), host.getFeedbackPort()));
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        bool answered = false;
        while (!answered && !program.hasExited() && std::chrono::steady_clock::now() < end) {
            host.sendOrder(2);
            answered = !host.waitFeedback(1, 0.05).empty();
        }
        EXPECT_TRUE(answered) << program.getOutput();
        program.signal(number);
        EXPECT_EQ(program.wait(), 0) << program.getOutput();
        const std::string report = program.getOutput();
        EXPECT_NE(report.find("memory: 2 blocks left"), std::string::npos) << report;
        EXPECT_EQ(countLines(report, "Logic_Test_Fly::init_udp"), 1) << report;
        EXPECT_EQ(countLines(report, "UdpSendKit::init"), 1) << report;
    }
}

TEST(Deckview, AScriptedFightLeavesLittleBehind) {
    const TestFolder folder;
    std::string script = "@1 target alpha ship 68.65 1185 0 247.25\n@1 target bravo jet 40 500 200\n";
    for (int i = 2; i <= 60; ++i) script += '@' + std::to_string(i) + " fire\n";
    script += "@60 torpedo 157 200 0 67\n@60 effect water_explosion 157 130\n@100 explode\n";
    script += "@110 move bravo 40 900 200\n@120 remove alpha\n@150 reset\n@160 fire\n@170 explode\n";
    folder.write("fight.txt", script);
    Program program("deckview", withPorts({"--headless", "--step", "0.05", "--frames", "240", "--memory-report",
                                           "--script", folder.getPath() / "fight.txt"},
                                          findFreePort(), findFreePort(), findFreePort()));
    EXPECT_EQ(program.wait(), 0);
    const std::string report = program.getOutput();
    EXPECT_NE(report.find("memory: 2 blocks left"), std::string::npos) << report;
    EXPECT_EQ(countLines(report, "could not be done"), 0) << report;
}

TEST(Deckview, GraphicsLibrariesAreLoadedForPicturesOnly) {
    const TestFolder folder;
    setenv("LD_DEBUG", "files", 1);
    for (const bool draws : {false, true}) {
        Strings arguments{"--headless", "--step", "0.1", "--frames", "2", "--size", "16x16"};
        if (draws) arguments.insert(arguments.end(), {"--screenshot", folder.getPath() / "a.png"});
        Program deckview("deckview", withPorts(arguments, findFreePort(), findFreePort(), findFreePort()));
        EXPECT_EQ(deckview.wait(), 0);
        EXPECT_EQ(countLines(deckview.getOutput(), "libEGL") > 0, draws);
        EXPECT_EQ(countLines(deckview.getOutput(), "libosg") > 0, draws);
        EXPECT_EQ(std::filesystem::exists(folder.getPath() / "a.png"), draws);
    }
    unsetenv("LD_DEBUG");
}

TEST(Deckview, WithoutADriverItSaysSo) {
    setenv("__EGL_VENDOR_LIBRARY_DIRS", "/nowhere", 1);
    Program deckview("deckview", withPorts({"--headless", "--frames", "2", "--screenshot", "a.png"}, findFreePort(),
                                           findFreePort(), findFreePort()));
    EXPECT_EQ(deckview.wait(), 1);
    EXPECT_EQ(countLines(deckview.getOutput(), "deckview: EGL offers neither"), 1) << deckview.getOutput();
    unsetenv("__EGL_VENDOR_LIBRARY_DIRS");
}
