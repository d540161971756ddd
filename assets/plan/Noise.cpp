// Gradient noise after Perlin (2002): quintic fade, gradients from an integer hash.
#include "plan/Noise.h"

#include <cmath>

namespace {

/// An integer hash with low bias (Wellons 2018, "lowbias32").
std::uint32_t hash(std::uint32_t x) {
    x = (x ^ (x >> 16)) * 0x7feb352dU;
    x = (x ^ (x >> 15)) * 0x846ca68bU;
    return x ^ (x >> 16);
}

double fade(double t) {
    return t * t * t * (t * (t * 6.0 - 15.0) + 10.0);
}
double mix(double a, double b, double t) {
    return a + (b - a) * t;
}

}  // namespace

Noise::Noise(std::uint32_t seed) : m_seed(hash(seed)) {}

double Noise::gradient(std::int32_t ix, std::int32_t iy, double dx, double dy) const {
    constexpr double DIAGONAL = 0.70710678118654752;
    // A table instead of branches, which would be random and therefore unpredictable.
    constexpr struct {
        double x, y, length;
    } DIRECTIONS[] = {{1, 0, 1},        {-1, 0, 1},        {0, 1, 1},         {0, -1, 1},
                      {1, 1, DIAGONAL}, {1, -1, DIAGONAL}, {-1, 1, DIAGONAL}, {-1, -1, DIAGONAL}};
    const auto& d =
        DIRECTIONS[hash(static_cast<std::uint32_t>(ix) + hash(static_cast<std::uint32_t>(iy) + m_seed)) & 7U];
    return (d.x * dx + d.y * dy) * d.length;
}

double Noise::at(double x, double y) const {
    constexpr double TO_UNIT = 1.5;  // eight gradients of length 1 reach about 2/3
    const double fx = std::floor(x), fy = std::floor(y);
    const auto ix = static_cast<std::int32_t>(fx), iy = static_cast<std::int32_t>(fy);
    const double dx = x - fx, dy = y - fy;
    const double u = fade(dx), v = fade(dy);
    const double low = mix(gradient(ix, iy, dx, dy), gradient(ix + 1, iy, dx - 1.0, dy), u);
    const double high = mix(gradient(ix, iy + 1, dx, dy - 1.0), gradient(ix + 1, iy + 1, dx - 1.0, dy - 1.0), u);
    return TO_UNIT * mix(low, high, v);
}

double Noise::fractal(double x, double y, int octaves, double gain) const {
    double sum = 0.0, strength = 1.0, total = 0.0;
    for (int i = 0; i < octaves; ++i) {
        sum += strength * at(x, y);
        total += strength;
        strength *= gain;
        // Shifted, so that the zeros of the octaves do not coincide.
        x = 2.0 * x + 17.3;
        y = 2.0 * y - 9.1;
    }
    return sum / total;
}

double Noise::ridged(double x, double y, int octaves, double gain) const {
    double sum = 0.0, strength = 1.0, total = 0.0;
    for (int i = 0; i < octaves; ++i) {
        const double crest = 1.0 - std::abs(at(x, y));
        sum += strength * crest * crest;
        total += strength;
        strength *= gain;
        x = 2.0 * x + 17.3;
        y = 2.0 * y - 9.1;
    }
    return sum / total;
}
