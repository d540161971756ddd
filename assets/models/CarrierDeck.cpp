// The flight deck's markings. They are a picture on the deck and not shapes above it: the ground under an aircraft on
// the deck has to be the deck's own object.
#include <cmath>

#include "geometry/Canvas.h"
#include "models/CarrierShape.h"
#include "world/Layout.h"

namespace carrier {
namespace {

// The picture lies along the ship: its x runs to the bow, its y to port.
constexpr double PORT_SIDE = 40.0, BACK = -153.0, FRONT = 153.0;
constexpr Color GROUND{58, 60, 63, 255}, WHITE{225, 225, 220, 255}, YELLOW{214, 176, 52, 255}, RED{190, 52, 44, 255},
    STEEL{38, 39, 41, 255}, PANEL{74, 76, 79, 255}, RUBBER{34, 34, 36, 110};

void line(Canvas& c, const dvec3& a, const dvec3& b, double width, const Color& color) {
    c.line(a.y, -a.x, b.y, -b.x, width, color);
}

void dashes(Canvas& c, const dvec3& a, const dvec3& b, double width, double piece, double gap, const Color& color) {
    c.dashes(a.y, -a.x, b.y, -b.x, width, piece, gap, color);
}

void drawStrip(Canvas& c) {
    const double half = STRIP_WIDTH / 2.0;
    for (int i = 0; i < 60; ++i) {
        // Where wheels come down tyres have blackened the strip.
        const double at = 40.0 + 1.1 * i, side = 2.4 * ((i * 7) % 5 - 2) * 0.45;
        line(c, onStrip(at, side - 2.2), onStrip(at + 26.0, side - 2.2), 0.8, {RUBBER[0], RUBBER[1], RUBBER[2], 22});
        line(c, onStrip(at, side + 2.2), onStrip(at + 26.0, side + 2.2), 0.8, {RUBBER[0], RUBBER[1], RUBBER[2], 22});
    }
    for (const double side : {-half, half}) line(c, onStrip(3.0, side), onStrip(STRIP_LENGTH, side), 0.9, WHITE);
    dashes(c, onStrip(3.0), onStrip(STRIP_LENGTH), 0.9, 6.0, 4.0, WHITE);
    line(c, onStrip(3.0, -half), onStrip(3.0, half), 1.2, WHITE);
    line(c, onStrip(STRIP_LENGTH, -half), onStrip(STRIP_LENGTH, half), 1.0, WHITE);
    dashes(c, onStrip(3.0, half + 3.5), onStrip(STRIP_LENGTH - 40.0, half + 3.5), 0.7, 3.0, 3.0, RED);
    for (const double wire : {46.0, 58.0, 70.0, 82.0}) {
        line(c, onStrip(wire, -half - 2.0), onStrip(wire, half + 2.0), 0.35, STEEL);
        for (const double side : {-half - 2.5, half + 2.5}) {
            line(c, onStrip(wire - 1.0, side), onStrip(wire + 1.0, side), 1.4, YELLOW);
        }
    }
}

void drawLaunchRuns(Canvas& c) {
    const dvec3 bow{0.0, 148.0, 0.0};
    const dvec3 runs[] = {{-7.0, LAUNCH_POINT.y, 0.0}, {LAUNCH_POINT.x, LAUNCH_POINT.y, 0.0}, {-13.0, -52.0, 0.0}};
    for (const dvec3& start : runs) {
        const double end = start.x / 2.2;
        line(c, start, {start.x, RAMP_START - 18.0, 0.0}, 0.8, YELLOW);
        line(c, {start.x, RAMP_START - 18.0, 0.0}, {end, bow.y, 0.0}, 0.8, YELLOW);
        line(c, start + dvec3(-4.0, -1.0, 0.0), start + dvec3(4.0, -1.0, 0.0), 0.6, WHITE);
        // The deflector behind each start lies flush in the deck.
        c.rectangle(start.y - 19.0, -start.x - 5.0, start.y - 13.0, -start.x + 5.0, PANEL);
        line(c, start + dvec3(-5.0, -13.0, 0.0), start + dvec3(5.0, -13.0, 0.0), 0.4, RED);
    }
    for (const double side : {-1.0, 1.0}) line(c, {side * 12.5, RAMP_START, 0.0}, {side * 9.5, 147.0, 0.0}, 0.6, WHITE);
    c.number("16", 134.0, 0.0, 9.0, 90.0, WHITE);
}

void drawStations(Canvas& c) {
    for (const double y : {-60.0, 25.0}) {  // the lifts beside the island
        c.rectangle(y - 9.0, -36.0, y + 9.0, -22.0, PANEL);
        line(c, {22.0, y - 9.0, 0.0}, {22.0, y + 9.0, 0.0}, 0.5, YELLOW);
    }
    for (int i = 0; i < 5; ++i) {
        const dvec3 spot = onStrip(28.0 + 36.0 * i);
        c.circle(spot.y, -spot.x, 5.0, 0.45, WHITE);
    }
    for (double y = -140.0; y < 140.0; y += 4.0) {  // safety line along the edges
        line(c, {portEdge(y) + 1.2, y, 0.0}, {portEdge(y + 4.0) + 1.2, y + 4.0, 0.0}, 0.3, WHITE);
        line(c, {starboardEdge(y) - 1.2, y, 0.0}, {starboardEdge(y + 4.0) - 1.2, y + 4.0, 0.0}, 0.3, WHITE);
    }
}

}  // namespace

std::shared_ptr<const Texture> deckTexture() {
    Canvas canvas(2048, 512, BACK, -PORT_SIDE, FRONT, PORT_SIDE, GROUND);
    drawStrip(canvas);
    drawStations(canvas);
    drawLaunchRuns(canvas);
    canvas.weather(9, 14.0, 5);
    Texture texture;
    texture.png = canvas.toPng();
    texture.across = {0.0, 1.0 / (FRONT - BACK), 0.0};
    texture.down = {1.0 / (2.0 * PORT_SIDE), 0.0, 0.0};
    texture.offset = {-BACK / (FRONT - BACK), 0.5};
    return std::make_shared<const Texture>(texture);
}

}  // namespace carrier
