// What a socket keeps: its addresses and the datagrams that it took from the kernel but has not handed on yet.
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

/// The process's statistics, to be changed. Frame thread only.
NetStats& netStats();

/// A datagram on its way to the reader.
struct Arrival {
    const unsigned char* bytes = nullptr;
    std::size_t size = 0;
    sockaddr_in from{};
    bool inPlace = false;  ///< it lies in the reader's own buffer already
};

/// Takes many small datagrams with one call of the system. Large ones are received straight into the reader's buffer,
/// one call each: there the copy would cost more than the call.
class ReceiveBatch {
public:
    /// Room for datagrams of up to `size` bytes; drops what was not handed on.
    void allocate(int size);
    /// Forgets what was not handed on and frees the room.
    void clear();

    /// The next datagram of the socket, at most `room` bytes of it where it is received in place; valid until the next
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

    std::size_t m_limit = 0;  ///< largest datagram, bytes; 0 before allocate
    std::unique_ptr<unsigned char[]> m_room;
    std::vector<Slot> m_slots;
    std::vector<mmsghdr> m_headers;
    int m_count = 0;            ///< datagrams in the slots
    int m_at = 0;               ///< of which handed on
    bool m_large = false;       ///< the last datagram was a large one
    std::uint32_t m_drops = 0;  ///< the kernel's drop count when last heard; it wraps round
};

struct SocketUDP::State {
    int fd = -1;
    sockaddr_in local{};                     ///< bound to; all zero before
    sockaddr_in host{};                      ///< receives from it; a zero address or port takes any
    sockaddr_in target{AF_INET, 0, {}, {}};  ///< sends to it
    in_port_t filterPort = 0;                ///< network order; 0 takes any
    jString hostText;
    int largestSent = 0;
    ReceiveBatch batch;
    int untold = 0;          ///< datagrams refused since the last line about them
    sockaddr_in stranger{};  ///< sender of the last of them
    std::chrono::steady_clock::time_point told{};

    int read(void* buffer, int size, int count);
    void tellRefused();
    void updateFilter();
    bool accepts(const sockaddr_in& from) const {
        return (host.sin_addr.s_addr == 0 || from.sin_addr.s_addr == host.sin_addr.s_addr) &&
               (filterPort == 0 || from.sin_port == filterPort);
    }
    bool sendDatagram(const void* bytes, std::size_t size) const;
};
