// The UDP endpoints of the host link: a receiver that turns datagrams into records, and a sender.
#pragma once

#include <engine/net/SocketUDP.h>

#include "src/kit/UdpRecords.h"

/// Receives host records. Its own element list holds the records parsed since the caller last emptied it, in arrival
/// order. Frame thread only; never blocks.
class UdpRecvKit : public jVector<UdpRecvData> {
public:
    UdpRecvKit() = default;
    ~UdpRecvKit() { release(); }
    UdpRecvKit(const UdpRecvKit&) = delete;
    UdpRecvKit& operator=(const UdpRecvKit&) = delete;

    /// Listens on a port of every local address and takes datagrams from anyone, up to 4096 bytes of each. An earlier
    /// socket is released. On failure one error is logged, the kit is left without a socket and false is returned.
    bool init(int port);
    /// Listens on localAddress:localPort and takes datagrams from hostAddress alone, and from hostPort alone unless it
    /// is 0 or the receiver's own endpoint. Otherwise as above.
    bool init(const jString& localAddress, int localPort, const jString& hostAddress, int hostPort);
    /// Reads every pending datagram, appends its whole records and returns how many records the list now holds. What
    /// follows the last whole record of a datagram is dropped and counted. 0 without a socket.
    int receive();
    /// Closes and frees the socket; records already parsed stay. Allowed without a socket.
    void release();

    /// Owned by the kit; null when not open.
    SocketUDP* getSocket() const { return m_socket; }
    /// Datagrams whose length was no multiple of the record size, so far.
    std::uint64_t getPartialCount() const { return m_partial_count; }

private:
    bool finish(bool bound, int bufferSize);
    int parse(int bytes);  ///< appends the records of the buffer's first bytes, returns how many

    SocketUDP* m_socket = nullptr;
    jBuffer m_buffer;
    std::uint64_t m_partial_count = 0;
};

/// Sends datagrams to one address. Frame thread only; never blocks.
class UdpSendKit {
public:
    UdpSendKit() = default;
    ~UdpSendKit() { release(); }
    UdpSendKit(const UdpSendKit&) = delete;
    UdpSendKit& operator=(const UdpSendKit&) = delete;

    /// Sends to address:port from a free port. `localAddress` chooses the interface that a multicast datagram leaves
    /// through (a loopback address keeps it on this machine); empty lets the system choose. An earlier socket is
    /// released. On failure one error is logged, the kit is left without a socket and false is returned.
    bool init(const jString& address, int port, const jString& localAddress = {});
    /// Sends one datagram and returns its bytes: 0 when the system did not take it or there is no socket.
    int write(const void* data, int length) { return m_socket ? m_socket->write(data, 1, length) : 0; }
    /// Closes and frees the socket and the buffer. Allowed without a socket.
    void release();

    /// Owned by the kit; null when not open.
    SocketUDP* getSocket() const { return m_socket; }
    /// Room of 4096 bytes to compose a datagram in while the kit is open.
    jBuffer& getBuffer() { return m_buffer; }

private:
    SocketUDP* m_socket = nullptr;
    jBuffer m_buffer;
};
