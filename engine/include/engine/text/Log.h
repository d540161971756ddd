// The engine log.
#pragma once

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// printf-style log. Lines are written to standard error, each with its level and one line end, and passed to the sink
/// when one is set. Immediate repeats of a line are folded: their count is written once per second. Safe from any
/// thread.
class ENGINE_API jLog {
public:
    enum Level { MESSAGE, WARNING, ERROR };
    using Sink = Function<void(Level, const jString& line)>;

    static void message(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void warning(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void error(const char* format, ...) __attribute__((format(printf, 1, 2)));

    /// Replaces the sink (an empty one removes it). It is called with every line before folding, without its line end,
    /// on the logging thread.
    static void setSink(Sink sink);
    /// Lines below this level are not written to standard error; the sink still receives them.
    static void setLevel(Level level);
    /// Writes the counts of the lines folded so far.
    static void flush();
};
