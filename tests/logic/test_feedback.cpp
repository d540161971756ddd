// What the host is told: deck and terrain under the gears, attitude, collisions.
#include "LogicWorld.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectTerrain.h"
#include "engine/scene/SceneNodes.h"

namespace {

constexpr const char* DECK = "LiaoNingJian_zhuTi001";
constexpr const char* GEARS[] = {"wheel_front", "wheel_left", "wheel_right"};

class FeedbackTest : public LogicTest {
protected:
    /// A jet without a body stays where it is put.
    void begin() {
        TestJet spec;
        spec.body.clear();
        writeJet(spec);
        addStart();
        start();
        apply({2});
    }

    /// Posts 0.001 degrees apart round PLACE; heights rise eastward by 1000 m a degree from `height` at PLACE.
    void addTerrain(double height) {
        std::string text = "ncols 21\nnrows 21\nxllcorner 112.3395\nyllcorner 16.8295\ncellsize 0.001\n";
        for (int i = 0; i < 441; ++i) text += std::to_string(height + i % 21 - 10) + (i % 21 == 20 ? "\n" : " ");
        write("data/ground.asc", text);
        write("data/ground.prj", R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
                                 R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])");
        auto terrain = std::make_unique<ObjectTerrain>("data/ground.asc", "");
        ASSERT_TRUE(terrain->isLoaded());
        add(std::move(terrain))->setName("terrain");
    }

    packets::Feedback next() {
        frame();
        const auto datagrams = host().waitFeedback(1);
        const bool whole = datagrams.size() == 1 && datagrams[0].bytes.size() == packets::FEEDBACK_SIZE;
        EXPECT_TRUE(whole) << datagrams.size() << " datagrams";
        return whole ? packets::get<packets::Feedback>(datagrams[0].bytes, 0) : packets::Feedback();
    }

    Node* gear(const char* name) { return logic().getAircraftNode()->getNodeByName(name); }
};

TEST_F(FeedbackTest, OverTheDeckAllGearsHaveItsHeight) {
    addPlate(DECK, {PLACE.x, PLACE.y, 20.0}, 1.0);
    addPlate("shelter", {PLACE.x, PLACE.y, 5.0});
    begin();
    const packets::Feedback got = next();
    EXPECT_EQ(got.counter, engine().getFrame());
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(got.heights[i], 20.0, 1e-3) << "the gears stand beside the narrow deck";
        EXPECT_NEAR(got.heading[i], 30.0, 1e-4);
        EXPECT_NEAR(got.pitch[i], gear(GEARS[i])->getWgsHPR().y, 1e-4);
    }
    EXPECT_NEAR(got.pitch[1], 5.0, 1e-4);
    EXPECT_NEAR(got.roll[0], -1.0, 1e-4) << "the nose gear is turned by 3 degrees itself";
    EXPECT_NEAR(got.roll[1], -4.0, 1e-4);
    EXPECT_NEAR(got.roll[2], -4.0, 1e-4);
    EXPECT_EQ(got.heightCg, -100.0f);
    EXPECT_EQ(got.collision, 0);
    EXPECT_EQ(next().counter, got.counter + 1);
}

TEST_F(FeedbackTest, ElsewhereEachGearHasTheTerrainUnderItself) {
    addTerrain(7.0);
    addPlate(DECK, {PLACE.x, PLACE.y + 0.002, 20.0}, 10.0);
    Object* const roof = addPlate("roof", {PLACE.x, PLACE.y, 30.0});
    begin();
    for (const bool roofed : {true, false}) {
        roof->setEnabled(roofed);
        const packets::Feedback got = next();
        for (int i = 0; i < 3; ++i) {
            const double east = gear(GEARS[i])->getWgsPosition().x - PLACE.x;
            EXPECT_GT(std::abs(east), 1e-6);
            EXPECT_NEAR(got.heights[i], 7.0 + 1000.0 * east, 1e-3);
        }
        EXPECT_NEAR(got.heightCg, 7.0, 1e-3);
    }
    addPlate(DECK, {PLACE.x, PLACE.y, 60.0});
    EXPECT_NEAR(next().heights[0], 7.0, 0.1) << "a deck above the jet is not under it";

    gear("wheel_left")->setName("gone");
    const packets::Feedback got = next();
    for (const float value : {got.heights[1], got.pitch[1], got.roll[1], got.heading[1]}) EXPECT_EQ(value, 0.0f);
    EXPECT_NEAR(got.heading[2], 30.0, 1e-4);
}

TEST_F(FeedbackTest, WithoutGroundHeightsAreTheFloor) {
    begin();
    EXPECT_EQ(next().heights[0], -100.0f);
    end();
    addTerrain(-300.0);
    begin();
    const packets::Feedback got = next();
    EXPECT_EQ(got.heights[1], -100.0f);
    EXPECT_EQ(got.heightCg, -100.0f);
    EXPECT_EQ(logic().calc_height({10.0, 10.0, 0.0}), -100.0f) << "outside the raster";
}

TEST_F(FeedbackTest, TriggersSetOneFlagWithoutCounting) {
    Node* const group = addNode("group");
    group->addTag("all_triggers");
    addNode("no trigger", {}, group);
    NodeTrigger* triggers[2];
    for (NodeTrigger*& trigger : triggers) {
        auto made = std::make_unique<NodeTrigger>(vec3(20.0f, 20.0f, 20.0f));
        trigger = made.get();
        group->addChild(std::move(made));
        trigger->setWgsPosition(PLACE);
    }
    int others = 0;
    triggers[0]->enter.append([&](Node*) { ++others; });
    begin();
    EXPECT_EQ(next().collision, 0) << "the triggers are looked at after the feedback";
    EXPECT_EQ(next().collision, 1);
    triggers[0]->setEnabled(false);
    next();
    EXPECT_EQ(next().collision, 0) << "still inside the other one";
    logic().on_enter_trigger(gear("wheel_left"));
    EXPECT_EQ(next().collision, 0) << "no sensor";
    logic().on_enter_trigger(gear("body"));
    EXPECT_EQ(next().collision, 1);
    end();
    EXPECT_EQ(others, 1);
    EXPECT_EQ(triggers[0]->enter.size(), 1) << "the others' handlers stay";
    EXPECT_EQ(triggers[0]->leave.size() + triggers[1]->enter.size() + triggers[1]->leave.size(), 0);
}

}  // namespace
