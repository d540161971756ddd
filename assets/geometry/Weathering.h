// What time and use leave on a painted surface.
#pragma once

#include <cstdint>

#include "geometry/Canvas.h"

/// The same throws on every run.
class Dice {
public:
    explicit Dice(std::uint32_t seed) : m_state(seed) {}
    /// A number from lo to hi.
    double between(double lo, double hi);

private:
    std::uint32_t m_state;
};

/// A stain that runs down from (x, top) over `length` metres and fades out.
void streak(Canvas& canvas, double x, double top, double length, double width, const Color& color);

struct Region {
    double x0, y0, x1, y1;
};
/// Lines between plates of `plate_x` by `plate_y` metres, every second row shifted by half a plate.
void plateSeams(Canvas& canvas, const Region& region, double plate_x, double plate_y, double width, const Color& color);
/// `count` stains that run down from places all over the region, of up to `length` metres.
void streaks(Canvas& canvas, const Region& region, int count, double length, const Color& color, std::uint32_t seed);
/// A band that grows from nothing at y0 to the colour's full opacity at y1 (either may be the higher).
void shade(Canvas& canvas, double x0, double x1, double y0, double y1, const Color& color);
