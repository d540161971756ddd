// The aerobatic aircraft's wings and tail.
#include <algorithm>

#include "models/ExtraShape.h"

namespace extra {
namespace {

constexpr double GAP = 0.004;  // fraction of the span

std::vector<Rib> onWing(double from, double to) {
    return ribsBetween(WING_ROOT, WING_TIP, from, to);
}
std::vector<Rib> onTail(double from, double to) {
    return ribsBetween(TAIL_ROOT, TAIL_TIP, from, to);
}
dvec3 middleOf(const std::vector<Rib>& ribs, double fraction) {
    return (chordPoint(ribs.front(), fraction) + chordPoint(ribs.back(), fraction)) * 0.5;
}

Part aileron(const Paints& paints, int side) {
    const std::vector<Rib> ribs = onWing(AILERON_FOOT + GAP, 1.0 - GAP);
    Mesh mesh = aerofoil(paints.skin, ribs, {AILERON, 1.0, true, false}, 8);
    // The spade below the aileron; it reduces the control force.
    const Rib rib = between(WING_ROOT, WING_TIP, 0.45);
    const dvec3 root = chordPoint(rib, AILERON) - dvec3(0, 0.06, 0.02), pad = root + dvec3(0.0, 0.20, -0.26);
    mesh.add(tube(paints.steel, {root, root + dvec3(0, 0.02, -0.14), pad}, 0.014, 8));
    mesh.add(plate(paints.skin,
                   {pad + dvec3(-0.14, -0.08, 0), pad + dvec3(0.14, -0.08, 0), pad + dvec3(0.14, 0.08, 0),
                    pad + dvec3(-0.14, 0.08, 0)},
                   {0, 0, 1}, 0.012));
    return {withSide("aileron", side), onSide(middleOf(ribs, AILERON), side), onSide(mesh, side)};
}

/// The rounded tip, and outside it the sighting frame with which the pilot judges angles to the horizon.
Part wingTip(const Paints& paints, int side) {
    Mesh mesh = roundTip(paints.skin, WING_TIP, {1, 0, 0}, {0.0, AILERON}, 12);
    const double x = 3.735;
    const dvec3 front{x, 0.36, -0.05}, back{x, -0.42, -0.05}, top{x, -0.05, 0.50}, foot{x, -0.05, -0.55};
    for (const auto& [a, b] :
         {std::pair(front, top), {top, back}, {back, foot}, {foot, front}, {top, foot}, {front, back}}) {
        mesh.add(tube(paints.white, {a, b}, 0.009, 6));
    }
    return {withSide("wing_tip", side), onSide(WING_TIP.leading_edge, side), onSide(mesh, side)};
}

Part elevator(const Paints& paints, int side) {
    constexpr double TAB = 0.86, TAB_FROM = 0.14, TAB_TO = 0.52;
    const std::vector<Rib> ribs = onTail(0.05, ELEVATOR_HORN - GAP);
    Mesh mesh = aerofoil(paints.skin, onTail(ELEVATOR_HORN, 1.0));
    mesh.add(roundTip(paints.skin, TAIL_TIP, {1, 0, 0}));
    Part part{withSide("elevator", side), onSide(middleOf(ribs, ELEVATOR), side)};
    if (side < 0) {
        mesh.add(aerofoil(paints.skin, ribs, {ELEVATOR, 1.0, true, false}, 6));
    } else {
        mesh.add(aerofoil(paints.skin, ribs, {ELEVATOR, TAB, true, false}, 5));
        mesh.add(aerofoil(paints.skin, onTail(0.05, TAB_FROM), {TAB, 1.0}, 3));
        mesh.add(aerofoil(paints.skin, onTail(TAB_TO, ELEVATOR_HORN - GAP), {TAB, 1.0}, 3));
        const std::vector<Rib> tab = onTail(TAB_FROM + GAP, TAB_TO - GAP);
        part.children.push_back(
            {"elevator_trim", middleOf(tab, TAB), aerofoil(paints.skin, tab, {TAB, 1.0, true, false}, 3)});
    }
    part.mesh = onSide(mesh, side);
    return part;
}

Part rudder(const Paints& paints) {
    const dvec3 sideways{1, 0, 0};
    Mesh mesh = aerofoil(paints.skin,
                         {{{0.0, -3.37, -0.10}, 0.42, 0.20, sideways},
                          {{0.0, -3.37, 0.12}, 0.54, 0.15, sideways},
                          {{0.0, -3.37, 0.60}, 0.52, 0.12, sideways},
                          {{0.0, -3.37, 0.99}, 0.46, 0.10, sideways}},
                         {}, 12);
    const std::vector<Rib> horn{{{0.0, -3.16, 0.995}, 0.67, 0.085, sideways},
                                {{0.0, -3.20, 1.10}, 0.61, 0.08, sideways}};
    mesh.add(aerofoil(paints.skin, horn, {}, 12)).add(roundTip(paints.skin, horn.back(), {0, 0, 1}, {}, 12));
    return {"rudder", RUDDER_HINGE, mesh};
}

}  // namespace

Mesh fixedSurfaces(const Paints& paints) {
    const dvec3 sideways{1, 0, 0};
    Mesh right = aerofoil(paints.skin, onWing(-0.005, 1.0), {0.0, AILERON}, 14);
    right.add(aerofoil(paints.skin, onWing(-0.005, AILERON_FOOT), {AILERON, 1.0}, 5));
    right.add(aerofoil(paints.skin, onTail(0.0, ELEVATOR_HORN - GAP), {0.0, ELEVATOR}, 9));
    Mesh mesh;
    mesh.addPair(right);
    return mesh.add(aerofoil(paints.skin,
                             {{{0.0, -2.50, 0.22}, 1.48, 0.075, sideways}, {{0.0, -3.15, 0.985}, 0.40, 0.12, sideways}},
                             {0.0, 0.62}, 12));
}

std::vector<Part> surfaceParts(const Paints& paints) {
    std::vector<Part> parts{rudder(paints)};
    for (const int side : {-1, 1}) {
        parts.push_back(aileron(paints, side));
        parts.push_back(wingTip(paints, side));
        parts.push_back(elevator(paints, side));
    }
    return parts;
}

}  // namespace extra
