// The members of a socket: addresses, and datagrams received from the kernel but not yet read.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/net/SocketUDP.h"

/// The process's counters, writable. Frame thread only.
NetStats& netStats();

/// A received datagram.
struct Arrival {
    const unsigned char* bytes = nullptr;
    std::size_t size = 0;
    sockaddr_in from{};
    bool inPlace = false;  ///< its bytes are already in the reader's buffer
};

/// Receives many small datagrams with one system call. Large ones are received directly into the reader's buffer, one
/// call each, because copying them would cost more than the call.
class ReceiveBatch {
public:
    /// Allocates slots for datagrams of up to `size` bytes; discards unread ones.
    void allocate(int size);
    /// Discards unread datagrams and frees the slots.
    void clear();

    /// The next datagram of the socket; at most `room` bytes of it when it is received in place. Valid until the next
    /// call. False when nothing is pending.
    bool next(int fd, unsigned char* buffer, std::size_t room, Arrival& out);

private:
    struct Slot {
        sockaddr_in from;
        iovec part;
        alignas(cmsghdr) unsigned char control[CMSG_SPACE(sizeof(std::uint32_t))];
    };

    bool fill(int fd);
    bool receiveInPlace(int fd, unsigned char* buffer, std::size_t room, Arrival& out);
    void countDrops(msghdr& header);

    std::size_t m_limit = 0;  ///< maximum datagram size, bytes; 0 before allocate
    std::unique_ptr<unsigned char[]> m_room;
    std::vector<Slot> m_slots;
    std::vector<mmsghdr> m_headers;
    int m_count = 0;            ///< datagrams in the slots
    int m_at = 0;               ///< number of them already read
    bool m_large = false;       ///< the last datagram was a large one
    std::uint32_t m_drops = 0;  ///< the kernel's drop count at its last report; it wraps around
};

struct SocketUDP::State {
    int fd = -1;
    sockaddr_in local{};                     ///< bound address; all zero before the bind
    sockaddr_in host{};                      ///< accepted sender; a zero address or port accepts any
    sockaddr_in target{AF_INET, 0, {}, {}};  ///< destination
    in_port_t filterPort = 0;                ///< accepted port in network order; 0 accepts any
    jString hostText;
    int largestSent = 0;
    ReceiveBatch batch;
    int refusedUnlogged = 0;    ///< datagrams refused since the last log line about them
    sockaddr_in lastRefused{};  ///< sender of the last refused datagram
    std::chrono::steady_clock::time_point lastLogged{};

    int read(void* buffer, int size, int count);
    void logRefused();
    void updateFilter();
    bool accepts(const sockaddr_in& from) const {
        return (host.sin_addr.s_addr == 0 || from.sin_addr.s_addr == host.sin_addr.s_addr) &&
               (filterPort == 0 || from.sin_port == filterPort);
    }
    bool sendDatagram(const void* bytes, std::size_t size) const;
};
