// The host program as a process, with a small viewer in the test: real sockets on free ports.
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fstream>
#include <functional>

#include "support/FakeHost.h"
#include "support/Packets.h"
#include "support/Program.h"
#include "support/TestScene.h"

namespace {

using packets::Bytes;
using Strings = std::vector<std::string>;

Bytes makeFeedback(int counter, float middleHeight = 21.25f) {
    const float h = middleHeight;
    Bytes bytes(packets::FEEDBACK_SIZE);
    packets::put(bytes, 0, packets::Feedback{counter, {20.25f, h, 22.25f}, {}, {}, {}, -3.5f, 1});
    return bytes;
}

/// A run of the program. Receives its datagrams and may answer each; keeps the results.
class Flyhost : public ::testing::Test {
protected:
    void run(const Strings& more, const std::function<void(Program& program, int order)>& answer = {}) {
        Strings arguments{"--to", "127.0.0.1:" + std::to_string(m_socket.getPort())};
        arguments.insert(arguments.end(), {"--bind", "127.0.0.1:0", "--listen", std::to_string(m_listen)});
        arguments.insert(arguments.end(), more.begin(), more.end());
        Program program("flyhost", arguments);
        datagrams.clear();
        orders.clear();
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        for (bool last = false; !last && std::chrono::steady_clock::now() < end;) {
            last = program.hasExited();  // datagrams sent before the exit are still received
            for (const Datagram& datagram : m_socket.wait(1, last ? 0.0 : 0.01)) {
                datagrams.push_back(datagram.bytes);
                orders.push_back(datagram.bytes.size() < 4 ? -99 : packets::get<std::int32_t>(datagram.bytes, 0));
                if (answer) answer(program, orders.back());
            }
        }
        status = program.getStatus();
        output = program.getOutput();
    }
    void send(const Bytes& bytes) { m_socket.send(bytes, m_listen); }
    bool says(const std::string& part) const { return output.find(part) != std::string::npos; }

    std::vector<Bytes> datagrams;
    std::vector<int> orders;  ///< of each datagram's first record
    int status = -1;
    std::string output;

private:
    LoopbackSocket m_socket;
    int m_listen = findFreePort();
};

TEST_F(Flyhost, SendsTheOrdersOfItsListInEveryRecordAndFailsWithoutFeedback) {
    const struct {
        const char* list;
        int records;
        std::vector<int> orders;
    } cases[] = {{"1,2x3,0", 1, {1, 2, 2, 2, 0}}, {"-7,2147483647,5x2", 3, {-7, 2147483647, 5, 5}}, {"2", 606, {2}}};
    for (const auto& c : cases) {
        run({"--orders", c.list, "--records", std::to_string(c.records), "--rate", "2000"});
        EXPECT_EQ(status, 1) << output;
        EXPECT_TRUE(says("no feedback came")) << output;
        std::vector<Bytes> expected;
        int number = 0;
        for (const int order : c.orders) {
            expected.emplace_back();
            for (int k = 0; k < c.records; ++k) {
                Bytes record = packets::record(order);
                packets::put<std::int32_t>(record, 4, ++number);
                expected.back() = packets::join(expected.back(), record);
            }
        }
        EXPECT_EQ(datagrams, expected) << c.list;
    }
}

TEST_F(Flyhost, RunsForItsTimeAndWritesAFileLineForEachFeedback) {
    const TestFolder folder;
    const std::string file = folder.getPath() / "feedback.csv";
    int answered = 0;
    run({"--seconds", "1.2", "--rate", "100", "--csv", file}, [&](Program&, int order) {
        if (order == 2) send(makeFeedback(1000 + answered++));
    });
    EXPECT_EQ(status, 0) << output;
    EXPECT_EQ(orders.front(), 1);
    EXPECT_EQ(orders.back(), 0);
    EXPECT_EQ(std::count(orders.begin(), orders.end(), 2), static_cast<std::ptrdiff_t>(orders.size()) - 2);
    EXPECT_TRUE(says("heights 20.25 21.25 22.25 cg -3.50 collision 1 latency ms min ")) << output;
    EXPECT_TRUE(says("lost 0, irregular 0")) << output;

    std::ifstream in(file);
    std::string line;
    int lines = 0;
    ASSERT_TRUE(std::getline(in, line));
    for (; std::getline(in, line); ++lines) {
        const std::string wanted = std::to_string(1000 + lines) + ",20.2500,21.2500,22.2500,-3.5000,";
        EXPECT_NE(line.find(wanted), std::string::npos) << line;
    }
    EXPECT_TRUE(says(std::to_string(lines) + " feedback records")) << output;
    EXPECT_GT(lines, 0);
}

TEST_F(Flyhost, CountsWhatIsLostAndWhatIsIrregular) {
    bool sent = false;
    run({"--orders", "2*", "--rate", "50"}, [&](Program& program, int) {
        if (sent) return;
        sent = true;
        for (const int counter : {10, 11, 15}) send(makeFeedback(counter));  // three lost
        send(makeFeedback(16, std::nanf("")));                               // irregular
        send(makeFeedback(16));                                              // not increasing
        send(makeFeedback(3));                                               // decreasing, as after a restart
        send(makeFeedback(4));
        for (const int size : {0, 59, 61, 108}) send(packets::noise(size, 1));
        program.signal(SIGTERM);
    });
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(says("lost 3, irregular 7")) << output;
    EXPECT_TRUE(says("7 feedback records")) << output;
}

TEST_F(Flyhost, NamesAFileThatCannotBeWrittenWhole) {
    run({"--orders", "2x9", "--csv", "/dev/full"}, [&](Program&, int) { send(makeFeedback(1)); });
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(says("/dev/full is not complete")) << output;
    EXPECT_FALSE(says("no feedback")) << output;
}

TEST_F(Flyhost, SignalsEndTheRunWithOrderZeroAndTheSummary) {
    for (const auto& [number, list] : {std::pair(SIGINT, "1,2*,0"), {SIGTERM, "1,2*"}}) {
        int answered = 0;
        run({"--orders", list}, [&, signal = number](Program& program, int order) {
            if (order == 2) send(makeFeedback(answered++));
            if (answered == 5) program.signal(signal);
        });
        EXPECT_EQ(status, 0) << output;
        ASSERT_GT(orders.size(), 2u);
        EXPECT_EQ(orders.back(), 0);
        EXPECT_EQ(orders[orders.size() - 2], 2) << "order 0 is sent once";
        EXPECT_TRUE(says("summary: ")) << output;
    }
}

TEST_F(Flyhost, NamesWrongUsageAndFailures) {
    LoopbackSocket taken;
    const std::string port = std::to_string(taken.getPort());
    const struct {
        Strings arguments;
        int status;
        std::string says;
    } cases[] = {
        {{"--help"}, 0, "usage: flyhost"},   {{"--rate"}, 2, "needs a value"},
        {{"--rate=60Hz"}, 2, "60Hz"},        {{"--records", "607"}, 2, "--records"},
        {{"--to", "host:10004"}, 2, "--to"}, {{"--orders", "2*,0*"}, 2, "--orders"},
        {{"--listen", port}, 1, port},       {{"--bind", "127.0.0.1:" + port}, 1, port},
    };
    for (const auto& c : cases) {
        run(c.arguments);
        EXPECT_EQ(status, c.status) << testing::PrintToString(c.arguments);
        EXPECT_TRUE(says(c.says)) << output;
    }
}

}  // namespace
