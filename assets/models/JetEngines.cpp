// The jet's intakes, nacelles and nozzles.
#include <cmath>

#include "engine/math/jMath.h"
#include "models/JetShape.h"

namespace jet {
namespace {

/// The top of a duct's section leans forward by `rake` metres per metre.
std::vector<Ring> rakedRings(const std::vector<Section>& sections, const std::vector<double>& rakes, int points) {
    std::vector<Ring> rings;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        rings.push_back(outline(sections[i], points));
        for (dvec3& p : rings.back()) p.y += rakes[i] * (p.z - sections[i].z);
    }
    return rings;
}

Mesh nacelle(const Paints& paints) {
    const double x = NOZZLE.x;
    constexpr int POINTS = 40;
    const std::vector<Section> outside{
        {2.30, -0.40, 0.64, 0.60, 0.62, 10.0, x}, {1.90, -0.40, 0.67, 0.62, 0.65, 9.0, x},
        {1.00, -0.37, 0.69, 0.60, 0.66, 7.0, x},  {0.00, -0.34, 0.70, 0.60, 0.65, 5.5, x},
        {-1.5, -0.28, 0.72, 0.62, 0.66, 4.2, x},  {-3.0, -0.22, 0.74, 0.68, 0.70, 3.2, x},
        {-4.5, -0.17, 0.75, 0.73, 0.74, 2.6, x},  {-6.0, -0.15, 0.75, 0.75, 0.75, 2.2, x},
        {-7.2, -0.15, 0.74, 0.74, 0.74, 2.0, x},  {-8.05, -0.15, 0.70, 0.70, 0.70, 2.0, x}};
    Mesh mesh = loft(paints.skin, rakedRings(outside, {0.62, 0.50, 0.24, 0, 0, 0, 0, 0, 0, 0}, POINTS), false);
    const std::vector<Section> lip{{2.30, -0.40, 0.64, 0.60, 0.62, 10.0, x}, {2.24, -0.40, 0.61, 0.57, 0.59, 10.0, x}};
    mesh.add(insideOut(loft(paints.skin, rakedRings(lip, {0.62, 0.62}, POINTS), false)));
    const std::vector<Section> duct{{2.24, -0.40, 0.61, 0.57, 0.59, 10.0, x},
                                    {1.20, -0.38, 0.56, 0.46, 0.56, 6.0, x},
                                    {-0.6, -0.32, 0.50, 0.46, 0.50, 2.2, x}};
    mesh.add(insideOut(loft(paints.duct, rakedRings(duct, {0.62, 0.2, 0}, POINTS), false)));
    // The compressor's face at the end of the duct.
    mesh.add(cylinder(paints.metal, {x, -0.55, -0.32}, {x, -0.35, -0.32}, 0.18, 0.02, 16));
    for (int i = 0; i < 14; ++i) {
        const double a = 2.0 * jMath::PI * i / 14;
        const dvec3 out(std::cos(a), 0.0, std::sin(a)), across(-std::sin(a), 0.5, std::cos(a));
        const dvec3 middle(x, -0.5, -0.32);
        mesh.quad(paints.metal, middle + out * 0.15 - across * 0.03, middle + out * 0.15 + across * 0.03,
                  middle + out * 0.5 + across * 0.07, middle + out * 0.5 - across * 0.07);
    }
    return mesh.add(box(paints.duct, {x - 0.5, -0.66, -0.82}, {x + 0.5, -0.6, 0.16}));
}

/// The splitter between the intake and the fuselage, and its strut.
Mesh diverter(const Paints& paints) {
    Mesh mesh = box(paints.skin, {0.60, 0.2, 0.10}, {1.82, 2.45, 0.30});
    return mesh.add(box(paints.dark, {0.50, 0.2, -0.75}, {0.60, 1.7, 0.16}));
}

/// One row of overlapping plates around the jet pipe; every second one is slightly deeper.
Mesh petals(const PaintRef& paint, const std::vector<Turn>& profile, int count) {
    Mesh mesh;
    for (int i = 0; i < count; ++i) {
        const double depth = i % 2 == 0 ? 0.0 : 0.014, widen = i % 2 == 0 ? 1.12 : 0.9;
        const double from = 2.0 * jMath::PI * (i - 0.5 * widen) / count,
                     to = 2.0 * jMath::PI * (i + 0.5 * widen) / count;
        for (std::size_t k = 0; k + 1 < profile.size(); ++k) {
            const auto at = [&](const Turn& turn, double angle) {
                const double r = turn.radius - depth;
                return dvec3(NOZZLE.x + r * std::cos(angle), turn.along, NOZZLE.z + r * std::sin(angle));
            };
            mesh.quad(paint, at(profile[k], from), at(profile[k], to), at(profile[k + 1], to),
                      at(profile[k + 1], from));
        }
    }
    return mesh;
}

Mesh nozzle(const Paints& paints) {
    const dvec3 axis(NOZZLE.x, 0.0, NOZZLE.z);
    constexpr int COUNT = 24;
    const std::vector<Turn> outer{{-8.30, 0.672}, {-8.75, 0.640}, {-9.15, 0.575}, {NOZZLE.y, 0.505}};
    const std::vector<Turn> inner{{NOZZLE.y, 0.480}, {-9.05, 0.465}, {-8.70, 0.420}, {-8.30, 0.500}};
    Mesh mesh = loft(paints.metal,
                     {outline({-7.98, axis.z, 0.705, 0.705, 0.705, 2.0, axis.x}, 32),
                      outline({-8.14, axis.z, 0.695, 0.695, 0.695, 2.0, axis.x}, 32),
                      outline({-8.36, axis.z, 0.676, 0.676, 0.676, 2.0, axis.x}, 32)},
                     false);
    mesh.add(petals(paints.burnt, outer, COUNT));
    mesh.add(petals(paints.duct, inner, COUNT));
    // A backing that closes the gaps between the plates.
    mesh.add(loft(paints.duct,
                  {outline({-8.25, axis.z, 0.655, 0.655, 0.655, 2.0, axis.x}, 32),
                   outline({-9.15, axis.z, 0.555, 0.555, 0.555, 2.0, axis.x}, 32),
                   outline({NOZZLE.y + 0.02, axis.z, 0.488, 0.488, 0.488, 2.0, axis.x}, 32)},
                  false));
    const auto pipe = loft(paints.duct,
                           {outline({-7.6, axis.z, 0.52, 0.52, 0.52, 2.0, axis.x}, 32),
                            outline({-8.32, axis.z, 0.50, 0.50, 0.50, 2.0, axis.x}, 32)},
                           false);
    mesh.add(insideOut(pipe)).add(cylinder(paints.duct, {axis.x, -7.55, axis.z}, {axis.x, -7.62, axis.z}, 0.55, 24));
    // Flame holder rings in front of the turbine's cone.
    mesh.add(cylinder(paints.metal, {axis.x, -7.6, axis.z}, {axis.x, -8.0, axis.z}, 0.20, 0.03, 16));
    for (int i = 0; i < 8; ++i) {
        const double a = 2.0 * jMath::PI * i / 8;
        const dvec3 out(std::cos(a), 0.0, std::sin(a));
        mesh.add(cylinder(paints.metal, dvec3(axis.x, -7.75, axis.z) + out * 0.12,
                          dvec3(axis.x, -7.75, axis.z) + out * 0.5, 0.018, 6));
    }
    return mesh;
}

}  // namespace

Mesh engines(const Paints& paints) {
    Mesh right = nacelle(paints);
    right.add(diverter(paints)).add(nozzle(paints));
    Mesh both;
    return both.addPair(right);
}

}  // namespace jet
