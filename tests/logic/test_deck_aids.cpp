// The landing lens: which lamp for which elevation, from where, how large, how it blinks; the flag and the deck hand.
#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/scene/ObjectPrefab.h"
#include "src/deck/FlagOper.h"
#include "src/deck/HandOper.h"

namespace {

constexpr double LON = 112.4, LAT = 16.8;
constexpr const char* LAMPS[] = {"deng01", "deng02", "deng03", "deng04", "deng05", "green_light"};

/// A ship with a lens 20 m up on its port side, and two points on its deck.
class LensTest : public LogicTest {
protected:
    LensTest() {
        write("data/ship.prefab", R"({ "node": { "children": [
            { "name": "deck_1", "position": [3, -90, 20] }, { "name": "deck_2", "position": [-9, 0, 20] },
            { "name": "Fresnel_light", "position": [-39, -62, 20], "children": [ { "name": "housing", "children": [
                { "name": "deng01" }, { "name": "deng02" }, { "name": "deng03" }, { "name": "deng04" },
                { "name": "deng05" }, { "name": "green_light" } ] } ] } ] } })");
        ship = add(std::make_unique<ObjectPrefab>("data/ship.prefab"));
        ship->setName("ship");
        ship->setWgsPosition({LON, LAT, 0.0});
        ship->setWgsHPR({67.0, 0.0, 0.0});
        lens = ship->getChildByName("Fresnel_light");
        eye = addNode("eye");
    }

    void init() {
        printedBy([this] { light.fresnelLightInit(ship, eye); });
    }
    /// The eye at an elevation over the deck, from the lens.
    void look(double elevation, double bearing, double distance) {
        const double up = elevation * jMath::DEG2RAD, round = bearing * jMath::DEG2RAD;
        const dvec3 way(std::cos(up) * std::sin(round), std::cos(up) * std::cos(round), std::sin(up));
        eye->setWorldPosition(ship->getWorldTransform() * (dvec3(-39.0, -62.0, 20.0) + way * distance));
    }
    /// The lamps that are lit, as digits; the datum light is a 6.
    std::string lit() const {
        std::string names;
        for (int i = 0; i < 6; ++i) {
            if (lens->getChildByName(LAMPS[i], true)->isEnabled()) names += static_cast<char>('1' + i);
        }
        return names;
    }

    Object* ship;
    Node* lens;
    Node* eye;
    FresnelLight light;
};

TEST_F(LensTest, EveryBandLightsItsLamp) {
    init();
    const struct {
        float angle;
        int state;
        const char* lit;
    } cases[] = {{4.0f, 4, "36"}, {4.85f, 2, "1"},  {4.8500004f, 1, ""}, {4.51f, 2, "1"},  {4.5f, 3, "2"},
                 {4.17f, 3, "2"}, {4.16f, 4, "36"}, {3.83f, 5, "4"},     {3.84f, 4, "36"}, {3.49f, 5, "4"},
                 {3.48f, 6, "5"}, {3.15f, 6, "5"},  {3.14f, 7, ""},      {90.0f, 1, ""},   {NAN, 1, ""}};
    for (const auto& c : cases) {
        light.selectByAngle(c.angle);
        EXPECT_EQ(light.getState(), c.state) << c.angle;
        EXPECT_EQ(lit(), c.lit) << c.angle;
    }
    light.setState(FresnelLight::ALL);
    EXPECT_EQ(lit(), "123456");
    light.setState(FresnelLight::OFF);
    EXPECT_EQ(lit(), "");
    light.selectByAngle(4.0f);
    lens->getChildByName("deng01", true)->setEnabled(true);
    light.selectByAngle(3.9f);
    EXPECT_EQ(lit(), "136") << "the same state again touches no lamp";
}

TEST_F(LensTest, MeasuresTheElevationOverTheDeckFromAnywhere) {
    init();
    Random random(11);
    for (int i = 0; i < 1000; ++i) {
        ship->setWgsPosition({random.getDouble(-180.0, 180.0), random.getDouble(-80.0, 80.0), random.getDouble(-3, 3)});
        ship->setWgsHPR({random.getDouble(0, 360), random.getDouble(-3, 3), random.getDouble(-8, 8)});
        const double elevation = random.getDouble(-89.0, 89.0);
        look(elevation, random.getDouble(0.0, 360.0), std::exp(random.getDouble(0.0, 11.0)));
        ASSERT_NEAR(light.getGlideAngle(), std::abs(elevation), 2e-5 + 1e-6 * std::abs(elevation)) << i;
    }
    eye->setWorldPosition(lens->getWorldPosition());
    EXPECT_TRUE(std::isnan(light.getGlideAngle()));
}

TEST_F(LensTest, GrowsWithDistance) {
    init();
    for (const auto& [distance, scale] :
         {std::pair(0.0, 2.5), {1200.0, 7.0}, {3000.0, 13.75}, {6000.0, 25.0}, {10000.0, 25.0}}) {
        look(4.0, 160.0, distance);
        light.updateScale();
        EXPECT_NEAR(length(lens->getScale() - dvec3(scale, scale, scale)), 0.0, 1e-6) << distance;
    }
}

TEST_F(LensTest, BlinksOncePerPeriodFarOffThePath) {
    init();
    light.setBlinkPeriod(0.25f);
    for (const auto& [angle, lamp] : {std::pair(6.0f, "1"), {2.0f, "5"}}) {
        light.selectByAngle(angle);
        std::string seen;
        for (int i = 0; i < 13; ++i) {
            light.blink(0.0625f);  // adds up exactly: the period with every fourth, over it with the fifth
            seen += lit().empty() ? '.' : lit()[0];
        }
        // Ends within a period: the next state begins one of its own.
        EXPECT_EQ(seen, "...." + std::string(5, lamp[0]) + "....") << angle;
    }
    light.selectByAngle(4.0f);
    light.blink(1.0f);
    EXPECT_EQ(lit(), "36") << "nothing blinks near the path";
}

TEST_F(LensTest, WhatIsMissingIsLeftOut) {
    const auto remove = [](Node* node) { node->getParent()->takeChild(node); };
    remove(ship->getChildByName("deck_2"));
    remove(lens->getChildByName("deng03", true));
    init();
    light.selectByAngle(light.getGlideAngle());
    EXPECT_EQ(light.getState(), FresnelLight::OFF) << "no angle without the deck";
    for (const int state : {FresnelLight::BOTTOM, FresnelLight::ON_PATH, FresnelLight::TOP, FresnelLight::FAR_ABOVE}) {
        light.setState(state);
        light.blink(1.0f);
    }
    EXPECT_TRUE(lens->getChildByName("deng01", true)->isEnabled());
    const dmat4 before = lens->getTransform();
    printedBy([&] { light.fresnelLightInit(nullptr, nullptr); });
    EXPECT_FALSE(light.isReady());
    light.setState(FresnelLight::BOTTOM);
    light.updateScale();
    EXPECT_TRUE(lens->getChildByName("deng01", true)->isEnabled()) << "the former ship's lamps are let go";
    EXPECT_EQ(lens->getTransform(), before);
}

TEST_F(LensTest, TheFrameChoosesForTheCamera) {
    writeJet();
    addStart();
    start("ship");
    logic().set_player_mode(FREE_VIEW);
    eye = engine().getCameraControl()->getNode();
    for (const auto& [elevation, state] : {std::pair(-4.0, 4), {3.3, 6}, {9.0, 1}}) {
        look(elevation, 180.0, 3000.0);
        frame();
        EXPECT_EQ(logic().getFresnelLight().getState(), state) << elevation;
        EXPECT_NEAR(lens->getScale().x, 13.75, 1e-3);
    }
    int changes = 0;
    std::string last = lit();
    for (int i = 0; i < 130; ++i, last = lit()) {
        frame(1.0 / 64.0);
        changes += lit() != last;
    }
    EXPECT_EQ(changes, 10) << "every 13th frame passes the period of 0.2 s";
}

TEST_F(LensTest, TheDeckHandSwingsBothArms) {
    write("data/hand.prefab", R"({ "node": { "children": [ { "name": "left_hand", "position": [-1, 0, 2] },
        { "name": "right_hand", "position": [1, 0, 2] } ] } })");
    auto* const hand = add(std::make_unique<ObjectPrefab>("data/hand.prefab"));
    HandOper oper;
    EXPECT_TRUE(oper.init(hand));
    for (int i = 0; i < 100; ++i) {
        oper.update(0.015625f);  // 1.875 degrees
        const double angle = i < 24 ? 1.875 * (i + 1) : i < 72 ? 45.0 - 1.875 * (i - 23) : -45.0 + 1.875 * (i - 71);
        for (const char* name : {"left_hand", "right_hand"}) {
            EXPECT_NEAR(hand->getNodeByName(name)->getHPR().x, angle, 1e-5) << i;
            EXPECT_EQ(hand->getNodeByName(name)->getPosition().z, 2.0);
        }
    }
}

TEST_F(LensTest, TheFlagStreamsDownwindAndSwings) {
    Node* const cloth = addNode("flag", {0.0, -150.0, 25.0}, ship);
    FlagOper flag;
    EXPECT_TRUE(flag.init(cloth));
    // Degrees between the flag's X axis and the direction of the wind (m/s; east, north).
    const auto offWind = [&](const vec3& wind) {
        world().getEnvironment().wind = wind;
        flag.update(0.0f);
        const dmat4 enu = cloth->getWGSTransform();
        const dvec3 downwind = normalize(enu.x * static_cast<double>(wind.x) + enu.y * static_cast<double>(wind.y));
        return std::acos(std::clamp(dot(cloth->getWorldTransform().getX(), downwind), -1.0, 1.0)) * jMath::RAD2DEG;
    };
    ship->setWgsHPR({301.0, 0.0, 0.0});
    EXPECT_LT(offWind({5, 0, 0}), 0.2);
    float most = 0.0f;
    for (int i = 0; i < 1000; ++i) {
        flag.update(0.02f);
        most = std::max(most, std::abs(flag.getAngle()));
    }
    EXPECT_EQ(most, 10.0f);
    offWind({});
    EXPECT_TRUE(isFinite(cloth->getWorldTransform())) << "no wind";
}

}  // namespace
