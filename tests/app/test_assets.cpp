// The demonstration's world: that everything which the scene's behaviour relies on is there and where it should be.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/DemoScene.h"
#include "engine/physics/Body.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/track/Track.h"

namespace fs = std::filesystem;

TEST_F(DemoScene, LoadsWithoutComplaintAndHasEveryNamedNode) {
    loadWorld();
    const struct {
        const char* name;
        int type;
        bool enabled;
    } nodes[] = {{"terrain", Node::TERRAIN, true},
                 {"ocean", Node::OCEAN, true},
                 {"rain", Node::PARTICLES, false},
                 {"hail", Node::PARTICLES, false},
                 {"snow", Node::PARTICLES, false},
                 {"JT_CN_LNJ", Node::PREFAB, true},
                 {"LiaoNingJian_zhuTi001", Node::MESH_STATIC, true},
                 {"start_ship1", Node::NODE, true},
                 {"start_deck", Node::NODE, true},
                 {"start_runway", Node::NODE, true},
                 {"deck_1", Node::NODE, true},
                 {"deck_2", Node::NODE, true},
                 {"airfield", Node::PREFAB, true},
                 {"mast", Node::PREFAB, true}};
    for (const auto& wanted : nodes) {
        const Node* const found = node(wanted.name);
        ASSERT_NE(found, nullptr) << wanted.name;
        EXPECT_EQ(found->getType(), wanted.type) << wanted.name;
        EXPECT_EQ(found->isEnabled(), wanted.enabled) << wanted.name;
    }
    EXPECT_EQ(node("body"), nullptr) << "only an aircraft's sensor may bear that name";
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(DemoScene, CarrierFloatsAtItsStartWithALevelDeck) {
    loadWorld();
    Node& carrier = *node("JT_CN_LNJ");
    EXPECT_EQ(carrier.getWorldTransform(), node("start_ship1")->getWorldTransform());
    EXPECT_NEAR(carrier.getWgsPosition().z, 0.0, 1e-6);
    const BoundBox box = boxIn(carrier, *node("LiaoNingJian_zhuTi001"));
    EXPECT_NEAR(box.getSize().y, 305.0, 3.0);
    EXPECT_NEAR(box.getSize().x, 75.0, 3.0);
    EXPECT_NEAR(box.min.z, -10.0, 1.0);

    Object& deck = *node("LiaoNingJian_zhuTi001")->asObject();
    const auto deckHeight = [&](double x, double y) {
        double best = -1000.0;
        for (int s = 0; s < deck.getNumSurfaces(); ++s) {
            dvec3 hit;
            if (deck.getIntersection({x, y, 60.0}, {x, y, -60.0}, s, hit)) best = std::max(best, hit.z);
        }
        return best;
    };
    for (double y = -150.0; y < 94.0; y += 6.0) {
        for (double x = -18.0; x <= 18.0; x += 4.5) EXPECT_NEAR(deckHeight(x, y), 20.0, 1e-3) << x << ", " << y;
    }
    EXPECT_NEAR(deckHeight(30.0, -20.0), 20.0, 1e-3) << "below the island the deck goes on";
    EXPECT_NEAR(deckHeight(-36.0, 0.0), 20.0, 1e-3);
    EXPECT_GT(deckHeight(0.0, 120.0), 20.5);
    EXPECT_GT(deckHeight(0.0, 150.0), 26.0);
}

TEST_F(DemoScene, CarriersBoxLiftsItToTheDrawnWaterline) {
    loadWorld();
    Body* const body = node("JT_CN_LNJ")->asObject()->getBody();
    ASSERT_NE(body, nullptr);
    EXPECT_FALSE(body->isEnabled());
    const Shape& hull = *body->getShape(0);
    ASSERT_EQ(hull.getType(), Shape::BOX);
    const vec3 size = hull.getSize();
    const double immersed = (size.z / 2.0 - hull.getTransform().t.z) / size.z;
    const double lift = 100.0 * size.x * size.y * size.z * immersed * immersed;  // kg, the buoyancy's own law
    EXPECT_NEAR(node("JT_CN_LNJ")->asObject()->getBodyRigid()->getMass() / lift, 1.0, 1e-4);
    EXPECT_NEAR(immersed, 0.3, 0.1);
}

TEST_F(DemoScene, WakesAndLensHangWhereTheyAreLookedFor) {
    loadWorld();
    Node& carrier = *node("JT_CN_LNJ");
    Node* const wakes = carrier.getChildByName("wakes");
    ASSERT_NE(wakes, nullptr);
    Node* const foam = wakes->getChildByName("foam");
    ASSERT_NE(foam, nullptr);
    EXPECT_EQ(foam->getType(), Node::DECAL_ORTHO);
    ASSERT_GT(foam->getNumChildren(), 0);
    EXPECT_EQ(foam->getChild(0)->getType(), Node::PARTICLES);

    Node* const lens = carrier.getChildByName("Fresnel_light");
    ASSERT_NE(lens, nullptr);
    ASSERT_EQ(lens->getType(), Node::PREFAB);
    double above = 10.0;
    for (const char* name : {"deng01", "deng02", "deng03", "deng04", "deng05"}) {
        Node* const lamp = lens->asObject()->getNodeByName(name);
        ASSERT_NE(lamp, nullptr) << name;
        EXPECT_LT(lamp->getPosition().z, above) << name;
        above = lamp->getPosition().z;
    }
    EXPECT_NE(lens->asObject()->getNodeByName("green_light"), nullptr);

    const dvec3 origin = lens->getWorldPosition(), up = carrier.getWorldTransform().z;
    const dvec3 a = node("deck_1")->getWorldPosition() - origin, b = node("deck_2")->getWorldPosition() - origin;
    EXPECT_NEAR(dot(a, up), 0.0, 1e-3);
    EXPECT_NEAR(dot(b, up), 0.0, 1e-3);
    EXPECT_LT(degreesBetween(cross(a, b), up), 0.01) << "and not in line with it";
    EXPECT_GT(degreesBetween(a, b), 20.0);
}

TEST_F(DemoScene, AirfieldIsExactlyLevel) {
    loadWorld();
    const auto& terrain = *static_cast<ObjectTerrain*>(node("terrain"));
    const Node& start = *node("start_runway");
    const double ground = 4.9375;
    EXPECT_NEAR(start.getWgsPosition().z, ground + START, 1e-6);
    const dmat4 along = start.getWorldTransform();
    const EllipsoidModel globe;
    for (double y = -60.0; y <= 2440.0; y += 20.0) {
        for (const double x : {-22.0, 0.0, 22.0, 62.0, 150.0, 270.0}) {
            const dvec3 geo = globe.toWGS(along * dvec3(x, y, 0.0));
            double height = -1.0;
            ASSERT_TRUE(terrain.getAltitudeByLonLat(geo.x, geo.y, height));
            ASSERT_EQ(height, ground) << x << ", " << y;
        }
    }
    // The test target's place is on the apron.
    double apron = 0.0;
    ASSERT_TRUE(terrain.getAltitudeByLonLat(112.34947825220193, 16.83858673486975, apron));
    EXPECT_NEAR(apron, 4.9471, 0.02);
    EXPECT_NEAR(node("airfield")->getWgsPosition().z, ground, 1e-6);
    // Deep water under the carrier, a hill under the mast.
    const dvec3 sea = node("JT_CN_LNJ")->getWgsPosition(), hill = node("mast")->getWgsPosition();
    double depth = 0.0, top = 0.0;
    ASSERT_TRUE(terrain.getAltitudeByLonLat(sea.x, sea.y, depth));
    ASSERT_TRUE(terrain.getAltitudeByLonLat(hill.x, hill.y, top));
    EXPECT_LT(depth, -20.0);
    EXPECT_NEAR(top, 340.0, 30.0);
    EXPECT_NEAR(hill.z, top, 2.0);
}

TEST_F(DemoScene, StartsStandJustAboveTheirGround) {
    loadWorld();
    Node& carrier = *node("JT_CN_LNJ");
    const dmat4 on_deck = inverse(carrier.getWorldTransform()) * node("start_deck")->getWorldTransform();
    EXPECT_NEAR(on_deck.t.z, 20.0 + START, 1e-6);
    EXPECT_LT(degreesBetween(on_deck.y, {0, 1, 0}), 1e-6);
    EXPECT_EQ(node("start_deck")->getParent(), world().getRoot());
    EXPECT_NEAR(node("start_runway")->getWgsHPR().x, 67.25, 1e-9);
    const Environment& environment = world().getEnvironment();
    EXPECT_EQ(environment.camera_wgs_hpr.y, 0.0);
    EXPECT_EQ(environment.camera_wgs_hpr.z, 0.0);
}

TEST_F(DemoScene, TriggersSurroundTheObstaclesAndNotTheStarts) {
    loadWorld();
    Node* const group = world().getNodeByTag("all_triggers");
    ASSERT_NE(group, nullptr);
    std::string log;
    for (int i = 0; i < group->getNumChildren(); ++i) {
        ASSERT_EQ(group->getChild(i)->getType(), Node::TRIGGER);
        auto& trigger = static_cast<NodeTrigger&>(*group->getChild(i));
        trigger.enter.append(
            [&log, &trigger](Node* sensor) { log += trigger.getName() + ":" + sensor->getName() + " "; });
    }
    ObjectPrefab* const jet = addJet();
    const auto reportAt = [&](const dmat4& place) {
        log.clear();
        jet->setWorldTransform(place);
        run(1);
        return log;
    };
    EXPECT_EQ(reportAt(node("start_deck")->getWorldTransform()), "");
    const dmat4 ship = node("JT_CN_LNJ")->getWorldTransform(), field = node("airfield")->getWorldTransform();
    const dmat4 hill = node("mast")->getWorldTransform();
    EXPECT_EQ(reportAt(ship * dmat4::translation({29, -20, 30})), "trigger_carrier_island:body ");
    EXPECT_EQ(reportAt(node("start_runway")->getWorldTransform()), "");
    EXPECT_EQ(reportAt(field * dmat4::translation({262, 60, 25})), "trigger_tower:body ");
    EXPECT_EQ(reportAt(field * dmat4::translation({272, -62, 6})), "trigger_halls:body ");
    EXPECT_EQ(reportAt(hill * dmat4::translation({0, 3, 30})), "trigger_mast:body ");
}

TEST_F(DemoScene, TracksDriveWhatTheyAreNamedAfter) {
    loadWorld();
    const auto& terrain = *static_cast<ObjectTerrain*>(node("terrain"));
    auto& runway = *static_cast<NodeLight*>(world().getNodeByTag("runway_light"));
    auto& road = *static_cast<NodeLight*>(world().getNodeByTag("road_light"));
    const Environment& environment = world().getEnvironment();
    const struct {
        const char* name;
        std::function<double()> value;
        double at_0, at_1;
    } tracks[] = {
        {"runway_wet", [&] { return terrain.getWetness(); }, 0.0, 1.0},
        {"snow", [&] { return terrain.getSnow(); }, 0.0, 1.0},
        {"autumn", [&] { return terrain.getAutumn(); }, 0.0, 1.0},
        {"TOD", [&] { return environment.time_of_day; }, 0.0, 24.0},
        {"road_light", [&] { return road.getIntensity() / road.getSettings().intensity; }, 0.0, 1.0},
        {"airport_light_enable", [&] { return runway.isEnabled() ? 1.0 : 0.0; }, 0.0, 1.0},
        {"airport_light_brightness", [&] { return runway.getIntensity() / runway.getSettings().intensity; }, 0.0, 1.0}};
    for (const auto& wanted : tracks) {
        Track track;
        ASSERT_TRUE(track.load(jString("data/assets/Anim/Fly_simulator/") + wanted.name + ".anim", &world()));
        track.set(0.0f);
        EXPECT_NEAR(wanted.value(), wanted.at_0, 1e-6) << wanted.name;
        track.set(1.0f);
        EXPECT_NEAR(wanted.value(), wanted.at_1, 1e-6) << wanted.name;
    }
    EXPECT_TRUE(node("rain")->isEnabled() && node("snow")->isEnabled());
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(DemoScene, ConfigurationNamesFilesThatLoad) {
    Package config;
    ASSERT_TRUE(mjl::open("config/Logic_Test_Fly.cfg", config, true));
    Package texts;
    ASSERT_TRUE(mjl::open("config/string.txt", texts, true));
    const Package* const targets = config.getPackage("target_type");
    ASSERT_NE(targets, nullptr);
    for (const jString& path : {config.getString("first_ship_path"), config.getString("plane_path"),
                                config.getString("third_ship_path"), targets->getString("_1001")}) {
        EXPECT_TRUE(ObjectPrefab(path).isLoaded()) << path;
    }
    EXPECT_NE(config.getInt("recv_from_flightSimulation_port"), config.getInt("local_port"))
        << "host and viewer share a machine";
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST(BuildAssets, WritesTheSameBytesAgain) {
    const fs::path again = fs::temp_directory_path() / "deckview_assets_again";
    fs::remove_all(again);
    const std::string command = std::string(DECKVIEW_BIN) + "/build_assets " + again.string();
    ASSERT_EQ(std::system(command.c_str()), 0);
    const auto read = [](const fs::path& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    };
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(again)) {
        if (!entry.is_regular_file()) continue;
        ++files;
        const fs::path first = fs::path(DECKVIEW_ROOT) / fs::relative(entry.path(), again);
        EXPECT_EQ(read(entry.path()), read(first)) << first;
    }
    EXPECT_GT(files, 10);
    fs::remove_all(again);
}
