// The frame: who is called in which order, and when.
#pragma once

#include <chrono>
#include <functional>
#include <optional>

class Engine;
class LogicBase;

/// Runs one frame: update, `move` with the frame's dt, physics, swap, picture with the panels, render.
void runFrame(Engine& engine, LogicBase& logic, double dt, const std::function<void(float)>& move,
              const std::function<void()>& picture);

/// Hands out the frames' dt, and waits for the next frame when they follow the clock.
class FramePacer {
public:
    /// With a step every dt is that and nothing waits; else at most `limit` frames a second are let through.
    FramePacer(std::optional<double> step, double limit);
    /// Waits until the next frame is due and returns its dt in seconds.
    double next();

private:
    using Clock = std::chrono::steady_clock;

    std::optional<double> m_step;
    Clock::duration m_period;
    Clock::time_point m_last, m_due;
};
