// What a run tells: statistics, state hashes, what was left allocated.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "src/logic/Logic_Test_Fly.h"

class Engine;

/// Prints one line a second on standard output, with what came and went in that second.
class StatsPrinter {
public:
    explicit StatsPrinter(const Logic_Test_Fly* logic);
    /// After each frame; `frame_seconds` is the time spent in it.
    void frame(double frame_seconds);

private:
    using Clock = std::chrono::steady_clock;

    const Logic_Test_Fly* m_logic;  ///< null with another logic: only the frames are told
    Clock::time_point m_start;
    int m_frames = 0;
    double m_spent = 0.0;
    LinkCounts m_last;  ///< what was told already
    std::uint64_t m_refused = 0;
    std::uint64_t m_dropped = 0;
};

/// Writes "frame hash" lines.
class HashWriter {
public:
    /// False, with `error` naming the file, when it cannot be written.
    bool open(const std::string& file, std::string& error);
    void frame(const Engine& engine);
    /// False, with `error` naming the file, when anything could not be written.
    bool close(std::string& error);

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> m_file;
    std::string m_name;
};

/// Prints every block that is still registered, and the count.
void printMemoryReport();
