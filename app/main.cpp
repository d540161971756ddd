// deckview: reads its options and runs the viewer until its end or a signal.
#include <malloc.h>

#include <csignal>
#include <cstdio>

#include "Viewer.h"
#include "engine/text/Log.h"

namespace {

volatile std::sig_atomic_t g_stop = 0;

void stopOnSignals() {
    struct sigaction action = {};
    action.sa_handler = [](int) { g_stop = 1; };
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool run(const Options& options, std::string& error) {
    Viewer viewer(options);
    if (!viewer.open(error)) return false;
    while (!g_stop && viewer.frame()) {
    }
    return viewer.close(error);
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    if (const auto status = parseOptions(argc, argv, options)) return *status;
    // Large free blocks return to the system at once. By default this threshold grows with the first one that is freed.
    mallopt(M_MMAP_THRESHOLD, 1 << 18);
    // Keeps blocks that each frame allocates and frees: getting them from the system again costs 1 ms per frame.
    mallopt(M_TRIM_THRESHOLD, 1 << 23);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);  // keeps the order of traces and log lines, also in a file
    stopOnSignals();
    std::string error;
    const bool good = run(options, error);
    jLog::flush();
    if (!good) std::fprintf(stderr, "deckview: %s\n", error.c_str());
    return good ? 0 : 1;
}
