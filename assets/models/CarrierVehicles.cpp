// Vehicles and equipment on the carrier's deck, clear of the landing strip, the runs and the lifts.
#include "engine/math/jMath.h"
#include "geometry/Prism.h"
#include "models/CarrierShape.h"
#include "plan/Layout.h"

namespace carrier {
namespace {

Mesh wheels(double half_track, double front, double back, double radius) {
    Mesh mesh;
    for (const double y : {front, back}) {
        mesh.addPair(
            drum(paints().black, {half_track - 0.3, y, radius}, {half_track + 0.02, y, radius}, radius, radius, 7));
    }
    return mesh;
}

/// A low towing tractor, nose to +Y.
Mesh tractor() {
    const Paints& p = paints();
    Mesh mesh = prism(p.yellow, chamfered(-1.0, -2.1, 1.0, 2.1, {0.15, 0.15, 0.35, 0.35}), 0.32, 0.95, 0.04);
    mesh.add(prism(p.yellow, rectangle(-0.9, 0.3, 0.9, 1.95), 0.95, 1.15, 0.12));
    mesh.add(prism(p.black, rectangle(-0.75, -1.0, 0.75, 0.1), 0.95, 1.0));
    for (const double x : {-0.55, 0.55}) {
        mesh.add(box(p.black, {x - 0.25, -0.95, 0.95}, {x + 0.25, -0.4, 1.2}));
        mesh.add(box(p.black, {x - 0.25, -1.05, 0.95}, {x + 0.25, -0.92, 1.65}));
    }
    mesh.add(box(p.steel, {-0.12, -2.45, 0.4}, {0.12, -2.1, 0.55}));
    mesh.add(drum(p.orange, {0.8, -1.7, 0.95}, {0.8, -1.7, 1.25}, 0.09, 0.09));
    for (const double x : {-0.7, 0.7}) mesh.add(box(p.white, {x - 0.14, 2.06, 0.6}, {x + 0.14, 2.12, 0.8}));
    return mesh.add(wheels(1.0, 1.35, -1.35, 0.42));
}

Mesh fireTruck() {
    const Paints& p = paints();
    Mesh mesh = prism(p.red, chamfered(-1.1, -2.6, 1.1, 2.5, {0.1, 0.1, 0.3, 0.3}), 0.4, 1.25, 0.03);
    mesh.add(prism(p.red, rectangle(-1.0, 0.7, 1.0, 2.3), 1.25, 2.1, 0.12));
    mesh.add(prism(p.pane, rectangle(-1.02, 0.8, 1.02, 2.32), 1.45, 1.95, 0.08));
    mesh.add(drum(p.white, {-0.5, -2.2, 1.5}, {-0.5, 0.3, 1.5}, 0.42, 0.42, 8, true));
    mesh.add(drum(p.white, {0.5, -2.2, 1.5}, {0.5, 0.3, 1.5}, 0.42, 0.42, 8, true));
    mesh.add(box(p.steel, {-1.12, -2.5, 0.75}, {1.12, 2.4, 0.85}));
    mesh.add(drum(p.steel, {0, 1.2, 2.1}, {0, 1.2, 2.4}, 0.2, 0.2));
    mesh.add(drum(p.steel, {0, 1.2, 2.35}, {0, 2.3, 2.6}, 0.09, 0.09, 6));
    return mesh.add(wheels(1.05, 1.6, -1.6, 0.48));
}

Mesh starterCart() {
    const Paints& p = paints();
    Mesh mesh = prism(p.yellow, rectangle(-0.8, -1.3, 0.8, 1.3), 0.35, 1.5, 0.06);
    mesh.add(box(p.black, {-0.82, -0.9, 0.7}, {0.82, 0.2, 1.25}));
    mesh.add(drum(p.steel, {0.3, 0.9, 1.5}, {0.3, 0.9, 1.9}, 0.14, 0.14));
    mesh.add(bar(p.steel, {0, 1.3, 0.5}, {0, 2.6, 0.3}, 0.09));
    return mesh.add(wheels(0.75, 0.9, -0.9, 0.3));
}

Mesh towBar() {
    const Paints& p = paints();
    Mesh mesh = bar(p.red, {-0.05, -2.6, 0.35}, {-0.05, 2.4, 0.35}, 0.12);
    mesh.add(bar(p.steel, {-0.5, 2.7, 0.35}, {0.4, 2.7, 0.35}, 0.1));
    return mesh.add(wheels(0.35, -0.4, 0.4, 0.2));
}

/// A rack of empty bomb trolleys, and boxes of chocks.
Mesh lockers() {
    const Paints& p = paints();
    Mesh mesh = box(p.grey, {-0.6, -1.8, 0.0}, {0.6, -0.2, 1.1});
    mesh.add(box(p.grey, {-0.6, 0.0, 0.0}, {0.6, 1.8, 1.3}));
    return mesh.add(box(p.red, {-0.62, 0.4, 0.3}, {0.62, 1.0, 0.9}));
}

enum Kind { TRACTOR, FIRE, STARTER, BAR, LOCKERS };

struct Parked {
    Kind kind;
    double x, y, heading;  ///< degrees counter-clockwise from the bow
};
const Parked PARKED[] = {
    {TRACTOR, 25.6, 9.4, 4},    {TRACTOR, 28.6, 9.2, -3},   {TRACTOR, 31.8, 9.6, 0},     {FIRE, 34.6, 10.2, 178},
    {STARTER, 25.4, 13.8, 90},  {BAR, 29.6, 13.4, 84},      {TRACTOR, 26.2, -51.6, 92},  {FIRE, 32.6, -50.0, 88},
    {STARTER, 34.9, -44.6, 0},  {TRACTOR, 28.6, -75.6, 20}, {TRACTOR, 31.4, -88.0, 170}, {STARTER, 29.4, -86.4, 30},
    {LOCKERS, 35.2, -28.0, 0},  {LOCKERS, 35.2, -8.0, 0},   {LOCKERS, 35.2, 2.0, 0},     {BAR, 26.0, -80.4, 12},
    {TRACTOR, 24.6, 56.0, 165}, {TRACTOR, 22.0, 62.0, 175}, {STARTER, 27.4, 46.6, 60},   {LOCKERS, 23.2, 68.0, 5}};

Mesh build(Kind kind) {
    switch (kind) {
        case TRACTOR:
            return tractor();
        case FIRE:
            return fireTruck();
        case STARTER:
            return starterCart();
        case BAR:
            return towBar();
        default:
            return lockers();
    }
}

}  // namespace

Mesh deckVehicles() {
    Mesh mesh;
    for (const Parked& v : PARKED) {
        mesh.add(build(v.kind), {dquat(dvec3(0, 0, 1), v.heading), dvec3(v.x, v.y, DECK_HEIGHT)});
    }
    return mesh;
}

}  // namespace carrier
