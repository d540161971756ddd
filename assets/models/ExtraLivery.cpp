// The aerobatic aircraft's paints and the picture of its skin: a sunburst on top, stripes below, a swoosh on the sides.
#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Atlas.h"
#include "geometry/Lettering.h"
#include "geometry/Palette.h"
#include "models/ExtraShape.h"

namespace extra {
namespace {

const Color WHITE{236, 237, 234, 255}, RED{200, 26, 30, 255}, NAVY{18, 30, 82, 255}, YELLOW{250, 188, 18, 255},
    SEAM{120, 122, 126, 200};

using Outline = std::vector<std::array<double, 2>>;

/// Rays from a point between two angles (degrees counter-clockwise from +x); every second one is painted.
void rays(Canvas& canvas, double x, double y, double from, double to, int count, double reach, const Color& color) {
    for (int i = 0; i < count; ++i) {
        const double a = (from + (to - from) * (i + 0.05) / count) * jMath::DEG2RAD;
        const double b = (from + (to - from) * (i + 0.55) / count) * jMath::DEG2RAD;
        canvas.polygon({{x, y},
                        {x + reach * std::cos(a), y + reach * std::sin(a)},
                        {x + reach * std::cos(b), y + reach * std::sin(b)}},
                       color);
    }
}

std::array<double, 2> flat(const Rib& root, const Rib& tip, double t, double fraction) {
    const dvec3 p = chordPoint(between(root, tip, t), fraction);
    return {p.x, p.y};
}

void seam(Canvas& canvas, const std::array<double, 2>& a, const std::array<double, 2>& b) {
    canvas.line(a[0], a[1], b[0], b[1], 0.008, SEAM);
}

void planLines(Canvas& canvas) {
    seam(canvas, flat(WING_ROOT, WING_TIP, AILERON_FOOT, AILERON), flat(WING_ROOT, WING_TIP, 1.0, AILERON));
    seam(canvas, flat(TAIL_ROOT, TAIL_TIP, 0.05, ELEVATOR), flat(TAIL_ROOT, TAIL_TIP, ELEVATOR_HORN, ELEVATOR));
    for (const double y : {1.82, 1.05, 0.62}) seam(canvas, {0.0, y}, {0.46, y});
    canvas.circle(0.95, 0.45, 0.05, 0.010, SEAM);  // the tank's cap
}

void fromAbove(Canvas& canvas) {
    rays(canvas, 0.0, 1.9, -88.0, -20.0, 9, 6.0, RED);
    canvas.polygon({{2.95, 2.0}, {4.0, 2.0}, {4.0, -2.0}, {3.25, -2.0}}, NAVY);
    canvas.polygon({{2.85, 2.0}, {2.95, 2.0}, {3.25, -2.0}, {3.15, -2.0}}, YELLOW);
    // Cowling and spine.
    canvas.rectangle(-0.1, 1.25, 0.6, 2.6, RED);
    canvas.polygon({{0.0, 1.25}, {0.5, 1.25}, {0.0, 0.55}}, RED);
    // The tail.
    canvas.rectangle(0.0, -4.1, 1.7, -2.6, WHITE);
    rays(canvas, 0.0, -2.2, -85.0, -20.0, 6, 3.0, RED);
    canvas.rectangle(0.0, -2.72, 0.33, -1.6, WHITE);
    canvas.polygon({{0.0, 0.2}, {0.10, 0.2}, {0.04, -3.4}, {0.0, -3.4}}, NAVY);
    canvas.rectangle(1.30, -4.1, 1.7, -2.6, NAVY);
    planLines(canvas);
    canvas.weather(3, 0.5, 41);
}

void fromBelow(Canvas& canvas) {
    for (int i = 0; i < 6; ++i) {
        const double x = 0.55 + 0.56 * i;
        canvas.polygon({{x, 1.2}, {x + 0.28, 1.2}, {x + 0.28, -1.2}, {x, -1.2}}, i % 2 == 0 ? NAVY : RED);
    }
    canvas.rectangle(-0.1, 0.9, 0.6, 2.6, RED);
    for (int i = 0; i < 3; ++i) canvas.rectangle(0.2 + 0.5 * i, -4.1, 0.45 + 0.5 * i, -2.6, NAVY);
    planLines(canvas);
    canvas.shade(-0.1, -2.6, 0.5, 1.4, {60, 58, 56, 255}, [](double x, double y) {
        return 0.30 * std::exp(-std::pow((x - 0.17) / 0.10, 2.0)) * (1.4 - y) / 4.0;  // soot from the exhausts
    });
    canvas.weather(3, 0.5, 42);
}

/// A band along the side between two heights that vary along y, from `y0` back to `y1`.
template <class Height>
Outline bandAlong(double y0, double y1, double sign, Height upper, Height lower) {
    Outline band;
    constexpr int STEPS = 40;
    for (int i = 0; i <= STEPS; ++i)
        band.push_back({sign * upper(y0 + (y1 - y0) * i / STEPS), y0 + (y1 - y0) * i / STEPS});
    for (int i = STEPS; i >= 0; --i)
        band.push_back({sign * lower(y0 + (y1 - y0) * i / STEPS), y0 + (y1 - y0) * i / STEPS});
    return band;
}

/// Heights are along the canvas's x: upward on the left side, downward (`sign` -1) on the right.
void fromSide(Canvas& canvas, double sign) {
    const auto wave = [](double lift) {
        return std::function<double(double)>(
            [lift](double y) { return lift + 0.10 * std::sin(0.9 * y + 0.4) - 0.03 * y; });
    };
    canvas.polygon({{sign * -1.6, 1.62}, {sign * 0.6, 1.62}, {sign * 0.6, 2.6}, {sign * -1.6, 2.6}}, RED);
    canvas.polygon(bandAlong(1.7, -3.5, sign, wave(-0.04),
                             std::function<double(double)>([](double y) { return -0.60 + 0.05 * (1.7 - y); })),
                   RED);
    canvas.polygon(bandAlong(1.9, -3.5, sign, wave(0.04), wave(-0.04)), YELLOW);
    canvas.polygon(bandAlong(1.9, -3.5, sign, wave(0.09), wave(0.04)), NAVY);
    // Fin and rudder.
    canvas.polygon({{sign * 0.28, -2.3}, {sign * 1.3, -2.9}, {sign * 1.3, -4.1}, {sign * 0.28, -4.1}}, NAVY);
    for (int i = 0; i < 3; ++i) {
        const double z = 0.52 + 0.16 * i;
        canvas.polygon(
            {{sign * z, -2.2}, {sign * (z + 0.07), -2.2}, {sign * (z + 0.15), -4.1}, {sign * (z + 0.08), -4.1}},
            i == 1 ? RED : YELLOW);
    }
    canvas.line(sign * -0.2, -3.40, sign * 1.0, -3.40, 0.010, SEAM);
    const double heading = sign > 0 ? 90.0 : 270.0;
    letter(canvas, "AEROBATIC", sign * 0.175, 0.98, 0.085, heading, NAVY, 0.17, 0.2);
    letter(canvas, "DV-300", sign * -0.215, -1.62, 0.21, heading, WHITE, 0.17, 0.15);
    for (const double y : {1.82, 1.05}) canvas.line(sign * -0.5, y, sign * 0.5, y, 0.008, SEAM);
    canvas.weather(3, 0.5, sign > 0 ? 43 : 44);
}

}  // namespace

std::shared_ptr<const Texture> livery() {
    const dvec3 x(1, 0, 0), y(0, 1, 0), z(0, 0, 1);
    constexpr double TAIL = -4.0, NOSE = 2.45, SPAN = 3.8, LOW = -1.5, HIGH = 1.15;
    Atlas atlas(1536, 118.0, WHITE);
    fromAbove(atlas.add({z, x, y, 0.0, TAIL, SPAN, NOSE, true}));
    fromBelow(atlas.add({-z, x, y, 0.0, TAIL, SPAN, NOSE, true}));
    fromSide(atlas.add({x, -z, y, -HIGH, TAIL, -LOW, NOSE, false}), -1.0);
    fromSide(atlas.add({-x, z, y, LOW, TAIL, HIGH, NOSE, false}), 1.0);
    return atlas.texture();
}

Paints makePaints() {
    Paints p;
    p.skin = texturedPaint("skin", livery(), 0.22);
    Paint glass = *paint("glass", {0.06, 0.07, 0.075}, 0.03);
    glass.color[3] = 0.30;
    p.glass = std::make_shared<const Paint>(glass);
    const std::vector<PaintRef> plain = palette("fittings",
                                                {{0.025, 0.026, 0.028},
                                                 {0.022, 0.022, 0.022},
                                                 {0.05, 0.045, 0.042},
                                                 {0.17, 0.18, 0.19},
                                                 {0.05, 0.052, 0.056},
                                                 {0.85, 0.80, 0.75},
                                                 {0.75, 0.75, 0.74},
                                                 {0.50, 0.02, 0.02},
                                                 {0.85, 0.80, 0.72},
                                                 {0.72, 0.72, 0.71},
                                                 {0.035, 0.05, 0.11}},
                                                0.5);
    PaintRef* const places[] = {&p.dark,  &p.rubber, &p.seat,   &p.cockpit, &p.blade, &p.blade_tip,
                                &p.white, &p.red,    &p.needle, &p.helmet,  &p.suit};
    for (std::size_t i = 0; i < plain.size(); ++i) *places[i] = plain[i];
    Paint hood = *paint("hood", {0.025, 0.026, 0.028}, 0.7);
    hood.double_sided = true;
    p.hood = std::make_shared<const Paint>(hood);
    p.steel = paint("steel", {0.55, 0.55, 0.56}, 0.3, 0.9);
    p.rim = paint("rim", {0.6, 0.61, 0.62}, 0.35, 0.6);
    p.trim = paint("trim", {0.58, 0.012, 0.015}, 0.15);
    p.panel = texturedPaint("panel", panelFace(), 0.7, 0.0001);
    p.compass = texturedPaint("compass", compassBand(), 0.5, 0.0005);
    p.horizon = texturedPaint("horizon", horizonFace(), 0.5, 0.0005);
    p.climb = texturedPaint("climb", climbBand(), 0.5, 0.0005);
    return p;
}

}  // namespace extra
