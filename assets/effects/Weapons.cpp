// The missile and the torpedo: slender bodies with fins; the missile has a smoke trail, the torpedo a wake.
#include <cmath>

#include "effects/Effects.h"
#include "effects/ParticleNodes.h"
#include "geometry/Model.h"
#include "geometry/Shapes.h"

namespace {

/// Weapons are a collision group that excludes itself: two weapons fired together do not collide.
constexpr int GROUP = 8, MASK = ~GROUP;

/// Fins in a cross, from `inner` to `outer` metres from the axis and from `rear` to `front` along it.
Mesh fins(const PaintRef& paint, double inner, double outer, double rear, double front, double turn) {
    Mesh mesh;
    for (int i = 0; i < 4; ++i) {
        const double thick = 0.012, sweep = 0.45 * (front - rear);
        Mesh fin;
        for (const double side : {-thick, thick}) {
            fin.quad(paint, {inner, rear, side}, {outer, rear, side}, {outer, front - sweep, side},
                     {inner, front, side});
        }
        fin.quad(paint, {inner, front, -thick}, {outer, front - sweep, -thick}, {outer, front - sweep, thick},
                 {inner, front, thick});
        mesh.add(fin, dmat4(dquat(dvec3(0, 1, 0), turn + 90.0 * i), {}));
    }
    return mesh;
}

PaintRef twoSided(const std::string& name, const std::array<double, 3>& color, double roughness) {
    auto made = std::make_shared<Paint>(*paint(name, color, roughness));
    made->double_sided = true;
    return made;
}

Part missile() {
    const PaintRef white = paint("white", {0.68, 0.68, 0.66}, 0.55), grey = twoSided("fin", {0.42, 0.43, 0.44}, 0.6),
                   dark = paint("nose", {0.10, 0.10, 0.11}, 0.4), band = paint("band", {0.55, 0.32, 0.04}, 0.7);
    Mesh mesh = revolve(white, {}, {{-1.5, 0.09}, {-1.46, 0.105}, {1.0, 0.105}});
    mesh.add(revolve(dark, {}, {{1.0, 0.105}, {1.25, 0.093}, {1.42, 0.062}, {1.52, 0.0}}));
    mesh.add(cylinder(band, {0, 0.7, 0}, {0, 0.76, 0}, 0.107, 24));
    mesh.add(fins(grey, 0.1, 0.36, -0.1, 0.5, 45.0)).add(fins(grey, 0.1, 0.32, -1.46, -1.1, 45.0));
    return {"missile", {}, mesh};
}

/// The flame behind the nozzle. It is a mesh and not particles, so that it stays at the nozzle at any speed.
Part missileFlame() {
    auto hot = std::make_shared<Paint>(*paint("flame", {1.0, 0.7, 0.4}));
    hot->emission = {12.0, 6.5, 2.4};
    hot->double_sided = true;
    return {"flame", {}, revolve(hot, {}, {{-2.9, 0.0}, {-2.3, 0.05}, {-1.75, 0.085}, {-1.5, 0.07}}, 12)};
}

/// Puffs 3 m apart at 300 m/s, which grow until they overlap.
Json missileTrail() {
    return particleSystem("exhaust", {0, -2.4, 0},
                          {{"spawn_rate", 105},
                           {"life", 1.4},
                           {"life_spread", 0.4},
                           {"velocity", {0, -10, 0}},
                           {"velocity_spread", {0.3, 0.5, 0.3}},
                           {"size", 3.2},
                           {"size_spread", 0.5},
                           {"growth", 1.8},
                           {"drag", 1.0},
                           {"wind", 1.0},
                           {"buoyancy", 0.1},
                           {"color", {0.82, 0.82, 0.82, 0.65}},
                           {"end_color", {0.86, 0.86, 0.87, 0}},
                           {"max_particles", 210}},
                          SMOKE_PICTURE);
}

/// Closes the gap behind the flame: the long-lived smoke becomes visible too late for a fast missile.
Json missilePlume() {
    return particleSystem("plume", {0, -2.4, 0},
                          {{"spawn_rate", 300},
                           {"life", 0.13},
                           {"life_spread", 0.03},
                           {"velocity", {0, -10, 0}},
                           {"velocity_spread", {0.5, 0.5, 0.5}},
                           {"size", 0.8},
                           {"size_spread", 0.15},
                           {"growth", 14},
                           {"wind", 1.0},
                           {"color", {0.95, 0.9, 0.84, 0.75}},
                           {"end_color", {0.85, 0.85, 0.85, 0.15}},
                           {"max_particles", 55}},
                          SMOKE_PICTURE);
}

Json prefab(const std::string& mesh, const dvec3& size, const Json& children) {
    Json look = sceneNode("node", "look");
    look["mesh"] = mesh;
    look["collider"] = false;
    Json all = Json::array({look});
    for (const Json& child : children) all.push_back(child);
    return {{"body",
             {{"kind", "driven"},
              {"mass", 200},
              {"group", GROUP},
              {"mask", MASK},
              {"shapes", Json::array({Json{{"name", "body_box"}, {"type", "box"}, {"size", triple(size)}}})}}},
            {"children", all}};
}

Part torpedo() {
    const PaintRef green = paint("hull", {0.10, 0.14, 0.11}, 0.45, 0.1),
                   dark = twoSided("fin", {0.05, 0.05, 0.05}, 0.5), orange = paint("nose", {0.62, 0.20, 0.03}, 0.6),
                   brass = twoSided("screw", {0.45, 0.33, 0.12}, 0.35);
    Mesh mesh = revolve(green, {}, {{-1.55, 0.03}, {-1.4, 0.07}, {-0.95, 0.155}, {-0.7, 0.162}, {1.0, 0.162}});
    mesh.add(revolve(orange, {}, {{1.0, 0.162}, {1.3, 0.155}, {1.5, 0.11}, {1.56, 0.0}}));
    mesh.add(fins(dark, 0.06, 0.2, -1.42, -1.05, 0.0)).add(fins(brass, 0.02, 0.13, -1.53, -1.47, 20.0));
    return {"torpedo", {}, mesh};
}

/// On the water above the torpedo, high and wide enough to be visible over waves.
Json wake() {
    return particleSystem("wake", {0, -2.5, 0.7},
                          {{"spawn_rate", 40},
                           {"life", 8.0},
                           {"life_spread", 2.0},
                           {"velocity", {0, 0, 0}},
                           {"velocity_spread", {0.3, 0.2, 0}},
                           {"emitter_size", {0.6, 0.4, 0}},
                           {"size", 3.4},
                           {"size_spread", 0.8},
                           {"growth", 0.4},
                           {"drag", 0.3},
                           {"color", {0.8, 0.87, 0.88, 0.55}},
                           {"end_color", {0.7, 0.8, 0.82, 0}},
                           {"max_particles", 400}},
                          SPRAY_PICTURE);
}

/// Thrown up by the propeller just below the surface.
Json churn() {
    return particleSystem("churn", {0, -1.5, 0.3},
                          {{"spawn_rate", 70},
                           {"life", 0.7},
                           {"life_spread", 0.25},
                           {"velocity", {0, 0, 2.6}},
                           {"velocity_spread", {0.7, 0.5, 0.8}},
                           {"size", 0.8},
                           {"size_spread", 0.15},
                           {"growth", 0.5},
                           {"buoyancy", -5},
                           {"color", {0.88, 0.92, 0.94, 0.6}},
                           {"end_color", {0.9, 0.94, 0.97, 0}},
                           {"max_particles", 80}},
                          SPRAY_PICTURE);
}

}  // namespace

void writeWeapons(const std::string& root) {
    const std::string air = root + "/data/assets/Targets/MODELS/ZSJ_CN_Z18_Missile/ZSJ_CN_Z18_Missile",
                      sea = root + "/data/HARBOR_PROJECT/prefabs/yulei_Z18F/yulei";
    writeModel(air + ".glb", {missile(), missileFlame()});
    writeText(
        air + ".prefab", "An air-launched missile: origin amidships.",
        {{"node", prefab("ZSJ_CN_Z18_Missile.glb", {0.3, 3.0, 0.3}, Json::array({missileTrail(), missilePlume()}))}});
    writeModel(sea + ".glb", {torpedo()});
    writeText(sea + ".prefab", "A torpedo that runs at the surface: origin amidships.",
              {{"node", prefab("yulei.glb", {0.33, 3.1, 0.33}, Json::array({wake(), churn()}))}});
}
