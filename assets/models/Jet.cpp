// Puts the jet together: models, prefab and aircraft file.
#include "geometry/Model.h"
#include "models/Builders.h"
#include "models/JetControls.h"
#include "models/JetShape.h"
#include "text/SceneText.h"
#include "world/Layout.h"

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
    const Paints paints = freshPaints();
    std::vector<Part> parts{airframe(paints)};
    for (auto* build : {bodyParts, surfaceParts, gearParts}) {
        const std::vector<Part> more = build(paints);
        parts.insert(parts.end(), more.begin(), more.end());
    }
    setPoses(parts);
    return parts;
}

void collect(const Part& part, Mesh& into) {
    into.add(part.mesh);
    for (const Part& child : part.children) collect(child, into);
}

/// The burnt-out shell: what is torn off is left out, the rest is one charred mesh.
std::vector<Part> wreckParts() {
    Mesh mesh;
    for (const Part& part : intactParts()) {
        const bool gone = part.name == "canopy" || part.name == "wing_fold_right" || part.name == "rudder_left" ||
                          part.name == "radome" || part.name == "canard_left" || part.name == "afterburner";
        if (!gone) collect(part, mesh);
    }
    return {{"wreck", {}, mesh.repainted(paint("charred", {0.025, 0.023, 0.022}, 0.95))}};
}

Json particles(const std::string& name, const dvec3& position, const Json& settings) {
    Json node = sceneNode("particles", name, position);
    node["particles"] = settings;
    return node;
}

Json exhaust(int side) {
    return particles(withSide("exhaust", side), onSide(NOZZLE, side),
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

Json fire() {
    Json node = sceneNode("node", "fire", {0.0, -2.0, 0.6});
    node["enabled"] = false;
    node["children"] = Json::array({particles("fire_spe", {},
                                              {{"spawn_rate", 90},
                                               {"life", 1.6},
                                               {"life_spread", 0.5},
                                               {"velocity", {0, 0, 3.5}},
                                               {"velocity_spread", {1.2, 1.2, 1}},
                                               {"emitter_size", {2.5, 7, 0.5}},
                                               {"size", 1.6},
                                               {"size_spread", 0.5},
                                               {"growth", 1.8},
                                               {"drag", 0.4},
                                               {"buoyancy", 2},
                                               {"wind", 0.6},
                                               {"color", {1.0, 0.42, 0.09, 0.7}},
                                               {"end_color", {0.5, 0.06, 0.01, 0}},
                                               {"additive", true},
                                               {"emitting", false},
                                               {"max_particles", 200}})});
    return node;
}

Json lamp(const std::string& name, const dvec3& position, const dvec3& color) {
    Json node = sceneNode("light", name, position);
    node["light"] = {{"color", triple(color)}, {"intensity", 25}, {"range", 15}, {"size", 0.12}};
    return node;
}

Json landingLight() {
    Json node = sceneNode("light", "landing_light", {0.0, NOSE_WHEEL.y + 0.2, -0.8});
    node["hpr"] = {0, -4, 0};
    node["light"] = {{"kind", "spot"},     {"color", {1.0, 0.96, 0.88}},
                     {"intensity", 60000}, {"range", 600},
                     {"angle", 14},        {"size", 0.2}};
    return node;
}

Json pilotCamera() {
    Json node = sceneNode("node", "cam_first_player", PILOT_EYE);
    node["hpr"] = {0, 90, 0};  // a camera looks along its -Z: turned so that this lies ahead and its Y is up
    return node;
}

Json sensor() {
    Json node = sceneNode("node", "body", {0.0, 0.2, 0.4});
    node["sensor"] = {9.0, 21.0, 2.4};
    return node;
}

Json shape(const std::string& name, const std::string& type, const dvec3& size, const dvec3& position) {
    return {{"name", name}, {"type", type}, {"size", triple(size)}, {"position", triple(position)}};
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
             {shape("body_box", "box", {4.6, 20.0, 1.3}, {0.0, 0.2, 0.35}),
              shape("f_wheel", "sphere", {nose, nose, nose}, NOSE_WHEEL),
              shape("l_wheel", "sphere", {main, main, main}, onSide(MAIN_WHEEL, -1)),
              shape("r_wheel", "sphere", {main, main, main}, MAIN_WHEEL)}}};
}

/// Wheel middles for the physics, ground contacts for the feedback. They do not hang under the legs: retracting those
/// must not move the places that the host gets heights for.
void addWheelPlaces(Json& children) {
    const auto contact = [](const dvec3& middle) { return dvec3(middle.x, middle.y, -STANDING_HEIGHT); };
    children.push_back(sceneNode("node", "wheel_front", contact(NOSE_WHEEL)));
    children.push_back(sceneNode("node", "wheel_left", contact(onSide(MAIN_WHEEL, -1))));
    children.push_back(sceneNode("node", "wheel_right", contact(MAIN_WHEEL)));
    children.push_back(sceneNode("node", "F_wheel_pos", NOSE_WHEEL));
    children.push_back(sceneNode("node", "L_wheel_pos", onSide(MAIN_WHEEL, -1)));
    children.push_back(sceneNode("node", "R_wheel_pos", MAIN_WHEEL));
}

Json prefab() {
    Json normal = sceneNode("node", "normal");
    normal["mesh"] = "FJ_CN_J15.glb";
    Json destroyed = sceneNode("node", "destroyed");
    destroyed["enabled"] = false;
    destroyed["mesh"] = "FJ_CN_J15_destroyed.glb";
    Json children = {normal, destroyed, fire(), sensor(), pilotCamera()};
    addWheelPlaces(children);
    for (const int side : {-1, 1}) children.push_back(exhaust(side));
    children.push_back(landingLight());
    children.push_back(lamp("navigation_left", {-7.38, -3.2, 0.3}, {1.0, 0.05, 0.03}));
    children.push_back(lamp("navigation_right", {7.38, -3.2, 0.3}, {0.05, 1.0, 0.15}));
    children.push_back(lamp("navigation_tail", {0.0, -10.85, 0.3}, {1.0, 1.0, 1.0}));
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
    writeModel(folder + "FJ_CN_J15.glb", jet::intactParts());
    writeModel(folder + "FJ_CN_J15_destroyed.glb", jet::wreckParts());
}
