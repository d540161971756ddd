// deckview in a window, on an X server of its own: closing, resizing, full screen, loss of the server.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "support/FakeHost.h"
#include "support/Program.h"
#include "support/TestScene.h"

// Last: they define names that other headers use.
#include <X11/Xlib.h>
#include <X11/keysym.h>

namespace {

using Size = std::pair<unsigned, unsigned>;

/// Width and height in a PNG file's header; zeros without a file.
Size sizeOfPng(const std::string& file) {
    unsigned char header[24] = {};
    std::ifstream(file, std::ios::binary).read(reinterpret_cast<char*>(header), sizeof header);
    const auto number = [&](int at) {
        return unsigned{header[at]} << 24 | unsigned{header[at + 1]} << 16 | unsigned{header[at + 2]} << 8 |
               unsigned{header[at + 3]};
    };
    return {number(16), number(20)};
}

class Window : public testing::Test {
protected:
    Window() { setenv("DISPLAY", m_display_name.c_str(), 1); }
    ~Window() override { unsetenv("DISPLAY"); }

    /// Starts deckview with a window of that size and waits until it has drawn.
    void start(const char* size = "320x180") {
        const std::string first = m_folder.getPath() / "first.png";
        const auto setPort = [](const char* key, int port) { return std::string(key) + "=" + std::to_string(port); };
        const std::vector<std::string> arguments{
            "--size",       size,
            "--screenshot", first + "@2",
            "--screenshot", last,
            "--screenshot", "never.png@999999",
            "--set",        setPort("local_port", host.getViewerPort()),
            "--set",        setPort("recv_from_flightSimulation_port", host.getSendPort()),
            "--set",        setPort("send_to_flightSimulation_port", host.getFeedbackPort())};
        // deckview exits at once while the server is not running
        for (int tries = 0; tries < 100 && !std::filesystem::exists(first) && !server.hasExited(); ++tries) {
            deckview = std::make_unique<Program>("deckview", arguments);
            waitFor([&] { return std::filesystem::exists(first); });
        }
        ASSERT_TRUE(std::filesystem::exists(first)) << server.getOutput() << deckview->getOutput();
    }

    /// Runs deckview until the condition is true; false when it exited before.
    template <class Condition>
    bool waitFor(Condition condition) {
        while (!condition()) {
            if (deckview->hasExited()) return false;
            host.sendOrder(2);
            host.waitFeedback(1, 0.05);
        }
        return true;
    }

    TestFolder m_folder;
    std::string m_display_name = ":" + std::to_string(200 + findFreePort() % 2000);
    Program server{"/usr/bin/Xvfb", {m_display_name, "-screen", "0", "640x480x24", "-nolisten", "tcp"}};
    FakeHost host{findFreePort()};
    std::string last = m_folder.getPath() / "last.png";
    std::unique_ptr<Program> deckview;
};

/// Access to deckview's window by another client of the display.
class Visitor {
public:
    explicit Visitor(const std::string& display) : m_display(XOpenDisplay(display.c_str())) {
        ::Window root, parent, *children = nullptr;
        unsigned count = 0;
        XQueryTree(m_display, DefaultRootWindow(m_display), &root, &parent, &children, &count);
        for (unsigned i = 0; i < count; ++i) {
            XWindowAttributes attributes;
            XGetWindowAttributes(m_display, children[i], &attributes);
            if (attributes.map_state == IsViewable) m_window = children[i];
        }
        XFree(children);
    }
    ~Visitor() { XCloseDisplay(m_display); }
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    Size getSize() const {
        XWindowAttributes attributes;
        XGetWindowAttributes(m_display, m_window, &attributes);
        return {static_cast<unsigned>(attributes.width), static_cast<unsigned>(attributes.height)};
    }
    void resize(const Size& size) {
        XResizeWindow(m_display, m_window, size.first, size.second);
        XSync(m_display, False);
    }
    void pressKey(KeySym key) {
        sendKey(key, KeyPress);
        sendKey(key, KeyRelease);
    }
    void sendKey(KeySym key, int type) {
        XEvent event{};
        event.type = type;
        event.xkey.window = m_window;
        event.xkey.root = DefaultRootWindow(m_display);
        event.xkey.keycode = XKeysymToKeycode(m_display, key);
        send(event, type == KeyPress ? KeyPressMask : KeyReleaseMask);
    }
    void setFocus(bool on) {
        XSetInputFocus(m_display, on ? m_window : DefaultRootWindow(m_display), RevertToNone, CurrentTime);
        XSync(m_display, False);
    }
    /// Closes the window as a window manager does.
    void close() {
        XEvent event{};
        event.type = ClientMessage;
        event.xclient.window = m_window;
        event.xclient.message_type = XInternAtom(m_display, "WM_PROTOCOLS", False);
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(XInternAtom(m_display, "WM_DELETE_WINDOW", False));
        send(event, NoEventMask);
    }

private:
    void send(XEvent& event, long mask) {
        XSendEvent(m_display, m_window, False, mask, &event);
        XSync(m_display, False);
    }

    Display* m_display;
    ::Window m_window = 0;
};

TEST_F(Window, ClosedItLeavesItsLastPicture) {
    start();
    Visitor(m_display_name).close();
    EXPECT_EQ(deckview->wait(), 0) << deckview->getOutput();
    EXPECT_EQ(sizeOfPng(last), Size(320, 180));
    EXPECT_GT(std::filesystem::file_size(last), 10000u) << "one colour needs a tenth of that";
    EXPECT_NE(deckview->getOutput().find("never.png was not written"), std::string::npos) << deckview->getOutput();
}

TEST_F(Window, ThePictureHasTheWindowsSize) {
    start();
    Visitor visitor(m_display_name);
    const Size small(401, 299), screen(640, 480);
    visitor.resize(small);
    ASSERT_TRUE(waitFor([&] { return visitor.getSize() == small; }));
    for (const Size& size : {screen, small, screen}) {
        visitor.pressKey(XK_F11);
        ASSERT_TRUE(waitFor([&] { return visitor.getSize() == size; })) << deckview->getOutput();
    }
    visitor.close();
    EXPECT_EQ(deckview->wait(), 0) << deckview->getOutput();
    EXPECT_EQ(sizeOfPng(last), screen);
}

TEST_F(Window, ALostDisplayEndsTheRunInOrder) {
    start();
    server.signal(SIGKILL);
    EXPECT_EQ(deckview->wait(), 1) << deckview->getOutput();
    for (const char* part : {"the window was lost", "last.png\" was not written: the window is gone"}) {
        EXPECT_NE(deckview->getOutput().find(part), std::string::npos) << deckview->getOutput();
    }
    EXPECT_FALSE(std::filesystem::exists(last));
}

TEST_F(Window, OneLargerThanTheScreenFitsAndItsKeysAreReleasedWithTheFocus) {
    start("2000x1500");
    Visitor visitor(m_display_name);
    EXPECT_EQ(visitor.getSize(), Size(640, 480));
    visitor.setFocus(true);
    visitor.sendKey(XK_p, KeyPress);
    visitor.pressKey(XK_o);
    const auto printed = [&](const char* text) {
        return waitFor([&] { return deckview->getOutput().find(text) != std::string::npos; });
    };
    ASSERT_TRUE(printed("press o"));
    EXPECT_EQ(deckview->getOutput().find("press p"), std::string::npos) << "it is held";
    visitor.setFocus(false);
    EXPECT_TRUE(printed("press p"));
    visitor.close();
    EXPECT_EQ(deckview->wait(), 0) << deckview->getOutput();
}

}  // namespace
