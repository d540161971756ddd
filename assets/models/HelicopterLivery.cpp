// The helicopter's paint: naval grey, panels, cabin windows, warnings, soot behind the exhausts.
#include <cmath>

#include "geometry/Atlas.h"
#include "geometry/Lettering.h"
#include "geometry/Palette.h"
#include "geometry/Weathering.h"
#include "models/HelicopterShape.h"

namespace heli {
namespace {

constexpr Color GREY{118, 127, 136, 255}, LOWER{150, 157, 163, 255}, SEAM{74, 81, 88, 170}, GLASS{20, 24, 30, 255},
    RUBBER{44, 46, 48, 255}, YELLOW{220, 178, 46, 255}, RED{178, 42, 36, 255}, NUMBER{40, 46, 56, 255},
    SOOT{30, 28, 27, 60}, BLACK{30, 32, 35, 255};
constexpr double NOSE = 7.3, TAIL = -11.0;

void rectangleLine(Canvas& c, double x0, double y0, double x1, double y1, double width, const Color& color) {
    c.line(x0, y0, x1, y0, width, color);
    c.line(x1, y0, x1, y1, width, color);
    c.line(x1, y1, x0, y1, width, color);
    c.line(x0, y1, x0, y0, width, color);
}

/// A round-cornered cabin window in its rubber frame.
void window(Canvas& c, double x, double z, double wide, double high) {
    const auto rounded = [&](double grow, const Color& color) {
        const double w = wide / 2.0 + grow, h = high / 2.0 + grow, r = 0.12 + grow;
        c.rectangle(x - w + r, z - h, x + w - r, z + h, color);
        c.rectangle(x - w, z - h + r, x + w, z + h - r, color);
        for (const double sx : {-1.0, 1.0}) {
            for (const double sz : {-1.0, 1.0}) c.circle(x + sx * (w - r), z + sz * (h - r), r / 2.0, r, color);
        }
    };
    rounded(0.05, RUBBER);
    rounded(0.0, GLASS);
    c.line(x - wide * 0.3, z - high * 0.1, x - wide * 0.05, z + high * 0.35, 0.05, {92, 108, 124, 120});
}

void panels(Canvas& c, const Region& area, double wide, double high, std::uint32_t seed) {
    Dice dice(seed);
    for (double x = area.x0; x < area.x1; x += wide) {
        c.line(x, area.y0, x, area.y1, 0.016, SEAM);
        for (double y = area.y0; y < area.y1; y += high) {
            const auto tone = static_cast<std::uint8_t>(dice.between(0.0, 1.0) < 0.5 ? 255 : 0);
            const auto alpha = static_cast<std::uint8_t>(dice.between(0.0, 14.0));
            c.rectangle(x, y, x + wide, y + high, {tone, tone, tone, alpha});
            if (dice.between(0.0, 1.0) < 0.22) {
                const double hx = x + dice.between(0.1, wide - 0.4), hy = y + dice.between(0.05, high - 0.3);
                rectangleLine(c, hx, hy, hx + dice.between(0.15, 0.35), hy + 0.2, 0.014, SEAM);
            }
        }
    }
    for (double y = area.y0; y < area.y1; y += high) {
        c.line(area.x0, y, area.x1, y, 0.014, SEAM);
        c.dashes(area.x0, y + 0.04, area.x1, y + 0.04, 0.012, 0.015, 0.08, SEAM);
    }
}

/// A side; `ahead` is 1 when the picture's x increases toward the nose, else -1.
void drawSide(Canvas& c, double ahead) {
    const auto x = [ahead](double y) { return ahead * y; };
    c.rectangle(-12.0, -3.0, 12.0, -0.62, LOWER);
    panels(c, {-11.0, -1.2, 7.3, 3.4}, 0.95, 0.62, ahead > 0.0 ? 3u : 4u);
    for (const double y : {2.0, 0.35, -0.7, -1.75}) window(c, x(y), 0.58, 0.52, 0.5);
    window(c, x(3.6), 0.58, 0.44, 0.5);
    rectangleLine(c, x(2.9) - 0.0, -0.85, x(1.1), 1.12, 0.03, BLACK);
    rectangleLine(c, x(5.2), -0.72, x(4.2), 0.95, 0.026, BLACK);
    rectangleLine(c, x(-2.2), 0.22, x(-3.2), 0.96, 0.02, BLACK);
    c.rectangle(std::min(x(2.72), x(1.3)), -0.46, std::max(x(2.72), x(1.3)), -0.4, YELLOW);
    letter(c, "RESCUE", x(2.0), -0.3, 0.2, 0.0, YELLOW);
    letter(c, "8218", x(-6.1), 0.62, 0.5, 0.0, NUMBER);
    letter(c, "NAVY", x(-3.9), 0.78, 0.4, 0.0, NUMBER);
    for (int i = 0; i < 4; ++i) {  // the tail rotor's warning
        const double at = -8.7 - 0.16 * i;
        c.line(x(at), 0.4, x(at - 0.12), 1.5, 0.075, i % 2 == 0 ? RED : Color{226, 228, 226, 255});
    }
    letter(c, "DANGER", x(-8.05), 1.02, 0.13, 0.0, RED);
    c.rectangle(std::min(x(6.0), x(6.75)), -0.07, std::max(x(6.0), x(6.75)), 0.3, BLACK);
    for (int i = 0; i < 40; ++i) {
        const double y = 1.1 - 0.1 * i;
        c.circle(x(y - 0.3), 1.95 - 0.012 * i, 0.13, 0.26 + 0.004 * i, {SOOT[0], SOOT[1], SOOT[2], 12});
    }
    streaks(c, {-6.0, -0.4, 6.0, 1.3}, 70, 0.8, {92, 90, 86, 60}, 12);
    c.rectangle(x(-0.1) - 0.3, -1.0, x(-0.1) + 0.3, -0.9, RED);
}

void drawTop(Canvas& c) {
    panels(c, {TAIL, -1.3, NOSE, 1.3}, 0.95, 0.52, 9);
    c.rectangle(4.6, -0.9, 6.2, 0.9, {112, 118, 124, 255});
    c.rectangle(5.95, -1.1, 6.75, 1.1, BLACK);  // against glare
    for (const double side : {-0.98, 0.98}) {
        c.line(3.0, side, -3.6, side, 0.05, YELLOW);
        for (int i = 0; i < 30; ++i) {
            c.circle(1.0 - 0.12 * i, side * 0.9, 0.14, 0.28, {SOOT[0], SOOT[1], SOOT[2], 16});
        }
    }
    letter(c, "NO STEP", -1.8, 0.55, 0.12, 0.0, RED);
}

void drawBelly(Canvas& c) {
    c.rectangle(-12.0, -3.0, 12.0, 3.0, LOWER);
    panels(c, {TAIL, -1.2, NOSE, 1.2}, 0.95, 0.6, 21);
    streaks(c, {-4.0, -1.0, 3.0, 1.0}, 40, 0.9, {60, 58, 56, 70}, 5);
}

void drawEnd(Canvas& c) {
    c.rectangle(-3.0, -2.0, 3.0, -0.62, LOWER);
    panels(c, {-1.2, -1.2, 1.2, 3.0}, 0.6, 0.6, 30);
    c.rectangle(-0.9, -0.07, 0.9, 0.3, BLACK);
}

}  // namespace

std::shared_ptr<const Texture> livery() {
    Atlas atlas(1280, 55.0, GREY);
    for (const double side : {1.0, -1.0}) {
        const double left = side > 0.0 ? TAIL : -NOSE, right = side > 0.0 ? NOSE : -TAIL;
        drawSide(atlas.add({{side, 0, 0}, {0, side, 0}, {0, 0, 1}, left, -1.4, right, 3.6}), side);
        drawEnd(atlas.add({{0, side, 0}, {-side, 0, 0}, {0, 0, 1}, -2.4, -1.4, 2.4, 3.6}));
    }
    drawTop(atlas.add({{0, 0, 1}, {0, 1, 0}, {-1, 0, 0}, TAIL, -2.4, NOSE, 2.4}));
    drawBelly(atlas.add({{0, 0, -1}, {0, 1, 0}, {1, 0, 0}, TAIL, -2.4, NOSE, 2.4}));
    return atlas.texture();
}

const Paints& paints() {
    static const Paints made = [] {
        Paints p;
        Paint skin = *paint("skin", {1.0, 1.0, 1.0}, 0.62);
        skin.texture = livery();
        p.skin = std::make_shared<const Paint>(skin);
        Paint glass = *paint("glazing", {0.03, 0.045, 0.05}, 0.08);
        glass.color[3] = 0.36;
        p.glass = std::make_shared<const Paint>(glass);
        Paint lamp = *paint("flash", {0.3, 0.02, 0.01}, 0.4);
        lamp.emission = {8.0, 0.0, 0.0};
        p.lamp = std::make_shared<const Paint>(lamp);
        const std::vector<PaintRef> plain = palette("parts", {{0.018, 0.019, 0.021},
                                                              {0.24, 0.235, 0.22},
                                                              {0.03, 0.031, 0.033},
                                                              {0.29, 0.31, 0.325},
                                                              {0.60, 0.61, 0.60},
                                                              {0.50, 0.03, 0.02},
                                                              {0.06, 0.13, 0.05},
                                                              {0.68, 0.43, 0.03},
                                                              {0.045, 0.055, 0.05}});
        PaintRef* const fields[] = {&p.dark, &p.metal, &p.rubber, &p.grey, &p.light,
                                    &p.red,  &p.green, &p.yellow, &p.seat};
        for (std::size_t i = 0; i < std::size(fields); ++i) *fields[i] = plain[i];
        return p;
    }();
    return made;
}

}  // namespace heli
