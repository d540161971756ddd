// UDP sockets that never block.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// What all sockets of the process moved so far.
struct NetStats {
    std::uint64_t received = 0;    ///< datagrams handed to a reader
    std::uint64_t sent = 0;        ///< datagrams handed to the system
    std::uint64_t sendFailed = 0;  ///< datagrams the system did not take
    std::uint64_t refused = 0;     ///< datagrams from another address or port than the one set
    std::uint64_t dropped = 0;     ///< datagrams that the kernel's queue lost
    std::uint64_t empty = 0;       ///< datagrams without a byte, passed over
    std::uint64_t sentHash = 0;    ///< hash of every byte handed to write, in order, whether or not the system took it
};

/// One IPv4 datagram socket. Addresses are dotted decimals; a multicast address is joined when bound to, and is left
/// through the interface of the address bound to, so it stays on this machine when that is a loopback one. Time to live
/// is 1. Operations that return bool give false on a bad value or when the system refuses. Frame thread only.
class ENGINE_API SocketUDP {
public:
    SocketUDP();
    virtual ~SocketUDP();
    SocketUDP(const SocketUDP&) = delete;
    SocketUDP& operator=(const SocketUDP&) = delete;

    bool create();
    bool bind(int port);  ///< any local address
    /// Port 0 takes any free one. Fails when another socket holds the port; a group's port may be shared.
    bool bind(const jString& address, int port);
    bool bind();  ///< any local address, any free port
    /// Receives from that address alone. Set before the bind; an empty or unusable address makes it return false.
    bool setRecvIP(const jString& address);
    /// Receives from that port alone; 0 takes any. Not applied when address and port are the receiver's own endpoint.
    bool setRecvPort(int port);
    const jString& getRecvIP() const;
    bool setSendIP(const jString& address);
    bool setSendPort(int port);
    /// The largest datagram that will be received or sent, bytes; the kernel's queue is asked for as large as it
    /// allows.
    bool recv(int size);
    bool send(int size);
    bool nonblock();
    void close();
    bool isOpened() const;
    /// Closes and frees the buffers.
    void release();

    /// Takes the next accepted datagram, at most size * count bytes of it, and returns the number of bytes moved: 0
    /// when nothing is pending. An empty datagram is passed over.
    virtual int read(void* buffer, int size, int count);
    /// Sends size * count bytes as one datagram and returns the number of bytes moved: 0 on failure.
    virtual int write(const void* buffer, int size, int count);

    int getLocalPort() const;  ///< the port bound to; 0 when not bound

    static const NetStats& getStats();
    static void clearStats();

private:
    struct State;
    std::unique_ptr<State> m_state;
};
