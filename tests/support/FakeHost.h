// A flight-simulation host for tests: real sockets on the loopback interface, no engine in between.
#pragma once

#include <string>
#include <vector>

#include "support/Packets.h"

/// One datagram as it arrived.
struct Datagram {
    packets::Bytes bytes;
    std::string address;  ///< sender, dotted decimal
    int port = 0;         ///< of the sender
};

/// An IPv4 datagram socket, closed with the object. Throws std::runtime_error when it cannot be bound.
class LoopbackSocket {
public:
    /// Port 0: any free one. Other sockets may bind a shared port, too.
    explicit LoopbackSocket(int port = 0, const std::string& address = "127.0.0.1", bool shared = false);
    ~LoopbackSocket();
    LoopbackSocket(const LoopbackSocket&) = delete;
    LoopbackSocket& operator=(const LoopbackSocket&) = delete;

    int getPort() const { return m_port; }
    /// Sends one datagram; false when the system did not send it completely.
    bool send(const packets::Bytes& bytes, int port, const std::string& address = "127.0.0.1");
    /// Returns all pending datagrams, in order.
    std::vector<Datagram> drain();
    /// Waits until `count` datagrams were received or `seconds` have passed, and returns those received, in order.
    std::vector<Datagram> wait(int count, double seconds = 10.0);
    int getHandle() const { return m_fd; }

private:
    int m_fd = -1;
    int m_port = 0;
};

/// Sends records to a viewer, collects its feedback, and receives the notices of the multicast group on the loopback
/// interface. Every port is a free one unless given, so tests run beside each other. The group's port is fixed: hosts
/// share it and each receives every notice, those of other tests' viewers too.
class FakeHost {
public:
    /// REQUIRES that the viewer's receiver listens, now or later, on 127.0.0.1:viewerPort.
    explicit FakeHost(int viewerPort, int sendPort = 0, int feedbackPort = 0);

    int getSendPort() const { return m_sender.getPort(); }        ///< records are sent from here
    int getFeedbackPort() const { return m_feedback.getPort(); }  ///< feedback is expected here
    int getViewerPort() const { return m_viewer_port; }
    void setViewerPort(int port) { m_viewer_port = port; }

    /// Sends one datagram with one record of this order.
    bool sendOrder(int order) { return send(packets::record(order)); }
    bool send(const packets::Bytes& bytes) { return m_sender.send(bytes, m_viewer_port); }

    /// Returns the pending feedback datagrams, in order.
    std::vector<Datagram> collectFeedback() { return m_feedback.drain(); }
    std::vector<Datagram> waitFeedback(int count, double seconds = 10.0) { return m_feedback.wait(count, seconds); }
    /// Waits for `count` notices of this sender, at most `seconds`; drops the notices of other senders.
    std::vector<Datagram> waitNotices(int count, const std::string& sender, double seconds = 10.0);

    static constexpr const char* GROUP = "224.255.255.255";
    static constexpr int GROUP_PORT = 10021;

private:
    LoopbackSocket m_sender;
    LoopbackSocket m_feedback;
    LoopbackSocket m_notices;
    int m_viewer_port;
};

/// A free UDP port on 127.0.0.1, below the system's ephemeral range. No other process gets it from this function while
/// this process runs. Throws std::runtime_error when there is none.
int findFreePort();

/// A loopback address for this process only (127.0.0.0/8 by the process id).
std::string makeOwnAddress();
