// The paint of the carrier's sides and stern: bottom paint, plates, openings, numbers, rust.
#include <algorithm>
#include <cmath>

#include "geometry/Weathering.h"
#include "models/CarrierShape.h"

namespace carrier {
namespace {

// The picture's x runs along the ship, then across the stern. Its upper half is the starboard side, its lower half the
// port side, each seen from outside.
constexpr double BACK = -153.0, FRONT = 153.0, STERN_HALF = 21.0, RIGHT = FRONT + 2.0 * STERN_HALF;
constexpr double TALL = SIDE_TOP - KEEL;
constexpr Color GREY{141, 148, 152, 255}, RED{104, 40, 35, 255}, BLACK{34, 35, 37, 255}, WHITE{226, 227, 224, 255},
    SEAM{88, 94, 98, 80}, DARK{20, 21, 23, 255}, RUST{112, 66, 38, 120}, GRIME{60, 62, 62, 90}, SHADE{40, 44, 50, 120};

/// One side's area of the picture: converts positions along the ship and heights to picture metres.
struct Side {
    Canvas& canvas;
    double sign;  ///< 1 starboard, -1 port

    double x(double y) const { return sign * y; }
    double h(double z) const { return z - KEEL - (sign > 0.0 ? 0.0 : TALL); }
    void box(double y, double z, double wide, double high, const Color& color) const {
        canvas.rectangle(x(y) - wide / 2.0, h(z), x(y) + wide / 2.0, h(z) + high, color);
    }
};

void waterline(Canvas& c, double x0, double x1, double base) {
    c.rectangle(x0, base, x1, base - KEEL - 0.3, RED);
    c.rectangle(x0, base - KEEL - 0.3, x1, base - KEEL + 0.9, BLACK);
    shade(c, x0, x1, base - KEEL + 3.2, base - KEEL + 0.9, {70, 72, 66, 110});
    streaks(c, {x0, base - KEEL - 8.0, x1, base - KEEL}, static_cast<int>(x1 - x0), 4.0, {66, 74, 52, 90}, 31);
}

/// Draught marks: metres as numbers, one above the other.
void draughtMarks(const Side& side, double y) {
    for (int metres = 8; metres <= 13; ++metres) {
        side.canvas.number(std::to_string(metres), side.x(y), side.h(metres - 10.2), 0.45, 0.0, WHITE);
    }
}

void liftBay(const Side& side, double y) {
    side.box(y, 8.6, 17.4, 10.0, {96, 101, 104, 255});
    side.box(y, 9.0, 16.4, 9.4, DARK);
    side.box(y, 9.0, 16.4, 2.2, {46, 47, 48, 255});
    for (const double at : {-5.5, 0.0, 5.5}) side.box(y + at, 16.6, 3.0, 0.35, {214, 206, 170, 255});
    for (double at = -8.0; at <= 8.0; at += 1.6) side.box(y + at, 8.62, 0.8, 0.36, {196, 164, 46, 255});
}

/// A row of openings with frames, each with some rust below.
struct Row {
    double from, to, step, z, wide, high;
};
void openings(const Side& side, const Row& row, std::uint32_t seed) {
    Dice dice(seed);
    for (double y = row.from; y <= row.to; y += row.step) {
        side.box(y, row.z - 0.12, row.wide + 0.25, row.high + 0.24, {112, 118, 122, 255});
        side.box(y, row.z, row.wide, row.high, DARK);
        if (dice.between(0.0, 1.0) < 0.4) {
            streak(side.canvas, side.x(y + dice.between(-0.4, 0.4) * row.wide), side.h(row.z), dice.between(1.0, 4.0),
                   dice.between(0.15, 0.35), RUST);
        }
    }
}

void portholes(const Side& side, double from, double to, double z) {
    Dice dice(19);
    for (double y = from; y <= to; y += 2.6) {
        if (dice.between(0.0, 1.0) < 0.45) side.canvas.circle(side.x(y), side.h(z), 0.1, 0.24, DARK);
    }
}

struct Stretch {
    double from, to;
};

/// The open gallery below the flight deck's edge: dark, with posts and rails.
void gallery(const Side& side, double from, double to) {
    side.box((from + to) / 2.0, 16.55, to - from, 1.55, {24, 26, 29, 255});
    for (double y = from; y <= to; y += 3.6) side.box(y, 16.5, 0.3, 1.6, GREY);
    for (const double z : {16.95, 17.3}) side.box((from + to) / 2.0, z, to - from, 0.08, {110, 116, 120, 255});
    Dice dice(27);
    for (double y = from + 1.8; y < to; y += 3.6) {
        if (dice.between(0.0, 1.0) < 0.35) side.box(y, 16.55, 1.2, 1.1, {120, 126, 130, 255});
        if (dice.between(0.0, 1.0) < 0.15) side.box(y + 0.8, 16.6, 0.7, 0.7, {150, 60, 40, 255});
    }
}

void anchor(const Side& side, double y) {
    side.canvas.circle(side.x(y), side.h(14.2), 0.6, 1.2, DARK);
    for (const double at : {-0.5, 0.0, 0.4}) streak(side.canvas, side.x(y + at), side.h(13.6), 9.0, 0.5, RUST);
    side.box(y, 12.0, 0.5, 2.2, {54, 56, 58, 255});
    side.box(y, 11.6, 2.2, 0.6, {54, 56, 58, 255});
}

void drawSide(const Side& side) {
    const Row rows[] = {{-140.0, -104.0, 7.2, 9.0, 3.4, 2.2},
                        {-96.0, -76.0, 5.0, 9.4, 1.6, 1.4},
                        {-38.0, 4.0, 7.0, 9.2, 2.6, 1.8},
                        {44.0, 86.0, 6.0, 9.4, 1.6, 1.4},
                        {100.0, 124.0, 5.2, 15.2, 3.2, 1.8}};

    std::uint32_t seed = side.sign > 0.0 ? 7 : 70;
    for (const Row& row : rows) openings(side, row, seed++);
    portholes(side, -100.0, 104.0, 6.6);
    const Stretch decks[] = {{-128.0, -76.0}, {-48.0, 13.0}, {37.0, 92.0}};
    for (const Stretch& deck : decks) gallery(side, deck.from, deck.to);
    if (side.sign < 0.0) gallery(side, -70.0, 36.0);
    anchor(side, 131.0);
    for (const double y : {-143.0, -2.0, 134.0}) draughtMarks(side, y);
    side.canvas.number("16", side.x(112.0) + 0.35, side.h(3.6), 6.2, 0.0, BLACK);
    side.canvas.number("16", side.x(112.0), side.h(3.9), 6.2, 0.0, WHITE);
    if (side.sign > 0.0) {
        for (const double y : LIFTS) liftBay(side, y);
    }
}

void drawStern(Canvas& c) {
    const double middle = FRONT + STERN_HALF, base = 0.0, deck = base - KEEL;
    c.rectangle(middle - 7.5, deck + 7.6, middle + 7.5, deck + 13.2, {112, 118, 122, 255});
    c.rectangle(middle - 7.2, deck + 7.9, middle + 7.2, deck + 12.9, DARK);
    for (const double x : {-2.4, 2.4}) c.rectangle(middle + x - 0.2, deck + 7.9, middle + x + 0.2, deck + 12.9, GREY);
    for (const double x : {-13.8, -10.6, 10.6, 13.8}) {
        c.rectangle(middle + x - 1.2, deck + 9.0, middle + x + 1.2, deck + 11.6, DARK);
        c.rectangle(middle + x - 1.0, deck + 3.6, middle + x + 1.0, deck + 4.8, DARK);
        streak(c, middle + x, deck + 9.0, 4.0, 0.3, RUST);
    }
    c.rectangle(middle - 4.6, deck + 14.3, middle + 4.6, deck + 16.4, {120, 126, 130, 255});
    c.number("16", middle, deck + 14.6, 1.5, 0.0, WHITE);
}

std::array<double, 2> place(const dvec3& p, const dvec3& normal) {
    const double port = normal.x < 0.0 ? 1.0 : 0.0;
    double x = port > 0.0 ? -p.y : p.y;
    double down = (SIDE_TOP - p.z) / (2.0 * TALL) + 0.5 * port;
    if (normal.y < -0.9) {  // seen from astern, starboard is on the right
        x = FRONT + STERN_HALF + std::clamp(p.x, -STERN_HALF, STERN_HALF);
        down = (SIDE_TOP - p.z) / (2.0 * TALL);
    }
    return {(x - BACK) / (RIGHT - BACK), down};
}

}  // namespace

std::shared_ptr<const Texture> hullTexture() {
    Canvas canvas(3072, 480, BACK, -TALL, RIGHT, TALL, GREY);
    for (const double base : {0.0, -TALL}) {
        plateSeams(canvas, {BACK, base - KEEL, RIGHT, base + TALL}, 9.0, 2.5, 0.14, SEAM);
        waterline(canvas, BACK, RIGHT, base);
        shade(canvas, BACK, RIGHT, base - KEEL + 8.0, base - KEEL + KNUCKLE, SHADE);
        canvas.rectangle(BACK, base - KEEL + KNUCKLE - 0.1, RIGHT, base - KEEL + KNUCKLE + 0.1, SHADE);
        canvas.rectangle(BACK, base - KEEL + 18.7, RIGHT, base - KEEL + 18.95, SHADE);
    }
    for (const double sign : {1.0, -1.0}) drawSide({canvas, sign});
    drawStern(canvas);
    for (const double base : {0.0, -TALL}) {
        const double deck = base - KEEL;
        streaks(canvas, {BACK, deck + 11.0, RIGHT, deck + 12.3}, 150, 8.0, RUST, 3);
        streaks(canvas, {BACK, deck + 16.5, RIGHT, deck + 20.0}, 190, 4.0, GRIME, 4);
        streaks(canvas, {BACK, deck + 4.0, RIGHT, deck + 10.0}, 160, 5.0, GRIME, 5);
        streaks(canvas, {BACK, deck + 1.0, RIGHT, deck + 6.0}, 60, 2.5, RUST, 6);
    }
    canvas.weather(9, 11.0, 17);
    Texture texture;
    texture.png = canvas.toPng();
    texture.project = place;
    return std::make_shared<const Texture>(texture);
}

}  // namespace carrier
