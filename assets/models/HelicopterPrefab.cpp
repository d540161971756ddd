// The helicopter's prefab. Mass, inertia and centre of mass are chosen for its force model: light for its size, with
// slow roll.
#include "models/HelicopterPrefab.h"

#include "effects/ParticleNodes.h"
#include "models/AircraftPrefab.h"
#include "models/HelicopterShape.h"
#include "models/Sides.h"
#include "plan/Layout.h"

namespace heli {
namespace {

constexpr dvec3 PILOT_EYE{0.55, 5.0, 0.75};
constexpr dvec3 SEARCH_LIGHT{0.0, 6.0, -1.0};
constexpr double PUFF_HEIGHT = 1.0;  ///< centre of dust and spray puffs; lower ones would intersect the ground

/// `height` above the parent, metres.
Json wash(const std::string& name, double height, const Json& settings, const std::string& picture) {
    Json node = particleSystem(name, {0.0, 0.0, height}, settings, picture);
    // The deflector's pose is set to the ground below the helicopter from the first frame on.
    node["particles"]["deflectors"] = Json::array({Json{{"position", {0, 0, 0}}, {"hpr", {0, 0, 0}}}});
    return node;
}

/// Dust over land: flat and wide, thrown outward and slowed by the air.
Json dust() {
    return wash("downwash_spe", PUFF_HEIGHT,
                {{"spawn_rate", 450},
                 {"life", 1.7},
                 {"life_spread", 0.5},
                 {"velocity", {0, 0, 1.0}},
                 {"velocity_spread", {13, 13, 1.0}},
                 {"emitter_size", {15, 15, 0.3}},
                 {"size", 1.5},
                 {"size_spread", 0.6},
                 {"growth", 2.2},
                 {"drag", 0.8},
                 {"buoyancy", 0.15},
                 {"wind", 0.2},
                 {"color", {0.27, 0.22, 0.15, 0.16}},
                 {"end_color", {0.31, 0.27, 0.20, 0}},
                 {"max_particles", 1000}},
                SMOKE_PICTURE);
}

Json leaves() {
    return wash("leaf_1", -PUFF_HEIGHT,
                {{"spawn_rate", 190},
                 {"life", 2.2},
                 {"life_spread", 0.7},
                 {"velocity", {0, 0, 4.2}},
                 {"velocity_spread", {11, 11, 2.8}},
                 {"emitter_size", {15, 15, 0.2}},
                 {"size", 0.25},
                 {"size_spread", 0.08},
                 {"drag", 0.8},
                 {"buoyancy", -3.2},
                 {"wind", 0.3},
                 {"color", {0.10, 0.10, 0.02, 1}},
                 {"end_color", {0.16, 0.10, 0.03, 0.9}},
                 {"max_particles", 600}},
                "");
}

/// Spray over water: a white ring that lasts longer than dust.
Json spray() {
    return wash("downwash_spe_water", PUFF_HEIGHT,
                {{"spawn_rate", 450},
                 {"life", 1.5},
                 {"life_spread", 0.5},
                 {"velocity", {0, 0, 1.1}},
                 {"velocity_spread", {13, 13, 1.0}},
                 {"emitter_size", {16, 16, 0.2}},
                 {"size", 1.4},
                 {"size_spread", 0.6},
                 {"growth", 2.2},
                 {"drag", 0.9},
                 {"buoyancy", -0.2},
                 {"wind", 0.2},
                 {"color", {0.88, 0.93, 0.96, 0.6}},
                 {"end_color", {0.92, 0.96, 1.0, 0}},
                 {"max_particles", 900}},
                SPRAY_PICTURE);
}

Json drops() {
    return wash("leaf_water", -PUFF_HEIGHT,
                {{"spawn_rate", 300},
                 {"life", 1.1},
                 {"life_spread", 0.4},
                 {"velocity", {0, 0, 3.6}},
                 {"velocity_spread", {8, 8, 1.8}},
                 {"emitter_size", {15, 15, 0.1}},
                 {"size", 0.12},
                 {"size_spread", 0.05},
                 {"drag", 0.5},
                 {"buoyancy", -9.0},
                 {"wind", 0.2},
                 {"color", {0.92, 0.96, 1.0, 0.8}},
                 {"end_color", {0.92, 0.96, 1.0, 0.3}},
                 {"max_particles", 500}},
                "");
}

/// All effects on the ground or the sea below; initially at the wheels' contact height.
Json downwash() {
    Json land = dust(), water = spray();
    land["children"] = Json::array({leaves()});
    water["children"] = Json::array({drops()});
    Json node = sceneNode("node", "downwash", {0.0, 0.0, -STANDING_HEIGHT});
    Json field = sceneNode("node", "field_anim");
    field["scale"] = {20, 20, 4};
    node["children"] = Json::array({land, water, field});
    return node;
}

Json searchLight() {
    Json node = spotNode("front_proj", SEARCH_LIGHT, 12.0, 50000.0, 500.0);
    node["enabled"] = false;
    return node;
}

Json sensor() {
    Json node = sceneNode("node", "body", {0.0, -1.5, 0.4});
    node["sensor"] = {2.6, 17.0, 2.6};
    return node;
}

/// A sphere that touches the ground below the wheel's centre.
Json wheel(const std::string& name, const dvec3& middle) {
    const double across = 2.0 * (STANDING_HEIGHT + middle.z);
    return bodyShape(name, "sphere", {across, across, across}, middle);
}

Json rigidBody() {
    return {{"kind", "dynamic"},
            {"mass", 214},
            {"inertia", {5500, 4000, 6000}},
            {"center_of_mass", {0, 0, 1.5}},
            {"friction", 0.9},
            {"restitution", 0},
            {"shapes",
             {bodyShape("body_box", "box", {2.4, 12.5, 2.4}, {0.0, 0.6, 0.2}),
              bodyShape("tail_box", "box", {0.9, 5.0, 1.0}, {0.0, -8.2, 0.9}), wheel("f_wheel", NOSE_GEAR),
              wheel("l_wheel", onSide(MAIN_GEAR, -1)), wheel("r_wheel", MAIN_GEAR)}}};
}

Json prefab() {
    // Only the body has collisions: otherwise the mesh would be a second collider that follows it.
    Json mesh = lookNode("normal", "HELICOPTER.glb", true);
    mesh["collider"] = false;
    const Json children = {mesh,
                           downwash(),
                           sceneNode("node", "deflector"),
                           searchLight(),
                           sensor(),
                           pilotCamera(PILOT_EYE),
                           lampNode("navigation_left", onSide(NAVIGATION_LIGHT, -1), {1.0, 0.05, 0.03}, 1.5),
                           lampNode("navigation_right", NAVIGATION_LIGHT, {0.05, 1.0, 0.15}, 1.5),
                           lampNode("navigation_tail", {0.0, -10.55, 1.4}, {1.0, 1.0, 1.0}, 1.5)};
    return {{"node", {{"body", rigidBody()}, {"children", children}}}};
}

}  // namespace

void writePrefab(const std::string& folder) {
    writeText(folder + "HELICOPTER.prefab", "The helicopter. Origin 2 m above the ground that it stands on.", prefab());
}

}  // namespace heli
