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

/// exp(2 pi i n t / PERIOD) for every n up to a largest one. Turns are reduced in double precision, so that they are as
/// good after days as at once.
class WaveTurns {
public:
    /// Every frequency is a multiple of one wave in this time, seconds; the longest wave's is off by a quarter of a
    /// percent at most.
    static constexpr double PERIOD = 4096.0;

    explicit WaveTurns(int largest);
    void set(double time);  ///< seconds
    Complex operator[](int n) const { return m_turns[static_cast<std::size_t>(n)]; }

private:
    std::vector<Complex> m_turns;
};

/// What the waves of a band add up to.
struct WaveSums {
    double samples = 0.0;  ///< variance of the samples' height, m^2
    double surface = 0.0;  ///< of the surface that is interpolated between them, m^2
    double lift = 0.0;     ///< half the sum of amplitude^2 * wave number, m
    double gather = 0.0;   ///< variance of how far the water is drawn together, foam's memory included
};

/// The waves of one cascade. Their phases and frequencies stay as they were made; a spectrum sets their amplitudes.
class WaveBand {
public:
    /// A square of `length` metres for wave numbers from `from` up to (not including) `below`, rad/m.
    WaveBand(double length, double from, double below, Random& random);
    WaveBand(const WaveBand&) = delete;
    WaveBand& operator=(const WaveBand&) = delete;

    int getLargestTurn() const;
    WaveSums setSpectrum(const WaveSpectrum& spectrum);
    /// Ends `setSpectrum`: multiplies the amplitudes by `gain` and lifts the samples by `lift` metres. Foam takes about
    /// the part `cover` of them, where the water is drawn together most; `gather` is the variance of that.
    void scale(double gain, double lift, double gather, double cover);
    /// The samples at the time that the turns stand at.
    void compute(const WaveTurns& turns, std::vector<std::array<float, 4>>& samples);

private:
    /// Two waves that run against each other, as a frame needs them.
    struct Pair {
        Complex ahead, astern;  ///< half the amplitudes, turned by the phases at time 0
        Complex gather;         ///< wave number, and what foam's memory makes of it; 1/m
        float east, north;      ///< unit vector ahead
        std::uint16_t turn;     ///< frequency: waves in a period
        std::uint16_t at, opposite;
    };
    struct Source {
        int column, row;        ///< of the wave that runs ahead: waves along the sides
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
    int m_reach;             ///< no wave has more along a side
    std::vector<Source> m_sources;
    std::vector<Pair> m_pairs;
    float m_lift = 0.0f;
    float m_foam_scale = 0.0f, m_foam_offset = 0.0f;
    std::unique_ptr<kiss_fft_state, FreeTransform> m_fft;
    // A row for each wave number east, and in it one for each north.
    std::vector<Complex> m_waves_height_east, m_waves_north_gather, m_half_done;
    // Rows from the south. Two real fields in one complex each.
    std::vector<Complex> m_height_east, m_north_gather;
};
