// The landing lens with its lamps, and its stand.
#include "geometry/Prism.h"
#include "models/CarrierShape.h"
#include "plan/Layout.h"

namespace carrier {
namespace {

/// Glass; the light points represent the lamps at a distance.
PaintRef lampPaint(const std::string& name, const dvec3& color) {
    return paint(name, {color.x * 0.6, color.y * 0.6, color.z * 0.6}, 0.4);
}

/// A round lamp facing aft.
Mesh lamp(const PaintRef& paint, double x, double z, double radius) {
    return cylinder(paint, {x, 0.03, z}, {x, -0.01, z}, radius * 0.9, radius, 16);
}

// Deliberately small: the logic scales the unit by 2.5 at close range and by more at a distance.
constexpr double LOWEST = 0.10, STEP = 0.11, HALF = 0.045, DATUM = 0.32;
constexpr double DATUM_LAMPS[] = {0.29, 0.47, 0.65, 0.83};  ///< to each side

Mesh housing() {
    const PaintRef frame = paint("lens_frame", {0.05, 0.055, 0.06}, 0.7),
                   shell = paint("lens_shell", {0.3, 0.32, 0.34});
    Mesh mesh = prism(shell, chamfered(-0.13, 0.0, 0.13, 0.24, {0, 0, 0.06, 0.06}), 0.02, 0.68);
    mesh.add(box(frame, {-0.105, -0.012, 0.06}, {0.105, 0.01, 0.65}));
    for (const double x : {-0.13, 0.115}) mesh.add(box(shell, {x, -0.07, 0.02}, {x + 0.015, 0.0, 0.68}));
    for (int i = 0; i <= 5; ++i) {
        mesh.add(box(shell, {-0.13, -0.07, 0.08 + STEP * i}, {0.13, 0.0, 0.088 + STEP * i}));
    }
    mesh.addPair(box(shell, {0.13, 0.05, 0.28}, {0.88, 0.14, 0.36}));
    mesh.addPair(bar(shell, {0.82, 0.09, 0.0}, {0.82, 0.09, 0.28}, 0.03));
    mesh.addPair(bar(shell, {0.45, 0.09, 0.0}, {0.45, 0.09, 0.28}, 0.03));
    mesh.add(box(shell, {-0.95, 0.02, 0.0}, {0.95, 0.2, 0.025}));
    for (const double z : {0.16, 0.5}) {  // wave-off lamps beside the lens, unlit
        mesh.addPair(lamp(frame, 0.21, z, 0.04).moved({0.0, 0.03, 0.0}));
        mesh.addPair(box(shell, {0.16, 0.06, z - 0.05}, {0.26, 0.12, z + 0.05}));
    }
    return mesh;
}

const dvec3 AMBER{1.0, 0.5, 0.06}, RED{1.0, 0.06, 0.03}, GREEN{0.05, 1.0, 0.25};

/// The light point in front of the lamp's hood, visible from a distance; it illuminates nothing.
Json beam(const dvec3& place, const dvec3& color, double intensity) {
    Json node = sceneNode("light", "", place);
    node["hpr"] = {180, 0, 0};
    node["tags"] = Json::array({"lens_light"});
    node["light"] = {{"kind", "spot"}, {"color", triple(color)}, {"intensity", intensity}, {"angle", 150}, {"range", 0},
                     {"size", 0.28}};
    return node;
}

/// A node that switches a lamp's look and its beams together; off until a landing aid selects it.
Json lampNode(const std::string& name, const dvec3& place, const std::string& model, const Json& beams) {
    Json node = sceneNode("node", name, place);
    node["enabled"] = false;
    node["collider"] = false;
    node["mesh"] = model;
    node["children"] = beams;
    return node;
}

}  // namespace

Json lensPrefab() {
    constexpr double LENS = 100000.0, DATUM_LAMP = 20000.0, IN_FRONT = -0.08;  // candela; metres
    Json children = Json::array();
    for (int i = 1; i <= 5; ++i) {
        children.push_back(lampNode("deng0" + std::to_string(i), {0.0, -0.01, LOWEST + STEP * (5 - i) + HALF},
                                    i == 5 ? "lens_red.glb" : "lens_amber.glb",
                                    Json::array({beam({0.0, IN_FRONT, 0.0}, i == 5 ? RED : AMBER, LENS)})));
    }
    Json beams = Json::array();
    for (const double x : DATUM_LAMPS) {
        for (const double side : {-1.0, 1.0}) beams.push_back(beam({side * x, IN_FRONT, 0.0}, GREEN, DATUM_LAMP));
    }
    children.push_back(lampNode("green_light", {0.0, 0.03, DATUM}, "lens_green.glb", beams));
    // Scaled up to 25 times at a distance: nothing may collide with it.
    return {{"node", {{"collider", false}, {"mesh", "Fresnel_light.glb"}, {"children", children}}}};
}

void writeLensModels(const std::string& folder) {
    writeModel(folder + "Fresnel_light.glb", {{"lens_housing", {}, housing()}});
    for (const auto& [name, color] : {std::pair("lens_amber", AMBER), {"lens_red", RED}}) {
        writeModel(folder + name + ".glb",
                   {{name, {}, box(lampPaint(name, color), {-0.09, -0.02, -HALF}, {0.09, 0.01, HALF})}});
    }
    Mesh datum;
    for (const double x : DATUM_LAMPS) datum.addPair(lamp(lampPaint("lens_green", GREEN), x, 0.0, 0.042));
    writeModel(folder + "lens_green.glb", {{"lens_green", {}, datum}});
}

Mesh lensStand() {
    const Paints& p = paints();
    const dvec3 at = LENS_POINT;
    const Plan plan = chamfered(at.x - 3.0, at.y - 2.4, at.x + 3.2, at.y + 2.4, {0.8, 0, 0, 0.8});
    Mesh mesh = prism({p.grey, p.floor, p.dark}, inset(plan, 1.2), at.z - 4.2, at.z - 1.1, -1.0);
    mesh.add(prism({p.grey, p.floor, p.dark}, plan, at.z - 1.1, at.z - 0.1));
    std::vector<dvec3> rim = atHeight(inset(plan, 0.08), at.z - 0.1);
    return mesh.add(fence(p.rail, {rim[4], rim[5], rim[0], rim[1]}, 1.1));
}

}  // namespace carrier
