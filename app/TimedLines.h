// Text files of things to do at a time of the run.
#pragma once

#include <string>
#include <vector>

/// One line: when, what, and the rest of the line as it stands.
struct TimedLine {
    double time = 0.0;  ///< seconds of the engine's clock; not looked at when `frame` is set
    long frame = 0;     ///< counted from 1; 0 for a line with a time
    std::string verb;
    std::string rest;  ///< without spaces round it
    int number = 0;    ///< in the file, from 1
};

/// Reads "1.5 VERB REST" and "@90 VERB REST"; '#' begins a line that is not read. False, with `error` naming the file
/// and the line, when the file cannot be read or a line has no time or no verb.
bool readTimedLines(const std::string& file, std::vector<TimedLine>& lines, std::string& error);

/// Hands out lines in the file's order once their times have come; a line waits for those before it.
class TimedQueue {
public:
    void set(std::vector<TimedLine> lines) {
        m_lines = std::move(lines);
        m_next = 0;
    }
    /// The next line that is due as this frame begins, null when none is. Valid until the lines are set anew.
    const TimedLine* next(double time, long frame);

private:
    std::vector<TimedLine> m_lines;
    std::size_t m_next = 0;
};
