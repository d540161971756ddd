// The jet's cockpit as the pilot and a passer-by see it: glass, tub, panel, sight, seat, pilot.
#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Lettering.h"
#include "models/JetShape.h"

namespace jet {
namespace {

// The panel's face, metres: the picture of the instruments covers this rectangle.
constexpr double PANEL_HALF = 0.40, PANEL_TOP = 1.255, PANEL_FOOT = 0.62, PANEL_Y = 6.46;
constexpr double COAMING_TOP = 1.30;

/// Height of the glass along the middle.
double roof(double y) {
    return smoothly({{CANOPY_END, 1.60},
                     {4.7, 1.72},
                     {5.3, 1.81},
                     {5.8, 1.80},
                     {CANOPY_BOW, 1.69},
                     {6.8, 1.50},
                     {7.25, 1.27},
                     {WINDSHIELD_FRONT, 1.08}},
                    y);
}

/// The glass's outline at a place, from the right rim over the top to the left; `out` metres outside of it.
Ring arch(double y, double out = 0.0) {
    constexpr int POINTS = 24;
    const double foot = sill(y), half = fuselage().halfWidthAt(y, foot) + out, rise = roof(y) - foot + out;
    Ring ring;
    for (int i = 0; i <= POINTS; ++i) {
        const double a = jMath::PI * i / POINTS, c = std::cos(a), s = std::sin(a);
        ring.emplace_back(half * std::copysign(std::pow(std::abs(c), 0.92), c), y, foot + rise * std::pow(s, 0.92));
    }
    return ring;
}

Mesh glassBetween(const Paints& paints, double from, double to, int rows) {
    std::vector<Ring> lines;
    for (int i = 0; i <= rows; ++i) lines.push_back(arch(from + (to - from) * i / rows));
    return sheet(paints.glass, lines).facingOutward();
}

/// A band of skin over the glass, wide along Y.
Mesh frameBand(const Paints& paints, double from, double to) {
    Mesh mesh = sheet(paints.skin, {arch(from, 0.012), arch(to, 0.012)}).facingOutward();
    return mesh.add(insideOut(sheet(paints.cockpit, {arch(from, 0.004), arch(to, 0.004)}).facingOutward()));
}

/// The bar along the rim on which the glass stands.
Mesh rail(const Paints& paints, double from, double to) {
    Ring line;
    for (int i = 0; i <= 12; ++i) {
        const double y = from + (to - from) * i / 12, z = sill(y);
        line.emplace_back(fuselage().halfWidthAt(y, z) - 0.005, y, z + 0.012);
    }
    Mesh both;
    return both.addPair(tube(paints.skin, line, 0.032, 8));
}

/// Side walls and floor, seen from inside.
Mesh tub(const Paints& paints) {
    std::vector<Ring> lines;
    for (int i = 0; i <= 12; ++i) {
        const double y = WINDSHIELD_FRONT - 0.1 + (CANOPY_END - WINDSHIELD_FRONT + 0.1) * i / 12;
        const double z = sill(y), x = std::max(0.05, fuselage().halfWidthAt(y, z) - 0.015);
        const double wall = std::max(0.04, x - 0.08), floor = std::min(0.42, z - 0.3);
        Ring line{{x, y, z}, {wall, y, z - 0.005}, {wall, y, 0.80}, {wall - 0.02, y, floor}, {0, y, floor}};
        for (std::size_t k = 4; k-- > 0;) line.emplace_back(-line[k].x, y, line[k].z);
        lines.push_back(line);
    }
    Mesh mesh = insideOut(sheet(paints.cockpit, lines).facingOutward());
    // Behind the seat: the wall at the canopy's end and the sloping deck with the black boxes.
    Ring wall = fuselage().ring(CANOPY_END - 0.005);
    mesh.add(plate(paints.cockpit, wall, {0, 1, 0}, 0.01));
    mesh.add(taperedBox(paints.dark, {-0.42, 4.22, 0.85}, {0.42, 4.85, 1.18}, 0.06));
    mesh.add(taperedBox(paints.cockpit, {-0.22, 4.26, 1.1}, {0.22, 4.62, 1.30}, 0.04));
    // Consoles on both sides, the throttle on the left one.
    mesh.addPair(taperedBox(paints.dark, {0.29, 4.95, 0.45}, {0.50, 6.42, 0.90}, 0.015));
    mesh.add(taperedBox(paints.gear, {-0.43, 5.80, 0.90}, {-0.37, 5.92, 1.02}, 0.01));
    for (int i = 0; i < 6; ++i) {
        const double y = 5.2 + 0.18 * i;
        mesh.addPair(box(paints.gear, {0.33, y, 0.90}, {0.36, y + 0.04, 0.925}));
        mesh.addPair(box(i % 2 == 0 ? paints.red : paints.cockpit, {0.41, y + 0.03, 0.90}, {0.44, y + 0.07, 0.915}));
    }
    return mesh;
}

/// The panel under its hood, and the sight on top.
Mesh panel(const Paints& paints) {
    Mesh mesh = box(paints.cockpit, {-PANEL_HALF, PANEL_Y + 0.01, PANEL_FOOT}, {PANEL_HALF, PANEL_Y + 0.06, PANEL_TOP});
    mesh.quad(paints.panel, {-PANEL_HALF, PANEL_Y, PANEL_FOOT}, {PANEL_HALF, PANEL_Y, PANEL_FOOT},
              {PANEL_HALF, PANEL_Y, PANEL_TOP}, {-PANEL_HALF, PANEL_Y, PANEL_TOP});
    for (const double x : {-0.255, 0.0, 0.255}) {
        const double half = 0.095, foot = 0.955, top = 1.165;
        mesh.quad(paints.screen, {x - half, PANEL_Y - 0.004, foot}, {x + half, PANEL_Y - 0.004, foot},
                  {x + half, PANEL_Y - 0.004, top}, {x - half, PANEL_Y - 0.004, top});
        mesh.add(tube(paints.dark,
                      {{x - half, PANEL_Y, foot},
                       {x + half, PANEL_Y, foot},
                       {x + half, PANEL_Y, top},
                       {x - half, PANEL_Y, top},
                       {x - half, PANEL_Y, foot}},
                      0.010, 6));
    }
    // The hood over it: an arch that runs out under the windshield.
    std::vector<Ring> lines;
    for (int i = 0; i <= 8; ++i) {
        const double y = CANOPY_BOW - 0.06 + (WINDSHIELD_FRONT - 0.12 - CANOPY_BOW + 0.06) * i / 8;
        const double half = std::max(0.06, fuselage().halfWidthAt(y, sill(y)) - 0.03);
        const double top = std::min(COAMING_TOP, roof(y) - 0.07);
        Ring line;
        for (int k = 0; k <= 14; ++k) {
            const double a = jMath::PI * k / 14, c = std::cos(a);
            line.emplace_back(half * std::copysign(std::pow(std::abs(c), 0.45), c), y,
                              sill(y) - 0.02 + (top - sill(y) + 0.02) * std::pow(std::sin(a), 0.45));
        }
        lines.push_back(line);
    }
    Paint hood = *paints.dark;
    hood.double_sided = true;
    return mesh.add(sheet(std::make_shared<const Paint>(hood), lines).facingOutward());
}

Mesh sight(const Paints& paints) {
    Mesh mesh = taperedBox(paints.dark, {-0.09, 6.46, COAMING_TOP - 0.06}, {0.09, 6.74, COAMING_TOP + 0.03}, 0.02);
    const dvec3 foot{0.095, 6.56, 1.335}, top{0.095, 6.70, 1.555};
    const auto left = [](const dvec3& p) { return dvec3(-p.x, p.y, p.z); };
    mesh.quad(paints.hud, left(foot), foot, top, left(top));
    mesh.add(tube(paints.dark, {foot, top}, 0.0045, 6)).add(tube(paints.dark, {left(foot), left(top)}, 0.0045, 6));
    mesh.add(tube(paints.dark, {left(top), top}, 0.0035, 6));
    return mesh;
}

Mesh mirrors(const Paints& paints) {
    const auto at = [&](double x, double y, double z, double tilt) {
        Mesh mesh = taperedBox(paints.dark, {-0.055, -0.015, -0.022}, {0.055, 0.02, 0.022}, 0.008);
        mesh.quad(paints.mirror, {-0.048, -0.017, -0.017}, {0.048, -0.017, -0.017}, {0.048, -0.017, 0.017},
                  {-0.048, -0.017, 0.017});
        return mesh.transformed(dmat4(dquat::fromEulerZXY({x * 60.0, -8.0, tilt}), {x, y, z}));
    };
    Mesh mesh = at(0.0, CANOPY_BOW - 0.02, 1.655, 0.0);
    return mesh.add(at(0.29, CANOPY_BOW - 0.02, 1.575, 18.0)).add(at(-0.29, CANOPY_BOW - 0.02, 1.575, -18.0));
}

/// Leans back by 17 degrees.
Mesh seat(const Paints& paints) {
    Mesh mesh = taperedBox(paints.dark, {-0.23, 5.30, 0.50}, {0.23, 5.80, 0.72}, 0.02);
    const dmat4 lean(dquat::fromEulerZXY({0, 17, 0}), {0.0, 5.32, 0.68});
    Mesh back = taperedBox(paints.dark, {-0.24, -0.10, 0.0}, {0.24, 0.04, 0.62}, 0.02);
    back.add(taperedBox(paints.cockpit, {-0.15, -0.13, 0.60}, {0.15, 0.02, 0.93}, 0.03));
    back.addPair(cylinder(paints.gear, {0.21, -0.14, -0.1}, {0.21, -0.14, 0.9}, 0.025, 8));
    back.addPair(cylinder(paints.red, {0.10, 0.0, 0.88}, {0.10, 0.03, 0.95}, 0.014, 8));
    mesh.add(back, lean);
    mesh.addPair(tube(paints.red, {{0.10, 5.80, 0.68}, {0.05, 5.86, 0.71}, {0.0, 5.87, 0.715}}, 0.014, 6));
    return mesh;
}

Mesh limb(const Paints& paints, const Ring& line, double radius) {
    Mesh both;
    return both.addPair(tube(paints.suit, line, radius, 10));
}

Mesh pilot(const Paints& paints) {
    const dvec3 head = PILOT_EYE - dvec3(0.0, 0.06, 0.0);
    // The eye sits inside the helmet, whose faces look outward: it hides nothing from its own wearer.
    Mesh mesh = body(paints.helmet,
                     {{head.y - 0.15, head.z + 0.01, 0.03, 0.03, 0.03, 2.0, 0.0},
                      {head.y - 0.11, head.z + 0.01, 0.115, 0.11, 0.11, 2.0, 0.0},
                      {head.y - 0.02, head.z + 0.01, 0.145, 0.145, 0.15, 2.0, 0.0},
                      {head.y + 0.06, head.z + 0.01, 0.13, 0.13, 0.15, 2.0, 0.0},
                      {head.y + 0.11, head.z, 0.09, 0.09, 0.13, 2.0, 0.0}},
                     20);
    mesh.add(body(paints.dark,
                  {{head.y + 0.05, head.z + 0.02, 0.135, 0.09, 0.06, 2.4, 0.0},
                   {head.y + 0.12, head.z + 0.02, 0.10, 0.08, 0.055, 2.4, 0.0},
                   {head.y + 0.145, head.z + 0.02, 0.05, 0.04, 0.035, 2.4, 0.0}},
                  16));
    mesh.add(body(paints.dark,
                  {{head.y + 0.07, head.z - 0.09, 0.06, 0.05, 0.06}, {head.y + 0.16, head.z - 0.11, 0.03, 0.03, 0.04}},
                  12));
    mesh.add(tube(paints.dark,
                  {{0.03, head.y + 0.14, head.z - 0.14},
                   {0.08, head.y + 0.08, head.z - 0.3},
                   {0.16, head.y - 0.05, head.z - 0.42}},
                  0.018, 8));
    const std::vector<Section> shape{{0.72, 5.52, 0.17, 0.13, 0.12, 2.6},
                                     {0.95, 5.48, 0.19, 0.14, 0.12, 2.6},
                                     {1.14, 5.46, 0.21, 0.11, 0.11, 2.6},
                                     {1.24, 5.52, 0.10, 0.08, 0.08, 2.0}};
    std::vector<Ring> rings;
    for (const Section& s : shape) {
        // Sections stand along Z here: y of the table is the height, z the place along the fuselage.
        Ring ring;
        for (const dvec3& p : outline({0.0, s.z, s.half_width, s.up, s.down, s.roundness}, 20))
            ring.emplace_back(p.x, p.z, s.y);
        rings.push_back(ring);
    }
    mesh.add(loft(paints.suit, rings));
    mesh.add(limb(paints, {{0.22, 5.46, 1.12}, {0.30, 5.56, 0.92}, {0.27, 5.78, 0.90}, {0.20, 5.92, 0.92}}, 0.055));
    mesh.add(limb(paints, {{0.10, 5.50, 0.75}, {0.15, 5.90, 0.86}, {0.16, 6.08, 0.78}, {0.15, 6.38, 0.50}}, 0.080));
    mesh.addPair(tube(paints.green, {{0.07, 5.60, 1.22}, {0.08, 5.62, 1.08}, {0.05, 5.66, 0.80}}, 0.018, 6));
    return mesh.add(tube(paints.dark, {{0.0, 6.0, 0.45}, {0.0, 5.99, 0.72}, {0.02, 5.95, 0.90}}, 0.022, 8));
}

// The instruments' picture. ---------------------------------------------------------------------------------------

const Color LINE{70, 235, 120, 255}, AMBER{240, 180, 60, 255}, WHITE{215, 220, 220, 255}, BLUE{60, 120, 190, 255};

void dial(Canvas& canvas, double x, double z, double radius, double needle) {
    canvas.circle(x, z, radius * 0.5, radius, {12, 13, 14, 255});
    canvas.circle(x, z, radius, radius * 0.10, {95, 98, 100, 255});
    for (int i = 0; i < 12; ++i) {
        const double a = 2.0 * jMath::PI * i / 12, c = std::cos(a), s = std::sin(a);
        canvas.line(x + c * radius * 0.72, z + s * radius * 0.72, x + c * radius * 0.88, z + s * radius * 0.88, 0.0025,
                    WHITE);
    }
    const double a = needle * jMath::DEG2RAD;
    canvas.line(x, z, x + std::cos(a) * radius * 0.7, z + std::sin(a) * radius * 0.7, 0.004, AMBER);
}

void attitudePage(Canvas& canvas, double x, double z) {
    canvas.rectangle(x - 0.095, z, x + 0.095, z + 0.105, {38, 84, 140, 255});
    canvas.rectangle(x - 0.095, z - 0.105, x + 0.095, z, {92, 62, 34, 255});
    for (int i = -3; i <= 3; ++i) {
        const double half = i == 0 ? 0.09 : 0.025;
        canvas.line(x - half, z + 0.026 * i, x + half, z + 0.026 * i, 0.0022, WHITE);
    }
    canvas.line(x - 0.05, z, x - 0.02, z, 0.006, AMBER);
    canvas.line(x + 0.02, z, x + 0.05, z, 0.006, AMBER);
    letter(canvas, "312", x - 0.07, z + 0.07, 0.016, 0, LINE);
    letter(canvas, "1450", x + 0.062, z + 0.07, 0.016, 0, LINE);
}

void mapPage(Canvas& canvas, double x, double z) {
    for (const double r : {0.035, 0.07}) canvas.circle(x, z - 0.02, r, 0.002, LINE);
    canvas.line(x, z - 0.09, x, z + 0.08, 0.0018, LINE);
    canvas.line(x - 0.08, z - 0.05, x + 0.06, z + 0.06, 0.0025, AMBER);
    canvas.polygon({{x - 0.008, z - 0.03}, {x + 0.008, z - 0.03}, {x, z - 0.008}}, WHITE);
    letter(canvas, "067", x, z + 0.082, 0.014, 0, WHITE);
    letter(canvas, "NAV", x - 0.072, z - 0.098, 0.012, 0, LINE);
}

void enginePage(Canvas& canvas, double x, double z) {
    for (const double side : {-0.045, 0.045}) {
        canvas.circle(x + side, z + 0.045, 0.03, 0.004, LINE);
        canvas.line(x + side, z + 0.045, x + side + 0.02, z + 0.062, 0.003, WHITE);
        canvas.rectangle(x + side - 0.012, z - 0.075, x + side - 0.004, z - 0.02, LINE);
        canvas.rectangle(x + side + 0.004, z - 0.075, x + side + 0.012, z - 0.035, AMBER);
        letter(canvas, "92", x + side, z - 0.006, 0.014, 0, WHITE);
    }
    letter(canvas, "FUEL 61", x, z - 0.098, 0.013, 0, LINE);
}

void drawPanel(Canvas& canvas) {
    canvas.weather(5, 0.05, 9);
    for (const double x : {-0.255, 0.0, 0.255}) {
        canvas.rectangle(x - 0.122, 0.925, x + 0.122, 1.195, {34, 37, 39, 255});
        for (int i = 0; i < 5; ++i) {
            const double at = -0.076 + 0.038 * i;
            for (const double z : {0.938, 1.182})
                canvas.rectangle(x + at - 0.011, z - 0.007, x + at + 0.011, z + 0.007, {70, 74, 76, 255});
            for (const double s : {-0.11, 0.11})
                canvas.rectangle(x + s - 0.007, 1.06 + at - 0.011, x + s + 0.007, 1.06 + at + 0.011, {70, 74, 76, 255});
        }
        canvas.rectangle(x - 0.095, 0.955, x + 0.095, 1.165, {6, 12, 10, 255});
    }
    attitudePage(canvas, 0.0, 1.06);
    enginePage(canvas, -0.255, 1.06);
    mapPage(canvas, 0.255, 1.06);
    const double needles[] = {210, 40, 130, 300, 75};
    for (int i = 0; i < 5; ++i) dial(canvas, -0.32 + 0.16 * i, 0.83, 0.062, needles[i]);
    for (int i = 0; i < 8; ++i) dial(canvas, -0.34 + 0.097 * i, 0.705, 0.036, 50.0 * i);
    for (int i = 0; i < 12; ++i) {
        const Color lamp = i % 5 == 2   ? Color{150, 40, 28, 255}
                           : i % 3 == 0 ? Color{150, 110, 30, 255}
                                        : Color{40, 44, 46, 255};
        canvas.rectangle(-0.37 + 0.062 * i, 1.225, -0.322 + 0.062 * i, 1.262, lamp);
    }
}

}  // namespace

std::shared_ptr<const Texture> instruments() {
    const double width = 2.0 * PANEL_HALF, height = PANEL_TOP - PANEL_FOOT;
    Canvas canvas(1024, 850, -PANEL_HALF, PANEL_FOOT, PANEL_HALF, PANEL_TOP, {74, 82, 86, 255});
    drawPanel(canvas);
    Texture texture{canvas.toPng(), {1.0 / width, 0, 0}, {0, 0, -1.0 / height}, {0.5, PANEL_TOP / height}, {}};
    return std::make_shared<const Texture>(texture);
}

Mesh windshield(const Paints& paints) {
    Mesh mesh = glassBetween(paints, WINDSHIELD_FRONT - 0.01, CANOPY_BOW, 12);
    return mesh.add(frameBand(paints, CANOPY_BOW + 0.045, CANOPY_BOW))
        .add(rail(paints, WINDSHIELD_FRONT - 0.05, CANOPY_BOW));
}

Part canopy(const Paints& paints) {
    Mesh mesh = glassBetween(paints, CANOPY_BOW, CANOPY_END, 18);
    mesh.add(frameBand(paints, CANOPY_BOW, CANOPY_BOW - 0.03)).add(frameBand(paints, CANOPY_END + 0.22, CANOPY_END));
    mesh.add(sheet(paints.skin, {arch(CANOPY_END, 0.012), arch(CANOPY_END - 0.12, -0.10)}).facingOutward());
    mesh.add(rail(paints, CANOPY_BOW, CANOPY_END)).add(mirrors(paints));
    return {"canopy", {0.0, CANOPY_END, 1.15}, mesh};
}

Mesh cockpit(const Paints& paints) {
    Mesh mesh = tub(paints);
    return mesh.add(panel(paints)).add(sight(paints)).add(seat(paints)).add(pilot(paints));
}

}  // namespace jet
