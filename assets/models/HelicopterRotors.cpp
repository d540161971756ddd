// The helicopter's rotors: heads, drooping blades, and blurred discs that replace the blades at speed.
#include <cmath>

#include "engine/math/jMath.h"
#include "geometry/Aerofoil.h"
#include "geometry/Canvas.h"
#include "geometry/Loft.h"
#include "geometry/Prism.h"
#include "models/HelicopterShape.h"
#include "plan/Noise.h"

namespace heli {
namespace {

constexpr int BLADES = 6, TAIL_BLADES = 5;
constexpr double ROOT = 1.35, CHORD = 0.54;

/// Droop of a blade at rest below the hub, at a distance from it.
double droop(double r) {
    return 0.75 * std::pow(r / ROTOR_RADIUS, 2.0) - 0.05 * r / ROTOR_RADIUS;
}

/// A blade along +X from the origin. The rotor turns counter-clockwise seen from above: the leading edge is at +Y.
Mesh blade() {
    const Paints& p = paints();
    const auto rib = [](double r) {
        const double twist = (0.12 - 0.10 * r / ROTOR_RADIUS);
        return Rib{{r, CHORD * 0.3, -droop(r) + twist * CHORD * 0.3}, CHORD, 0.12, normalize(dvec3(0, -twist, 1))};
    };
    Mesh mesh = aerofoil(p.rubber, {rib(ROOT), rib(3.4), rib(5.4), rib(7.4), rib(8.7)}, {}, 5);
    mesh.add(aerofoil(p.yellow, {rib(8.7), rib(9.05)}, {}, 5))
        .add(aerofoil(p.rubber, {rib(9.05), rib(ROTOR_RADIUS)}, {}, 5));
    mesh.add(tube(p.metal, {{0.5, 0, 0.0}, {1.0, 0, -0.01}, {ROOT + 0.15, 0, -droop(ROOT)}}, 0.07, 8));
    return mesh;
}

Mesh turnedCopies(const Mesh& one, int count, const dvec3& axis, const dvec3& about) {
    Mesh mesh;
    for (int i = 0; i < count; ++i) mesh.add(one, dmat4(dquat(axis, 360.0 * i / count), about));
    return mesh;
}

Mesh head() {
    const Paints& p = paints();
    const dvec3 up(0, 0, 1);
    Mesh mesh = drum(p.metal, HUB - up * 0.16, HUB + up * 0.12, 0.4, 0.36, 18, true);
    mesh.add(drum(p.dark, HUB + up * 0.12, HUB + up * 0.3, 0.2, 0.12, 12));
    Mesh arm = box(p.metal, {0.3, -0.1, -0.08}, {0.78, 0.1, 0.08});
    arm.add(drum(p.dark, {0.68, 0, -0.15}, {0.68, 0, 0.17}, 0.1, 0.1, 10, true));
    arm.add(tube(p.metal, {{0.95, 0.16, 0.0}, {0.5, 0.3, -0.28}, {0.28, 0.22, -0.4}}, 0.025, 5));
    arm.add(tube(p.dark, {{0.8, -0.14, 0.04}, {0.42, -0.36, 0.06}}, 0.05, 7));
    mesh.add(turnedCopies(arm, BLADES, up, HUB));
    return mesh.add(drum(p.grey, HUB - up * 0.46, HUB - up * 0.38, 0.34, 0.34, 16, true));  // swash plate
}

/// A picture of moving blades: fainter between the blades, with a ring of the painted tips.
std::shared_ptr<const Texture> blur(double radius, int blades, const dvec3& across, const dvec3& down) {
    constexpr int SIZE = 512;
    Canvas canvas(SIZE, SIZE, -radius, -radius, radius, radius, {30, 32, 34, 0});
    canvas.repaint([&](double x, double y, const Color&) -> Color {
        const double r = std::hypot(x, y) / radius, angle = std::atan2(y, x);
        if (r > 0.995) return {30, 32, 34, 0};
        const double streak = std::pow(0.5 + 0.5 * std::cos(angle * blades), 3.0);
        const bool tip = r > 0.92 && r < 0.958;
        const double opacity = (r < 0.13 ? 80.0 : 30.0 + 18.0 / (0.5 + 2.0 * r)) + 46.0 * streak * (1.0 - 0.4 * r);
        const auto alpha = static_cast<std::uint8_t>(std::min(120.0, opacity + (tip ? 14.0 : 0.0)));
        return tip ? Color{150, 128, 52, alpha} : Color{34, 36, 38, alpha};
    });
    Texture texture;
    texture.png = canvas.toPng();
    texture.across = across * (0.5 / radius);
    texture.down = down * (0.5 / radius);
    return std::make_shared<const Texture>(texture);
}

/// A flat disc around `middle` in the plane of `a` and `b`, transparent and double-sided.
Mesh disc(const std::string& name, const dvec3& middle, const dvec3& a, const dvec3& b, double radius, int blades) {
    Texture picture = *blur(radius, blades, a, b);
    picture.offset = {0.5 - dot(middle, picture.across), 0.5 - dot(middle, picture.down)};
    Paint made = *paint(name, {1.0, 1.0, 1.0}, 0.9);
    made.color[3] = 0.999;
    made.double_sided = true;
    made.texture = std::make_shared<const Texture>(picture);
    const PaintRef paint = std::make_shared<const Paint>(made);
    constexpr int SIDES = 32;
    Mesh mesh;
    const auto rim = [&](int i) {
        const double angle = 2.0 * jMath::PI * i / SIDES;
        return middle + (a * std::cos(angle) + b * std::sin(angle)) * radius;
    };
    for (int i = 0; i < SIDES; ++i) mesh.triangle(paint, middle, rim(i), rim(i + 1));
    return mesh;
}

/// A tail blade along +Z from the origin, in the YZ plane.
Mesh tailBlade() {
    const Paints& p = paints();
    const auto rib = [](double r) { return Rib{{0.03, 0.1, r}, 0.26, 0.12, normalize(dvec3(1, 0.18, 0))}; };
    Mesh mesh = aerofoil(p.rubber, {rib(0.35), rib(1.3)}, {}, 5);
    mesh.add(aerofoil(p.red, {rib(1.3), rib(1.45)}, {}, 5))
        .add(aerofoil(p.light, {rib(1.45), rib(TAIL_RADIUS)}, {}, 5));
    return mesh.add(drum(p.metal, {0.02, 0, 0.0}, {0.02, 0, 0.42}, 0.05, 0.04, 8));
}

}  // namespace

Part mainRotor() {
    const dvec3 up(0, 0, 1);
    // The logic turns the rotor about the pivot's own -Z. With this pose of the pivot, its tilts are ahead and to the
    // left.
    const dvec3 pivot{-90.0, 0.0, 180.0};
    Part blades{"wing_mesh", HUB, turnedCopies(blade(), BLADES, up, HUB), pivot};
    Part plane{"wing_plane", HUB, disc("main_disc", HUB - up * 0.12, {1, 0, 0}, {0, 1, 0}, ROTOR_RADIUS, BLADES),
               pivot};
    // The head is drawn in the pivot's axes; this transform cancels their rotation.
    const dmat4 undo = dmat4(dquat::fromEulerZXY(pivot), HUB) * dmat4::translation(HUB * -1.0);
    Part wing{"wing", HUB, head().transformed(inverse(undo)), {}, {blades, plane}};
    return {"wing_pivot", HUB, {}, pivot, {wing}};
}

Part tailRotor() {
    const dvec3 axis(1, 0, 0);
    const Part blades{"tail_mesh", TAIL_HUB, turnedCopies(tailBlade(), TAIL_BLADES, axis, TAIL_HUB)};
    const Part plane{"tail_plane", TAIL_HUB,
                     disc("tail_disc", TAIL_HUB, {0, 1, 0}, {0, 0, 1}, TAIL_RADIUS, TAIL_BLADES)};
    Mesh head = drum(paints().metal, TAIL_HUB - axis * 0.08, TAIL_HUB + axis * 0.1, 0.16, 0.1, 12, true);
    return {"tail", TAIL_HUB, head, {}, {blades, plane}};
}

}  // namespace heli
