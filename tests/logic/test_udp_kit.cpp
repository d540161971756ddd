// The host link's endpoints: records off the wire byte for byte, odd datagrams, and what init leaves behind.
#include "src/kit/UdpDataKit.h"

#include <engine/memory/Allocator.h>
#include <engine/text/Log.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/FakeHost.h"
#include "support/Packets.h"

namespace {

using packets::Bytes;

class UdpKit : public testing::Test {
protected:
    void SetUp() override {
        SocketUDP::clearStats();
        jLog::setSink([this](jLog::Level level, const jString& line) {
            if (level != jLog::MESSAGE) m_log.push_back(line);
        });
    }
    void TearDown() override {
        jLog::setSink({});
        SocketUDP::clearStats();
    }

    /// The receiver on a free port, the host's sending port as its filter.
    void open() {
        ASSERT_TRUE(m_kit.init("127.0.0.1", 0, "127.0.0.1", m_host.getSendPort()));
        m_host.setViewerPort(m_kit.getSocket()->getLocalPort());
    }

    FakeHost m_host{1};
    UdpRecvKit m_kit;
    std::vector<jString> m_log;
};

TEST_F(UdpKit, AFieldOfEachKindComesFromItsOwnBytes) {
    open();
    Bytes wire(packets::RECORD_SIZE);
    packets::put<std::int32_t>(wire, 0, -2);
    packets::put(wire, 16, 2.5f);
    packets::put(wire, 28, -16.83858673486975);
    packets::put(wire, 88, 1e6 + 1.0 / 3.0);
    packets::put<std::int32_t>(wire, 104, INT32_MIN + 2);
    // Full bytes round about it, so that a field read from a neighbour's bytes shows.
    const Bytes full(packets::RECORD_SIZE, 0xFF);
    ASSERT_TRUE(m_host.send(packets::join(packets::join(full, wire), full)));
    ASSERT_EQ(m_kit.receive(), 3);
    const UdpRecvData r = m_kit[1];  // its fields are packed: sums, because no reference may bind to one
    EXPECT_EQ(r.nSimOrder, -2);
    EXPECT_EQ(r.recvFloat3 + 0, 2.5f);
    EXPECT_EQ(r.recvDouble2 + 0, -16.83858673486975);
    EXPECT_EQ(r.recvDoubles[6] + 0, 1e6 + 1.0 / 3.0);
    EXPECT_EQ(r.recvWord4 + 0, INT32_MIN + 2);
    EXPECT_EQ(m_kit[0].targets[0] | m_kit[1].lights | m_kit[2].ships[1], 0);
}

TEST_F(UdpKit, NoticesReachTheGroupThroughTheInterfaceOfTheirAddress) {
    const std::string own = makeOwnAddress();
    UdpSendKit sender;
    ASSERT_TRUE(sender.init(FakeHost::GROUP, FakeHost::GROUP_PORT, own));
    const Bytes notice(packets::NOTICE_SIZE, 0xA7);
    ASSERT_EQ(sender.write(notice.data(), packets::NOTICE_SIZE), packets::NOTICE_SIZE);
    const auto notices = m_host.waitNotices(1, own);
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_EQ(notices[0].bytes, notice);
    EXPECT_EQ(notices[0].port, sender.getSocket()->getLocalPort());
}

TEST_F(UdpKit, TakesWholeRecordsOfAnyDatagramAndDropsTheTail) {
    open();
    LoopbackSocket otherPort, otherAddress(0, "127.0.0.2");
    LoopbackSocket* const strangers[] = {&otherPort, &otherAddress};
    for (const int size : {0, 107, 108, 109, 216, 65507}) {
        const Bytes bytes = packets::noise(size, 5);
        for (LoopbackSocket* stranger : strangers) ASSERT_TRUE(stranger->send(bytes, m_host.getViewerPort()));
        EXPECT_EQ(m_kit.receive(), 0) << size;
        const std::uint64_t partial = m_kit.getPartialCount();
        m_log.clear();
        for (int i = 0; i < 2; ++i) ASSERT_TRUE(m_host.send(bytes));
        ASSERT_EQ(m_kit.receive(), size / 108 * 2) << size;
        EXPECT_EQ(m_kit.getPartialCount() - partial, size % 108 ? 2u : 0u) << size;
        const auto named = std::count_if(m_log.begin(), m_log.end(), [](const jString& line) {
            return line.find("end within a record") != jString::npos;
        });
        EXPECT_EQ(named, size % 108 ? 1 : 0) << size << ": once a frame";
        for (int i = 0; i < size / 108; ++i) {
            ASSERT_EQ(std::memcmp(&m_kit[i], bytes.data() + 108 * i, 108), 0) << size;
        }
        m_kit.clear();
    }
    EXPECT_EQ(SocketUDP::getStats().refused, 12u);
    EXPECT_EQ(SocketUDP::getStats().empty, 2u);

    // The receiver for anyone takes 4096 bytes of a datagram.
    ASSERT_TRUE(m_kit.init(0));
    const Bytes bytes = packets::noise(100 * 108, 3);
    for (int i = 1; i <= 2; ++i) {
        ASSERT_TRUE(otherPort.send(bytes, m_kit.getSocket()->getLocalPort()));
        EXPECT_EQ(m_kit.receive(), 37 * i);
    }
    for (int i = 0; i < 37; ++i) ASSERT_EQ(std::memcmp(&m_kit[37 + i], bytes.data() + 108 * i, 108), 0);
}

TEST_F(UdpKit, AFailedInitIsLoggedAndLeavesNothing) {
    open();
    const int taken = m_host.getViewerPort();
    const std::size_t blocks = jAllocator::get()->getBlockCount();
    UdpRecvKit kit;
    for (const auto& [local, port] : {std::pair<jString, int>("127.0.0.1", taken), {"999.1.1.1", 0}}) {
        m_log.assign(1, "");
        EXPECT_FALSE(kit.init(local, port, "127.0.0.1", 0)) << local << ":" << port;
        EXPECT_EQ(kit.getSocket(), nullptr);
        EXPECT_EQ(kit.receive(), 0);
        EXPECT_NE(m_log.back().find("UdpRecvKit::init: failed to create upd"), jString::npos) << m_log.back();
    }
    EXPECT_FALSE(kit.init(taken));
    UdpSendKit sender;
    EXPECT_FALSE(sender.init("host", 10005));
    EXPECT_EQ(sender.write("x", 1), 0);
    EXPECT_NE(m_log.back().find("UdpSendKit::init: failed to create udp"), jString::npos) << m_log.back();
    EXPECT_EQ(jAllocator::get()->getBlockCount(), blocks);
}

}  // namespace
