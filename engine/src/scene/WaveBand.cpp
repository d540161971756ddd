// Waves by inverse Fourier transform: computed once per frame when the sea is used.
#include "scene/WaveBand.h"

#include <kiss_fft.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr int SIZE = WaveCascade::SIZE;
constexpr std::size_t CELLS = std::size_t(SIZE) * SIZE;
constexpr double TURN = 2.0 * jMath::PI;

/// Time constant of the foam's decay, seconds.
constexpr float FOAM_TIME = 1.0f;

Complex unit(double turns) {
    const double angle = TURN * (turns - std::floor(turns));
    return {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle))};
}

std::size_t cell(int column, int row) {
    return static_cast<std::size_t>((column & (SIZE - 1)) * SIZE + (row & (SIZE - 1)));
}

const kiss_fft_cpx* bare(const Complex* c) {
    return reinterpret_cast<const kiss_fft_cpx*>(c);
}
kiss_fft_cpx* bare(Complex* c) {
    return reinterpret_cast<kiss_fft_cpx*>(c);
}

/// Quantile of the normal distribution: standard deviations above the mean that are exceeded with the probability `p`
/// (0 < p <= 0.5). Abramowitz and Stegun 26.2.23, error below 5e-4.
double deviationsAbove(double p) {
    const double t = std::sqrt(-2.0 * std::log(p));
    return t - (2.515517 + t * (0.802853 + t * 0.010328)) / (1.0 + t * (1.432788 + t * (0.189269 + t * 0.001308)));
}

}  // namespace

WaveTurns::WaveTurns(int largest) : m_turns(static_cast<std::size_t>(largest) + 1) {}

void WaveTurns::set(double time) {
    constexpr std::size_t FINE = 64;
    const double turn = time / PERIOD - std::floor(time / PERIOD);
    std::array<Complex, FINE> fine;
    for (std::size_t i = 0; i < FINE; ++i) fine[i] = unit(static_cast<double>(i) * turn);
    for (std::size_t i = 0; i < m_turns.size(); i += FINE) {
        const Complex coarse = unit(static_cast<double>(i) * turn);
        const std::size_t end = std::min(m_turns.size() - i, FINE);
        for (std::size_t k = 0; k < end; ++k) m_turns[i + k] = coarse * fine[k];
    }
}

void WaveBand::FreeTransform::operator()(kiss_fft_state* state) const {
    kiss_fft_free(state);
}

WaveBand::WaveBand(double length, double from, double below, Random& random)
    : m_step(TURN / length),
      m_from(from),
      m_below(below),
      m_reach(std::min(SIZE / 2 - 1, static_cast<int>(std::min(below / m_step, 1.0 * SIZE)))),
      m_fft(kiss_fft_alloc(SIZE, 1, nullptr, nullptr)),
      m_waves_height_east(CELLS),
      m_waves_north_gather(CELLS),
      m_half_done(CELLS),
      m_height_east(CELLS),
      m_north_gather(CELLS) {
    for (int column = 0; column <= m_reach; ++column) {
        for (int row = -m_reach; row <= m_reach; ++row) {
            if (column > 0 || row > 0) addPair(column, row, random);
        }
    }
}

void WaveBand::addPair(int column, int row, Random& random) {
    const double count = std::hypot(column, row), k = count * m_step;
    if (k + m_step < m_from || k - m_step >= m_below) return;
    const Complex ahead = unit(random.getDouble(0.0, 1.0)), astern = unit(random.getDouble(0.0, 1.0));
    m_sources.push_back({column, row, ahead, astern});
    Pair pair{};
    pair.east = static_cast<float>(column / count);
    pair.north = static_cast<float>(row / count);
    pair.turn =
        static_cast<std::uint16_t>(std::lround(std::sqrt(WaveSpectrum::GRAVITY * k) * WaveTurns::PERIOD / TURN));
    pair.at = static_cast<std::uint16_t>(cell(column, row));
    pair.opposite = static_cast<std::uint16_t>(cell(-column, -row));
    // Exponentially weighted mean over the past of a wave exp(-i omega t).
    const float omega = static_cast<float>(pair.turn * TURN / WaveTurns::PERIOD);
    pair.gather = static_cast<float>(k) / Complex(1.0f, -omega * FOAM_TIME);
    m_pairs.push_back(pair);
}

int WaveBand::getLargestTurn() const {
    int largest = 0;
    for (const Pair& pair : m_pairs) largest = std::max<int>(largest, pair.turn);
    return largest;
}

/// The part of the spectrum inside the band and in the cell of wave numbers around this wave, m^2. Cells that are large
/// relative to their wave number are integrated in parts.
double WaveBand::getVariance(const WaveSpectrum& spectrum, int column, int row) const {
    const int parts = std::max(std::abs(column), std::abs(row)) < 8 ? 4 : 1;
    double sum = 0.0;
    for (int i = 0; i < parts * parts; ++i) {
        const double east = (column - 0.5 + (i % parts + 0.5) / parts) * m_step;
        const double north = (row - 0.5 + (i / parts + 0.5) / parts) * m_step;
        const double k2 = east * east + north * north;
        if (k2 < m_from * m_from || k2 >= m_below * m_below) continue;
        sum += static_cast<double>(spectrum.getDensity(static_cast<float>(east), static_cast<float>(north)));
    }
    return sum * m_step * m_step / (parts * parts);
}

/// Share of a wave's variance that remains on the bilinear surface between samples.
double WaveBand::getInterpolated(int column, int row) const {
    return (2.0 + std::cos(TURN * column / SIZE)) * (2.0 + std::cos(TURN * row / SIZE)) / 9.0;
}

WaveSums WaveBand::setSpectrum(const WaveSpectrum& spectrum) {
    WaveSums sums;
    for (std::size_t i = 0; i < m_pairs.size(); ++i) {
        const Source& source = m_sources[i];
        Pair& pair = m_pairs[i];
        const double ahead = getVariance(spectrum, source.column, source.row);
        const double astern = getVariance(spectrum, -source.column, -source.row);
        pair.ahead = source.ahead * static_cast<float>(std::sqrt(ahead / 2.0));  // half of sqrt(2 variance)
        pair.astern = source.astern * static_cast<float>(std::sqrt(astern / 2.0));
        const double both = ahead + astern;
        sums.samples += both;
        sums.surface += both * getInterpolated(source.column, source.row);
        sums.lift += both * std::hypot(source.column, source.row) * m_step;
        sums.gather += both * static_cast<double>(std::norm(pair.gather));
    }
    return sums;
}

void WaveBand::scale(double gain, double lift, double gather, double cover) {
    constexpr double RAMP = 0.5;  // standard deviations from no foam to full foam
    for (Pair& pair : m_pairs) {
        pair.ahead *= static_cast<float>(gain);
        pair.astern *= static_cast<float>(gain);
    }
    m_lift = static_cast<float>(lift);
    const bool foams = gather > 0.0 && cover > 1e-9;
    m_foam_scale = foams ? static_cast<float>(1.0 / (RAMP * std::sqrt(gather))) : 0.0f;
    m_foam_offset = foams ? static_cast<float>(0.5 - deviationsAbove(std::min(cover, 0.5)) / RAMP) : 0.0f;
}

/// The spectra of two pairs of real fields. For waves of height h the horizontal displacement ahead is i h (each
/// particle moves in a circle), and its convergence is k h.
void WaveBand::fill(const WaveTurns& turns) {
    constexpr Complex I(0.0f, 1.0f);
    for (const Pair& pair : m_pairs) {
        const Complex turn = turns[pair.turn];
        const Complex ahead = pair.ahead * std::conj(turn), astern = std::conj(pair.astern) * turn;
        const Complex height = ahead + astern;
        const Complex gather = pair.gather * ahead + std::conj(pair.gather) * astern;
        // Fields a and b are packed as a + i b; at the opposite wave number each is its conjugate.
        m_waves_height_east[pair.at] = height * (1.0f - pair.east);
        m_waves_height_east[pair.opposite] = std::conj(height) * (1.0f + pair.east);
        m_waves_north_gather[pair.at] = I * (pair.north * height + gather);
        m_waves_north_gather[pair.opposite] = I * (std::conj(gather) - pair.north * std::conj(height));
    }
    m_waves_height_east[0] = {m_lift, 0.0f};
}

void WaveBand::transform(const std::vector<Complex>& in, std::vector<Complex>& out) {
    for (int column = -m_reach; column <= m_reach; ++column) {  // all others are always zero
        const std::size_t at = cell(column, 0);
        kiss_fft(m_fft.get(), bare(&in[at]), bare(&m_half_done[at]));
    }
    for (std::size_t row = 0; row < SIZE; ++row) {
        kiss_fft_stride(m_fft.get(), bare(&m_half_done[row]), bare(&out[row * SIZE]), SIZE);
    }
}

void WaveBand::compute(const WaveTurns& turns, std::vector<std::array<float, 4>>& samples) {
    fill(turns);
    transform(m_waves_height_east, m_height_east);
    transform(m_waves_north_gather, m_north_gather);
    for (std::size_t i = 0; i < CELLS; ++i) {
        const Complex a = m_height_east[i], b = m_north_gather[i];
        const float foam = b.imag() * m_foam_scale + m_foam_offset;
        samples[i] = {a.imag(), b.real(), a.real(), std::min(std::max(foam, 0.0f), 1.0f)};
    }
}
