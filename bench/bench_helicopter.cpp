// The helicopter: 20,000 downwash particles with their deflector compared with the bare motion of as many points, and
// the cost per frame of its own update.
#include <cmath>

#include "Bench.h"
#include "CountAllocations.h"
#include "engine/core/Engine.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/World.h"
#include "src/aircraft/HeliEffectsKit.h"
#include "src/aircraft/Helicopter.h"
#include "support/TestScene.h"

namespace {

constexpr int PARTICLES = 20000;
constexpr int ROUNDS = 51;
constexpr int FRAMES = 10;
constexpr float DT = 1.0f / 60.0f;

int g_failures = 0;
double g_sum = 0.0;  ///< sum of the results: prevents removal of the calls by the optimiser
std::vector<Particle> g_points;

void limit(const char* what, double cost, double most, double unit, const char* unit_name) {
    std::printf("%s: %.3f %s (limit %g)\n", what, cost / unit, unit_name, most / unit);
    if (!(cost <= most)) ++g_failures;
}

ParticleSettings dust() {
    ParticleSettings settings;
    settings.spawn_rate = PARTICLES / 2.0f;
    settings.life = 2.05f;
    settings.life_spread = 0.8f;
    settings.velocity_spread = {13.0f, 13.0f, 0.7f};
    settings.emitter_size = {9.0f, 9.0f, 0.3f};
    settings.growth = 2.0f;
    settings.drag = 0.9f;
    settings.buoyancy = 0.25f;
    settings.wind = 0.4f;
    settings.max_particles = PARTICLES;
    return settings;
}

void benchParticles(const dmat4& place) {
    auto* const wash = new ObjectParticles(dust());
    Engine::get()->getWorld()->addChild(wash);
    wash->setWorldTransform(place);
    wash->addDeflector(place);
    for (int i = 0; i < 300; ++i) wash->simulate(DT, {5.0f, 0.0f, 0.0f});
    g_points = wash->getParticles();
    const bench::Costs costs = bench::compare(
        ROUNDS, FRAMES,
        [&] {
            for (int i = 0; i < FRAMES; ++i) wash->simulate(DT, {5.0f, 0.0f, 0.0f});
        },
        [&] {
            for (int i = 0; i < FRAMES; ++i) {
                for (Particle& p : g_points) p.position += dvec3(p.velocity) * static_cast<double>(DT);
                g_sum += g_points[7].position.x;
            }
        });
    std::printf("%zu particles live\n", wash->getParticles().size());
    bench::printRow("a frame of 20,000 particles / 20,000 bare points", costs, bench::NO_LIMIT);
    limit("a frame of 20,000 particles", costs.ours, 1e-3, 1e-3, "ms");
    Engine::get()->getWorld()->removeNode(wash);
}

/// Its update in the air, without physics.
void benchSteps(const TestFolder& root, const dmat4& place) {
    root.write("data/heli.prefab", R"({ "node": {
        "body": { "mass": 214, "inertia": [5500, 4000, 6000], "center_of_mass": [0, 0, 1.5], "shapes": [ { } ] },
        "children": [ { "name": "wing", "children": [ { "name": "wing_mesh" }, { "name": "wing_plane" } ] },
                      { "name": "tail" }, { "name": "wiper_left" }, { "name": "wiper_right" },
                      { "name": "downwash", "children": [ { "name": "downwash_spe", "type": "particles" } ] } ] } })");
    Helicopter helicopter(Engine::get()->getWorld(), "data/heli.prefab");
    HeliEffectsKit effects;
    if (!effects.init(&helicopter)) ++g_failures;
    {
        const bench::Quiet quiet;
        helicopter.setWorldTransform(place);
    }
    const auto frames = [&] {
        for (int i = 0; i < FRAMES; ++i) {
            helicopter.updateKeys(DT);
            helicopter.updateFlight(DT);
            effects.updatePlacement();
            effects.updateIntensity(0.5f);
        }
    };
    frames();
    std::vector<double> costs;
    costs.reserve(ROUNDS);
    const long before = g_allocations;
    for (int i = 0; i < ROUNDS; ++i) costs.push_back(bench::seconds(frames) / FRAMES);
    const long allocated = g_allocations - before;
    limit("the helicopter's own steps", bench::median(costs), 20e-6, 1e-6, "us");
    limit("allocations in their frames", static_cast<double>(allocated), 0.0, 1.0, "in all");
}

}  // namespace

int main() {
    const TestFolder root;
    EngineSettings settings;
    settings.root = root.getPath().string();
    Engine engine(settings);
    const EllipsoidModel& globe = engine.getEllipsoid();
    const dmat4 place = globe.getWGSTransform(globe.toWorld({112.35, 16.84, 30.0}));
    bench::printHeader();
    benchParticles(place);
    benchSteps(root, place);
    return g_failures || std::isnan(g_sum) ? 1 : 0;
}
