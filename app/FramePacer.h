// When a frame begins, and how much time it covers.
#pragma once

#include <chrono>
#include <optional>

/// Gives each frame its dt, and waits for the next frame when frames follow the clock.
class FramePacer {
public:
    /// With a step (seconds) every dt is that and nothing waits; else there are at most `limit` frames a second.
    FramePacer(std::optional<double> step, double limit);
    /// Waits until the next frame is due and returns its dt in seconds.
    double next();

private:
    using Clock = std::chrono::steady_clock;

    std::optional<double> m_step;
    Clock::duration m_period;
    Clock::time_point m_last, m_due;
};
