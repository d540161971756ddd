// Parts on top of the carrier's island: masts, radars, domes, aerials, small boxes.
#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Prism.h"
#include "models/CarrierShape.h"

namespace carrier {
namespace {

dvec3 UP(double z) {
    return {0.0, 0.0, z};
}

/// A yard across the mast with braces and aerials.
struct Yard {
    double z, reach;
};

Mesh yard(const dvec3& mast, const Yard& y) {
    const Paints& p = paints();
    const dvec3 middle = mast + UP(y.z);
    Mesh half = bar(p.grey, middle, middle + dvec3(y.reach, 0, 0.35), 0.2);
    half.add(bar(p.grey, middle - UP(1.2), middle + dvec3(y.reach * 0.6, 0, 0.2), 0.1));
    for (const double t : {0.45, 0.75, 1.0}) {
        const dvec3 at = middle + dvec3(y.reach * t, 0, 0.35 * t);
        half.add(drum(p.white, at - UP(0.4), at + UP(0.9), 0.1, 0.06, 4));
    }
    const dmat4 to_middle = dmat4::translation(mast * -1.0), back = dmat4::translation(mast);
    return Mesh{}.addPair(half.transformed(to_middle)).transformed(back);
}

Mesh platform(const dvec3& middle, double half, double railing) {
    const Paints& p = paints();
    const Plan plan = chamfered(middle.x - half, middle.y - half, middle.x + half, middle.y + half,
                                {half * 0.5, half * 0.5, half * 0.5, half * 0.5});
    Mesh mesh =
        prism({p.grey, p.floor, p.dark}, inset(plan, half * 0.45), middle.z - 0.7, middle.z - 0.15, -half * 0.4);
    mesh.add(prism({p.grey, p.floor, p.dark}, plan, middle.z - 0.15, middle.z));
    std::vector<dvec3> path = atHeight(inset(plan, 0.06), middle.z);
    path.push_back(path.front());
    return railing > 0.0 ? mesh.add(fence(p.rail, path, railing)) : mesh;
}

Mesh mainMast() {
    const Paints& p = paints();
    const dvec3 foot{29.0, -10.6, 44.4};
    Mesh mesh = drum(p.grey, foot, foot + UP(7.6), 1.0, 0.55);
    mesh.add(drum(p.grey, foot + UP(7.6), foot + UP(13.4), 0.42, 0.16));
    mesh.add(platform(foot + UP(3.2), 2.1, 1.1)).add(platform(foot + UP(7.6), 1.5, 1.1));
    for (const Yard& y : {Yard{5.4, 5.2}, Yard{9.6, 3.4}, Yard{11.6, 1.8}}) mesh.add(yard(foot, y));
    for (const dvec3& at : {dvec3(1.5, 0.9, 3.2), dvec3(-1.5, 0.9, 3.2), dvec3(0.9, 0.9, 7.6), dvec3(-0.9, 0.9, 7.6)}) {
        mesh.add(drum(p.white, foot + at, foot + at + UP(0.9), 0.4, 0.4));
        mesh.add(ball(p.white, foot + at + UP(0.9), 0.4));
    }
    mesh.add(box(p.white, foot + dvec3(-1.7, 1.7, 4.2), foot + dvec3(1.7, 2.0, 4.7)));
    mesh.add(drum(p.grey, foot + dvec3(0, 1.8, 3.2), foot + dvec3(0, 1.8, 4.3), 0.25, 0.25));
    mesh.add(ball(p.white, foot + UP(13.6), 0.55));
    return mesh.add(drum(p.grey, foot + UP(14.0), foot + UP(17.0), 0.05, 0.02, 5));
}

/// A flat aerial of bars, inclined backward on its pedestal.
Mesh searchRadar(const dvec3& foot, double half_width, double height, double lean, double heading) {
    const Paints& p = paints();
    Mesh mesh = box(p.white, {-half_width, -0.12, 0.0}, {half_width, 0.12, height});
    for (double z = 0.25; z < height; z += 0.5) {
        mesh.quad(p.steel, {half_width - 0.1, 0.14, z}, {-half_width + 0.1, 0.14, z},
                  {-half_width + 0.1, 0.14, z + 0.24}, {half_width - 0.1, 0.14, z + 0.24});
    }
    for (const double x : {-half_width * 0.5, half_width * 0.5}) {
        mesh.add(box(p.grey, {x - 0.12, -0.9, 0.3}, {x + 0.12, -0.12, height * 0.7}));
    }
    mesh.add(box(p.grey, {-half_width * 0.6, -1.1, 0.3}, {half_width * 0.6, -0.5, height * 0.35}));
    const dmat4 leaning{dquat(dvec3(1, 0, 0), -lean), {}}, turned{dquat(dvec3(0, 0, 1), heading), {}};
    Mesh placed = mesh.transformed(leaning).moved(UP(1.5)).transformed(turned).moved(foot);
    placed.add(drum(p.grey, foot, foot + UP(1.5), 0.6, 0.4));
    return placed.add(drum(p.steel, foot + UP(1.2), foot + UP(1.7), 0.75, 0.75, 9));
}

Mesh aftMast() {
    const Paints& p = paints();
    const dvec3 foot{29.6, -41.6, 36.0};
    Mesh mesh = drum(p.grey, foot, foot + UP(3.0), 1.3, 0.9);
    mesh.add(platform(foot + UP(3.0), 1.9, 1.0));
    const dvec3 pole{31.2, -39.4, 36.2};
    mesh.add(drum(p.grey, pole, pole + UP(9.0), 0.25, 0.1, 6)).add(yard(pole, {6.0, 1.8}));
    return mesh.add(searchRadar(foot + UP(3.0), 2.9, 3.4, 12.0, 28.0));
}

/// A dome on a drum: satellite aerials and fire control.
struct Dome {
    dvec3 foot;
    double radius, drum;
};
const Dome DOMES[] = {
    {{26.0, -46.4, 26.2}, 0.9, 0.9}, {{32.8, -46.2, 26.2}, 1.25, 1.1}, {{32.3, -21.4, 33.4}, 1.2, 0.8},
    {{26.3, -21.4, 33.4}, 0.9, 0.8}, {{25.6, 2.6, 35.5}, 0.55, 0.6},   {{32.4, 2.0, 35.5}, 0.75, 0.6},
    {{33.2, 5.0, 26.2}, 0.8, 0.9},   {{24.9, -15.8, 42.0}, 0.8, 0.9},  {{33.1, -15.8, 42.0}, 0.8, 0.9},
    {{25.6, -2.4, 42.0}, 0.7, 0.8},  {{32.4, -2.4, 42.0}, 0.7, 0.8},   {{23.6, -44.0, 32.5}, 0.5, 0.7},
    {{28.0, -43.2, 36.2}, 0.45, 0.5}};

Mesh domes() {
    const Paints& p = paints();
    Mesh mesh;
    for (const Dome& d : DOMES) {
        mesh.add(drum(p.grey, d.foot, d.foot + UP(d.drum), d.radius * 0.75, d.radius * 0.9, 7));
        mesh.add(ball(p.white, d.foot + UP(d.drum + 0.35 * d.radius), d.radius));
    }
    return mesh;
}

/// Lockers, fans and warning receivers, given by centre and half size.
struct Case {
    dvec3 foot, half;
};
const Case CASES[] = {{{24.6, -3.0, 29.6}, {0.5, 1.2, 0.9}},  {{33.7, -26.0, 29.6}, {0.3, 1.6, 0.7}},
                      {{25.4, -41.0, 26.2}, {0.5, 1.4, 0.8}}, {{29.0, -46.6, 26.2}, {1.2, 0.6, 0.7}},
                      {{24.2, -15.0, 29.5}, {0.5, 0.9, 0.8}}, {{28.2, -21.6, 33.4}, {0.7, 1.0, 0.6}},
                      {{29.0, -15.2, 42.0}, {1.4, 0.7, 0.6}}, {{26.9, 0.2, 35.5}, {0.6, 0.6, 0.5}},
                      {{31.0, 0.4, 35.5}, {0.9, 0.7, 0.4}},   {{29.0, 2.2, 35.5}, {0.4, 0.4, 0.7}},
                      {{35.6, -20.0, 20.0}, {0.4, 1.2, 1.0}}, {{35.6, -34.0, 20.0}, {0.4, 1.8, 0.9}},
                      {{28.4, 4.2, 32.5}, {0.5, 0.3, 0.6}},   {{31.6, -42.6, 32.5}, {0.6, 0.6, 0.6}}};

Mesh cases() {
    const Paints& p = paints();
    Mesh mesh;
    for (const Case& c : CASES) {
        const Plan plan = rectangle(c.foot.x - c.half.x, c.foot.y - c.half.y, c.foot.x + c.half.x, c.foot.y + c.half.y);
        mesh.add(prism(p.grey, plan, c.foot.z, c.foot.z + 1.4 * c.half.z, 0.08));
    }
    for (const dvec3& at : {dvec3(23.3, -8.0, 32.5), dvec3(34.3, -8.0, 32.5), dvec3(24.6, -13.6, 38.0)}) {
        mesh.add(drum(p.white, at, at + UP(0.8), 0.28, 0.28));  // jammer drums
    }
    return mesh;
}

Mesh whips() {
    const dvec3 feet[] = {{24.0, -27.0, 29.6}, {34.0, -30.0, 29.6}, {24.0, -37.4, 29.6}, {33.9, 3.0, 32.5},
                          {26.6, -37.2, 33.0}, {33.0, -37.2, 33.0}, {23.8, 3.6, 35.5},   {34.2, -46.6, 26.2}};
    Mesh mesh;
    for (const dvec3& foot : feet) {
        mesh.add(drum(paints().grey, foot, foot + UP(7.5), 0.11, 0.02, 3));
    }
    return mesh;
}

/// Floodlights below the eaves on the deck side.
Mesh floodlights() {
    Mesh mesh;
    for (double y = -44.0; y < 4.0; y += 6.0) {
        mesh.add(box(paints().steel, {23.0, y - 0.25, 25.3}, {23.5, y + 0.25, 25.7}));
    }
    return mesh;
}

}  // namespace

Mesh islandMasts() {
    Mesh mesh = mainMast();
    mesh.add(aftMast()).add(domes()).add(cases()).add(whips()).add(floodlights());
    return mesh.add(searchRadar({29.0, -4.2, 44.5}, 2.6, 3.6, 18.0, -20.0));
}

}  // namespace carrier
