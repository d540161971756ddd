// One run of the host: its sockets and its timing.
#pragma once

#include <chrono>
#include <csignal>
#include <cstdint>
#include <string>
#include <vector>

#include "FeedbackLog.h"
#include "Options.h"

class Session {
public:
    explicit Session(const Options& options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Opens the sockets and the file. On failure `error` describes the cause in one line.
    bool open(std::string& error);
    /// Sends and listens until the orders, the time or `stop` end it, and prints. Signals that set `stop` are to be
    /// blocked outside; they are let in while the run waits. True when feedback came and the file is whole.
    bool run(const volatile std::sig_atomic_t& stop);

private:
    using Clock = std::chrono::steady_clock;

    double now() const { return std::chrono::duration<double>(Clock::now() - m_start).count(); }
    void sendDue(double time);
    void send(std::int32_t order);
    bool endRun(bool stopped);
    void waitUntil(double time);
    void collect();

    Options m_options;
    FeedbackLog m_log;
    int m_sender = -1;
    int m_listener = -1;
    Clock::time_point m_start;
    double m_next_send = 0.0;
    bool m_ended = false;       ///< no orders are left
    bool m_complained = false;  ///< a failure to send was reported
    std::int32_t m_last_order = 0;
    std::int32_t m_number = 0;
    std::vector<unsigned char> m_datagram;
};
