// The demonstration's world: that everything which the scene's behaviour relies on is there and where it should be.
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>

#include "app/DemoScene.h"
#include "engine/physics/Body.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/track/Track.h"
#include "support/Paths.h"
#include "support/TestScene.h"

namespace fs = std::filesystem;

namespace {

/// Height of an object's highest surface over a place, in its own frame.
double heightOn(Object& object, const dvec3& place) {
    double best = -1000.0;
    for (int s = 0; s < object.getNumSurfaces(); ++s) {
        dvec3 hit;
        const dvec3 from{place.x, place.y, 60.0}, to{place.x, place.y, -60.0};
        if (object.getIntersection(from, to, s, hit)) best = std::max(best, hit.z);
    }
    return best;
}

/// Every vertex of a node and those below it, through `frame` from the world.
void forEachVertex(const Node& node, const dmat4& frame, const std::function<void(const Node&, const dvec3&)>& visit) {
    if (node.getType() == Node::MESH_STATIC) {
        const dmat4 to_frame = frame * node.getWorldTransform();
        for (const MeshSurface& surface : static_cast<const ObjectMeshStatic&>(node).getMesh().surfaces) {
            for (const auto& p : surface.positions) visit(node, to_frame * dvec3(p[0], p[1], p[2]));
        }
    }
    for (int i = 0; i < node.getNumChildren(); ++i) forEachVertex(*node.getChild(i), frame, visit);
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
    const BoundBox box = boxIn(carrier, *node("LiaoNingJian_zhuTi001"));
    EXPECT_NEAR(box.getSize().y, 305.0, 3.0);
    EXPECT_NEAR(box.getSize().x, 75.0, 3.0);
    EXPECT_NEAR(box.min.z, -10.0, 1.0);

    Object& deck = *node("LiaoNingJian_zhuTi001")->asObject();
    const auto deckHeight = [&](double x, double y) { return heightOn(deck, {x, y, 0.0}); };
    for (double y = -150.0; y < 94.0; y += 6.0) {
        for (double x = -18.0; x <= 18.0; x += 4.5) EXPECT_NEAR(deckHeight(x, y), 20.0, 1e-3) << x << ", " << y;
    }
    EXPECT_NEAR(deckHeight(30.0, -20.0), 20.0, 1e-3) << "below the island the deck goes on";
    EXPECT_NEAR(deckHeight(-36.0, 0.0), 20.0, 1e-3);
    EXPECT_GT(deckHeight(0.0, 150.0), 26.0);

    // The body's box lifts it to the drawn waterline.
    Body* const body = carrier.asObject()->getBody();
    ASSERT_NE(body, nullptr);
    EXPECT_FALSE(body->isEnabled());
    const Shape& hull = *body->getShape(0);
    ASSERT_EQ(hull.getType(), Shape::BOX);
    const vec3 size = hull.getSize();
    const double immersed = (size.z / 2.0 - hull.getTransform().t.z) / size.z;
    const double lift = 100.0 * size.x * size.y * size.z * immersed * immersed;  // kg, the buoyancy's own law
    EXPECT_NEAR(carrier.asObject()->getBodyRigid()->getMass() / lift, 1.0, 1e-4);
    EXPECT_NEAR(immersed, 0.3, 0.1);
}

TEST_F(DemoScene, LandingStripAndLaunchRunsAreLevelAndClear) {
    loadWorld();
    Node& carrier = *node("JT_CN_LNJ");
    Object& deck = *node("LiaoNingJian_zhuTi001")->asObject();
    const dvec3 foot{3.0, -152.0, 0.0};  // of the strip's axis, which points 7 degrees to port
    const double angle = 7.0 * jMath::DEG2RAD;
    const dvec3 along{-std::sin(angle), std::cos(angle), 0.0}, right{std::cos(angle), std::sin(angle), 0.0};
    for (double at = 5.0; at < 198.0; at += 13.0) {
        for (const double side : {-13.0, 0.0, 13.0}) {
            EXPECT_NEAR(heightOn(deck, foot + along * at + right * side), 20.0, 1e-3) << at << ", " << side;
        }
    }
    // Nothing stands on the strip or on the runs to the ramp, half the jet's span to either side of them.
    const double wing = 7.5;
    int vertices = 0;
    std::set<std::string> in_the_way;
    forEachVertex(carrier, inverse(carrier.getWorldTransform()), [&](const Node& at, const dvec3& p) {
        const double ahead = dot(p - foot, along), aside = std::abs(dot(p - foot, right));
        const bool on_strip = ahead > 0.0 && ahead < 200.0 && aside < 13.0 + wing;
        const bool on_run = p.y > 20.0 && p.y < 95.0 && std::abs(p.x) < 7.0 + wing;
        if ((on_strip || on_run) && p.z > 20.6) in_the_way.insert(at.getName());
        ++vertices;
    });
    EXPECT_TRUE(in_the_way.empty()) << *in_the_way.begin();
    EXPECT_GT(vertices, 10000);
}

TEST_F(DemoScene, WakesAndLensHangWhereTheyAreLookedFor) {
    loadWorld();
    Node& carrier = *node("JT_CN_LNJ");
    Node* const wakes = carrier.getChildByName("wakes");
    Node* const foam = wakes ? wakes->getChildByName("foam") : nullptr;
    ASSERT_TRUE(foam && foam->getNumChildren() > 0);
    EXPECT_EQ(foam->getType(), Node::DECAL_ORTHO);
    EXPECT_EQ(foam->getChild(0)->getType(), Node::PARTICLES);

    Node* const lens = carrier.getChildByName("Fresnel_light");
    ASSERT_TRUE(lens && lens->getType() == Node::PREFAB);
    double above = 10.0;
    for (const char* name : {"deng01", "deng02", "deng03", "deng04", "deng05"}) {
        Node* const lamp = lens->asObject()->getNodeByName(name);
        ASSERT_NE(lamp, nullptr) << name;
        EXPECT_LT(lamp->getPosition().z, above) << name;
        EXPECT_FALSE(lamp->isEnabled()) << name << ": nothing has selected it";
        above = lamp->getPosition().z;
    }
    Node* const green = lens->asObject()->getNodeByName("green_light");
    EXPECT_TRUE(green && !green->isEnabled());

    const dvec3 origin = lens->getWorldPosition(), up = carrier.getWorldTransform().z;
    const dvec3 a = node("deck_1")->getWorldPosition() - origin, b = node("deck_2")->getWorldPosition() - origin;
    EXPECT_NEAR(dot(a, up), 0.0, 1e-3);
    EXPECT_NEAR(dot(b, up), 0.0, 1e-3);
    EXPECT_LT(degreesBetween(cross(a, b), up), 0.01) << "and not in line with it";
    EXPECT_GT(degreesBetween(a, b), 20.0);
}

TEST_F(DemoScene, AirfieldIsExactlyLevelAndTheStartsStandJustAboveTheirGround) {
    loadWorld();
    const auto altitude = [&](const dvec3& geo) {
        double height = -1000.0;
        EXPECT_TRUE(static_cast<ObjectTerrain*>(node("terrain"))->getAltitudeByLonLat(geo.x, geo.y, height));
        return height;
    };
    const Node& start = *node("start_runway");
    const double ground = 4.9375;
    EXPECT_NEAR(start.getWgsPosition().z, ground + START, 1e-6);
    const dmat4 along = start.getWorldTransform();
    const EllipsoidModel globe;
    for (double y = -60.0; y <= 2440.0; y += 20.0) {
        for (const double x : {-22.0, 0.0, 22.0, 62.0, 150.0, 270.0}) {
            ASSERT_EQ(altitude(globe.toWGS(along * dvec3(x, y, 0.0))), ground) << x << ", " << y;
        }
    }
    EXPECT_NEAR(altitude({112.34947825220193, 16.83858673486975, 0.0}), 4.9471, 0.02) << "a place on the apron";
    EXPECT_NEAR(node("airfield")->getWgsPosition().z, ground, 1e-6);
    const dvec3 hill = node("mast")->getWgsPosition();
    EXPECT_LT(altitude(node("JT_CN_LNJ")->getWgsPosition()), -20.0);
    EXPECT_NEAR(altitude(hill), 340.0, 30.0);
    EXPECT_NEAR(hill.z, altitude(hill), 2.0);

    const dmat4 on_deck = inverse(node("JT_CN_LNJ")->getWorldTransform()) * node("start_deck")->getWorldTransform();
    EXPECT_NEAR(on_deck.t.z, 20.0 + START, 1e-6);
    EXPECT_LT(degreesBetween(on_deck.y, {0, 1, 0}), 1e-6);
    EXPECT_EQ(node("start_deck")->getParent(), node("JT_CN_LNJ")) << "it goes where the ship goes";
    EXPECT_NEAR(start.getWgsHPR().x, 67.25, 1e-9);
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
    run(10);
    for (const char* name : {"rain", "hail", "snow"}) {
        EXPECT_TRUE(static_cast<ObjectParticles*>(node(name))->getParticles().empty())
            << name << " falls in the picture";
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

TEST(BuildAssets, WritesTheSameBytesAgain) {
    const TestFolder folder;
    const fs::path again = folder.getPath() / "again";
    const std::string command = std::string(DECKVIEW_BIN) + "/build_assets " + again.string();
    ASSERT_EQ(std::system(command.c_str()), 0);
    const auto read = [](const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(again)) {
        if (!entry.is_regular_file()) continue;
        ++files;
        const fs::path first = fs::path(DECKVIEW_ROOT) / fs::relative(entry.path(), again);
        EXPECT_EQ(read(entry.path()), read(first)) << first;
    }
    EXPECT_GT(files, 10);
}
