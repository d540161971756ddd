// The log: formats lines, folds repeats, calls the sink.
#include "engine/text/Log.h"

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

constexpr const char* LEVEL_NAMES[] = {"", "warning: ", "error: "};

struct LogState {
    std::recursive_mutex mutex;  // a sink may log
    jLog::Sink sink;
    jLog::Level lowest = jLog::MESSAGE;
    jLog::Level level = jLog::MESSAGE;  ///< of the last line
    jString line;                       ///< the last one
    SteadyTime written{};               ///< time of the last output of the line or its count
    int folded = 0;                     ///< repeats since the last output
};

LogState& state() {
    static LogState* const instance = new LogState;  // statics may log in their destructors
    return *instance;
}

void writeFolded(LogState& s) {
    if (s.folded > 0) std::fprintf(stderr, "%s%s (%d times more)\n", LEVEL_NAMES[s.level], s.line.c_str(), s.folded);
    s.folded = 0;
}

void writeLine(LogState& s, jLog::Level level, const jString& line) {
    // Folding only helps the reader at the terminal; no result depends on this clock.
    const SteadyTime now = std::chrono::steady_clock::now();
    if (level == s.level && line == s.line && s.written != SteadyTime()) {
        ++s.folded;
        if (now - s.written < std::chrono::seconds(1)) return;
        writeFolded(s);
    } else {
        writeFolded(s);
        std::fprintf(stderr, "%s%s\n", LEVEL_NAMES[level], line.c_str());
        s.level = level;
        s.line = line;
    }
    s.written = now;
}

void log(jLog::Level level, const char* format, std::va_list args) {
    std::va_list copy;
    va_copy(copy, args);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (length < 0) return;
    jString line(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(line.data(), line.size() + 1, format, args);
    while (!line.empty() && (line.back() == '\n' || line.back() == ' ')) line.pop_back();

    LogState& s = state();
    const std::lock_guard lock(s.mutex);
    if (s.sink) s.sink(level, line);
    if (level >= s.lowest) writeLine(s, level, line);
}

}  // namespace

void jLog::message(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    log(MESSAGE, format, args);
    va_end(args);
}

void jLog::warning(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    log(WARNING, format, args);
    va_end(args);
}

void jLog::error(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    log(ERROR, format, args);
    va_end(args);
}

void jLog::setSink(Sink sink) {
    LogState& s = state();
    const std::lock_guard lock(s.mutex);
    s.sink = std::move(sink);
}

void jLog::setLevel(Level level) {
    LogState& s = state();
    const std::lock_guard lock(s.mutex);
    s.lowest = level;
}

void jLog::flush() {
    LogState& s = state();
    const std::lock_guard lock(s.mutex);
    writeFolded(s);
}
