// Reads timed text files before the run and returns their lines during the run.
#include "TimedLines.h"

#include <cmath>
#include <cstdlib>
#include <fstream>

namespace {

constexpr const char* SPACES = " \t\r";

std::string trim(const std::string& text) {
    const auto first = text.find_first_not_of(SPACES);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(SPACES) - first + 1);
}

/// Removes the first word from a text and returns it.
std::string takeWord(std::string& text) {
    const auto end = text.find_first_of(SPACES);
    const std::string word = text.substr(0, end);
    text = end == std::string::npos ? "" : trim(text.substr(end));
    return word;
}

bool readWhen(const std::string& word, TimedLine& line) {
    const bool is_frame = word[0] == '@';
    const char* const begin = word.c_str() + (is_frame ? 1 : 0);
    char* end = nullptr;
    const double value = std::strtod(begin, &end);
    if (end == begin || *end != '\0' || !std::isfinite(value) || value < 0.0) return false;
    if (!is_frame) {
        line.time = value;
        return true;
    }
    line.frame = static_cast<long>(value);
    return value >= 1.0 && value < 1e9 && static_cast<double>(line.frame) == value;
}

}  // namespace

bool readTimedLines(const std::string& file, std::vector<TimedLine>& lines, std::string& error) {
    std::ifstream in(file);
    if (!in) {
        error = "\"" + file + "\" cannot be read";
        return false;
    }
    std::string text;
    for (int number = 1; std::getline(in, text); ++number) {
        text = trim(text);
        if (text.empty() || text[0] == '#') continue;
        TimedLine line;
        line.number = number;
        const std::string when = takeWord(text);
        line.verb = takeWord(text);
        line.rest = text;
        if (!readWhen(when, line) || line.verb.empty()) {
            error = file + ":" + std::to_string(number) + ": must be SECONDS or @FRAME, then what to do";
            return false;
        }
        lines.push_back(std::move(line));
    }
    return true;
}

const TimedLine* TimedQueue::next(double time, long frame) {
    if (m_next == m_lines.size()) return nullptr;
    constexpr double HALF_A_TICK = 1e-9;  // tolerance for rounding of a time that equals a frame's
    const TimedLine& line = m_lines[m_next];
    const bool is_due = line.frame > 0 ? line.frame <= frame : line.time <= time + HALF_A_TICK;
    if (!is_due) return nullptr;
    ++m_next;
    return &line;
}
