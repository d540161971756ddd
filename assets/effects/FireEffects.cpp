// Explosions and fires. A fireball rises, turns red and fades; its smoke darkens the sky and drifts with the wind. All
// particles of an explosion have ended before its action ends: 20 s after a hit, 6 s after an aircraft's destruction.
#include "effects/FireEffects.h"

#include <algorithm>

#include "effects/Effects.h"
#include "effects/ParticleNodes.h"

namespace {

/// A short burst of light.
Json flash(double size) {
    return particleSystem("flash", {0, 0, 0.45 * size},
                          {{"spawn_rate", 60},
                           {"duration", 0.05},
                           {"life", 0.16},
                           {"life_spread", 0.04},
                           {"velocity", {0, 0, 4}},
                           {"size", size},
                           {"growth", size},
                           {"color", {1.0, 0.82, 0.55, 0.8}},
                           {"end_color", {1.0, 0.35, 0.08, 0}},
                           {"additive", true},
                           {"max_particles", 6}},
                          "");
}

/// `scale` 1: a ball of about 20 m.
Json fireball(double scale, double rate) {
    return particleSystem("fireball", {0, 0, 1.5 * scale},
                          {{"spawn_rate", rate},
                           {"duration", 0.35},
                           {"life", 1.3},
                           {"life_spread", 0.5},
                           {"velocity", {0, 0, 14 * scale}},
                           {"velocity_spread", {16 * scale, 16 * scale, 11 * scale}},
                           {"emitter_size", {2 * scale, 2 * scale, 2 * scale}},
                           {"size", 3.6 * scale},
                           {"size_spread", 2.2 * scale},
                           {"growth", 4.5 * scale},
                           {"drag", 2.4},
                           {"buoyancy", 14},
                           {"wind", 0.6},
                           {"color", {1.0, 0.44, 0.1, 0.6}},
                           {"end_color", {0.75, 0.08, 0.0, 0}},
                           {"additive", true},
                           {"max_particles", 160}},
                          FLAME_PICTURE);
}

Json sparks(double speed) {
    return particleSystem("sparks", {0, 0, 1},
                          {{"spawn_rate", 600},
                           {"duration", 0.15},
                           {"life", 1.5},
                           {"life_spread", 0.7},
                           {"velocity", {0, 0, 0.6 * speed}},
                           {"velocity_spread", {speed, speed, 0.6 * speed}},
                           {"size", 0.24},
                           {"size_spread", 0.14},
                           {"drag", 0.7},
                           {"buoyancy", -9.8},
                           {"color", {1.0, 0.6, 0.2, 1.0}},
                           {"end_color", {1.0, 0.2, 0.02, 0.2}},
                           {"additive", true},
                           {"max_particles", 120}},
                          "");
}

/// The smoke of the fireball: dense, rolling upward. It is emitted with the flames, whose colour is only visible in
/// front of something dark.
Json billows(double scale, double rate, double life) {
    return particleSystem("billows", {0, 0, 2 * scale},
                          {{"spawn_rate", rate},
                           {"delay", 0.05},
                           {"duration", 0.8},
                           {"life", life},
                           {"life_spread", 0.25 * life},
                           {"velocity", {0, 0, 15 * scale}},
                           {"velocity_spread", {13 * scale, 13 * scale, 9 * scale}},
                           {"emitter_size", {3 * scale, 3 * scale, 3 * scale}},
                           {"size", 4.5 * scale},
                           {"size_spread", 2.4 * scale},
                           {"growth", 2.0 * scale},
                           {"drag", 1.7},
                           {"buoyancy", 7},
                           {"wind", 0.9},
                           {"color", {0.014, 0.011, 0.009, 0.9}},
                           {"end_color", {0.12, 0.12, 0.12, 0}},
                           {"max_particles", 120}},
                          SMOKE_PICTURE);
}

/// The larger horizontal extent of an area.
double widthOf(const dvec3& area) {
    return std::max(area.x, area.y);
}

}  // namespace

Json flames(const std::string& name, const dvec3& area, double duration) {
    const double size = 0.5 * std::min(area.x, area.y) + 0.9;
    return particleSystem(name, {0, 0, 0.3},
                          {{"spawn_rate", 90},
                           {"duration", duration},
                           {"life", 1.1},
                           {"life_spread", 0.45},
                           {"velocity", {0, 0, 1.4 + 0.3 * size}},
                           {"velocity_spread", {0.7, 0.7, 1.0}},
                           {"emitter_size", triple(area)},
                           {"size", size},
                           {"size_spread", 0.4 * size},
                           {"growth", -0.2 * size},
                           {"drag", 0.3},
                           {"buoyancy", 4.5},
                           {"wind", 0.5},
                           {"color", {1.0, 0.42, 0.09, 0.55}},
                           {"end_color", {0.7, 0.06, 0.0, 0}},
                           {"additive", true},
                           {"max_particles", 140}},
                          FLAME_PICTURE);
}

Json plume(const dvec3& area, double rate, double duration, double life) {
    const double width = widthOf(area);
    return particleSystem("plume", {0, 0, 0.5 + 0.2 * width},
                          {{"spawn_rate", rate},
                           {"delay", 0.3},
                           {"duration", duration},
                           {"life", life},
                           {"life_spread", 0.25 * life},
                           {"velocity", {0, 0, 4.5}},
                           {"velocity_spread", {1.0, 1.0, 1.3}},
                           {"emitter_size", {0.7 * area.x, 0.7 * area.y, 0.4}},
                           {"size", 0.6 * width},
                           {"size_spread", 0.3 * width},
                           {"growth", 1.5},
                           {"drag", 0.5},
                           {"buoyancy", 1.8},
                           {"wind", 0.9},
                           {"color", {0.014, 0.011, 0.009, 0.85}},
                           {"end_color", {0.13, 0.13, 0.13, 0}},
                           {"max_particles", 220}},
                          SMOKE_PICTURE);
}

void writeFireEffects(const std::string& root) {
    const std::string folder = root + "/data/art/prefab/vfx/";
    const dvec3 fire_color{1.0, 0.62, 0.3}, hit{4.0, 4.0, 0.4}, wreck{7.0, 7.0, 0.4};
    writeEffect(folder + "explosion/explosion.prefab", "A missile's hit: plays for 20 s.", flash(12),
                Json::array({glow({0, 0, 6}, fire_color, 600000, 400), fireball(1.0, 280), sparks(30),
                             billows(1.0, 110, 8.0), flames("burn", hit, 11.0), plume(hit, 16, 11.0, 6.5)}));
    writeEffect(folder + "explosion_1/explosion_1.prefab", "An aircraft's end: plays for 6 s.", flash(15),
                Json::array({glow({0, 0, 6}, fire_color, 1000000, 500), fireball(1.35, 360), sparks(38),
                             billows(1.35, 130, 3.9), flames("burn", wreck, 3.6)}));
    writeEffect(folder + "fire/fire.prefab", "Fire and smoke of something that burns, without end.",
                flames("flames", hit, 0.0),
                Json::array({glow({0, 0, 3}, fire_color, 4000, 60), plume(hit, 18, 0.0, 8.0)}));
}
