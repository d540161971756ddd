// The three views: cycling, following, orbit, free flight, places on the globe, and doing without.
#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/input/ControlApp.h"
#include "engine/memory/Allocator.h"

namespace {

class ViewTest : public LogicTest {
protected:
    /// A jet without a body.
    void begin() {
        TestJet spec;
        spec.body.clear();
        writeJet(spec);
        addStart();
        start();
    }
    /// Near the start node, level on a vertical, along bearing 40, 10 degrees down.
    void look(const dvec3& vertical) {
        const dvec3 up = normalize(vertical);
        const dvec3 east = normalize(cross({0.0, 0.0, 1.0}, up));
        camera().getPosition() = engine().getEllipsoid().toWorld({PLACE.x, PLACE.y, 400.0});
        camera().getRotation() = dquat(dmat3(east, cross(up, east), up)) * dquat::fromEulerZXY(-40.0, 80.0, 0.0);
        camera().apply();
    }
    CameraControl& camera() { return *engine().getCameraControl(); }
    ControlApp& control() { return *engine().getApp()->getControl(); }
    const dmat4& view() { return camera().getNode()->getWorldTransform(); }
    dvec3 target() { return logic().getAircraftNode()->getWorldPosition(); }
    dmat4 thirdView(const dmat4& looking) { return {looking.getMat3(), target() + looking.getZ() * 25.0}; }
    /// Bearing, elevation of the view and tilt of its horizon, degrees, round a vertical.
    dvec3 angles(const dvec3& up) {
        const dvec3 east = normalize(cross({0.0, 0.0, 1.0}, up)), ahead = -view().getZ();
        const double bearing = std::atan2(dot(ahead, east), dot(ahead, cross(up, east)));
        return dvec3(bearing, std::asin(dot(ahead, up)), std::asin(dot(view().getX(), up))) * jMath::RAD2DEG;
    }
};

TEST_F(ViewTest, TheThirdPersonViewKeepsItsRotationFollowsAndComesBackAsItWasLeft) {
    look({0.0, 1.0, 0.0});
    const dmat4 before = view();
    begin();
    logic().update(0.01f);
    logic().getAircraftNode()->setWgsPosition({112.4, 16.9, 900.0});
    logic().swap();
    const dmat4 third = view();
    EXPECT_LT(difference(third, thirdView(before)), 1e-6);
    std::string texts = logic().getViewText();
    for (int press = 0; press < 3; ++press) {
        logic().change_view();
        texts += logic().getViewText();
        if (press == 0) logic().set_cam_pos_geo({112.0, 16.0, 9000.0});
        if (press == 1) frame();
    }
    EXPECT_EQ(texts, "第三视角自由视角第一视角第三视角");
    EXPECT_LT(difference(view(), third), 1e-6);

    logic().set_player_mode(PLAYER_MODE(7));
    EXPECT_EQ(logic().getViewText(), "第三视角");
    logic().getAircraftNode()->setWgsPosition({112.5, 17.0, 900.0});
    frame();
    EXPECT_LT(difference(view(), third), 1e-6);
    logic().change_view();
    EXPECT_EQ(logic().getPlayerMode(), FREE_VIEW);
}

TEST_F(ViewTest, TheMouseTurnsTheViewAboutTheVerticalAndItsOwnXAxis) {
    begin();
    const struct {
        PLAYER_MODE mode;
        int button;
        bool ctrl;
        double mx, my;   ///< pixels
        dvec3 expected;  ///< change of bearing and elevation, degrees
    } cases[] = {{THIRD_VIEW, 1, false, 100, 0, {20, 0, 0}},
                 {THIRD_VIEW, 1, true, -30, -20, {-6, 4, 0}},
                 {THIRD_VIEW, 2, false, 30, 20, {}},
                 {FREE_VIEW, 2, false, -30, -20, {-6, 4, 0}},
                 {FREE_VIEW, 1, true, 30, 20, {}}};
    for (const auto& c : cases) {
        const bool orbit = c.mode == THIRD_VIEW;
        const dvec3 up = orbit ? engine().getEllipsoid().getUp(target()) : normalize(target());
        const dvec3 ahead(0.0, 0.0, orbit ? -25.0 : 0.0);
        logic().set_player_mode(c.mode);
        look(up);
        frame();
        const dvec3 before = angles(up), pivot = view() * ahead;
        control().setButton(c.button, true);
        control().setKey(ControlApp::KEY_CTRL, c.ctrl);
        control().addMotion(c.mx, c.my);
        frame();
        EXPECT_LT(length(angles(up) - before - c.expected), 1e-3) << c.mode << " " << c.mx << " " << c.my;
        EXPECT_LT(length(view() * ahead - pivot), 1e-6) << c.mode << " " << c.mx << " " << c.my;
        control().setButton(c.button, false);
    }
    EXPECT_FALSE(logic().rot_around(0.0f, 0.0f));
    EXPECT_TRUE(logic().rot_around(90.0f, 20.0f));
}

TEST_F(ViewTest, TheFreeCameraFliesInMetresASecond) {
    start();
    logic().set_player_mode(FREE_VIEW);
    logic().setCamSpeed(200);
    const struct {
        std::string keys;
        bool left, shift, ctrl;
        dvec3 expected;  ///< metres in the camera's frame after 0.05 s
        bool written;    ///< also when it is where it was
    } cases[] = {{"w", true, false, false, {0, 0, -10}, true},   {"s", true, true, false, {0, 0, 40}, true},
                 {"wd", true, false, false, {10, 0, -10}, true}, {"a", true, false, false, {-10, 0, 0}, true},
                 {"ws", true, false, false, {}, true},           {"", true, false, false, {}, false},
                 {"w", false, false, false, {}, false},          {"w", true, true, true, {}, false}};
    for (const auto& c : cases) {
        look({1.0, 2.0, 3.0});
        const dmat4 before = view();
        camera().getPosition() = {};
        for (const char key : {'w', 's', 'a', 'd'}) control().setKey(key, c.keys.find(key) != std::string::npos);
        control().setButton(ControlApp::BUTTON_LEFT, c.left);
        control().setKey(ControlApp::KEY_SHIFT, c.shift);
        control().setKey(ControlApp::KEY_CTRL, c.ctrl);
        frame(0.05);
        EXPECT_LT(difference(view(), dmat4(before.getMat3(), before * c.expected)), 1e-6) << c.keys;
        EXPECT_EQ(camera().getPosition() == view().getTranslation(), c.written) << c.keys;
    }
}

TEST_F(ViewTest, WithoutAircraftTheViewStaysAndWithoutCameraNothingFails) {
    look({1.0, 2.0, 3.0});
    const dmat4 before = view();
    for (CameraControl* const used : {&camera(), static_cast<CameraControl*>(nullptr)}) {
        auto* const logic = static_cast<Logic_Test_Fly*>(CreateLogic(&world(), used));
        logic->init();
        control().setButton(ControlApp::BUTTON_LEFT, used == nullptr);
        for (const int mode : {0, 1, 2, 7}) {
            logic->set_player_mode(PLAYER_MODE(mode));
            logic->onMouseWheel({120, 1}, nullptr);
            control().addMotion(5.0, 5.0);
            frame(*logic);
        }
        EXPECT_TRUE(view() == before);
        for (const dvec3& geo : {dvec3(-70.5, -89.0, 12000.0), dvec3(112.0, NAN, 5.0)}) logic->set_cam_pos_geo(geo);
        EXPECT_LT(length(logic->get_cam_pos_geo() - (used ? dvec3(-70.5, -89.0, 12000.0) : dvec3())), 1e-6);
        look({1.0, 2.0, 3.0});
        jDelete(static_cast<LogicBase*>(logic));
    }
    EXPECT_EQ(countLines("set_cam_pos_geo: not a place"), 2);
}

}  // namespace
