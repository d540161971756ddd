// The wave spectrum of a wind: computed when the sea's state changes.
#include "scene/WaveSpectrum.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace {

/// Phillips' constant of the Pierson-Moskowitz spectrum.
constexpr double ALPHA = 8.1e-3;

/// Wave heights in metres for Beaufort 0 to 12.
constexpr double HEIGHTS[] = {0.0, 0.1, 0.2, 0.6, 1.0, 2.0, 3.0, 4.0, 5.5, 7.0, 9.0, 11.5, 14.0};

double heightOf(double speed) {
    const double beaufort = std::min(getBeaufortNumber(speed), 12.0);
    const int step = std::min(static_cast<int>(beaufort), 11);
    return std::lerp(HEIGHTS[step], HEIGHTS[step + 1], beaufort - step);
}

/// Parameter beta of the width of sech^2(beta * angle); `log_ratio` is the logarithm of frequency over peak frequency.
/// Banner 1990, equation 3.9; constant below 0.56 times the peak, where there is hardly any energy.
float spreadOf(float log_ratio) {
    constexpr float LOW = -0.57982f, PEAK = -0.05129f, HIGH = 0.47000f;  // logarithms of 0.56, 0.95 and 1.6
    if (log_ratio < PEAK) return 2.61f * std::exp(1.3f * std::max(log_ratio, LOW));
    if (log_ratio < HIGH) return 2.28f * std::exp(-1.3f * log_ratio);
    return std::exp(2.302585f * (-0.4f + 0.8393f * std::exp(-0.567f * 2.0f * log_ratio)));
}

}  // namespace

double getBeaufortSpeed(double beaufort) {
    return 0.836 * std::pow(beaufort, 1.5);
}

double getBeaufortNumber(double speed) {
    return std::pow(std::fmax(speed, 0.0) / 0.836, 2.0 / 3.0);
}

WaveSpectrum::WaveSpectrum(double speed, double to_east, double to_north) : m_height(heightOf(speed)) {
    // The variance of the spectrum, alpha g^2 / (5 peak^4), equals that of the height, (Hs / 4)^2.
    m_peak = m_height > 0.0 ? std::pow(ALPHA * 3.2 * GRAVITY * GRAVITY / (m_height * m_height), 0.25)
                            : std::numeric_limits<double>::infinity();
    m_peak_number = static_cast<float>(m_peak * m_peak / GRAVITY);
    const double length = std::hypot(to_east, to_north);
    m_to_east = length > 0.0 ? static_cast<float>(to_east / length) : 1.0f;
    m_to_north = length > 0.0 ? static_cast<float>(to_north / length) : 0.0f;
}

float WaveSpectrum::getDensity(float east, float north) const {
    const float k2 = east * east + north * north;
    if (k2 <= 0.0f || m_height <= 0.0) return 0.0f;
    // With omega^2 = g k the density over k is alpha / 2 k^-3 exp(-5/4 (peak / k)^2); over the plane it is divided by
    // k.
    const float peak2 = m_peak_number * m_peak_number;
    const float radial = 0.5f * static_cast<float>(ALPHA) / (k2 * k2) * std::exp(-1.25f * peak2 / k2);
    const float beta = spreadOf(0.25f * std::log(k2 / peak2));
    const float angle = std::atan2(m_to_east * north - m_to_north * east, m_to_east * east + m_to_north * north);
    const float e = std::exp(-2.0f * beta * std::abs(angle)), around = std::exp(-2.0f * beta * 3.1415927f);
    const float sech2 = 4.0f * e / ((1.0f + e) * (1.0f + e));
    return radial * sech2 * 0.5f * beta * (1.0f + around) / (1.0f - around);
}
