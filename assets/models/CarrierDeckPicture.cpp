// The flight deck's paint. Its markings are a picture on the deck and not geometry above it: the ground below an
// aircraft on the deck must be the deck's own object.
#include <cmath>

#include "geometry/Weathering.h"
#include "models/CarrierShape.h"
#include "plan/Layout.h"
#include "plan/Noise.h"

namespace carrier {
namespace {

// The picture's axes on the ship: x toward the bow, y to port.
constexpr double SIDE = 39.5, BACK = -153.0, FRONT = 153.0;
constexpr Color GROUND{66, 69, 72, 255}, WHITE{226, 226, 220, 255}, YELLOW{218, 178, 48, 255}, RED{184, 46, 38, 255},
    STEEL{30, 31, 32, 255}, PLATE{84, 87, 90, 255}, EDGE{40, 42, 44, 200};

void line(Canvas& c, const dvec3& a, const dvec3& b, double width, const Color& color) {
    c.line(a.y, -a.x, b.y, -b.x, width, color);
}

void dashes(Canvas& c, const dvec3& a, const dvec3& b, double width, double piece, double gap, const Color& color) {
    c.dashes(a.y, -a.x, b.y, -b.x, width, piece, gap, color);
}

/// The coat below all markings: plates, tie-down points, repairs, the darker strip.
void drawCoat(Canvas& c) {
    plateSeams(c, {BACK, -SIDE, FRONT, SIDE}, 8.0, 2.5, 0.1, {40, 42, 44, 90});
    Dice dice(11);
    for (int i = 0; i < 110; ++i) {
        const double x = dice.between(BACK, FRONT), y = dice.between(-SIDE, SIDE);
        const double wide = dice.between(1.5, 9.0), high = dice.between(1.0, 4.0);
        const auto tone = static_cast<std::uint8_t>(dice.between(46.0, 86.0));
        c.rectangle(x, y, x + wide, y + high, {tone, tone, static_cast<std::uint8_t>(tone + 3), 50});
    }
    const double half = STRIP_WIDTH / 2.0;
    line(c, onStrip(2.0), onStrip(STRIP_LENGTH), 2.0 * half, {44, 45, 47, 120});
    for (double x = BACK + 1.0; x < FRONT; x += 2.5) {
        for (double y = -SIDE + 1.0; y < SIDE; y += 2.5) c.circle(x, y, 0.02, 0.1, {34, 35, 36, 120});
    }
}

/// Black tyre marks in the touchdown area of the strip, and bright scratches from hooks.
void drawWear(Canvas& c) {
    Dice dice(5);
    for (int i = 0; i < 260; ++i) {
        const double at = 30.0 + 22.0 * (dice.between(0.0, 1.0) + dice.between(0.0, 2.4));
        const double side = (dice.between(-1.0, 1.0) + dice.between(-1.0, 1.0)) * 1.8 + (i % 2 == 0 ? -2.2 : 2.2);
        const double turn = dice.between(-0.5, 0.5), length = dice.between(6.0, 34.0);
        line(c, onStrip(at, side), onStrip(at + length, side + turn), dice.between(0.25, 0.6), {18, 18, 20, 26});
    }
    for (int i = 0; i < 50; ++i) {
        const double at = dice.between(42.0, 90.0), side = dice.between(-1.6, 1.6);
        line(c, onStrip(at, side), onStrip(at + dice.between(2.0, 12.0), side), 0.1, {150, 148, 142, 60});
    }
    for (int i = 0; i < 90; ++i) {  // nose and main wheels rolling to the ramp
        const double x = (i % 3 - 1) * 2.3 + dice.between(-0.6, 0.6), y = dice.between(-20.0, 100.0);
        line(c, {x + 4.0, y, 0.0}, {x + 1.0, y + dice.between(15.0, 45.0), 0.0}, 0.3, {24, 24, 26, 22});
    }
    for (int i = 0; i < 70; ++i) {  // oil and fuel
        const double x = dice.between(-120.0, 110.0), y = dice.between(-30.0, 34.0), r = dice.between(0.1, 0.5);
        c.circle(x, y, r, 2.0 * r, {26, 26, 27, 70});
    }
}

void drawWires(Canvas& c) {
    const double half = STRIP_WIDTH / 2.0;
    for (const double wire : {46.0, 58.0, 70.0, 82.0}) {
        line(c, onStrip(wire, -half - 3.0), onStrip(wire, half + 3.0), 0.9, {36, 36, 38, 120});
        line(c, onStrip(wire, -half - 2.6), onStrip(wire, half + 2.6), 0.16, {150, 146, 138, 255});
        for (const double side : {-half - 3.0, half + 3.0}) {
            line(c, onStrip(wire - 1.1, side), onStrip(wire + 1.1, side), 1.5, STEEL);
            line(c, onStrip(wire - 0.7, side), onStrip(wire + 0.7, side), 0.9, YELLOW);
        }
        for (const double side : {-half * 0.66, half * 0.66}) {
            line(c, onStrip(wire - 0.4, side), onStrip(wire + 0.4, side), 0.3, STEEL);
        }
    }
}

void drawStrip(Canvas& c) {
    const double half = STRIP_WIDTH / 2.0;
    for (const double side : {-half, half}) {
        line(c, onStrip(2.6, side), onStrip(STRIP_LENGTH, side), 0.9, WHITE);
        line(c, onStrip(2.6, side * 0.93), onStrip(STRIP_LENGTH, side * 0.93), 0.22, YELLOW);
    }
    dashes(c, onStrip(8.0), onStrip(STRIP_LENGTH), 0.9, 7.0, 4.0, WHITE);
    for (const double at : {2.6, STRIP_LENGTH})
        line(c, onStrip(at, -half - 0.45), onStrip(at, half + 0.45), 1.2, WHITE);
    for (int i = -6; i <= 6; ++i) {  // the threshold's bars
        if (i != 0) line(c, onStrip(4.2, i * 1.9), onStrip(12.5, i * 1.9), 0.8, WHITE);
    }
    dashes(c, onStrip(3.0, half + 3.6), onStrip(STRIP_LENGTH - 36.0, half + 3.6), 0.75, 3.0, 1.5, RED);
    line(c, onStrip(3.0, half + 4.4), onStrip(STRIP_LENGTH - 36.0, half + 4.4), 0.25, WHITE);
    for (const double side : {-1.0, 1.0}) {  // touchdown marks abreast of the third wire
        for (const double out : {4.0, 6.2, 8.4}) {
            line(c, onStrip(61.0, side * out), onStrip(67.5, side * out), 0.9, WHITE);
        }
    }
}

/// A launch run from its start over the ramp, with the deflector behind it and the chocks in front of the wheels.
void drawRun(Canvas& c, const dvec3& start, double bow_x) {
    const dvec3 bend{start.x, RAMP_START - 22.0, 0.0}, end{bow_x, 151.0, 0.0};
    line(c, start, bend, 0.75, YELLOW);
    line(c, bend, end, 0.75, YELLOW);
    for (const double side : {-3.2, 3.2}) {
        const dvec3 off(side, 0.0, 0.0);
        dashes(c, start + off, bend + off, 0.22, 2.0, 2.0, WHITE);
    }
    line(c, start + dvec3(-5.0, -1.0, 0.0), start + dvec3(5.0, -1.0, 0.0), 0.6, WHITE);
    for (const double side : {-2.4, 2.4}) {
        const double y = start.y - 3.0, x = -start.x - side;
        c.rectangle(y - 0.9, x - 0.8, y + 0.9, x + 0.8, STEEL);
        c.rectangle(y - 0.7, x - 0.6, y + 0.7, x + 0.6, PLATE);
    }
    const double y0 = start.y - 21.0, y1 = start.y - 14.0;
    c.rectangle(y0, -start.x - 5.4, y1, -start.x + 5.4, STEEL);
    for (int i = 0; i < 6; ++i) {
        const double x = -start.x - 5.3 + 1.77 * i;
        c.rectangle(y0 + 0.15, x + 0.1, y1 - 0.15, x + 1.7, {96, 98, 100, 255});
        for (int k = 1; k < 5; ++k) c.rectangle(y0 + 1.4 * k - 0.1, x + 0.1, y0 + 1.4 * k, x + 1.7, EDGE);
        shade(c, y0 + 0.15, y1 - 0.15, x + 0.1, x + 1.7, {40, 38, 36, 90});
    }
    for (int i = 0; i < 11; ++i) {
        const double x = -start.x - 5.4 + i;
        c.rectangle(y1, x, y1 + 0.5, x + 0.8, i % 2 == 0 ? RED : WHITE);
    }
}

void drawLaunchRuns(Canvas& c) {
    drawRun(c, {-7.0, LAUNCH_POINT.y, 0.0}, -2.4);
    drawRun(c, {LAUNCH_POINT.x, LAUNCH_POINT.y, 0.0}, 2.4);
    drawRun(c, {-13.5, -52.0, 0.0}, -5.2);
    for (const double side : {-1.0, 1.0}) {
        line(c, {side * 13.6, RAMP_START - 4.0, 0.0}, {side * 9.4, 146.0, 0.0}, 0.6, WHITE);
        line(c, {side * 13.0, RAMP_START - 4.0, 0.0}, {side * 8.8, 146.0, 0.0}, 0.2, RED);
    }
    for (double y = 148.6; y < 152.4; y += 1.0) {  // the edge of the ramp
        line(c, {-9.0, y, 0.0}, {9.0, y, 0.0}, 0.5, static_cast<int>(y) % 2 == 0 ? RED : WHITE);
    }
    c.number("16", 125.0, 0.0, 10.5, 90.0, WHITE);
}

void drawLift(Canvas& c, double y) {
    c.rectangle(y - LIFT_HALF, -36.2, y + LIFT_HALF, -21.8, {76, 79, 82, 255});
    plateSeams(c, {y - LIFT_HALF, -36.2, y + LIFT_HALF, -21.8}, 3.0, 3.6, 0.1, {36, 38, 40, 160});
    const double x[] = {-36.0, -21.8}, along[] = {y - LIFT_HALF, y + LIFT_HALF};
    for (int i = 0; i < 2; ++i) {
        c.line(along[i], x[0], along[i], x[1], 0.35, STEEL);
        c.dashes(along[i], x[0], along[i], x[1], 0.3, 1.0, 1.0, YELLOW);
    }
    c.line(along[0], x[1], along[1], x[1], 0.5, STEEL);
    c.dashes(along[0], x[1] + 0.6, along[1], x[1] + 0.6, 0.6, 1.2, 1.2, YELLOW);
    c.line(along[0] + 1.0, -29.0, along[1] - 1.0, -29.0, 0.25, WHITE);
}

void drawStations(Canvas& c) {
    for (const double y : LIFTS) drawLift(c, y);
    const double spots[] = {100.0, 126.0, 152.0, 178.0};
    for (int i = 0; i < 4; ++i) {
        const dvec3 spot = onStrip(spots[i]);
        c.circle(spot.y, -spot.x, 5.2, 0.4, WHITE);
        c.circle(spot.y, -spot.x, 1.2, 0.3, WHITE);
        line(c, onStrip(spots[i], -6.5), onStrip(spots[i], 6.5), 0.35, WHITE);
        const dvec3 label = onStrip(spots[i] - 4.4, 8.8);
        c.number(std::to_string(i + 1), label.y, -label.x, 2.2, 90.0 - STRIP_ANGLE, WHITE);
    }
    for (double y = -138.0; y < 60.0; y += 9.5) {  // parking spots along the port edge and before the island
        const double x = portEdge(y) + 3.0;
        if (y < -96.0 || y > -34.0) continue;
        line(c, {x, y, 0.0}, {x + 5.0, y + 3.0, 0.0}, 0.2, YELLOW);
    }
    for (const double x : {20.6, 21.8}) {  // the road along the island
        dashes(c, {x, -49.0, 0.0}, {x, 14.0, 0.0}, 0.18, 2.0, 1.0, YELLOW);
    }
    line(c, {22.6, -48.5, 0.0}, {22.6, 6.5, 0.0}, 0.4, RED);
}

void drawEdges(Canvas& c) {
    for (double y = -151.0; y < 147.0; y += 3.0) {
        for (const double side : {-1.0, 1.0}) {
            const double a = edgeOn(side, y), b = edgeOn(side, y + 3.0);
            line(c, {a - side * 0.2, y, 0.0}, {b - side * 0.2, y + 3.0, 0.0}, 0.5, EDGE);
            line(c, {a - side * 1.1, y, 0.0}, {b - side * 1.1, y + 3.0, 0.0}, 0.32, WHITE);
        }
    }
}

/// Wear: paint is thin in patches, and the coat below varies.
void wearPaint(Canvas& c) {
    const Noise coarse(9), fine(21);
    c.repaint([&](double x, double y, const Color& color) {
        const double patch = coarse.fractal(x / 26.0, y / 13.0, 3), grain = fine.at(x / 0.6, y / 0.45);
        const double bare = std::clamp((grain + 0.5 * patch - 0.28) * 2.2, 0.0, 0.6);
        Color worn = color;
        for (std::size_t i = 0; i < 3; ++i) {
            const double base = GROUND[i], kept = color[i] > 100 ? color[i] + (base - color[i]) * bare : color[i];
            worn[i] = static_cast<std::uint8_t>(std::clamp(kept * (1.0 + 0.16 * patch) + 6.0 * grain, 0.0, 255.0));
        }
        return worn;
    });
}

}  // namespace

std::shared_ptr<const Texture> deckTexture() {
    // The deck is seen at flat angles along the ship: pixels are four times as long as wide.
    Canvas canvas(2048, 2048, BACK, -SIDE, FRONT, SIDE, GROUND);
    drawCoat(canvas);
    drawLaunchRuns(canvas);
    drawStrip(canvas);
    drawWires(canvas);
    drawStations(canvas);
    drawEdges(canvas);
    drawWear(canvas);
    wearPaint(canvas);
    Texture texture;
    texture.png = canvas.toPng();
    texture.across = {0.0, 1.0 / (FRONT - BACK), 0.0};
    texture.down = {1.0 / (2.0 * SIDE), 0.0, 0.0};
    texture.offset = {-BACK / (FRONT - BACK), 0.5};
    return std::make_shared<const Texture>(texture);
}

}  // namespace carrier
