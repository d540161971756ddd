// Boxes, lofts, solids of revolution and wings.
#include "geometry/Shapes.h"

#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"

namespace {

constexpr double TWO_PI = 2.0 * jMath::PI;

void cap(Mesh& mesh, const PaintRef& paint, const Ring& ring, bool reversed) {
    dvec3 middle;
    for (const dvec3& p : ring) middle += p;
    middle *= 1.0 / static_cast<double>(ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const dvec3& a = ring[i];
        const dvec3& b = ring[(i + 1) % ring.size()];
        if (reversed) {
            mesh.triangle(paint, middle, b, a);
        } else {
            mesh.triangle(paint, middle, a, b);
        }
    }
}

double signedPower(double v, double exponent) {
    return std::copysign(std::pow(std::abs(v), exponent), v);
}

/// Half thickness of the symmetrical four-digit profile at a fraction of the chord (NACA report 460), with a closed
/// trailing edge.
double halfThickness(double thickness, double x) {
    return 5.0 * thickness *
           (0.2969 * std::sqrt(x) - 0.1260 * x - 0.3516 * x * x + 0.2843 * x * x * x - 0.1036 * x * x * x * x);
}

Ring ribRing(const Rib& rib, double from, double to) {
    constexpr int STEPS = 8;
    Ring upper, lower;
    for (int i = 0; i <= STEPS; ++i) {
        // Denser toward the leading edge, where the profile is most curved.
        const double s = static_cast<double>(i) / STEPS;
        const double x = from + (to - from) * s * s;
        const dvec3 rise = rib.normal * (rib.chord * halfThickness(rib.thickness, x));
        upper.push_back(chordPoint(rib, x) + rise);
        lower.push_back(chordPoint(rib, x) - rise);
    }
    upper.insert(upper.end(), lower.rbegin(), lower.rend());
    return upper;
}

}  // namespace

Mesh box(const PaintRef& paint, const dvec3& lo, const dvec3& hi) {
    return taperedBox(paint, lo, hi, 0.0);
}

Mesh taperedBox(const PaintRef& paint, const dvec3& lo, const dvec3& hi, double inset) {
    const Ring base{lo, {hi.x, lo.y, lo.z}, {hi.x, hi.y, lo.z}, {lo.x, hi.y, lo.z}};
    const Ring top{{lo.x + inset, lo.y + inset, hi.z},
                   {hi.x - inset, lo.y + inset, hi.z},
                   {hi.x - inset, hi.y - inset, hi.z},
                   {lo.x + inset, hi.y - inset, hi.z}};
    Mesh mesh;
    for (std::size_t i = 0; i < 4; ++i) mesh.quad(paint, base[i], base[(i + 1) % 4], top[(i + 1) % 4], top[i]);
    mesh.quad(paint, top[0], top[1], top[2], top[3]);
    mesh.quad(paint, base[3], base[2], base[1], base[0]);
    return mesh;
}

Mesh loft(const PaintRef& paint, const std::vector<Ring>& rings, bool capped) {
    Mesh mesh;
    for (std::size_t r = 0; r + 1 < rings.size(); ++r) {
        const Ring& a = rings[r];
        const Ring& b = rings[r + 1];
        for (std::size_t i = 0; i < a.size(); ++i) {
            const std::size_t j = (i + 1) % a.size();
            mesh.quad(paint, a[i], a[j], b[j], b[i]);
        }
    }
    if (capped) {
        cap(mesh, paint, rings.front(), true);
        cap(mesh, paint, rings.back(), false);
    }
    return mesh.facingOutward();
}

Mesh cylinder(const PaintRef& paint, const dvec3& a, const dvec3& b, double radius_a, double radius_b, int sides) {
    const dvec3 axis = normalize(b - a);
    const dvec3 across = normalize(cross(axis, std::abs(axis.z) < 0.9 ? dvec3(0, 0, 1) : dvec3(1, 0, 0)));
    const dvec3 other = cross(axis, across);
    Ring ring_a, ring_b;
    for (int i = 0; i < sides; ++i) {
        const double angle = TWO_PI * i / sides;
        const dvec3 out = across * std::cos(angle) + other * std::sin(angle);
        ring_a.push_back(a + out * radius_a);
        ring_b.push_back(b + out * radius_b);
    }
    return loft(paint, {ring_a, ring_b});
}

Mesh revolve(const PaintRef& paint, const dvec3& origin, const std::vector<Turn>& profile, int sides) {
    std::vector<Ring> rings;
    for (const Turn& turn : profile) {
        Ring ring;
        for (int i = 0; i < sides; ++i) {
            const double angle = TWO_PI * i / sides;
            ring.push_back(origin + dvec3(turn.radius * std::cos(angle), turn.along, turn.radius * std::sin(angle)));
        }
        rings.push_back(ring);
    }
    return loft(paint, rings);
}

Mesh dome(const PaintRef& paint, const dvec3& middle, double radius, int sides) {
    std::vector<Turn> profile;
    for (int i = -2; i <= 6; ++i) {
        const double angle = jMath::PI / 2.0 * i / 6.0;
        profile.push_back({radius * std::sin(angle), radius * std::cos(angle)});
    }
    const dmat4 upright({1, 0, 0}, {0, 0, 1}, {0, -1, 0}, middle);
    return revolve(paint, {}, profile, sides).transformed(upright);
}

Ring outline(const Section& section, int points) {
    Ring ring;
    const double exponent = 2.0 / section.roundness;
    for (int i = 0; i < points; ++i) {
        const double angle = TWO_PI * i / points;
        const double height = std::sin(angle) >= 0.0 ? section.up : section.down;
        ring.emplace_back(section.x + section.half_width * signedPower(std::cos(angle), exponent), section.y,
                          section.z + height * signedPower(std::sin(angle), exponent));
    }
    return ring;
}

Mesh body(const PaintRef& paint, const std::vector<Section>& sections, int points, bool capped) {
    std::vector<Ring> rings;
    for (const Section& section : sections) rings.push_back(outline(section, points));
    return loft(paint, rings, capped);
}

dvec3 chordPoint(const Rib& rib, double fraction) {
    return rib.leading_edge - dvec3(0.0, rib.chord * fraction, 0.0);
}

Rib between(const Rib& a, const Rib& b, double t) {
    return {a.leading_edge + (b.leading_edge - a.leading_edge) * t, a.chord + (b.chord - a.chord) * t,
            a.thickness + (b.thickness - a.thickness) * t, normalize(a.normal + (b.normal - a.normal) * t)};
}

Mesh wing(const PaintRef& paint, const Rib& a, const Rib& b, double from, double to) {
    return loft(paint, {ribRing(a, from, to), ribRing(b, from, to)});
}

Mesh wheel(const PaintRef& tyre, const PaintRef& rim, const dvec3& middle, double radius, double width) {
    const double half = width / 2.0;
    const dmat4 axle_along_x({0, 1, 0}, {1, 0, 0}, {0, 0, 1}, middle);
    Mesh mesh = revolve(tyre, {},
                        {{-half, radius * 0.6},
                         {-half, radius * 0.86},
                         {-half * 0.6, radius},
                         {half * 0.6, radius},
                         {half, radius * 0.86},
                         {half, radius * 0.6}},
                        20);
    mesh.add(revolve(rim, {}, {{-half * 1.04, radius * 0.55}, {half * 1.04, radius * 0.55}}, 16));
    return mesh.transformed(axle_along_x).facingOutward();
}
