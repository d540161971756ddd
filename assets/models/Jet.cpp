// Assembles the jet: models, prefab and aircraft file.
#include "geometry/Model.h"
#include "models/AircraftPrefab.h"
#include "models/JetControls.h"
#include "models/JetShape.h"
#include "plan/Builders.h"
#include "plan/Layout.h"
#include "text/SceneText.h"

namespace jet {
namespace {

constexpr const char* FOLDER = "data/assets/Targets/MODELS/FJ_CN_J15/";

void setPoses(std::vector<Part>& parts) {
    for (Part& part : parts) {
        part.hpr = standingRotation(part.name);
        setPoses(part.children);
    }
}

std::vector<Part> intactParts() {
    const Paints paints = makePaints();
    std::vector<Part> parts{airframe(paints)};
    for (auto* build : {bodyParts, surfaceParts, gearParts}) {
        const std::vector<Part> more = build(paints);
        parts.insert(parts.end(), more.begin(), more.end());
    }
    setPoses(parts);
    return parts;
}

Json exhaust(int side) {
    return particleNode(withSide("exhaust", side), onSide(NOZZLE, side),
                        {{"spawn_rate", 60},
                         {"life", 0.5},
                         {"life_spread", 0.15},
                         {"velocity", {0, -28, 0}},
                         {"velocity_spread", {1.5, 4, 1.5}},
                         {"emitter_size", {0.5, 0.1, 0.5}},
                         {"size", 0.7},
                         {"growth", 2.2},
                         {"drag", 1.2},
                         {"buoyancy", 1.5},
                         {"color", {0.55, 0.55, 0.58, 0.10}},
                         {"end_color", {0.6, 0.6, 0.62, 0}},
                         {"max_particles", 80}});
}

Json sensor() {
    Json node = sceneNode("node", "body", {0.0, 0.2, 0.4});
    node["sensor"] = {9.0, 21.0, 2.4};
    return node;
}

Json rigidBody() {
    const double nose = 2.0 * NOSE_WHEEL_RADIUS, main = 2.0 * MAIN_WHEEL_RADIUS;
    return {{"kind", "dynamic"},
            {"mass", 21000},
            {"inertia", {245000, 42000, 275000}},
            {"center_of_mass", {0, -0.6, 0}},
            {"friction", 0.9},
            {"restitution", 0},
            {"linear_damping", 0.02},
            {"angular_damping", 0.1},
            {"shapes",
             {bodyShape("body_box", "box", {4.6, 20.0, 1.3}, {0.0, 0.2, 0.35}),
              bodyShape("f_wheel", "sphere", {nose, nose, nose}, NOSE_WHEEL),
              bodyShape("l_wheel", "sphere", {main, main, main}, onSide(MAIN_WHEEL, -1)),
              bodyShape("r_wheel", "sphere", {main, main, main}, MAIN_WHEEL)}}};
}

Json prefab() {
    Json children = {lookNode("normal", "FJ_CN_J15.glb", true), lookNode("destroyed", "FJ_CN_J15_destroyed.glb", false),
                     fireNode({0.0, -2.0, 0.6}, {2.5, 7.0, 0.5}), sensor(), pilotCamera(PILOT_EYE)};
    const std::vector<dvec3> middles{NOSE_WHEEL, onSide(MAIN_WHEEL, -1), MAIN_WHEEL};
    std::vector<dvec3> contacts = middles;
    for (dvec3& place : contacts) place.z = -STANDING_HEIGHT;
    addWheelPlaces(children, middles, contacts);
    for (const int side : {-1, 1}) children.push_back(exhaust(side));
    children.push_back(spotNode("landing_light", {0.0, NOSE_WHEEL.y + 0.2, -0.8}, 4.0, 60000.0, 600.0));
    children.push_back(lampNode("navigation_left", {-7.38, -3.2, 0.3}, {1.0, 0.05, 0.03}));
    children.push_back(lampNode("navigation_right", {7.38, -3.2, 0.3}, {0.05, 1.0, 0.15}));
    children.push_back(lampNode("navigation_tail", {0.0, -10.85, 0.3}, {1.0, 1.0, 1.0}));
    return {{"node", {{"body", rigidBody()}, {"children", children}}}};
}

Json aircraftFile() {
    Json entries;
    for (std::size_t i = 0; i < controls().size(); ++i) {
        const Control& c = controls()[i];
        const std::string number = std::to_string(i);
        entries["node_" + std::string(2 - number.size(), '0') + number] = {{"id", i},
                                                                           {"show_name", c.label},
                                                                           {"node_name", c.node},
                                                                           {"open_rot", triple(c.open)},
                                                                           {"close_rot", triple(c.close)},
                                                                           {"axis", triple(c.axis)},
                                                                           {"type", c.type},
                                                                           {"digit", 1.0}};
    }
    return {{"path", std::string(FOLDER) + "FJ_CN_J15.prefab"}, {"type", "PlaneJ15"}, {"ctrl_nodes", entries}};
}

}  // namespace
}  // namespace jet

void writeJet(const std::string& root) {
    const std::string folder = root + "/" + jet::FOLDER;
    writeText(folder + "FJ_CN_J15.prefab", "The carrier jet. Origin 2 m above the ground that it stands on.",
              jet::prefab());
    writeText(folder + "FJ_CN_J15.cfg", "The carrier jet's control nodes, addressed by their place in this list.",
              jet::aircraftFile());
    const std::vector<Part> parts = jet::intactParts();
    writeModel(folder + "FJ_CN_J15.glb", parts);
    writeModel(folder + "FJ_CN_J15_destroyed.glb",
               wreckOf(parts, {"canopy", "wing_fold_right", "rudder_left", "radome", "canard_left", "afterburner"}));
}
