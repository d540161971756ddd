// The jet's undercarriage and hook. Legs are modelled extended, doors shut.
#include "geometry/Wheels.h"
#include "models/JetShape.h"

namespace jet {
namespace {

WheelPaints wheelPaints(const Paints& paints) {
    return {paints.tyre, paints.gear, paints.dark};
}

/// A bar across X between `half` to the left and to the right of its middle.
Mesh crossBar(const PaintRef& paint, const dvec3& middle, double half, double radius) {
    return cylinder(paint, middle - dvec3(half, 0, 0), middle + dvec3(half, 0, 0), radius, 10);
}

Mesh noseFork(const Paints& paints, const dvec3& fork) {
    Mesh mesh = cylinder(paints.steel, fork + dvec3(0, 0, 0.15), NOSE_WHEEL + dvec3(0, 0, 0.02), 0.062, 14);
    mesh.add(crossBar(paints.gear, NOSE_WHEEL, 0.13, 0.055)).add(crossBar(paints.steel, NOSE_WHEEL, 0.30, 0.03));
    mesh.addPair(aircraftWheel(wheelPaints(paints), NOSE_WHEEL + dvec3(0.20, 0, 0), NOSE_WHEEL_RADIUS, 0.20));
    mesh.add(torqueLinks(paints.gear, fork + dvec3(0, -0.06, -0.02), NOSE_WHEEL + dvec3(0, -0.06, 0.06), {0, -0.20, 0},
                         0.12));
    // The guard that protects the intakes from stones.
    for (const double x : {0.1, 0.3}) {
        mesh.addPair(tube(paints.gear, {NOSE_WHEEL + dvec3(x, 0, 0.02), NOSE_WHEEL + dvec3(x, -0.36, 0.12)}, 0.012, 6));
    }
    Ring arc;
    for (int i = 0; i <= 6; ++i) arc.push_back(NOSE_WHEEL + dvec3(0, -0.37 + 0.02 * i, -0.10 + 0.07 * i));
    std::vector<Ring> rows{arc, arc};
    for (dvec3& p : rows[0]) p.x -= 0.32;
    for (dvec3& p : rows[1]) p.x += 0.32;
    const Mesh guard = sheet(paints.gear, rows);
    return mesh.add(guard).add(insideOut(guard));
}

Part noseLeg(const Paints& paints) {
    const dvec3 hinge{0.0, NOSE_WHEEL.y, -0.25}, fork{0.0, NOSE_WHEEL.y, -1.12};
    Mesh strut = cylinder(paints.gear, hinge, fork, 0.105, 16);
    strut.add(cylinder(paints.gear, fork + dvec3(0, 0, 0.12), fork, 0.125, 0.125, 16))
        .add(crossBar(paints.gear, hinge, 0.30, 0.055));
    strut.addPair(tube(paints.gear, {hinge + dvec3(0.26, 0, 0), hinge + dvec3(0.05, 0, -0.55)}, 0.035, 8));
    strut.add(tube(paints.gear, {{0.0, NOSE_WHEEL.y + 0.85, -0.35}, {0.0, NOSE_WHEEL.y + 0.05, -0.92}}, 0.045, 10));
    strut.add(tube(paints.dark,
                   {hinge + dvec3(0.09, -0.07, 0), fork + dvec3(0.11, -0.07, 0.1), fork + dvec3(0.08, -0.1, -0.2)},
                   0.012, 6));
    // Lamps on both sides.
    const Mesh lamp =
        cylinder(paints.dark, {0.21, NOSE_WHEEL.y + 0.02, -0.86}, {0.21, NOSE_WHEEL.y + 0.14, -0.86}, 0.055, 0.085, 14);
    const Mesh lens =
        cylinder(paints.mirror, {0.21, NOSE_WHEEL.y + 0.135, -0.86}, {0.21, NOSE_WHEEL.y + 0.15, -0.86}, 0.08, 14);
    strut.addPair(lamp).addPair(lens).add(crossBar(paints.gear, {0.0, NOSE_WHEEL.y + 0.06, -0.86}, 0.20, 0.02));
    return {"nose_leg", hinge, strut, {}, {{"nose_wheel_steer", fork, noseFork(paints, fork)}}};
}

Part mainLeg(const Paints& paints, int side) {
    const dvec3 hinge{MAIN_WHEEL.x + 0.25, MAIN_WHEEL.y, -0.06}, knee{hinge.x, hinge.y, -0.85};
    const dvec3 foot{hinge.x, hinge.y, MAIN_WHEEL.z};
    Mesh mesh = cylinder(paints.gear, hinge, knee, 0.125, 16);
    mesh.add(cylinder(paints.gear, knee + dvec3(0, 0, 0.14), knee, 0.145, 0.145, 16));
    mesh.add(cylinder(paints.steel, knee, foot - dvec3(0, 0, 0.06), 0.085, 16));
    mesh.add(cylinder(paints.gear, foot - dvec3(0, 0, 0.10), foot + dvec3(0, 0, 0.12), 0.11, 14));
    mesh.add(cylinder(paints.gear, foot + dvec3(0.10, 0, 0), foot - dvec3(0.42, 0, 0), 0.065, 12));
    mesh.add(tube(paints.gear, {{hinge.x, hinge.y + 0.75, 0.1}, {hinge.x, hinge.y + 0.05, -0.72}}, 0.055, 10));
    mesh.add(tube(paints.gear, {{hinge.x - 0.42, hinge.y, 0.1}, {hinge.x - 0.05, hinge.y, -0.62}}, 0.045, 10));
    mesh.add(torqueLinks(paints.gear, knee + dvec3(0, -0.11, 0.02), foot + dvec3(0, -0.09, 0.08), {0, -0.28, 0}, 0.16));
    mesh.add(tube(paints.dark,
                  {hinge + dvec3(0.1, 0.1, -0.1), knee + dvec3(0.12, 0.12, 0), foot + dvec3(0.05, 0.12, 0.15)}, 0.014,
                  6));
    mesh.add(
        cylinder(paints.dark, MAIN_WHEEL + dvec3(0.05, 0, 0), MAIN_WHEEL + dvec3(0.19, 0, 0), 0.24, 20));  // brakes
    mesh.add(aircraftWheel(wheelPaints(paints), MAIN_WHEEL, MAIN_WHEEL_RADIUS, 0.36));
    return {withSide("main_leg", side), onSide(hinge, side), onSide(mesh, side)};
}

/// Height of the belly at (x, y).
double belly(double x, double y) {
    const std::vector<Point2> half = fuselage().half(y);
    std::size_t i = half.size() - 1;
    while (i > 1 && half[i - 1][0] < x) --i;
    const double t = (x - half[i][0]) / (half[i - 1][0] - half[i][0]);
    return half[i][1] + (half[i - 1][1] - half[i][1]) * t;
}

/// A door with the belly's curve, slightly outside it; white inside.
Mesh bellyDoor(const Paints& paints, double x0, double x1, double y0, double y1) {
    std::vector<Ring> lines;
    for (int i = 0; i <= 6; ++i) {
        const double y = y0 + (y1 - y0) * i / 6;
        Ring line;
        for (int k = 0; k <= 4; ++k) {
            const double x = x0 + (x1 - x0) * k / 4;
            line.emplace_back(x, y, belly(std::abs(x), y) - 0.028);
        }
        lines.push_back(line);
    }
    Mesh mesh = insideOut(sheet(paints.skin, lines));
    mesh.add(sheet(paints.gear, lines).moved({0, 0, 0.012}));
    return mesh;
}

Part noseDoor(const Paints& paints, int side) {
    return {withSide("nose_door", side), onSide({0.33, 5.6, belly(0.33, 5.6) - 0.02}, side),
            onSide(bellyDoor(paints, 0.005, 0.33, 4.7, 6.38), side)};
}

Part mainDoor(const Paints& paints, int side) {
    Mesh mesh = box(paints.skin, {1.88, -1.20, -0.205}, {2.46, 0.20, -0.181});
    mesh.add(box(paints.gear, {1.93, -1.15, -0.181}, {2.41, 0.15, -0.179}));
    for (const double y : {-0.9, -0.4, 0.1}) mesh.add(box(paints.gear, {1.93, y, -0.181}, {2.41, y + 0.05, -0.1775}));
    return {withSide("main_door", side), onSide({2.46, -0.50, -0.193}, side), onSide(mesh, side)};
}

Part rearNoseDoor(const Paints& paints) {
    return {"nose_door_rear", {0.0, 3.85, belly(0.0, 3.85)}, bellyDoor(paints, -0.30, 0.30, 3.85, 4.26)};
}

/// Black and white, with its claw at the end.
Part hook(const Paints& paints) {
    const dvec3 hinge{0.0, -7.7, -0.22}, tip{0.0, -10.05, -0.15};
    Mesh mesh = cylinder(paints.gear, hinge - dvec3(0.16, 0, 0), hinge + dvec3(0.16, 0, 0), 0.07, 12);
    constexpr int BANDS = 9;
    for (int i = 0; i < BANDS; ++i) {
        const dvec3 a = hinge + (tip - hinge) * (static_cast<double>(i) / BANDS);
        const dvec3 b = hinge + (tip - hinge) * ((i + 1.0) / BANDS);
        mesh.add(cylinder(i % 2 == 0 ? paints.dark : paints.gear, a, b, 0.062 - 0.002 * i, 0.060 - 0.002 * i, 12));
    }
    mesh.add(loft(paints.steel, {outline({-10.00, -0.15, 0.06, 0.05, 0.05, 3.0}, 12),
                                 outline({-10.18, -0.18, 0.10, 0.05, 0.06, 3.0}, 12),
                                 outline({-10.28, -0.23, 0.10, 0.03, 0.05, 3.0}, 12)}));
    return {"weigou001", hinge, mesh};
}

}  // namespace

std::vector<Part> gearParts(const Paints& paints) {
    std::vector<Part> parts{noseLeg(paints), rearNoseDoor(paints), hook(paints)};
    for (const int side : {-1, 1}) {
        parts.push_back(mainLeg(paints, side));
        parts.push_back(noseDoor(paints, side));
        parts.push_back(mainDoor(paints, side));
    }
    return parts;
}

}  // namespace jet
