// Smooth random fields, equal in every run.
#pragma once

#include <cstdint>

/// Gradient noise on a square lattice: continuous with continuous slope, within about -1..1, 0 at lattice points.
class Noise {
public:
    explicit Noise(std::uint32_t seed);

    double at(double x, double y) const;
    /// A sum of `octaves` fields, each with half the wavelength and `gain` times the amplitude of the previous one,
    /// scaled to -1..1. Coordinates are in wavelengths of the first.
    double fractal(double x, double y, int octaves, double gain = 0.5) const;
    /// The same sum for 1 - |noise|, squared: 0..1, with sharp crests.
    double ridged(double x, double y, int octaves, double gain = 0.5) const;

private:
    double gradient(std::int32_t ix, std::int32_t iy, double dx, double dy) const;

    std::uint32_t m_seed;  ///< hashed
};
