// flyhost: a flight-simulation host that drives a viewer over UDP and checks its feedback.
#include <csignal>
#include <cstdio>
#include <string>

#include "Options.h"
#include "Session.h"

namespace {

volatile std::sig_atomic_t g_stop = 0;

/// The signals set a flag. They are delivered only while the session waits, so none is lost between check and wait.
void catchSignals() {
    struct sigaction action {};
    action.sa_handler = [](int) { g_stop = 1; };
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : {SIGINT, SIGTERM}) {
        sigaction(signal, &action, nullptr);
        sigaddset(&held, signal);
    }
    sigprocmask(SIG_BLOCK, &held, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    std::string error;
    switch (parseOptions(argc, argv, options, error)) {
        case ParseResult::HELP:
            std::fputs(USAGE, stdout);
            return 0;
        case ParseResult::WRONG:
            std::fprintf(stderr, "flyhost: %s\n%s", error.c_str(), USAGE);
            return 2;
        case ParseResult::RUN:
            break;
    }
    catchSignals();
    Session session(options);
    if (!session.open(error)) {
        std::fprintf(stderr, "flyhost: %s\n", error.c_str());
        return 1;
    }
    return session.run(g_stop) ? 0 : 1;
}
