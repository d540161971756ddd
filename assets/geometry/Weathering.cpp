// Stains, seams and soft shadows on a canvas.
#include "geometry/Weathering.h"

#include <algorithm>

namespace {

Color faded(const Color& color, double share) {
    return {color[0], color[1], color[2], static_cast<std::uint8_t>(color[3] * share)};
}

}  // namespace

double Dice::between(double lo, double hi) {
    m_state = m_state * 1664525u + 1013904223u;  // Numerical Recipes' quick generator
    return lo + (hi - lo) * static_cast<double>(m_state >> 8) / 16777216.0;
}

void streak(Canvas& canvas, double x, double top, double length, double width, const Color& color) {
    constexpr int PIECES = 12;
    for (int i = 0; i < PIECES; ++i) {
        const double y0 = top - length * i / PIECES, y1 = top - length * (i + 1) / PIECES;
        const double left = 1.0 - static_cast<double>(i) / PIECES;
        canvas.line(x, y0, x, y1, width * (0.35 + 0.65 * left), faded(color, left));
    }
}

void plateSeams(Canvas& canvas, const Region& region, double plate_x, double plate_y, double width,
                const Color& color) {
    int row = 0;
    for (double y = region.y0; y < region.y1; y += plate_y, ++row) {
        const double top = std::min(region.y1, y + plate_y);
        canvas.line(region.x0, y, region.x1, y, width, color);
        for (double x = region.x0 + plate_x * (row % 2 == 0 ? 1.0 : 0.5); x < region.x1; x += plate_x) {
            canvas.line(x, y, x, top, width, color);
        }
    }
}

void streaks(Canvas& canvas, const Region& region, int count, double length, const Color& color, std::uint32_t seed) {
    Dice dice(seed);
    for (int i = 0; i < count; ++i) {
        const double x = dice.between(region.x0, region.x1), top = dice.between(region.y0, region.y1);
        streak(canvas, x, top, length * dice.between(0.25, 1.0), dice.between(0.05, 0.22),
               faded(color, dice.between(0.3, 1.0)));
    }
}

void shade(Canvas& canvas, double x0, double x1, double y0, double y1, const Color& color) {
    constexpr int PIECES = 10;
    for (int i = 0; i < PIECES; ++i) {
        const double from = y0 + (y1 - y0) * i / PIECES, to = y0 + (y1 - y0) * (i + 1) / PIECES;
        canvas.rectangle(x0, std::min(from, to), x1, std::max(from, to), faded(color, (i + 0.5) / PIECES));
    }
}
