// Water thrown up by an explosion or by an object that falls in, and the flare of a decoy. Origins are on the water's
// surface.
#include "effects/Effects.h"
#include "effects/ParticleNodes.h"

namespace {

/// A column thrown up from a spot `width` metres wide. Its top starts at `speed` m/s, its foot hardly rises, so that
/// the column rests on the water until it falls back.
Json column(const std::string& name, double speed, double width, double rate, double duration) {
    return particleSystem(name, {0, 0, 0},
                          {{"spawn_rate", rate},
                           {"duration", duration},
                           {"life", 0.15 * speed},
                           {"life_spread", 0.05 * speed},
                           {"velocity", {0, 0, 0.55 * speed}},
                           {"velocity_spread", {0.07 * speed, 0.07 * speed, 0.45 * speed}},
                           {"emitter_size", {width, width, 0.5}},
                           {"size", 0.7 * width},
                           {"size_spread", 0.4 * width},
                           {"growth", 0.35 * width},
                           {"drag", 0.25},
                           {"buoyancy", -9.8},
                           {"wind", 0.15},
                           {"color", {0.86, 0.9, 0.93, 0.8}},
                           {"end_color", {0.9, 0.94, 0.97, 0}},
                           {"max_particles", 420}},
                          SPRAY_PICTURE);
}

/// Spray at the edges of the column.
Json jets(double speed, double size) {
    return particleSystem("jets", {0, 0, 0.5},
                          {{"spawn_rate", 900},
                           {"duration", 0.4},
                           {"life", 0.12 * speed},
                           {"life_spread", 0.04 * speed},
                           {"velocity", {0, 0, 0.6 * speed}},
                           {"velocity_spread", {0.13 * speed, 0.13 * speed, 0.45 * speed}},
                           {"size", size},
                           {"size_spread", 0.6 * size},
                           {"growth", 0.4 * size},
                           {"drag", 0.25},
                           {"buoyancy", -9.8},
                           {"wind", 0.2},
                           {"color", {0.88, 0.92, 0.95, 0.6}},
                           {"end_color", {0.9, 0.94, 0.97, 0}},
                           {"max_particles", 360}},
                          SPRAY_PICTURE);
}

/// A low ring around the foot of the column.
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

/// Mist that remains in the air after the column has fallen.
Json mist(double size) {
    return particleSystem("mist", {0, 0, 1.6 * size},
                          {{"spawn_rate", 26},
                           {"delay", 0.9},
                           {"duration", 2.2},
                           {"life", 5.0},
                           {"life_spread", 1.5},
                           {"velocity", {0, 0, 0.8 * size}},
                           {"velocity_spread", {0.5 * size, 0.5 * size, 0.8 * size}},
                           {"emitter_size", {size, size, 3 * size}},
                           {"size", 1.2 * size},
                           {"size_spread", 0.4 * size},
                           {"growth", 0.3 * size},
                           {"drag", 0.9},
                           {"buoyancy", -0.8},
                           {"wind", 0.9},
                           {"color", {0.82, 0.87, 0.9, 0.3}},
                           {"end_color", {0.86, 0.9, 0.94, 0}},
                           {"max_particles", 80}},
                          SMOKE_PICTURE);
}

/// On the water: particles without a height of their own are drawn flat.
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

constexpr double BURNING = 6.5;  ///< burning time of a decoy, seconds

/// A magnesium light: a bright white core in a halo, and a thin trail of white smoke.
Json flare(const std::string& name, double size, double alpha) {
    return particleSystem(name, {0, 0, 1.0},
                          {{"spawn_rate", 50},
                           {"duration", BURNING},
                           {"life", 0.16},
                           {"life_spread", 0.06},
                           {"velocity_spread", {2, 2, 2}},
                           {"velocity", {0, 0, 1}},
                           {"size", size},
                           {"size_spread", 0.4 * size},
                           {"color", {1.0, 0.86, 0.66, alpha}},
                           {"end_color", {1.0, 0.4, 0.2, 0}},
                           {"additive", true},
                           {"max_particles", 16}},
                          "");
}

Json flareSmoke() {
    return particleSystem("smoke", {0, 0, 1.0},
                          {{"spawn_rate", 28},
                           {"duration", BURNING},
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
                column("column", 36, 4.6, 520, 0.8),
                Json::array({jets(37, 1.0), skirt(15, 2.4, 420), mist(6), foam(7)}));
    writeEffect(folder + "water_drop/water_drop.prefab", "Something small falls into the water.",
                column("column", 10, 0.8, 400, 0.3), Json::array({jets(10, 0.3), skirt(4, 0.6, 220), foam(1.8)}));
    writeEffect(folder + "decoy/decoy.prefab", "A burning decoy: plays for 12 s.", flare("flare", 0.6, 1.0),
                Json::array({flare("halo", 1.8, 0.1), glow({0, 0, 0.5}, {1.0, 0.85, 0.7}, 20000, 80), flareSmoke()}));
}
