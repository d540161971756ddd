// Frames in real time or with a fixed step.
#include "FramePacer.h"

#include <algorithm>
#include <thread>

FramePacer::FramePacer(std::optional<double> step, double limit)
    : m_step(step),
      m_period(std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / std::max(limit, 1.0)))),
      m_last(Clock::now()),
      m_due(m_last + m_period) {}

double FramePacer::next() {
    if (m_step) return *m_step;
    std::this_thread::sleep_until(m_due);
    const Clock::time_point now = Clock::now();
    const double dt = std::chrono::duration<double>(now - m_last).count();
    m_last = now;
    // A late frame delays the later ones: a burst of short frames to catch up would be visible.
    m_due = std::max(m_due + m_period, now);
    return dt;
}
