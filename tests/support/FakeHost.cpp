// Loopback sockets of the host for tests.
#include "support/FakeHost.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <stdexcept>

namespace {

sockaddr_in toAddress(const std::string& address, int port) {
    sockaddr_in out{};
    out.sin_family = AF_INET;
    out.sin_port = htons(static_cast<std::uint16_t>(port));
    if (inet_pton(AF_INET, address.c_str(), &out.sin_addr) != 1) throw std::runtime_error("bad address " + address);
    return out;
}

}  // namespace

LoopbackSocket::LoopbackSocket(int port, const std::string& address, bool shared) {
    m_fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    if (shared) setsockopt(m_fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const int queue = 8 << 20;
    setsockopt(m_fd, SOL_SOCKET, SO_RCVBUF, &queue, sizeof queue);
    sockaddr_in at = toAddress(address, port);
    socklen_t length = sizeof at;
    if (bind(m_fd, reinterpret_cast<sockaddr*>(&at), sizeof at) != 0 ||
        getsockname(m_fd, reinterpret_cast<sockaddr*>(&at), &length) != 0) {
        close(m_fd);
        throw std::runtime_error("cannot bind " + address + ":" + std::to_string(port));
    }
    m_port = ntohs(at.sin_port);
}

LoopbackSocket::~LoopbackSocket() {
    close(m_fd);
}

bool LoopbackSocket::send(const packets::Bytes& bytes, int port, const std::string& address) {
    const sockaddr_in to = toAddress(address, port);
    const ssize_t sent = sendto(m_fd, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
    return sent == static_cast<ssize_t>(bytes.size());
}

std::vector<Datagram> LoopbackSocket::drain() {
    std::vector<Datagram> out;
    packets::Bytes room(65536);
    for (;;) {
        sockaddr_in from{};
        socklen_t length = sizeof from;
        const ssize_t n =
            recvfrom(m_fd, room.data(), room.size(), MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&from), &length);
        if (n < 0) return out;
        char text[INET_ADDRSTRLEN] = "";
        inet_ntop(AF_INET, &from.sin_addr, text, sizeof text);
        out.push_back({packets::Bytes(room.begin(), room.begin() + n), text, ntohs(from.sin_port)});
    }
}

std::vector<Datagram> LoopbackSocket::wait(int count, double seconds) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    std::vector<Datagram> out;
    while (static_cast<int>(out.size()) < count) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0) break;
        pollfd entry{m_fd, POLLIN, 0};
        poll(&entry, 1, static_cast<int>(left));
        for (Datagram& datagram : drain()) out.push_back(std::move(datagram));
    }
    return out;
}

FakeHost::FakeHost(int viewerPort, int sendPort, int feedbackPort)
    : m_sender(sendPort), m_feedback(feedbackPort), m_notices(GROUP_PORT, GROUP, true), m_viewer_port(viewerPort) {
    ip_mreq group{};
    inet_pton(AF_INET, GROUP, &group.imr_multiaddr);
    group.imr_interface.s_addr = htonl(INADDR_LOOPBACK);
    if (setsockopt(m_notices.getHandle(), IPPROTO_IP, IP_ADD_MEMBERSHIP, &group, sizeof group) != 0) {
        throw std::runtime_error("cannot join the multicast group on the loopback interface");
    }
}

std::vector<Datagram> FakeHost::waitNotices(int count, const std::string& sender, double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    std::vector<Datagram> out;
    while (static_cast<int>(out.size()) < count) {
        const std::chrono::duration<double> left = end - std::chrono::steady_clock::now();
        if (left.count() <= 0.0) break;
        for (Datagram& datagram : m_notices.wait(1, left.count())) {
            if (datagram.address == sender) out.push_back(std::move(datagram));
        }
    }
    return out;
}

int findFreePort() {
    constexpr int FIRST = 12000, COUNT = 20000;
    static int offset = getpid();
    for (int i = 0; i < COUNT; ++i) {
        const int port = FIRST + offset++ % COUNT;
        // The reservation is a name in the abstract namespace. The system frees it when the process ends.
        sockaddr_un name{};
        name.sun_family = AF_UNIX;
        const std::string text = "deckview_test_port_" + std::to_string(port);
        text.copy(name.sun_path + 1, text.size());
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + text.size());
        const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        if (bind(fd, reinterpret_cast<const sockaddr*>(&name), length) == 0) {
            try {
                return LoopbackSocket(port).getPort();
            } catch (const std::runtime_error&) {  // a program that is not a test uses the port
            }
        }
        close(fd);
    }
    throw std::runtime_error("no free port");
}

std::string makeOwnAddress() {
    const int id = getpid();
    return "127." + std::to_string(1 + (id >> 16 & 127)) + "." + std::to_string(id >> 8 & 255) + "." +
           std::to_string(id & 255);
}
