// The aerobatic aircraft's spring legs, wheels with fairings, and tail wheel.
#include <algorithm>

#include "geometry/Wheels.h"
#include "models/ExtraShape.h"

namespace extra {
namespace {

const dvec3 MAIN = wheelMiddle(MAIN_PLACE.x, MAIN_PLACE.y, MAIN_WHEEL_RADIUS);
const dvec3 TAIL = wheelMiddle(TAIL_PLACE.x, TAIL_PLACE.y, TAIL_WHEEL_RADIUS);

/// A flat spring through points, `chord` wide along Y.
Mesh leaf(const PaintRef& paint, const Ring& line, double chord_from, double chord_to, double thickness) {
    std::vector<Ring> rings;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const dvec3 along = normalize(line[std::min(i + 1, line.size() - 1)] - line[i == 0 ? 0 : i - 1]);
        const dvec3 rise = normalize(cross(along, dvec3(0, 1, 0)));
        const double t = static_cast<double>(i) / static_cast<double>(line.size() - 1);
        Ring ring;
        for (const dvec3& p : outline(
                 {0.0, 0.0, 0.5 * (chord_from + (chord_to - chord_from) * t), thickness / 2, thickness / 2, 2.0}, 16)) {
            ring.push_back(line[i] + dvec3(0, p.x, 0) + rise * p.z);
        }
        rings.push_back(ring);
    }
    return loft(paint, rings);
}

/// A drop-shaped fairing, open at the bottom where the wheel is visible.
Part fairing(const Paints& paints, int side) {
    const double x = MAIN.x, z = MAIN.z;
    const auto at = [&](double y, double up, double half, double rise, double fall) {
        return Section{MAIN.y + y, z + up, half, rise, fall, 2.3, x};
    };
    Mesh mesh = body(
        paints.trim,
        {at(0.40, 0.00, 0.010, 0.010, 0.010), at(0.36, 0.00, 0.055, 0.055, 0.060), at(0.26, 0.01, 0.095, 0.115, 0.110),
         at(0.10, 0.02, 0.118, 0.175, 0.140), at(-0.06, 0.03, 0.120, 0.185, 0.140),
         at(-0.24, 0.04, 0.100, 0.150, 0.115), at(-0.42, 0.06, 0.060, 0.095, 0.080),
         at(-0.58, 0.08, 0.022, 0.045, 0.040), at(-0.66, 0.09, 0.005, 0.010, 0.010)},
        28);
    return {withSide("wheel_fairing", side), onSide(MAIN, side), onSide(mesh, side)};
}

Part mainWheel(const Paints& paints, int side) {
    const Mesh mesh = aircraftWheel({paints.rubber, paints.rim, paints.dark}, MAIN, MAIN_WHEEL_RADIUS, 0.14);
    return {withSide("main_wheel", side), onSide(MAIN, side), onSide(mesh, side)};
}

Part tailWheel(const Paints& paints) {
    const dvec3 pivot{0.0, TAIL.y + 0.07, TAIL.z + 0.16};
    Mesh mesh = aircraftWheel({paints.rubber, paints.rim, paints.dark}, TAIL, TAIL_WHEEL_RADIUS, 0.055);
    mesh.addPair(tube(paints.steel,
                      {TAIL + dvec3(0.04, 0, 0), TAIL + dvec3(0.042, 0.04, 0.08), pivot + dvec3(0.02, 0, -0.03)}, 0.010,
                      8));
    mesh.add(cylinder(paints.steel, pivot - dvec3(0, 0, 0.05), pivot + dvec3(0, 0, 0.04), 0.024, 12));
    mesh.addPair(tube(paints.steel, {pivot + dvec3(0.02, 0.02, 0.02), pivot + dvec3(0.075, 0.02, 0.02)}, 0.008, 6));
    return {"tail_wheel_steer", pivot, mesh};
}

}  // namespace

Mesh legs(const Paints& paints) {
    const Ring line{{0.20, 0.98, -0.44},
                    {0.38, 0.97, -0.56},
                    {0.62, 0.94, -0.80},
                    {0.80, 0.90, -1.04},
                    {MAIN.x - 0.05, MAIN.y, MAIN.z + 0.06},
                    {MAIN.x, MAIN.y, MAIN.z}};
    Mesh mesh;
    mesh.addPair(leaf(paints.trim, line, 0.20, 0.13, 0.032));
    return mesh.add(tube(paints.steel,
                         {{0, -3.02, -0.10}, {0, -3.20, -0.17}, {0, -3.38, -0.28}, {0.0, TAIL.y + 0.07, TAIL.z + 0.19}},
                         0.022, 10));
}

std::vector<Part> gearParts(const Paints& paints) {
    std::vector<Part> parts{tailWheel(paints)};
    for (const int side : {-1, 1}) {
        parts.push_back(mainWheel(paints, side));
        parts.push_back(fairing(paints, side));
    }
    return parts;
}

}  // namespace extra
