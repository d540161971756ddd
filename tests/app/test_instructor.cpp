// The instructor's panel as a hand uses it, and what it tells of targets and the host link.
#include "InstructorScene.h"
#include "app/Texts.h"
#include "engine/net/SocketUDP.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"

namespace {

class HelicopterInstructor : public InstructorScene {
protected:
    HelicopterInstructor() : InstructorScene("data/assets/Targets/MODELS/HELICOPTER/HELICOPTER.cfg") {}
};

class InstructorTest : public InstructorScene {
protected:
    double fromAircraft(Node& node) {
        return length(node.getWorldPosition() - logic().getAircraftNode()->getWorldPosition());
    }
};

TEST_F(InstructorTest, SlidersSetTheWeather) {
    openPanel("en");
    Environment& environment = world().getEnvironment();
    click("rain", 0.99);
    click("snow");
    click("time");
    click("sea", 0.99);
    click("visibility");
    EXPECT_TRUE(logic().isRaining());
    EXPECT_FLOAT_EQ(environment.wetness, 1.0f);
    EXPECT_NEAR(environment.snow, 0.5f, 0.02f);
    EXPECT_NEAR(environment.time_of_day, 12.0f, 0.5f);
    EXPECT_EQ(logic().getOcean()->getBeaufort(), 12);
    const int metres = logic().getVisibilityDistance() * Logic_Test_Fly::VISIBILITY_STEP;
    EXPECT_TRUE(metres > 3000 && metres < 15000) << metres << ": the middle is not half of the way to 30 km";
    click("rain", 0.0);
    EXPECT_FALSE(logic().isRaining());
}

TEST_F(InstructorTest, ButtonsWorkTheAircraft) {
    openPanel("zh");
    Node* const lamp = logic().getAircraftNode()->getChildByName("navigation_left", true);
    ASSERT_NE(lamp, nullptr);
    click("navigation_lights");
    EXPECT_FALSE(lamp->isEnabled());
    EXPECT_EQ(logic().getNaviLight(), 0);
    click("navigation_lights");
    EXPECT_TRUE(lamp->isEnabled());
    EXPECT_EQ(logic().getNaviLight(), 1);

    const dvec3 start = logic().getAircraftNode()->getWorldPosition();
    const auto way = [&] { return length(logic().getAircraftNode()->getWorldPosition() - start); };
    click("push");
    frames(30);
    EXPECT_NEAR(way(), 15.5, 1.0);
    click("back");
    EXPECT_FALSE(logic().isMovingForward());
    EXPECT_LT(way(), 0.5);

    const PLAYER_MODE view = logic().getPlayerMode();
    click("view");
    EXPECT_NE(logic().getPlayerMode(), view);
    click("fire");
    EXPECT_EQ(logic().getNumMissiles(), 1);
    click("explode");
    EXPECT_TRUE(logic().isExploded());
    click("reset");
    frames(2);
    EXPECT_EQ(logic().getNumMissiles(), 0) << "spent missiles are retired";
}

TEST_F(InstructorTest, TargetsAreAddedMovedAndRemoved) {
    openPanel("en");
    frames(12);
    EXPECT_EQ(text("panel.nearest"), "-");
    click("add");
    click("bearing", 0.25);
    click("type");
    click("add");
    ASSERT_EQ(instructor().getTargets(), (std::vector<std::string>{"T1", "T2"}));
    Node& first = *world().getNodeByName("T1");
    EXPECT_NEAR(fromAircraft(first), 1000.0, 1.0);
    EXPECT_NEAR(engine().getEllipsoid().toWGS(first.getWorldPosition()).z, 0.0, 0.5) << "on the sea";

    click("target");  // the second was chosen; behind it comes the first
    click("distance", 0.0);
    click("move");
    frames(70);
    EXPECT_NEAR(fromAircraft(first), 20.0, 5.0);
    EXPECT_NEAR(engine().getEllipsoid().toWGS(first.getWorldPosition()).z, 20.0, 1.0) << "on the deck";
    EXPECT_EQ(text("panel.nearest").substr(0, 3), "T1,");
    click("remove");
    EXPECT_EQ(world().getNodeByName("T1"), nullptr);
    EXPECT_EQ(text("panel.nearest").substr(0, 3), "T2,");
    click("add");
    EXPECT_EQ(instructor().getTargets().back(), "T3") << "a name is not given twice";
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(InstructorTest, ATargetMovesOverItselfWithoutClimbing) {
    ASSERT_TRUE(instructor().addTarget("lorry", 1001, {250.0, 30.0, 0.0, 0.0}));
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(instructor().moveTarget("lorry", {250.0, 30.0 + 2.0 * i, 0.0, 0.0}));
        frames(70);
        const dvec3 place = engine().getEllipsoid().toWGS(world().getNodeByName("lorry")->getWorldPosition());
        EXPECT_NEAR(place.z, 20.0, 0.5) << i;
    }
    EXPECT_FALSE(instructor().addTarget("lorry", 1001, {})) << "the name is taken";
    EXPECT_FALSE(instructor().moveTarget("nobody", {}));
    EXPECT_FALSE(instructor().removeTarget("nobody"));
    EXPECT_FALSE(instructor().addTarget("ghost", 4711, {})) << "there is no such type";
    EXPECT_EQ(logic().getNumTargets(), 1);
}

TEST_F(InstructorTest, ATorpedoRunsAtTheSurfaceAndLeavesAWake) {
    const EllipsoidModel& globe = engine().getEllipsoid();
    ASSERT_TRUE(instructor().launchTorpedo({157.0, 200.0, 0.0, 90.0}));
    Node* const torpedo = world().getNodeByName("torpedo");
    ASSERT_NE(torpedo, nullptr);
    const dmat4 start = torpedo->getWorldTransform();
    EXPECT_NEAR(torpedo->getWgsHPR().x, 90.0, 1e-6);
    frames(180);
    EXPECT_NEAR(dot(torpedo->getWorldPosition() - start.t, start.y), 60.0, 0.5);
    EXPECT_NEAR(globe.toWGS(torpedo->getWorldPosition()).z, 0.0, 1e-3) << "the globe's curve is followed";
    const auto* const wake = static_cast<ObjectParticles*>(torpedo->getChildByName("wake", true));
    ASSERT_NE(wake, nullptr);
    double longest = 0.0;
    for (const Particle& p : wake->getParticles()) {
        EXPECT_NEAR(globe.toWGS(p.position).z, 0.5, 0.5) << "on the water";
        longest = std::max(longest, length(torpedo->getWorldPosition() - p.position));
    }
    EXPECT_NEAR(longest, 60.0, 5.0) << "back to where it began";
    frames(580, 0.1);
    EXPECT_FALSE(torpedo->isEnabled()) << "a minute later";
    EXPECT_FALSE(wake->getParticles().empty());
    frames(100, 0.1);
    EXPECT_EQ(world().getNodeByName("torpedo"), nullptr);
    ASSERT_TRUE(instructor().launchTorpedo({157.0, 200.0}));
    instructor().reset();
    frames(2);
    EXPECT_EQ(world().getNodeByName("torpedo"), nullptr) << "a reset ends it";
}

TEST_F(HelicopterInstructor, MeasuresFromTheHelicopterAndFiresNothing) {
    const Object* const model = logic().getModel();
    Node* const lamp = const_cast<Object*>(model)->getChildByName("navigation_left", true);
    instructor().setNavigationLights(false);
    EXPECT_FALSE(lamp->isEnabled());
    ASSERT_TRUE(instructor().addTarget("ship", 1002, {90.0, 3000.0}));
    EXPECT_NEAR(length(world().getNodeByName("ship")->getWorldPosition() - model->getWorldPosition()), 3000.0, 1.0);
    EXPECT_TRUE(complaints().empty());
    const std::size_t blocks = memGetInfos().size();
    EXPECT_FALSE(instructor().fire());
    EXPECT_FALSE(instructor().explode());
    EXPECT_EQ(complaints().size(), 2u) << "one line each";
    EXPECT_EQ(memGetInfos().size(), blocks);
}

TEST_F(InstructorTest, LinkHealthIsThatOfTheLink) {
    LinkHealth link = instructor().getLinkHealth();
    const std::uint64_t refused = link.refused;
    EXPECT_EQ(link.records, 0u);
    EXPECT_LT(link.age, 0.0) << "no record yet";
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(host.sendOrder(2));
    LoopbackSocket stranger;
    ASSERT_TRUE(stranger.send(packets::record(1), host.getViewerPort()));
    frames(2);
    link = instructor().getLinkHealth();
    EXPECT_EQ(link.records, 3u);
    EXPECT_EQ(link.refused - refused, 1u);
    EXPECT_GT(link.feedback, 0u);
    EXPECT_LT(link.age, 0.05);
    frames(20, 0.1);
    EXPECT_NEAR(instructor().getLinkHealth().age, 2.0, 0.05) << "seconds of the engine's clock";
    openPanel("en");
    EXPECT_EQ(text("panel.records"), "3");
    EXPECT_EQ(text("panel.age").substr(0, 2), "2.");
}

TEST_F(InstructorTest, PanelFitsBesideTheOthers) {
    const auto right = [](UIElement& e) { return e.getX() + e.getWidth(); };
    const auto bottom = [](UIElement& e) { return e.getY() + e.getHeight(); };
    openPanel("en");
    for (const auto& [width, height] : {std::pair{1280, 720}, std::pair{1920, 1080}}) {
        input().resize(width, height);
        logic().setVisibilityDistance(100);
        instructor().addTarget("a_target_with_a_long_name_" + std::to_string(width), 1002, {90.0, 19000.0, 0.0, 0.0});
        frames(15);
        UIElement& panel = element("instructor");
        EXPECT_GT(panel.getX(), 502) << "beside the test panel";
        EXPECT_LE(right(panel), width);
        EXPECT_LT(bottom(panel), height - 110) << "above the buttons";
        for (const char* name : {"reset", "level", "remove", "panel.nearest", "panel.age", "heading"}) {
            EXPECT_LE(right(element(name)), right(panel)) << name;
            EXPECT_LE(bottom(element(name)), bottom(panel)) << name;
        }
    }
}

TEST_F(InstructorTest, EveryTextIsThereInBothLanguages) {
    for (const char* language : {"en", "zh"}) {
        const Texts texts(language);
        for (const char* name :
             {"weather",  "rain",    "snow",  "time",    "visibility", "sea",       "aircraft", "navigation_lights",
              "fire",     "explode", "push",  "back",    "gear_up",    "gear_down", "light",    "test",
              "view",     "level",   "reset", "targets", "type",       "target",    "bearing",  "distance",
              "height",   "heading", "add",   "move",    "remove",     "nearest",   "link",     "records",
              "feedback", "refused", "age"}) {
            const std::string key = std::string("panel.") + name;
            EXPECT_NE(texts.get(key), key) << language;
        }
        const std::vector<TargetType> types = readTargetTypes(texts);
        ASSERT_GE(types.size(), 5u);
        for (const TargetType& type : types) {
            EXPECT_TRUE(instructor().addTarget("t" + std::to_string(type.code) + language, type.code, {0, 500, 0, 0}));
            EXPECT_NE(type.name, "target_type." + std::to_string(type.code)) << language;
        }
    }
}

}  // namespace
