// The sea's surface: computed for the frame's time at the first use, then looked up.
#include "engine/scene/WaveField.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "engine/math/jMath.h"
#include "scene/WaveBand.h"
#include "scene/WaveSpectrum.h"

namespace {

constexpr int SIZE = WaveCascade::SIZE;
/// Sides of the cascades, metres. Their ratio is far from simple fractions, so that no common period is visible.
constexpr double LARGE = 709.0, SMALL = 61.0;
/// Rad/m: the boundary of the bands is three waves per side of the small square, enough to look irregular.
constexpr double SPLIT = 2.0 * jMath::PI * 3.0 / SMALL;

using Values = float __attribute__((vector_size(16)));

Values load(const std::array<float, 4>& sample) {
    Values values;
    std::memcpy(&values, sample.data(), sizeof values);
    return values;
}

/// Values at a position and their derivatives east and north, 1/m.
struct Surface {
    Values value, east, north;

    Surface operator+(const Surface& b) const { return {value + b.value, east + b.east, north + b.north}; }
};

/// Position in a cascade: samples from the origin, in [SIZE, 2 SIZE), so that a step west or south of it is still
/// positive.
struct CascadePoint {
    CascadePoint(const WaveCascade& in, double length, double east, double north)
        : cascade(in),
          per_metre(static_cast<float>(SIZE / length)),
          column(wrap(east * (1.0 / length))),
          row(wrap(north * (1.0 / length))) {}

    /// Bilinear interpolation between the four samples around the point `to_east` and `to_north` metres away.
    Surface look(float to_east, float to_north) const {
        const float c = column + to_east * per_metre, r = row + to_north * per_metre;
        const int i = static_cast<int>(c), j = static_cast<int>(r);
        const float u = c - static_cast<float>(i), v = r - static_cast<float>(j);
        const auto at = [&](int x, int y) {
            return load(cascade.samples[static_cast<std::size_t>((y & (SIZE - 1)) * SIZE + (x & (SIZE - 1)))]);
        };
        const Values sw = at(i, j), se = at(i + 1, j), nw = at(i, j + 1), ne = at(i + 1, j + 1);
        const Values s = sw + (se - sw) * u, n = nw + (ne - nw) * u;
        const Values west = nw - sw, along = se - sw;
        return {s + (n - s) * v, (along + ((ne - nw) - along) * v) * per_metre,
                (west + ((ne - se) - west) * u) * per_metre};
    }

    const WaveCascade& cascade;
    float per_metre, column, row;

private:
    static float wrap(double lengths) {
        constexpr double MAX_LENGTHS = 1 << 20;  // more than the globe's circumference
        if (!(std::abs(lengths) < MAX_LENGTHS)) return SIZE;
        const double positive = lengths + MAX_LENGTHS;
        return static_cast<float>((positive - static_cast<double>(static_cast<int>(positive)) + 1.0) * SIZE);
    }
};

/// Share of the sea covered by foam (Monahan and O'Muircheartaigh 1980).
double coverOf(double speed) {
    return 3.84e-6 * std::pow(std::max(speed, 0.0), 3.41);
}

}  // namespace

struct WaveField::State {
    explicit State(Random random)
        : bands{WaveBand(LARGE, 0.0, SPLIT, random), WaveBand(SMALL, SPLIT, HUGE_VAL, random)},
          turns(bands[1].getLargestTurn()) {
        cascades[0].length = LARGE;
        cascades[1].length = SMALL;
        for (WaveCascade& cascade : cascades) cascade.samples.resize(std::size_t(SIZE) * SIZE);
    }

    void setSpectrum(const WaveSpectrum& spectrum);
    void compute();

    WaveBand bands[NUM_CASCADES];
    WaveTurns turns;
    WaveCascade cascades[NUM_CASCADES];
    double speed = 0.0, to_east = 1.0, to_north = 0.0;
    double time = 0.0;
    bool flat = true;
    bool stale = false;  ///< the samples do not match the state and time
    std::uint32_t revision = 0;
};

/// Scales the sums to the spectrum's variance. Waves that the squares cannot represent, longer than the large one or
/// shorter than two samples of the small one, are distributed over the other waves. The target variance is between
/// those of the samples and of the interpolated surface, which differ from it by up to 7 % at Beaufort 1 and 4 % from 2
/// up.
void WaveField::State::setSpectrum(const WaveSpectrum& spectrum) {
    WaveSums sums[NUM_CASCADES], all;
    for (int i = 0; i < NUM_CASCADES; ++i) {
        sums[i] = bands[i].setSpectrum(spectrum);
        all.samples += sums[i].samples;
        all.surface += sums[i].surface;
        all.lift += sums[i].lift;
        all.gather += sums[i].gather;
    }
    const double wanted = spectrum.getHeight() * spectrum.getHeight() / 16.0;
    flat = !(wanted > 0.0 && all.samples > 0.0);
    if (flat) return;
    const double gain2 = wanted / std::sqrt(all.samples * all.surface);
    for (int i = 0; i < NUM_CASCADES; ++i) {
        // Crests are narrower than troughs, so that the mean height over positions is lower than the mean over the
        // water by `lift`.
        bands[i].scale(std::sqrt(gain2), i == 0 ? gain2 * all.lift : 0.0, gain2 * sums[i].gather,
                       coverOf(speed) * sums[i].gather / all.gather);
    }
}

void WaveField::State::compute() {
    if (flat) {
        for (WaveCascade& cascade : cascades)
            std::fill(cascade.samples.begin(), cascade.samples.end(), std::array<float, 4>{});
    } else {
        turns.set(time);
        for (int i = 0; i < NUM_CASCADES; ++i) bands[i].compute(turns, cascades[i].samples);
    }
    ++revision;
    stale = false;
}

WaveField::WaveField(std::uint64_t seed) : m_state(std::make_unique<State>(Random(seed))) {}

WaveField::~WaveField() = default;

void WaveField::setWind(double speed, double to_east, double to_north) {
    State& s = *m_state;
    if (speed == s.speed && to_east == s.to_east && to_north == s.to_north) return;
    if (!std::isfinite(speed) || !std::isfinite(to_east) || !std::isfinite(to_north)) return;
    s.speed = speed;
    s.to_east = to_east;
    s.to_north = to_north;
    s.setSpectrum(WaveSpectrum(speed, to_east, to_north));
    s.stale = true;
}

void WaveField::update(double time) {
    State& s = *m_state;
    if (!std::isfinite(time) || (!s.stale && (s.flat || time == s.time))) return;
    s.time = time;
    s.compute();
}

const WaveCascade& WaveField::getCascade(int i) const {
    return m_state->cascades[i];
}

std::uint32_t WaveField::getRevision() const {
    return m_state->revision;
}

vec3 WaveField::getDisplacement(double east, double north) const {
    const CascadePoint large(m_state->cascades[0], LARGE, east, north), small(m_state->cascades[1], SMALL, east, north);
    const Values sum = large.look(0.0f, 0.0f).value + small.look(0.0f, 0.0f).value;
    return {sum[0], sum[1], sum[2]};
}

float WaveField::getHeight(double east, double north) const {
    if (m_state->flat) return 0.0f;
    const CascadePoint large(m_state->cascades[0], LARGE, east, north), small(m_state->cascades[1], SMALL, east, north);
    float x = 0.0f, y = 0.0f, height = 0.0f;  // of the water now at this point: its position at rest, its height
    for (int step = 0; step < 3; ++step) {    // Newton's method
        const Surface at = large.look(x, y) + small.look(x, y);
        const float east_east = 1.0f + at.east[0], east_north = at.north[0];
        const float north_east = at.east[1], north_north = 1.0f + at.north[1];
        const float to_east = -x - at.value[0], to_north = -y - at.value[1];
        // Near a fold of the surface a full step would diverge.
        const float per_area = 1.0f / std::max(east_east * north_north - east_north * north_east, 0.2f);
        const float step_east = (north_north * to_east - east_north * to_north) * per_area;
        const float step_north = (east_east * to_north - north_east * to_east) * per_area;
        x += step_east;
        y += step_north;
        height = at.value[2] + at.east[2] * step_east + at.north[2] * step_north;
    }
    return height;
}
