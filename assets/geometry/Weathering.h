// Traces of wear and weather on a painted surface.
#pragma once

#include <cstdint>

#include "geometry/Canvas.h"

/// Pseudo-random numbers, equal in every run.
class Dice {
public:
    explicit Dice(std::uint32_t seed) : m_state(seed) {}
    /// A number between lo and hi.
    double between(double lo, double hi);

private:
    std::uint32_t m_state;
};

/// A stain that runs down from (x, top) over `length` metres and fades out.
void streak(Canvas& canvas, double x, double top, double length, double width, const Color& color);

struct Region {
    double x0, y0, x1, y1;
};
/// Seams between plates of `plate_x` by `plate_y` metres; every second row is shifted by half a plate.
void plateSeams(Canvas& canvas, const Region& region, double plate_x, double plate_y, double width, const Color& color);
/// `count` vertical stains at random positions in the region, each up to `length` metres long.
void streaks(Canvas& canvas, const Region& region, int count, double length, const Color& color, std::uint32_t seed);
/// A band whose opacity rises from 0 at y0 to that of the colour at y1 (y0 may be above y1).
void shade(Canvas& canvas, double x0, double x1, double y0, double y1, const Color& color);
