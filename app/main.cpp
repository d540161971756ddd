// deckview: reads its options and runs the viewer until it ends or is told to.
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
    // Large blocks go back to the system as soon as they are free; by default the threshold rises with the first.
    mallopt(M_MMAP_THRESHOLD, 1 << 18);
    // Blocks that each frame takes and frees stay; fetching them from the system anew costs a millisecond a frame.
    mallopt(M_TRIM_THRESHOLD, 1 << 23);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);  // keeps traces and log lines in order, also in a file
    stopOnSignals();
    std::string error;
    const bool good = run(options, error);
    jLog::flush();
    if (!good) std::fprintf(stderr, "deckview: %s\n", error.c_str());
    return good ? 0 : 1;
}
