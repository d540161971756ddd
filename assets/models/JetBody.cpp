// The jet's fuselage, its radome, and its opening parts.
#include "engine/math/jMath.h"
#include "models/JetShape.h"

namespace jet {
namespace {

const std::vector<double> NOSE_ANGLES{90, 66, 38, 14, 0, -18, -40, -66, -90};

/// The beams beside the engines to which fins and tailplanes are attached.
Mesh tailBoom(const Paints& paints) {
    return body(paints.skin,
                {{-2.9, 0.28, 0.10, 0.08, 0.06, 2.0, 2.22},
                 {-3.8, 0.27, 0.26, 0.14, 0.13, 2.4, 2.22},
                 {-5.2, 0.22, 0.33, 0.19, 0.19, 2.8, 2.22},
                 {-7.2, 0.18, 0.34, 0.20, 0.20, 2.8, 2.22},
                 {-8.6, 0.17, 0.29, 0.17, 0.17, 2.6, 2.24},
                 {-9.3, 0.18, 0.18, 0.11, 0.11, 2.2, 2.26},
                 {-9.75, 0.19, 0.05, 0.04, 0.04, 2.0, 2.27}},
                24);
}

/// A blister below the wing's root for the main wheel.
Mesh gearBay(const Paints& paints) {
    Mesh mesh = body(paints.skin,
                     {{2.0, 0.27, 0.06, 0.05, 0.05, 2.4, 2.02},
                      {1.2, 0.22, 0.34, 0.18, 0.26, 2.8, 2.12},
                      {0.2, 0.20, 0.44, 0.20, 0.36, 5.0, 2.17},
                      {-1.6, 0.20, 0.44, 0.20, 0.36, 5.0, 2.17},
                      {-2.6, 0.22, 0.30, 0.16, 0.24, 2.8, 2.15},
                      {-3.6, 0.26, 0.06, 0.05, 0.05, 2.4, 2.12}},
                     28);
    // The open bay is a dark panel slightly above the skin; the shut door is below it.
    mesh.add(box(paints.duct, {1.90, -1.70, -0.170}, {2.44, 0.18, -0.15}));
    for (const double y : {-1.5, -1.0, -0.5, 0.0}) {
        mesh.add(box(paints.gear, {1.92, y - 0.03, -0.177}, {2.42, y + 0.03, -0.15}));
    }
    return mesh;
}

Mesh noseBay(const Paints& paints) {
    Mesh mesh = box(paints.duct, {-0.31, 3.85, -0.452}, {0.31, 6.35, -0.38});
    for (const double y : {4.9, 5.4, 5.9}) {
        mesh.add(box(paints.gear, {-0.29, y - 0.025, -0.458}, {0.29, y + 0.025, -0.40}));
    }
    return mesh;
}

Mesh probesAndAerials(const Paints& paints) {
    Mesh mesh =
        aerofoil(paints.skin, {{{0.0, 1.9, 1.44}, 0.40, 0.08, {1, 0, 0}}, {{0.0, 1.72, 1.66}, 0.16, 0.06, {1, 0, 0}}});
    mesh.add(aerofoil(paints.dark,
                      {{{0.0, 3.2, -0.32}, 0.34, 0.08, {1, 0, 0}}, {{0.0, 3.0, -0.62}, 0.16, 0.06, {1, 0, 0}}}));
    const Mesh vane = cylinder(paints.steel, {0.66, 8.25, 0.35}, {0.80, 8.25, 0.37}, 0.018, 0.012, 8);
    const Mesh pitot = tube(paints.steel, {{0.62, 7.85, 0.12}, {0.80, 7.90, 0.10}, {0.82, 8.25, 0.09}}, 0.018);
    mesh.addPair(vane).addPair(pitot);
    // The seeker's ball in front of the windshield, to starboard.
    mesh.add(dome(paints.dark, {0.20, 7.82, 1.03}, 0.13, 16));
    return mesh.add(cylinder(paints.skin, {0.20, 7.82, 0.85}, {0.20, 7.82, 1.05}, 0.17, 0.145, 20));
}

Part radome(const Paints& paints) {
    const std::vector<double> all = NOSE_ANGLES;
    const Hull cone({oval(BULKHEAD, 0.26, 0.565, 0.57, 0.55, all), oval(9.4, 0.215, 0.49, 0.50, 0.48, all),
                     oval(10.0, 0.165, 0.375, 0.38, 0.37, all), oval(10.5, 0.12, 0.245, 0.25, 0.245, all),
                     oval(10.85, 0.09, 0.115, 0.12, 0.115, all), oval(10.98, 0.08, 0.03, 0.03, 0.03, all)});
    Mesh mesh = cone.skin(paints.skin, BULKHEAD, 10.98, 18, true);
    mesh.add(cylinder(paints.steel, {0.0, 10.95, 0.08}, {0.0, 11.17, 0.08}, 0.018, 0.012, 8));
    return {"radome", {0.0, BULKHEAD, 0.83}, mesh};
}

Part refuellingProbe(const Paints& paints) {
    const dvec3 root{-0.62, 6.75, 0.86};
    Mesh mesh = tube(paints.skin, {root, {-0.60, 7.3, 0.84}, {-0.55, 7.95, 0.79}}, 0.055, 10);
    mesh.add(cylinder(paints.steel, {-0.55, 7.95, 0.79}, {-0.53, 8.2, 0.77}, 0.045, 0.03, 10));
    return {"refuelling_probe", root, mesh};
}

/// The large plate on the back, cut from the fuselage's surface.
Part airbrake(const Paints& paints) {
    std::vector<Ring> lines;
    for (int i = 0; i <= 8; ++i) {
        const double y = 2.9 - 2.1 * i / 8;
        const std::vector<Point2> half = fuselage().half(y);
        Ring line;
        for (std::size_t k = 5; k > 0; --k) line.emplace_back(-half[k][0], y, half[k][1] + 0.012);
        for (std::size_t k = 0; k <= 5; ++k) line.emplace_back(half[k][0], y, half[k][1] + 0.012);
        lines.push_back(line);
    }
    Mesh mesh = insideOut(sheet(paints.skin, lines));
    mesh.add(sheet(paints.dark, lines).moved({0, 0, -0.02}));
    return {"airbrake", {0.0, 2.9, 1.50}, mesh};
}

/// Folded into the side below the rim when not in use.
Part ladder(const Paints& paints) {
    const double x = fuselage().halfWidthAt(5.4, 0.9);
    Mesh mesh;
    for (const double y : {5.2, 5.6}) mesh.add(tube(paints.gear, {{-x, y, 0.9}, {-x - 0.06, y, 0.62}}, 0.014, 6));
    return {"ladder",
            {-x, 5.4, 0.9},
            mesh.add(tube(paints.gear, {{-x - 0.06, 5.2, 0.62}, {-x - 0.06, 5.6, 0.62}}, 0.014, 6))};
}

Part intakeRamp(const Paints& paints, int side) {
    const Mesh ramp = box(paints.skin, {0.66, 1.5, 0.125}, {1.78, 2.78, 0.15});
    return {withSide("intake_ramp", side), onSide({NOZZLE.x, 2.78, 0.137}, side), onSide(ramp, side)};
}

Part afterburner(const Paints& paints) {
    const Mesh flame = revolve(paints.glow, {NOZZLE.x, 0.0, NOZZLE.z}, {{-8.05, 0.40}, {-8.4, 0.34}, {-8.9, 0.05}}, 16);
    Mesh both;
    both.addPair(flame);
    return {"afterburner", {0.0, -8.5, NOZZLE.z}, both};
}

}  // namespace

Part airframe(const Paints& paints) {
    Mesh mesh = fuselage().skin(paints.skin, BULKHEAD, WINDSHIELD_FRONT, 8);
    mesh.add(fuselage().skinBelow(paints.skin, WINDSHIELD_FRONT, CANOPY_END, 26, sill))
        .add(fuselage().skin(paints.skin, CANOPY_END, -10.75, 60, true));
    mesh.addPair(tailBoom(paints)).addPair(gearBay(paints)).add(noseBay(paints)).add(probesAndAerials(paints));
    mesh.add(engines(paints)).add(cockpit(paints)).add(windshield(paints)).add(fixedSurfaces(paints));
    return {"airframe", {}, mesh};
}

std::vector<Part> bodyParts(const Paints& paints) {
    return {canopy(paints), radome(paints),         airbrake(paints),      refuellingProbe(paints),
            ladder(paints), intakeRamp(paints, -1), intakeRamp(paints, 1), afterburner(paints)};
}

}  // namespace jet
