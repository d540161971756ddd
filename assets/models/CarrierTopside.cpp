// What stands on the carrier and hangs on its sides: island, radars, masts, sponsons, the landing lens.
#include "engine/math/jMath.h"
#include "models/CarrierShape.h"
#include "world/Layout.h"

namespace carrier {
namespace {

struct Paints {
    PaintRef grey = paint("superstructure", {0.30, 0.32, 0.34}, 0.7);
    PaintRef dark = paint("windows", {0.02, 0.025, 0.03}, 0.25);
    PaintRef panel = paint("array", {0.40, 0.42, 0.43}, 0.6);
    PaintRef white = paint("domes", {0.62, 0.63, 0.62}, 0.5);
};

/// A tier of the island with sloping walls and a band of windows near its top.
Mesh tier(const Paints& paints, const dvec3& lo, const dvec3& hi, double inset, bool windows) {
    Mesh mesh = taperedBox(paints.grey, lo, hi, inset);
    if (!windows) return mesh;
    const double from = hi.z - 1.7, to = hi.z - 0.6, in = inset * 0.5 - 0.06;
    return mesh.add(box(paints.dark, {lo.x + in, lo.y + in, from}, {hi.x - in, hi.y - in, to}));
}

Mesh mast(const Paints& paints, const dvec3& foot, double height) {
    Mesh mesh = cylinder(paints.grey, foot, foot + dvec3(0, 0, height), 0.9, 0.25, 10);
    for (const double share : {0.45, 0.65, 0.82}) {
        const dvec3 at = foot + dvec3(0, 0, height * share);
        const double reach = 4.5 * (1.2 - share);
        mesh.add(cylinder(paints.grey, at - dvec3(reach, 0, 0), at + dvec3(reach, 0, 0), 0.12, 6));
        mesh.add(cylinder(paints.grey, at - dvec3(0, reach * 0.6, 0), at + dvec3(0, reach * 0.6, 0), 0.12, 6));
        mesh.add(box(paints.white, at + dvec3(-0.5, -0.5, 0.1), at + dvec3(0.5, 0.5, 1.0)));
    }
    return mesh;
}

Part island(const Paints& paints) {
    const double left = ISLAND_LOW.x, right = ISLAND_HIGH.x, deck = DECK_HEIGHT;
    const double back = ISLAND_LOW.y, front = ISLAND_HIGH.y;
    Mesh mesh = tier(paints, {left, back, deck}, {right, front, deck + 6.0}, 0.4, false);
    mesh.add(tier(paints, {left + 0.6, back + 5.0, deck + 6.0}, {right - 0.6, front - 2.0, deck + 9.5}, 0.4, false));
    mesh.add(tier(paints, {left - 0.8, front - 17.0, deck + 9.5}, {right - 0.4, front - 2.5, deck + 13.0}, 0.3, true));
    mesh.add(tier(paints, {left - 0.4, front - 15.5, deck + 13.0}, {right - 0.8, front - 3.5, deck + 16.0}, 0.4, true));
    mesh.add(tier(paints, {left + 0.2, back + 12.0, deck + 9.5}, {right - 0.6, back + 22.0, deck + 13.5}, 0.3, true));
    mesh.add(
        taperedBox(paints.grey, {left + 1.5, front - 31.0, deck + 9.5}, {right - 1.5, front - 18.5, deck + 18.0}, 1.6));
    mesh.add(box(paints.dark, {left + 3.6, front - 28.8, deck + 17.9}, {right - 3.6, front - 20.7, deck + 18.2}));
    for (const double y : {back + 14.5, front - 6.0}) {
        mesh.add(
            taperedBox(paints.panel, {left + 2.0, y - 2.0, deck + 16.0}, {right - 2.0, y + 2.5, deck + 20.0}, 1.0));
    }
    mesh.add(mast(paints, {29.0, front - 11.5, deck + 16.0}, 20.0));
    mesh.add(mast(paints, {29.0, back + 17.0, deck + 13.5}, 9.0));
    for (const double y : {back + 8.0, front - 34.0}) mesh.add(dome(paints.white, {29.0, y, deck + 10.4}, 1.7));
    return {"LiaoNingJian_jianDao001", {29.0, -20.0, deck}, mesh};
}

Part radar(const Paints& paints) {
    const dvec3 pivot{29.0, ISLAND_LOW.y + 17.0, DECK_HEIGHT + 22.5};
    Mesh mesh = cylinder(paints.grey, pivot, pivot + dvec3(0, 0, 1.6), 0.35, 10);
    mesh.add(box(paints.panel, pivot + dvec3(-3.6, -0.25, 1.2), pivot + dvec3(3.6, 0.25, 4.6)));
    return {"LiaoNingJian_leiDa001", pivot, mesh};
}

/// Platforms below the deck's edge with mounts on them, and the aerials that stand out over the water.
Part sponsons(const Paints& paints) {
    Mesh mesh;
    const dvec3 places[] = {{-31.0, -112.0, 14.5}, {28.0, -124.0, 14.5}, {-24.0, 70.0, 15.5}, {26.5, 82.0, 15.5}};
    for (const dvec3& at : places) {
        mesh.add(taperedBox(paints.grey, at + dvec3(-4, -7, 0), at + dvec3(4, 7, 1), 0.2));
        mesh.add(cylinder(paints.white, at + dvec3(0, -2.5, 1), at + dvec3(0, -2.5, 2.8), 1.1, 0.8, 12));
        mesh.add(box(paints.panel, at + dvec3(-1.2, 2, 1), at + dvec3(1.2, 4.2, 2.6)));
    }
    for (int i = 0; i < 6; ++i) {
        const double y = -130.0 + 14.0 * i;
        const dvec3 foot{starboardEdge(y) - 0.3, y, DECK_HEIGHT - 1.0};
        mesh.add(cylinder(paints.white, foot, foot + dvec3(4.5, 0, 6.5), 0.18, 0.06, 6));
    }
    return {"LiaoNingJian_pingTai001", {0.0, 0.0, 15.0}, mesh};
}

/// The lens's stand, which unlike the lens itself is always drawn in its true size.
Part lensStand(const Paints& paints) {
    const dvec3 p = LENS_POINT;
    Mesh mesh = taperedBox(paints.grey, {p.x - 2.6, p.y - 2.0, p.z - 3.0}, {p.x + 2.6, p.y + 2.0, p.z - 0.1}, 0.3);
    return {"LiaoNingJian_jingTai001", p, mesh};
}

PaintRef lampPaint(const std::string& name, const std::array<double, 3>& color) {
    Paint lit = *paint(name, {color[0] * 0.3, color[1] * 0.3, color[2] * 0.3}, 0.4);
    lit.emission = color;
    return std::make_shared<const Paint>(lit);
}

}  // namespace

std::vector<Part> topside() {
    const Paints paints;
    return {island(paints), radar(paints), sponsons(paints), lensStand(paints)};
}

std::vector<Part> lensUnit() {
    // Small on purpose: the logic draws the unit 2.5 times its size close by, and larger with distance.
    constexpr double LOWEST = 0.10, STEP = 0.11, HALF = 0.045;
    const PaintRef frame = paint("lens_frame", {0.06, 0.065, 0.07}, 0.7);
    const PaintRef amber = lampPaint("lens_amber", {1.0, 0.62, 0.08}), red = lampPaint("lens_red", {1.0, 0.06, 0.03});
    const PaintRef green = lampPaint("lens_green", {0.05, 1.0, 0.25});
    Mesh housing = box(frame, {-0.12, 0.0, 0.02}, {0.12, 0.22, 0.66});
    housing.add(box(frame, {-0.85, 0.05, 0.29}, {0.85, 0.15, 0.35}));
    std::vector<Part> parts{{"lens_housing", {}, housing}};
    for (int i = 1; i <= 5; ++i) {
        const double z = LOWEST + STEP * (5 - i);
        const dvec3 middle{0.0, -0.01, z + HALF};
        parts.push_back({"deng0" + std::to_string(i), middle,
                         box(i == 5 ? red : amber, {-0.09, -0.03, z}, {0.09, 0.01, z + 2.0 * HALF})});
    }
    Mesh datum;
    for (int i = 0; i < 4; ++i) {
        const double x = 0.24 + 0.18 * i;
        datum.addPair(box(green, {x - 0.04, 0.02, 0.28}, {x + 0.04, 0.06, 0.36}));
    }
    parts.push_back({"green_light", {0.0, 0.03, 0.32}, datum});
    return parts;
}

}  // namespace carrier
