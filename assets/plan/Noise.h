// Smooth random fields that are the same on every run.
#pragma once

#include <cstdint>

/// Gradient noise on a square lattice: continuous with its slope, within about -1..1, 0 at lattice points.
class Noise {
public:
    explicit Noise(std::uint32_t seed);

    double at(double x, double y) const;
    /// A sum of `octaves` fields, each of half the wavelength and `gain` times the strength of the one before, scaled
    /// back to -1..1. Coordinates count in the first one's wavelength.
    double fractal(double x, double y, int octaves, double gain = 0.5) const;
    /// The same of 1 - |noise|, squared: 0..1, with sharp crests.
    double ridged(double x, double y, int octaves, double gain = 0.5) const;

private:
    double gradient(std::int32_t ix, std::int32_t iy, double dx, double dy) const;

    std::uint32_t m_seed;  ///< scrambled
};
