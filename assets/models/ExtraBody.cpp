// The aerobatic aircraft's fuselage with its cowling, and the propeller.
#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"
#include "models/ExtraShape.h"

namespace extra {
namespace {

constexpr double COWL_FACE = 2.36, TAIL_END = -3.40;

const Hull& makeFuselage() {
    static const std::vector<double> A{90, 68, 45, 22, 0, -22, -45, -68, -90};
    static const Hull HULL({
        oval(COWL_FACE, 0.00, 0.26, 0.24, 0.26, A),
        oval(2.33, 0.00, 0.335, 0.30, 0.335, A, 2.1),
        oval(2.24, 0.00, 0.395, 0.335, 0.385, A, 2.2),
        oval(2.00, 0.00, 0.435, 0.365, 0.425, A, 2.4),
        oval(1.50, 0.00, 0.455, 0.40, 0.465, A, 2.6),
        oval(1.00, 0.00, 0.455, 0.43, 0.49, A, 2.6),
        oval(0.30, 0.00, 0.45, 0.46, 0.50, A, 2.5),
        oval(-0.40, 0.00, 0.44, 0.475, 0.48, A, 2.4),
        oval(-1.00, 0.00, 0.41, 0.475, 0.44, A, 2.3),
        oval(-1.62, 0.01, 0.355, 0.44, 0.375, A, 2.2),
        oval(-2.30, 0.03, 0.26, 0.33, 0.28, A, 2.1),
        oval(-2.95, 0.06, 0.155, 0.22, 0.19, A, 2.0),
        oval(TAIL_END, 0.09, 0.065, 0.13, 0.13, A, 2.0),
    });
    return HULL;
}

/// An air intake in the cowling's face: a ring around a dark opening.
Mesh inlet(const Paints& paints, double x, double z, double half_width, double half_height) {
    const auto ring = [&](double y, double scale) {
        return outline({y, z, half_width * scale, half_height * scale, half_height * scale, 2.4, x}, 24);
    };
    Mesh mesh = loft(paints.skin, {ring(2.26, 1.12), ring(2.385, 1.06), ring(2.385, 0.94)}, false);
    mesh.add(insideOut(loft(paints.dark, {ring(2.385, 0.94), ring(2.28, 0.85)}, false)));
    return mesh.add(plate(paints.dark, ring(2.30, 0.95), {0, 1, 0}, 0.01));
}

Mesh cowling(const Paints& paints) {
    Mesh mesh = fuselage().skin(paints.skin, COWL_FACE, CANOPY_FRONT, 22);
    const Ring face = fuselage().ring(COWL_FACE);
    mesh.add(plate(paints.skin, face, {0, 1, 0}, 0.004));
    Mesh sides = inlet(paints, 0.235, 0.06, 0.115, 0.105);
    for (const double z : {0.15, 0.19, 0.23}) {  // cooling slots
        sides.add(box(paints.dark, {0.40, 1.45, z - 0.075}, {0.462 - 0.1 * (z - 0.1), 1.75, z - 0.06}));
    }
    mesh.addPair(sides).add(inlet(paints, 0.0, -0.285, 0.10, 0.055));
    const Mesh pipe = tube(paints.steel, {{0.17, 1.75, -0.40}, {0.17, 1.55, -0.50}, {0.175, 1.33, -0.555}}, 0.042, 12);
    const Mesh bore = cylinder(paints.dark, {0.175, 1.33, -0.555}, {0.176, 1.318, -0.558}, 0.034, 12);
    return mesh.addPair(pipe).addPair(bore);
}

/// A blade's section at a radius: chord, thickness relative to the chord, and angle to the disc in degrees.
struct BladeSection {
    double radius, chord, thickness, angle, sweep;
};

Ring bladeRing(const BladeSection& s) {
    const double c = std::cos(s.angle * jMath::DEG2RAD), n = std::sin(s.angle * jMath::DEG2RAD);
    Ring ring;
    constexpr int POINTS = 16;
    for (int i = 0; i < POINTS; ++i) {
        const double a = 2.0 * jMath::PI * i / POINTS;
        const double along = 0.5 * s.chord * std::cos(a), across = 0.5 * s.chord * s.thickness * std::sin(a);
        ring.emplace_back(along * c - across * n + s.sweep, along * n + across * c, s.radius);
    }
    return ring;
}

Mesh blade(const Paints& paints) {
    const BladeSection inner[] = {{0.10, 0.085, 1.0, 60, 0.0},    {0.20, 0.10, 0.65, 52, 0.0},
                                  {0.34, 0.165, 0.24, 42, 0.004}, {0.50, 0.195, 0.15, 33, 0.006},
                                  {0.68, 0.195, 0.11, 26, 0.0},   {0.83, 0.17, 0.09, 22, -0.010}};
    const BladeSection outer[] = {{0.83, 0.17, 0.09, 22, -0.010},
                                  {0.91, 0.145, 0.08, 20, -0.020},
                                  {0.97, 0.10, 0.08, 19, -0.034},
                                  {PROPELLER_RADIUS, 0.03, 0.10, 18, -0.050}};
    std::vector<Ring> root, tip;
    for (const BladeSection& s : inner) root.push_back(bladeRing(s));
    for (const BladeSection& s : outer) tip.push_back(bladeRing(s));
    return loft(paints.blade, root).add(loft(paints.blade_tip, tip));
}

}  // namespace

const Hull& fuselage() {
    return makeFuselage();
}

double sill(double y) {
    return smoothly(
        {{CANOPY_END, 0.449}, {-1.2, 0.36}, {-0.6, 0.31}, {-0.1, 0.33}, {0.15, 0.39}, {CANOPY_FRONT, 0.459}}, y);
}

dvec3 contact(double x, double y) {
    const double pitch = STANDING_PITCH * jMath::DEG2RAD;
    return {x, y, (-STANDING_HEIGHT - y * std::sin(pitch)) / std::cos(pitch)};
}

dvec3 wheelMiddle(double x, double y, double radius) {
    const double pitch = STANDING_PITCH * jMath::DEG2RAD;
    return contact(x, y) + dvec3(0.0, std::sin(pitch), std::cos(pitch)) * radius;
}

Mesh airframe(const Paints& paints) {
    Mesh mesh = cowling(paints);
    mesh.add(fuselage().skinBelow(paints.skin, CANOPY_FRONT, CANOPY_END, 22, sill))
        .add(fuselage().skin(paints.skin, CANOPY_END, TAIL_END, 20, true));
    return mesh.add(fixedSurfaces(paints)).add(legs(paints)).add(cockpit(paints));
}

Part propeller(const Paints& paints) {
    Mesh mesh = revolve(paints.trim, {PROPELLER.x, 0.0, PROPELLER.z},
                        {{2.395, 0.0},
                         {2.40, 0.205},
                         {2.44, 0.21},
                         {2.52, 0.195},
                         {2.60, 0.165},
                         {2.68, 0.115},
                         {2.73, 0.065},
                         {2.755, 0.025},
                         {2.76, 0.0}},
                        32);
    for (int i = 0; i < 3; ++i)
        mesh.add(blade(paints), dmat4(dquat::fromEulerZXY({0.0, 0.0, 60.0 + 120.0 * i}), PROPELLER));
    return {"propeller", PROPELLER, mesh};
}

}  // namespace extra
