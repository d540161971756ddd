// The jet's paints and the picture of its skin: naval grey, panel lines, numbers, soot and wear.
#include <cmath>

#include "geometry/Atlas.h"
#include "geometry/Lettering.h"
#include "geometry/Palette.h"
#include "models/JetShape.h"
#include "plan/Noise.h"

namespace jet {
namespace {

const Color GREY{132, 141, 149, 255}, BELLY{146, 154, 160, 255}, RADOME{104, 110, 115, 255},
    DIELECTRIC{92, 98, 102, 255};
const Color SEAM{78, 85, 91, 255}, FAINT{104, 112, 119, 170}, SOOT{38, 35, 33, 255}, STENCIL{70, 76, 82, 255};
const Color NUMBER{48, 54, 62, 255}, RED{170, 40, 34, 255}, YELLOW{214, 176, 52, 255}, WHITE{226, 228, 226, 255};
constexpr double SEAM_WIDTH = 0.016;

using Outline = std::vector<std::array<double, 2>>;

Color tinted(const Color& color, int change) {
    Color result = color;
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = static_cast<std::uint8_t>(std::clamp(color[i] + change, 0, 255));
    }
    return result;
}

void seam(Canvas& canvas, double x0, double y0, double x1, double y1) {
    canvas.line(x0, y0, x1, y1, SEAM_WIDTH, SEAM);
    // Rivets beside the line.
    const double length = std::hypot(x1 - x0, y1 - y0), nx = -(y1 - y0) / length, ny = (x1 - x0) / length;
    for (const double off : {-0.05, 0.05}) {
        canvas.dashes(x0 + nx * off, y0 + ny * off, x1 + nx * off, y1 + ny * off, 0.012, 0.015, 0.06, FAINT);
    }
}

void hatch(Canvas& canvas, double x0, double y0, double x1, double y1) {
    canvas.line(x0, y0, x1, y0, 0.012, SEAM);
    canvas.line(x1, y0, x1, y1, 0.012, SEAM);
    canvas.line(x1, y1, x0, y1, 0.012, SEAM);
    canvas.line(x0, y1, x0, y0, 0.012, SEAM);
}

/// Panels of slightly different greys, and small hatches, equal in every run.
void patchwork(Canvas& canvas, const Color& ground, double x0, double y0, double x1, double y1, std::uint32_t seed,
               int count) {
    const Noise noise(seed);
    const auto random = [&](int i, int k) {
        return 0.5 + 0.5 * std::sin(i * 12.9898 + k * 78.233 + noise.at(i * 1.7, k * 3.1) * 40.0);
    };
    for (int i = 0; i < count; ++i) {
        const double x = x0 + (x1 - x0) * random(i, 0), y = y0 + (y1 - y0) * random(i, 1);
        const double w = 0.15 + 0.7 * random(i, 2), h = 0.2 + 0.9 * random(i, 3);
        Color tint = tinted(ground, static_cast<int>(14.0 * random(i, 4)) - 7);
        tint[3] = 130;
        canvas.rectangle(x - w / 2, y - h / 2, x + w / 2, y + h / 2, tint);
        if (i % 3 == 0) hatch(canvas, x - w / 4, y - h / 4, x + w / 4, y + h / 4);
    }
}

/// Dirt carried backward (toward -y) by the airflow.
void streaks(Canvas& canvas, double x0, double y0, double x1, double y1, std::uint32_t seed, double strength) {
    const Noise noise(seed);
    canvas.shade(x0, y0, x1, y1, {70, 70, 68, 255}, [&](double x, double y) {
        const double n = noise.at(x * 9.0, y * 0.5) + 0.5 * noise.at(x * 23.0, y * 0.9);
        return strength * std::max(0.0, n - 0.1);
    });
}

void soot(Canvas& canvas, double x, double y, double rx, double ry, double strength) {
    canvas.shade(x - rx, y - ry, x + rx, y + ry, SOOT, [&](double px, double py) {
        const double r = std::hypot((px - x) / rx, (py - y) / ry);
        return strength * std::max(0.0, 1.0 - r) * std::max(0.0, 1.0 - r) * 1.6;
    });
}

/// Darkens along a line, for the shadow in a corner.
void corner(Canvas& canvas, double x0, double y0, double x1, double y1, double reach) {
    const double dx = x1 - x0, dy = y1 - y0, l2 = dx * dx + dy * dy;
    canvas.shade(std::min(x0, x1) - reach, std::min(y0, y1) - reach, std::max(x0, x1) + reach, std::max(y0, y1) + reach,
                 {46, 50, 54, 255}, [=](double x, double y) {
                     const double t = std::clamp(((x - x0) * dx + (y - y0) * dy) / l2, 0.0, 1.0);
                     const double d = std::hypot(x - x0 - t * dx, y - y0 - t * dy) / reach;
                     return d < 1.0 ? 0.42 * (1.0 - d) * (1.0 - d) : 0.0;
                 });
}

std::array<double, 2> flat(const dvec3& p) {
    return {p.x, p.y};
}

/// Spars, ribs and edges of the flaps of a lifting surface seen from above.
void surfaceLines(Canvas& canvas, const Rib& root, const Rib& tip, const std::vector<double>& fractions,
                  const std::vector<double>& ribs) {
    for (const double f : fractions) {
        const auto a = flat(chordPoint(root, f)), b = flat(chordPoint(tip, f));
        seam(canvas, a[0], a[1], b[0], b[1]);
    }
    for (const double t : ribs) {
        const Rib rib = between(root, tip, t);
        const auto a = flat(chordPoint(rib, 0.02)), b = flat(chordPoint(rib, 0.98));
        seam(canvas, a[0], a[1], b[0], b[1]);
    }
}

/// The eroded strip along a leading edge.
void leadingEdge(Canvas& canvas, const Rib& root, const Rib& tip, double width, const Color& color) {
    const auto a = flat(chordPoint(root, 0.0)), b = flat(chordPoint(tip, 0.0));
    canvas.line(a[0], a[1], b[0], b[1], width, color);
}

const std::vector<double> FRAMES{7.60,  6.40,  5.30,  4.20,  3.40,  2.40,  1.40, 0.50,
                                 -0.60, -1.70, -2.80, -3.90, -5.00, -6.10, -7.20};

void planLines(Canvas& canvas) {
    for (const double y : FRAMES) seam(canvas, 0.0, y, y > 1.4 ? 1.6 : 2.4, y);
    for (const double x : {0.40, 0.95, 1.52}) seam(canvas, x, x > 1.0 ? 1.6 : 3.9, x, -7.2);
    seam(canvas, 2.10, 1.40, 2.10, -4.0);
    surfaceLines(canvas, WING_ROOT, WING_TIP, {NOSE_FLAP, 0.32, 0.52, TRAILING_FLAP},
                 {0.16, WING_FOLD, 0.48, 0.66, AILERON_END, 0.985});
    surfaceLines(canvas, STABILATOR_ROOT, STABILATOR_TIP, {0.12, 0.55, 0.86}, {0.03, 0.35, 0.7});
    surfaceLines(canvas, CANARD_ROOT, CANARD_TIP, {0.12, 0.7}, {0.06, 0.5});
    // The wing's fold is drawn as a double line.
    const Rib fold = between(WING_ROOT, WING_TIP, WING_FOLD + 0.012);
    canvas.line(fold.leading_edge.x, fold.leading_edge.y, fold.leading_edge.x, fold.leading_edge.y - fold.chord, 0.03,
                SEAM);
}

void fromAbove(Canvas& canvas) {
    patchwork(canvas, GREY, 0.0, -7.0, 2.4, 8.0, 3, 60);
    patchwork(canvas, GREY, 2.4, -5.0, 7.0, 0.5, 4, 50);
    canvas.rectangle(-0.1, BULKHEAD, 1.0, 11.3, RADOME);
    planLines(canvas);
    leadingEdge(canvas, WING_ROOT, WING_TIP, 0.12, tinted(GREY, -18));
    leadingEdge(canvas, STABILATOR_ROOT, STABILATOR_TIP, 0.08, tinted(GREY, -18));
    leadingEdge(canvas, CANARD_ROOT, CANARD_TIP, 0.08, tinted(GREY, -18));
    canvas.rectangle(7.0, -5.4, 7.4, -2.0, DIELECTRIC);
    canvas.polygon({{0.0, 7.95}, {0.36, 7.75}, {0.50, 7.35}, {0.30, 7.35}, {0.0, 7.62}},
                   {58, 62, 64, 255});  // against glare
    hatch(canvas, 0.45, 3.2, 0.95, 2.6);
    for (int i = 0; i < 6; ++i)
        canvas.line(0.75, 0.9 - 0.09 * i, 1.25, 0.9 - 0.09 * i, 0.035, {52, 56, 60, 255});  // louvres
    corner(canvas, 2.28, -4.0, 2.28, -8.4, 0.42);
    corner(canvas, 0.50, -6.6, 0.50, -9.0, 0.30);
    corner(canvas, 1.90, -6.2, 1.90, -8.2, 0.22);
    corner(canvas, 0.60, 6.9, 0.62, 4.3, 0.22);
    for (const double y : {1.0, -1.0}) letter(canvas, "NO STEP", 5.0, y - 2.6, 0.10, 0, STENCIL);
    canvas.dashes(2.5, 0.35, 6.9, -3.4, 0.025, 0.25, 0.12, {150, 60, 52, 160});
    soot(canvas, 1.22, -8.2, 0.95, 2.3, 0.85);
    soot(canvas, 0.9, 5.35, 0.2, 0.9, 0.2);  // the gun, in reality only to starboard
    streaks(canvas, 0.0, -8.6, 2.6, 4.0, 11, 0.30);
    streaks(canvas, 2.4, -5.2, 7.2, 1.5, 12, 0.20);
    canvas.weather(9, 0.7, 5);
}

void fromBelow(Canvas& canvas) {
    patchwork(canvas, BELLY, 0.0, -7.0, 2.4, 8.0, 13, 60);
    patchwork(canvas, BELLY, 2.4, -5.0, 7.0, 0.5, 14, 40);
    canvas.rectangle(-0.1, BULKHEAD, 1.0, 11.3, RADOME);
    planLines(canvas);
    for (int i = 0; i < 5; ++i) canvas.line(0.85, 0.9 - 0.14 * i, 1.60, 0.9 - 0.14 * i, 0.06, {50, 53, 56, 255});
    hatch(canvas, 0.0, 6.4, 0.33, 4.0);
    corner(canvas, 0.56, 2.0, 0.50, -7.0, 0.35);
    corner(canvas, 1.95, 2.0, 1.95, -7.0, 0.35);
    soot(canvas, 1.22, -8.0, 0.85, 1.8, 0.85);
    soot(canvas, 1.2, -3.5, 0.5, 2.2, 0.35);
    streaks(canvas, 0.0, -8.6, 2.6, 6.0, 15, 0.55);
    streaks(canvas, 2.4, -5.2, 7.2, 1.5, 16, 0.25);
    canvas.weather(9, 0.6, 6);
}

/// A canvas of one side: heights are along its x, downward on the right side (`sign` -1).
struct Side {
    Canvas& canvas;
    double sign;

    double up(double z) const { return sign * z; }
    double heading() const { return sign > 0 ? 90.0 : 270.0; }
    void seamAt(double z0, double y0, double z1, double y1) { seam(canvas, up(z0), y0, up(z1), y1); }
    void fill(double z0, double y0, double z1, double y1, const Color& c) {
        canvas.rectangle(up(std::min(z0 * sign, z1 * sign) * sign), y0, up(std::max(z0 * sign, z1 * sign) * sign), y1,
                         c);
    }
    void polygon(const Outline& outline, const Color& c) {
        Outline flipped = outline;
        for (auto& p : flipped) p[0] = up(p[0]);
        canvas.polygon(flipped, c);
    }
    void text(const std::string& t, double z, double y, double height, const Color& c, double slant = 0.0) {
        letter(canvas, t, up(z), y, height, heading(), c, 0.17, slant);
    }
};

std::array<double, 2> upright(const dvec3& p) {
    return {p.z, p.y};
}

void finLines(Side& side) {
    for (const double f : {0.06, 0.28, 0.48, RUDDER}) {
        const auto a = upright(chordPoint(FIN_ROOT, f)), b = upright(chordPoint(FIN_TIP, f));
        side.seamAt(a[0], a[1], b[0], b[1]);
    }
    for (const double t : {RUDDER_FOOT, 0.34, 0.58, RUDDER_TOP}) {
        const Rib rib = between(FIN_ROOT, FIN_TIP, t);
        side.seamAt(rib.leading_edge.z, rib.leading_edge.y, rib.leading_edge.z, rib.leading_edge.y - rib.chord);
    }
    const Rib cap = between(FIN_ROOT, FIN_TIP, 0.90);
    side.polygon({{cap.leading_edge.z, cap.leading_edge.y},
                  {3.95, FIN_TIP.leading_edge.y + 0.2},
                  {3.95, -9.0},
                  {cap.leading_edge.z, cap.leading_edge.y - cap.chord - 0.05}},
                 DIELECTRIC);
    const auto a = upright(FIN_ROOT.leading_edge), b = upright(FIN_TIP.leading_edge);
    side.canvas.line(side.up(a[0]), a[1], side.up(b[0]), b[1], 0.10, DIELECTRIC);
}

/// The squadron's stylised wave on the fin, and the number.
void finMarkings(Side& side) {
    for (int i = 0; i < 3; ++i) {
        Outline band;
        const auto crest = [&](double y) { return 2.35 - 0.22 * i + 0.10 * std::sin((y + 6.0) * 4.0); };
        for (double y = -6.1 - 0.12 * i; y > -8.2; y -= 0.1) band.push_back({crest(y) + 0.05, y});
        for (double y = -8.2; y < -6.1 - 0.12 * i; y += 0.1) band.push_back({crest(y) - 0.05, y});
        side.polygon(band, i == 1 ? WHITE : Color{52, 78, 112, 255});
    }
    side.text("108", 3.02, -7.55, 0.34, NUMBER, 0.15);
}

void fromSide(Side side, std::uint32_t seed) {
    Canvas& c = side.canvas;
    const double lo = side.sign > 0 ? -1.25 : -3.95, hi = side.sign > 0 ? 3.95 : 1.25;
    patchwork(c, GREY, side.up(-1.0), -7.0, side.up(1.2), 8.5, seed, 70);
    side.fill(-0.6, BULKHEAD, 1.2, 11.3, RADOME);
    for (const double y : FRAMES) side.seamAt(-1.2, y, 1.6, y);
    side.seamAt(-1.2, BULKHEAD, 1.2, BULKHEAD);
    for (const double z : {0.12, 0.66}) side.seamAt(z, BULKHEAD, z, 4.2);
    side.seamAt(-0.55, 2.2, -0.55, -7.8);
    finLines(side);
    finMarkings(side);
    side.text("108", 0.22, 8.15, 0.42, NUMBER, 0.12);
    side.polygon({{-0.62, 2.05}, {-0.30, 2.05}, {-0.46, 1.75}}, RED);
    side.polygon({{0.74, 6.30}, {0.90, 6.30}, {0.82, 6.12}}, YELLOW);
    side.text("RESCUE", 0.70, 6.62, 0.07, YELLOW);
    side.text("DANGER", -0.80, 1.45, 0.11, RED);
    side.text("JET INTAKE", -0.91, 1.45, 0.07, RED);
    hatch(c, side.up(-0.20), 7.4, side.up(0.05), 6.8);
    for (int i = 0; i < 4; ++i) hatch(c, side.up(-0.15), 5.6 - 0.5 * i, side.up(0.02), 5.3 - 0.5 * i);
    corner(c, side.up(0.42), 6.0, side.up(0.32), -6.0, 0.30);
    corner(c, side.up(0.36), -4.2, side.up(0.30), -8.6, 0.30);
    soot(c, side.up(-0.15), -8.1, 1.0, 1.7, 0.85);
    soot(c, side.up(0.42), 5.2, 0.14, 0.8, 0.2);
    streaks(c, lo, -9.0, hi, 8.5, seed + 1, 0.35);
    c.weather(9, 0.6, seed + 2);
}

PaintRef made(const std::string& name, const std::array<double, 3>& color, double roughness, double metallic,
              bool double_sided) {
    Paint result = *paint(name, color, roughness, metallic);
    result.double_sided = double_sided;
    return std::make_shared<const Paint>(result);
}

PaintRef clear(const std::string& name, const std::array<double, 4>& color, double roughness) {
    Paint result = *paint(name, {color[0], color[1], color[2]}, roughness);
    result.color[3] = color[3];
    return std::make_shared<const Paint>(result);
}

}  // namespace

std::shared_ptr<const Texture> livery() {
    const dvec3 x(1, 0, 0), y(0, 1, 0), z(0, 0, 1);
    constexpr double TAIL = -11.0, NOSE = 11.3;
    Atlas atlas(1536, 60.3, GREY);
    fromAbove(atlas.add({z, x, y, 0.0, TAIL, 7.4, NOSE, true}));
    Canvas& below = atlas.add({-z, x, y, 0.0, TAIL, 7.4, NOSE, true});
    below.rectangle(-1.0, -12.0, 8.0, 12.0, BELLY);
    fromBelow(below);
    fromSide({atlas.add({x, -z, y, -3.95, TAIL, 1.25, NOSE, false}), -1.0}, 21);
    fromSide({atlas.add({-x, z, y, -1.25, TAIL, 3.95, NOSE, false}), 1.0}, 31);
    return atlas.texture();
}

Paints makePaints() {
    Paints p;
    p.skin = texturedPaint("skin", livery(), 0.52, 0.0);
    p.glass = clear("glass", {0.07, 0.085, 0.08, 0.36}, 0.04);
    p.hud = clear("sight", {0.35, 0.55, 0.45, 0.10}, 0.05);
    p.metal = paint("metal", {0.20, 0.19, 0.18}, 0.42, 0.85);
    p.burnt = paint("burnt", {0.17, 0.14, 0.12}, 0.40, 0.8);
    const std::vector<PaintRef> plain = palette("fittings",
                                                {{0.55, 0.57, 0.57},
                                                 {0.022, 0.022, 0.023},
                                                 {0.035, 0.037, 0.04},
                                                 {0.10, 0.125, 0.13},
                                                 {0.55, 0.57, 0.56},
                                                 {0.10, 0.13, 0.075},
                                                 {0.06, 0.07, 0.05},
                                                 {0.45, 0.03, 0.02}},
                                                0.6);
    PaintRef* const places[] = {&p.gear, &p.tyre, &p.dark, &p.cockpit, &p.helmet, &p.suit, &p.webbing, &p.red};
    for (std::size_t i = 0; i < plain.size(); ++i) *places[i] = plain[i];
    p.hood = made("hood", {0.035, 0.037, 0.04}, 0.7, 0.0, true);
    p.duct = made("duct", {0.018, 0.018, 0.018}, 0.9, 0.0, true);
    p.steel = paint("steel", {0.62, 0.62, 0.62}, 0.22, 0.95);
    p.panel = texturedPaint("panel", instruments(), 0.6, 0.0);
    p.screen = texturedPaint("screen", p.panel->texture, 0.25, 0.0012);
    p.mirror = paint("mirror", {0.8, 0.82, 0.84}, 0.03, 1.0);
    Paint glow = *paint("afterburner", {0.3, 0.1, 0.05}, 1.0);
    glow.emission = {0.25, 0.09, 0.03};
    p.glow = std::make_shared<const Paint>(glow);
    return p;
}

}  // namespace jet
