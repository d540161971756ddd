// Scripts of an instructor's actions: what their lines do, and what is said of wrong ones.
#include <fstream>

#include "InstructorScene.h"
#include "app/SceneScript.h"
#include "engine/scene/ObjectOcean.h"
#include "support/Program.h"
#include "support/TestScene.h"

namespace {

class SceneScriptTest : public InstructorScene {
protected:
    bool open(const std::string& text) {
        std::ofstream(m_file) << text;
        return m_script.open(m_file, error);
    }
    void play(int count) {
        for (int i = 0; i < count; ++i) {
            m_script.play(instructor(), engine().getTime(), engine().getFrame() + 1);
            frames(1);
        }
    }

    std::string error;

private:
    const TestFolder m_folder;
    const std::string m_file = m_folder.getPath() / "scene.txt";
    SceneScript m_script;
};

TEST_F(SceneScriptTest, DoesItsLinesInTime) {
    ASSERT_TRUE(open(R"(# a scene
@1 rain 100
@1 snow 25
@1 time 18.5
@1 sea 7
@1 visibility 6000
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
    EXPECT_EQ(logic().getOcean()->getBeaufort(), 7);
    EXPECT_EQ(logic().getVisibilityDistance(), 20);
    EXPECT_EQ(logic().getNaviLight(), 0);
    EXPECT_EQ(logic().getPlayerMode(), FREE_VIEW);
    EXPECT_EQ(effects, 1);
    EXPECT_NE(world().getNodeByName("torpedo"), nullptr);
    EXPECT_EQ(instructor().getTargets().size(), 2u);
    EXPECT_EQ(logic().getNumMissiles(), 0);
    const dvec3 heading = world().getNodeByName("alpha")->getWgsHPR();
    EXPECT_NEAR(heading.x, 0.0, 0.1);
    play(30);
    EXPECT_EQ(logic().getNumMissiles(), 1);
    play(20);
    EXPECT_EQ(instructor().getTargets(), std::vector<std::string>{"bravo"});
    const dvec3 bravo = world().getNodeByName("bravo")->getWorldPosition();
    EXPECT_NEAR(engine().getEllipsoid().toWGS(bravo).z, 300.0, 0.1);
    double distance = 0.0;
    EXPECT_EQ(instructor().getNearest(distance), "bravo");
    EXPECT_NEAR(distance, std::hypot(800.0, 280.0), 5.0) << "the glide took it there";
    EXPECT_FALSE(logic().isExploded());
    play(30);
    EXPECT_TRUE(logic().isExploded());
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(SceneScriptTest, WhatCannotBeDoneIsToldAndTheRestGoesOn) {
    ASSERT_TRUE(
        open("@1 move nobody 0 100\n@1 remove nobody\n@1 target a ship 0 900\n@1 target a jet 0 900\n@2 fire\n"));
    play(3);
    int told = 0;
    for (const std::string& line : complaints()) told += line.find("could not be done") != std::string::npos;
    EXPECT_EQ(told, 3);
    EXPECT_NE(complaints().front().find("nobody"), std::string::npos);
    EXPECT_EQ(logic().getNumTargets(), 1);
    EXPECT_EQ(logic().getNumMissiles(), 1);
}

TEST_F(SceneScriptTest, AnotherScriptTakesThePlaceOfTheFirst) {
    ASSERT_TRUE(open("@1 snow 50\n@1 sea 3\n@3 fire\n"));
    play(1);
    ASSERT_TRUE(open("@1 sea 6\n@3 rain 100\n"));
    EXPECT_FALSE(open("@1 fire\n@1 dance\n"));
    play(4);
    EXPECT_EQ(logic().getOcean()->getBeaufort(), 6);
    EXPECT_TRUE(logic().isRaining()) << "one that cannot be read changes nothing";
    EXPECT_EQ(logic().getNumMissiles(), 0);
}

TEST_F(SceneScriptTest, SaysWhichLineIsWrong) {
    const char* const lines[] = {
        "1 dance",
        "1 rain",
        "1 rain 101",
        "1 rain 5 5",
        "1 rain heavy",
        "1 snow nan",
        "1 time -1",
        "1 time 25",
        "1 sea 13",
        "1 fire now",
        "1 gear sideways",
        "1 push",
        "1 view above",
        "1 mode 3",
        "1 navigation_lights 1",
        "1 target a",
        "1 target a ship",
        "1 target a barge 0 1",
        "1 target a ship 0",
        "1 target a ship 400 10",
        "1 move a 0",
        "1 move a 0 1e9",
        "1 remove",
        "1 effect smoke 0 1",
        "1 torpedo",
        "1 torpedo 90",
        "1 target a 4711 0 1",
        "1 remove a b",
        "1 target a ship 0 1 inf",
    };
    for (const char* const line : lines) {
        EXPECT_FALSE(open(std::string("# scene\n@1 fire\n") + line + "\n")) << line;
        EXPECT_NE(error.find("scene.txt:3: "), std::string::npos) << error;
    }
}

TEST(SceneScriptOption, AWrongScriptEndsTheProgramBeforeTheScene) {
    const TestFolder folder;
    folder.write("scene.txt", "1 dance\n");
    Program wrong("deckview", {"--headless", "--frames", "1", "--script", folder.getPath() / "scene.txt"});
    EXPECT_EQ(wrong.wait(), 1);
    EXPECT_NE(wrong.getOutput().find("scene.txt:1: \"dance \" is no action"), std::string::npos) << wrong.getOutput();
    Program missing("deckview", {"--headless", "--frames", "1", "--script", folder.getPath() / "none.txt"});
    EXPECT_EQ(missing.wait(), 1);
}

}  // namespace
