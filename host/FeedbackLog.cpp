// Counts and checks feedback on arrival. Prints once a second and at the end of the run.
#include "FeedbackLog.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double MIN_LATENCY = 1e-7;  ///< seconds; lower limit of the first bucket
constexpr double STEP = 1.01;
constexpr double ANSWER_WITHIN = 1.0;  ///< seconds; later feedback does not count as an answer
constexpr std::size_t MAX_UNANSWERED = 1 << 16;

bool isFinite(const Feedback& f) {
    const auto finite = [](float value) { return std::isfinite(value); };
    return finite(f.heightCg) && std::all_of(f.height.begin(), f.height.end(), finite) &&
           std::all_of(f.pitch.begin(), f.pitch.end(), finite) && std::all_of(f.roll.begin(), f.roll.end(), finite) &&
           std::all_of(f.heading.begin(), f.heading.end(), finite);
}

void printLatency(const LatencyHistogram& latency) {
    if (latency.getCount() == 0) {
        std::printf("latency -");
        return;
    }
    std::printf("latency ms min %.2f median %.2f p99 %.2f", 1e3 * latency.getMinimum(), 1e3 * latency.getQuantile(0.5),
                1e3 * latency.getQuantile(0.99));
}

}  // namespace

void LatencyHistogram::add(double seconds) {
    const double place = std::log(std::max(seconds, MIN_LATENCY) / MIN_LATENCY) / std::log(STEP);
    ++m_buckets[std::min(static_cast<std::size_t>(place), m_buckets.size() - 1)];
    m_minimum = m_count == 0 ? seconds : std::min(m_minimum, seconds);
    ++m_count;
}

double LatencyHistogram::getQuantile(double part) const {
    const auto wanted = static_cast<std::int64_t>(std::ceil(part * static_cast<double>(m_count)));
    std::int64_t seen = 0;
    for (std::size_t i = 0; i < m_buckets.size(); ++i) {
        seen += m_buckets[i];
        if (seen > 0 && seen >= wanted) {
            return std::max(m_minimum, MIN_LATENCY * std::pow(STEP, static_cast<double>(i) + 0.5));
        }
    }
    return 0.0;
}

bool FeedbackLog::openCsv(const std::string& path) {
    if (path.empty()) return true;
    m_csv.reset(std::fopen(path.c_str(), "w"));
    if (!m_csv) return false;
    std::fputs(
        "time_s,counter,height_nose_m,height_left_m,height_right_m,height_cg_m,pitch_nose_deg,pitch_left_deg,"
        "pitch_right_deg,roll_nose_deg,roll_left_deg,roll_right_deg,heading_deg,collision,latency_ms\n",
        m_csv.get());
    return true;
}

void FeedbackLog::onSent(double time, std::int32_t order, int records) {
    m_sent_records += records;
    ++m_sent_datagrams;
    // The viewer answers only order 2; between two series of order 2 the counter may jump.
    if (order != 2) {
        m_counter_known = false;
        return;
    }
    m_unanswered.push_back(time);
    if (m_unanswered.size() > MAX_UNANSWERED) m_unanswered.pop_front();
}

void FeedbackLog::onDatagram(double time, const unsigned char* bytes, std::size_t size) {
    if (size != FEEDBACK_SIZE) {
        ++m_irregular;
        return;
    }
    ++m_feedback;
    const Feedback feedback = readFeedback(bytes);
    check(feedback);
    m_last = feedback;
    m_counter_known = true;
    writeCsv(time, feedback, takeLatency(time));
}

void FeedbackLog::check(const Feedback& feedback) {
    const auto rise = static_cast<std::int32_t>(static_cast<std::uint32_t>(feedback.counter) -
                                                static_cast<std::uint32_t>(m_last.counter));
    const bool fallen = m_counter_known && rise <= 0;
    if (fallen || !isFinite(feedback)) ++m_irregular;
    if (m_counter_known && rise > 1) m_lost += rise - 1;
}

/// Seconds since the newest unanswered datagram; negative when there is none.
double FeedbackLog::takeLatency(double time) {
    double newest = -1.0;
    for (const double sent : m_unanswered) {
        if (time - sent > ANSWER_WITHIN) continue;
        newest = time - sent;
        m_second.add(newest);
        m_run.add(newest);
    }
    m_unanswered.clear();
    return newest;
}

void FeedbackLog::writeCsv(double time, const Feedback& f, double latency) {
    if (!m_csv) return;
    std::fprintf(m_csv.get(), "%.6f,%d,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%.4f,%d,", time, f.counter,
                 f.height[0], f.height[1], f.height[2], f.heightCg, f.pitch[0], f.pitch[1], f.pitch[2], f.roll[0],
                 f.roll[1], f.roll[2], f.heading[0], f.collision);
    if (latency >= 0.0) std::fprintf(m_csv.get(), "%.3f", 1e3 * latency);
    std::fputc('\n', m_csv.get());
}

void FeedbackLog::printSecond(double time) {
    std::printf("%.1f s: sent %lld feedback %lld lost %lld irregular %lld ", time,
                static_cast<long long>(m_sent_records), static_cast<long long>(m_feedback),
                static_cast<long long>(m_lost), static_cast<long long>(m_irregular));
    if (m_feedback > 0) {
        std::printf("heights %.2f %.2f %.2f cg %.2f collision %d ", m_last.height[0], m_last.height[1],
                    m_last.height[2], m_last.heightCg, m_last.collision);
    }
    printLatency(m_second);
    std::printf("\n");
    std::fflush(stdout);
    m_second = {};
}

void FeedbackLog::printSummary(double time) const {
    std::printf(
        "summary: %.1f s, %lld records in %lld datagrams sent (%lld failed), %lld feedback records (%.1f a second)\n",
        time, static_cast<long long>(m_sent_records), static_cast<long long>(m_sent_datagrams),
        static_cast<long long>(m_failed), static_cast<long long>(m_feedback),
        time > 0.0 ? static_cast<double>(m_feedback) / time : 0.0);
    std::printf("summary: lost %lld, irregular %lld, ", static_cast<long long>(m_lost),
                static_cast<long long>(m_irregular));
    printLatency(m_run);
    std::printf("\n");
    if (m_feedback > 0) {
        std::printf("summary: last heights %.2f %.2f %.2f m, cg %.2f m, collision %d\n", m_last.height[0],
                    m_last.height[1], m_last.height[2], m_last.heightCg, m_last.collision);
    } else {
        std::printf("summary: no feedback came\n");
    }
    std::fflush(stdout);
}

bool FeedbackLog::closeCsv() {
    if (!m_csv) return true;
    const bool whole = std::ferror(m_csv.get()) == 0;
    return std::fclose(m_csv.release()) == 0 && whole;
}
