// Shared by the benches: alternating measurement of two costs, and the line with their ratio.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace bench {

/// Discards standard output during its lifetime, so that traces of the measured code do not appear in the table.
class Quiet {
public:
    Quiet() {
        std::fflush(stdout);
        m_output = dup(1);
        const int nothing = open("/dev/null", O_WRONLY);
        dup2(nothing, 1);
        close(nothing);
    }
    ~Quiet() {
        std::fflush(stdout);
        dup2(m_output, 1);
        close(m_output);
    }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    int m_output;
};

/// Seconds taken by a call.
template <class F>
double seconds(F&& call) {
    const auto begin = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

inline double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

struct Costs {
    double ours = 0.0;   ///< seconds per item
    double floor = 0.0;  ///< seconds per item
};

/// Runs both in turn, so that a busy machine slows both alike. Returns the medians; `items`: per call.
template <class Ours, class Floor>
Costs compare(int rounds, double items, Ours&& ours, Floor&& floor) {
    std::vector<double> a, b;
    for (int i = 0; i < rounds; ++i) {
        b.push_back(seconds(floor) / items);
        a.push_back(seconds(ours) / items);
    }
    return {median(a), median(b)};
}

inline void printHeader() {
    std::printf("| %-58s | %10s | %10s | %6s | %6s |\n", "", "ours", "floor", "ratio", "limit");
}

constexpr double NO_LIMIT = 0.0;

/// One row: both costs in nanoseconds, their ratio and its limit.
inline void printRow(const char* what, const Costs& c, double limit) {
    char wanted[16] = "-";
    if (limit > NO_LIMIT) std::snprintf(wanted, sizeof wanted, "%.2f", limit);
    std::printf("| %-58s | %7.1f ns | %7.1f ns | %6.2f | %6s |\n", what, c.ours * 1e9, c.floor * 1e9, c.ours / c.floor,
                wanted);
}

}  // namespace bench
