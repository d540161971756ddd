// The helicopter's engine deck: cowls, intakes, exhausts, the rotor's mast; its tail fin and stabilizer.
#include "engine/math/jMath.h"
#include "geometry/Aerofoil.h"
#include "geometry/Loft.h"
#include "geometry/Prism.h"
#include "models/HelicopterShape.h"

namespace heli {
namespace {

/// A round intake that opens forward: lip, throat and the cone inside.
Mesh intake(const dvec3& mouth, double radius) {
    const Paints& p = paints();
    Mesh mesh = revolve(p.metal, mouth,
                        {{-0.30, radius * 0.80},
                         {-0.02, radius * 0.86},
                         {0.03, radius * 0.95},
                         {-0.02, radius * 1.06},
                         {-0.35, radius * 1.12}},
                        18);
    mesh.add(revolve(p.dark, mouth, {{-0.06, 0.0}, {-0.055, radius * 0.87}, {-0.2, radius * 0.84}}, 18));
    return mesh.add(revolve(p.metal, mouth, {{0.10, 0.01}, {0.05, radius * 0.22}, {-0.06, radius * 0.36}}, 14));
}

/// An exhaust pipe that bends outward and aft.
Mesh exhaust(const dvec3& root, const dvec3& out) {
    const Paints& p = paints();
    const dvec3 mouth = root + out;
    Mesh mesh = drum(p.metal, root, mouth, 0.27, 0.25, 14);
    return mesh.add(drum(p.dark, mouth - out * 0.02, mouth + out * 0.015, 0.20, 0.21, 14));
}

Mesh cowls() {
    const Paints& p = paints();
    Mesh mesh = body(p.skin,
                     {{3.55, 1.62, 0.50, 0.22, 0.3, 2.6},
                      {3.25, 1.72, 0.98, 0.48, 0.5, 3.0},
                      {2.4, 1.80, 1.03, 0.58, 0.6, 3.2},
                      {1.2, 1.82, 1.03, 0.66, 0.6, 3.2},
                      {0.0, 1.82, 1.02, 0.70, 0.6, 3.2},
                      {-1.2, 1.80, 0.98, 0.68, 0.6, 3.0},
                      {-2.6, 1.72, 0.84, 0.58, 0.6, 2.8},
                      {-3.9, 1.52, 0.58, 0.42, 0.5, 2.5},
                      {-5.2, 1.32, 0.25, 0.22, 0.3, 2.2},
                      {-5.9, 1.28, 0.06, 0.1, 0.1}},
                     22);
    mesh.add(body(p.skin,
                  {{1.25, 2.42, 0.1, 0.05, 0.2},
                   {0.95, 2.45, 0.40, 0.24, 0.3},
                   {0.3, 2.48, 0.52, 0.42, 0.3},
                   {-0.3, 2.48, 0.52, 0.42, 0.3},
                   {-1.1, 2.44, 0.38, 0.28, 0.3},
                   {-1.9, 2.36, 0.12, 0.06, 0.2}},
                  18));
    return mesh;
}

}  // namespace

Mesh engines() {
    const Paints& p = paints();
    Mesh mesh = cowls();
    mesh.addPair(intake({0.52, 3.62, 1.86}, 0.33));
    mesh.addPair(exhaust({0.86, 1.55, 2.02}, {0.42, -0.2, 0.06})).add(exhaust({-0.72, -2.3, 2.0}, {-0.42, -0.28, 0.1}));
    mesh.add(body(p.skin,
                  {{-1.0, 2.3, 0.12, 0.1, 0.2},
                   {-1.3, 2.35, 0.3, 0.2, 0.3},
                   {-2.4, 2.2, 0.3, 0.14, 0.3},
                   {-3.2, 2.0, 0.08, 0.05, 0.1}},
                  14));
    mesh.add(drum(p.dark, {0, -1.26, 2.38}, {0, -1.1, 2.42}, 0.2, 0.17, 12));
    mesh.add(drum(p.metal, {0, 0, 2.75}, {0, 0, 3.05}, 0.30, 0.24, 14))
        .add(drum(p.dark, {0, 0, 3.05}, HUB, 0.16, 0.16, 12));
    for (const double y : {2.6, 0.6}) {  // cooling grilles
        for (int i = 0; i < 5; ++i) {
            const double at = y - 0.12 * i;
            mesh.addPair(box(p.dark, {1.0, at - 0.03, 1.75}, {1.045, at + 0.03, 2.05}));
        }
    }
    return mesh;
}

Mesh tailUnit() {
    const Paints& p = paints();
    const dvec3 right(1, 0, 0);
    Mesh mesh = aerofoil(p.skin,
                         {{{0, -7.9, 1.1}, 2.5, 0.17, right},
                          {{0, -8.8, 1.9}, 1.75, 0.2, right},
                          {{0, -9.35, 2.6}, 1.25, 0.24, right},
                          {{0, -9.6, 3.25}, 0.95, 0.2, right}},
                         {}, 7);
    mesh.add(roundTip(p.skin, {{0, -9.6, 3.25}, 0.95, 0.2, right}, {0, 0, 1}, {}, 7));
    const dvec3 up(0, 0, 1);
    mesh.add(aerofoil(p.skin, {{{-0.05, -9.5, 2.85}, 1.0, 0.14, up}, {{-2.1, -9.75, 2.9}, 0.72, 0.12, up}}, {}, 6));
    mesh.add(bar(p.grey, {-0.1, -9.9, 2.3}, {-1.0, -9.95, 2.84}, 0.06));
    mesh.add(drum(p.metal, {0.05, TAIL_HUB.y, TAIL_HUB.z}, {TAIL_HUB.x - 0.06, TAIL_HUB.y, TAIL_HUB.z}, 0.2, 0.12, 12));
    mesh.add(body(p.skin,
                  {{-9.45, 2.4, 0.05, 0.1, 0.1},
                   {-9.65, 2.4, 0.17, 0.24, 0.24},
                   {-10.2, 2.4, 0.19, 0.24, 0.24},
                   {-10.7, 2.38, 0.08, 0.1, 0.1}},
                  12));
    // A long fairing over the shaft that drives the tail rotor.
    mesh.add(body(p.skin,
                  {{-4.8, 1.46, 0.16, 0.2, 0.1},
                   {-6.5, 1.42, 0.14, 0.15, 0.1},
                   {-8.4, 1.45, 0.12, 0.13, 0.1},
                   {-9.0, 1.6, 0.1, 0.1, 0.1}},
                  10));
    return mesh.add(bar(p.metal, {0, -10.0, 0.95}, {0, -10.55, 0.62}, 0.07));  // tail bumper
}

}  // namespace heli
