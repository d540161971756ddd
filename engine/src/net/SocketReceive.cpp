// Receives datagrams in batches without blocking and filters them by sender. Called once per frame until nothing is
// pending.
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "engine/text/Log.h"
#include "net/SocketState.h"

namespace {

constexpr int BATCH = 64;
constexpr std::size_t LARGE = 8192;  ///< bytes from which on a copy costs more than a system call
constexpr int MAX_ERRORS = 16;
/// Limits the time that a flood of refused datagrams takes in a frame.
constexpr int MAX_PASSED_OVER = 1 << 16;

/// Repeats the call until it succeeds, nothing is pending or it fails permanently. A signal, or the report that an
/// earlier sent datagram found no listener, does not concern pending datagrams.
template <class Call>
int receiveWith(Call call) {
    for (int i = 0; i < MAX_ERRORS; ++i) {
        const auto n = call();
        if (n >= 0) return static_cast<int>(n);
        if (errno != EINTR && errno != ECONNREFUSED) break;
    }
    return -1;
}

jString textOf(const sockaddr_in& endpoint) {
    char address[INET_ADDRSTRLEN] = {};
    ::inet_ntop(AF_INET, &endpoint.sin_addr, address, sizeof address);
    return jString(address) + ":" + ToString(ntohs(endpoint.sin_port));
}

}  // namespace

void ReceiveBatch::allocate(int size) {
    clear();
    m_limit = static_cast<std::size_t>(size);
    // An odd number of cache lines apart, so that the beginnings of the slots are spread over the cache sets.
    const std::size_t stride = (m_limit / 128 + 1) * 128 + 64;
    m_room = std::make_unique_for_overwrite<unsigned char[]>(stride * BATCH);
    m_slots.resize(BATCH);
    m_headers.resize(BATCH);
    for (std::size_t i = 0; i < BATCH; ++i) {
        Slot& slot = m_slots[i];
        slot.part = {m_room.get() + i * stride, m_limit};
        msghdr& header = m_headers[i].msg_hdr;
        header = {};
        header.msg_name = &slot.from;
        header.msg_namelen = sizeof slot.from;
        header.msg_iov = &slot.part;
        header.msg_iovlen = 1;
        header.msg_control = slot.control;
        header.msg_controllen = sizeof slot.control;
    }
}

void ReceiveBatch::clear() {
    *this = ReceiveBatch{};
}

bool ReceiveBatch::next(int fd, unsigned char* buffer, std::size_t room, Arrival& out) {
    if (m_at == m_count) {
        if (m_large || m_limit == 0) return receiveInPlace(fd, buffer, room, out);
        if (!fill(fd)) return false;
    }
    const std::size_t i = static_cast<std::size_t>(m_at++);
    out = {static_cast<unsigned char*>(m_slots[i].part.iov_base), m_headers[i].msg_len, m_slots[i].from, false};
    m_large = out.size >= LARGE;
    countDrops(m_headers[i].msg_hdr);
    return true;
}

bool ReceiveBatch::fill(int fd) {
    m_at = m_count = 0;
    const int n = receiveWith([&] { return ::recvmmsg(fd, m_headers.data(), BATCH, MSG_DONTWAIT, nullptr); });
    if (n <= 0) return false;
    m_count = n;
    return true;
}

bool ReceiveBatch::receiveInPlace(int fd, unsigned char* buffer, std::size_t room, Arrival& out) {
    Slot slot;
    slot.part = {buffer, m_limit == 0 ? room : std::min(room, m_limit)};
    msghdr header{};
    header.msg_name = &slot.from;
    header.msg_iov = &slot.part;
    header.msg_iovlen = 1;
    header.msg_control = slot.control;
    const int n = receiveWith([&] {
        header.msg_namelen = sizeof slot.from;
        header.msg_controllen = sizeof slot.control;
        return ::recvmsg(fd, &header, MSG_DONTWAIT);
    });
    if (n < 0) return false;
    out = {buffer, static_cast<std::size_t>(n), slot.from, true};
    m_large = out.size >= LARGE;
    countDrops(header);
    return true;
}

void ReceiveBatch::countDrops(msghdr& header) {
    for (cmsghdr* item = CMSG_FIRSTHDR(&header); item; item = CMSG_NXTHDR(&header, item)) {
        if (item->cmsg_level != SOL_SOCKET || item->cmsg_type != SO_RXQ_OVFL) continue;
        std::uint32_t drops = 0;
        std::memcpy(&drops, CMSG_DATA(item), sizeof drops);
        netStats().dropped += drops - m_drops;
        m_drops = drops;
    }
    header.msg_controllen = sizeof Slot::control;  // the kernel overwrites this with its own length
}

int SocketUDP::read(void* buffer, int size, int count) {
    const int bytes = m_state->read(buffer, size, count);
    m_state->logRefused();
    return bytes;
}

/// The first line is written at once, later ones at most once per second. For the reader at the terminal: no result
/// depends on this clock.
void SocketUDP::State::logRefused() {
    if (refusedUnlogged == 0) return;
    const auto now = std::chrono::steady_clock::now();
    if (lastLogged != decltype(lastLogged)() && now - lastLogged < std::chrono::seconds(1)) return;
    jLog::warning("port %d: datagrams refused: %d, the last from %s; accepted are those from %s", ntohs(local.sin_port),
                  refusedUnlogged, textOf(lastRefused).c_str(),
                  filterPort == 0 ? (hostText + ", any port").c_str() : textOf(host).c_str());
    refusedUnlogged = 0;
    lastLogged = now;
}

int SocketUDP::State::read(void* buffer, int size, int count) {
    const std::int64_t bytes = static_cast<std::int64_t>(size) * count;
    if (fd < 0 || !buffer || size <= 0 || count <= 0) return 0;
    auto* to = static_cast<unsigned char*>(buffer);
    const auto room = static_cast<std::size_t>(std::min<std::int64_t>(bytes, INT32_MAX));
    Arrival arrival;
    for (int i = 0; i < MAX_PASSED_OVER && batch.next(fd, to, room, arrival); ++i) {
        if (!accepts(arrival.from)) {
            ++netStats().refused;
            ++refusedUnlogged;
            lastRefused = arrival.from;
        } else if (arrival.size == 0) {
            ++netStats().empty;
        } else {
            ++netStats().received;
            const std::size_t taken = std::min(arrival.size, room);
            if (!arrival.inPlace) std::memcpy(to, arrival.bytes, taken);
            return static_cast<int>(taken);
        }
    }
    return 0;
}
