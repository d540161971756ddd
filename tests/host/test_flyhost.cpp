// The host program as a process, against a small viewer in the test: real sockets on free ports.
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

#include "support/FakeHost.h"
#include "support/Packets.h"
#include "support/Program.h"

namespace {

using packets::Bytes;
using packets::Feedback;
using Strings = std::vector<std::string>;

/// Hears the host's datagrams and answers each as the test wants, until the host has ended.
class Viewer {
public:
    using Answer = std::function<void(int order, Viewer& viewer)>;

    Strings arguments(const Strings& more) const {
        Strings out{"--to",     "127.0.0.1:" + std::to_string(m_socket.getPort()),
                    "--bind",   "127.0.0.1:0",
                    "--listen", std::to_string(m_listen)};
        out.insert(out.end(), more.begin(), more.end());
        return out;
    }

    void serve(Program& program, const Answer& answer) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        for (bool last = false; !last && std::chrono::steady_clock::now() < end;) {
            last = program.hasExited();  // what it sent before is still taken
            for (const Datagram& datagram : m_socket.wait(1, last ? 0.0 : 0.01)) {
                datagrams.push_back(datagram.bytes);
                if (datagram.bytes.size() >= 4) answer(packets::get<std::int32_t>(datagram.bytes, 0), *this);
            }
        }
    }

    void send(const Bytes& bytes) { m_socket.send(bytes, m_listen); }
    void send(const Feedback& feedback) { send(packets::writeFeedback(feedback)); }

    /// The order of each datagram's first record.
    std::vector<int> orders() const {
        std::vector<int> out;
        for (const Bytes& bytes : datagrams) out.push_back(packets::get<std::int32_t>(bytes, 0));
        return out;
    }

    std::vector<Bytes> datagrams;

private:
    LoopbackSocket m_socket;
    int m_listen = findFreePort();
};

void ignore(int, Viewer&) {}

Feedback makeFeedback(int counter) {
    Feedback feedback;
    feedback.counter = counter;
    for (int i = 0; i < 3; ++i) feedback.heights[i] = 20.25f + static_cast<float>(i);
    feedback.heightCg = -3.5f;
    feedback.collision = 1;
    return feedback;
}

/// Feedback with a rising counter while the order is 2.
Viewer::Answer answerRunning(int& sent) {
    return [&sent](int order, Viewer& viewer) {
        if (order == 2) viewer.send(makeFeedback(1000 + sent++));
    };
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(Flyhost, SendsTheOrdersOfItsListAndFailsWithoutFeedback) {
    const struct {
        const char* list;
        std::vector<int> orders;
    } cases[] = {{"1,2x3,0", {1, 2, 2, 2, 0}}, {"2", {2}}, {"-7,2147483647,5x2", {-7, 2147483647, 5, 5}}};
    for (const auto& c : cases) {
        Viewer viewer;
        Program program("flyhost", viewer.arguments({"--orders", c.list, "--rate", "2000"}));
        viewer.serve(program, ignore);
        EXPECT_EQ(program.getStatus(), 1) << program.getOutput();
        EXPECT_EQ(viewer.orders(), c.orders) << c.list;
        EXPECT_TRUE(contains(program.getOutput(), "no feedback came"));
    }
}

TEST(Flyhost, FillsEveryRecordOfADatagram) {
    for (const int records : {1, 3, 606}) {
        Viewer viewer;
        Program program("flyhost", viewer.arguments({"--orders=1,2", "--records", std::to_string(records), "--rate", "2000"}));
        viewer.serve(program, ignore);
        ASSERT_EQ(viewer.datagrams.size(), 2u);
        int number = 0;
        for (int i = 0; i < 2; ++i) {
            Bytes expected;
            for (int k = 0; k < records; ++k) {
                Bytes record = packets::record(i + 1);
                packets::put<std::int32_t>(record, 4, ++number);
                expected = packets::join(expected, record);
            }
            EXPECT_EQ(viewer.datagrams[static_cast<std::size_t>(i)], expected);
        }
    }
}

TEST(Flyhost, RunsForItsTimeAndWritesAFileLineForEachFeedback) {
    const auto folder = std::filesystem::temp_directory_path() / ("flyhost_test_" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string file = (folder / "feedback.csv").string();
    Viewer viewer;
    int answered = 0;
    Program program("flyhost", viewer.arguments({"--seconds", "1.2", "--rate", "100", "--csv", file}));
    viewer.serve(program, answerRunning(answered));
    EXPECT_EQ(program.getStatus(), 0) << program.getOutput();

    const std::vector<int> orders = viewer.orders();
    ASSERT_GT(orders.size(), 3u);
    EXPECT_EQ(orders.front(), 1);
    EXPECT_EQ(orders.back(), 0);
    EXPECT_EQ(std::count(orders.begin(), orders.end(), 2), static_cast<std::ptrdiff_t>(orders.size()) - 2);

    const std::string output = program.getOutput();
    EXPECT_TRUE(contains(output, " s: sent ")) << output;
    EXPECT_TRUE(contains(output, "heights 20.25 21.25 22.25 cg -3.50 collision 1 latency ms min "));
    EXPECT_TRUE(contains(output, "lost 0, irregular 0"));

    std::ifstream in(file);
    std::string line;
    int lines = 0;
    ASSERT_TRUE(std::getline(in, line));
    const auto columns = std::count(line.begin(), line.end(), ',');
    for (; std::getline(in, line); ++lines) {
        EXPECT_EQ(std::count(line.begin(), line.end(), ','), columns);
        EXPECT_TRUE(contains(line, std::to_string(1000 + lines).append(",20.2500,21.2500,22.2500,-3.5000,"))) << line;
    }
    EXPECT_TRUE(contains(output, std::to_string(lines).append(" feedback records"))) << output;
    EXPECT_GT(lines, 0);
    EXPECT_LE(lines, answered);
    std::filesystem::remove_all(folder);
}

TEST(Flyhost, CountsWhatIsLostAndWhatIsIrregular) {
    Viewer viewer;
    Program program("flyhost", viewer.arguments({"--orders", "2*", "--rate", "50"}));
    bool sent = false;
    viewer.serve(program, [&](int, Viewer& to) {
        if (sent) return;
        sent = true;
        Feedback broken = makeFeedback(16);
        broken.heights[1] = std::nanf("");
        for (const int counter : {10, 11, 15}) to.send(makeFeedback(counter));  // three lost
        to.send(broken);                                                        // irregular
        to.send(makeFeedback(16));                                              // not rising
        to.send(makeFeedback(3));                                               // falling, as after a new start
        to.send(makeFeedback(4));
        for (const int size : {0, 59, 61, 108}) to.send(Bytes(static_cast<std::size_t>(size), 0));
        program.signal(SIGTERM);
    });
    EXPECT_EQ(program.getStatus(), 0);
    EXPECT_TRUE(contains(program.getOutput(), "lost 3, irregular 7")) << program.getOutput();
    EXPECT_TRUE(contains(program.getOutput(), "7 feedback records"));
}

TEST(Flyhost, SignalsEndTheRunWithOrderZeroAndTheSummary) {
    for (const int number : {SIGINT, SIGTERM}) {
        for (const char* list : {"1,2*,0", "1,2*"}) {
            Viewer viewer;
            int answered = 0;
            Program program("flyhost", viewer.arguments({"--orders", list}));
            viewer.serve(program, [&](int order, Viewer& to) {
                answerRunning(answered)(order, to);
                if (answered == 5) program.signal(number);
            });
            EXPECT_EQ(program.getStatus(), 0) << program.getOutput();
            ASSERT_FALSE(viewer.datagrams.empty());
            EXPECT_EQ(viewer.orders().back(), 0);
            EXPECT_EQ(viewer.orders()[viewer.orders().size() - 2], 2) << "order 0 is sent once";
            EXPECT_TRUE(contains(program.getOutput(), "summary: "));
        }
    }
}

TEST(Flyhost, NamesWrongUsageAndFailures) {
    LoopbackSocket taken;
    const std::string port = std::to_string(taken.getPort());
    const struct {
        Strings arguments;
        int status;
        std::string says;
    } cases[] = {
        {{"--help"}, 0, "usage: flyhost"},
        {{"--what", "1"}, 2, "--what"},
        {{"extra"}, 2, "extra"},
        {{"--rate"}, 2, "needs a value"},
        {{"--rate", "0"}, 2, "--rate"},
        {{"--rate", "nan"}, 2, "--rate"},
        {{"--rate=60Hz"}, 2, "60Hz"},
        {{"--records", "0"}, 2, "--records"},
        {{"--records", "607"}, 2, "--records"},
        {{"--to", "127.0.0.1"}, 2, "--to"},
        {{"--to", "host:10004"}, 2, "--to"},
        {{"--to", "127.0.0.1:0"}, 2, "--to"},
        {{"--listen", "65536"}, 2, "--listen"},
        {{"--seconds", "-1"}, 2, "--seconds"},
        {{"--orders", ""}, 2, "--orders"},
        {{"--orders", "1,,0"}, 2, "--orders"},
        {{"--orders", "2*,0*"}, 2, "--orders"},
        {{"--orders", "2x0"}, 2, "--orders"},
        {{"--orders", "2147483648"}, 2, "--orders"},
        {{"--bind", "127.0.0.1:0", "--listen", port}, 1, port},
        {{"--bind", "127.0.0.1:" + port, "--listen", "0"}, 1, port},
        {{"--bind", "127.0.0.1:0", "--listen", "0", "--csv", "/nowhere/at/all.csv"}, 1, "/nowhere/at/all.csv"},
    };
    for (const auto& c : cases) {
        Viewer viewer;
        Program program("flyhost", c.arguments);
        viewer.serve(program, ignore);
        EXPECT_EQ(program.getStatus(), c.status) << testing::PrintToString(c.arguments);
        EXPECT_TRUE(contains(program.getOutput(), c.says)) << program.getOutput();
    }
}

}  // namespace
