// deckview in a window, on an X server of its own that goes away under it.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "support/FakeHost.h"
#include "support/Program.h"
#include "support/TestScene.h"

namespace {

TEST(Window, ALostDisplayEndsTheRunCleanly) {
    const std::string display = ":" + std::to_string(200 + findFreePort() % 2000);
    Program server("/usr/bin/Xvfb", {display, "-screen", "0", "640x480x24", "-nolisten", "tcp"});
    FakeHost host(findFreePort());
    const TestFolder folder;
    const std::string picture = folder.getPath() / "window.png";
    setenv("DISPLAY", display.c_str(), 1);
    std::unique_ptr<Program> deckview;
    bool answered = false;
    // It ends at once while the server is not up.
    for (int tries = 0; tries < 100 && !answered && !server.hasExited(); ++tries) {
        deckview = std::make_unique<Program>(
            "deckview", std::vector<std::string>{
                            "--size", "320x180", "--screenshot", picture + "@2", "--set",
                            "local_port=" + std::to_string(host.getViewerPort()), "--set",
                            "recv_from_flightSimulation_port=" + std::to_string(host.getSendPort()), "--set",
                            "send_to_flightSimulation_port=" + std::to_string(host.getFeedbackPort())});
        while (!answered && !deckview->hasExited()) {
            host.sendOrder(2);
            answered = !host.waitFeedback(1, 0.05).empty() && std::filesystem::exists(picture);
        }
    }
    unsetenv("DISPLAY");
    ASSERT_TRUE(answered) << server.getOutput();
    server.signal(SIGKILL);
    EXPECT_EQ(deckview->wait(), 0) << deckview->getOutput();
    EXPECT_NE(deckview->getOutput().find("the window was lost"), std::string::npos) << deckview->getOutput();
}

}  // namespace
