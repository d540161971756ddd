// Input events: which go to the panels, which to the input state and the listeners.
#include "PanelScene.h"

namespace {

class Input : public PanelScene {
protected:
    Input() {
        input.bindKeyPress([this](const GUIEventKey& e) { note("+", e.key, e.modifier); });
        input.bindKeyRelease([this](const GUIEventKey& e) { note("-", e.key, e.modifier); });
        input.bindMouseDown([this](const GUIEventMouse& e) { note("d", e.button); });
        input.bindMouseUp([this](const GUIEventMouse& e) { note("u", e.button); });
        input.bindMouseMove([this](const GUIEventMouse& e) { note("m", e.x); });
        input.bindWheel([this](const GUIEventWheel& e) { note("w", e.delta); });
    }
    void note(const char* what, int code, int modifier = 0) {
        heard += what + std::to_string(code) + (modifier ? "! " : " ");
    }
    /// What the listeners heard in one frame.
    std::string hear() {
        heard.clear();
        frame();
        return heard;
    }

    std::string heard;
};

TEST_F(Input, KeysKeepTheirOrderWithinAFrame) {
    for (int i = 0; i < 3; ++i) hit('t', InputRouter::MOD_CTRL);
    input.keyEvent('w', true);
    input.keyEvent('w', true);  // repeats
    input.keyEvent('s', false);
    for (const int key : {-1, 512, 100000}) input.keyEvent(key, true);
    EXPECT_EQ(hear(), "+116! -116! +116! -116! +116! -116! +119 ");
    EXPECT_TRUE(control.isKeyClick('t'));
    EXPECT_FALSE(control.isKeyPress('t'));
    EXPECT_TRUE(control.isKeyPress('w'));
    input.keyEvent(ControlApp::KEY_CTRL, true);
    hit('t');
    EXPECT_EQ(hear(), "+271 +116! -116! ");
    EXPECT_FALSE(control.isKeyClick('w'));
    input.focusLost();
    EXPECT_EQ(hear(), "-271! -119 ");
    EXPECT_FALSE(control.isKeyPress('w'));
}

TEST_F(Input, MouseMovesByFrame) {
    input.mouseMove(600, 300);
    frame();
    EXPECT_EQ(control.getMouseDX(), 0.0);  // where it was before is not known
    input.mouseMove(605, 300);
    input.mouseMove(610, 290.5);
    input.mouseMove(NAN, 3);
    input.wheel(-120);
    EXPECT_EQ(hear(), "m605 m610 w-120 ");
    EXPECT_EQ(control.getMouseDX(), 10.0);
    EXPECT_EQ(control.getMouseDY(), -9.5);

    // Outside the window it counts while a button is held.
    press();
    input.mouseMove(-90, 9000);
    EXPECT_EQ(hear(), "d1 m-90 ");
    EXPECT_EQ(control.getMouseDX(), -700.0);
    EXPECT_EQ(input.getMouseY(), 9000.0);
    release();
    input.mouseMove(-190, 9000);
    input.mouseMove(1e300, -1e300);
    EXPECT_EQ(hear(), "u1 ");
    EXPECT_EQ(control.getMouseDX(), 0.0);
}

TEST_F(Input, APanelOrTheSceneHoldsTheMouseUntilAllButtonsAreUp) {
    auto* const panel = add<UIVLayout>();
    panel->setSize(100, 100);
    input.mouseMove(50, 50);
    press();
    input.mouseButton(ControlApp::BUTTON_RIGHT, true);
    input.wheel(120);
    release();
    input.mouseMove(610, 300);
    EXPECT_EQ(hear(), "");
    EXPECT_FALSE(control.isLeftButtonDown());
    EXPECT_EQ(control.getMouseDX(), 0.0);
    input.mouseButton(ControlApp::BUTTON_RIGHT, false);
    input.mouseMove(620, 300);
    EXPECT_EQ(hear(), "m620 ");

    press();
    input.mouseMove(50, 50);
    input.wheel(120);
    EXPECT_EQ(hear(), "d1 m50 w120 ");
    EXPECT_TRUE(control.isLeftButtonDown());
    input.focusLost();
    release();
    EXPECT_EQ(hear(), "u1 ");
    EXPECT_FALSE(control.isLeftButtonDown());
}

TEST_F(Input, EditingTakesTheKeyboard) {
    auto* const line = add<UIEditLine>("x");
    input.keyEvent('w', true);
    frame();
    click(*line);
    hit('1');
    input.textEvent('1');
    input.keyEvent('w', false);  // its press was the scene's
    input.keyEvent(ControlApp::KEY_ENTER, true);
    EXPECT_EQ(hear(), "-119 ");
    EXPECT_EQ(line->getText(), "1");
    EXPECT_FALSE(control.isKeyClick('1'));
    input.keyEvent(ControlApp::KEY_ENTER, false);  // its press was the panel's
    hit('2');
    EXPECT_EQ(hear(), "+50 -50 ");
    click(*line);
    type(U"5");
    input.mouseMove(600, 400);
    press();
    hit('3');
    EXPECT_EQ(hear(), "m600 d1 +51 -51 ");  // a press on the scene ends the editing
    EXPECT_EQ(line->getText(), "5");
}

TEST_F(Input, AReleaseKeepsTheCtrlOfItsPress) {
    input.keyEvent(ControlApp::KEY_CTRL, true);
    input.keyEvent('t', true);
    input.keyEvent(ControlApp::KEY_CTRL, false);
    input.keyEvent('t', false);
    hit('t');
    EXPECT_EQ(hear(), "+271 +116! -271! -116! +116 -116 ");
    input.keyEvent(ControlApp::KEY_CTRL, true);
    input.keyEvent('t', true);
    input.focusLost();
    EXPECT_EQ(hear(), "+271 +116! -271! -116 ") << "no command";
}

}  // namespace
