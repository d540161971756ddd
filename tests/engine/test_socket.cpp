// The datagram socket over the loopback interface, with real senders at the other end.
#include <engine/net/SocketUDP.h>
#include <engine/text/Log.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "support/FakeHost.h"
#include "support/Packets.h"

namespace {

using packets::Bytes;

class Socket : public testing::Test {
protected:
    Socket() { SocketUDP::clearStats(); }
    ~Socket() override { SocketUDP::clearStats(); }

    /// Listens on a free port of 127.0.0.1.
    static bool listen(SocketUDP& socket, const jString& host, int hostPort, int port = 0) {
        return socket.create() && socket.setRecvIP(host) && socket.setRecvPort(hostPort) &&
               socket.bind("127.0.0.1", port) && socket.recv(65507) && socket.nonblock();
    }

    static Bytes readOne(SocketUDP& socket, int capacity = 70000) {
        Bytes room(static_cast<std::size_t>(capacity), 0xEE);
        room.resize(static_cast<std::size_t>(socket.read(room.data(), 1, capacity)));
        return room;
    }

    static const NetStats& stats() { return SocketUDP::getStats(); }
};

TEST_F(Socket, ReadsDatagramsWholeAndInOrderAcrossSizes) {
    SocketUDP socket;
    LoopbackSocket host;
    ASSERT_TRUE(listen(socket, "127.0.0.1", host.getPort()));
    // Small and large ones take different ways inside; the order must hold where the way changes.
    std::vector<Bytes> sent;
    for (const int size : {1, 60, 108, 65507, 1, 9000, 65448, 2, 8191, 8192, 8193, 3, 3, 65507, 4}) {
        sent.push_back(packets::noise(size, static_cast<unsigned>(sent.size())));
    }
    for (int i = 0; i < 300; ++i) sent.push_back(packets::noise(1 + i, static_cast<unsigned>(i)));
    for (std::size_t begin = 0; begin < sent.size(); begin += 5) {
        const std::size_t end = std::min(begin + 5, sent.size());
        for (std::size_t i = begin; i < end; ++i) ASSERT_TRUE(host.send(sent[i], socket.getLocalPort()));
        for (std::size_t i = begin; i < end; ++i) ASSERT_EQ(readOne(socket), sent[i]) << "datagram " << i;
        ASSERT_TRUE(readOne(socket).empty());
    }
    EXPECT_EQ(stats().received, sent.size());
}

TEST_F(Socket, CutsADatagramToTheRoomAndGoesOnWithTheNext) {
    SocketUDP socket;
    LoopbackSocket host;
    ASSERT_TRUE(listen(socket, "127.0.0.1", 0));
    const Bytes whole = packets::noise(20000, 7);
    for (int round = 0; round < 2; ++round) {  // the second finds the socket expecting large datagrams
        for (int i = 0; i < 2; ++i) ASSERT_TRUE(host.send(whole, socket.getLocalPort()));
        Bytes room(70000, 0xEE);
        EXPECT_EQ(socket.read(room.data(), 1, 64), 64);
        EXPECT_EQ(std::memcmp(room.data(), whole.data(), 64), 0);
        EXPECT_EQ(room[64], 0xEE);
        EXPECT_EQ(readOne(socket), whole);
    }
}

TEST_F(Socket, TakesOnlyTheHostsDatagrams) {
    LoopbackSocket host, otherPort, otherAddress(0, "127.0.0.2");
    LoopbackSocket* const senders[] = {&host, &otherPort, &otherAddress};
    const struct {
        jString address;
        int port;
        std::array<bool, 3> taken;  ///< of each sender
    } cases[] = {{"127.0.0.1", host.getPort(), {true, false, false}},
                 {"127.0.0.1", 0, {true, true, false}},
                 {"127.0.0.2", 0, {false, false, true}}};
    for (const auto& c : cases) {
        SocketUDP::clearStats();
        SocketUDP socket;
        ASSERT_TRUE(listen(socket, c.address, c.port));
        unsigned accepted = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            for (const int size : {0, 10, 30000}) {
                ASSERT_TRUE(senders[i]->send(packets::noise(size, 3), socket.getLocalPort()));
                EXPECT_EQ(readOne(socket).size(), c.taken[i] ? static_cast<std::size_t>(size) : 0u);
            }
            accepted += c.taken[i];
        }
        EXPECT_EQ(stats().received, 2 * accepted);
        EXPECT_EQ(stats().empty, accepted);
        EXPECT_EQ(stats().refused, 3 * (3 - accepted));
    }
}

TEST_F(Socket, PortFilterIsOffWhereTheHostIsTheReceiversOwnEndpoint) {
    LoopbackSocket sender, elsewhere(0, "127.0.0.2");
    for (const jString& local : {jString("127.0.0.1"), jString("0.0.0.0")}) {
        SocketUDP socket;
        ASSERT_TRUE(socket.create() && socket.setRecvIP("127.0.0.1") && socket.bind(local, 0) && socket.recv(65507));
        const int port = socket.getLocalPort();
        ASSERT_TRUE(socket.setRecvPort(port) && sender.send(Bytes(5, 1), port));
        EXPECT_EQ(readOne(socket).size(), 5u) << local;
        ASSERT_TRUE(elsewhere.send(Bytes(6, 1), port));
        EXPECT_TRUE(readOne(socket).empty()) << local;
    }
}

TEST_F(Socket, RefusesWhatCannotBeAnAddressOrAPort) {
    SocketUDP socket;
    EXPECT_FALSE(socket.bind("127.0.0.1", 0)) << "not created";
    ASSERT_TRUE(socket.create());
    for (const char* address : {"", "999.1.1.1", "host", "127.0.0.1 ", "127.1", "::1", "0.0.0.0"}) {
        EXPECT_FALSE(socket.setRecvIP(address)) << address;
        EXPECT_FALSE(socket.setSendIP(address)) << address;
    }
    EXPECT_FALSE(socket.setRecvIP("224.1.1.1")) << "nobody sends from a group";
    for (const int port : {-1, 65536, 1 << 30}) {
        EXPECT_FALSE(socket.setRecvPort(port));
        EXPECT_FALSE(socket.setSendPort(port));
        EXPECT_FALSE(socket.bind(port));
    }
}

TEST_F(Socket, WriteMovesOneDatagramUpToTheStatedSize) {
    LoopbackSocket host;
    SocketUDP socket;
    ASSERT_TRUE(socket.create() && socket.setSendIP("127.0.0.1") && socket.setSendPort(host.getPort()) &&
                socket.send(65507) && socket.bind());
    Bytes large = packets::noise(65508, 4);
    EXPECT_EQ(socket.write(large.data(), 1, 60), 60);
    EXPECT_EQ(socket.write(large.data(), 30, 2), 60);
    EXPECT_EQ(socket.write(large.data(), 1, 65507), 65507);
    EXPECT_EQ(socket.write(large.data(), 65508, 1), 0);
    const auto got = host.wait(3);
    ASSERT_EQ(got.size(), 3u);
    EXPECT_EQ(got[0].bytes, Bytes(large.begin(), large.begin() + 60));
    EXPECT_EQ(got[1].bytes, got[0].bytes);
    large.pop_back();
    EXPECT_EQ(got[2].bytes, large);
    EXPECT_EQ(stats().sendFailed, 1u);
}

TEST_F(Socket, TheFirstRefusalNamesTheSenderAndWhoIsAccepted) {
    std::vector<std::string> lines;
    jLog::setSink([&](jLog::Level, const jString& line) { lines.push_back(line); });
    LoopbackSocket host, other;
    SocketUDP socket;
    ASSERT_TRUE(listen(socket, "127.0.0.1", host.getPort()));
    for (int i = 0; i < 5; ++i) {
        ASSERT_TRUE(other.send(Bytes(5, 1), socket.getLocalPort()));
        EXPECT_TRUE(readOne(socket).empty());
    }
    jLog::setSink({});
    const std::string text = lines.empty() ? "" : lines[0];
    EXPECT_NE(text.find("refused: 1, the last from 127.0.0.1:" + std::to_string(other.getPort()) + ";"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("accepted are those from 127.0.0.1:" + std::to_string(host.getPort())), std::string::npos)
        << text;
    EXPECT_EQ(lines.size(), 1u) << "within a second";
}

}  // namespace
