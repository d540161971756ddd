// Starts processes with posix_spawn; their output goes to a temporary file.
#include "support/Program.h"
#include "support/Paths.h"

#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

Program::Program(const std::string& name, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), name[0] == '/' ? name : DECKVIEW_BIN "/" + name);
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    m_output = std::tmpfile();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int fd : {1, 2}) posix_spawn_file_actions_adddup2(&actions, fileno(m_output), fd);
    if (posix_spawn(&m_pid, argv[0], &actions, nullptr, argv.data(), environ) != 0) m_pid = -1;
    posix_spawn_file_actions_destroy(&actions);
}

Program::~Program() {
    if (!m_exited && m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    std::fclose(m_output);
}

bool Program::hasExited() {
    int state = 0;
    if (!m_exited && (m_pid < 0 || waitpid(m_pid, &state, WNOHANG) == m_pid)) {
        m_exited = true;
        m_status = m_pid > 0 && WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    }
    return m_exited;
}

int Program::wait(double seconds) {
    const int handle = m_pid > 0 ? static_cast<int>(syscall(SYS_pidfd_open, m_pid, 0)) : -1;
    pollfd ended{handle, POLLIN, 0};
    if (!hasExited()) poll(&ended, 1, static_cast<int>(seconds * 1000.0));
    if (handle >= 0) close(handle);
    hasExited();
    return m_status;
}

void Program::signal(int number) const {
    kill(m_pid, number);
}

std::string Program::getOutput() const {
    std::string text;
    std::rewind(m_output);
    for (int c = 0; (c = std::fgetc(m_output)) != EOF;) text += static_cast<char>(c);
    return text;
}
