// The jet's fuselage, intakes, engines and what opens on them.
#include "engine/math/jMath.h"
#include "models/JetShape.h"

namespace jet {
namespace {

constexpr double BULKHEAD = 8.9;  // where the radome ends

std::vector<Section> fuselageSections() {
    return {{BULKHEAD, 0.27, 0.56, 0.58, 0.55}, {8.4, 0.30, 0.64, 0.66, 0.62},  {7.2, 0.36, 0.78, 0.80, 0.75},
            {5.8, 0.40, 0.90, 0.85, 0.85},      {4.2, 0.45, 0.98, 0.95, 0.85},  {2.5, 0.50, 1.00, 0.98, 0.70},
            {0.5, 0.50, 1.00, 0.90, 0.50},      {-2.0, 0.45, 0.95, 0.75, 0.45}, {-5.0, 0.40, 0.80, 0.55, 0.40},
            {-7.5, 0.35, 0.55, 0.42, 0.38},     {-9.5, 0.32, 0.33, 0.30, 0.30}, {-10.6, 0.30, 0.17, 0.16, 0.16},
            {-10.8, 0.30, 0.06, 0.06, 0.06}};
}

/// The flat body that carries wings and tails and runs out into the strakes before them.
Mesh liftingBody(const Paints& paints) {
    return body(paints.skin,
                {{6.2, 0.46, 0.86, 0.05, 0.05, 2.2},
                 {5.2, 0.44, 1.22, 0.12, 0.12, 2.2},
                 {4.0, 0.42, 1.60, 0.20, 0.20, 2.2},
                 {2.4, 0.40, 2.08, 0.34, 0.32, 2.2},
                 {0.0, 0.38, 2.42, 0.44, 0.40, 2.2},
                 {-3.0, 0.36, 2.52, 0.42, 0.38, 2.2},
                 {-6.0, 0.30, 2.52, 0.32, 0.32, 2.4},
                 {-8.9, 0.22, 2.42, 0.14, 0.14, 2.6}},
                32);
}

/// An intake duct's section leans forward at the top.
std::vector<Ring> rakedRings(const std::vector<Section>& sections, const std::vector<double>& rakes) {
    std::vector<Ring> rings;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        rings.push_back(outline(sections[i], 28));
        for (dvec3& p : rings.back()) p.y += rakes[i] * (p.z - sections[i].z);
    }
    return rings;
}

Mesh nacelle(const Paints& paints) {
    const double x = NOZZLE.x;
    Mesh mesh = loft(paints.skin,
                     rakedRings({{2.6, -0.36, 0.64, 0.60, 0.64, 9.0, x},
                                 {1.8, -0.36, 0.68, 0.62, 0.66, 8.0, x},
                                 {0.0, -0.32, 0.70, 0.62, 0.66, 5.0, x},
                                 {-3.5, -0.20, 0.74, 0.70, 0.72, 2.8, x},
                                 {-6.5, -0.15, 0.74, 0.74, 0.74, 2.1, x},
                                 {-8.0, -0.15, 0.69, 0.69, 0.69, 2.0, x}},
                                {0.55, 0.35, 0.0, 0.0, 0.0, 0.0}),
                     false);
    mesh.add(loft(
        paints.duct,
        rakedRings({{2.6, -0.36, 0.62, 0.58, 0.62, 9.0, x}, {0.6, -0.34, 0.50, 0.50, 0.50, 2.5, x}}, {0.55, 0.0})));
    return mesh.add(revolve(
        paints.metal, {x, 0.0, NOZZLE.z},
        {{-7.9, 0.70}, {-8.5, 0.68}, {-9.1, 0.59}, {NOZZLE.y, 0.50}, {NOZZLE.y, 0.46}, {-8.9, 0.50}, {-8.3, 0.54}}));
}

/// A blister under the wing's root that takes the main wheel.
Mesh gearBay(const Paints& paints) {
    return body(paints.skin,
                {{1.6, 0.25, 0.10, 0.10, 0.10, 3.0, 2.17},
                 {0.8, 0.20, 0.40, 0.25, 0.34, 3.0, 2.17},
                 {-1.7, 0.20, 0.40, 0.25, 0.34, 3.0, 2.17},
                 {-2.9, 0.25, 0.12, 0.10, 0.12, 3.0, 2.17}},
                20);
}

Mesh cockpit(const Paints& paints) {
    Mesh mesh = taperedBox(paints.cockpit, {-0.40, 6.45, 0.95}, {0.40, 7.00, 1.27}, 0.08);
    mesh.add(taperedBox(paints.cockpit, {-0.26, 4.95, 1.00}, {0.26, 5.15, 1.62}, 0.05));
    mesh.add(dome(paints.dark, {0.0, 5.32, 1.40}, 0.15, 12));
    return mesh.add(
        body(paints.gear, {{5.1, 1.15, 0.2, 0.1, 0.2}, {5.35, 1.15, 0.24, 0.14, 0.2}, {5.6, 1.05, 0.1, 0.1, 0.1}}, 12));
}

std::vector<Section> canopySections() {
    return {{7.95, 1.00, 0.08, 0.04, 0.05}, {7.4, 0.98, 0.38, 0.34, 0.08}, {6.9, 0.98, 0.50, 0.58, 0.08},
            {6.2, 0.98, 0.54, 0.74, 0.08},  {5.4, 1.00, 0.54, 0.78, 0.08}, {4.4, 1.05, 0.46, 0.60, 0.08},
            {3.5, 1.10, 0.28, 0.34, 0.08},  {2.9, 1.15, 0.08, 0.20, 0.05}};
}

Mesh canopyPiece(const Paints& paints, std::size_t first, std::size_t last) {
    const std::vector<Section> all = canopySections();
    return body(paints.glass, {all.begin() + static_cast<long>(first), all.begin() + static_cast<long>(last) + 1}, 20);
}

Part radome(const Paints& paints) {
    Mesh mesh = body(paints.radome, {{BULKHEAD, 0.27, 0.56, 0.58, 0.55},
                                     {9.6, 0.22, 0.45, 0.47, 0.45},
                                     {10.4, 0.17, 0.29, 0.30, 0.29},
                                     {10.9, 0.14, 0.15, 0.15, 0.15},
                                     {11.15, 0.13, 0.04, 0.04, 0.04}});
    mesh.add(cylinder(paints.metal, {0.0, 11.1, 0.13}, {0.0, 11.2, 0.13}, 0.03, 0.02, 8));
    return {"radome", {0.0, BULKHEAD, 0.85}, mesh};
}

Part refuellingProbe(const Paints& paints) {
    const dvec3 root{-0.66, 6.5, 0.93};
    Mesh mesh = cylinder(paints.metal, root, {-0.58, 8.1, 0.86}, 0.07, 0.05, 10);
    mesh.add(cylinder(paints.dark, {-0.58, 8.1, 0.86}, {-0.57, 8.35, 0.85}, 0.06, 0.03, 10));
    return {"refuelling_probe", root, mesh};
}

Part airbrake(const Paints& paints) {
    return {"airbrake",
            {0.0, 2.7, 1.45},
            body(paints.skin,
                 {{2.7, 1.30, 0.42, 0.19, 0.1}, {1.8, 1.28, 0.45, 0.19, 0.1}, {0.8, 1.20, 0.40, 0.20, 0.1}}, 16)};
}

Part ladder(const Paints& paints) {
    return {"ladder", {-0.93, 5.4, 0.0}, box(paints.gear, {-0.96, 5.15, 0.0}, {-0.90, 5.65, 0.75})};
}

Part intakeRamp(const Paints& paints, int side) {
    const Mesh plate = box(paints.gear, {0.72, 1.2, 0.10}, {1.72, 2.5, 0.14});
    return {withSide("intake_ramp", side), onSide({NOZZLE.x, 2.5, 0.12}, side), onSide(plate, side)};
}

Part afterburner(const Paints& paints) {
    const Mesh flame = revolve(paints.glow, {NOZZLE.x, 0.0, NOZZLE.z}, {{-8.34, 0.40}, {-8.7, 0.34}, {-9.2, 0.05}}, 16);
    Mesh both;
    both.addPair(flame);
    return {"afterburner", {0.0, -8.5, NOZZLE.z}, both};
}

}  // namespace

dvec3 onSide(const dvec3& right, int side) {
    return {right.x * side, right.y, right.z};
}
Mesh onSide(const Mesh& right, int side) {
    return side > 0 ? right : right.mirrored();
}
std::string withSide(const std::string& name, int side) {
    return name + (side > 0 ? "_right" : "_left");
}

Paints freshPaints() {
    Paints p;
    p.skin = paint("skin", {0.30, 0.34, 0.37}, 0.55);
    p.radome = paint("radome", {0.42, 0.44, 0.45}, 0.6);
    p.metal = paint("nozzle", {0.16, 0.15, 0.14}, 0.45, 0.8);
    p.duct = paint("duct", {0.02, 0.02, 0.02}, 0.9);
    p.gear = paint("gear", {0.62, 0.63, 0.62}, 0.5);
    p.tyre = paint("tyre", {0.02, 0.02, 0.02}, 0.95);
    p.dark = paint("dark", {0.05, 0.05, 0.06}, 0.6);
    p.cockpit = paint("cockpit", {0.04, 0.05, 0.05}, 0.9);
    Paint duct = *p.duct;
    duct.double_sided = true;
    p.duct = std::make_shared<const Paint>(duct);
    Paint glass = *paint("glass", {0.10, 0.13, 0.14}, 0.05);
    glass.color[3] = 0.35;
    p.glass = std::make_shared<const Paint>(glass);
    Paint glow = *paint("afterburner", {0.3, 0.1, 0.05}, 1.0);
    glow.emission = {1.0, 0.38, 0.12};
    p.glow = std::make_shared<const Paint>(glow);
    return p;
}

Part airframe(const Paints& paints) {
    Mesh mesh = body(paints.skin, fuselageSections());
    mesh.add(liftingBody(paints)).addPair(nacelle(paints)).addPair(gearBay(paints));
    mesh.add(cockpit(paints)).add(canopyPiece(paints, 0, 2)).add(fixedSurfaces(paints));
    return {"airframe", {}, mesh};
}

std::vector<Part> bodyParts(const Paints& paints) {
    const Part canopy{"canopy", {0.0, 2.9, 1.15}, canopyPiece(paints, 2, canopySections().size() - 1)};
    return {canopy,         radome(paints),         airbrake(paints),      refuellingProbe(paints),
            ladder(paints), intakeRamp(paints, -1), intakeRamp(paints, 1), afterburner(paints)};
}

}  // namespace jet
