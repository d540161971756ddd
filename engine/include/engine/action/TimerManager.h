// Delayed calls.
#pragma once

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// Calls functions after a delay, in the order of addition.
class ENGINE_API TimerManager {
public:
    /// Calls `function` after `delay` seconds, and every `delay` seconds again when `repeat` is set. Returns an id > 0.
    int addTimer(float delay, bool repeat, Function<void()> function);
    void removeTimer(int id);  ///< an unknown id is ignored
    void update(float dt);     ///< seconds
    int getNumTimers() const { return m_timers.size(); }

private:
    struct Timer {
        int id;
        float delay, left;
        bool repeat;
        Function<void()> function;
    };
    jVector<Timer> m_timers;
    int m_next_id = 1;
};
