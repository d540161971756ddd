// The jet's wings, tails and canards, fixed pieces and moving ones.
#include "models/JetShape.h"

namespace jet {
namespace {

constexpr double GAP = 0.008;  // of the span, between a moving surface and its neighbours

const Rib FOLD = between(WING_ROOT, WING_TIP, WING_FOLD);

Rib onWing(double t) {
    return between(WING_ROOT, WING_TIP, t);
}

/// The outer wing's box, its fixed leading edge and the rail at its tip.
Mesh outerWing(const Paints& paints) {
    Mesh mesh = wing(paints.skin, FOLD, WING_TIP, 0.0, TRAILING_FLAP);
    mesh.add(wing(paints.skin, onWing(0.93), WING_TIP, TRAILING_FLAP, 1.0));
    return mesh.add(body(paints.skin,
                         {{-2.3, 0.30, 0.03, 0.04, 0.04, 2.0, 7.27},
                          {-2.7, 0.30, 0.08, 0.08, 0.08, 2.0, 7.27},
                          {-4.8, 0.30, 0.08, 0.08, 0.08, 2.0, 7.27},
                          {-5.2, 0.30, 0.04, 0.04, 0.04, 2.0, 7.27}},
                         12));
}

Part flap(const Paints& paints, const std::string& name, int side, double from, double to, double chord_from,
          double chord_to) {
    const Rib a = onWing(from + GAP), b = onWing(to - GAP);
    const dvec3 hinge = (chordPoint(a, chord_from > 0.5 ? chord_from : chord_to) +
                         chordPoint(b, chord_from > 0.5 ? chord_from : chord_to)) *
                        0.5;
    return {withSide(name, side), onSide(hinge, side), onSide(wing(paints.skin, a, b, chord_from, chord_to), side)};
}

Part foldingWing(const Paints& paints, int side) {
    const dvec3 hinge = chordPoint(FOLD, 0.45) + dvec3(0.0, 0.0, 0.5 * FOLD.chord * FOLD.thickness);
    Part part{withSide("wing_fold", side), onSide(hinge, side), onSide(outerWing(paints), side)};
    part.children.push_back(flap(paints, "aileron", side, WING_FOLD, 0.93, TRAILING_FLAP, 1.0));
    return part;
}

Part stabilator(const Paints& paints, int side) {
    const dvec3 pivot = chordPoint(STABILATOR_ROOT, 0.55);
    return {withSide("stabilator", side), onSide(pivot, side),
            onSide(wing(paints.skin, STABILATOR_ROOT, STABILATOR_TIP), side)};
}

Part canard(const Paints& paints, int side) {
    const dvec3 pivot = chordPoint(CANARD_ROOT, 0.45);
    return {withSide("canard", side), onSide(pivot, side), onSide(wing(paints.skin, CANARD_ROOT, CANARD_TIP), side)};
}

Part rudder(const Paints& paints, int side) {
    const Rib low = between(FIN_ROOT, FIN_TIP, 0.12), high = between(FIN_ROOT, FIN_TIP, 0.88);
    const dvec3 hinge = (chordPoint(low, RUDDER) + chordPoint(high, RUDDER)) * 0.5;
    return {withSide("rudder", side), onSide(hinge, side), onSide(wing(paints.skin, low, high, RUDDER, 1.0), side)};
}

Mesh fin(const Paints& paints) {
    Mesh mesh = wing(paints.skin, FIN_ROOT, FIN_TIP, 0.0, RUDDER);
    mesh.add(wing(paints.skin, FIN_ROOT, between(FIN_ROOT, FIN_TIP, 0.12 - GAP), RUDDER, 1.0));
    return mesh.add(wing(paints.dark, between(FIN_ROOT, FIN_TIP, 0.88 + GAP), FIN_TIP, RUDDER, 1.0));
}

}  // namespace

Mesh fixedSurfaces(const Paints& paints) {
    Rib buried = onWing(-0.12);
    Mesh mesh;
    mesh.addPair(wing(paints.skin, buried, FOLD, NOSE_FLAP, TRAILING_FLAP));
    mesh.addPair(wing(paints.skin, buried, WING_ROOT, 0.0, NOSE_FLAP));
    mesh.addPair(wing(paints.skin, buried, WING_ROOT, TRAILING_FLAP, 1.0));
    return mesh.addPair(fin(paints));
}

std::vector<Part> surfaceParts(const Paints& paints) {
    std::vector<Part> parts;
    for (const int side : {-1, 1}) {
        parts.push_back(canard(paints, side));
        parts.push_back(flap(paints, "leading_flap", side, 0.0, WING_FOLD, 0.0, NOSE_FLAP));
        parts.push_back(flap(paints, "flaperon", side, 0.0, WING_FOLD, TRAILING_FLAP, 1.0));
        parts.push_back(foldingWing(paints, side));
        parts.push_back(stabilator(paints, side));
        parts.push_back(rudder(paints, side));
    }
    return parts;
}

}  // namespace jet
