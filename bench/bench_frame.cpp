// Whole headless frames with feedback: their cost in data flight over the deck, how it grows with the world and with
// the aircraft and its mode, and their allocations.
#include <sys/socket.h>

#include "Bench.h"
#include "CountAllocations.h"
#include "common/LogicBase.h"
#include "common/LogicFrame.h"
#include "engine/core/Engine.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/WaveField.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "engine/text/Package.h"
#include "src/logic/Logic_Test_Fly.h"
#include "support/FakeHost.h"
#include "support/Paths.h"

namespace {

constexpr int FRAMES = 2000;
constexpr double DT = 1.0 / 60.0;

void override(const char* key, int value) {
    mjl::setOverride("config/Logic_Test_Fly.cfg", key, std::to_string(value));
}

constexpr const char* JET = "FJ_CN_J15/FJ_CN_J15.cfg";

/// The demonstration and a host, with `extra` additional static nodes spread over the sea.
class Scene {
public:
    explicit Scene(int extra, const std::string& aircraft = JET, FLY_MODE mode = DATA_FLY) : m_host(findFreePort()) {
        EngineSettings settings;
        settings.root = DECKVIEW_ROOT;
        m_engine = std::make_unique<Engine>(settings);
        override("local_port", m_host.getViewerPort());
        override("recv_from_flightSimulation_port", m_host.getSendPort());
        override("send_to_flightSimulation_port", m_host.getFeedbackPort());
        override("fly_mode", mode);
        m_logic = CreateLogic(m_engine->getWorld(), m_engine->getCameraControl());
        m_logic->set_aircraft_path("data/assets/Targets/MODELS/" + aircraft);
        m_logic->set_airport_node("start_deck");
        m_logic->set_carrier_node("JT_CN_LNJ");
        if (!m_engine->getWorld()->load(m_logic->getWorldPath())) std::exit(1);
        addNodes(extra);
        m_logic->init();
        m_record = packets::record(2);
        for (int i = 0; i < 120; ++i) frame();  // until the jet is at rest on its wheels
    }

    ~Scene() {
        m_logic->release();
        jDelete(m_logic);
    }

    void frame() {
        m_host.send(m_record);
        struct Steps : FrameSteps {
            ObjectOcean* ocean;
            void begun() {
                if (ocean) ocean->getField();
            }
        };
        runFrame(*m_engine, *m_logic, DT, Steps{{}, m_ocean});
    }

    /// From now on the sea is computed in each frame, as for a picture or a floating ship.
    void showSea() { m_ocean = dynamic_cast<ObjectOcean*>(m_engine->getWorld()->getNodeByName("ocean")); }

    /// Seconds that keys, mouse and camera take per frame in the third-person view.
    double cameraCost() {
        auto* const logic = dynamic_cast<Logic_Test_Fly*>(m_logic);
        std::vector<double> rounds;
        for (int round = 0; round < 10; ++round) {
            rounds.push_back(bench::seconds([&] {
                                 for (int i = 0; i < FRAMES / 10; ++i) {
                                     logic->update_input();
                                     logic->swap();
                                 }
                             }) /
                             (FRAMES / 10));
        }
        return bench::median(rounds);
    }

    long feedback() { return static_cast<long>(m_host.collectFeedback().size()); }

private:
    /// Small boxes within about 50 km.
    void addNodes(int count) {
        MeshSurface box;
        for (int i = 0; i < 8; ++i)
            box.positions.push_back({i & 1 ? 1.0f : -1.0f, i & 2 ? 1.0f : -1.0f, i & 4 ? 1.0f : -1.0f});
        box.indices = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                       2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};
        box.material = std::make_shared<Material>();
        const auto mesh = std::make_shared<const MeshData>(std::vector<MeshSurface>{box});
        Random random(3);
        for (int i = 0; i < count; ++i) {
            auto node = std::make_unique<ObjectMeshStatic>(mesh);
            node->setWgsPosition({112.35 + random.getDouble(-0.5, 0.5), 16.84 + random.getDouble(-0.5, 0.5), 0.0});
            m_engine->getWorld()->addChild(std::move(node));
        }
    }

    FakeHost m_host;
    std::unique_ptr<Engine> m_engine;
    LogicBase* m_logic = nullptr;
    ObjectOcean* m_ocean = nullptr;  ///< null until showSea()
    packets::Bytes m_record;
};

/// Seconds per frame, the median of ten rounds, and the number of frames that sent feedback.
double frameCost(Scene& scene, long& feedback, int frames = FRAMES) {
    std::vector<double> rounds;
    for (int round = 0; round < 10; ++round) {
        rounds.push_back(bench::seconds([&] {
                             for (int i = 0; i < frames / 10; ++i) scene.frame();
                         }) /
                         (frames / 10));
        feedback += scene.feedback();
    }
    return bench::median(rounds);
}

/// The same datagrams without a viewer: one record received, one notice and one feedback sent.
double bareCost() {
    LoopbackSocket host, viewer, sink;
    const packets::Bytes record = packets::record(2), notice(72), feedback(60);
    std::vector<double> rounds;
    for (int round = 0; round < 10; ++round) {
        rounds.push_back(bench::seconds([&] {
                             for (int i = 0; i < FRAMES / 10; ++i) {
                                 unsigned char buffer[256];
                                 host.send(record, viewer.getPort());
                                 if (recv(viewer.getHandle(), buffer, sizeof buffer, MSG_DONTWAIT) != 108) std::exit(1);
                                 viewer.send(notice, sink.getPort());
                                 viewer.send(feedback, sink.getPort());
                             }
                         }) /
                         (FRAMES / 10));
        sink.drain();
    }
    return bench::median(rounds);
}

struct Result {
    double seconds = 0.0;
    double camera = 0.0;  ///< the part of keys, mouse and camera
    long feedback = 0;
    double allocations = 0.0;  ///< per frame in the steady state
};

/// Only one engine can exist at a time: the worlds are measured one after another.
Result measure(int nodes) {
    const bench::Quiet quiet;
    Scene scene(nodes);
    scene.feedback();  // discards the feedback of the frames until the jet was at rest
    Result result;
    result.seconds = frameCost(scene, result.feedback);
    const long before = g_allocations;
    for (int i = 0; i < 100; ++i) scene.frame();
    result.allocations = static_cast<double>(g_allocations - before) / 100.0;
    result.camera = scene.cameraCost();
    return result;
}

/// Seconds per frame of an aircraft in a mode, without and with the sea.
struct FleetCost {
    double alone = 0.0, beside_sea = 0.0;
};

FleetCost fleetCost(const char* aircraft, FLY_MODE mode) {
    constexpr int SOME = 500;
    const bench::Quiet quiet;
    Scene scene(0, aircraft, mode);
    long feedback = 0;
    FleetCost cost;
    cost.alone = frameCost(scene, feedback, SOME);
    scene.showSea();
    cost.beside_sea = frameCost(scene, feedback, SOME);
    return cost;
}

/// Each aircraft in each mode compared with the jet in data flight, measured directly before it.
void compareFleet() {
    const std::pair<const char*, const char*> fleet[] = {
        {"jet", JET}, {"aerobatic aircraft", "EXTRA300S/EXTRA300S.cfg"}, {"helicopter", "HELICOPTER/HELICOPTER.cfg"}};
    const std::pair<FLY_MODE, const char*> modes[] = {
        {DATA_FLY, "data"}, {MANUAL_FLY, "manual"}, {AUTO_FLY, "automatic"}};
    for (const auto& [name, file] : fleet) {
        for (const auto& [mode, mode_name] : modes) {
            const FleetCost jet = fleetCost(JET, DATA_FLY), cost = fleetCost(file, mode);
            const std::string row = std::string(name) + ", " + mode_name + " flight / jet, data flight";
            bench::printRow(row.c_str(), {cost.alone, jet.alone}, 1.3);
            bench::printRow((row + ", with waves").c_str(), {cost.beside_sea, jet.beside_sea}, 1.3);
        }
    }
}

}  // namespace

int main() {
    jLog::setLevel(jLog::ERROR);
    const Result few = measure(100);
    const Result many = measure(10000);
    bench::printHeader();
    compareFleet();
    bench::printRow("a frame, 100 static nodes, against its bare datagrams", {few.seconds, bareCost()},
                    bench::NO_LIMIT);
    bench::printRow("a frame, 10,000 static nodes, against 100", {many.seconds, few.seconds}, 1.5);
    std::printf("a frame: %.1f us (below 50 wanted), %.2f allocations; %ld of %d frames sent feedback\n",
                few.seconds * 1e6, few.allocations, few.feedback, FRAMES);
    std::printf("keys, mouse and camera: %.2f us of it\n", few.camera * 1e6);
    return few.feedback == FRAMES ? 0 : 1;
}
