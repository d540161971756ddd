// Non-blocking UDP sockets.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// Counters of all sockets of the process.
struct NetStats {
    std::uint64_t received = 0;    ///< datagrams passed to a reader
    std::uint64_t sent = 0;        ///< datagrams accepted by the system
    std::uint64_t sendFailed = 0;  ///< datagrams refused by the system
    std::uint64_t refused = 0;     ///< datagrams from a sender other than the configured one
    std::uint64_t dropped = 0;     ///< datagrams lost in the kernel's queue
    std::uint64_t empty = 0;       ///< datagrams of zero length, skipped
    /// hash of all bytes passed to write, in order, whether or not the system accepted them
    std::uint64_t sentHash = 0;
};

/// One IPv4 datagram socket. Addresses are dotted decimals. A multicast address is joined by binding to it. Multicast
/// is sent through the interface of the bound address, so that it stays on this machine for a loopback address. Time to
/// live is 1. Operations that return bool give false on an invalid value or when the system refuses. Frame thread only.
class ENGINE_API SocketUDP {
public:
    SocketUDP();
    virtual ~SocketUDP();
    SocketUDP(const SocketUDP&) = delete;
    SocketUDP& operator=(const SocketUDP&) = delete;

    bool create();
    bool bind(int port);  ///< any local address
    /// Port 0 selects any free port. Fails when another socket uses the port; the port of a multicast group may be
    /// shared.
    bool bind(const jString& address, int port);
    bool bind();  ///< any local address, any free port
    /// Accepts datagrams from this address only. Set before the bind; false for an empty or unusable address.
    bool setRecvIP(const jString& address);
    /// Accepts datagrams from this port only; 0 accepts any. Not applied when address and port are the socket's own
    /// endpoint.
    bool setRecvPort(int port);
    const jString& getRecvIP() const;
    bool setSendIP(const jString& address);
    bool setSendPort(int port);
    /// Maximum size of datagrams received or sent, bytes. The size of the kernel's queue is set to the maximum allowed.
    bool recv(int size);
    bool send(int size);
    bool nonblock();
    void close();
    bool isOpened() const;
    /// Closes the socket and frees the buffers.
    void release();

    /// Reads the next accepted datagram, at most size * count bytes of it, and returns the number of bytes: 0 when
    /// nothing is pending. Empty datagrams are skipped.
    virtual int read(void* buffer, int size, int count);
    /// Sends size * count bytes as one datagram and returns the number of bytes: 0 on failure.
    virtual int write(const void* buffer, int size, int count);

    int getLocalPort() const;  ///< the bound port; 0 when not bound

    static const NetStats& getStats();
    static void clearStats();

private:
    struct State;
    std::unique_ptr<State> m_state;
};
