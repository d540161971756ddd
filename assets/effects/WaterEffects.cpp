// Water thrown up by an explosion or by something that falls in, and the flare that a decoy burns with. Origins lie on
// the water.
#include "effects/Effects.h"
#include "effects/ParticleNodes.h"

namespace {

/// A column thrown `speed` m/s high from a spot `width` metres wide; falls back.
Json column(const std::string& name, double speed, double width, double rate, double duration) {
    return particleSystem(name, {0, 0, 0},
                          {{"spawn_rate", rate},
                           {"duration", duration},
                           {"life", 0.16 * speed},
                           {"life_spread", 0.03 * speed},
                           {"velocity", {0, 0, 0.72 * speed}},
                           {"velocity_spread", {0.09 * speed, 0.09 * speed, 0.28 * speed}},
                           {"emitter_size", {width, width, 0.5}},
                           {"size", 0.8 * width},
                           {"size_spread", 0.3 * width},
                           {"growth", 0.3 * width},
                           {"drag", 0.3},
                           {"buoyancy", -9.8},
                           {"wind", 0.15},
                           {"color", {0.86, 0.9, 0.93, 0.75}},
                           {"end_color", {0.9, 0.94, 0.97, 0}},
                           {"max_particles", 420}},
                          SPRAY_PICTURE);
}

/// A low ring round the foot.
Json skirt(double speed, double size, double rate) {
    return particleSystem("skirt", {0, 0, 0.3},
                          {{"spawn_rate", rate},
                           {"duration", 0.3},
                           {"life", 1.9},
                           {"life_spread", 0.5},
                           {"velocity", {0, 0, 0.35 * speed}},
                           {"velocity_spread", {speed, speed, 0.25 * speed}},
                           {"size", size},
                           {"size_spread", 0.4 * size},
                           {"growth", size},
                           {"drag", 1.3},
                           {"buoyancy", -4.5},
                           {"wind", 0.2},
                           {"color", {0.86, 0.9, 0.93, 0.6}},
                           {"end_color", {0.9, 0.94, 0.97, 0}},
                           {"max_particles", 140}},
                          SPRAY_PICTURE);
}

/// What hangs in the air when the column has fallen.
Json mist(double size) {
    return particleSystem("mist", {0, 0, size},
                          {{"spawn_rate", 22},
                           {"delay", 0.5},
                           {"duration", 1.6},
                           {"life", 5.0},
                           {"life_spread", 1.2},
                           {"velocity", {0, 0, size}},
                           {"velocity_spread", {0.4 * size, 0.4 * size, 0.9 * size}},
                           {"emitter_size", {size, size, 2 * size}},
                           {"size", size},
                           {"size_spread", 0.3 * size},
                           {"growth", 0.25 * size},
                           {"drag", 0.9},
                           {"buoyancy", -0.5},
                           {"wind", 0.9},
                           {"color", {0.82, 0.87, 0.9, 0.28}},
                           {"end_color", {0.86, 0.9, 0.94, 0}},
                           {"max_particles", 60}},
                          SMOKE_PICTURE);
}

/// Lies on the water: particles without height of their own are drawn flat.
Json foam(double size) {
    return particleSystem("foam", {0, 0, 0.15},
                          {{"spawn_rate", 60},
                           {"duration", 0.5},
                           {"life", 9.0},
                           {"life_spread", 2.0},
                           {"velocity", {0, 0, 0}},
                           {"velocity_spread", {size, size, 0}},
                           {"size", size},
                           {"size_spread", 0.4 * size},
                           {"growth", 0.15 * size},
                           {"drag", 0.9},
                           {"color", {0.8, 0.86, 0.88, 0.65}},
                           {"end_color", {0.75, 0.82, 0.85, 0}},
                           {"max_particles", 40}},
                          SPRAY_PICTURE);
}

/// A magnesium light: too bright to look at, on a thread of white smoke.
Json flare() {
    return particleSystem("flare", {0, 0, 0.8},
                          {{"spawn_rate", 50},
                           {"life", 0.16},
                           {"life_spread", 0.06},
                           {"velocity_spread", {2, 2, 2}},
                           {"velocity", {0, 0, 1}},
                           {"size", 0.9},
                           {"size_spread", 0.35},
                           {"color", {1.0, 0.86, 0.66, 1}},
                           {"end_color", {1.0, 0.4, 0.2, 0}},
                           {"additive", true},
                           {"max_particles", 16}},
                          "");
}

Json flareSmoke() {
    return particleSystem("smoke", {0, 0, 1.0},
                          {{"spawn_rate", 28},
                           {"life", 4.0},
                           {"life_spread", 1.0},
                           {"velocity", {0, 0, 1.6}},
                           {"velocity_spread", {0.5, 0.5, 0.6}},
                           {"size", 0.6},
                           {"size_spread", 0.2},
                           {"growth", 0.7},
                           {"drag", 0.5},
                           {"buoyancy", 0.5},
                           {"wind", 1.0},
                           {"color", {0.75, 0.75, 0.76, 0.5}},
                           {"end_color", {0.8, 0.8, 0.8, 0}},
                           {"max_particles", 160}},
                          SMOKE_PICTURE);
}

}  // namespace

void writeWaterEffects(const std::string& root) {
    const std::string folder = root + "/data/HARBOR_PROJECT/prefabs/vfx/";
    writeEffect(folder + "water_explosion/water_explosion.prefab", "An explosion under water: a column 40 m high.",
                column("column", 34, 4.2, 700, 0.5), Json::array({skirt(15, 2.4, 420), mist(6), foam(7)}));
    writeEffect(folder + "water_drop/water_drop.prefab", "Something small falls into the water.",
                column("column", 9, 0.6, 400, 0.2), Json::array({skirt(4, 0.5, 200), foam(1.6)}));
    writeEffect(folder + "decoy/decoy.prefab", "A burning decoy.", flare(),
                Json::array({glow({0, 0, 0.5}, {1.0, 0.85, 0.7}, 20000, 80), flareSmoke()}));
}
