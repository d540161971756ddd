// The endpoints of the host link. In data flight the receiver is polled once a frame, before any motion; the senders
// are used later in the same frame.
#include "src/kit/UdpDataKit.h"

#include <engine/memory/Allocator.h>
#include <engine/text/Log.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

constexpr const char* SOURCE = "src\\kit\\UdpDataKit";
constexpr int MAX_DATAGRAM = 65507;
constexpr int SMALL_BUFFER = 4096;
constexpr int RECEIVE_BUFFER = 262140;
/// Reserved records, enough for a busy frame: the list does not grow in flight.
constexpr int USUAL_RECORDS = 2048;
constexpr int PARSE_STEP = 4;
/// More records than a full kernel queue contains: a sender faster than the reader cannot block the frame.
constexpr int MAX_RECORDS = 1 << 20;

/// Closes and frees a socket and sets the pointer to null. Null is allowed.
void freeSocket(SocketUDP*& socket) {
    if (!socket) return;
    if (socket->isOpened()) socket->close();
    socket->release();
    jDelete(socket);
    socket = nullptr;
}

}  // namespace

bool UdpRecvKit::init(int port) {
    release();
    m_socket = jNew<SocketUDP>({SOURCE, "UdpRecvKit::init"});
    return finish(m_socket->create() && m_socket->bind(port), SMALL_BUFFER);
}

bool UdpRecvKit::init(const jString& localAddress, int localPort, const jString& hostAddress, int hostPort) {
    release();
    m_socket = jNew<SocketUDP>({SOURCE, "UdpRecvKit::init"});
    const bool bound = m_socket->create() && m_socket->setRecvIP(hostAddress) && m_socket->setRecvPort(hostPort) &&
                       m_socket->bind(localAddress, localPort);
    if (!finish(bound, RECEIVE_BUFFER)) return false;
    std::printf("...m_udp_recv ip:%s\n", m_socket->getRecvIP().c_str());
    return true;
}

bool UdpRecvKit::finish(bool bound, int bufferSize) {
    if (!bound || !m_socket->recv(MAX_DATAGRAM) || !m_socket->nonblock()) {
        jLog::error("%s: failed to create upd", "UdpRecvKit::init");
        freeSocket(m_socket);
        return false;
    }
    m_buffer.allocate(bufferSize);
    reserve(USUAL_RECORDS);
    return true;
}

int UdpRecvKit::receive() {
    m_buffer.rewind();
    if (!m_socket) return 0;
    const std::uint64_t partialBefore = m_partial_count;
    int handled = 0;
    int n = m_socket->read(m_buffer.getData(), 1, m_buffer.getCapacity());
    while (n > 0) {
        handled += std::max(1, parse(n));
        if (handled >= MAX_RECORDS) break;
        m_buffer.rewind();
        n = m_socket->read(m_buffer.getData(), m_buffer.getCapacity(), 1);
    }
    if (m_partial_count != partialBefore) {
        const jString& host = m_socket->getRecvIP();
        jLog::warning("UdpRecvKit::receive: datagrams from %s end within a record; their last bytes are dropped",
                      host.empty() ? "some sender" : host.c_str());
    }
    return size();
}

int UdpRecvKit::parse(int bytes) {
    // An incomplete record is not used: filled up with zeros, it would be a command that the host did not send.
    if (bytes % UDP_RECV_WIRE_SIZE != 0) ++m_partial_count;
    const int records = bytes / UDP_RECV_WIRE_SIZE;
    const unsigned char* from = m_buffer.getData();
    // In small steps: the new elements are then still in the first-level cache when they are filled.
    for (int left = records; left > 0;) {
        const int step = std::min(left, PARSE_STEP);
        const int first = size();
        resize(first + step);
        for (UdpRecvData* to = get() + first; to != get() + first + step; ++to, from += UDP_RECV_WIRE_SIZE) {
            std::memcpy(static_cast<void*>(to), from, UDP_RECV_WIRE_SIZE);
        }
        left -= step;
    }
    return records;
}

void UdpRecvKit::release() {
    freeSocket(m_socket);
}

bool UdpSendKit::init(const jString& address, int port, const jString& localAddress) {
    release();
    m_socket = jNew<SocketUDP>({SOURCE, "UdpSendKit::init"});
    if (!m_socket->create() || !m_socket->setSendIP(address) || !m_socket->setSendPort(port) ||
        !m_socket->send(MAX_DATAGRAM) || !m_socket->nonblock() ||
        !(localAddress.empty() ? m_socket->bind() : m_socket->bind(localAddress, 0))) {
        jLog::error("%s: failed to create udp", "UdpSendKit::init");
        freeSocket(m_socket);
        return false;
    }
    m_buffer.allocate(SMALL_BUFFER);
    return true;
}

void UdpSendKit::release() {
    freeSocket(m_socket);
    m_buffer.destroy();
}
