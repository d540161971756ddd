// What came back: counts, checks, latency and the file of feedback records.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <memory>
#include <string>

#include "Records.h"

/// Times in buckets of one percent, so that a run of any length takes the same memory.
class LatencyHistogram {
public:
    void add(double seconds);
    std::int64_t getCount() const { return m_count; }
    double getMinimum() const { return m_minimum; }  ///< seconds, exact; 0 without samples
    /// Seconds, within one percent, that the share `part` (0 to 1) of the samples does not exceed; 0 without samples.
    double getQuantile(double part) const;

private:
    std::array<std::int64_t, 2400> m_buckets{};
    std::int64_t m_count = 0;
    double m_minimum = 0.0;
};

/// Checks every feedback record. Times are seconds since the start of the run.
class FeedbackLog {
public:
    /// Starts the file. False when it cannot be written; an empty path writes none.
    bool openCsv(const std::string& path);

    void onSent(double time, std::int32_t order, int records);
    void onSendFailed() { ++m_failed; }
    void onDatagram(double time, const unsigned char* bytes, std::size_t size);

    std::int64_t getFeedbackCount() const { return m_feedback; }
    /// The line of the present second, on standard output; begins the next second.
    void printSecond(double time);
    void printSummary(double time) const;
    /// False when the file did not take everything.
    bool closeCsv();

private:
    void check(const Feedback& feedback);
    double takeLatency(double time);
    void writeCsv(double time, const Feedback& feedback, double latency);

    struct CloseFile {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::int64_t m_sent_records = 0;
    std::int64_t m_sent_datagrams = 0;
    std::int64_t m_failed = 0;     ///< datagrams the system did not take
    std::int64_t m_feedback = 0;   ///< records of the right size
    std::int64_t m_lost = 0;       ///< counter values that never came while the viewer was to send
    std::int64_t m_irregular = 0;  ///< wrong size, counter not rising, heights or angles that are no numbers
    Feedback m_last;
    bool m_counter_known = false;  ///< m_last.counter is of the present stretch of order 2
    std::deque<double> m_unanswered;
    LatencyHistogram m_second;
    LatencyHistogram m_run;
    std::unique_ptr<std::FILE, CloseFile> m_csv;
};
