// deckview: makes the engine, loads the logic and its world, runs the frames.
#include <malloc.h>

#include <csignal>
#include <cstdio>
#include <filesystem>

#include "Carrier.h"
#include "Controls.h"
#include "Frame.h"
#include "InputScript.h"
#include "Instructor.h"
#include "Options.h"
#include "Plugin.h"
#include "Report.h"
#include "SceneScript.h"
#include "Screen.h"
#include "Staging.h"
#include "common/LogicBase.h"
#include "engine/core/Engine.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "engine/text/Package.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

namespace fs = std::filesystem;
using SteadyClock = std::chrono::steady_clock;

constexpr double DEFAULT_FPS_LIMIT = 60.0;  // of a logic that names none
constexpr int JET_PARTS = 35;               // control nodes that the carrier jet's roles reach to

volatile std::sig_atomic_t g_stop = 0;

void stopOnSignals() {
    struct sigaction action = {};
    action.sa_handler = [](int) { g_stop = 1; };
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

int fail(const std::string& message) {
    std::fprintf(stderr, "deckview: %s\n", message.c_str());
    return 1;
}

/// The folder that the build made: bin/, lib/ and root/ lie side by side in it.
fs::path buildFolder() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path().parent_path();
}

double fpsLimit(const Plugin& plugin) {
    const double limit = plugin.getFlyLogic() ? plugin.getFlyLogic()->get_fps_limit() : DEFAULT_FPS_LIMIT;
    return limit > 0.0 ? limit : DEFAULT_FPS_LIMIT;
}

/// One line for each piece that the scene does without.
void tellWhatIsMissing(const Options& options, World& world) {
    if (!world.getNodeByName(options.airport)) {
        jLog::warning("the world has no start node \"%s\": there is no aircraft; see --airport",
                      options.airport.c_str());
    }
    if (!world.getNodeByName(options.carrier)) {
        jLog::warning("the world has no carrier \"%s\"; see --carrier", options.carrier.c_str());
    }
    const Node* const terrain = world.getNodeByName("terrain");
    if (!terrain || terrain->getType() != Node::TERRAIN) {
        jLog::warning("the world has no terrain: heights beside the deck are -100 m");
    }
}

void tellShortAircraft(const Options& options, const Logic_Test_Fly& logic) {
    if (logic.getAircraftType() != "PlaneJ15" || logic.getControlCount() >= JET_PARTS) return;
    jLog::warning("%s names %d control nodes that the model has, the carrier jet has %d: some of its parts do not move",
                  options.aircraft.c_str(), logic.getControlCount(), JET_PARTS);
}

/// The signals that the application answers itself.
void connectSignals(LogicBase& logic, Engine& engine) {
    logic.m_signal_24_date.append([&engine](int year, int month, int day) {
        Environment& environment = engine.getWorld()->getEnvironment();
        environment.year = year;
        environment.month = month;
        environment.day = day;
    });
}

/// False with the failure named when the scene cannot be made.
bool startLogic(const Options& options, Engine& engine, LogicBase& logic, std::string& error) {
    logic.set_aircraft_path(options.aircraft);
    logic.set_airport_node(options.airport);
    logic.set_carrier_node(options.carrier);
    connectSignals(logic, engine);
    const jString world = options.world.empty() ? logic.getWorldPath() : jString(options.world);
    if (!engine.getWorld()->load(world)) {
        error = "the world \"" + world + "\" cannot be loaded; is --root right?";
        return false;
    }
    placeCameraAtStart(engine);
    tellWhatIsMissing(options, *engine.getWorld());
    if (!logic.init()) {
        error = "the logic could not be initialised";
        return false;
    }
    return true;
}

/// False, with `error` saying why, when a picture could not be written.
bool runFrames(const Options& options, Engine& engine, const Plugin& plugin, HashWriter& hashes, Screen& screen,
               InputScript& input, SceneScript& script, std::string& error) {
    std::optional<Instructor> instructor;
    if (plugin.getFlyLogic()) instructor.emplace(engine, *plugin.getFlyLogic());
    Controls controls(engine, plugin.getFlyLogic(), instructor ? &*instructor : nullptr, screen.getPicture(),
                      options.language.empty() ? environmentLanguage() : options.language);
    Carrier carrier(options, *engine.getWorld(), plugin.getFlyLogic());
    FramePacer pacer(options.step, fpsLimit(plugin));
    StatsPrinter stats(plugin.getFlyLogic());
    bool good = true;
    for (long frame = 1; good && !g_stop && (options.frames == 0 || frame <= options.frames) && screen.poll();
         ++frame) {
        const double dt = pacer.next();
        input.play(*engine.getInput(), *engine.getUIRoot(), engine.getTime(), frame);
        if (instructor) {
            script.play(*instructor, engine.getTime(), frame);
            instructor->update();
        }
        const SteadyClock::time_point begin = SteadyClock::now();
        runFrame(
            engine, *plugin.getLogic(), dt, [&](float seconds) { carrier.update(seconds); },
            [&] {
                if (options.camera) placeCamera(engine, *options.camera);
                controls.update();
                good = screen.draw(frame, error);
            });
        if (options.stats) stats.frame(std::chrono::duration<double>(SteadyClock::now() - begin).count());
        hashes.frame(engine);
    }
    if (engine.getClampCount() > 0) {
        jLog::warning("%d frames took longer than 0.1 s and were counted as 0.1 s", engine.getClampCount());
    }
    return good && screen.finish(error);
}

int run(const Options& options) {
    EngineSettings settings;
    const std::string root = options.root.empty() ? (buildFolder() / "root").string() : options.root;
    if (!fs::is_directory(root)) return fail("there is no runtime root at \"" + root + "\"; give it with --root");
    settings.root = root;
    Engine engine(settings);
    for (const auto& [key, value] : options.overrides) mjl::setOverride(CONFIG_PATH, key, value);

    std::string error;
    InputScript input;
    if (!options.input.empty() && !input.open(options.input, error)) return fail(error);
    SceneScript script;
    if (!options.script.empty() && !script.open(options.script, error)) return fail(error);
    HashWriter hashes;
    if (!options.hash_file.empty() && !hashes.open(options.hash_file)) {
        return fail("\"" + options.hash_file + "\" cannot be written");
    }

    const std::string library =
        options.plugin.empty() ? (buildFolder() / "lib" / "libLogic_Test_Fly.so").string() : options.plugin;
    Plugin plugin;
    if (!plugin.load(library, engine.getWorld(), engine.getCameraControl(), error)) return fail(error);
    Screen screen;
    const std::string pictures = (buildFolder() / "lib" / "libengine_render.so").string();
    if (!screen.open(options, pictures, engine, error)) return fail(error);
    screen.connect(*plugin.getLogic());
    if (!startLogic(options, engine, *plugin.getLogic(), error)) return fail(error);
    stageWeather(options, engine, *plugin.getLogic(), plugin.getFlyLogic());
    if (!options.script.empty() && !plugin.getFlyLogic()) jLog::warning("this logic has nothing for --script to do");
    if (plugin.getFlyLogic()) tellShortAircraft(options, *plugin.getFlyLogic());
    // No other view is to move the eye that the landing lens is set for.
    if (options.camera && plugin.getFlyLogic()) plugin.getFlyLogic()->set_player_mode(FREE_VIEW);
    if (!runFrames(options, engine, plugin, hashes, screen, input, script, error)) return fail(error);
    plugin.getLogic()->release();
    screen.disconnect();
    plugin.destroyLogic();
    if (options.memory_report) printMemoryReport();
    if (!hashes.close()) return fail("\"" + options.hash_file + "\" could not be written to its end");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (const auto status = parseOptions(argc, argv, options)) return *status;
    // Large blocks go back to the system as soon as they are free; by itself the threshold rises with the first of
    // them.
    mallopt(M_MMAP_THRESHOLD, 1 << 18);
    // What each frame takes and gives stays; fetching it from the system anew costs a millisecond a frame.
    mallopt(M_TRIM_THRESHOLD, 1 << 23);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);  // keeps traces and log lines in order, also in a file
    stopOnSignals();
    const int status = run(options);
    jLog::flush();
    return status;
}
