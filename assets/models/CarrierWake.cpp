// The carrier's wake: foam drawn from above into two decals, and the water thrown up by the bow.
#include <string>
#include <utility>
#include <vector>

#include "effects/ParticleNodes.h"
#include "models/CarrierShape.h"

namespace carrier {
namespace {

const std::pair<std::string, double> SIDES[] = {{"port", -1.0}, {"starboard", 1.0}};

/// Foam of one kind, emitted in a box `area` around `place` (ship's frame, metres) that moves with `velocity` away from
/// the ship's side.
struct Foam {
    std::string name;
    dvec3 place, area, velocity, spread;
    double rate, life, size, growth, drag, opacity;
};

Json foamNode(const Foam& foam, const dvec3& decal) {
    return particleSystem(foam.name, foam.place - decal,
                          {{"emitting", false},
                           {"spawn_rate", foam.rate},
                           {"life", foam.life},
                           {"life_spread", 0.2 * foam.life},
                           {"velocity", triple(foam.velocity)},
                           {"velocity_spread", triple(foam.spread)},
                           {"emitter_size", triple(foam.area)},
                           {"size", foam.size},
                           {"size_spread", 0.4 * foam.size},
                           {"growth", foam.growth},
                           {"drag", foam.drag},
                           {"color", {1, 1, 1, foam.opacity}},
                           {"end_color", {1, 1, 1, 0}},
                           {"max_particles", static_cast<int>(1.3 * foam.rate * foam.life)}},
                          "");
}

/// A square of the sea around `middle` with its foam.
Json foamDecal(const std::string& name, const dvec3& middle, const std::vector<Foam>& foams) {
    constexpr double SIDE = 512.0;
    Json node = sceneNode("decal", name, middle - dvec3(0.0, STERN, 0.0));
    node["decal"] = {{"width", SIDE}, {"height", SIDE}, {"depth", 12}};
    node["children"] = Json::array();
    for (const Foam& foam : foams) node["children"].push_back(foamNode(foam, middle));
    return node;
}

/// Stirred up by the propellers, long-lasting; its band is astern.
Json sternFoam() {
    const dvec3 middle(0.0, STERN, 0.0), middle_area(26.0, 20.0, 0.0), edge_area(7.0, 10.0, 0.0), drift(0.0, -1.0, 0.0);
    std::vector<Foam> foams{{"foam_stern", middle, middle_area, drift, {0.6, 0.8, 0}, 26, 30, 8, 0.3, 0, 0.42}};
    for (const auto& [name, side] : SIDES) {
        const dvec3 edge(side * 15.0, STERN, 0.0), outward(side * 0.6, 0.0, 0.0);
        foams.push_back({"foam_" + name, edge, edge_area, outward, {0.4, 0.4, 0}, 16, 30, 4.5, 0.22, 0.02, 0.42});
    }
    return foamDecal("foam", {0.0, STERN - 200.0, 0.0}, foams);
}

/// Near the propellers, along the hull, and at the bow: a breaking crest that moves outward and the foam behind it.
/// Short-lived.
Json hullFoam() {
    const dvec3 screws(0.0, STERN + 4.0, 0.0), screws_area(28.0, 12.0, 0.0), hull_area(3.0, 240.0, 0.0);
    std::vector<Foam> foams{{"wash_stern", screws, screws_area, {0, -2, 0}, {1, 1, 0}, 60, 9, 8, 0.7, 0, 0.6}};
    for (const auto& [name, side] : SIDES) {
        const dvec3 hull(side * 17.0, 0.0, 0.0), stem(side * 6.0, BOW - 26.0, 0.0), slot(3.0, 14.0, 0.0);
        const dvec3 outward(side, 0.0, 0.0), ahead(0.0, 1.0, 0.0), slow = outward * 2.4 + ahead,
                                                                   fast = outward * 5.0 + ahead;
        foams.push_back({"wash_" + name, hull, hull_area, outward * 1.2, {1, 0.5, 0}, 36, 12, 3.5, 0.4, 0.05, 0.45});
        foams.push_back({"crest_" + name, stem, slot, fast, {0.5, 0.6, 0}, 36, 17, 3, 0.45, 0.06, 0.36});
        foams.push_back({"sheet_" + name, stem, slot, slow, {1.8, 0.6, 0}, 44, 13, 3, 0.45, 0.06, 0.4});
    }
    return foamDecal("wash", {0.0, -95.0, 0.0}, foams);
}

/// Water thrown up by the bow on one side.
Json bowWave(const std::string& name, double side) {
    constexpr double BACK = 18.0;  // distance behind the bow's foremost point, at the waterline
    const dvec3 place(side * 5.0, BOW - BACK - STERN, 0.4);
    Json node = particleSystem("bow_wave_" + name, place,
                               {{"emitting", false},
                                {"spawn_rate", 150},
                                {"life", 2.0},
                                {"life_spread", 0.6},
                                {"velocity", {side * 3.2, 2.0, 3.6}},
                                {"velocity_spread", {1.6, 1.6, 1.4}},
                                {"emitter_size", {2, 20, 0.6}},
                                {"size", 2.6},
                                {"size_spread", 1.2},
                                {"growth", 1.8},
                                {"drag", 0.5},
                                {"buoyancy", -4.5},
                                {"color", {0.93, 0.97, 0.98, 0.6}},
                                {"end_color", {0.9, 0.95, 0.97, 0}},
                                {"max_particles", 420}},
                               SPRAY_PICTURE);
    node["hpr"] = {side * 10.0, 0, 0};
    return node;
}

}  // namespace

Json wakes() {
    Json node = sceneNode("node", "wakes", {0.0, STERN, 0.0});
    node["tags"] = Json::array({"sea_foam"});
    node["children"] = {sternFoam(), hullFoam()};
    for (const auto& [name, side] : SIDES) node["children"].push_back(bowWave(name, side));
    return node;
}

}  // namespace carrier
