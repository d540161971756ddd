// Start and end of the run, and the list of the steps of a frame.
#include "Viewer.h"

#include <filesystem>

#include "Connections.h"
#include "common/LogicFrame.h"
#include "engine/camera/CameraControl.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "engine/text/Package.h"
#include "src/logic/AppData.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

namespace fs = std::filesystem;
using SteadyClock = std::chrono::steady_clock;

constexpr double DEFAULT_FPS_LIMIT = 60.0;  // replaces a rate that is not positive
constexpr int JET_PARTS = 35;               // number of control nodes that the carrier jet uses

/// The build folder: it contains bin/, lib/ and root/.
fs::path buildFolder() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path().parent_path();
}

std::string orBuilt(const std::string& given, const char* file) {
    return given.empty() ? (buildFolder() / file).string() : given;
}

/// REQUIRES a camera node.
void placeCamera(Engine& engine, const CameraPlace& place) {
    const EllipsoidModel& globe = engine.getEllipsoid();
    const dvec3 position = globe.toWorld(dvec3(place.geodetic[0], place.geodetic[1], place.geodetic[2]));
    const dquat attitude = globe.fromWgsHPR(position, dvec3(place.wgs_hpr[0], place.wgs_hpr[1], place.wgs_hpr[2]));
    CameraControl& camera = *engine.getCameraControl();
    // From a model's axes (+Y ahead, +Z up) to a camera's (-Z ahead, +Y up).
    camera.getRotation() = attitude * dquat(dvec3(1.0, 0.0, 0.0), 90.0);
    camera.getPosition() = position;
    camera.apply();
}

/// One line for each missing part of the scene.
void logMissing(const Options& options, World& world) {
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

void logShortAircraft(const Options& options, const Logic_Test_Fly& logic) {
    if (logic.getAircraftType() != "PlaneJ15" || logic.getControlCount() >= JET_PARTS) return;
    jLog::warning("%s names %d control nodes that the model has, the carrier jet has %d: some of its parts do not move",
                  options.aircraft.c_str(), logic.getControlCount(), JET_PARTS);
}

}  // namespace

Viewer::~Viewer() {
    endLogic();
    AppData::get().close();
    mjl::clearOverrides();
}

/// Before the picture and the controller, to which the logic's signals are connected.
void Viewer::endLogic() {
    if (!m_plugin.getLogic()) return;
    m_plugin.getLogic()->release();
    disconnectInput(*m_engine);
    m_plugin.destroyLogic();
}

bool Viewer::open(std::string& error) {
    EngineSettings settings;
    settings.root = orBuilt(m_options.root, "root");
    if (!fs::is_directory(std::string(settings.root))) {
        error = "there is no runtime root at \"" + settings.root + "\"; give it with --root";
        return false;
    }
    m_engine.emplace(settings);
    for (const auto& [key, value] : m_options.overrides) mjl::setOverride(AppData::PATH, key, value);
    AppData::get().open();
    if (!m_options.hash_file.empty() && !m_hashes.open(m_options.hash_file, error)) return false;
    if (!m_plugin.load(orBuilt(m_options.plugin, "lib/libLogic_Test_Fly.so"), m_engine->getWorld(),
                       m_engine->getCameraControl(), error) ||
        !m_screen.open(m_options, orBuilt("", "lib/libengine_render.so"), *m_engine, error)) {
        return false;
    }
    if (!m_options.input.empty() && !m_input.open(m_options.input, error)) return false;
    if (!m_options.script.empty() && !m_script.open(m_options.script, error)) return false;
    if (!startLogic(error)) return false;

    Logic_Test_Fly* const fly = m_plugin.getFlyLogic();
    if (fly) m_query.emplace(*m_engine, *fly);
    const SceneQuery* const query = m_query ? &*m_query : nullptr;
    m_controller.emplace(*m_engine, *m_plugin.getLogic(), fly, query);
    m_controls.emplace(*m_engine, m_commands, fly, query, m_screen.getPicture(),
                       m_options.language.empty() ? environmentLanguage() : m_options.language);
    m_carrier.emplace(m_options, *m_engine->getWorld(), fly);
    const double limit = AppData::get().getFpsLimit();
    m_pacer.emplace(m_options.step, limit > 0.0 ? limit : DEFAULT_FPS_LIMIT);
    m_stats.emplace(fly);
    giveOptionCommands();
    return true;
}

/// Loads the world, then initialises the logic in it.
bool Viewer::startLogic(std::string& error) {
    LogicBase& logic = *m_plugin.getLogic();
    World& world = *m_engine->getWorld();
    connectLogic(*m_engine, logic, m_plugin.getFlyLogic(), m_screen.getPicture());
    logic.set_aircraft_path(m_options.aircraft);
    logic.set_airport_node(m_options.airport);
    logic.set_carrier_node(m_options.carrier);
    const jString file = m_options.world.empty() ? logic.getWorldPath() : jString(m_options.world);
    if (!world.load(file)) {
        error = "the world \"" + file + "\" cannot be loaded; is --root right?";
        return false;
    }
    const dvec3 &geo = world.getEnvironment().camera_geodetic, &hpr = world.getEnvironment().camera_wgs_hpr;
    placeCamera(*m_engine, {{geo.x, geo.y, geo.z}, {hpr.x, hpr.y, hpr.z}});
    logMissing(m_options, world);
    if (!logic.init()) {
        error = "the logic could not be initialised";
        return false;
    }
    if (Logic_Test_Fly* const fly = m_plugin.getFlyLogic()) {
        logShortAircraft(m_options, *fly);
        // No other view may move the camera position for which the landing lens is set.
        if (m_options.camera) fly->set_player_mode(FREE_VIEW);
    }
    return true;
}

/// The scene settings of the command line are applied at the start of the first frame.
void Viewer::giveOptionCommands() {
    if (m_options.date) m_commands.push(*m_options.date, {"--date"});
    for (const command::SetTrack& track : m_options.tracks) m_commands.push(track, {"--track"});
    if (m_options.visibility) m_commands.push(*m_options.visibility, {"--visibility"});
}

/// The viewer's actions at the three points of the frame that `runFrame` leaves open.
struct Viewer::Steps {
    Viewer& viewer;

    void begun() {
        viewer.m_commands.apply(*viewer.m_controller);
        viewer.m_controller->update();
    }
    void moved(float dt) { viewer.m_carrier->update(dt); }
    void placed() {
        if (viewer.m_query) viewer.m_query->update();
        if (viewer.m_options.camera) placeCamera(*viewer.m_engine, *viewer.m_options.camera);
        viewer.m_controls->update();
        viewer.m_screen.draw(viewer.m_frame, viewer.m_error);
    }
};

bool Viewer::frame() {
    if (m_frame == m_options.frames && m_frame > 0) return false;
    if (!m_screen.poll()) return false;
    ++m_frame;
    const double dt = m_pacer->next();
    m_input.play(*m_engine->getInput(), *m_engine->getUIRoot(), m_engine->getTime(), m_frame);
    m_script.play(m_commands, m_engine->getTime(), m_frame);
    const SteadyClock::time_point begin = SteadyClock::now();
    runFrame(*m_engine, *m_plugin.getLogic(), dt, Steps{*this});
    if (m_options.stats) m_stats->frame(std::chrono::duration<double>(SteadyClock::now() - begin).count());
    m_hashes.frame(*m_engine);
    return m_error.empty();
}

bool Viewer::close(std::string& error) {
    if (m_engine->getClampCount() > 0) {
        jLog::warning("%d frames took longer than 0.1 s and were counted as 0.1 s", m_engine->getClampCount());
    }
    if (m_error.empty()) m_screen.finish(m_error);
    endLogic();
    if (m_options.memory_report) printMemoryReport();
    error = m_error;
    return m_hashes.close(error) && error.empty();
}
