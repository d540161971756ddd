// The waves of one cascade of the sea: from a spectrum to samples of the surface.
#pragma once

#include <array>
#include <complex>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/math/jMath.h"
#include "engine/scene/WaveField.h"
#include "scene/WaveSpectrum.h"

struct kiss_fft_state;

using Complex = std::complex<float>;

/// exp(2 pi i n t / PERIOD) for all n up to a maximum. Angles are reduced in double precision, so that the accuracy
/// does not decrease with time.
class WaveTurns {
public:
    /// All frequencies are multiples of one per this time, seconds; the error of the longest wave is at most a quarter
    /// of a percent.
    static constexpr double PERIOD = 4096.0;

    explicit WaveTurns(int largest);
    void set(double time);  ///< seconds
    Complex operator[](int n) const { return m_turns[static_cast<std::size_t>(n)]; }

private:
    std::vector<Complex> m_turns;
};

/// Sums over the waves of a band.
struct WaveSums {
    double samples = 0.0;  ///< variance of the samples' height, m^2
    double surface = 0.0;  ///< variance of the surface interpolated between samples, m^2
    double lift = 0.0;     ///< half the sum of amplitude^2 * wave number, m
    double gather = 0.0;   ///< variance of the convergence of the water, including the foam's decay
};

/// The waves of one cascade. Phases and frequencies are set by the constructor; a spectrum sets the amplitudes.
class WaveBand {
public:
    /// A square of `length` metres for wave numbers from `from` to `below` (exclusive), rad/m.
    WaveBand(double length, double from, double below, Random& random);
    WaveBand(const WaveBand&) = delete;
    WaveBand& operator=(const WaveBand&) = delete;

    int getLargestTurn() const;
    WaveSums setSpectrum(const WaveSpectrum& spectrum);
    /// Completes `setSpectrum`: multiplies the amplitudes by `gain` and raises the samples by `lift` metres. Foam
    /// covers about the fraction `cover` of the samples, those with the strongest convergence; `gather` is the variance
    /// of the convergence.
    void scale(double gain, double lift, double gather, double cover);
    /// The samples at the time set in `turns`.
    void compute(const WaveTurns& turns, std::vector<std::array<float, 4>>& samples);

private:
    /// Two waves in opposite directions.
    struct Pair {
        Complex ahead, astern;  ///< half the amplitudes, with the phases at time 0
        Complex gather;         ///< wave number, filtered by the foam's decay; 1/m
        float east, north;      ///< unit vector of the direction ahead
        std::uint16_t turn;     ///< frequency: waves per period
        std::uint16_t at, opposite;
    };
    struct Source {
        int column, row;        ///< of the wave ahead: number of waves per side
        Complex ahead, astern;  ///< phases at time 0
    };
    struct FreeTransform {
        void operator()(kiss_fft_state* state) const;
    };

    void addPair(int column, int row, Random& random);
    double getVariance(const WaveSpectrum& spectrum, int column, int row) const;
    double getInterpolated(int column, int row) const;
    void fill(const WaveTurns& turns);
    void transform(const std::vector<Complex>& in, std::vector<Complex>& out);

    double m_step;           ///< between wave numbers, rad/m
    double m_from, m_below;  ///< rad/m
    int m_reach;             ///< maximum number of waves per side
    std::vector<Source> m_sources;
    std::vector<Pair> m_pairs;
    float m_lift = 0.0f;
    float m_foam_scale = 0.0f, m_foam_offset = 0.0f;
    std::unique_ptr<kiss_fft_state, FreeTransform> m_fft;
    // One row per wave number east; each has one element per wave number north.
    std::vector<Complex> m_waves_height_east, m_waves_north_gather, m_half_done;
    // Rows from the south. Two real fields per complex array.
    std::vector<Complex> m_height_east, m_north_gather;
};
