// deckview started by a user: options, failures, signals, and the same run twice.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "app/Viewer.h"
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

/// Adds port options, so that runs at the same time use different ports.
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
        {{"--step", "0"}, 2, "seconds above 0"},
        {{"--root", "/nowhere"}, 1, "give it with --root"},
        {{"--plugin", "/nowhere.so"}, 1, "/nowhere.so"},
        {{"--plugin", DECKVIEW_LIB "/libengine.so"}, 1, "CreateLogic"},
        {{"--plugin", DECKVIEW_LIB "/libforeign_plugin.so"}, 1, "older interface, this program has interface"},
        {{"--world", "../../etc/passwd"}, 1, "cannot be loaded"},
        {{"--input", "/nowhere/input.txt"}, 1, "\"/nowhere/input.txt\" cannot be read"},
        {{"--script", "/nowhere/scene.txt"}, 1, "\"/nowhere/scene.txt\" cannot be read"},
        {{"--hash", "/nowhere/hash.txt"}, 1, "/nowhere/hash.txt"},
        {{"--headless", "--step", "0.1", "--frames", "200", "--hash", "/dev/full"}, 1, "written to its end"},
        {{"--headless", "--frames", "2", "--screenshot", "/dev/full", "--size", "512x512"}, 1, "/dev/full"},
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

/// A fight with all moving and emitting objects. Writes the state's hash of each frame and the feedback's bytes.
void runFight(const std::string& folder, const std::string& result, bool draws) {
    FakeHost host(findFreePort());
    Options options;
    options.headless = true;
    options.step = 1.0 / 60.0;
    options.size = {64, 36};
    options.script = folder + "/fight.txt";
    options.drive_ship = 2;
    const Strings ports = withPorts({}, host.getViewerPort(), host.getSendPort(), host.getFeedbackPort());
    for (std::size_t i = 1; i < ports.size(); i += 2) {
        options.overrides.emplace_back(ports[i].substr(0, ports[i].find('=')), ports[i].substr(ports[i].find('=') + 1));
    }
    for (long frame = 1; draws && frame <= 400; frame += 20) options.screenshots.push_back({folder + "/a.png", frame});
    std::ofstream out(result);
    std::mt19937 random(11);
    Viewer viewer(options);
    std::string error;
    ASSERT_TRUE(viewer.open(error)) << error;
    for (int frame = 1; frame <= 400; ++frame) {
        if (random() % 3 == 0) host.sendOrder(random() % 40 == 0 ? 1 : 2);
        ASSERT_TRUE(viewer.frame());
        out << frame << ' ' << viewer.getEngine().getStateHash();
        for (const Datagram& datagram : host.collectFeedback()) {
            out << ' ' << std::string(datagram.bytes.begin(), datagram.bytes.end());
        }
        out << '\n';
    }
    EXPECT_TRUE(viewer.close(error)) << error;
}

TEST(Fight, DISABLED_Run) {
    runFight(std::getenv("FIGHT_FOLDER"), std::getenv("FIGHT_RESULT"), *std::getenv("FIGHT_DRAWS") != '\0');
}

TEST(Deckview, AnEventfulRunIsTheSameTwiceWithoutAndWithAPicture) {
    const TestFolder folder;
    folder.write("fight.txt", R"(@1 sea 5
@1 target alpha ship 68 900 0 247
@1 target bravo jet 40 500 200
@20 fire
@30 rain 80
@40 move bravo 45 700 150
@60 torpedo 157 200 0 67
@80 effect water_explosion 157 130
@120 fire
@150 mode automatic
@220 mode data
@250 explode
@300 reset
@310 push on
@340 fire
)");
    std::string results[2];
    for (int i = 0; i < 2; ++i) {
        const std::string file = folder.getPath() / ("run" + std::to_string(i));
        setenv("FIGHT_FOLDER", folder.getPath().c_str(), 1);
        setenv("FIGHT_RESULT", file.c_str(), 1);
        setenv("FIGHT_DRAWS", i == 1 ? "1" : "", 1);
        // In a process of its own, since parts of the state live as long as the process.
        Program run(DECKVIEW_BIN "/test_app", {"--gtest_filter=Fight.*", "--gtest_also_run_disabled_tests"});
        ASSERT_EQ(run.wait(), 0) << run.getOutput();
        results[i] = readFile(file);
    }
    EXPECT_GT(results[0].size(), 400u * 60u) << "with feedback";
    EXPECT_TRUE(results[0] == results[1]) << "the second run, which draws, is another one";
}

TEST(Deckview, AFileThatCannotBeReadIsNamed) {
    const TestFolder folder;
    const std::filesystem::path root = folder.getPath() / "root";
    std::filesystem::create_directory(root);
    for (const char* name : {"config", "data"}) {
        std::filesystem::create_directory_symlink(DECKVIEW_ROOT + std::string("/") + name, root / name);
    }
    const auto run = [&](const char* what) {
        Program program("deckview", withPorts({"--headless", "--step", "0.1", "--frames", "2", "--root", root},
                                              findFreePort(), findFreePort(), findFreePort()));
        const int status = program.wait();
        EXPECT_TRUE(status == 0 || status == 1) << what << ": status " << status;
        return program.getOutput();
    };
    EXPECT_EQ(countLines(run("all"), "cannot"), 0);

    std::filesystem::remove(root / "config");
    std::filesystem::create_directory(root / "config");
    const std::string bare = run("no configuration");
    EXPECT_EQ(countLines(bare, "Open config file failed:config/Logic_Test_Fly.cfg, use default config"), 1) << bare;
    EXPECT_EQ(countLines(bare, "Logic_Test_Fly.cfg"), 1) << bare;

    std::filesystem::copy(DECKVIEW_ROOT "/config", root / "config");
    std::filesystem::remove(root / "data");
    const std::filesystem::path built(DECKVIEW_ROOT);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(built / "data")) {
        const std::filesystem::path link = root / entry.path().lexically_relative(built);
        std::filesystem::create_directories(link.parent_path());
        if (entry.is_regular_file()) std::filesystem::create_symlink(entry.path(), link);
    }
    std::mt19937 random(3);
    const std::string models = "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15";
    for (const std::string& file :
         {std::string("data/DEMO_PROJECT/DEMO_PROJECT.world"), models + ".cfg", models + ".prefab", models + ".glb"}) {
        const std::string name = std::filesystem::path(file).filename();
        for (const char* fault : {"missing", "a folder", "cut"}) {
            std::filesystem::remove_all(root / file);
            if (fault == std::string("a folder")) std::filesystem::create_directory(root / file);
            if (fault == std::string("cut")) {
                const std::string whole = readFile(DECKVIEW_ROOT "/" + file);
                folder.write("root/" + file, whole.substr(0, random() % whole.size()));
            }
            const std::string output = run((file + ' ' + fault).c_str());
            EXPECT_GE(countLines(output, name), 1) << file << ' ' << fault << '\n' << output;
        }
        std::filesystem::remove_all(root / file);
        std::filesystem::create_symlink(DECKVIEW_ROOT "/" + file, root / file);
    }
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
        const auto hasStats = [&] {
            return countLines(program.getOutput(), " frames/s, ") > 0 &&
                   countLines(program.getOutput(), ", heights ") > 0;
        };
        while (!hasStats() && std::chrono::steady_clock::now() < end) {
            host.sendOrder(2);
            host.waitFeedback(1, 0.05);
        }
        program.signal(number);
        EXPECT_EQ(program.wait(), 0) << program.getOutput();
        EXPECT_TRUE(hasStats()) << program.getOutput();
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
