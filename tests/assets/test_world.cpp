// The demonstration's world: what the scene's behaviour relies on, at the place where it relies on it.
#include <functional>

#include "engine/scene/ObjectParticles.h"
#include "engine/track/Track.h"
#include "support/DemoScene.h"

namespace {

/// Height of the object's highest surface at x, y; all in its own frame.
double heightOn(Object& object, double x, double y) {
    double best = -1000.0;
    for (int s = 0; s < object.getNumSurfaces(); ++s) {
        dvec3 hit;
        if (object.getIntersection({x, y, 60.0}, {x, y, -60.0}, s, hit)) best = std::max(best, hit.z);
    }
    return best;
}

}  // namespace

TEST_F(DemoScene, LoadsWithoutComplaintAndHasEveryNamedNode) {
    loadWorld();
    const struct {
        int type;
        std::vector<const char*> names;
        bool enabled = true;
    } groups[] = {{Node::TERRAIN, {"terrain"}},
                  {Node::OCEAN, {"ocean"}},
                  {Node::PARTICLES, {"rain", "hail", "snow"}, false},
                  {Node::PREFAB, {"JT_CN_LNJ", "airfield", "mast"}},
                  {Node::MESH_STATIC, {"LiaoNingJian_zhuTi001"}},
                  {Node::NODE, {"start_ship1", "start_deck", "start_runway", "deck_1", "deck_2"}}};
    for (const auto& group : groups) {
        for (const char* name : group.names) {
            const Node* const found = node(name);
            ASSERT_NE(found, nullptr) << name;
            EXPECT_EQ(found->getType(), group.type) << name;
            EXPECT_EQ(found->isEnabled(), group.enabled) << name;
        }
    }
    EXPECT_EQ(node("body"), nullptr) << "only an aircraft's sensor may bear that name";
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(DemoScene, CarrierFloatsAtItsStartWithALevelDeck) {
    loadWorld();
    Node& carrier = *node("JT_CN_LNJ");
    EXPECT_EQ(carrier.getWorldTransform(), node("start_ship1")->getWorldTransform());
    EXPECT_NEAR(carrier.getWgsPosition().z, 0.0, 1e-6);
    Object& deck = *node("LiaoNingJian_zhuTi001")->asObject();
    for (double y = -150.0; y < 94.0; y += 6.0) {
        for (double x = -18.0; x <= 18.0; x += 4.5) EXPECT_NEAR(heightOn(deck, x, y), 20.0, 1e-3) << x << ", " << y;
    }
    EXPECT_NEAR(heightOn(deck, 30.0, -20.0), 20.0, 1e-3) << "below the island the deck goes on";
    EXPECT_NEAR(heightOn(deck, -36.0, 0.0), 20.0, 1e-3);
    EXPECT_GT(heightOn(deck, 0.0, 150.0), 26.0) << "the ramp";

    Node* const wakes = carrier.getChildByName("wakes");
    Node* const foam = wakes ? wakes->getChildByName("foam") : nullptr;
    ASSERT_TRUE(foam && foam->getNumChildren() > 0);
    EXPECT_EQ(foam->getType(), Node::DECAL_ORTHO);
    EXPECT_EQ(foam->getChild(0)->getType(), Node::PARTICLES);
    Node* const lens = carrier.getChildByName("Fresnel_light");
    ASSERT_TRUE(lens && lens->getType() == Node::PREFAB);
    for (const char* name : {"deng01", "deng02", "deng03", "deng04", "deng05", "green_light"}) {
        const Node* const lamp = lens->asObject()->getNodeByName(name);
        EXPECT_TRUE(lamp && !lamp->isEnabled()) << name << ": nothing has selected it";
    }
}

TEST_F(DemoScene, AirfieldIsExactlyLevelAndTheStartsAreJustAboveTheirGround) {
    loadWorld();
    const auto altitude = [&](const dvec3& geo) {
        double height = -1000.0;
        EXPECT_TRUE(static_cast<ObjectTerrain*>(node("terrain"))->getAltitudeByLonLat(geo.x, geo.y, height));
        return height;
    };
    const Node& start = *node("start_runway");
    const double ground = 4.9375;
    EXPECT_NEAR(start.getWgsPosition().z, ground + START, 1e-6);
    EXPECT_NEAR(start.getWgsHPR().x, 67.25, 1e-9);
    for (double y = -60.0; y <= 2440.0; y += 50.0) {
        for (const double x : {-22.0, 22.0, 270.0}) {
            ASSERT_EQ(altitude(EllipsoidModel().toWGS(start.getWorldTransform() * dvec3(x, y, 0.0))), ground)
                << x << ", " << y;
        }
    }
    EXPECT_NEAR(node("airfield")->getWgsPosition().z, ground, 1e-6);
    EXPECT_LT(altitude(node("JT_CN_LNJ")->getWgsPosition()), -20.0);
    const dvec3 hill = node("mast")->getWgsPosition();
    EXPECT_NEAR(hill.z, altitude(hill), 2.0);

    const dmat4 on_deck = inverse(node("JT_CN_LNJ")->getWorldTransform()) * node("start_deck")->getWorldTransform();
    EXPECT_NEAR(on_deck.t.z, 20.0 + START, 1e-6);
    EXPECT_LT(degreesBetween(on_deck.y, {0, 1, 0}), 1e-6);
    EXPECT_EQ(node("start_deck")->getParent(), node("JT_CN_LNJ")) << "it goes where the ship goes";
}

TEST_F(DemoScene, TriggersSurroundTheObstaclesAndNotTheStarts) {
    loadWorld();
    Node* const group = world().getNodeByTag("all_triggers");
    ASSERT_NE(group, nullptr);
    std::string log;
    for (int i = 0; i < group->getNumChildren(); ++i) {
        ASSERT_EQ(group->getChild(i)->getType(), Node::TRIGGER);
        auto& trigger = static_cast<NodeTrigger&>(*group->getChild(i));
        trigger.enter.append([&](Node* sensor) { log += trigger.getName() + ":" + sensor->getName() + " "; });
    }
    ObjectPrefab* const jet = addJet();
    const struct {
        const char* from;
        dvec3 offset;
        std::string reports;
    } cases[] = {{"start_deck", {}, ""},
                 {"JT_CN_LNJ", {29, -20, 30}, "trigger_carrier_island:body "},
                 {"start_runway", {}, ""},
                 {"airfield", {262, 60, 25}, "trigger_tower:body "},
                 {"airfield", {272, -62, 6}, "trigger_halls:body "},
                 {"mast", {0, 3, 30}, "trigger_mast:body "}};
    for (const auto& c : cases) {
        log.clear();
        jet->setWorldTransform(node(c.from)->getWorldTransform() * dmat4::translation(c.offset));
        run(1);
        EXPECT_EQ(log, c.reports) << c.from;
    }
}

TEST_F(DemoScene, TracksDriveWhatTheyAreNamedAfter) {
    loadWorld();
    const auto& terrain = *static_cast<ObjectTerrain*>(node("terrain"));
    auto& runway = *static_cast<NodeLight*>(world().getNodeByTag("runway_light"));
    auto& road = *static_cast<NodeLight*>(world().getNodeByTag("road_light"));
    const Environment& environment = world().getEnvironment();
    const auto density = [&](const char* name) {
        const auto& particles = *static_cast<ObjectParticles*>(node(name));
        return particles.isActive() ? particles.getSpawnRate() / particles.getAuthoredSpawnRate() : 0.0;
    };
    const double own_clouds = environment.cloudiness;
    const auto overcast = [&] { return (environment.cloudiness - own_clouds) / (1.0 - own_clouds); };
    const struct {
        const char* name;
        std::function<double()> value;
        double end = 1.0;
    } tracks[] = {{"runway_wet", [&] { return terrain.getWetness(); }},
                  {"runway_wet", [&] { return environment.wetness; }},
                  {"runway_wet", [&] { return density("rain"); }},
                  {"runway_wet", overcast},
                  {"snow", [&] { return terrain.getSnow(); }},
                  {"snow", [&] { return environment.snow; }},
                  {"snow", [&] { return density("snow"); }},
                  {"snow", overcast},
                  {"autumn", [&] { return terrain.getAutumn(); }},
                  {"TOD", [&] { return environment.time_of_day; }, 24.0},
                  {"road_light", [&] { return road.getIntensity() / road.getSettings().intensity; }},
                  {"airport_light_enable", [&] { return runway.isEnabled() ? 1.0 : 0.0; }},
                  {"airport_light_brightness", [&] { return runway.getIntensity() / runway.getSettings().intensity; }}};
    for (const auto& wanted : tracks) {
        Track track;
        ASSERT_TRUE(track.load(jString("data/assets/Anim/Fly_simulator/") + wanted.name + ".anim", &world()));
        track.set(0.0f);
        EXPECT_NEAR(wanted.value(), 0.0, 1e-6) << wanted.name;
        track.set(1.0f);
        EXPECT_NEAR(wanted.value(), wanted.end, 1e-6) << wanted.name;
        track.release();
    }
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(DemoScene, ConfigurationNamesFilesThatLoad) {
    Package config;
    ASSERT_TRUE(mjl::open("config/Logic_Test_Fly.cfg", config, true));
    Package texts;
    ASSERT_TRUE(mjl::open("config/string.txt", texts, true));
    const Package* const targets = config.getPackage("target_type");
    ASSERT_NE(targets, nullptr);
    std::vector<jString> paths{config.getString("first_ship_path"), config.getString("plane_path"),
                               config.getString("third_ship_path")};
    for (const Item& target : *targets) paths.push_back(target.getString());
    for (const jString& path : paths) EXPECT_TRUE(ObjectPrefab(path).isLoaded()) << path;
    EXPECT_NE(config.getInt("recv_from_flightSimulation_port"), config.getInt("local_port"))
        << "host and viewer share a machine";
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}
