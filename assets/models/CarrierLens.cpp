// The landing lens with its lamps, and its stand.
#include "geometry/Prism.h"
#include "models/CarrierShape.h"
#include "world/Layout.h"

namespace carrier {
namespace {

PaintRef lampPaint(const std::string& name, const std::array<double, 3>& color) {
    Paint lit = *paint(name, {color[0] * 0.3, color[1] * 0.3, color[2] * 0.3}, 0.4);
    lit.emission = color;
    return std::make_shared<const Paint>(lit);
}

/// A round lamp that faces aft.
Mesh lamp(const PaintRef& paint, double x, double z, double radius) {
    return cylinder(paint, {x, 0.03, z}, {x, -0.01, z}, radius * 0.9, radius, 16);
}

}  // namespace

std::vector<Part> lensUnit() {
    // Small on purpose: the logic draws the unit 2.5 times its size close by, and larger with distance.
    constexpr double LOWEST = 0.10, STEP = 0.11, HALF = 0.045;
    const PaintRef frame = paint("lens_frame", {0.05, 0.055, 0.06}, 0.7),
                   shell = paint("lens_shell", {0.3, 0.32, 0.34});
    const PaintRef amber = lampPaint("lens_amber", {1.0, 0.62, 0.08}), red = lampPaint("lens_red", {1.0, 0.06, 0.03});
    const PaintRef green = lampPaint("lens_green", {0.05, 1.0, 0.25});
    Mesh housing = prism(shell, chamfered(-0.13, 0.0, 0.13, 0.24, {0, 0, 0.06, 0.06}), 0.02, 0.68);
    housing.add(box(frame, {-0.105, -0.012, 0.06}, {0.105, 0.01, 0.65}));
    for (const double x : {-0.13, 0.115}) housing.add(box(shell, {x, -0.07, 0.02}, {x + 0.015, 0.0, 0.68}));
    for (int i = 0; i <= 5; ++i) {
        housing.add(box(shell, {-0.13, -0.07, 0.08 + STEP * i}, {0.13, 0.0, 0.088 + STEP * i}));
    }
    housing.addPair(box(shell, {0.13, 0.05, 0.28}, {0.88, 0.14, 0.36}));
    housing.addPair(bar(shell, {0.82, 0.09, 0.0}, {0.82, 0.09, 0.28}, 0.03));
    housing.addPair(bar(shell, {0.45, 0.09, 0.0}, {0.45, 0.09, 0.28}, 0.03));
    housing.add(box(shell, {-0.95, 0.02, 0.0}, {0.95, 0.2, 0.025}));
    for (const double z : {0.16, 0.5}) {  // wave-off lamps beside the lens, unlit
        housing.addPair(lamp(frame, 0.21, z, 0.04).moved({0.0, 0.03, 0.0}));
        housing.addPair(box(shell, {0.16, 0.06, z - 0.05}, {0.26, 0.12, z + 0.05}));
    }
    std::vector<Part> parts{{"lens_housing", {}, housing}};
    for (int i = 1; i <= 5; ++i) {
        const double z = LOWEST + STEP * (5 - i);
        const dvec3 middle{0.0, -0.01, z + HALF};
        parts.push_back({"deng0" + std::to_string(i), middle,
                         box(i == 5 ? red : amber, {-0.09, -0.03, z}, {0.09, 0.0, z + 2.0 * HALF})});
    }
    Mesh datum;
    for (int i = 0; i < 4; ++i) datum.addPair(lamp(green, 0.24 + 0.18 * i + 0.05, 0.32, 0.042).moved({0.0, 0.03, 0.0}));
    parts.push_back({"green_light", {0.0, 0.03, 0.32}, datum});
    return parts;
}

Mesh lensStand() {
    const Paints& p = paints();
    const dvec3 at = LENS_POINT;
    const Plan plan = chamfered(at.x - 3.0, at.y - 2.4, at.x + 3.2, at.y + 2.4, {0.8, 0, 0, 0.8});
    Mesh mesh = prism({p.grey, p.floor, p.dark}, inset(plan, 1.2), at.z - 4.2, at.z - 1.1, -1.0);
    mesh.add(prism({p.grey, p.floor, p.dark}, plan, at.z - 1.1, at.z - 0.1));
    std::vector<dvec3> rim = atHeight(inset(plan, 0.08), at.z - 0.1);
    return mesh.add(fence(p.rail, {rim[4], rim[5], rim[0], rim[1]}, 1.1));
}

}  // namespace carrier
