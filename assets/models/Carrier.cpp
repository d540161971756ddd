// Assembles the carrier: models and prefabs.
#include <algorithm>

#include "geometry/Model.h"
#include "geometry/Prism.h"
#include "models/CarrierShape.h"
#include "plan/Builders.h"
#include "plan/Layout.h"

namespace carrier {
namespace {

constexpr const char* FOLDER = "data/assets/Targets/MODELS/JT_CN_LNJ/";

/// The hull's box for buoyancy. For a box of volume V of which the fraction f is immersed, the lift is 100 V f^2
/// kilograms. The box is deeper and narrower than the drawn hull, which gives the slow heave and roll of a large ship.
/// It has no collisions: objects on the ship touch the drawn deck. The centre of mass is at the box's bottom, where the
/// water's drag acts. If it were higher, the drag would press the bow down whenever the ship moves.
Json hullBody() {
    constexpr double WIDTH = 25.0, LENGTH = 280.0, HEIGHT = 130.0, IMMERSED = 0.3;
    constexpr double MASS = 100.0 * WIDTH * LENGTH * HEIGHT * IMMERSED * IMMERSED;
    // Radii of gyration of a ship of the drawn size: 0.35 of the beam, 0.25 of the length.
    constexpr double ROLL = 0.35 * 75.0, PITCH = 0.25 * 305.0;
    const Json box = {{"name", "hull"},
                      {"type", "box"},
                      {"size", {WIDTH, LENGTH, HEIGHT}},
                      {"position", {0.0, 0.0, HEIGHT * (0.5 - IMMERSED)}}};
    return {{"kind", "dynamic"},
            {"mass", MASS},
            {"inertia", {MASS * PITCH * PITCH, MASS * ROLL * ROLL, MASS * PITCH * PITCH}},
            {"center_of_mass", {0.0, 0.0, -HEIGHT * IMMERSED}},
            {"group", 4},
            {"mask", 0},
            {"enabled", false},
            {"shapes", Json::array({box})}};
}

Json lens() {
    Json node = sceneNode("prefab", "Fresnel_light", LENS_POINT);
    node["prefab"] = "Fresnel_light.prefab";
    return node;
}

Json edgeLamp(const dvec3& position, const dvec3& color) {
    Json node = sceneNode("light", "", position);
    node["tags"] = Json::array({"deck_light"});
    node["light"] = {{"color", triple(color)}, {"intensity", 6}, {"range", 12}, {"size", 0.3}};
    return node;
}

/// Along the landing strip's sides and at its end, 0.1 m above the deck.
void addStripLamps(Json& children) {
    const double half = STRIP_WIDTH / 2.0;
    for (double at = 6.0; at <= STRIP_LENGTH; at += 24.0) {
        for (const double side : {-half - 1.0, half + 1.0}) {
            children.push_back(edgeLamp(onStrip(at, side) + dvec3(0, 0, 0.1), {1.0, 0.9, 0.7}));
        }
    }
}

Json prefab() {
    // The reference points and the lens define the plane of the deck; the origin of the lens is at deck height.
    Json children = {lens(), wakes(), sceneNode("node", "deck_1", onStrip(60.0)),
                     sceneNode("node", "deck_2", onStrip(150.0))};
    addStripLamps(children);
    Json fittings = sceneNode("node", "fittings");
    fittings["mesh"] = "JT_CN_LNJ_fittings.glb";
    fittings["collider"] = false;
    children.push_back(fittings);
    return {{"node", {{"mesh", "JT_CN_LNJ.glb"}, {"body", hullBody()}, {"children", children}}}};
}

/// Parts too small for collisions, divided along the ship so that a near view draws only those nearby.
std::vector<Part> fittings() {
    Mesh small = islandMasts();
    small.add(deckEdge()).add(armament()).add(deckVehicles()).add(lensStand());
    const double cuts[] = {-200.0, -96.0, -50.0, -20.0, 8.0, 60.0, 200.0};
    std::vector<Part> parts;
    for (std::size_t i = 0; i + 1 < std::size(cuts); ++i) {
        parts.push_back({"LiaoNingJian_sheBei00" + std::to_string(i + 1),
                         {0.0, std::clamp(cuts[i], STERN, BOW), DECK_HEIGHT},
                         slice(small, cuts[i], cuts[i + 1])});
    }
    return parts;
}

}  // namespace
}  // namespace carrier

void writeCarrier(const std::string& root) {
    using namespace carrier;
    const std::string folder = root + "/" + FOLDER;
    writeText(folder + "JT_CN_LNJ.prefab", "The carrier. Origin at the waterline amidships.", prefab());
    writeText(folder + "Fresnel_light.prefab", "The landing lens: deng01 is the top lamp, deng05 the bottom one.",
              lensPrefab());
    writeModel(folder + "JT_CN_LNJ.glb", {{"LiaoNingJian_zhuTi001", {}, hullAndDeck()},
                                          {"LiaoNingJian_jianDao001", {29.0, -20.0, DECK_HEIGHT}, island()},
                                          {"LiaoNingJian_pingTai001", {0.0, 0.0, 15.0}, sponsons()}});
    writeModel(folder + "JT_CN_LNJ_fittings.glb", fittings());
    writeLensModels(folder);
}
