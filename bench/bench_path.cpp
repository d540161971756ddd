// The lookup in a recorded flight with many frames, compared with the minimum of a search by time: a binary search in a
// bare array of times. A last line gives the cost of a linear search over all frames and of the loading.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "Bench.h"
#include "CountAllocations.h"
#include "engine/core/Engine.h"
#include "engine/math/jMath.h"
#include "src/kit/PlaneFlyKit.h"
#include "support/TestScene.h"

namespace {

constexpr int FRAMES = 100000, LOOKUPS = 20000, ROUNDS = 15;
constexpr double ALLOWED_RATIO = 3.0;

double g_sum = 0.0;

std::string pathText() {
    std::string text;
    for (int i = 0; i < FRAMES; ++i) {
        text += std::to_string(i * 0.5) + " " + std::to_string(i * 1.3) + " -4.25 120.5 1.0 2.5 -10.25 22.75 0.0 0.0\n";
    }
    return text;
}

}  // namespace

int main() {
    const TestFolder folder;
    folder.write("data/path.dat", pathText());
    EngineSettings settings;
    settings.root = folder.getPath().string();
    Engine engine(settings);
    PlaneFlyKit kit;
    double loading = 0.0;
    {
        const bench::Quiet quiet;
        loading = bench::seconds([&] { kit.init("data/path.dat"); });
    }
    if (kit.getNumFrames() != FRAMES) return 1;

    Random random(1);
    std::vector<float> wanted, times;
    for (int i = 0; i < LOOKUPS; ++i) wanted.push_back(random.getFloat(0.0f, FRAMES * 0.5f - 1.0f));
    for (const FlyFrame& frame : kit.getFileFrames()) times.push_back(frame.time);

    const bench::Costs search = bench::compare(
        ROUNDS, LOOKUPS,
        [&] {
            for (const float t : wanted) g_sum += kit.frame(t)->pivot.x;
        },
        [&] {
            for (const float t : wanted) g_sum += *std::lower_bound(times.begin(), times.end(), t);
        });
    const long before = g_allocations;
    for (const float t : wanted) g_sum += kit.frame(t)->pivot.x;
    const long allocated = g_allocations - before;

    constexpr int WALKS = 50;
    const double walk = bench::seconds([&] {
                            for (int i = 0; i < WALKS; ++i) {
                                const FlyFrame* at = kit.getFirstFrame();
                                while (at->time < wanted[static_cast<std::size_t>(i)]) ++at;
                                g_sum += at->pivot.x;
                            }
                        }) /
                        WALKS;

    bench::printHeader();
    bench::printRow("lookup in 100,000 frames / binary search of the times", search, ALLOWED_RATIO);
    std::printf("a walk over the frames to the same place: %.1f us; loading: %.1f ms; allocations in lookups: %ld\n",
                walk * 1e6, loading * 1e3, allocated);
    std::printf("check sum %.6g\n", g_sum);
    return search.ours / search.floor > ALLOWED_RATIO || allocated > 0 ? 1 : 0;
}
