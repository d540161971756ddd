// Explosions and fires. A fireball rises, reddens and goes out; smoke from within it darkens the sky and drifts off
// with the wind. What an explosion emits has ended before its action does: 20 s after a hit, 6 s after an aircraft's
// end.
#include "effects/Effects.h"
#include "effects/ParticleNodes.h"

namespace {

/// A burst of light, a moment long.
Json flash(double size) {
    return particleSystem("flash", {0, 0, 0.3 * size},
                          {{"spawn_rate", 60},
                           {"duration", 0.05},
                           {"life", 0.22},
                           {"life_spread", 0.04},
                           {"velocity", {0, 0, 4}},
                           {"size", size},
                           {"growth", size},
                           {"color", {1.0, 0.82, 0.55, 1.0}},
                           {"end_color", {1.0, 0.35, 0.08, 0}},
                           {"additive", true},
                           {"max_particles", 6}},
                          "");
}

/// `scale` is 1 for a ball of about 20 m.
Json fireball(double scale, double rate) {
    return particleSystem("fireball", {0, 0, 1},
                          {{"spawn_rate", rate},
                           {"duration", 0.35},
                           {"life", 1.3},
                           {"life_spread", 0.5},
                           {"velocity", {0, 0, 14 * scale}},
                           {"velocity_spread", {15 * scale, 15 * scale, 11 * scale}},
                           {"emitter_size", {2 * scale, 2 * scale, 2 * scale}},
                           {"size", 5.0 * scale},
                           {"size_spread", 2.0 * scale},
                           {"growth", 5.0 * scale},
                           {"drag", 2.6},
                           {"buoyancy", 16},
                           {"wind", 0.3},
                           {"color", {1.0, 0.46, 0.12, 0.8}},
                           {"end_color", {0.7, 0.07, 0.0, 0}},
                           {"additive", true},
                           {"max_particles", 120}},
                          FLAME_PICTURE);
}

Json sparks(double speed) {
    return particleSystem("sparks", {0, 0, 1},
                          {{"spawn_rate", 900},
                           {"duration", 0.15},
                           {"life", 1.5},
                           {"life_spread", 0.7},
                           {"velocity", {0, 0, 0.6 * speed}},
                           {"velocity_spread", {speed, speed, 0.6 * speed}},
                           {"size", 0.32},
                           {"size_spread", 0.16},
                           {"drag", 0.7},
                           {"buoyancy", -9.8},
                           {"color", {1.0, 0.75, 0.35, 1.0}},
                           {"end_color", {1.0, 0.25, 0.03, 0.2}},
                           {"additive", true},
                           {"max_particles", 160}},
                          "");
}

/// The ball's own smoke: dense, rolling upward.
Json billows(double scale, double rate, double life) {
    return particleSystem("billows", {0, 0, 2},
                          {{"spawn_rate", rate},
                           {"delay", 0.12},
                           {"duration", 0.9},
                           {"life", life},
                           {"life_spread", 0.2 * life},
                           {"velocity", {0, 0, 14 * scale}},
                           {"velocity_spread", {7 * scale, 7 * scale, 6 * scale}},
                           {"emitter_size", {4 * scale, 4 * scale, 3 * scale}},
                           {"size", 5.5 * scale},
                           {"size_spread", 1.8 * scale},
                           {"growth", 2.2 * scale},
                           {"drag", 0.9},
                           {"buoyancy", 3.2},
                           {"wind", 1.0},
                           {"color", {0.035, 0.03, 0.026, 0.9}},
                           {"end_color", {0.14, 0.14, 0.14, 0}},
                           {"max_particles", 100}},
                          SMOKE_PICTURE);
}

/// Flames on the spot for `duration` seconds (0 without end), from an area of `area` metres.
Json flames(const std::string& name, double area, double duration) {
    return particleSystem(name, {0, 0, 0.3},
                          {{"spawn_rate", 55},
                           {"duration", duration},
                           {"life", 1.1},
                           {"life_spread", 0.4},
                           {"velocity", {0, 0, 3.2}},
                           {"velocity_spread", {0.8, 0.8, 1.2}},
                           {"emitter_size", {area, area, 0.4}},
                           {"size", 0.55 * area},
                           {"size_spread", 0.2 * area},
                           {"growth", 0.2 * area},
                           {"drag", 0.4},
                           {"buoyancy", 2.5},
                           {"wind", 0.5},
                           {"color", {1.0, 0.44, 0.1, 0.75}},
                           {"end_color", {0.6, 0.05, 0.0, 0}},
                           {"additive", true},
                           {"max_particles", 100}},
                          FLAME_PICTURE);
}

/// The smoke of such flames: black below, thinning as it leans into the wind.
Json plume(double area, double rate, double duration, double life) {
    return particleSystem("plume", {0, 0, 0.45 * area},
                          {{"spawn_rate", rate},
                           {"delay", 0.4},
                           {"duration", duration},
                           {"life", life},
                           {"life_spread", 0.2 * life},
                           {"velocity", {0, 0, 5.5}},
                           {"velocity_spread", {0.8, 0.8, 1.2}},
                           {"emitter_size", {0.6 * area, 0.6 * area, 0.4}},
                           {"size", 0.7 * area},
                           {"size_spread", 0.2 * area},
                           {"growth", 1.5},
                           {"drag", 0.5},
                           {"buoyancy", 1.5},
                           {"wind", 0.9},
                           {"color", {0.03, 0.027, 0.024, 0.8}},
                           {"end_color", {0.16, 0.16, 0.16, 0}},
                           {"max_particles", 220}},
                          SMOKE_PICTURE);
}

}  // namespace

void writeFireEffects(const std::string& root) {
    const std::string folder = root + "/data/art/prefab/vfx/";
    const dvec3 fire_color{1.0, 0.62, 0.3};
    writeEffect(folder + "explosion/explosion.prefab", "A missile's hit: plays for 20 s.", flash(26),
                Json::array({glow({0, 0, 6}, fire_color, 600000, 400), fireball(1.0, 220), sparks(30),
                             billows(1.0, 70, 8.5), flames("burn", 4.0, 11.0), plume(4.0, 14, 11.0, 6.5)}));
    writeEffect(folder + "explosion_1/explosion_1.prefab", "An aircraft's end: plays for 6 s.", flash(40),
                Json::array({glow({0, 0, 6}, fire_color, 1000000, 500), fireball(1.35, 300), sparks(38),
                             billows(1.35, 90, 3.9), flames("burn", 7.0, 3.6)}));
    writeEffect(folder + "fire/fire.prefab", "Fire and smoke of something that burns, without end.",
                flames("flames", 4.0, 0.0),
                Json::array({glow({0, 0, 3}, fire_color, 4000, 60), plume(4.0, 18, 0.0, 8.0)}));
}
