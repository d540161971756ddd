// The UDP endpoints of the host link: a receiver that turns datagrams into records, and a sender.
#pragma once

#include <engine/net/SocketUDP.h>

#include "src/kit/UdpRecords.h"

/// Receives host records. The list elements are the records parsed since the caller last emptied the list, in order
/// of arrival. Frame thread only; never blocks.
class UdpRecvKit : public jVector<UdpRecvData> {
public:
    UdpRecvKit() = default;
    ~UdpRecvKit() { release(); }
    UdpRecvKit(const UdpRecvKit&) = delete;
    UdpRecvKit& operator=(const UdpRecvKit&) = delete;

    /// Listens on a port of all local addresses and accepts datagrams from every sender, up to 4096 bytes of each. An
    /// earlier socket is released. On failure one error is logged, the kit has no socket and false is returned.
    bool init(int port);
    /// Listens on localAddress:localPort and accepts datagrams from hostAddress only, and from hostPort only, unless it
    /// is 0 or the receiver's own endpoint. Otherwise as above.
    bool init(const jString& localAddress, int localPort, const jString& hostAddress, int hostPort);
    /// Reads all pending datagrams, appends their complete records and returns the number of records in the list. Bytes
    /// after the last complete record of a datagram are dropped, the datagram is counted. 0 without a socket.
    int receive();
    /// Closes and frees the socket; the parsed records stay in the list. Allowed without a socket.
    void release();

    /// Owned by the kit; null when not open.
    SocketUDP* getSocket() const { return m_socket; }
    /// Number of datagrams so far whose length was no multiple of the record size.
    std::uint64_t getPartialCount() const { return m_partial_count; }

private:
    bool finish(bool bound, int bufferSize);
    int parse(int bytes);  ///< appends the records in the buffer's first bytes, returns their number

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

    /// Sends to address:port from a free port. `localAddress` selects the interface for multicast datagrams (with a
    /// loopback address they stay on this machine); if empty, the system selects it. An earlier socket is released.
    /// On failure one error is logged, the kit has no socket and false is returned.
    bool init(const jString& address, int port, const jString& localAddress = {});
    /// Sends one datagram and returns the bytes sent: 0 when the system did not accept it or there is no socket.
    int write(const void* data, int length) { return m_socket ? m_socket->write(data, 1, length) : 0; }
    /// Closes and frees the socket and the buffer. Allowed without a socket.
    void release();

    /// Owned by the kit; null when not open.
    SocketUDP* getSocket() const { return m_socket; }
    /// Buffer of 4096 bytes to compose a datagram in while the kit is open.
    jBuffer& getBuffer() { return m_buffer; }

private:
    SocketUDP* m_socket = nullptr;
    jBuffer m_buffer;
};
