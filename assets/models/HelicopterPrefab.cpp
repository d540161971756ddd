// The helicopter's prefab. Mass, inertia and centre of mass are made for the force model that flies it: light for its
// size, and slow to roll.
#include "models/HelicopterPrefab.h"

#include "text/SceneText.h"
#include "world/Layout.h"

namespace heli {
namespace {

constexpr dvec3 NOSE_WHEEL{0.0, 4.6, -1.65}, MAIN_WHEEL{2.0, -2.2, -1.55};  ///< middles; the right one of two
constexpr dvec3 PILOT_EYE{0.55, 5.0, 0.75};
constexpr dvec3 SEARCH_LIGHT{0.0, 6.0, -1.0};
constexpr double PUFF_HEIGHT = 1.0;  ///< of the dust's and the spray's middle: lower ones sink into the ground

dvec3 left(const dvec3& right) {
    return {-right.x, right.y, right.z};
}

/// `height` above the parent, metres.
Json particles(const std::string& name, double height, const Json& settings) {
    Json node = sceneNode("particles", name, {0.0, 0.0, height});
    node["particles"] = settings;
    // Its place is the ground's, under the helicopter, from the first frame on.
    node["particles"]["deflectors"] = Json::array({Json{{"position", {0, 0, 0}}, {"hpr", {0, 0, 0}}}});
    return node;
}

/// Dust over land: flat and wide, thrown outward and slowed by the air.
Json dust() {
    return particles("downwash_spe", PUFF_HEIGHT,
                     {{"spawn_rate", 450},
                      {"life", 1.7},
                      {"life_spread", 0.5},
                      {"velocity", {0, 0, 1.0}},
                      {"velocity_spread", {13, 13, 1.0}},
                      {"emitter_size", {15, 15, 0.3}},
                      {"size", 1.0},
                      {"size_spread", 0.4},
                      {"growth", 1.5},
                      {"drag", 0.8},
                      {"buoyancy", 0.15},
                      {"wind", 0.2},
                      {"color", {0.50, 0.44, 0.34, 0.28}},
                      {"end_color", {0.55, 0.50, 0.42, 0}},
                      {"max_particles", 1000}});
}

Json leaves() {
    return particles("leaf_1", -PUFF_HEIGHT,
                     {{"spawn_rate", 140},
                      {"life", 2.2},
                      {"life_spread", 0.7},
                      {"velocity", {0, 0, 3.2}},
                      {"velocity_spread", {8, 8, 2.4}},
                      {"emitter_size", {15, 15, 0.2}},
                      {"size", 0.2},
                      {"size_spread", 0.08},
                      {"drag", 0.8},
                      {"buoyancy", -3.2},
                      {"wind", 0.3},
                      {"color", {0.20, 0.22, 0.05, 1}},
                      {"end_color", {0.28, 0.20, 0.07, 0.9}},
                      {"max_particles", 450}});
}

/// Spray over water: a white ring that hangs longer than dust.
Json spray() {
    return particles("downwash_spe_water", PUFF_HEIGHT,
                     {{"spawn_rate", 450},
                      {"life", 1.5},
                      {"life_spread", 0.5},
                      {"velocity", {0, 0, 1.1}},
                      {"velocity_spread", {13, 13, 1.0}},
                      {"emitter_size", {16, 16, 0.2}},
                      {"size", 0.9},
                      {"size_spread", 0.4},
                      {"growth", 1.4},
                      {"drag", 0.9},
                      {"buoyancy", -0.2},
                      {"wind", 0.2},
                      {"color", {0.88, 0.93, 0.96, 0.36}},
                      {"end_color", {0.92, 0.96, 1.0, 0}},
                      {"max_particles", 900}});
}

Json drops() {
    return particles("leaf_water", -PUFF_HEIGHT,
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
                      {"max_particles", 500}});
}

/// Everything that lies on the ground or the sea below; starts where the wheels stand.
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
    Json node = sceneNode("light", "front_proj", SEARCH_LIGHT);
    node["hpr"] = {0, -12, 0};
    node["enabled"] = false;
    node["light"] = {{"kind", "spot"},     {"color", {1.0, 0.96, 0.88}},
                     {"intensity", 50000}, {"range", 500},
                     {"angle", 16},        {"size", 0.22}};
    return node;
}

Json lamp(const std::string& name, const dvec3& position, const dvec3& color) {
    Json node = sceneNode("light", name, position);
    node["light"] = {{"color", triple(color)}, {"intensity", 20}, {"range", 12}, {"size", 0.1}};
    return node;
}

Json pilotCamera() {
    Json node = sceneNode("node", "cam_first_player", PILOT_EYE);
    node["hpr"] = {0, 90, 0};  // a camera looks along its -Z: turned so that this lies ahead and its Y is up
    return node;
}

Json sensor() {
    Json node = sceneNode("node", "body", {0.0, -1.5, 0.4});
    node["sensor"] = {2.6, 17.0, 2.6};
    return node;
}

Json shape(const std::string& name, const std::string& type, const dvec3& size, const dvec3& position) {
    return {{"name", name}, {"type", type}, {"size", triple(size)}, {"position", triple(position)}};
}

/// A ball that touches the ground under the wheel's middle.
Json wheel(const std::string& name, const dvec3& middle) {
    const double across = 2.0 * (STANDING_HEIGHT + middle.z);
    return shape(name, "sphere", {across, across, across}, middle);
}

Json rigidBody() {
    return {{"kind", "dynamic"},
            {"mass", 214},
            {"inertia", {5500, 4000, 6000}},
            {"center_of_mass", {0, 0, 1.5}},
            {"friction", 0.9},
            {"restitution", 0},
            {"shapes",
             {shape("body_box", "box", {2.4, 12.5, 2.4}, {0.0, 0.6, 0.2}),
              shape("tail_box", "box", {0.9, 5.0, 1.0}, {0.0, -8.2, 0.9}), wheel("f_wheel", NOSE_WHEEL),
              wheel("l_wheel", left(MAIN_WHEEL)), wheel("r_wheel", MAIN_WHEEL)}}};
}

Json prefab() {
    // Only the body meets things: the mesh would follow it as a collider of its own.
    Json mesh = sceneNode("node", "normal");
    mesh["collider"] = false;
    mesh["mesh"] = "HELICOPTER.glb";
    const Json children = {mesh,
                           downwash(),
                           sceneNode("node", "deflector"),
                           searchLight(),
                           sensor(),
                           pilotCamera(),
                           lamp("navigation_left", {-1.3, 0.0, -0.2}, {1.0, 0.05, 0.03}),
                           lamp("navigation_right", {1.3, 0.0, -0.2}, {0.05, 1.0, 0.15}),
                           lamp("navigation_tail", {0.0, -10.4, 1.4}, {1.0, 1.0, 1.0})};
    return {{"node", {{"body", rigidBody()}, {"children", children}}}};
}

}  // namespace

void writePrefab(const std::string& folder) {
    writeText(folder + "HELICOPTER.prefab", "The helicopter. Origin 2 m above the ground that it stands on.", prefab());
}

}  // namespace heli
