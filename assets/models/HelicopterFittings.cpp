// Parts mounted on the helicopter: cockpit equipment, landing gear on sponsons, aerials, wipers, winch, sonar, lamps.
#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Aerofoil.h"
#include "geometry/Loft.h"
#include "geometry/Prism.h"
#include "geometry/Wheels.h"
#include "models/HelicopterShape.h"

namespace heli {
namespace {

Mesh seat(double x) {
    const Paints& p = paints();
    Mesh mesh = box(p.seat, {x - 0.24, 4.55, -0.12}, {x + 0.24, 5.05, 0.02});
    Mesh back = box(p.seat, {-0.24, -0.06, 0.0}, {0.24, 0.06, 0.72});
    back.add(box(p.seat, {-0.14, -0.06, 0.74}, {0.14, 0.05, 0.96}));
    for (const double side : {-0.1, 0.06}) back.add(box(p.yellow, {side, 0.06, 0.1}, {side + 0.04, 0.07, 0.7}));
    mesh.add(back, dmat4(dquat(dvec3(1, 0, 0), 10.0), {x, 4.55, 0.0}));
    mesh.add(box(p.dark, {x - 0.2, 4.6, -0.5}, {x + 0.2, 4.95, -0.12}));
    return mesh.add(bar(p.metal, {x, 5.25, -0.45}, {x, 5.15, 0.12}, 0.035));
}

/// A pilot in helmet and flying suit.
Mesh crew(double x) {
    const Paints& p = paints();
    Mesh mesh = body(
        p.green,
        {{4.58, 0.32, 0.18, 0.32, 0.3, 2.6}, {4.72, 0.3, 0.24, 0.32, 0.3, 2.6}, {4.84, 0.28, 0.18, 0.26, 0.28, 2.6}},
        10);
    mesh.add(body(p.light,
                  {{4.58, 0.0, 0.04, 0.04, 0.04},
                   {4.62, 0.0, 0.12, 0.13, 0.11},
                   {4.74, 0.0, 0.14, 0.15, 0.13},
                   {4.84, 0.0, 0.06, 0.07, 0.06}},
                  10)
                 .moved({0, 0, 0.8}));
    mesh.add(box(p.dark, {-0.1, 4.80, 0.74}, {0.1, 4.87, 0.84}));
    for (const double side : {-1.0, 1.0}) {
        mesh.add(
            tube(p.green, {{side * 0.22, 4.72, 0.48}, {side * 0.28, 4.9, 0.2}, {side * 0.08, 5.14, 0.12}}, 0.06, 6));
        mesh.add(
            tube(p.green, {{side * 0.1, 4.75, 0.06}, {side * 0.14, 5.2, 0.1}, {side * 0.14, 5.4, -0.35}}, 0.085, 6));
    }
    return mesh.moved({x, -0.04, 0.0});
}

Mesh panel() {
    const Paints& p = paints();
    Mesh mesh = box(p.dark, {-0.85, 5.62, -0.5}, {0.85, 5.95, 0.16});
    mesh.add(box(p.dark, {-0.88, 5.5, 0.16}, {0.88, 5.98, 0.2})).add(box(p.dark, {-0.2, 4.7, -0.5}, {0.2, 5.62, -0.1}));
    for (const double x : {-0.68, -0.36, 0.12, 0.44}) {
        mesh.quad(p.grey, {x, 5.61, -0.16}, {x + 0.24, 5.61, -0.16}, {x + 0.24, 5.61, 0.1}, {x, 5.61, 0.1});
        mesh.quad(p.green, {x + 0.02, 5.605, -0.14}, {x + 0.22, 5.605, -0.14}, {x + 0.22, 5.605, 0.08},
                  {x + 0.02, 5.605, 0.08});
    }
    return mesh;
}

Mesh mainLeg() {
    const Paints& p = paints();
    const dvec3 axle = MAIN_GEAR, foot(axle.x, axle.y, axle.z + 0.02), top(axle.x - 0.06, axle.y, -0.72);
    // The sponson on its stub wing, with a strut to the cabin.
    Mesh mesh = body(p.skin,
                     {{-0.5, -0.72, 0.06, 0.06, 0.06},
                      {-0.8, -0.72, 0.24, 0.22, 0.22},
                      {-1.6, -0.74, 0.37, 0.33, 0.33},
                      {-2.6, -0.74, 0.38, 0.33, 0.33},
                      {-3.5, -0.70, 0.26, 0.24, 0.24},
                      {-4.1, -0.66, 0.07, 0.07, 0.07}},
                     16)
                    .moved({1.86, 0.0, 0.0});
    mesh.add(aerofoil(p.skin, {{{1.0, -1.5, -0.62}, 1.5, 0.16}, {{1.8, -1.5, -0.70}, 1.4, 0.16}}, {}, 6));
    mesh.add(tube(p.grey, {{1.14, -2.2, 0.55}, {1.95, -2.2, -0.45}}, 0.05, 8));
    mesh.add(drum(p.grey, top, (top + foot) * 0.5, 0.11, 0.11, 10))
        .add(drum(p.metal, (top + foot) * 0.5, foot, 0.07, 0.07, 10));
    mesh.add(torqueLinks(p.metal, (top + foot) * 0.5, foot, {0, 0.25, 0}, 0.1));
    mesh.add(drum(p.metal, foot - dvec3(0.2, 0, 0), foot + dvec3(0.2, 0, 0), 0.05, 0.05, 8));
    for (const double x : {-0.2, 0.2}) {
        mesh.add(wheel(p.rubber, p.light, axle + dvec3(x, 0, 0), MAIN_WHEEL, 0.24));
    }
    return mesh;
}

Mesh noseLeg() {
    const Paints& p = paints();
    const dvec3 foot = NOSE_GEAR, top(0, NOSE_GEAR.y + 0.05, -1.0);
    Mesh mesh = drum(p.grey, top, (top + foot) * 0.5, 0.09, 0.09, 10);
    mesh.add(drum(p.metal, (top + foot) * 0.5, foot, 0.06, 0.06, 10));
    mesh.add(torqueLinks(p.metal, (top + foot) * 0.5, foot, {0, -0.2, 0}, 0.08));
    mesh.add(tube(p.grey, {{0, NOSE_GEAR.y + 0.6, -1.02}, {0, NOSE_GEAR.y + 0.05, -1.3}}, 0.035, 6));
    mesh.add(drum(p.metal, foot - dvec3(0.16, 0, 0), foot + dvec3(0.16, 0, 0), 0.045, 0.045, 8));
    for (const double x : {-0.16, 0.16}) {
        mesh.add(wheel(p.rubber, p.light, foot + dvec3(x, 0, 0), NOSE_WHEEL, 0.17));
    }
    return mesh;
}

Part wiper(const std::string& name, double side) {
    const Paints& p = paints();
    const dvec3 along = SCREEN_HEAD - SCREEN_FOOT;
    const double slope = std::atan2(-along.y, along.z) * jMath::RAD2DEG;
    const dvec3 hinge = SCREEN_FOOT + dvec3(side * 0.84, 0, 0) + along * 0.06;
    const dvec3 inward(-side, 0, 0), lift(0, 0.05, 0);
    Mesh mesh = drum(p.dark, hinge, hinge + lift, 0.035, 0.03, 8);
    mesh.add(bar(p.dark, hinge + lift, hinge + lift + inward * 0.5, 0.022));
    mesh.add(box(p.dark, hinge + dvec3(-side * 0.48 - 0.26, 0.018, -0.012),
                 hinge + dvec3(-side * 0.48 + 0.26, 0.05, 0.012)));
    return {name, hinge, mesh, {0.0, slope, side * 23.1}};
}

Part winch() {
    const Paints& p = paints();
    const dvec3 foot{1.2, 1.5, 1.2};
    const dvec3 tip{1.62, 1.5, 1.5};
    Mesh mesh = tube(p.grey, {foot, {1.45, 1.5, 1.48}, tip}, 0.06, 8);
    mesh.add(tube(p.grey, {{1.12, 1.1, 1.3}, {1.45, 1.5, 1.48}}, 0.035, 6));
    mesh.add(drum(p.yellow, tip + dvec3(0, -0.22, -0.05), tip + dvec3(0, 0.22, -0.05), 0.13, 0.13, 12, true));
    mesh.add(bar(p.dark, tip - dvec3(0, 0, 0.1), tip - dvec3(0, 0, 0.42), 0.012));
    mesh.add(drum(p.red, tip - dvec3(0, 0, 0.36), tip - dvec3(0, 0, 0.5), 0.04, 0.02, 8));
    return {"winch", foot, mesh};
}

Part sonar() {
    const Paints& p = paints();
    const dvec3 top{0.0, -1.5, -1.05};
    Mesh mesh = drum(p.grey, top + dvec3(0, 0, 0.02), top - dvec3(0, 0, 0.14), 0.34, 0.28, 14);
    mesh.add(drum(p.dark, top - dvec3(0, 0, 0.14), top - dvec3(0, 0, 0.22), 0.1, 0.1, 10));
    mesh.add(drum(p.light, top - dvec3(0, 0, 0.2), top - dvec3(0, 0, 0.34), 0.17, 0.2, 14));
    mesh.add(drum(p.metal, top - dvec3(0, 0, 0.34), top - dvec3(0, 0, 0.5), 0.2, 0.13, 14));
    return {"sonar", top, mesh};
}

Part flashingLight() {
    const dvec3 foot{0.0, -10.02, 3.36};
    return {"anticollision_tail_light", foot, ball(paints().lamp, foot + dvec3(0, 0, 0.08), 0.17, 10)};
}

}  // namespace

Mesh cockpit() {
    const Paints& p = paints();
    Mesh mesh = panel();
    mesh.add(box(p.dark, {-1.08, 3.9, -0.55}, {1.08, 6.2, -0.5}))
        .add(box(p.dark, {-1.1, 3.86, -0.5}, {1.1, 3.92, 1.4}));
    for (const double x : {-0.55, 0.55}) mesh.add(seat(x));
    mesh.add(box(p.dark, {-0.3, 4.6, 1.2}, {0.3, 5.15, 1.3}));
    return mesh.add(crew(-0.55));
}

Mesh landingGear() {
    Mesh mesh = noseLeg();
    return mesh.addPair(mainLeg());
}

Mesh antennas() {
    const Paints& p = paints();
    const dvec3 right(1, 0, 0);
    Mesh mesh;
    const struct {
        dvec3 foot;
        double height;
    } blades[] = {{{0, 4.4, 1.4}, 0.36}, {{0, -6.4, 1.5}, 0.34}, {{0, 2.2, -1.08}, -0.34}, {{0, -4.2, -0.55}, -0.3}};
    for (const auto& blade : blades) {
        const dvec3 tip = blade.foot + dvec3(0, -0.12, blade.height);
        mesh.add(wing(p.light, {blade.foot, 0.3, 0.1, right}, {tip, 0.16, 0.1, right}));
    }
    mesh.add(tube(p.dark, {{-0.5, -4.6, 1.48}, {-0.55, -7.2, 1.9}, {-0.02, -9.3, 2.6}}, 0.012, 4));  // long wire
    mesh.add(drum(p.light, {0, 1.0, -1.05}, {0, 1.0, -1.28}, 0.62, 0.5, 18));                        // search radar
    for (const double side : {-1.0, 1.0}) {
        const double x = side * 0.42;
        mesh.add(tube(p.metal, {{x, 6.6, -0.1}, {x, 6.9, -0.02}, {x, 7.25, -0.02}}, 0.022, 6));  // pitot tubes
        mesh.add(box(p.grey, {side * 1.2 - 0.03, 3.1, 0.55}, {side * 1.2 + 0.06, 3.35, 0.8}));   // warning receivers
    }
    mesh.addPair(tube(p.dark, {{1.16, 2.95, 1.08}, {1.21, 2.0, 1.1}, {1.21, -0.9, 1.1}}, 0.02, 5));  // door rails
    mesh.addPair(
        tube(p.metal, {{1.2, 5.0, -0.85}, {1.36, 4.95, -0.86}, {1.36, 4.6, -0.86}, {1.2, 4.55, -0.85}}, 0.02, 5));
    const dvec3 search{0.0, 6.0, -1.02};
    mesh.add(drum(p.dark, search + dvec3(0, -0.1, 0.06), search + dvec3(0, 0.12, -0.02), 0.14, 0.16, 12));
    mesh.add(drum(p.light, search + dvec3(0, 0.11, -0.02), search + dvec3(0, 0.13, -0.024), 0.13, 0.13, 12));
    const dvec3& lamp = NAVIGATION_LIGHT;
    mesh.add(ball(p.red, {-lamp.x, lamp.y, lamp.z}, 0.07, 8)).add(ball(p.green, lamp, 0.07, 8));
    return mesh.add(ball(p.light, {0.0, -10.46, 1.36}, 0.06, 8));
}

std::vector<Part> fittings() {
    return {sonar(), winch(), wiper("wiper_left", -1.0), wiper("wiper_right", 1.0), flashingLight()};
}

}  // namespace heli
