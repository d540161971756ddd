// The host link inside the logic: orders, notices, modes, reconnecting.
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

TEST_F(LinkTest, EveryChangeOfTheOrderTakesEffectOnce) {
    const struct {
        std::vector<std::vector<int>> frames;
        int resets, last;
    } cases[] = {{{{1}, {1}, {1, 1}}, 1, 1}, {{{2}, {1}, {2}}, 1, 2}, {{{2, 1, 2}}, 1, 2}, {{{1}, {2}, {1}}, 2, 1},
                 {{{1, 2, 1, 2, 1}}, 3, 1},  {{{2}, {0}}, 0, 0},      {{{7}, {-1}}, 0, -1}};
    for (const auto& c : cases) {
        end();
        resets.clear();
        begin();
        for (const auto& orders : c.frames) {
            packets::Bytes datagram;
            for (const int order : orders) datagram = packets::join(datagram, packets::record(order));
            deliver(datagram, static_cast<int>(orders.size()));
        }
        std::string expected;
        for (int i = 0; i < c.resets; ++i) expected += "25 26 ";
        EXPECT_EQ(resets, expected);
        EXPECT_EQ(logic().getLastOrder(), c.last);
    }
}

TEST_F(LinkTest, AFrameWithRecordsSendsOneNoticeOfZeros) {
    begin();
    const auto sentBy = [](auto call) {
        const std::uint64_t before = SocketUDP::getStats().sent;
        call();
        return SocketUDP::getStats().sent - before;
    };
    EXPECT_EQ(sentBy([&] { apply({0, 1, 2, 0}); }), 1u);
    EXPECT_EQ(sentBy([&] { apply({}); }), 0u);
    EXPECT_EQ(sentBy([&] { frame(); }), 0u);
    const auto notices = host().waitNotices(1);
    ASSERT_FALSE(notices.empty());
    EXPECT_EQ(notices[0].bytes, packets::Bytes(packets::NOTICE_SIZE, 0));
}

TEST_F(LinkTest, FeedbackRunsFromOrderTwoToTheFrameThatEndsIt) {
    begin();
    deliver(packets::record(2), 1);
    EXPECT_EQ(logic().getLinkCounts().feedback, 1u);
    frame();
    EXPECT_EQ(logic().getLinkCounts().feedback, 2u);
    ASSERT_TRUE(host().sendOrder(0));
    std::uint64_t before = 0;
    for (int i = 0; i < 100000 && logic().getLinkCounts().records < 2; ++i) {
        before = logic().getLinkCounts().feedback;
        frame();
    }
    EXPECT_EQ(logic().getLastOrder(), 0);
    EXPECT_EQ(logic().getLinkCounts().feedback, before);
}

TEST_F(LinkTest, OnlyDataFlightReadsTheSocketAndTheOrderOutlivesTheMode) {
    begin(R"(, "fly_mode": 1)");
    EXPECT_EQ(logic().getFlyMode(), MANUAL_FLY);
    EXPECT_TRUE(logic().isReceiverReady()) << "opened before the mode was chosen";
    logic().set_fly_mode(DATA_FLY);
    deliver(packets::record(2), 1);
    for (const FLY_MODE mode : {MANUAL_FLY, AUTO_FLY, static_cast<FLY_MODE>(9)}) {
        logic().set_fly_mode(mode);
        ASSERT_TRUE(host().sendOrder(0));
        const LinkCounts before = logic().getLinkCounts();
        const float elapsed = jet().getElapsedTime();
        frame(0.05);
        EXPECT_EQ(logic().getLinkCounts().records, before.records) << mode;
        EXPECT_EQ(logic().getLinkCounts().feedback, before.feedback + 1) << mode;
        EXPECT_FLOAT_EQ(jet().getElapsedTime() - elapsed, mode == MANUAL_FLY ? 0.05f : 0.0f) << mode;
    }
    EXPECT_EQ(resets, "25 26 ") << "automatic flight starts from a reset scene";
    logic().set_fly_mode(DATA_FLY);
    for (int i = 0; i < 100000 && logic().getLinkCounts().records < 4; ++i) frame();
    EXPECT_EQ(logic().getLinkCounts().records, 4u) << "they waited in the socket";
}

TEST_F(LinkTest, APortInUseIsTriedAgainWhenDataFlightIsChosen) {
    {
        const LoopbackSocket other(host().getViewerPort());
        begin();
        EXPECT_FALSE(logic().isReceiverReady());
        EXPECT_TRUE(logic().isSenderReady());
        EXPECT_EQ(countLines("UdpRecvKit::init: failed to create upd"), 2) << "at the start and with the mode";
        frame();
    }
    logic().set_fly_mode(DATA_FLY);
    EXPECT_TRUE(logic().isReceiverReady());
    deliver(packets::record(2), 1);
    const std::size_t blocks = jAllocator::get()->getBlockCount();
    logic().set_fly_mode(DATA_FLY);
    EXPECT_EQ(jAllocator::get()->getBlockCount(), blocks) << "a link that works is kept";
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
    // An address that nothing can be sent to.
    end();
    begin(R"(, "flightSimulation_ip": "0.0.0.0", "ignore_order": true)");
    for (int i = 0; i < 3; ++i) frame();
    EXPECT_EQ(logic().getLinkCounts().unsent, 3u);
    EXPECT_EQ(logic().getLinkCounts().feedback, 0u);
}

}  // namespace
