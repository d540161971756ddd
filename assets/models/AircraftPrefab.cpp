// Nodes of aircraft prefabs.
#include "models/AircraftPrefab.h"

#include <algorithm>

#include "geometry/Model.h"

#include "effects/FireEffects.h"
#include "effects/ParticleNodes.h"

namespace {

void collect(const Part& part, Mesh& into) {
    into.add(part.mesh);
    for (const Part& child : part.children) collect(child, into);
}

}  // namespace

std::vector<Part> wreckOf(const std::vector<Part>& intact, const std::vector<std::string>& torn_off) {
    Mesh mesh;
    for (const Part& part : intact) {
        if (std::find(torn_off.begin(), torn_off.end(), part.name) == torn_off.end()) collect(part, mesh);
    }
    return {{"wreck", {}, mesh.repainted(paint("charred", {0.025, 0.023, 0.022}, 0.95))}};
}

Json lookNode(const std::string& name, const std::string& model, bool enabled) {
    Json node = sceneNode("node", name);
    if (!enabled) node["enabled"] = false;
    node["mesh"] = model;
    return node;
}

Json particleNode(const std::string& name, const dvec3& position, const Json& settings) {
    Json node = sceneNode("particles", name, position);
    node["particles"] = settings;
    return node;
}

Json fireNode(const dvec3& position, const dvec3& size) {
    Json burning = flames("fire_spe", size, 0.0);
    burning["particles"]["emitting"] = false;
    Json node = sceneNode("node", "fire", position);
    node["enabled"] = false;
    node["children"] = Json::array({burning, plume(size, 18, 0.0, 8.0), glow({0, 0, 2}, {1.0, 0.62, 0.3}, 4000, 60)});
    return node;
}

Json lampNode(const std::string& name, const dvec3& position, const dvec3& color, double intensity) {
    Json node = sceneNode("light", name, position);
    node["light"] = {{"color", triple(color)}, {"intensity", intensity}, {"range", 15}, {"size", 0.12}};
    return node;
}

Json spotNode(const std::string& name, const dvec3& position, double down, double intensity, double range) {
    Json node = sceneNode("light", name, position);
    node["hpr"] = {0, -down, 0};
    node["light"] = {
        {"kind", "spot"}, {"color", {1.0, 0.96, 0.88}}, {"intensity", intensity}, {"range", range}, {"angle", 14},
        {"size", 0.2}};
    return node;
}

Json pilotCamera(const dvec3& eye) {
    Json node = sceneNode("node", "cam_first_player", eye);
    node["hpr"] = {0, 90, 0};  // a camera looks along its -Z with +Y up: rotated to look ahead along +Y with +Z up
    return node;
}

Json bodyShape(const std::string& name, const std::string& type, const dvec3& size, const dvec3& position) {
    return {{"name", name}, {"type", type}, {"size", triple(size)}, {"position", triple(position)}};
}

void addWheelPlaces(Json& children, const std::vector<dvec3>& middles, const std::vector<dvec3>& contacts) {
    const char* const feedback[] = {"wheel_front", "wheel_left", "wheel_right"};
    const char* const physics[] = {"F_wheel_pos", "L_wheel_pos", "R_wheel_pos"};
    for (std::size_t i = 0; i < 3; ++i) children.push_back(sceneNode("node", feedback[i], contacts[i]));
    for (std::size_t i = 0; i < 3; ++i) children.push_back(sceneNode("node", physics[i], middles[i]));
}
