// The receiver of the host link compared with the floor: a bare recvmmsg loop over the same datagrams. Both drain a
// queue that was filled before, in turn, so that a busy machine slows both alike; the medians are compared. A third
// loop also copies each record into an element of its own, which any receiver that returns records must do.
//
// Usage: bench_link [ROUNDS]
#include <engine/text/Log.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Bench.h"
#include "CountAllocations.h"
#include "src/kit/UdpDataKit.h"

namespace {

constexpr double ALLOWED_RATIO = 1.3;
constexpr int LARGEST = 65507;
constexpr int FLOOR_BATCH = 64;
/// Small datagrams per round: the capacity of a queue of default size, which needs no privileges.
constexpr int QUEUED = 128;

sockaddr_in onLoopback(int port) {
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(static_cast<std::uint16_t>(port));
    at.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return at;
}

/// The minimum of receiving: no check of the sender, no count of losses, no parsing.
class Floor {
public:
    Floor() : m_fd(socket(AF_INET, SOCK_DGRAM, 0)), m_room(new unsigned char[FLOOR_BATCH * std::size_t{65536}]) {
        sockaddr_in at = onLoopback(0);
        socklen_t length = sizeof at;
        const int queue = 64 << 20;
        if (setsockopt(m_fd, SOL_SOCKET, SO_RCVBUFFORCE, &queue, sizeof queue) != 0) {
            setsockopt(m_fd, SOL_SOCKET, SO_RCVBUF, &queue, sizeof queue);
        }
        if (bind(m_fd, reinterpret_cast<sockaddr*>(&at), sizeof at) != 0) std::perror("bind");
        getsockname(m_fd, reinterpret_cast<sockaddr*>(&at), &length);
        port = ntohs(at.sin_port);
        for (std::size_t i = 0; i < FLOOR_BATCH; ++i) {
            m_parts[i] = {m_room.get() + i * 65536, LARGEST};
            m_headers[i].msg_hdr.msg_iov = &m_parts[i];
            m_headers[i].msg_hdr.msg_iovlen = 1;
        }
    }
    ~Floor() { close(m_fd); }

    /// Returns the number of datagrams received.
    int drain() {
        int taken = 0;
        for (int n = 0; (n = receive()) > 0;) taken += n;
        return taken;
    }

    /// The same, with a copy of each record to the next element of `out`.
    int drainAndCopy(UdpRecvData* out) {
        int taken = 0;
        for (int n = 0; (n = receive()) > 0; taken += n) {
            for (int i = 0; i < n; ++i) {
                const auto* from = static_cast<const unsigned char*>(m_parts[i].iov_base);
                for (const auto* end = from + m_headers[i].msg_len; from != end; from += UDP_RECV_WIRE_SIZE) {
                    std::memcpy(static_cast<void*>(out++), from, UDP_RECV_WIRE_SIZE);
                }
            }
        }
        return taken;
    }

    int port = 0;

private:
    int receive() { return recvmmsg(m_fd, m_headers, FLOOR_BATCH, MSG_DONTWAIT, nullptr); }

    int m_fd;
    std::unique_ptr<unsigned char[]> m_room;
    iovec m_parts[FLOOR_BATCH] = {};
    mmsghdr m_headers[FLOOR_BATCH] = {};
};

class Sender {
public:
    explicit Sender(int records_each) : m_fd(socket(AF_INET, SOCK_DGRAM, 0)) {
        m_bytes.resize(static_cast<std::size_t>(records_each * UDP_RECV_WIRE_SIZE));
        for (std::size_t i = 0; i < m_bytes.size(); ++i) m_bytes[i] = static_cast<unsigned char>(i * 7);
    }
    ~Sender() { close(m_fd); }

    void fill(int port, int datagrams) {
        const sockaddr_in to = onLoopback(port);
        for (int i = 0; i < datagrams; ++i) {
            sendto(m_fd, m_bytes.data(), m_bytes.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
        }
    }

private:
    int m_fd;
    std::vector<unsigned char> m_bytes;
};

/// The number of datagrams that both queues can hold, at most `wanted`.
int findQueueLength(UdpRecvKit& kit, Floor& floor, Sender& sender, int records_each, int wanted) {
    for (int datagrams = wanted; datagrams > 1; datagrams /= 2) {
        sender.fill(kit.getSocket()->getLocalPort(), datagrams);
        sender.fill(floor.port, datagrams);
        const int records = kit.receive();
        kit.clear();
        if (floor.drain() == datagrams && records == datagrams * records_each) return datagrams;
    }
    return 1;
}

bool measure(int records_each, int wanted, int rounds) {
    UdpRecvKit kit;
    Floor floor;
    Sender sender(records_each);
    {
        const bench::Quiet quiet;
        if (!kit.init("127.0.0.1", 0, "127.0.0.1", 0)) return false;
    }
    const int datagrams = findQueueLength(kit, floor, sender, records_each, wanted);
    const int records = datagrams * records_each;
    std::vector<UdpRecvData> elements(static_cast<std::size_t>(records));
    std::vector<double> ours, least, copying;
    for (std::vector<double>* series : {&ours, &least, &copying}) series->reserve(static_cast<std::size_t>(rounds));
    bool whole = true;
    const long allocations_before = g_allocations;
    for (int i = 0; i < rounds; ++i) {
        sender.fill(kit.getSocket()->getLocalPort(), datagrams);
        ours.push_back(bench::seconds([&] { whole &= kit.receive() == records; }) / records);
        kit.clear();
        sender.fill(floor.port, datagrams);
        least.push_back(bench::seconds([&] { whole &= floor.drain() == datagrams; }) / records);
        sender.fill(floor.port, datagrams);
        copying.push_back(bench::seconds([&] { whole &= floor.drainAndCopy(elements.data()) == datagrams; }) / records);
    }
    const long allocations = g_allocations - allocations_before;
    const std::string what = "a record, " + std::to_string(records_each) + " a datagram";
    const double cost = bench::median(ours);
    bench::printRow((what + " / bare").c_str(), {cost, bench::median(least)}, ALLOWED_RATIO);
    bench::printRow((what + " / bare and copied once").c_str(), {cost, bench::median(copying)}, bench::NO_LIMIT);
    if (!whole) std::printf("INCOMPLETE: datagrams were lost\n");
    if (allocations > 0) std::printf("%ld allocations in %d rounds\n", allocations, rounds);
    return whole && allocations == 0;
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 400;
    bench::printHeader();
    bool ok = measure(1, QUEUED, rounds);
    ok = measure(10, QUEUED, rounds) && ok;
    ok = measure(606, QUEUED / 8, rounds) && ok;
    return ok ? 0 : 1;
}
