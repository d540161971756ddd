// Assembles the aerobatic aircraft: models and prefab. Its configuration is checked in.
#include "engine/math/jMath.h"
#include "geometry/Model.h"
#include "models/AircraftPrefab.h"
#include "models/ExtraShape.h"
#include "plan/Builders.h"

namespace extra {
namespace {

constexpr const char* FOLDER = "data/assets/Targets/MODELS/EXTRA300S/";

std::vector<Part> intactParts(const Paints& paints) {
    std::vector<Part> parts{{"airframe", {}, airframe(paints)}, propeller(paints)};
    for (auto* build : {surfaceParts, gearParts, cockpitParts}) {
        const std::vector<Part> more = build(paints);
        parts.insert(parts.end(), more.begin(), more.end());
    }
    return parts;
}

Json digits(const std::string& name, const std::string& shown, double x, double z, double height) {
    Json node = sceneNode("text", name, {x, PANEL_Y - 0.005, z});
    node["text"] = {{"text", shown}, {"height", height}, {"color", {0.95, 0.75, 0.25, 1.0}}};
    return node;
}

Json smoke() {
    Json node = particleNode("smoke", {0.0, 1.2, -0.58},
                             {{"spawn_rate", 70},
                              {"life", 6.0},
                              {"life_spread", 1.5},
                              {"velocity", {0, -14, -0.5}},
                              {"velocity_spread", {0.5, 1.5, 0.5}},
                              {"emitter_size", {0.4, 0.1, 0.1}},
                              {"size", 0.5},
                              {"size_spread", 0.2},
                              {"growth", 0.8},
                              {"drag", 1.5},
                              {"buoyancy", 0.1},
                              {"wind", 1.0},
                              {"color", {0.95, 0.95, 0.96, 0.35}},
                              {"end_color", {0.97, 0.97, 0.98, 0}},
                              {"max_particles", 600}});
    node["enabled"] = false;
    return node;
}

Json rigidBody() {
    const double main = 2.0 * MAIN_WHEEL_RADIUS, tail = 2.0 * TAIL_WHEEL_RADIUS;
    const dvec3 right = wheelMiddle(MAIN_PLACE.x, MAIN_PLACE.y, MAIN_WHEEL_RADIUS);
    const dvec3 back = wheelMiddle(TAIL_PLACE.x, TAIL_PLACE.y, TAIL_WHEEL_RADIUS);
    return {{"kind", "dynamic"},
            {"mass", 870},
            {"inertia", {1400, 900, 2200}},
            {"center_of_mass", {0, 0.3, -0.1}},
            {"friction", 0.9},
            {"restitution", 0},
            {"linear_damping", 0.02},
            {"angular_damping", 0.1},
            {"shapes",
             {bodyShape("body_box", "box", {1.0, 5.6, 0.85}, {0.0, -0.5, 0.0}),
              bodyShape("f_wheel", "sphere", {tail, tail, tail}, back),
              bodyShape("l_wheel", "sphere", {main, main, main}, onSide(right, -1)),
              bodyShape("r_wheel", "sphere", {main, main, main}, right)}}};
}

void addInstrumentTexts(Json& children) {
    children.push_back(digits("text_airspeed", "0", dials()[0].x, dials()[0].z - 0.036, 0.015));
    children.push_back(digits("text_altitude", "0", dials()[1].x, dials()[1].z - 0.036, 0.015));
    children.push_back(digits("text_rpm", "0", dials()[2].x, dials()[2].z - 0.036, 0.015));
    children.push_back(digits("text_fuel", "60", -0.055, 0.063, 0.013));
}

void addLights(Json& children) {
    const double tip = WING_TIP.leading_edge.x + 0.06;
    children.push_back(lampNode("navigation_left", {-tip, 0.25, -0.05}, {1.0, 0.05, 0.03}));
    children.push_back(lampNode("navigation_right", {tip, 0.25, -0.05}, {0.05, 1.0, 0.15}));
    children.push_back(lampNode("navigation_tail", {0.0, -3.93, 0.30}, {1.0, 1.0, 1.0}));
    children.push_back(lampNode("strobe", {0.0, -0.9, -0.50}, {1.0, 0.1, 0.08}, 12.0));
    children.push_back(spotNode("landing_light", {0.0, 2.38, -0.36}, 2.0, 15000.0, 250.0));
}

Json prefab() {
    Json sensor = sceneNode("node", "body", {0.0, -0.6, 0.0});
    sensor["sensor"] = {7.5, 6.65, 2.2};
    Json children = {lookNode("normal", "EXTRA300S.glb", true), lookNode("destroyed", "EXTRA300S_destroyed.glb", false),
                     fireNode({0.0, 0.6, 0.3}, {0.8, 2.5, 0.3}), sensor, pilotCamera(PILOT_EYE)};
    const dvec3 right = wheelMiddle(MAIN_PLACE.x, MAIN_PLACE.y, MAIN_WHEEL_RADIUS),
                on_right = contact(MAIN_PLACE.x, MAIN_PLACE.y);
    addWheelPlaces(children, {wheelMiddle(TAIL_PLACE.x, TAIL_PLACE.y, TAIL_WHEEL_RADIUS), onSide(right, -1), right},
                   {contact(TAIL_PLACE.x, TAIL_PLACE.y), onSide(on_right, -1), on_right});
    addInstrumentTexts(children);
    addLights(children);
    children.push_back(smoke());
    return {{"node", {{"body", rigidBody()}, {"children", children}}}};
}

}  // namespace
}  // namespace extra

void writeExtra(const std::string& root) {
    const std::string folder = root + "/" + extra::FOLDER;
    writeText(folder + "EXTRA300S.prefab",
              "The aerobatic aircraft, its fuselage level. The wheel place called front is the tail wheel's.",
              extra::prefab());
    const std::vector<Part> parts = extra::intactParts(extra::makePaints());
    writeModel(folder + "EXTRA300S.glb", parts);
    writeModel(folder + "EXTRA300S_destroyed.glb",
               wreckOf(parts, {"canopy", "propeller", "rudder", "aileron_right", "pilot"}));
}
