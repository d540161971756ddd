// The instructor's panel operated by mouse, and its display of targets and the host link.
#include "InstructorScene.h"
#include "app/Texts.h"
#include "engine/scene/ObjectOcean.h"

namespace {

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
    ASSERT_EQ(query().getTargets(), (std::vector<std::string>{"T1", "T2"}));
    Node& first = *world().getNodeByName("T1");
    EXPECT_NEAR(fromAircraft(first), 1000.0, 1.0);
    EXPECT_NEAR(engine().getEllipsoid().toWGS(first.getWorldPosition()).z, 0.0, 0.5) << "on the sea";

    click("target");  // the second was selected; the next is the first
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
    EXPECT_EQ(query().getTargets().back(), "T3") << "a name is not given twice";
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(InstructorTest, PanelFitsBesideTheOthers) {
    const auto right = [](UIElement& e) { return e.getX() + e.getWidth(); };
    const auto bottom = [](UIElement& e) { return e.getY() + e.getHeight(); };
    openPanel("en");
    for (const auto& [width, height] : {std::pair{1280, 720}, std::pair{1920, 1080}}) {
        input().resize(width, height);
        logic().setVisibilityDistance(100);
        ASSERT_TRUE(give("target a_target_with_a_long_name_" + std::to_string(width) + " ship 90 19000"));
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

/// A key without a display text shows the key itself.
void expectTexts(UIElement& element) {
    const auto* const label = dynamic_cast<const UILabel*>(&element);
    const auto* const button = dynamic_cast<const UIButton*>(&element);
    const jString text = label ? label->getText() : button ? button->getText() : jString();
    for (const char* prefix : {"panel.", "help.", "target_type."}) EXPECT_NE(text.rfind(prefix, 0), 0u) << text;
    const auto* const layout = dynamic_cast<const UILayout*>(&element);
    for (int i = 0; layout && i < layout->getNumChildren(); ++i) expectTexts(*layout->getChild(i));
}

class InstructorLanguage : public InstructorScene, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Both, InstructorLanguage, testing::Values("en", "zh"));

TEST_P(InstructorLanguage, EveryTextIsThere) {
    openPanel(GetParam());
    for (int i = 0; i < panels().getNumChildren(); ++i) expectTexts(*panels().getChild(i));
    for (const TargetType& type : readTargetTypes(Texts(GetParam()))) {
        EXPECT_NE(type.name.rfind("target_type.", 0), 0u) << type.name;
        EXPECT_TRUE(give("target t" + std::to_string(type.code) + ' ' + std::to_string(type.code) + " 0 500"));
    }
}

}  // namespace
