// Datagram sockets: opening, addresses, source filter and sending. The link reads and sends once per frame, on the
// frame thread; the counters are per process.
#include "engine/net/SocketUDP.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "engine/text/Log.h"
#include "net/SocketState.h"

namespace {

/// FNV-1a, 64 bits: http://www.isthe.com/chongo/tech/comp/fnv/
constexpr std::uint64_t FNV_BASIS = 14695981039346656037u;
constexpr std::uint64_t FNV_PRIME = 1099511628211u;

constexpr int MAX_PORT = 65535;
/// More than the datagrams of any frame; the kernel limits it.
constexpr int QUEUE_BYTES = 64 << 20;

NetStats makeStats() {
    NetStats stats;
    stats.sentHash = FNV_BASIS;
    return stats;
}

void hashSent(const unsigned char* bytes, std::size_t size) {
    std::uint64_t hash = netStats().sentHash;
    for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * FNV_PRIME;
    netStats().sentHash = hash;
}

bool isPort(int port, int lowest) {
    return port >= lowest && port <= MAX_PORT;
}

bool parseAddress(const jString& text, in_addr& out) {
    return inet_pton(AF_INET, text.c_str(), &out) == 1;
}

bool refuse(const char* operation, const jString& address) {
    jLog::warning("SocketUDP::%s: \"%s\" is no address for it", operation, address.c_str());
    return false;
}

bool isMulticast(in_addr address) {
    return IN_MULTICAST(ntohl(address.s_addr));
}

/// Only addresses of this machine can be bound.
bool isLocalAddress(in_addr address) {
    const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_addr = address;
    const bool local = ::bind(fd, reinterpret_cast<const sockaddr*>(&at), sizeof at) == 0;
    ::close(fd);
    return local;
}

void setOption(int fd, int level, int option, int value) {
    ::setsockopt(fd, level, option, &value, sizeof value);
}

/// Joins on the loopback interface and on the interface that the system selects: the group is received from this
/// machine and from the network.
bool joinGroup(int fd, in_addr group) {
    ip_mreq request{};
    request.imr_multiaddr = group;
    request.imr_interface.s_addr = htonl(INADDR_LOOPBACK);
    const bool loopback = ::setsockopt(fd, IPPROTO_IP, IP_ADD_MEMBERSHIP, &request, sizeof request) == 0;
    request.imr_interface.s_addr = htonl(INADDR_ANY);
    return ::setsockopt(fd, IPPROTO_IP, IP_ADD_MEMBERSHIP, &request, sizeof request) == 0 || loopback;
}

}  // namespace

NetStats& netStats() {
    static NetStats stats = makeStats();
    return stats;
}

SocketUDP::SocketUDP() : m_state(std::make_unique<State>()) {}

SocketUDP::~SocketUDP() {
    release();
}

bool SocketUDP::create() {
    release();
    m_state->fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (!isOpened()) {
        jLog::warning("SocketUDP::create: %s", std::strerror(errno));
        return false;
    }
    setOption(m_state->fd, SOL_SOCKET, SO_RXQ_OVFL, 1);
    setOption(m_state->fd, SOL_SOCKET, SO_BROADCAST, 1);
    setOption(m_state->fd, IPPROTO_IP, IP_MULTICAST_TTL, 1);
    setOption(m_state->fd, IPPROTO_IP, IP_MULTICAST_LOOP, 1);
    return true;
}

bool SocketUDP::bind(int port) {
    return bind("0.0.0.0", port);
}

bool SocketUDP::bind() {
    return bind("0.0.0.0", 0);
}

bool SocketUDP::bind(const jString& address, int port) {
    sockaddr_in at{};
    at.sin_family = AF_INET;
    at.sin_port = htons(static_cast<std::uint16_t>(port));
    if (!isOpened() || !isPort(port, 0)) return false;
    if (!parseAddress(address, at.sin_addr)) return refuse("bind", address);
    const bool group = isMulticast(at.sin_addr);
    // Several programs may receive from a group; the port of a unicast address belongs to one program, and the bind of
    // a second one must fail.
    if (group) setOption(m_state->fd, SOL_SOCKET, SO_REUSEADDR, 1);
    socklen_t length = sizeof at;
    if (::bind(m_state->fd, reinterpret_cast<const sockaddr*>(&at), sizeof at) != 0 ||
        ::getsockname(m_state->fd, reinterpret_cast<sockaddr*>(&at), &length) != 0 ||
        (group && !joinGroup(m_state->fd, at.sin_addr))) {
        jLog::warning("SocketUDP::bind: %s:%d: %s", address.c_str(), port, std::strerror(errno));
        return false;
    }
    // Multicast is sent through the interface of the bound address; without one the routing table decides.
    if (!group && at.sin_addr.s_addr != htonl(INADDR_ANY)) {
        ::setsockopt(m_state->fd, IPPROTO_IP, IP_MULTICAST_IF, &at.sin_addr, sizeof at.sin_addr);
    }
    m_state->local = at;
    m_state->updateFilter();
    return true;
}

bool SocketUDP::setRecvIP(const jString& address) {
    in_addr parsed{};
    // A datagram's source is never a multicast address, the broadcast address or the zero address.
    if (!parseAddress(address, parsed) || isMulticast(parsed) || parsed.s_addr == htonl(INADDR_ANY) ||
        parsed.s_addr == htonl(INADDR_BROADCAST)) {
        return refuse("setRecvIP", address);
    }
    m_state->host.sin_addr = parsed;
    m_state->hostText = address;
    m_state->updateFilter();
    return true;
}

bool SocketUDP::setRecvPort(int port) {
    if (!isPort(port, 0)) return false;
    m_state->host.sin_port = htons(static_cast<std::uint16_t>(port));
    m_state->updateFilter();
    return true;
}

const jString& SocketUDP::getRecvIP() const {
    return m_state->hostText;
}

bool SocketUDP::setSendIP(const jString& address) {
    in_addr parsed{};
    if (!parseAddress(address, parsed) || parsed.s_addr == htonl(INADDR_ANY)) return refuse("setSendIP", address);
    m_state->target.sin_addr = parsed;
    return true;
}

bool SocketUDP::setSendPort(int port) {
    if (!isPort(port, 1)) return false;
    m_state->target.sin_port = htons(static_cast<std::uint16_t>(port));
    return true;
}

bool SocketUDP::recv(int size) {
    if (!isOpened() || size <= 0) return false;
    // Exceeding the system's limit requires a privilege; otherwise the limit itself is used.
    if (::setsockopt(m_state->fd, SOL_SOCKET, SO_RCVBUFFORCE, &QUEUE_BYTES, sizeof QUEUE_BYTES) != 0) {
        setOption(m_state->fd, SOL_SOCKET, SO_RCVBUF, QUEUE_BYTES);
    }
    m_state->batch.allocate(size);
    return true;
}

bool SocketUDP::send(int size) {
    if (!isOpened() || size <= 0) return false;
    m_state->largestSent = size;
    int room = 0;
    socklen_t length = sizeof room;
    if (::getsockopt(m_state->fd, SOL_SOCKET, SO_SNDBUF, &room, &length) == 0 && room < size) {
        setOption(m_state->fd, SOL_SOCKET, SO_SNDBUF, size);
    }
    return true;
}

bool SocketUDP::nonblock() {
    if (!isOpened()) return false;
    const int flags = ::fcntl(m_state->fd, F_GETFL);
    return flags >= 0 && ::fcntl(m_state->fd, F_SETFL, flags | O_NONBLOCK) == 0;
}

void SocketUDP::close() {
    if (isOpened()) ::close(m_state->fd);
    m_state->fd = -1;
    m_state->local = {};
    m_state->batch.clear();
}

bool SocketUDP::isOpened() const {
    return m_state->fd >= 0;
}

void SocketUDP::release() {
    close();
    *m_state = State{};
}

int SocketUDP::write(const void* buffer, int size, int count) {
    const std::int64_t bytes = static_cast<std::int64_t>(size) * count;
    if (!buffer || size <= 0 || count <= 0 || bytes > INT32_MAX) return 0;
    hashSent(static_cast<const unsigned char*>(buffer), static_cast<std::size_t>(bytes));
    if (!isOpened() || bytes > m_state->largestSent ||
        !m_state->sendDatagram(buffer, static_cast<std::size_t>(bytes))) {
        ++netStats().sendFailed;
        return 0;
    }
    ++netStats().sent;
    return static_cast<int>(bytes);
}

bool SocketUDP::State::sendDatagram(const void* bytes, std::size_t size) const {
    // A port unreachable message for an earlier datagram is reported once by a later call, which then sends nothing;
    // signals interrupt the call. Neither concerns this datagram.
    for (int attempt = 0; attempt < 4; ++attempt) {
        const ssize_t sent = ::sendto(fd, bytes, size, MSG_DONTWAIT | MSG_NOSIGNAL,
                                      reinterpret_cast<const sockaddr*>(&target), sizeof target);
        if (sent >= 0) return static_cast<std::size_t>(sent) == size;
        if (errno != EINTR && errno != ECONNREFUSED) return false;
    }
    return false;
}

void SocketUDP::State::updateFilter() {
    const bool ownPort = local.sin_port != 0 && host.sin_port == local.sin_port;
    const bool everyAddress = local.sin_addr.s_addr == htonl(INADDR_ANY);
    const bool own =
        ownPort && (everyAddress ? isLocalAddress(host.sin_addr) : host.sin_addr.s_addr == local.sin_addr.s_addr);
    // Only the socket itself sends from its own endpoint, so in this case only the address is checked.
    filterPort = own ? 0 : host.sin_port;
}

int SocketUDP::getLocalPort() const {
    return ntohs(m_state->local.sin_port);
}

const NetStats& SocketUDP::getStats() {
    return netStats();
}

void SocketUDP::clearStats() {
    netStats() = makeStats();
}
