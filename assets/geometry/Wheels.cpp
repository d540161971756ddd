// Tyres, rims and links.
#include "geometry/Wheels.h"

#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Loft.h"

namespace {

constexpr int SEGMENTS = 24;  // around the wheel

std::vector<Turn> tyreProfile(double radius, double half) {
    const double groove = 0.035 * radius;
    std::vector<Turn> profile{{-half * 0.80, radius * 0.60},
                              {-half * 0.97, radius * 0.68},
                              {-half, radius * 0.80},
                              {-half * 0.92, radius * 0.91},
                              {-half * 0.72, radius * 0.98}};
    for (const double at : {-0.42, 0.0, 0.42}) {
        profile.push_back({half * (at - 0.10), radius});
        profile.push_back({half * at, radius - groove});
        profile.push_back({half * (at + 0.10), radius});
    }
    for (std::size_t i = 5; i-- > 0;) profile.push_back({-profile[i].along, profile[i].radius});
    return profile;
}

}  // namespace

Mesh aircraftWheel(const WheelPaints& paints, const dvec3& middle, double radius, double width) {
    const double half = width / 2.0;
    const dmat4 axle_along_x({0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, middle);
    Mesh mesh = revolve(paints.tyre, {}, tyreProfile(radius, half), SEGMENTS);
    mesh.add(revolve(paints.rim, {},
                     {{-half * 0.80, radius * 0.60},
                      {-half * 0.88, radius * 0.57},
                      {-half * 0.62, radius * 0.50},
                      {-half * 0.66, radius * 0.24},
                      {-half * 0.98, radius * 0.20},
                      {-half * 1.00, radius * 0.08},
                      {half * 1.00, radius * 0.08},
                      {half * 0.98, radius * 0.20},
                      {half * 0.66, radius * 0.24},
                      {half * 0.62, radius * 0.50},
                      {half * 0.88, radius * 0.57},
                      {half * 0.80, radius * 0.60}},
                     SEGMENTS));
    for (int i = 0; i < 8; ++i) {
        const double a = 2.0 * jMath::PI * i / 8;
        const dvec3 hole(std::cos(a) * radius * 0.37, 0.0, std::sin(a) * radius * 0.37);
        mesh.add(
            cylinder(paints.hub, hole - dvec3(0, half * 0.67, 0), hole + dvec3(0, half * 0.67, 0), radius * 0.07, 6));
    }
    return mesh.transformed(axle_along_x);
}

Mesh torqueLinks(const PaintRef& paint, const dvec3& top, const dvec3& foot, const dvec3& reach, double width) {
    const dvec3 knee = (top + foot) * 0.5 + reach;
    const dvec3 across = normalize(cross(reach, foot - top)) * (width / 2.0);
    Mesh mesh;
    for (const dvec3& end : {top, foot}) {
        const Ring outline{end - across, end + across, knee + across * 0.6, knee - across * 0.6};
        mesh.add(plate(paint, outline, cross(across, knee - end), 0.03));
    }
    return mesh.add(cylinder(paint, knee - across, knee + across, 0.022, 8));
}
