// What the window hands to the engine's input; without a display.
#include "gui/WindowInput.h"

#include <osgViewer/View>

#include <sstream>

#include "engine/gui/UIEditLine.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "support/TestScene.h"

namespace {

using Event = osgGA::GUIEventAdapter;

/// A window of 800 x 600 pixels.
class WindowEvents : public SceneTest {
protected:
    WindowEvents() {
        input.resize(800, 600);
        input.bindKeyPress([this](const GUIEventKey& e) { heard << "+" << e.key << (e.modifier ? "! " : " "); });
        input.bindKeyRelease([this](const GUIEventKey& e) { heard << "-" << e.key << " "; });
        input.bindMouseDown([this](const GUIEventMouse& e) { heard << "down " << e.button << " "; });
        input.bindMouseUp([this](const GUIEventMouse& e) { heard << "up " << e.button << " "; });
        input.bindWheel([this](const GUIEventWheel& e) { heard << "wheel " << e.delta << " "; });
    }
    osg::ref_ptr<Event> make(Event::EventType type) {
        osg::ref_ptr<Event> event = new Event;
        event->setEventType(type);
        event->setInputRange(100.0f, 50.0f, 900.0f, 650.0f);
        return event;
    }
    void send(const Event& event) { window.handle(event, *actions); }
    /// A key that is pressed and released: its plain code, and what it types with the modifiers held.
    void hit(int plain, int typed, int modifiers = 0) {
        for (const Event::EventType type : {Event::KEYDOWN, Event::KEYUP}) {
            const auto event = make(type);
            event->setUnmodifiedKey(plain);
            event->setKey(typed);
            event->setModKeyMask(modifiers);
            send(*event);
        }
    }
    void mouse(Event::EventType type, float y, int button = 0,
               Event::MouseYOrientation up = Event::Y_INCREASING_UPWARDS) {
        const auto event = make(type);
        event->setX(150.0f);
        event->setY(y);
        event->setMouseYOrientation(up);
        event->setButton(button);
        send(*event);
    }
    std::string hear() {
        heard.str("");
        run(1);
        return heard.str();
    }

    InputRouter& input = *engine().getInput();
    WindowInput window{input};
    const osg::ref_ptr<osgViewer::View> actions = new osgViewer::View;
    std::ostringstream heard;
};

TEST_F(WindowEvents, KeysHaveTheEnginesNumbers) {
    // From 256 on.
    const int special[] = {Event::KEY_Escape, Event::KEY_Tab,    Event::KEY_BackSpace, Event::KEY_Return,
                           Event::KEY_Insert, Event::KEY_Delete, Event::KEY_Page_Up,   Event::KEY_Page_Down,
                           Event::KEY_Home,   Event::KEY_End,    Event::KEY_Right,     Event::KEY_Left,
                           Event::KEY_Up,     Event::KEY_Down,   Event::KEY_Shift_L,   Event::KEY_Control_L,
                           Event::KEY_Alt_L};
    const auto check = [&](int key, int number) {
        hit(key, key);
        EXPECT_EQ(hear(), "+" + std::to_string(number) + " -" + std::to_string(number) + " ");
    };
    for (int i = 0; i < 17; ++i) check(special[i], 256 + i);
    check('T', 't');
    check(Event::KEY_KP_Enter, ControlApp::KEY_ENTER);
    check(Event::KEY_Control_R, ControlApp::KEY_CTRL);
    check(Event::KEY_F11, ControlApp::KEY_F11);
    hit(Event::KEY_Caps_Lock, Event::KEY_Caps_Lock);
    hit('t', 'T', Event::MODKEY_LEFT_SHIFT);
    hit('t', 20, Event::MODKEY_RIGHT_CTRL);
    EXPECT_EQ(hear(), "+116 -116 +116! -116 ");
}

TEST_F(WindowEvents, TextIsWhatTheKeysType) {
    auto* const line = new UIEditLine("old");
    engine().getUIRoot()->addChild(line);
    run(1);
    for (const auto type : {Event::PUSH, Event::RELEASE}) mouse(type, 649.0f, Event::LEFT_MOUSE_BUTTON);
    hit('a', 'A', Event::MODKEY_LEFT_SHIFT);
    hit('b', 'b');
    hit('t', 't', Event::MODKEY_LEFT_CTRL);
    hit(Event::KEY_Delete, 127);
    hit(0, 0x901F);
    hit(Event::KEY_Return, '\r');
    EXPECT_EQ(hear(), "");
    EXPECT_EQ(line->getText(), "Ab速");
}

TEST_F(WindowEvents, TheMouseCountsFromTheUpperLeft) {
    for (const auto& [y, upward] :
         {std::pair(640.0f, Event::Y_INCREASING_UPWARDS), {60.0f, Event::Y_INCREASING_DOWNWARDS}}) {
        mouse(Event::MOVE, y, 0, upward);
        run(1);
        EXPECT_EQ(input.getMouseX(), 50.0);
        EXPECT_EQ(input.getMouseY(), 10.0);
    }
    for (const int button : {Event::LEFT_MOUSE_BUTTON, Event::RIGHT_MOUSE_BUTTON, Event::MIDDLE_MOUSE_BUTTON}) {
        for (const auto type : {Event::PUSH, Event::RELEASE, Event::DOUBLECLICK, Event::RELEASE}) {
            mouse(type, 350.0f, button);
        }
    }
    for (const auto motion : {Event::SCROLL_UP, Event::SCROLL_DOWN}) {
        const auto event = make(Event::SCROLL);
        event->setScrollingMotion(motion);
        send(*event);
    }
    EXPECT_EQ(hear(), "down 1 up 1 down 1 up 1 down 2 up 2 down 2 up 2 down 3 up 3 down 3 up 3 wheel 120 wheel -120 ");
    EXPECT_EQ(input.getMouseY(), 300.0);
}

}  // namespace
