// A program of the build, run as a process.
#pragma once

#include <sys/types.h>
#include <string>
#include <vector>

/// Starts build/bin/NAME, or the program of an absolute path, with these arguments. Its output (both streams) is
/// written to a file, which is deleted with this object. A process that still runs is then killed.
class Program {
public:
    Program(const std::string& name, std::vector<std::string> arguments);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool hasExited();
    /// Waits at most `seconds` for the end and returns the exit status: -1 when the process did not exit normally.
    int wait(double seconds = 120.0);
    void signal(int number) const;
    int getStatus() const { return m_status; }  ///< -1 when it did not exit normally
    std::string getOutput() const;              ///< so far

private:
    pid_t m_pid = -1;
    bool m_exited = false;
    int m_status = -1;
    std::FILE* m_output = nullptr;
};
