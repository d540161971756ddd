// Glyphs as strokes on a grid of 4 x 6.
#include "geometry/Lettering.h"

#include <cmath>
#include <cstring>
#include <map>
#include <vector>

#include "engine/math/jMath.h"

namespace {

/// Strokes through points: letters 'a' to 'e' are the columns of a row, digits are the rows. A space begins a new
/// stroke.
const std::map<char, const char*> GLYPHS{
    {'0', "b0d0e1e5d6b6a5a1b0"},
    {'1', "b5c6c0"},
    {'2', "a5b6d6e5e4a1a0e0"},
    {'3', "a5b6d6e5e4d3b3 d3e2e1d0b0a1"},
    {'4', "d0d6a2e2"},
    {'5', "e6a6a3d3e2e1d0b0a1"},
    {'6', "e5d6b6a5a1b0d0e1e2d3a3"},
    {'7', "a6e6e5b0"},
    {'8', "b3a4a5b6d6e5e4d3b3a2a1b0d0e1e2d3"},
    {'9', "a1b0d0e1e5d6b6a5a4b3e3"},
    {'A', "a0a4c6e4e0 a2e2"},
    {'B', "a0a6d6e5e4d3a3 d3e2e1d0a0"},
    {'C', "e5d6b6a5a1b0d0e1"},
    {'D', "a0a6d6e5e1d0a0"},
    {'E', "e6a6a0e0 a3d3"},
    {'F', "e6a6a0 a3d3"},
    {'G', "e5d6b6a5a1b0d0e1e3c3"},
    {'H', "a0a6 e0e6 a3e3"},
    {'I', "c0c6"},
    {'J', "e6e1d0b0a1"},
    {'K', "a0a6 e6a3e0"},
    {'L', "a6a0e0"},
    {'M', "a0a6c3e6e0"},
    {'N', "a0a6e0e6"},
    {'O', "b0d0e1e5d6b6a5a1b0"},
    {'P', "a0a6d6e5e4d3a3"},
    {'Q', "b0d0e1e5d6b6a5a1b0 c2e0"},
    {'R', "a0a6d6e5e4d3a3 c3e0"},
    {'S', "e5d6b6a5a4b3d3e2e1d0b0a1"},
    {'T', "a6e6 c6c0"},
    {'U', "a6a1b0d0e1e6"},
    {'V', "a6c0e6"},
    {'W', "a6b0c3d0e6"},
    {'X', "a0e6 a6e0"},
    {'Y', "a6c3e6 c3c0"},
    {'Z', "a6e6a0e0"},
    {'-', "b3d3"},
};

const char* strokesOf(char glyph) {
    const auto found = GLYPHS.find(glyph);
    return found == GLYPHS.end() ? "" : found->second;
}

}  // namespace

void letter(Canvas& canvas, const std::string& text, double x, double y, double height, double heading,
            const Color& color, double stroke, double slant) {
    const double unit = height / 6.0, pitch = 5.6 * unit, width = stroke * height;
    const double c = std::cos(heading * jMath::DEG2RAD), s = std::sin(heading * jMath::DEG2RAD);
    double left = -(static_cast<double>(text.size() - 1) * pitch + 4.0 * unit) / 2.0;
    for (const char glyph : text) {
        const char* const strokes = strokesOf(glyph);
        double px = 0.0, py = 0.0;
        bool down = false;
        for (const char* at = strokes; *at != '\0'; at += *at == ' ' ? 1 : 2) {
            if (*at == ' ') {
                down = false;
                continue;
            }
            const double v = (at[1] - '0') * unit, u = left + (at[0] - 'a') * unit + slant * v;
            const double qx = x + u * c + v * s, qy = y - u * s + v * c;
            const double length = std::hypot(qx - px, qy - py);
            if (down && length > 0.0) {
                // Extended by half a stroke at both ends, so that corners are closed.
                const double ex = (qx - px) / length * width * 0.38, ey = (qy - py) / length * width * 0.38;
                canvas.line(px - ex, py - ey, qx + ex, qy + ey, width, color);
            }
            px = qx, py = qy, down = true;
        }
        left += pitch;
    }
}
