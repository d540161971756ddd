// Ships on the sea compared with their minimum cost: a ship's step with its 24 points with bare conversions of the
// points to geodetic coordinates and bare wave samples; a whole frame of a hundred driven ships.
#include <cmath>

#include "Bench.h"
#include "CountAllocations.h"
#include "common/ship/Buoyancy.h"
#include "common/ship/Ship.h"
#include "engine/core/Engine.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/World.h"
#include "support/Paths.h"

namespace {

constexpr const char* CARRIER = "data/assets/Targets/MODELS/JT_CN_LNJ/JT_CN_LNJ.prefab";
constexpr int ROUNDS = 61, STEPS = 100;
constexpr int SHIPS = 100;
constexpr double DT = 1.0 / 60.0;

int g_failures = 0;
double g_sum = 0.0;  ///< sum of the results: prevents removal of the calls by the optimiser

void limit(const char* what, double cost, double most, double unit, const char* unit_name) {
    std::printf("%s: %.2f %s (limit %g)\n", what, cost / unit, unit_name, most / unit);
    if (cost > most) ++g_failures;
}

EngineSettings demoRoot() {
    EngineSettings settings;
    settings.root = DECKVIEW_ROOT;
    return settings;
}

class Sea {
public:
    Sea() : engine(demoRoot()) {
        ocean = new ObjectOcean;
        ocean->setWgsPosition({112.35, 16.84, 0.0});
        ocean->setUseGlobalWind(false);
        ocean->setBeaufort(5);
        engine.getWorld()->addChild(ocean);
    }
    ~Sea() {
        for (Ship* ship : ships) jDelete(ship);
    }

    /// A driven ship; the world owns `object`.
    Ship& launch(Object* object, double lon, double lat) {
        engine.getWorld()->addChild(object);
        object->setWgsPosition({lon, lat, 0.0});
        object->setWgsHPR({67.0, 0.0, 0.0});
        ships.push_back(jNew<Ship>({"bench", "launch"}, object, ocean));
        object->getBody()->setEnabled(true);
        ships.back()->setControlMode(Ship::STEADY);
        return *ships.back();
    }

    void frame() {
        engine.beginFrame(DT);
        for (Ship* ship : ships) {
            ship->updateWakes();
            ship->update();
        }
        engine.step();
        engine.endFrame();
    }

    Engine engine;
    ObjectOcean* ocean;
    std::vector<Ship*> ships;
};

void benchStep() {
    Sea sea;
    Ship& ship = sea.launch(new ObjectPrefab(CARRIER), 112.4, 16.82);
    const EllipsoidModel& globe = sea.engine.getEllipsoid();
    for (int i = 0; i < 600; ++i) sea.frame();
    const dmat4 hull = ship.getObject()->getWorldTransform();
    const bench::Costs costs = bench::compare(
        ROUNDS, STEPS,
        [&] {
            for (int i = 0; i < STEPS; ++i) ship.update();
        },
        [&] {
            for (int i = 0; i < STEPS; ++i) {
                for (const dvec3& point : ship.getBuoyancy()->getPoints()) {
                    const dvec3 geo = globe.toWGS(hull * point);
                    g_sum += static_cast<double>(sea.ocean->getField().getHeight(1e4 * geo.x, 1e4 * geo.y)) + geo.z;
                }
            }
        });
    bench::printRow("a ship's step / 24 bare looks at the waves", costs, bench::NO_LIMIT);
    limit("a ship's step with 24 points", costs.ours, 10e-6, 1e-6, "us");
}

/// A hull with the carrier's body and no surface to draw: its cost is that of floating.
Object* makeHull() {
    BodySettings settings;
    settings.mass = 8.19e6f;
    settings.mask = 0;
    settings.shapes.append({});
    settings.shapes[0].size = {25.0f, 280.0f, 130.0f};
    settings.shapes[0].transform.t.z = 26.0;
    settings.center_of_mass = {0.0f, 0.0f, -39.0f};
    auto* const hull = new ObjectPrefab;
    hull->setBody(settings);
    return hull;
}

void benchFleet() {
    Sea fleet;
    for (int i = 0; i < SHIPS; ++i) fleet.launch(makeHull(), 112.4 + 0.01 * (i % 10), 16.82 + 0.01 * (i / 10));
    for (int i = 0; i < 600; ++i) fleet.frame();
    double time = 0.0;
    WaveField waves(1);
    waves.setWind(9.3, 1.0, 0.2);
    const bench::Costs costs = bench::compare(
        ROUNDS, 10,
        [&] {
            for (int i = 0; i < 10; ++i) fleet.frame();
        },
        [&] {
            for (int i = 0; i < 10; ++i) waves.update(time += DT);
        });
    bench::printRow("a frame of 100 ships under way / the waves alone", costs, bench::NO_LIMIT);
    limit("100 ships under way", costs.ours - costs.floor, 1.5e-3, 1e-3, "ms");
    const long before = g_allocations;
    for (int i = 0; i < 100; ++i) fleet.frame();
    limit("allocations in 100 frames of them", static_cast<double>(g_allocations - before), 0.0, 1.0, "in all");
}

}  // namespace

int main() {
    bench::printHeader();
    benchStep();
    benchFleet();
    return g_failures || std::isnan(g_sum) ? 1 : 0;
}
