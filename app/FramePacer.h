// Start time and duration of each frame.
#pragma once

#include <chrono>
#include <optional>

/// Computes dt of each frame. In real time it also waits for the start of the next frame.
class FramePacer {
public:
    /// With a step (seconds), every dt is the step and there is no wait. Otherwise at most `limit` frames a second.
    FramePacer(std::optional<double> step, double limit);
    /// Waits until the next frame is due and returns its dt in seconds.
    double next();

private:
    using Clock = std::chrono::steady_clock;

    std::optional<double> m_step;
    Clock::duration m_period;
    Clock::time_point m_last, m_due;
};
