// Text files with one timed action per line.
#pragma once

#include <string>
#include <vector>

/// One line: time, verb and the rest of the line, unchanged.
struct TimedLine {
    double time = 0.0;  ///< seconds of the engine's clock; not used when `frame` is set
    long frame = 0;     ///< counted from 1; 0 for a line with a time
    std::string verb;
    std::string rest;  ///< without leading and trailing spaces
    int number = 0;    ///< line number in the file, from 1
};

/// Reads lines "1.5 VERB REST" and "@90 VERB REST"; lines that begin with '#' are comments. False when the file cannot
/// be read or a line has no time or no verb; `error` then contains the file and the line.
bool readTimedLines(const std::string& file, std::vector<TimedLine>& lines, std::string& error);

/// Returns lines in the file's order when they are due. A line is never returned before the lines above it.
class TimedQueue {
public:
    void set(std::vector<TimedLine> lines) {
        m_lines = std::move(lines);
        m_next = 0;
    }
    /// The next line that is due at the start of this frame; null when there is none. Valid until `set`.
    const TimedLine* next(double time, long frame);

private:
    std::vector<TimedLine> m_lines;
    std::size_t m_next = 0;
};
