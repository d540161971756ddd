// The aerobatic aircraft's cockpit: canopy, panel with needles and bands, stick, pedals, levers, seat, pilot.
#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"
#include "models/ExtraShape.h"
#include "models/PilotFigure.h"

namespace extra {
namespace {

constexpr double FLOOR = -0.36;

double roof(double y) {
    return smoothly({{CANOPY_END, 0.452},
                     {-1.3, 0.60},
                     {-0.95, 0.72},
                     {-0.6, 0.765},
                     {-0.25, 0.735},
                     {0.05, 0.62},
                     {CANOPY_FRONT, 0.462}},
                    y);
}

/// The outline of the glass at a position along Y, from the right rim over the top to the left.
Ring glassArch(double y) {
    const double foot = sill(y);
    return arch(y, fuselage().halfWidthAt(y, foot), foot, roof(y) - foot, 2.2, 28);
}

Part canopy(const Paints& paints) {
    std::vector<Ring> lines;
    constexpr int ROWS = 26;
    for (int i = 0; i <= ROWS; ++i)
        lines.push_back(glassArch(CANOPY_FRONT - 0.005 + (CANOPY_END - CANOPY_FRONT + 0.01) * i / ROWS));
    Mesh mesh = sheet(paints.glass, lines).facingOutward();
    Ring rail;
    for (int i = 0; i <= 20; ++i) {
        const double y = CANOPY_FRONT - 0.01 + (CANOPY_END - CANOPY_FRONT + 0.02) * i / 20;
        rail.emplace_back(fuselage().halfWidthAt(y, sill(y)) - 0.002, y, sill(y) + 0.008);
    }
    mesh.addPair(tube(paints.skin, rail, 0.014, 8));
    const dvec3 hinge{fuselage().halfWidthAt(-0.6, sill(-0.6)), -0.6, sill(-0.6)};
    return {"canopy", hinge, mesh};
}

/// Side walls and floor, seen from inside, with the tubes of the steel frame.
Mesh tub(const Paints& paints) {
    std::vector<Ring> lines;
    for (int i = 0; i <= 12; ++i) {
        const double y = 0.28 + (CANOPY_END + 0.06 - 0.28) * i / 12, z = sill(y);
        const double x = fuselage().halfWidthAt(y, z) - 0.012, wall = std::max(0.02, x - 0.02);
        const double floor = std::min(FLOOR + 0.5 * std::max(0.0, -1.0 - y), z - 0.05);
        Ring line{{x, y, z},
                  {wall, y, z - 0.01},
                  {wall + 0.02, y, 0.5 * (z + floor)},
                  {wall * 0.9, y, floor},
                  {0.0, y, floor}};
        for (std::size_t k = 4; k-- > 0;) line.emplace_back(-line[k].x, y, line[k].z);
        lines.push_back(line);
    }
    Mesh mesh = insideOut(sheet(paints.cockpit, lines).facingOutward());
    const Ring upper{{0.34, 0.0, 0.24}, {0.345, -0.6, 0.21}, {0.31, -1.35, 0.26}},
        brace{{0.345, -0.6, 0.21}, {0.36, -0.25, -0.05}, {0.35, 0.0, -0.30}};
    mesh.addPair(tube(paints.white, upper, 0.014, 8)).addPair(tube(paints.white, brace, 0.012, 8));
    mesh.add(plate(paints.cockpit, fuselage().ring(0.26), {0, 1, 0}, 0.01));  // firewall
    // A shelf behind the seat.
    mesh.add(plate(paints.cockpit,
                   {{-0.30, -1.05, 0.34}, {0.30, -1.05, 0.34}, {0.18, -1.50, 0.42}, {-0.18, -1.50, 0.42}}, {0, 0.15, 1},
                   0.012));
    return mesh;
}

Mesh seat(const Paints& paints) {
    Mesh mesh = taperedBox(paints.seat, {-0.20, -0.92, FLOOR + 0.02}, {0.20, -0.48, FLOOR + 0.17}, 0.03);
    const dmat4 lean(dquat::fromEulerZXY({0, 24, 0}), {0.0, -0.90, FLOOR + 0.14});
    Mesh back = taperedBox(paints.seat, {-0.20, -0.04, 0.0}, {0.20, 0.05, 0.62}, 0.02);
    back.add(taperedBox(paints.seat, {-0.10, -0.02, 0.62}, {0.10, 0.05, 0.80}, 0.02));
    for (const double x : {-0.10, 0.10}) back.add(box(paints.red, {x - 0.022, 0.05, 0.10}, {x + 0.022, 0.058, 0.62}));
    return mesh.add(back, lean);
}

/// The panel's board with its face, rings around the dials, and the hood in front of the glass.
Mesh panel(const Paints& paints) {
    Mesh mesh;
    const double y = PANEL_Y;
    mesh.quad(paints.panel, {-PANEL_HALF, y, PANEL_FOOT}, {PANEL_HALF, y, PANEL_FOOT}, {PANEL_HALF, y, PANEL_TOP},
              {-PANEL_HALF, y, PANEL_TOP});
    mesh.add(box(paints.dark, {-PANEL_HALF, y + 0.004, PANEL_FOOT}, {PANEL_HALF, y + 0.02, PANEL_TOP}));
    for (const Dial& dial : dials()) {
        Ring ring;
        for (int i = 0; i <= 24; ++i) {
            const double a = 2.0 * jMath::PI * i / 24;
            ring.emplace_back(dial.x + dial.radius * std::cos(a), y - 0.002, dial.z + dial.radius * std::sin(a));
        }
        mesh.add(tube(paints.dark, ring, 0.0045, 6));
    }
    std::vector<Ring> hood;
    for (const double at : {y - 0.05, y + 0.05, 0.2, CANOPY_FRONT - 0.02}) {
        const double half = fuselage().halfWidthAt(at, sill(at)) - 0.035,
                     top = std::min(PANEL_TOP + 0.015, roof(at) - 0.03);
        const double foot = sill(at) - 0.01;
        hood.push_back(arch(at, half, foot, std::max(0.0, top - foot), 4.2, 14));
    }
    return mesh.add(sheet(paints.hood, hood).facingOutward());
}

Part needle(const Paints& paints, const Dial& dial) {
    const double r = dial.radius;
    const dvec3 middle{dial.x, PANEL_Y - 0.006, dial.z};
    Mesh mesh =
        plate(paints.needle,
              {middle + dvec3(-0.0035, 0, -0.2 * r), middle + dvec3(0.0035, 0, -0.2 * r),
               middle + dvec3(0.0022, 0, 0.6 * r), middle + dvec3(0, 0, 0.8 * r), middle + dvec3(-0.0022, 0, 0.6 * r)},
              {0, -1, 0}, 0.0016);
    mesh.add(cylinder(paints.dark, middle, middle - dvec3(0, 0.004, 0), 0.14 * r, 12));
    return {dial.needle, middle, mesh};
}

/// A window that shows a section of a picture.
Part band(const PaintRef& paint, const std::string& name, double x, double z, double half_width, double half_height) {
    const double y = PANEL_Y - 0.003;
    Mesh mesh;
    mesh.quad(paint, {x - half_width, y, z - half_height}, {x + half_width, y, z - half_height},
              {x + half_width, y, z + half_height}, {x - half_width, y, z + half_height});
    return {name, {x, y, z}, mesh};
}

Part stick(const Paints& paints) {
    const dvec3 foot{0.0, -0.42, FLOOR + 0.03};
    Mesh mesh = tube(paints.dark, {foot, foot + dvec3(0, 0.03, 0.22), foot + dvec3(0, -0.03, 0.42)}, 0.014, 10);
    mesh.add(cylinder(paints.seat, foot + dvec3(0, -0.025, 0.40), foot + dvec3(0, -0.045, 0.52), 0.021, 0.024, 12));
    mesh.add(cylinder(paints.red, foot + dvec3(0, -0.045, 0.52), foot + dvec3(0, -0.047, 0.532), 0.010, 8));
    Mesh base = dome(paints.dark, foot - dvec3(0, 0, 0.02), 0.05, 12);
    return {"stick_pitch", foot, base, {}, {{"stick_roll", foot, mesh}}};
}

Part pedal(const Paints& paints, int side) {
    const dvec3 place{0.14, 0.10, FLOOR + 0.14};
    Mesh mesh = taperedBox(paints.steel, place + dvec3(-0.05, 0.0, -0.07), place + dvec3(0.05, 0.02, 0.07), 0.006);
    mesh.add(tube(paints.steel, {place + dvec3(0, 0.02, -0.05), place + dvec3(0, 0.10, -0.14)}, 0.010, 6));
    return {withSide("pedal", side), onSide(place, side), onSide(mesh, side)};
}

Part lever(const Paints& paints, const std::string& name, const PaintRef& knob, double y) {
    const dvec3 root{-0.325, y, 0.10}, top{-0.30, y + 0.03, 0.20};
    Mesh mesh = tube(paints.steel, {root, top}, 0.006, 6);
    mesh.add(dome(knob, top, 0.018, 12));
    return {name, root, mesh};
}

}  // namespace

const std::vector<Dial>& dials() {
    static const std::vector<Dial> LIST{{"needle_airspeed", -0.215, 0.315, 0.058},
                                        {"needle_altitude", 0.215, 0.315, 0.058},
                                        {"needle_rpm", -0.215, 0.175, 0.058},
                                        {"needle_load", 0.215, 0.175, 0.058},
                                        {"", -0.10, 0.115, 0.036},
                                        {"", 0.10, 0.115, 0.036}};
    return LIST;
}

Mesh cockpit(const Paints& paints) {
    Mesh mesh = tub(paints);
    mesh.add(seat(paints)).add(panel(paints));
    mesh.add(taperedBox(paints.dark, {-0.36, -0.42, 0.06}, {-0.29, -0.12, 0.12}, 0.01));
    // Straps of the pedals' guide rails and a fuel cock between them.
    mesh.addPair(tube(paints.steel, {{0.14, 0.22, FLOOR + 0.02}, {0.14, -0.05, FLOOR + 0.02}}, 0.008, 6));
    return mesh.add(cylinder(paints.red, {0.0, -0.20, FLOOR + 0.01}, {0.0, -0.20, FLOOR + 0.06}, 0.03, 0.02, 12));
}

std::vector<Part> cockpitParts(const Paints& paints) {
    std::vector<Part> parts{canopy(paints), stick(paints), pedal(paints, -1), pedal(paints, 1)};
    parts.push_back(lever(paints, "throttle", paints.dark, -0.30));
    parts.push_back(lever(paints, "mixture", paints.red, -0.22));
    for (const Dial& dial : dials()) {
        if (*dial.needle != '\0') parts.push_back(needle(paints, dial));
    }
    const dvec3 ball{0.0, PANEL_Y - 0.006, 0.175};
    parts.push_back({"slip_ball", ball, dome(paints.dark, ball, 0.0085, 12)});
    parts.push_back(band(paints.horizon, "horizon_ball", 0.0, 0.27, 0.075, 0.065));
    parts.push_back(band(paints.compass, "compass_tape", 0.0, 0.385, 0.10, 0.017));
    parts.push_back(band(paints.climb, "climb_tape", 0.118, 0.27, 0.020, 0.065));
    parts.push_back(
        {"pilot", PILOT_EYE, seatedPilot({paints.helmet, paints.dark, paints.suit, paints.red}, PILOT_EYE)});
    return parts;
}

}  // namespace extra
