// Received feedback: counts, checks, latency and the file of feedback records.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <memory>
#include <string>

#include "Records.h"

/// Times in buckets of one percent: memory does not grow with the length of the run.
class LatencyHistogram {
public:
    void add(double seconds);
    std::int64_t getCount() const { return m_count; }
    double getMinimum() const { return m_minimum; }  ///< seconds, exact; 0 without samples
    /// Quantile in seconds, within one percent, for the fraction `part` (0 to 1) of the samples; 0 without samples.
    double getQuantile(double part) const;

private:
    std::array<std::int64_t, 2400> m_buckets{};
    std::int64_t m_count = 0;
    double m_minimum = 0.0;
};

/// Checks every feedback record. Times are seconds since the start of the run.
class FeedbackLog {
public:
    /// Creates the file. False when it cannot be written. An empty path creates no file.
    bool openCsv(const std::string& path);

    void onSent(double time, std::int32_t order, int records);
    void onSendFailed() { ++m_failed; }
    void onDatagram(double time, const unsigned char* bytes, std::size_t size);

    std::int64_t getFeedbackCount() const { return m_feedback; }
    /// Prints the line of the current second on standard output and begins the next second.
    void printSecond(double time);
    void printSummary(double time) const;
    /// False when not everything could be written.
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
    std::int64_t m_failed = 0;     ///< datagrams that the system did not send
    std::int64_t m_feedback = 0;   ///< records of the right size
    std::int64_t m_lost = 0;       ///< counter values not received during a series of order 2
    std::int64_t m_irregular = 0;  ///< wrong size, counter not increasing, heights or angles that are not finite
    Feedback m_last;
    bool m_counter_known = false;  ///< m_last.counter is of the current series of order 2
    std::deque<double> m_unanswered;
    LatencyHistogram m_second;
    LatencyHistogram m_run;
    std::unique_ptr<std::FILE, CloseFile> m_csv;
};
