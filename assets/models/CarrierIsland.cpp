// The carrier's island: stacked decks, two bridges, the radar tower, the funnel.
#include "geometry/Prism.h"
#include "models/CarrierShape.h"

namespace carrier {
namespace {

using Cuts = std::array<double, 4>;

/// A house with walls, a roof with a small overhang, and a railing around the roof if `railed`.
struct House {
    double x0, y0, x1, y1;
    Cuts cuts;
    double z0, z1, draw_in;
    bool railed;
};
// From bottom to top; the tower and the funnel are on the second.
const House HOUSES[] = {{23.5, -48.0, 34.5, 6.0, {1.4, 1.4, 2.4, 2.6}, 19.9, 26.2, 0.25, true},
                        {24.3, -44.6, 34.3, 4.4, {0.8, 0.8, 2.2, 2.4}, 26.2, 29.6, 0.2, true},
                        {24.4, -19.5, 33.8, -9.5, {1.0, 1.0, 0.0, 0.0}, 29.6, 35.5, 0.25, false},
                        {25.4, -24.0, 33.0, -19.0, {0.6, 0.6, 0.0, 0.0}, 29.6, 33.4, 0.15, true},
                        {24.3, -17.5, 33.7, -1.0, {3.1, 3.1, 3.1, 3.1}, 35.5, 42.0, 0.85, true},
                        {26.4, -13.0, 31.6, -5.0, {1.4, 1.4, 1.4, 1.4}, 42.0, 44.6, 0.3, true},
                        {25.0, -37.0, 33.4, -23.0, {2.2, 2.2, 2.2, 2.2}, 29.6, 39.6, 0.9, false},
                        {27.0, -44.4, 32.4, -38.8, {1.0, 1.0, 1.0, 1.0}, 32.5, 36.2, 0.5, true}};

/// A bridge: sill, windows that lean outward, eaves.
struct Bridge {
    double x0, y0, x1, y1;
    Cuts cuts;
    double z0, sill, head, top;
};
const Bridge BRIDGES[] = {{22.5, -11.5, 34.9, 4.9, {0.8, 0.8, 3.2, 3.2}, 29.4, 30.75, 32.0, 32.5},
                          {23.4, -10.5, 34.2, 3.2, {0.6, 0.6, 2.8, 2.8}, 32.5, 33.85, 35.0, 35.5},
                          {22.3, -45.6, 29.6, -38.4, {0.9, 0.3, 0.3, 0.9}, 29.4, 30.6, 31.9, 32.5}};

Mesh railing(const Plan& plan, double z) {
    std::vector<dvec3> path = atHeight(plan, z);
    path.push_back(path.front());
    return fence(paints().rail, path, 1.1);
}

Mesh build(const House& house) {
    const Paints& p = paints();
    const Plan plan = chamfered(house.x0, house.y0, house.x1, house.y1, house.cuts);
    const Plan roof = inset(plan, house.draw_in - 0.3);
    Mesh mesh = prism({p.wall, p.floor, p.dark}, plan, house.z0, house.z1 - 0.18, house.draw_in);
    mesh.add(prism({p.grey, p.floor, p.dark}, roof, house.z1 - 0.18, house.z1));
    if (house.railed) mesh.add(railing(inset(roof, 0.08), house.z1));
    return mesh;
}

Mesh build(const Bridge& bridge) {
    constexpr double LEAN = -0.28;
    const Paints& p = paints();
    const Plan plan = chamfered(bridge.x0, bridge.y0, bridge.x1, bridge.y1, bridge.cuts);
    Mesh mesh = prism({p.wall, p.floor, p.dark}, plan, bridge.z0, bridge.sill);
    mesh.add(prism(p.grey, inset(plan, -0.07), bridge.sill - 0.12, bridge.sill + 0.02));
    mesh.add(windowBand(p.glass, p.grey, {inset(plan, 0.05), bridge.sill, bridge.head, LEAN}));
    const Plan eaves = inset(plan, LEAN - 0.25);
    mesh.add(prism({p.grey, p.floor, p.dark}, eaves, bridge.head, bridge.top - 0.14, 0.1));
    mesh.add(prism({p.grey, p.floor, p.dark}, inset(eaves, 0.1), bridge.top - 0.14, bridge.top));
    return mesh.add(railing(inset(eaves, 0.5), bridge.top));
}

/// A flat aerial on a slanting wall: a slab in a frame. `out`: the wall's horizontal normal; `lean`: inward offset of
/// its top.
Mesh arrayPanel(const dvec3& middle, const dvec3& out, double wide, double high, double lean) {
    const Paints& p = paints();
    const dvec3 side(-out.y, out.x, 0.0), up = normalize(dvec3(-out.x * lean, -out.y * lean, high));
    const dvec3 front = cross(side, up);
    const auto slab = [&](const PaintRef& paint, double w, double h, double depth) {
        const auto ring = [&](double d) {
            return Ring{middle - side * w - up * h + front * d, middle + side * w - up * h + front * d,
                        middle + side * w + up * h + front * d, middle - side * w + up * h + front * d};
        };
        return loft(paint, {ring(-0.4), ring(depth)});
    };
    Mesh mesh = slab(p.grey, wide / 2.0, high / 2.0, 0.28);
    return mesh.add(slab(p.white, wide / 2.0 - 0.35, high / 2.0 - 0.35, 0.36));
}

Mesh arrays() {
    Mesh mesh;
    const double s = 0.70710678;
    const dvec3 places[] = {{25.4, -2.2, 0}, {32.6, -2.2, 0}, {25.4, -16.3, 0}, {32.6, -16.3, 0}};
    for (const dvec3& place : places) {
        const dvec3 out(place.x < 29.0 ? -s : s, place.y > -9.0 ? s : -s, 0.0);
        mesh.add(arrayPanel({place.x, place.y, 38.9}, out, 3.9, 4.6, 0.75));
    }
    return mesh;
}

/// Pipes that rise from the funnel's black top and lean aft.
Mesh funnelTop() {
    const Paints& p = paints();
    const Plan plan = chamfered(25.8, -36.2, 32.6, -23.8, {1.8, 1.8, 1.8, 1.8});
    Mesh mesh = prism({p.black, p.black, p.black}, plan, 39.5, 40.5, 0.25);
    for (const double x : {27.6, 30.8}) {
        for (const double y : {-33.4, -30.0, -26.6}) {
            const dvec3 foot(x, y, 40.2);
            mesh.add(drum(p.black, foot, foot + dvec3(0.0, -0.7, 1.7), 1.0, 0.95, 10));
            mesh.add(drum(p.steel, foot + dvec3(0.0, -0.66, 1.6), foot + dvec3(0.0, -0.72, 1.76), 1.05, 1.05, 10));
        }
    }
    return mesh;
}

/// Galleries on brackets along the island's outer side and in front of the bridges.
Mesh galleries() {
    const Paints& p = paints();
    const struct {
        double x0, y0, x1, y1, z;
    } floors[] = {{34.2, -43.0, 36.0, 1.0, 26.2}, {22.3, -36.0, 24.0, -14.0, 29.5}, {33.6, -37.0, 35.2, -12.0, 29.5}};
    Mesh mesh;
    for (const auto& f : floors) {
        mesh.add(prism({p.grey, p.floor, p.dark}, rectangle(f.x0, f.y0, f.x1, f.y1), f.z - 0.16, f.z));
        mesh.add(railing(inset(rectangle(f.x0, f.y0, f.x1, f.y1), 0.06), f.z));
        for (double y = f.y0 + 1.0; y < f.y1; y += 4.0) {
            const bool outer = f.x0 > 30.0;
            const double tip = outer ? f.x1 - 0.2 : f.x0 + 0.2, root = outer ? f.x0 : f.x1;
            mesh.add(bar(p.grey, {tip, y, f.z - 0.1}, {root, y, f.z - 1.5}, 0.14));
        }
    }
    return mesh;
}

/// A stair from `foot` to `head` with rails on both sides.
Mesh stair(const dvec3& foot, const dvec3& head) {
    const Paints& p = paints();
    const dvec3 across(0.4, 0.0, 0.0), rail(0.0, 0.0, 0.95);
    const int steps = static_cast<int>((head.z - foot.z) / 0.28);
    Mesh mesh;
    for (int i = 1; i < steps; ++i) {
        const dvec3 at = foot + (head - foot) * (static_cast<double>(i) / steps);
        const dvec3 deep(0.0, 0.13, 0.0);
        mesh.quad(p.steel, at - across - deep, at + across - deep, at + across + deep, at - across + deep);
    }
    for (const double side : {-1.0, 1.0}) {
        mesh.add(bar(p.grey, foot + across * side, head + across * side, 0.12));
        mesh.add(bar(p.grey, foot + across * side + rail, head + across * side + rail, 0.06));
        for (const double t : {0.05, 0.5, 0.95}) {
            const dvec3 at = foot + (head - foot) * t + across * side;
            mesh.add(bar(p.grey, at, at + rail, 0.06));
        }
    }
    return mesh;
}

}  // namespace

Mesh island() {
    Mesh mesh;
    for (const House& house : HOUSES) mesh.add(build(house));
    for (const Bridge& bridge : BRIDGES) mesh.add(build(bridge));
    mesh.add(arrays()).add(funnelTop()).add(galleries());
    return mesh.add(stair({22.9, -30.0, 20.0}, {22.9, -24.4, 26.2}))
        .add(stair({35.3, -12.0, 20.0}, {35.3, -6.4, 26.2}));
}

}  // namespace carrier
