// The engine log.
#pragma once

#include "engine/text/Containers.h"

/// printf-style log. Lines go to standard error, each with its level and one line end, and to the sink when one is set.
/// A line that is logged again, with no other line between, is folded: its count is written once a second. Safe from
/// any thread.
class jLog {
public:
    enum Level { MESSAGE, WARNING, ERROR };
    using Sink = Function<void(Level, const jString& line)>;

    static void message(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void warning(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void error(const char* format, ...) __attribute__((format(printf, 1, 2)));

    /// Replaces the sink (an empty one removes it); it is called with every line before folding, without its line end,
    /// on the thread that logs.
    static void setSink(Sink sink);
    /// Lines below this level are not written to standard error; the sink still gets them.
    static void setLevel(Level level);
    /// Writes the counts of lines folded so far.
    static void flush();
};
