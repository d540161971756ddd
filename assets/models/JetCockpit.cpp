// The jet's cockpit seen by the pilot and from outside: glass, tub, panel, sight, seat, pilot.
#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Lettering.h"
#include "models/JetShape.h"
#include "models/PilotFigure.h"

namespace jet {
namespace {

// The panel's face in metres; the picture of the instruments covers this rectangle.
constexpr double PANEL_HALF = 0.40, PANEL_TOP = 1.255, PANEL_FOOT = 0.62, PANEL_Y = 6.46;
constexpr double DISPLAYS[] = {-0.255, 0.0, 0.255}, DISPLAY_Z = 1.105, DISPLAY_HALF = 0.100;
constexpr double COAMING_TOP = 1.285;

/// Height of the glass at the middle.
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

/// The outline of the glass at a position along Y, from the right rim over the top to the left, `out` metres outside.
Ring glassArch(double y, double out = 0.0) {
    const double foot = sill(y);
    return arch(y, fuselage().halfWidthAt(y, foot) + out, foot, roof(y) - foot + out, 2.17);
}

Mesh glassBetween(const Paints& paints, double from, double to, int rows) {
    std::vector<Ring> lines;
    for (int i = 0; i <= rows; ++i) lines.push_back(glassArch(from + (to - from) * i / rows));
    return sheet(paints.glass, lines).facingOutward();
}

/// A band of skin over the glass, with its width along Y.
Mesh frameBand(const Paints& paints, double from, double to) {
    Mesh mesh = sheet(paints.skin, {glassArch(from, 0.012), glassArch(to, 0.012)}).facingOutward();
    return mesh.add(insideOut(sheet(paints.cockpit, {glassArch(from, 0.004), glassArch(to, 0.004)}).facingOutward()));
}

/// The bar along the rim, below the glass.
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
    // Behind the seat: the wall at the canopy's end and the sloping shelf with the avionics boxes.
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

/// The panel below its hood, with the sight on top.
Mesh panel(const Paints& paints) {
    Mesh mesh = box(paints.cockpit, {-PANEL_HALF, PANEL_Y + 0.01, PANEL_FOOT}, {PANEL_HALF, PANEL_Y + 0.06, PANEL_TOP});
    mesh.quad(paints.panel, {-PANEL_HALF, PANEL_Y, PANEL_FOOT}, {PANEL_HALF, PANEL_Y, PANEL_FOOT},
              {PANEL_HALF, PANEL_Y, PANEL_TOP}, {-PANEL_HALF, PANEL_Y, PANEL_TOP});
    for (const double x : DISPLAYS) {
        const double half = DISPLAY_HALF, foot = DISPLAY_Z - DISPLAY_HALF, top = DISPLAY_Z + DISPLAY_HALF;
        mesh.quad(paints.screen, {x - half, PANEL_Y - 0.004, foot}, {x + half, PANEL_Y - 0.004, foot},
                  {x + half, PANEL_Y - 0.004, top}, {x - half, PANEL_Y - 0.004, top});
        for (const double edge : {-half, half}) {
            const double y = PANEL_Y, z = DISPLAY_Z;
            mesh.add(cylinder(paints.dark, {x + edge, y, foot - 0.01}, {x + edge, y, top + 0.01}, 0.010, 8));
            mesh.add(cylinder(paints.dark, {x - half - 0.01, y, z + edge}, {x + half + 0.01, y, z + edge}, 0.010, 8));
        }
    }
    // The hood above it: an arch that extends below the windshield.
    std::vector<Ring> lines;
    for (int i = 0; i <= 8; ++i) {
        const double y = CANOPY_BOW - 0.06 + (WINDSHIELD_FRONT - 0.12 - CANOPY_BOW + 0.06) * i / 8;
        const double half = std::max(0.06, fuselage().halfWidthAt(y, sill(y)) - 0.03);
        const double top = std::min(COAMING_TOP, roof(y) - 0.07);
        lines.push_back(arch(y, half, sill(y) - 0.02, top - sill(y) + 0.02, 4.4, 14));
    }
    return mesh.add(sheet(paints.hood, lines).facingOutward());
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

/// Inclined backward by 17 degrees.
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

/// Between the knees.
Mesh stick(const Paints& paints) {
    return tube(paints.dark, {{0.0, 6.0, 0.45}, {0.0, 5.99, 0.72}, {0.02, 5.95, 0.90}}, 0.022, 8);
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
    canvas.rectangle(x - DISPLAY_HALF, z, x + DISPLAY_HALF, z + DISPLAY_HALF, {38, 84, 140, 255});
    canvas.rectangle(x - DISPLAY_HALF, z - DISPLAY_HALF, x + DISPLAY_HALF, z, {92, 62, 34, 255});
    for (int i = -3; i <= 3; ++i) {
        const double half = i == 0 ? 0.09 : 0.025;
        canvas.line(x - half, z + 0.026 * i, x + half, z + 0.026 * i, 0.0022, WHITE);
    }
    canvas.line(x - 0.05, z, x - 0.02, z, 0.006, AMBER);
    canvas.line(x + 0.02, z, x + 0.05, z, 0.006, AMBER);
    letter(canvas, "312", x - 0.066, z + 0.07, 0.016, 0, LINE);
    letter(canvas, "1450", x + 0.058, z + 0.07, 0.016, 0, LINE);
}

void mapPage(Canvas& canvas, double x, double z) {
    for (const double r : {0.035, 0.07}) canvas.circle(x, z - 0.02, r, 0.002, LINE);
    canvas.line(x, z - 0.085, x, z + 0.08, 0.0018, LINE);
    canvas.line(x - 0.08, z - 0.05, x + 0.06, z + 0.06, 0.0025, AMBER);
    canvas.polygon({{x - 0.008, z - 0.03}, {x + 0.008, z - 0.03}, {x, z - 0.008}}, WHITE);
    letter(canvas, "067", x, z + 0.078, 0.014, 0, WHITE);
    letter(canvas, "NAV", x - 0.072, z - 0.092, 0.012, 0, LINE);
}

void enginePage(Canvas& canvas, double x, double z) {
    for (const double side : {-0.045, 0.045}) {
        canvas.circle(x + side, z + 0.045, 0.03, 0.004, LINE);
        canvas.line(x + side, z + 0.045, x + side + 0.02, z + 0.062, 0.003, WHITE);
        canvas.rectangle(x + side - 0.012, z - 0.075, x + side - 0.004, z - 0.02, LINE);
        canvas.rectangle(x + side + 0.004, z - 0.075, x + side + 0.012, z - 0.035, AMBER);
        letter(canvas, "92", x + side, z - 0.006, 0.014, 0, WHITE);
    }
    letter(canvas, "FUEL 61", x, z - 0.092, 0.013, 0, LINE);
}

void bezel(Canvas& canvas, double x) {
    const Color key{92, 97, 99, 255};
    canvas.rectangle(x - 0.125, DISPLAY_Z - 0.128, x + 0.125, DISPLAY_Z + 0.128, {38, 41, 43, 255});
    for (int i = 0; i < 5; ++i) {
        const double at = -0.076 + 0.038 * i;
        for (const double s : {-0.118, 0.118}) {
            canvas.rectangle(x + at - 0.011, DISPLAY_Z + s - 0.007, x + at + 0.011, DISPLAY_Z + s + 0.007, key);
            canvas.rectangle(x + s - 0.006, DISPLAY_Z + at - 0.011, x + s + 0.006, DISPLAY_Z + at + 0.011, key);
        }
    }
    canvas.rectangle(x - DISPLAY_HALF, DISPLAY_Z - DISPLAY_HALF, x + DISPLAY_HALF, DISPLAY_Z + DISPLAY_HALF,
                     {6, 12, 10, 255});
}

void drawPanel(Canvas& canvas) {
    canvas.weather(5, 0.05, 9);
    for (const double x : DISPLAYS) bezel(canvas, x);
    enginePage(canvas, DISPLAYS[0], DISPLAY_Z);
    attitudePage(canvas, DISPLAYS[1], DISPLAY_Z);
    mapPage(canvas, DISPLAYS[2], DISPLAY_Z);
    const double needles[] = {210, 40, 130, 300, 75};
    for (int i = 0; i < 5; ++i) dial(canvas, -0.32 + 0.16 * i, 0.895, 0.062, needles[i]);
    for (int i = 0; i < 8; ++i) dial(canvas, -0.34 + 0.097 * i, 0.765, 0.036, 50.0 * i);
    for (int i = 0; i < 12; ++i) {
        const Color lamp = i % 5 == 2   ? Color{150, 40, 28, 255}
                           : i % 3 == 0 ? Color{150, 110, 30, 255}
                                        : Color{44, 48, 50, 255};
        canvas.rectangle(-0.37 + 0.062 * i, 1.237, -0.322 + 0.062 * i, 1.251, lamp);
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
    mesh.add(sheet(paints.skin, {glassArch(CANOPY_END, 0.012), glassArch(CANOPY_END - 0.12, -0.10)}).facingOutward());
    mesh.add(rail(paints, CANOPY_BOW, CANOPY_END)).add(mirrors(paints));
    return {"canopy", {0.0, CANOPY_END, 1.15}, mesh};
}

Mesh cockpit(const Paints& paints) {
    Mesh mesh = tub(paints);
    return mesh.add(panel(paints))
        .add(sight(paints))
        .add(seat(paints))
        .add(stick(paints))
        .add(seatedPilot({paints.helmet, paints.dark, paints.suit, paints.webbing}, PILOT_EYE));
}

}  // namespace jet
