// Scripts of input: their effect on a run, and the messages for invalid ones.
#include <gtest/gtest.h>

#include <fstream>

#include "app/InputScript.h"
#include "support/FakeHost.h"
#include "support/Program.h"
#include "support/TestScene.h"

namespace {

class InputScriptTest : public testing::Test {
protected:
    /// Runs deckview for 60 frames with a script; returns the exit status.
    int run(const std::string& script, const std::vector<std::string>& more = {}) {
        std::ofstream(m_file) << script;
        std::vector<std::string> arguments{"--headless", "--step", "0.02", "--frames", "60", "--input", m_file};
        for (const char* port : {"local_port", "recv_from_flightSimulation_port", "send_to_flightSimulation_port"}) {
            arguments.insert(arguments.end(), {"--set", std::string(port) + "=" + std::to_string(findFreePort())});
        }
        arguments.insert(arguments.end(), more.begin(), more.end());
        Program program("deckview", arguments);
        const int status = program.wait();
        m_output = program.getOutput();
        return status;
    }

    /// Those of `lines` that the run printed after the logic was initialised, in the printed order.
    std::string extract(const std::vector<std::string>& lines) const {
        std::string found;
        for (std::size_t at = m_output.find("init end!"); at < m_output.size(); ++at) {
            for (const std::string& line : lines) {
                if (m_output.compare(at, line.size(), line) == 0) found += line + '|';
            }
        }
        return found;
    }

    const TestFolder m_folder;
    std::string m_file = m_folder.getPath() / "input.txt";
    std::string m_output;
};

TEST_F(InputScriptTest, PlaysKeysAndClicksInTheirOrder) {
    const std::string script = R"(# the views, then the panels
@3 key f1
0.1 key ctrl+t
@9 key p
@12 click 数据飞行
@16 click 10 10
@20 click 第三视角
@24 click no such button
0.9 key ctrl+t
)";
    // All buttons are reachable in a small window, too.
    for (const char* size : {"1280x720", "200x120"}) {
        ASSERT_EQ(run(script, {"--size", size}), 0) << m_output;
        EXPECT_EQ(extract({"set_player_mode 2", "test mode open", "press p", "set_player_mode 0", "test mode close"}),
                  "set_player_mode 2|test mode open|press p|test mode close|")
            << m_output;
        EXPECT_NE(m_output.find(":7: no button \"第三视角\" is shown"), std::string::npos) << m_output;
        EXPECT_NE(m_output.find(":8: no button"), std::string::npos) << m_output;
    }
}

TEST_F(InputScriptTest, SaysWhichLineIsWrong) {
    const struct {
        const char* script;
        const char* says;
    } cases[] = {
        {"0.5 jump\n", "input.txt:1: \"jump \" is no input"},
        {"# only a comment\n\n0.5\n", "input.txt:3: must be SECONDS or @FRAME"},
        {"soon key f1\n", "input.txt:1: must be SECONDS"},
        {"-1 key f1\n", "input.txt:1: must be SECONDS"},
        {"@0 key f1\n", "input.txt:1: must be SECONDS"},
        {"nan key f1\n", "input.txt:1: must be SECONDS"},
        {"1 key f13\n", "\"key f13\""},
        {"1 key ctrl+\n", "\"key ctrl+\""},
        {"1 mouse 10\n", "\"mouse 10\""},
        {"1 wheel 1e9\n", "\"wheel 1e9\""},
        {"1 button_down middle\n", "\"button_down middle\""},
        {"1 click\n", "\"click \""},
    };
    for (const auto& c : cases) {
        std::ofstream(m_file) << c.script;
        std::string error;
        EXPECT_FALSE(InputScript().open(m_file, error)) << c.script;
        EXPECT_NE(error.find(c.says), std::string::npos) << error;
    }
}

}  // namespace
