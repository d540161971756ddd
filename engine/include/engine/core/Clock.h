// Clocks of the contract. All of them read the engine's time, which changes only once per frame, so that runs with a
// fixed step are reproducible.
#pragma once

#include "engine/Api.h"

/// Elapsed engine time from a start.
class ENGINE_API Stopwatch {
public:
    void start();  ///< from now; a running watch is restarted
    void stop();   ///< keeps the elapsed time
    void reset();  ///< to zero, stopped
    bool isRunning() const { return m_running; }
    double getElapsedMilliseconds() const;  ///< since the last start

private:
    bool m_running = false;
    double m_start = 0.0;
    double m_elapsed = 0.0;
};

/// The engine's time.
class ENGINE_API jTimer {
public:
    static double getTimeSecond();  ///< seconds since the engine's start; 0 without an engine
};
