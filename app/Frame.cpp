// The frame's order and its pace.
#include "Frame.h"

#include <algorithm>
#include <thread>

#include "common/LogicBase.h"
#include "engine/core/Engine.h"

void runFrame(Engine& engine, LogicBase& logic, double dt, const std::function<void(float)>& move,
              const std::function<void()>& picture) {
    engine.beginFrame(dt);
    logic.update(engine.getFrameTime());
    move(engine.getFrameTime());
    engine.step();
    logic.swap();
    picture();
    logic.render();
    engine.endFrame();
}

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
    // A frame that came late moves those after it: catching up would show as a burst.
    m_due = std::max(m_due + m_period, now);
    return dt;
}
