// The jet's wings, tails and canards, fixed and moving pieces, and the pylons below the wings.
#include "models/JetShape.h"

namespace jet {
namespace {

constexpr double GAP = 0.003;  // fraction of the span, between a moving surface and its neighbours

const Rib FOLD = between(WING_ROOT, WING_TIP, WING_FOLD);

Rib onWing(double t) {
    return between(WING_ROOT, WING_TIP, t);
}
std::vector<Rib> onWing(double from, double to) {
    return ribsBetween(WING_ROOT, WING_TIP, from, to);
}
std::vector<Rib> onFin(double from, double to) {
    return ribsBetween(FIN_ROOT, FIN_TIP, from, to);
}

/// A launcher rail below a wing: a tapered pylon with a beam.
Mesh pylon(const Paints& paints, double t, double chord_from, double length) {
    const Rib rib = onWing(t);
    const dvec3 top = chordPoint(rib, chord_from) - dvec3(0, 0, 0.02);
    const std::vector<Rib> ribs{{top, length, 0.07, {1, 0, 0}},
                                {top + dvec3(0, 0.22, -0.34), length * 0.95, 0.075, {1, 0, 0}}};
    Mesh mesh = aerofoil(paints.skin, ribs);
    const double z = top.z - 0.40;
    return mesh.add(body(paints.skin,
                         {{top.y + 0.55, z, 0.02, 0.02, 0.02, 2.0, top.x},
                          {top.y + 0.30, z, 0.075, 0.075, 0.075, 3.0, top.x},
                          {top.y - length * 0.8, z, 0.075, 0.075, 0.075, 3.0, top.x},
                          {top.y - length * 0.95, z, 0.03, 0.03, 0.03, 2.0, top.x}},
                         16));
}

/// The missile rail at the wing tip.
Mesh tipRail(const Paints& paints) {
    const double x = 7.26, z = 0.30;
    Mesh mesh = body(paints.skin,
                     {{-2.20, z, 0.015, 0.02, 0.02, 2.0, x},
                      {-2.55, z, 0.065, 0.075, 0.075, 3.0, x},
                      {-4.85, z, 0.065, 0.075, 0.075, 3.0, x},
                      {-5.25, z, 0.025, 0.03, 0.03, 2.0, x}},
                     16);
    return mesh.add(box(paints.dark, {x + 0.055, -4.6, z - 0.02}, {x + 0.075, -2.8, z + 0.02}));
}

/// The outer wing's box, its fixed leading edge and the rail at its tip.
Mesh outerWing(const Paints& paints) {
    Mesh mesh = aerofoil(paints.skin, onWing(WING_FOLD + GAP, 1.0), {NOSE_FLAP, TRAILING_FLAP});
    mesh.add(aerofoil(paints.skin, onWing(WING_FOLD + GAP, 0.985), {0.0, NOSE_FLAP, false, true}));
    mesh.add(aerofoil(paints.skin, onWing(AILERON_END + GAP, 1.0), {TRAILING_FLAP, 1.0}));
    return mesh.add(tipRail(paints)).add(pylon(paints, 0.56, 0.10, 1.7)).add(pylon(paints, 0.78, 0.12, 1.45));
}

Part trailingFlap(const Paints& paints, const std::string& name, int side, double from, double to) {
    const std::vector<Rib> ribs = onWing(from + GAP, to - GAP);
    const dvec3 hinge = (chordPoint(ribs.front(), TRAILING_FLAP) + chordPoint(ribs.back(), TRAILING_FLAP)) * 0.5;
    const Mesh mesh = aerofoil(paints.skin, ribs, {TRAILING_FLAP, 1.0, true, false}, 6);
    return {withSide(name, side), onSide(hinge, side), onSide(mesh, side)};
}

Part leadingFlap(const Paints& paints, int side) {
    const std::vector<Rib> ribs = onWing(0.06, WING_FOLD - GAP);
    const dvec3 hinge = (chordPoint(ribs.front(), NOSE_FLAP) + chordPoint(ribs.back(), NOSE_FLAP)) * 0.5;
    const Mesh mesh = aerofoil(paints.skin, ribs, {0.0, NOSE_FLAP, false, true}, 7);
    return {withSide("leading_flap", side), onSide(hinge, side), onSide(mesh, side)};
}

Part foldingWing(const Paints& paints, int side) {
    const dvec3 hinge = chordPoint(FOLD, 0.45) + dvec3(0.0, 0.0, 0.5 * FOLD.chord * FOLD.thickness);
    Part part{withSide("wing_fold", side), onSide(hinge, side), onSide(outerWing(paints), side)};
    part.children.push_back(trailingFlap(paints, "aileron", side, WING_FOLD, AILERON_END));
    return part;
}

Part stabilator(const Paints& paints, int side) {
    const dvec3 pivot = chordPoint(STABILATOR_ROOT, 0.55);
    Mesh mesh = aerofoil(paints.skin, {STABILATOR_ROOT, STABILATOR_TIP});
    mesh.add(roundTip(paints.skin, STABILATOR_TIP, {1, 0, 0}));
    return {withSide("stabilator", side), onSide(pivot, side), onSide(mesh, side)};
}

Part canard(const Paints& paints, int side) {
    const dvec3 pivot = chordPoint(CANARD_ROOT, 0.45);
    Mesh mesh = aerofoil(paints.skin, {CANARD_ROOT, CANARD_TIP});
    mesh.add(roundTip(paints.skin, CANARD_TIP, {1, 0, 0}));
    mesh.add(cylinder(paints.steel, pivot - dvec3(0.25, 0, 0), pivot + dvec3(0.02, 0, 0), 0.06));
    return {withSide("canard", side), onSide(pivot, side), onSide(mesh, side)};
}

Part rudder(const Paints& paints, int side) {
    const std::vector<Rib> ribs = onFin(RUDDER_FOOT, RUDDER_TOP);
    const dvec3 hinge = (chordPoint(ribs.front(), RUDDER) + chordPoint(ribs.back(), RUDDER)) * 0.5;
    const Mesh mesh = aerofoil(paints.skin, ribs, {RUDDER, 1.0, true, false}, 6);
    return {withSide("rudder", side), onSide(hinge, side), onSide(mesh, side)};
}

/// The fin has a broad fairing at its foot with an air scoop.
Mesh fin(const Paints& paints) {
    Mesh mesh = aerofoil(paints.skin, onFin(0.0, 1.0), {0.0, RUDDER});
    mesh.add(aerofoil(paints.skin, onFin(0.0, RUDDER_FOOT - GAP), {RUDDER, 1.0}));
    mesh.add(aerofoil(paints.skin, onFin(RUDDER_TOP + GAP, 1.0), {RUDDER, 1.0}));
    mesh.add(body(paints.skin,
                  {{-3.6, 0.40, 0.03, 0.10, 0.1, 2.0, 2.28},
                   {-4.5, 0.40, 0.15, 0.24, 0.1, 2.0, 2.28},
                   {-6.0, 0.38, 0.19, 0.26, 0.1, 2.0, 2.28},
                   {-7.8, 0.33, 0.15, 0.20, 0.1, 2.0, 2.28},
                   {-8.9, 0.25, 0.03, 0.06, 0.1, 2.0, 2.28}},
                  16));
    mesh.add(cylinder(paints.red, {2.28, -8.63, 3.45}, {2.28, -8.72, 3.45}, 0.03, 8));
    return mesh;
}

}  // namespace

Mesh fixedSurfaces(const Paints& paints) {
    Mesh mesh;
    mesh.addPair(aerofoil(paints.skin, onWing(-0.12, WING_FOLD), {NOSE_FLAP, TRAILING_FLAP}));
    mesh.addPair(aerofoil(paints.skin, onWing(-0.12, 0.06 - GAP), {0.0, NOSE_FLAP}));
    mesh.addPair(aerofoil(paints.skin, onWing(-0.12, 0.0), {TRAILING_FLAP, 1.0}));
    mesh.addPair(pylon(paints, 0.20, 0.16, 2.1));
    return mesh.addPair(fin(paints));
}

std::vector<Part> surfaceParts(const Paints& paints) {
    std::vector<Part> parts;
    for (const int side : {-1, 1}) {
        parts.push_back(canard(paints, side));
        parts.push_back(leadingFlap(paints, side));
        parts.push_back(trailingFlap(paints, "flaperon", side, 0.0, WING_FOLD));
        parts.push_back(foldingWing(paints, side));
        parts.push_back(stabilator(paints, side));
        parts.push_back(rudder(paints, side));
    }
    return parts;
}

}  // namespace jet
