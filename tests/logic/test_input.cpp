// Keys and wheel: which key acts and which is consumed, what each event does, leaving at once.
#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/input/ControlApp.h"
#include "engine/input/InputRouter.h"

namespace {

class InputTest : public LogicTest {
protected:
    void begin() {
        TestJet spec;
        spec.body.clear();
        writeJet(spec);
        addStart();
        start();
        frame();
    }
    CameraControl& camera() { return *engine().getCameraControl(); }
    ControlApp& control() { return *engine().getApp()->getControl(); }
    double distance() { return length(camera().getPosition() - logic().getAircraftNode()->getWorldPosition()); }
};

TEST_F(InputTest, OneKeyOfAChainActsInAFrameAndOnlyThatIsConsumed) {
    begin();
    using K = ControlApp;
    const struct {
        std::vector<int> clicked;
        PLAYER_MODE mode;
        int speed;
        std::vector<int> left;  ///< not consumed
    } cases[] = {{{K::KEY_F1, K::KEY_F5, ' ', '1', '2'}, FREE_VIEW, 10, {' ', '2', K::KEY_F5}},
                 {{K::KEY_F5, K::KEY_F6, '2', '3'}, THIRD_VIEW, 200, {'3', K::KEY_F6}},
                 {{K::KEY_F6, K::KEY_F2, '3', '4'}, THIRD_VIEW, 1000, {'4', K::KEY_F2}},
                 {{K::KEY_F2, K::KEY_F3, '4', '5'}, THIRD_VIEW, 10000, {'5', K::KEY_F3}},
                 {{K::KEY_F3, ' ', '5', K::KEY_ENTER}, THIRD_VIEW, 10000, {' '}}};
    for (const auto& c : cases) {
        logic().set_player_mode(THIRD_VIEW);
        logic().setCamSpeed(100);
        camera().getRotation() = dquat(dvec3(1, 2, 3), 50.0);
        camera().apply();
        for (const int key : c.clicked) control().setKey(key, true);
        logic().update_input();
        const std::string what = testing::PrintToString(c.clicked);
        EXPECT_EQ(logic().getPlayerMode(), c.mode) << what;
        EXPECT_EQ(logic().getCamSpeed(), c.speed) << what;
        const dvec3 up = normalize(camera().getPosition());
        EXPECT_EQ(length(camera().getNode()->getWorldTransform().getY() - up) < 1e-4, c.clicked.back() == K::KEY_ENTER);
        std::vector<int> left;
        for (int key = 0; key < K::KEY_COUNT; ++key) {
            if (control().isKeyClick(key)) left.push_back(key);
            control().setKey(key, false);
        }
        EXPECT_EQ(left, c.left) << what;
        control().endFrame();
    }
}

TEST_F(InputTest, ReleasedKeysSwitchAndPrint) {
    writeConfig(R"(, "KeyControl": { "a": "wx", "b": "", "c": 5, "d": "w" })");
    begin();
    const auto release = [this](int key, int modifier) {
        logic().onKeyRelease({static_cast<std::uint16_t>(key), static_cast<std::uint8_t>(modifier)}, nullptr);
    };
    const struct {
        int key, modifier;
        const char* printed;
    } cases[] = {{'k', 0, "m_target_head_offset:-5.000000\n"},
                 {'t', 0, ""},
                 {'t', 1, "test mode open \n"},
                 {'w', 0, "0.000000\n0.000000\n"},
                 {256 + 'p', 0, ""}};
    for (const auto& c : cases) EXPECT_EQ(printedBy([&] { release(c.key, c.modifier); }), c.printed) << c.key;
    for (const bool on : {false, true}) {
        release('g', 0);
        EXPECT_EQ(jet().getNode(31)->isEnabled(), on);
    }
}

using InputDeathTest = InputTest;

TEST_F(InputDeathTest, AltAndF4TogetherEndTheProcess) {
    start();
    const auto press = [this](std::initializer_list<int> keys) {
        for (const int key : keys) control().setKey(key, true);
        logic().update_input();
        std::_Exit(7);
    };
    EXPECT_EXIT(press({ControlApp::KEY_F4}), testing::ExitedWithCode(7), "");
    EXPECT_EXIT(press({ControlApp::KEY_ALT}), testing::ExitedWithCode(7), "");
    EXPECT_EXIT(press({ControlApp::KEY_F4, ControlApp::KEY_ALT}), testing::ExitedWithCode(0), "");
}

TEST_F(InputTest, ANotchOutAndOneInReturnToTheDistanceThroughTheRouter) {
    begin();
    InputRouter& router = *engine().getInput();
    router.bindWheel([this](const GUIEventWheel& e) { logic().onMouseWheel(e, nullptr); });
    const auto turn = [&](int delta) {
        router.wheel(delta);
        frame();
        return distance();
    };
    frame();
    for (int i = 0; i < 30; ++i) {
        const double before = distance();
        EXPECT_NEAR(turn(-120), before + 1.0, 1e-4) << "toward the user";
        EXPECT_NEAR(turn(120), before, 1e-4);
        turn(120);
    }
    EXPECT_NEAR(turn(120), 1.0, 1e-4);
    EXPECT_NEAR(turn(-2400), 21.0, 1e-4);
    // With Shift by a tenth.
    router.keyEvent(ControlApp::KEY_SHIFT, true);
    EXPECT_NEAR(turn(-120), 23.1, 1e-4);
    EXPECT_NEAR(turn(120), 20.79, 1e-4);
}

}  // namespace
