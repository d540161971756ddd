// The island's walls: doors, ports, louvres, pipes, shadows below projecting parts, stains.
#include <algorithm>
#include <cmath>

#include "geometry/Weathering.h"
#include "models/CarrierShape.h"
#include "plan/Layout.h"

namespace carrier {
namespace {

// Left part of the picture: the side seen from abeam, x along the ship. Right part: the ends, x across the ship.
constexpr double BACK = -50.0, FRONT = 10.0, ACROSS = 20.0, RIGHT = FRONT + 18.0, FOOT = 19.5, HEAD = 45.5;
constexpr Color GREY{154, 160, 163, 255}, SEAM{96, 102, 106, 90}, DARK{26, 28, 31, 255}, FRAME{118, 124, 128, 255},
    SHADE{34, 38, 44, 130}, RUST{116, 76, 52, 70}, GRIME{70, 74, 78, 70}, PIPE{122, 128, 132, 255};

/// Walls between two roofs: their heights and the positions of ports and doors.
struct Storey {
    double from, to, doors_every, ports_every, ports_at;
};
constexpr Storey STOREYS[] = {{20.0, 26.2, 11.0, 2.4, 24.4}, {26.2, 29.6, 9.0, 2.0, 28.1}, {29.6, 32.4, 8.0, 0.0, 0.0},
                              {32.4, 35.5, 0.0, 3.0, 34.0},  {35.5, 39.0, 0.0, 0.0, 0.0},  {39.0, 45.5, 0.0, 0.0, 0.0}};

void door(Canvas& c, double x, double z) {
    c.rectangle(x - 0.62, z + 0.02, x + 0.62, z + 2.25, FRAME);
    c.rectangle(x - 0.48, z + 0.14, x + 0.48, z + 2.1, {128, 134, 138, 255});
    c.line(x - 0.48, z + 0.14, x - 0.48, z + 2.1, 0.06, DARK);
    c.line(x - 0.48, z + 2.1, x + 0.48, z + 2.1, 0.06, DARK);
    c.circle(x, z + 1.5, 0.1, 0.2, DARK);
    c.line(x + 0.3, z + 0.9, x + 0.3, z + 1.3, 0.07, DARK);
}

void port(Canvas& c, double x, double z) {
    c.rectangle(x - 0.36, z - 0.28, x + 0.36, z + 0.28, FRAME);
    c.rectangle(x - 0.27, z - 0.2, x + 0.27, z + 0.2, DARK);
    c.rectangle(x - 0.25, z + 0.05, x + 0.1, z + 0.17, {70, 82, 94, 255});
}

void louvre(Canvas& c, double x0, double z0, double x1, double z1) {
    c.rectangle(x0 - 0.1, z0 - 0.1, x1 + 0.1, z1 + 0.1, FRAME);
    c.rectangle(x0, z0, x1, z1, {44, 47, 50, 255});
    for (double z = z0 + 0.12; z < z1; z += 0.24) c.line(x0, z, x1, z, 0.1, {104, 109, 112, 255});
}

void drawStorey(Canvas& c, const Storey& s, double x0, double x1, std::uint32_t seed) {
    plateSeams(c, {x0, s.from, x1, s.to}, 3.6, 1.7, 0.05, SEAM);
    shade(c, x0, x1, s.from + 1.4, s.from, SHADE);
    shade(c, x0, x1, s.to - 0.8, s.to, SHADE);
    Dice dice(seed);
    if (s.ports_every > 0.0) {
        for (double x = x0 + 1.4; x < x1 - 1.0; x += s.ports_every) {
            if (dice.between(0.0, 1.0) > 0.25) port(c, x, s.ports_at);
        }
    }
    for (double x = x0 + 2.5; s.doors_every > 0.0 && x < x1 - 1.0; x += s.doors_every) door(c, x, s.from);
    streaks(c, {x0, s.from + 1.5, x1, s.to}, static_cast<int>(x1 - x0), 2.4, RUST, seed + 1);
    streaks(c, {x0, s.from + 1.0, x1, s.to}, static_cast<int>(2.0 * (x1 - x0)), 2.8, GRIME, seed + 2);
}

void drawFoot(Canvas& c, double x0, double x1) {
    c.rectangle(x0, FOOT, x1, 20.35, {70, 74, 78, 255});
    for (const double z : {22.7, 22.95}) c.line(x0 + 1.0, z, x1 - 1.0, z, 0.12, PIPE);
    for (double x = x0 + 5.0; x < x1 - 2.0; x += 12.5) {
        louvre(c, x, 22.0, x + 1.8, 23.6);
        c.rectangle(x + 3.0, 20.9, x + 3.6, 21.6, {150, 38, 32, 255});
        c.line(x + 4.4, 20.4, x + 4.4, 26.0, 0.08, PIPE);
        c.line(x + 4.8, 20.4, x + 4.8, 26.0, 0.08, PIPE);
        for (double z = 20.6; z < 26.0; z += 0.35) c.line(x + 4.4, z, x + 4.8, z, 0.06, PIPE);
    }
}

void drawFunnel(Canvas& c) {
    for (const double z : {31.0, 33.6}) {
        for (double x = -35.0; x < -24.0; x += 3.6) louvre(c, x, z, x + 2.9, z + 1.9);
    }
    shade(c, -37.0, -21.0, 36.4, 39.8, {22, 22, 24, 235});
    streaks(c, {-36.0, 36.0, -22.0, 39.0}, 40, 4.0, {30, 30, 32, 120}, 77);
}

std::array<double, 2> place(const dvec3& p, const dvec3& normal) {
    const bool end = std::abs(normal.y) > std::abs(normal.x);
    const double x = end ? FRONT + std::clamp(p.x - ACROSS, 0.2, 17.8) : std::clamp(p.y, BACK, FRONT - 0.2);
    return {(x - BACK) / (RIGHT - BACK), (HEAD - std::clamp(p.z, FOOT, HEAD)) / (HEAD - FOOT)};
}

}  // namespace

std::shared_ptr<const Texture> wallTexture() {
    Canvas canvas(1560, 520, BACK, FOOT, RIGHT, HEAD, GREY);
    std::uint32_t seed = 40;
    for (const Storey& storey : STOREYS) {
        drawStorey(canvas, storey, BACK, FRONT, seed++);
        drawStorey(canvas, storey, FRONT, RIGHT, seed + 20);
    }
    drawFoot(canvas, -48.0, 6.0);
    drawFoot(canvas, FRONT + 3.5, FRONT + 14.5);
    drawFunnel(canvas);
    canvas.weather(6, 5.0, 23);
    Texture texture;
    texture.png = canvas.toPng();
    texture.project = place;
    return std::make_shared<const Texture>(texture);
}

}  // namespace carrier
