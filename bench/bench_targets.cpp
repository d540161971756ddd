// Targets and missiles: the nearest target compared with a bare loop over positions, records that move every target of
// the map in each frame compared with the minimum that a glide's step does to a node, a frame of missiles in flight
// compared with the bare stepping of as many particles, and memory left by firings.
#include <algorithm>
#include <cmath>
#include <memory>

#include "Bench.h"
#include "CountAllocations.h"
#include "common/LogicFrame.h"
#include "engine/core/Engine.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "src/aircraft/PlaneBase.h"
#include "src/logic/Logic_Test_Fly.h"
#include "src/logic/Target.h"
#include "support/Paths.h"
#include "support/TestScene.h"

namespace {

constexpr int ROUNDS = 31;
constexpr float DT = 1.0f / 60.0f;

int g_failures = 0;
double g_sum = 0.0;  ///< sum of the results: prevents removal of the calls by the optimiser

void limit(const char* what, double cost, double most, double unit, const char* unit_name) {
    std::printf("%s: %.3f %s (limit %g)\n", what, cost / unit, unit_name, most / unit);
    if (!(cost <= most)) ++g_failures;
}

/// The data files of a scene.
struct Files {
    std::string root;
    const char* aircraft;
    const char* target;
};

const Files DEMONSTRATION{DECKVIEW_ROOT, "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.cfg",
                          "data/assets/Targets/MODELS/CL_radar_lorry/CL_radar_lorry.prefab"};

/// A runtime root with an aircraft and targets of minimal cost.
class BareRoot {
public:
    BareRoot() {
        m_folder.write("data/plane.prefab", R"({ "node": { "children": [ { "name": "normal" } ] } })");
        m_folder.write("config/plane.cfg", R"({ "path": "data/plane.prefab", "type": "extra300s" })");
        m_folder.write("data/target.prefab", R"({ "node": { } })");
    }
    Files getFiles() const { return {m_folder.getPath().string(), "config/plane.cfg", "data/target.prefab"}; }

private:
    TestFolder m_folder;
};

/// A logic with an aircraft in a world of its own.
class Scene {
public:
    explicit Scene(const Files& files) : m_files(files) {
        EngineSettings settings;
        settings.root = m_files.root;
        jLog::setSink([](jLog::Level, const jString&) {});
        jLog::setLevel(static_cast<jLog::Level>(jLog::ERROR + 1));
        m_engine = std::make_unique<Engine>(settings);
        auto start = std::make_unique<Node>();
        start->setName("start_deck");
        start->setWgsPosition({112.35, 16.84, 3000.0});
        start->setWgsHPR({});
        m_engine->getWorld()->addChild(std::move(start));
        m_logic = static_cast<Logic_Test_Fly*>(CreateLogic(m_engine->getWorld(), m_engine->getCameraControl()));
        m_logic->set_airport_node("start_deck");
        m_logic->set_aircraft_path(m_files.aircraft);
        const bench::Quiet quiet;
        m_logic->init();
        m_logic->set_fly_mode(MANUAL_FLY);
        if (Body* const body = m_logic->getAircraftNode()->getBody()) body->setEnabled(false);  // keeps its height
    }
    ~Scene() {
        const bench::Quiet quiet;
        jDelete(static_cast<LogicBase*>(m_logic));
        m_engine.reset();
    }

    Logic_Test_Fly& logic() { return *m_logic; }
    World& world() { return *m_engine->getWorld(); }
    void frame(float dt = DT) { runFrame(*m_engine, *m_logic, static_cast<double>(dt)); }

    /// Records of `count` targets spread over some kilometres, all moved north by `shift` metres.
    std::vector<TargetInfo> records(int count, double shift) const {
        std::vector<TargetInfo> all(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            TargetInfo& info = all[static_cast<std::size_t>(i)];
            info.name = ToString(100000 + i);
            info.type = 1001;
            info.path = m_files.target;
            info.pose[0] = 112.3 + 0.001 * (i % 100);
            info.pose[1] = 16.8 + 0.001 * (i / 100) + shift / 111000.0;
            info.pose[2] = 100.0;
        }
        return all;
    }

private:
    Files m_files;
    std::unique_ptr<Engine> m_engine;
    Logic_Test_Fly* m_logic = nullptr;
};

void benchNearest(int count) {
    const BareRoot root;
    Scene scene(root.getFiles());
    for (const TargetInfo& info : scene.records(count, 0.0)) scene.logic().apply_target(info);
    std::vector<dvec3> positions;
    for (const TargetInfo& info : scene.records(count, 0.0)) {
        positions.push_back(scene.logic().get_target(info.name)->getNode()->getWorldPosition());
    }
    const dvec3 place = EllipsoidModel().toWorld({112.35, 16.84, 3000.0});
    constexpr int CALLS = 100;
    const bench::Costs costs = bench::compare(
        ROUNDS, CALLS,
        [&] {
            for (int i = 0; i < CALLS; ++i) g_sum += scene.logic().get_min_distance_target()->getId();
        },
        [&] {
            for (int i = 0; i < CALLS; ++i) {
                double best = 1e10;
                for (const dvec3& p : positions) best = std::min(best, length2(p - place));
                g_sum += best;
            }
        });
    char what[64];
    std::snprintf(what, sizeof what, "nearest of %d targets / bare loop over positions", count);
    bench::printRow(what, costs, bench::NO_LIMIT);
    limit("nearest target", costs.ours, 1e-8 * count, 1e-6, "us");
}

/// A frame with a record that moves each target and a step of each glide, compared with setting the poses only.
bench::Costs benchRecords(int count) {
    const BareRoot root;
    Scene scene(root.getFiles());
    const std::vector<TargetInfo> sides[2] = {scene.records(count, 0.0), scene.records(count, 50.0)};
    int turn = 0;
    const auto frame = [&] {
        for (const TargetInfo& info : sides[turn++ % 2]) scene.logic().apply_target(info);
        scene.logic().update(DT);
    };
    for (int i = 0; i < 4; ++i) frame();
    const jVector<Node*> nodes = scene.world().getNodes();
    const bench::Costs costs = bench::compare(ROUNDS, 1.0, frame, [&] {
        for (Node* node : nodes) node->setWgsPosition({112.3, 16.8, 100.0});
    });
    char what[64];
    std::snprintf(what, sizeof what, "%d records a frame, all moving / placing as many nodes", count);
    bench::printRow(what, costs, bench::NO_LIMIT);
    return costs;
}

/// Steps the particles of the world in a minimal loop.
double stepBarely(const World& world) {
    std::vector<Particle> particles;
    for (Node* node : world.getNodes()) {
        if (node->getType() != Node::PARTICLES) continue;
        const std::vector<Particle>& those = static_cast<ObjectParticles*>(node)->getParticles();
        particles.insert(particles.end(), those.begin(), those.end());
    }
    constexpr int STEPS = 10;
    const double cost = bench::seconds([&] {
        for (int i = 0; i < STEPS; ++i) {
            for (Particle& p : particles) {
                p.age += DT;
                p.velocity = p.velocity * 0.98f;
                p.position += dvec3(p.velocity) * static_cast<double>(DT);
                p.size += 0.03f;
            }
        }
    });
    for (const Particle& p : particles) g_sum += p.position.x;
    return cost / STEPS;
}

void benchMissiles() {
    constexpr int MISSILES = 100, FRAMES = 60;
    std::vector<double> flying, floor;
    for (int round = 0; round < 7; ++round) {
        Scene scene(DEMONSTRATION);
        for (const TargetInfo& info : scene.records(1000, 0.0)) scene.logic().apply_target(info);
        for (int i = 0; i < 10; ++i) scene.frame();
        const auto frames = [&] {
            for (int i = 0; i < FRAMES; ++i) scene.frame();
        };
        const double empty = bench::seconds(frames);
        for (int i = 0; i < MISSILES; ++i) {
            scene.logic().emit_missile();
            scene.frame();
        }
        for (int i = 0; i < 2 * FRAMES; ++i) scene.frame();  // until their trails have full length
        const long before = g_allocations;
        const double full = bench::seconds(frames);
        if (round == 0) {
            limit("allocations in their frames", static_cast<double>(g_allocations - before), 0.0, 1.0, "in all");
        }
        flying.push_back((full - empty) / FRAMES);
        floor.push_back(stepBarely(scene.world()));
    }
    const bench::Costs costs{bench::median(flying), bench::median(floor)};
    bench::printRow("a frame of 100 missiles / stepping as many particles", costs, bench::NO_LIMIT);
    limit("a frame of 100 missiles in flight", costs.ours, 0.3e-3, 1e-3, "ms");
}

/// Places a lorry 300 m ahead, where each missile bursts.
void addLorryAhead(Scene& scene) {
    TargetInfo info = scene.records(1, 0.0)[0];
    const dvec3 place = scene.logic().getAircraft()->getWorldTransform() * dvec3(0.0, 300.0, -1.0);
    const dvec3 geo = EllipsoidModel().toWGS(place);
    info.pose[0] = geo.x;
    info.pose[1] = geo.y;
    info.pose[2] = geo.z;
    scene.logic().apply_target(info);
}

void benchFirings() {
    constexpr int FIRINGS = 10000;
    constexpr float LONG = 0.1f;  // seconds per frame
    Scene scene(DEMONSTRATION);
    addLorryAhead(scene);
    int bursts = 0;
    scene.logic().m_signal_8_effect_started.append([&](SynCoder::CMDPlaySpeOnceInfo*) { ++bursts; });
    const auto fly = [&](int firings) {
        for (int i = 0; i < firings; ++i) {
            scene.logic().emit_missile();
            scene.frame(LONG);
            scene.logic().update_missle();
        }
        for (int i = 0; i < 225; ++i) scene.frame(LONG);  // until the last effect is over
        while (scene.logic().getNumMissiles() > 0) scene.logic().update_missle();
    };
    fly(100);
    const std::size_t blocks = jAllocator::get()->getBlockCount();
    const double cost = bench::seconds([&] { fly(FIRINGS); }) / FIRINGS;
    std::printf("firing, its burst and a frame: %.1f us\n", cost * 1e6);
    limit("firings without a burst", FIRINGS + 100 - bursts, 0.0, 1.0, "in all");
    limit("blocks left by 10,000 firings",
          static_cast<double>(jAllocator::get()->getBlockCount()) - static_cast<double>(blocks), 0.0, 1.0, "blocks");
}

}  // namespace

int main() {
    bench::printHeader();
    benchNearest(1000);
    const bench::Costs thousand = benchRecords(1000), ten_thousand = benchRecords(10000);
    limit("1,000 records a frame", thousand.ours, 3e-3, 1e-3, "ms");
    std::printf("growth from 1,000 to 10,000: %.1f times\n", ten_thousand.ours / thousand.ours);
    limit("the same over the growth of the placing alone",
          ten_thousand.ours / thousand.ours / (ten_thousand.floor / thousand.floor), 1.5, 1.0, "times");
    benchMissiles();
    benchFirings();
    return g_failures || std::isnan(g_sum) ? 1 : 0;
}
