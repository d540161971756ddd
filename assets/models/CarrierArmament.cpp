// Sponsons below the carrier's deck edge and the weapons on them.
#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Prism.h"
#include "models/CarrierShape.h"

namespace carrier {
namespace {

dmat4 turned(double heading, const dvec3& place) {
    return {dquat(dvec3(0, 0, 1), heading), place};
}
dmat4 tipped(double up, const dvec3& place) {
    return {dquat(dvec3(1, 0, 0), up), place};
}

/// A gun with several barrels and its radar, pointing along +Y, foot at the origin.
Mesh closeInGun() {
    const Paints& p = paints();
    Mesh mesh = drum(p.grey, {}, {0, 0, 0.9}, 1.25, 1.15, 10);
    mesh.add(prism(p.grey, chamfered(-1.1, -1.5, 1.1, 1.1, {0.3, 0.3, 0.5, 0.5}), 0.9, 2.6, 0.18));
    Mesh barrels = drum(p.steel, {0, 0.2, 0}, {0, 2.9, 0}, 0.3, 0.26);
    barrels.add(drum(p.grey, {0, -0.4, 0}, {0, 1.2, 0}, 0.52, 0.42, 9));
    mesh.add(barrels, tipped(8.0, {0, 0.6, 1.8}));
    mesh.add(drum(p.grey, {0, -0.4, 2.5}, {0, -0.4, 3.2}, 0.3, 0.3));
    mesh.add(drum(p.white, {0, -0.6, 3.6}, {0, 0.15, 3.6}, 0.55, 0.62, 9));
    return mesh.add(box(p.white, {-0.95, -0.5, 2.5}, {-0.55, 0.3, 3.1}));
}

/// A box of missiles in four rows of six, openings toward +Y.
Mesh missileBox() {
    const Paints& p = paints();
    Mesh mesh = drum(p.grey, {}, {0, 0, 1.1}, 1.0, 0.85, 9);
    for (const double x : {-1.15, 0.95}) mesh.add(box(p.grey, {x, -0.6, 1.0}, {x + 0.2, 0.6, 2.6}));
    Mesh launcher = box(p.white, {-0.92, -1.3, -0.62}, {0.92, 1.3, 0.62});
    for (int column = 0; column < 6; ++column) {
        for (int row = 0; row < 4; ++row) {
            const double x = -0.75 + 0.3 * column, z = -0.45 + 0.3 * row;
            launcher.quad(p.dark, {x - 0.11, 1.31, z - 0.11}, {x - 0.11, 1.31, z + 0.11}, {x + 0.11, 1.31, z + 0.11},
                          {x + 0.11, 1.31, z - 0.11});
        }
    }
    mesh.add(launcher, tipped(14.0, {0, 0, 2.2}));
    return mesh.add(drum(p.white, {0.0, -0.5, 2.8}, {0.0, -0.5, 3.3}, 0.25, 0.25));
}

/// Rocket tubes in two arcs, openings toward +Y.
Mesh rocketLauncher() {
    const Paints& p = paints();
    Mesh mesh = drum(p.grey, {}, {0, 0, 1.0}, 0.8, 0.6, 9);
    Mesh tubes = box(p.grey, {-0.9, -0.5, -0.3}, {0.9, 0.4, 0.3});
    for (int i = 0; i < 6; ++i) {
        for (const double z : {-0.2, 0.2}) {
            const double x = -0.85 + 0.34 * i;
            tubes.add(drum(p.grey, {x, -0.8, z}, {x, 0.95, z}, 0.16, 0.16, 6));
            const Ring mouth{
                {x - 0.1, 0.96, z - 0.1}, {x - 0.1, 0.96, z + 0.1}, {x + 0.1, 0.96, z + 0.1}, {x + 0.1, 0.96, z - 0.1}};
            tubes.quad(p.black, mouth[0], mouth[1], mouth[2], mouth[3]);
        }
    }
    return mesh.add(tubes, tipped(16.0, {0, 0, 1.5}));
}

Mesh decoys() {
    const Paints& p = paints();
    Mesh mesh = box(p.grey, {-0.9, -0.9, 0.0}, {0.9, 0.9, 0.5});
    Mesh rack = box(p.grey, {-0.8, -0.2, -0.5}, {0.8, 0.4, 0.6});
    for (int i = 0; i < 12; ++i) {
        const double x = -0.6 + 0.4 * (i % 4), z = -0.32 + 0.36 * (i / 4);
        rack.add(drum(p.dark, {x, 0.3, z}, {x, 0.6, z}, 0.14, 0.14, 6));
    }
    return mesh.add(rack, tipped(30.0, {0, 0, 1.0}));
}

enum Weapon { GUN, MISSILES, ROCKETS, DECOYS };

/// A platform outside the hull at height `floor`, and the positions of its weapons along it.
struct Sponson {
    double side, from, to, out;  ///< out: distance by which it projects beyond the deck's edge
    double floor;
    std::vector<std::pair<Weapon, double>> weapons;
};
const Sponson SPONSONS[] = {{-1, -128, -106, 4.2, 15.6, {{MISSILES, -121.0}, {GUN, -112.5}}},
                            {1, -133, -119, 4.4, 15.6, {{MISSILES, -129.5}, {ROCKETS, -123.0}}},
                            {1, -113, -101, 3.8, 15.6, {{GUN, -107.0}}},
                            {-1, 64, 80, 4.6, 15.8, {{MISSILES, 75.0}, {DECOYS, 68.0}}},
                            {1, 72, 90, 4.6, 15.8, {{MISSILES, 85.0}, {GUN, 77.5}}}};

/// The platform tapers downward into the hull.
Mesh platform(const Sponson& s) {
    const Paints& p = paints();
    const double y0 = s.from, y1 = s.to, inner = hullHalf((y0 + y1) / 2.0) - 0.5;
    const auto out = [&](double y) { return std::abs(edgeOn(s.side, y)) + s.out; };
    const auto ring = [&](double z, double shrink) {
        const double reach0 = inner + (out(y0) - inner) * shrink, reach1 = inner + (out(y1) - inner) * shrink;
        const double cut = 2.6;
        return Ring{{inner, y0, z},        {reach0 - cut, y0, z}, {reach0, y0 + cut, z},
                    {reach1, y1 - cut, z}, {reach1 - cut, y1, z}, {inner, y1, z}};
    };
    Mesh mesh = loft(p.grey, {ring(s.floor - 6.6, 0.1), ring(s.floor - 3.2, 0.97), ring(s.floor - 0.06, 1.0)});
    mesh.add(loft(p.floor, {ring(s.floor - 0.06, 0.995), ring(s.floor, 0.995)}));
    const Ring top = ring(s.floor, 0.985);
    mesh.add(fence(p.rail, {top[0], top[1], top[2], top[3], top[4], top[5]}, 1.1));
    return s.side > 0.0 ? mesh : mesh.mirrored();
}

Mesh weapon(Weapon kind) {
    switch (kind) {
        case GUN:
            return closeInGun();
        case MISSILES:
            return missileBox();
        case ROCKETS:
            return rocketLauncher();
        default:
            return decoys();
    }
}

}  // namespace

Mesh sponsons() {
    Mesh mesh;
    for (const Sponson& s : SPONSONS) mesh.add(platform(s));
    return mesh;
}

Mesh armament() {
    Mesh mesh;
    for (const Sponson& s : SPONSONS) {
        for (const auto& [kind, y] : s.weapons) {
            const double heading = s.side * (y > 0.0 ? -35.0 : -140.0);
            mesh.add(weapon(kind), turned(heading, {edgeOn(s.side, y) + s.side * (s.out - 2.1), y, s.floor}));
        }
    }
    return mesh;
}

}  // namespace carrier
