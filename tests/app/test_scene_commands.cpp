// Scene commands: their text form, their effects, and the messages for those that fail.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>

#include "InstructorScene.h"
#include "app/SceneScript.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "support/TestScene.h"

namespace {

const std::vector<TargetType> TYPES{{1001, "lorry"}, {1002, "ship"}, {7, "seven"}};

std::mt19937 g_random(5);

double pick(double low, double high) {
    const double share = std::uniform_real_distribution<double>()(g_random);
    const double edges[] = {low, high, std::round(low + share * (high - low))};
    const int choice = std::uniform_int_distribution<int>(0, 5)(g_random);
    return choice < 3 ? edges[choice] : low + share * (high - low);
}

int pickWhole(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(g_random);
}

std::string pickName() {
    const char* const pieces[] = {"a", "T1", " ", "\"", "\\", "#", "名", "target", "1.5", "'", "/"};
    std::string name = pieces[pickWhole(0, 1)];
    for (int i = pickWhole(0, 4); i > 0; --i) name += pieces[pickWhole(0, 10)];
    return name;
}

RelativePlace pickPlace() {
    return {pick(-360, 360), pick(0, 100000), pick(-1000, 30000), pick(-360, 360)};
}

/// One random command of each kind.
std::vector<SceneCommand> pickCommands() {
    namespace c = command;
    const bool on = pickWhole(0, 1) == 1;
    return {c::Rain{pick(0, 100)},
            c::Snow{pick(0, 100)},
            c::Time{pick(0, 24)},
            c::Date{pickWhole(1, 9999), pickWhole(1, 12), pickWhole(1, 28)},
            c::Visibility{pick(0, 1e6)},
            c::Sea{pick(0, 12)},
            c::SetTrack{pickName(), pick(0, 100)},
            c::NavigationLights{on},
            c::ToggleLight(),
            c::Wipers{on},
            c::Gear{on},
            c::Push{on},
            c::BackToStart(),
            c::Fire(),
            c::Explode(),
            c::Reset(),
            c::View{pickWhole(0, 2)},
            c::NextView(),
            c::LevelView(),
            c::FlightMode{pickWhole(0, 2)},
            c::TestPanel{on},
            c::AddTarget{pickName(), TYPES[static_cast<std::size_t>(pickWhole(0, 2))].code, pickPlace()},
            c::MoveTarget{pickName(), pickPlace()},
            c::RemoveTarget{pickName()},
            c::PlayEffect{pickWhole(0, 4), pickPlace()},
            c::LaunchTorpedo{pickPlace()}};
}

TEST(SceneCommands, WhatIsPrintedIsReadBackEqual) {
    for (int i = 0; i < 200; ++i) {
        const std::vector<SceneCommand> commands = pickCommands();
        ASSERT_EQ(commands.size(), std::variant_size_v<SceneCommand>) << "one of each kind";
        for (std::size_t kind = 0; kind < commands.size(); ++kind) {
            const std::string text = printCommand(commands[kind]);
            ASSERT_EQ(commands[kind].index(), kind) << text;
            EXPECT_TRUE(isInRange(commands[kind])) << text;
            const std::optional<SceneCommand> again = parseCommand(text, TYPES);
            ASSERT_TRUE(again) << text;
            EXPECT_TRUE(*again == commands[kind]) << text << " became " << printCommand(*again);
        }
    }
}

TEST(SceneCommands, TextsThatAreNone) {
    const char* const texts[] = {"",
                                 "dance",
                                 "rain",
                                 "rain 101",
                                 "rain -1",
                                 "rain nan",
                                 "rain 5x",
                                 "rain 5 6",
                                 "date 2026 2 30",
                                 "date 2026 1.5 3",
                                 "gear sideways",
                                 "view 3",
                                 "fire now",
                                 "target alpha",
                                 "target alpha 4711 0 100",
                                 "target \"\" ship 0 100",
                                 "target alpha ship 0 100001",
                                 "target alpha ship 0 100 0 0 0",
                                 "remove \"two words\" three",
                                 "effect none 0 100"};
    for (const char* text : texts) EXPECT_FALSE(parseCommand(text, TYPES)) << text;
    EXPECT_EQ(parseCommand("target alpha ship 90 300 5", TYPES),
              SceneCommand(command::AddTarget{"alpha", 1002, {90, 300, 5, 0}}));
}

TEST(SceneCommands, ValuesOutOfRangeAreNoticed) {
    const SceneCommand bad[] = {command::Rain{NAN},
                                command::Rain{100.5},
                                command::View{3},
                                command::View{-1},
                                command::Date{2026, 2, 29},
                                command::RemoveTarget{""},
                                command::RemoveTarget{"two\nlines"},
                                command::PlayEffect{5, {}},
                                command::LaunchTorpedo{{0, INFINITY, 0, 0}}};
    for (const SceneCommand& command : bad) EXPECT_FALSE(isInRange(command)) << printCommand(command);
}

class HelicopterScene : public InstructorScene {
protected:
    HelicopterScene() : InstructorScene("data/assets/Targets/MODELS/HELICOPTER/HELICOPTER.cfg") {}
};

class SceneCommandTest : public InstructorScene {
protected:
    bool open(const std::string& text) {
        std::ofstream(m_file) << text;
        return m_script.open(m_file, error);
    }
    void play(int count) {
        for (int i = 0; i < count; ++i) {
            m_script.play(commands(), engine().getTime(), engine().getFrame() + 1);
            frames(1);
        }
    }

    std::string error;

private:
    const TestFolder m_folder;
    const std::string m_file = m_folder.getPath() / "scene.txt";
    SceneScript m_script;
};

TEST_F(SceneCommandTest, AScriptDoesItsLinesInTime) {
    ASSERT_TRUE(open(R"(# a scene
@1 rain 100
@1 snow 25
@1 time 18.5
@1 date 2026 3 9
@1 track autumn 40
@1 sea 7
@1 visibility 6100
@1 navigation_lights off
@1 view free
@1 target alpha ship 90 3000
@1 target bravo 1003 45 500 300 180
@2 move bravo 45 800 300
@2 effect water_explosion 90 400
@2 torpedo 157 300 0 45
0.5 fire
@60 remove alpha
1.5 explode
)")) << error;
    int effects = 0;
    logic().m_signal_8_effect_started.append([&](SynCoder::CMDPlaySpeOnceInfo*) { ++effects; });
    play(20);
    const Environment& environment = world().getEnvironment();
    EXPECT_FLOAT_EQ(environment.wetness, 1.0f);
    EXPECT_FLOAT_EQ(environment.snow, 0.25f);
    EXPECT_NEAR(environment.time_of_day, 18.5f, 0.01f);
    const SceneWeather weather = query().getWeather();
    EXPECT_NEAR(weather.rain, 100.0, 1e-3);
    EXPECT_NEAR(weather.snow, 25.0, 1e-3);
    EXPECT_EQ(weather.sea, 7.0);
    EXPECT_EQ(weather.visibility, 6000.0);
    EXPECT_EQ(logic().getNaviLight(), 0);
    EXPECT_EQ(logic().getPlayerMode(), FREE_VIEW);
    EXPECT_EQ(effects, 1);
    EXPECT_NE(world().getNodeByName("torpedo"), nullptr);
    EXPECT_EQ(query().getTargets(), (std::vector<std::string>{"alpha", "bravo"}));
    EXPECT_EQ(logic().getNumMissiles(), 0);
    EXPECT_NEAR(query().getTarget("alpha")->wgs_hpr.x, 0.0, 0.1);
    EXPECT_GT(length(query().getTarget("bravo")->velocity), 250.0) << "300 m in a second";
    play(30);
    EXPECT_EQ(logic().getNumMissiles(), 1);
    play(20);
    EXPECT_EQ(query().getTargets(), std::vector<std::string>{"bravo"});
    EXPECT_NEAR(query().getTarget("bravo")->geodetic.z, 300.0, 0.1);
    double distance = 0.0;
    EXPECT_EQ(query().getNearest(distance), "bravo");
    EXPECT_NEAR(distance, std::hypot(800.0, 280.0), 5.0) << "the glide took it there";
    EXPECT_FALSE(logic().isExploded());
    play(30);
    EXPECT_TRUE(logic().isExploded());
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(SceneCommandTest, WhatCannotBeDoneCostsALineWithItsSourceAndTheRestGoesOn) {
    ASSERT_TRUE(
        open("@1 move nobody 0 100\n@1 remove nobody\n@1 target a ship 0 900\n@1 target a jet 0 900\n"
             "@1 track nowhere 5\n@1 wipers on\n@2 fire\n"));
    commands().push(command::Rain{NAN}, {"panel"});
    play(3);
    const char* const says[] = {"panel: \"rain nan\"", ":1: \"move nobody",   ":2: \"remove nobody\"",
                                ":4: \"target a 1003", ":5: \"track nowhere", ":6: \"wipers on\""};
    ASSERT_EQ(complaints().size(), std::size(says));
    for (std::size_t i = 0; i < std::size(says); ++i) {
        EXPECT_NE(complaints()[i].find(says[i]), std::string::npos) << complaints()[i];
    }
    EXPECT_EQ(logic().getNumTargets(), 1);
    EXPECT_EQ(logic().getNumMissiles(), 1);
}

TEST_F(SceneCommandTest, AnotherScriptTakesThePlaceOfTheFirst) {
    ASSERT_TRUE(open("@1 snow 50\n@1 sea 3\n@3 fire\n"));
    play(1);
    ASSERT_TRUE(open("@1 sea 6\n@3 rain 100\n"));
    EXPECT_FALSE(open("@1 fire\n@1 dance\n"));
    EXPECT_NE(error.find("scene.txt:2: \"dance\""), std::string::npos) << error;
    play(4);
    EXPECT_EQ(logic().getOcean()->getBeaufort(), 6);
    EXPECT_TRUE(logic().isRaining()) << "one that cannot be read changes nothing";
    EXPECT_EQ(logic().getNumMissiles(), 0);
}

TEST_F(SceneCommandTest, ATargetMovesOverItselfWithoutClimbing) {
    ASSERT_TRUE(give("target lorry lorry 250 30"));
    for (const char* move : {"move lorry 250 30", "move lorry 250 32", "move lorry 250 34"}) {
        ASSERT_TRUE(give(move));
        frames(70);
        EXPECT_NEAR(query().getTarget("lorry")->geodetic.z, 20.0, 0.5) << move;
    }
}

TEST_F(SceneCommandTest, ATorpedoRunsAtTheSurfaceAndLeavesAWake) {
    const EllipsoidModel& globe = engine().getEllipsoid();
    ASSERT_TRUE(give("torpedo 157 200 0 90"));
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
    ASSERT_TRUE(give("torpedo 157 200"));
    ASSERT_TRUE(give("reset"));
    EXPECT_EQ(world().getNodeByName("torpedo"), nullptr) << "a reset ends it";
}

TEST_F(HelicopterScene, MeasuresFromTheHelicopterAndFiresNothing) {
    const Object* const model = logic().getModel();
    Node* const lamp = const_cast<Object*>(model)->getChildByName("navigation_left", true);
    ASSERT_TRUE(give("navigation_lights off"));
    EXPECT_FALSE(lamp->isEnabled());
    ASSERT_TRUE(give("target ship ship 90 3000"));
    EXPECT_NEAR(length(world().getNodeByName("ship")->getWorldPosition() - model->getWorldPosition()), 3000.0, 1.0);
    ASSERT_TRUE(give("wipers on"));
    const std::size_t blocks = memGetInfos().size();
    for (const char* text : {"fire", "explode", "gear up", "push on", "back"}) EXPECT_FALSE(give(text)) << text;
    EXPECT_EQ(complaints().size(), 5u) << "one line each";
    EXPECT_EQ(memGetInfos().size(), blocks);
}

TEST_F(SceneCommandTest, AQueryAnswersWhatTheWorldHas) {
    const MotionState start = *query().getAircraft();
    EXPECT_NEAR(length(start.velocity), 0.0, 0.01);
    ASSERT_TRUE(give("push on"));
    frames(10);
    const MotionState aircraft = *query().getAircraft();
    const double heading = aircraft.wgs_hpr.x * jMath::DEG2RAD;
    EXPECT_NEAR(aircraft.velocity.x, 30.0 * std::sin(heading), 0.5);
    EXPECT_NEAR(aircraft.velocity.y, 30.0 * std::cos(heading), 0.5);
    EXPECT_NEAR(length(query().getShip()->velocity), 0.0, 1e-6) << "moored";
    EXPECT_FALSE(query().getTarget("nobody"));

    const dvec3 above{start.geodetic.x, start.geodetic.y, start.geodetic.z + 50.0};
    const SurfaceBelow aboard = query().getSurfaceBelow({above.x, above.y + 0.0003, above.z});
    EXPECT_EQ(aboard.kind, SurfaceBelow::OBJECT);
    EXPECT_GT(aboard.height, 15.0);
    EXPECT_EQ(query().getSurfaceBelow({112.42, 16.80, 50.0}).kind, SurfaceBelow::WATER);
    const dvec3 runway = node("start_runway")->getWgsPosition();
    const SurfaceBelow land = query().getSurfaceBelow({runway.x, runway.y, 500.0});
    EXPECT_NEAR(land.height, runway.z - 0.2, 2.5);
    const dvec3 keel{above.x, above.y, -5.0};
    EXPECT_TRUE(query().getSightBlock(above, keel)) << "through the ship";
    EXPECT_FALSE(query().getSightBlock(above, {above.x, above.y, above.z + 100.0}));
}

TEST_F(SceneCommandTest, LinkHealthIsThatOfTheLink) {
    LinkHealth link = query().getLink();
    const std::uint64_t refused = link.refused;
    EXPECT_EQ(link.records, 0u);
    EXPECT_LT(link.age, 0.0) << "no record yet";
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(host.sendOrder(2));
    LoopbackSocket stranger;
    ASSERT_TRUE(stranger.send(packets::record(1), host.getViewerPort()));
    frames(2);
    link = query().getLink();
    EXPECT_EQ(link.records, 3u);
    EXPECT_EQ(link.refused - refused, 1u);
    EXPECT_GT(link.feedback, 0u);
    EXPECT_LT(link.age, 0.05);
    frames(20, 0.1);
    EXPECT_NEAR(query().getLink().age, 2.0, 0.05) << "seconds of the engine's clock";
    openPanel("en");
    EXPECT_EQ(text("panel.records"), "3");
    EXPECT_EQ(text("panel.age").substr(0, 2), "2.");
}

}  // namespace
