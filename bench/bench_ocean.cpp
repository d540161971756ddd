// The sea compared with its minimum cost: waves per frame with the bare transforms, a height with one bare bilinear
// sample of both tiles, the surface point with a conversion to geodetic coordinates and back.
#include <kiss_fft.h>

#include <cmath>

#include "Bench.h"
#include "CountAllocations.h"
#include "engine/core/Engine.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/World.h"

namespace {

constexpr int SIZE = WaveCascade::SIZE;
constexpr int ROUNDS = 31;
constexpr int FRAMES = 10;
constexpr int QUERIES = 10000;
constexpr double DT = 1.0 / 60.0;
constexpr double WIND = 12.3;  ///< Beaufort 6

int g_failures = 0;
double g_sum = 0.0;  ///< sum of the results: prevents removal of the calls by the optimiser

void limit(const char* what, double cost, double most, double unit, const char* unit_name) {
    std::printf("%s: %.2f %s (limit %g)\n", what, cost / unit, unit_name, most / unit);
    if (cost > most) ++g_failures;
}

/// The floor of a frame: six real fields and two for foam, two in each complex transform.
class BareTransforms {
public:
    BareTransforms() {
        Random random(5);
        for (kiss_fft_cpx& c : m_in) c = {random.getFloat(-1.0f, 1.0f), random.getFloat(-1.0f, 1.0f)};
    }
    ~BareTransforms() { kiss_fft_free(m_fft); }

    void run() {
        for (int field = 0; field < 4; ++field) {
            for (std::size_t i = 0; i < SIZE; ++i) kiss_fft(m_fft, &m_in[i * SIZE], &m_half[i * SIZE]);
            for (std::size_t i = 0; i < SIZE; ++i) kiss_fft_stride(m_fft, &m_half[i], &m_out[i * SIZE], SIZE);
            g_sum += static_cast<double>(m_out[7].r);
        }
    }

private:
    kiss_fft_cfg m_fft = kiss_fft_alloc(SIZE, 1, nullptr, nullptr);
    std::vector<kiss_fft_cpx> m_in = std::vector<kiss_fft_cpx>(std::size_t(SIZE) * SIZE), m_half = m_in, m_out = m_in;
};

void benchUpdate() {
    WaveField field(1);
    field.setWind(WIND, 1.0, 0.2);
    BareTransforms bare;
    double time = 0.0;
    const bench::Costs costs = bench::compare(
        ROUNDS, FRAMES,
        [&] {
            for (int i = 0; i < FRAMES; ++i) field.update(time += DT);
        },
        [&] {
            for (int i = 0; i < FRAMES; ++i) bare.run();
        });
    bench::printRow("a frame's waves / four bare transforms of 128 x 128", costs, 1.5);
    if (costs.ours > 1.5 * costs.floor) ++g_failures;
    limit("a frame's waves", costs.ours, 1.2e-3, 1e-3, "ms");
    std::vector<double> changes;
    for (int i = 0; i < ROUNDS; ++i) {
        changes.push_back(bench::seconds([&] { field.setWind(WIND + 0.01 * i, 1.0, 0.2); }));
    }
    limit("a change of wind", bench::median(changes), 2e-3, 1e-3, "ms");
}

/// Height of the sample tiles at a point without horizontal displacement; column and row in cells.
float bilinear(const WaveCascade& cascade, float column, float row) {
    const int i = static_cast<int>(column), j = static_cast<int>(row);
    const float u = column - static_cast<float>(i), v = row - static_cast<float>(j);
    const auto at = [&](int x, int y) {
        return cascade.samples[static_cast<std::size_t>((y & (SIZE - 1)) * SIZE + (x & (SIZE - 1)))][2];
    };
    const float south = at(i, j) * (1.0f - u) + at(i + 1, j) * u;
    const float north = at(i, j + 1) * (1.0f - u) + at(i + 1, j + 1) * u;
    return south * (1.0f - v) + north * v;
}

void benchHeight() {
    WaveField field(1);
    field.setWind(WIND, 1.0, 0.2);
    field.update(1.0);
    Random random(6);
    struct Point {
        double east, north;
        float cells[4];
    };
    std::vector<Point> points;
    for (int i = 0; i < QUERIES; ++i) {
        Point p{random.getDouble(-5e3, 5e3), random.getDouble(-5e3, 5e3), {}};
        for (float& cell : p.cells) cell = random.getFloat(0.0f, 128.0f);
        points.push_back(p);
    }
    const bench::Costs costs = bench::compare(
        ROUNDS, QUERIES,
        [&] {
            for (const Point& p : points) g_sum += static_cast<double>(field.getHeight(p.east, p.north));
        },
        [&] {
            for (const Point& p : points) {
                g_sum += static_cast<double>(bilinear(field.getCascade(0), p.cells[0], p.cells[1]) +
                                             bilinear(field.getCascade(1), p.cells[2], p.cells[3]));
            }
        });
    bench::printRow("a height, inverted in three steps / one bilinear look", costs, bench::NO_LIMIT);
    limit("a height", costs.ours, 100e-9, 1e-9, "ns");
}

void benchSurfacePoint() {
    Engine engine;
    auto* const ocean = new ObjectOcean;
    ocean->setWgsPosition({112.35, 16.84, 0.0});
    engine.getWorld()->addChild(ocean);
    const EllipsoidModel& globe = engine.getEllipsoid();
    Random random(7);
    std::vector<dvec3> points;
    for (int i = 0; i < QUERIES; ++i) {
        points.push_back(globe.toWorld({random.getDouble(112.3, 112.4), random.getDouble(16.8, 16.9), 5.0}));
    }
    bench::printRow("a surface point / to geodetic coordinates and back",
                    bench::compare(
                        ROUNDS, QUERIES,
                        [&] {
                            for (const dvec3& p : points) g_sum += ocean->getWorldPoint(p).x;
                        },
                        [&] {
                            for (const dvec3& p : points) g_sum += globe.toWorld(globe.toWGS(p)).x;
                        }),
                    bench::NO_LIMIT);
    const long before = g_allocations;
    for (int i = 0; i < 100; ++i) {
        engine.getWorld()->getEnvironment().wind.x += 0.01f * static_cast<float>(i % 2);
        engine.beginFrame(DT);
        g_sum += ocean->getWorldPoint(points[0]).x;
    }
    limit("allocations in 100 frames of the sea, 50 with a new wind", static_cast<double>(g_allocations - before), 0.0,
          1.0, "in all");
}

}  // namespace

int main() {
    bench::printHeader();
    benchUpdate();
    benchHeight();
    benchSurfacePoint();
    return g_failures || std::isnan(g_sum) ? 1 : 0;
}
