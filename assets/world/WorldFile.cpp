// The demonstration's world file: every node that the scene needs, at its position.
#include <cmath>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "plan/AirfieldPlan.h"
#include "plan/Builders.h"
#include "plan/CarrierPlan.h"
#include "plan/Layout.h"
#include "text/SceneText.h"
#include "world/Elevation.h"

namespace {

Json placed(Json node, const GeodeticPose& pose) {
    node["geodetic"] = triple(pose.geodetic);
    node["wgs_hpr"] = triple(pose.wgs_hpr);
    return node;
}

GeodeticPose onAirfield(double right, double along, double height) {
    return {airfieldPlace(right, along, height), {RUNWAY_HEADING, 0.0, 0.0}};
}

GeodeticPose onCarrier(const dvec3& point) {
    return poseOf(carrierFrame() * dmat4::translation(point));
}

/// The initial view: level, across the jet on the deck toward the island.
Json camera() {
    constexpr double VIEW_HEADING = 288.0, DISTANCE = 25.0;
    const EllipsoidModel globe;
    const dvec3 target = globe.toWorld(deckStart().geodetic);
    const double angle = VIEW_HEADING * jMath::DEG2RAD;
    const dvec3 back(-std::sin(angle) * DISTANCE, -std::cos(angle) * DISTANCE, 0.0);
    return placed({}, {globe.toWGS(globe.getWGSTransform(target) * back), {VIEW_HEADING, 0.0, 0.0}});
}

/// The wind blows along the runway and over the carrier's bow.
Json environment() {
    constexpr double WIND = 6.0;
    const double angle = RUNWAY_HEADING * jMath::DEG2RAD;
    return {{"date", {2024, 6, 21}},
            {"time_of_day", 9.5},
            {"wind", triple({-WIND * std::sin(angle), -WIND * std::cos(angle), 0.0})},
            {"cloudiness", 0.25},
            {"camera", camera()}};
}

/// Precipitation is drawn around the camera. The node only has the settings; it emits no particles at its own position.
Json precipitation(const std::string& name, double fall, double spread, double rate, double size, const Json& color) {
    Json node = placed(sceneNode("particles", name), poseOf(carrierFrame()));
    node["enabled"] = false;
    node["particles"] = {{"emitting", false},
                         {"spawn_rate", rate},
                         {"velocity", {0, 0, -fall}},
                         {"velocity_spread", {spread, spread, fall * 0.1}},
                         {"size", size},
                         {"wind", 1.0},
                         {"color", color},
                         {"end_color", color}};
    return node;
}

void addWeather(Json& nodes) {
    nodes.push_back(precipitation("rain", 9.0, 0.3, 1500.0, 0.05, {0.70, 0.74, 0.80, 0.35}));
    nodes.push_back(precipitation("hail", 14.0, 0.6, 700.0, 0.06, {0.92, 0.94, 0.96, 0.90}));
    nodes.push_back(precipitation("snow", 1.8, 0.7, 300.0, 0.09, {0.96, 0.97, 0.98, 0.85}));
}

Json prefabNode(const std::string& name, const std::string& file) {
    Json node = sceneNode("prefab", name);
    node["prefab"] = file;
    return node;
}

void addCarrier(Json& nodes) {
    const GeodeticPose pose = poseOf(carrierFrame());
    const std::string folder = "data/assets/Targets/MODELS/JT_CN_LNJ/";
    Json ship = placed(prefabNode("JT_CN_LNJ", folder + "JT_CN_LNJ.prefab"), pose);
    // Hand facing the jet's nose; flag on the starboard edge. Both are clear of the strip and the launch runs.
    Json hand = prefabNode("deck_hand", folder + "deck_hand.prefab"),
         flag = prefabNode("deck_flag", folder + "deck_flag.prefab");
    hand["position"] = triple(LAUNCH_POINT + dvec3(12.0, 18.0, 0.0));
    hand["hpr"] = {146, 0, 0};
    flag["position"] = triple({carrier::starboardEdge(-110.0) - 0.5, -110.0, DECK_HEIGHT});
    // Children of the ship, so that they stay on deck wherever the ship is.
    ship["children"] = {placed(sceneNode("node", "start_deck"), deckStart()), hand, flag};
    nodes.push_back(ship);
    nodes.push_back(placed(sceneNode("node", "start_ship1"), pose));
    nodes.push_back(placed(sceneNode("node", "start_runway"), runwayStart()));
}

Json trigger(const std::string& name, const dvec3& size, const GeodeticPose& pose) {
    Json node = placed(sceneNode("trigger", name), pose);
    node["trigger"] = {{"size", triple(size)}};
    return node;
}

GeodeticPose mastFoot(const Island& island) {
    GeodeticPose pose;
    island.summit(pose.geodetic.x, pose.geodetic.y);
    pose.geodetic.z = island.heightAt(pose.geodetic.x, pose.geodetic.y);
    return pose;
}

void addTriggers(Json& nodes, const Island& island) {
    using namespace airfield;
    const dvec3 island_size = carrier::ISLAND_HIGH - carrier::ISLAND_LOW;
    const dvec3 halls = HALLS_HIGH - HALLS_LOW, halls_middle = (HALLS_HIGH + HALLS_LOW) * 0.5;
    GeodeticPose mast = mastFoot(island);
    mast.geodetic.z += MAST_HEIGHT / 2.0;
    Json group = sceneNode("node", "triggers");
    group["tags"] = Json::array({"all_triggers"});
    group["children"] = {
        trigger("trigger_carrier_island", island_size, onCarrier((carrier::ISLAND_HIGH + carrier::ISLAND_LOW) * 0.5)),
        trigger("trigger_tower", {18.0, 24.0, TOWER_HEIGHT}, onAirfield(TOWER.x, TOWER.y, TOWER_HEIGHT / 2.0)),
        trigger("trigger_halls", halls, onAirfield(halls_middle.x, halls_middle.y, halls_middle.z)),
        trigger("trigger_mast", {6.0, 6.0, MAST_HEIGHT}, mast)};
    nodes.push_back(group);
}

/// A picture projected onto the ground. The node is above the ground so that the projection's range includes it.
Json groundDecal(const std::string& name, const std::string& file, double left, double right, double length) {
    constexpr double HOVER = 5.0;
    Json node = placed(sceneNode("decal", name), onAirfield((left + right) / 2.0, 0.0, HOVER));
    node["decal"] = {
        {"width", right - left}, {"height", length}, {"depth", 2.0 * HOVER}, {"texture", "terrain/" + file}};
    return node;
}

void addAirfield(Json& nodes, const Island& island) {
    using namespace airfield;
    nodes.push_back(groundDecal("pavement", "pavement.png", PAVEMENT_LEFT, PAVEMENT_RIGHT, PAVEMENT_LENGTH));
    nodes.push_back(groundDecal("runway", "runway.png", -RUNWAY_WIDTH / 2.0, RUNWAY_WIDTH / 2.0, RUNWAY_LENGTH));
    nodes.push_back(placed(prefabNode("airfield", "prefabs/airfield/airfield.prefab"), onAirfield(0.0, 0.0, 0.0)));
    nodes.push_back(placed(prefabNode("mast", "prefabs/mast/mast.prefab"), mastFoot(island)));
}

const dvec3 LAMP_WHITE{1.0, 0.93, 0.80}, LAMP_GREEN{0.10, 1.0, 0.35}, LAMP_RED{1.0, 0.10, 0.05},
    LAMP_BLUE{0.15, 0.3, 1.0};

Json lamp(const std::string& tag, const GeodeticPose& pose, const dvec3& color, double intensity) {
    Json node = placed(sceneNode("light", ""), pose);
    node["tags"] = Json::array({tag});
    node["light"] = {{"color", triple(color)}, {"intensity", intensity}, {"range", 30}, {"size", 0.4}};
    return node;
}

void addRunwayLights(Json& nodes) {
    constexpr double SPACING = 100.0, ABOVE = 0.4, OUT = 1.5;
    const double half = RUNWAY_LENGTH / 2.0, edge = RUNWAY_WIDTH / 2.0 + OUT;
    const std::string tag = "runway_light";
    for (double along = -half; along <= half; along += SPACING) {
        for (const double side : {-edge, edge}) {
            nodes.push_back(lamp(tag, onAirfield(side, along, ABOVE), LAMP_WHITE, 200.0));
        }
    }
    for (int i = 0; i < 8; ++i) {
        const double across = (i - 3.5) * 5.5;
        nodes.push_back(lamp(tag, onAirfield(across, -half - 3.0, ABOVE), LAMP_GREEN, 200.0));
        nodes.push_back(lamp(tag, onAirfield(across, half + 3.0, ABOVE), LAMP_RED, 200.0));
    }
    for (double before = 30.0; before <= 150.0; before += 30.0) {
        nodes.push_back(lamp(tag, onAirfield(0.0, -half - before, ABOVE), LAMP_WHITE, 400.0));
    }
}

void addRoadLights(Json& nodes) {
    constexpr double SPACING = 200.0, ABOVE = 0.4, OUT = 12.5;
    const double half = RUNWAY_LENGTH / 2.0;
    for (double along = -half + 50.0; along < half; along += SPACING) {
        for (const double side : {-OUT, OUT}) {
            nodes.push_back(lamp("road_light", onAirfield(airfield::TAXIWAY + side, along, ABOVE), LAMP_BLUE, 60.0));
        }
    }
    for (const double along : {APRON_BACK + 20.0, (APRON_BACK + APRON_FRONT) / 2.0, APRON_FRONT - 20.0}) {
        Json flood = lamp("road_light", onAirfield(APRON_RIGHT + 8.0, along, 14.0), LAMP_WHITE, 4000.0);
        flood["light"]["range"] = 120;
        nodes.push_back(flood);
    }
}

}  // namespace

void writeWorld(const std::string& root, const Island& island) {
    Json terrain = sceneNode("terrain", "terrain");
    terrain["terrain"] = {{"elevation", "terrain/elevation.tif"}, {"imagery", "terrain/imagery.tif"}};
    Json ocean = placed(sceneNode("ocean", "ocean"), {DEMO_CENTRE, {}});
    ocean["ocean"] = {{"beaufort", 3}, {"global_wind", true}};
    Json nodes = {terrain, ocean};
    addWeather(nodes);
    addCarrier(nodes);
    addTriggers(nodes, island);
    addAirfield(nodes, island);
    addRunwayLights(nodes);
    addRoadLights(nodes);
    writeText(root + "/data/DEMO_PROJECT/DEMO_PROJECT.world",
              "An island with an airfield, and a carrier at sea off its windward side.",
              {{"environment", environment()}, {"nodes", nodes}});
}
