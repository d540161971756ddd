// The host link inside the logic: orders, notices, modes, reconnecting.
#include <arpa/inet.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <deque>

#include "LogicWorld.h"
#include "engine/memory/Allocator.h"
#include "engine/net/SocketUDP.h"

namespace {

class LinkTest : public LogicTest {
protected:
    void begin(const std::string& config = {}) {
        writeConfig(config);
        writeJet();
        addStart();
        start();
        logic().m_signal_2_reset.append([this](int value) { resets += std::to_string(value) + " "; });
    }

    std::string resets;
};

TEST_F(LinkTest, OrdersFollowTheirModelInEveryModeWithAnySequenceOfDatagrams) {
    for (const bool ignore : {false, true}) {
        end();
        resets.clear();
        begin(std::string(R"(, "ignore_order": )") + (ignore ? "true" : "false"));
        LoopbackSocket stranger;
        Random random(ignore ? 5 : 4);
        std::deque<std::vector<int>> waiting;  // orders of each datagram that the viewer has not taken
        int order = 0, expectedResets = 0;
        std::uint64_t records = 0, feedback = 0, sent = SocketUDP::getStats().sent;
        const auto check = [&] {
            printedBy([&] { frame(); });
            const LinkCounts& counts = logic().getLinkCounts();
            const bool received = counts.records > records;
            ASSERT_TRUE(!received || logic().getFlyMode() == DATA_FLY);
            while (records < counts.records) {
                ASSERT_FALSE(waiting.empty());
                for (const int next : waiting.front()) {
                    expectedResets += next == 1 && order != 1;
                    order = next;
                    ++records;
                }
                waiting.pop_front();
            }
            ASSERT_EQ(records, counts.records) << "a datagram's records come together";
            const bool feeds = ignore || order == 2;
            feedback += feeds;
            sent += static_cast<std::uint64_t>(feeds + received);  // one notice for the frame's records
            ASSERT_EQ(logic().getLastOrder(), order);
            ASSERT_EQ(counts.feedback, feedback);
            ASSERT_EQ(SocketUDP::getStats().sent, sent);
            ASSERT_EQ(resets.size(), 6u * static_cast<std::size_t>(expectedResets)) << resets;
        };
        for (int i = 0; i < 600 && !HasFatalFailure(); ++i) {
            if (random.getInt() % 8 == 0) {
                const auto mode = static_cast<FLY_MODE>(random.getInt() % 4);  // one that is none too
                printedBy([&] { logic().set_fly_mode(mode); });
                expectedResets += mode == AUTO_FLY;
            }
            for (auto datagrams = random.getInt() % 3; datagrams > 0; --datagrams) {
                packets::Bytes bytes;
                std::vector<int> orders;
                for (auto count = random.getInt() % 5; count > 0; --count) {
                    orders.push_back(static_cast<int>(random.getInt() % 5) - 1);
                    bytes = packets::join(bytes, packets::record(orders.back()));
                }
                const bool tail = random.getInt() % 3 == 0;
                if (tail) bytes = packets::join(bytes, packets::noise(1 + static_cast<int>(random.getInt() % 107), 1));
                const bool foreign = random.getInt() % 4 == 0;
                ASSERT_TRUE(foreign ? stranger.send(bytes, ports().viewer) : host().send(bytes));
                if (!foreign && !orders.empty()) waiting.push_back(orders);
            }
            check();
        }
        logic().set_fly_mode(DATA_FLY);
        for (int i = 0; i < 100000 && !waiting.empty() && !HasFatalFailure(); ++i) check();
        EXPECT_TRUE(waiting.empty());
        EXPECT_GT(expectedResets, 50);
    }
}

TEST_F(LinkTest, AFrameWithRecordsSendsOneNoticeOfZeros) {
    const std::string own = makeOwnAddress();
    host();
    begin(R"(, "local_ip": ")" + own + '"');
    apply({0, 1, 2, 0});
    apply({});
    apply({3});
    const auto notices = host().waitNotices(2, own);
    ASSERT_EQ(notices.size(), 2u);
    EXPECT_EQ(notices[0].bytes, packets::Bytes(packets::NOTICE_SIZE, 0));
}

TEST_F(LinkTest, ManualFlightStepsTheAircraftWhileTheHostsOrderIsKept) {
    begin(R"(, "fly_mode": 1)");
    EXPECT_EQ(logic().getFlyMode(), MANUAL_FLY);
    EXPECT_TRUE(logic().isReceiverReady()) << "opened before the mode was chosen";
    for (const FLY_MODE mode : {MANUAL_FLY, AUTO_FLY, DATA_FLY}) {
        logic().set_fly_mode(mode);
        const float elapsed = jet().getElapsedTime();
        frame(0.05);
        EXPECT_FLOAT_EQ(jet().getElapsedTime() - elapsed, mode == MANUAL_FLY ? 0.05f : 0.0f) << mode;
    }
}

TEST_F(LinkTest, APortInUseIsTriedAgainWhenDataFlightIsChosen) {
    {
        const LoopbackSocket other(ports().viewer);
        begin();
        EXPECT_FALSE(logic().isReceiverReady());
        EXPECT_TRUE(logic().isSenderReady());
        EXPECT_EQ(countLines("UdpRecvKit::init: failed to create upd"), 2) << "at the start and with the mode";
    }
    logic().set_fly_mode(DATA_FLY);
    EXPECT_TRUE(logic().isReceiverReady());
    deliver(packets::record(2), 1);
    const std::size_t blocks = jAllocator::get()->getBlockCount();
    logic().set_fly_mode(DATA_FLY);
    EXPECT_EQ(jAllocator::get()->getBlockCount(), blocks) << "a link that works is kept";
}

TEST_F(LinkTest, WorksAgainWhenTheHostReturns) {
    begin();
    deliver(packets::record(2), 1);
    clearLines();
    for (int round = 1; round <= 3; ++round) {
        closeHost();
        const std::uint64_t feedback = logic().getLinkCounts().feedback;
        for (int i = 0; i < 50; ++i) frame();
        EXPECT_EQ(logic().getLinkCounts().feedback, feedback + 50) << "the system takes what nobody receives";
        EXPECT_TRUE(lines().empty()) << lines().front();
        host();
        frame();
        EXPECT_EQ(host().waitFeedback(1).size(), 1u);
        deliver(packets::record(2), 1);
    }
}

TEST_F(LinkTest, AFloodOfStrangersDelaysTheHostByAFrameAtMost) {
    constexpr int FLOOD = 70000;
    begin();
    deliver(packets::record(0), 1);
    clearLines();
    SocketUDP::clearStats();
    const NetStats& stats = SocketUDP::getStats();
    LoopbackSocket stranger;
    for (int i = 0; i < 5; ++i) ASSERT_TRUE(host().sendOrder(i));
    for (int i = 0; i < FLOOD; ++i) ASSERT_TRUE(stranger.send({1}, ports().viewer));
    for (int i = 5; i < 10; ++i) ASSERT_TRUE(host().sendOrder(i));
    frame();
    EXPECT_GE(logic().getLastOrder(), 4);
    frame();
    frame();
    ASSERT_TRUE(host().sendOrder(10));  // drops are reported with the datagram after them
    for (int i = 0; i < 100000 && logic().getLastOrder() != 10; ++i) frame();
    EXPECT_EQ(stats.received + stats.refused + stats.dropped, FLOOD + 11u);
    EXPECT_EQ(logic().getLinkCounts().records, 1 + stats.received);
    EXPECT_EQ(stats.received, stats.dropped ? stats.received : 11u) << "without a drop all of the host's came";
    EXPECT_LE(lines().size(), 4u);
}

/// Brings the loopback interface of this process's network up with that address; "0.0.0.0" takes its address away.
void setLoopback(const char* address) {
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    request.ifr_flags = IFF_UP;
    ASSERT_EQ(ioctl(fd, SIOCSIFFLAGS, &request), 0);
    sockaddr_in at{};
    at.sin_family = AF_INET;
    inet_pton(AF_INET, address, &at.sin_addr);
    std::memcpy(&request.ifr_addr, &at, sizeof at);
    ASSERT_EQ(ioctl(fd, SIOCSIFADDR, &request), 0);
    close(fd);
}

TEST_F(LinkTest, SendsThatTheSystemRefusesAreCountedAndTheLinkRecovers) {
    const auto fly = [this] {
        setLoopback("127.0.0.1");
        begin();
        deliver(packets::record(2), 1);
        frame();
        const std::uint64_t feedback = logic().getLinkCounts().feedback, failed = SocketUDP::getStats().sendFailed;
        clearLines();
        setLoopback("0.0.0.0");
        for (int i = 0; i < 100; ++i) frame();
        EXPECT_EQ(logic().getLinkCounts().feedback, feedback);
        EXPECT_EQ(SocketUDP::getStats().sendFailed, failed + 100);
        EXPECT_EQ(logic().getLinkCounts().unsent, 100u);
        EXPECT_LT(lines().size(), 5u) << "not a line a frame";
        setLoopback("127.0.0.1");
        host().collectFeedback();
        frame();
        EXPECT_EQ(logic().getLinkCounts().feedback, feedback + 1);
        EXPECT_EQ(host().waitFeedback(1).size(), 1u);
        deliver(packets::record(0), 1);
    };
    // In a process with a network of its own.
    constexpr int NOT_ALLOWED = 77;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        if (unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) std::_Exit(NOT_ALLOWED);
        fly();
        std::fflush(nullptr);
        std::_Exit(HasFailure());
    }
    int status = -1;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == NOT_ALLOWED) GTEST_SKIP() << "the system gives no network namespace";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(LinkTest, MinusOneTakesRecordsFromAnyPortOfTheHost) {
    begin(R"(, "recv_from_flightSimulation_port": -1)");
    LoopbackSocket other;
    ASSERT_TRUE(other.send(packets::record(2), host().getViewerPort()));
    for (int i = 0; i < 100000 && logic().getLinkCounts().records == 0; ++i) frame();
    EXPECT_EQ(logic().getLinkCounts().records, 1u);
    deliver(packets::record(2), 1);
}

TEST_F(LinkTest, WhatCannotWorkIsTold) {
    // Nothing is sent while there is no order.
    for (const auto& [config, warnings] : {std::pair("", 0), {R"(, "flightSimulation_ip": "192.0.2.1")", 1}}) {
        end();
        begin(config);
        EXPECT_EQ(countLines("no record can arrive: \"local_ip\" 127.0.0.1 is a loopback address and "
                             "\"flightSimulation_ip\" 192.0.2.1"),
                  warnings);
    }
}

}  // namespace
