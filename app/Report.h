// Reports of a run: statistics, state hashes, memory still allocated.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "src/logic/Logic_Test_Fly.h"

class Engine;

/// Prints one line a second on standard output, with the link's counts of that second.
class StatsPrinter {
public:
    explicit StatsPrinter(const Logic_Test_Fly* logic);
    /// After each frame. `frame_seconds`: time spent in the frame.
    void frame(double frame_seconds);

private:
    using Clock = std::chrono::steady_clock;

    const Logic_Test_Fly* m_logic;  ///< null with another logic: the line then has frame statistics only
    Clock::time_point m_start;
    int m_frames = 0;
    double m_spent = 0.0;
    LinkCounts m_last;  ///< counts at the last line
    std::uint64_t m_refused = 0;
    std::uint64_t m_dropped = 0;
};

/// Writes one line "frame hash" per frame.
class HashWriter {
public:
    /// False when the file cannot be created; `error` then contains its name.
    bool open(const std::string& file, std::string& error);
    void frame(const Engine& engine);
    /// False when a line could not be written; `error` then contains the file's name.
    bool close(std::string& error);

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> m_file;
    std::string m_name;
};

/// Prints each block of memory that is still registered, and their number.
void printMemoryReport();
