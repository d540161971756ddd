// The host's loop: sends due datagrams, receives feedback, prints a line per second. It waits in one place only.
#include "Session.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

constexpr double GRACE = 0.25;      ///< seconds to receive after the last datagram
constexpr double MAX_BEHIND = 1.0;  ///< seconds; after a longer pause the missed datagrams are not sent
constexpr int BURST = 64;           ///< maximum of datagrams sent before feedback is received again

sockaddr_in toSystem(const Endpoint& endpoint) {
    sockaddr_in out{};
    out.sin_family = AF_INET;
    out.sin_port = htons(endpoint.port);
    inet_pton(AF_INET, endpoint.address.c_str(), &out.sin_addr);
    return out;
}

int openSocket(const Endpoint& endpoint, std::string& error) {
    const sockaddr_in at = toSystem(endpoint);
    const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd >= 0 && bind(fd, reinterpret_cast<const sockaddr*>(&at), sizeof at) == 0) return fd;
    error = "cannot bind " + endpoint.address + ":" + std::to_string(endpoint.port) + ": " + std::strerror(errno);
    if (fd >= 0) close(fd);
    return -1;
}

}  // namespace

Session::Session(const Options& options)
    : m_options(options), m_datagram(static_cast<std::size_t>(options.records * RECORD_SIZE)) {}

Session::~Session() {
    if (m_sender >= 0) close(m_sender);
    if (m_listener >= 0) close(m_listener);
}

bool Session::open(std::string& error) {
    m_sender = openSocket(m_options.bind, error);
    if (m_sender < 0) return false;
    m_listener = openSocket({m_options.bind.address, m_options.listen}, error);
    if (m_listener < 0) return false;
    if (m_log.openCsv(m_options.csv)) return true;
    error = "cannot write " + m_options.csv + ": " + std::strerror(errno);
    return false;
}

bool Session::run(const volatile std::sig_atomic_t& stop) {
    m_start = Clock::now();
    double nextLine = 1.0;
    bool ending = false;
    while (!m_ended) {
        const double time = now();
        if (!ending && (stop || (m_options.seconds > 0.0 && time >= m_options.seconds))) {
            ending = true;
            m_options.orders.finish();
            m_next_send = std::min(m_next_send, time);
        }
        sendDue(time);
        if (time >= nextLine) {
            m_log.printSecond(time);
            nextLine = std::floor(time) + 1.0;
        }
        double until = std::min(m_next_send, nextLine);
        if (!ending && m_options.seconds > 0.0) until = std::min(until, m_options.seconds);
        if (!m_ended) waitUntil(until);
        collect();
    }
    const bool whole = endRun(stop != 0);
    return whole && m_log.getFeedbackCount() > 0;
}

void Session::sendDue(double time) {
    if (time - m_next_send > MAX_BEHIND) m_next_send = time;
    for (int i = 0; i < BURST && time >= m_next_send && !m_ended; ++i) {
        std::int32_t order = 0;
        m_ended = !m_options.orders.next(order);
        if (!m_ended) send(order);
        m_next_send += 1.0 / m_options.rate;
    }
}

void Session::send(std::int32_t order) {
    for (int i = 0; i < m_options.records; ++i) {
        m_number = static_cast<std::int32_t>((static_cast<std::uint32_t>(m_number) + 1) & 0x7fffffffu);
        writeRecord({order, m_number}, m_datagram.data() + i * RECORD_SIZE);
    }
    const sockaddr_in to = toSystem(m_options.to);
    m_last_order = order;
    const double time = now();
    if (sendto(m_sender, m_datagram.data(), m_datagram.size(), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&to),
               sizeof to) >= 0) {
        m_log.onSent(time, order, m_options.records);
        return;
    }
    m_log.onSendFailed();
    if (m_complained) return;
    m_complained = true;
    std::fprintf(stderr, "flyhost: cannot send to %s:%d: %s\n", m_options.to.address.c_str(), m_options.to.port,
                 std::strerror(errno));
}

bool Session::endRun(bool stopped) {
    // A host that is stopped also stops the viewer.
    if (stopped && m_last_order != 0) send(0);
    for (const double end = now() + GRACE; now() < end;) {
        waitUntil(end);
        collect();
    }
    m_log.printSummary(now());
    if (m_log.closeCsv()) return true;
    std::fprintf(stderr, "flyhost: %s is not complete\n", m_options.csv.c_str());
    return false;
}

void Session::waitUntil(double time) {
    const double left = std::max(0.0, time - now());
    timespec timeout{};
    timeout.tv_sec = static_cast<time_t>(left);
    timeout.tv_nsec = static_cast<long>((left - std::floor(left)) * 1e9);
    sigset_t none;
    sigemptyset(&none);
    pollfd entry{m_listener, POLLIN, 0};
    ppoll(&entry, 1, &timeout, &none);
}

void Session::collect() {
    unsigned char bytes[FEEDBACK_SIZE + 1];  // one byte more to detect longer datagrams
    for (int i = 0; i < 4 * BURST; ++i) {
        const ssize_t n = recv(m_listener, bytes, sizeof bytes, MSG_DONTWAIT);
        if (n < 0) return;
        m_log.onDatagram(now(), bytes, static_cast<std::size_t>(n));
    }
}
