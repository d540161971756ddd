// Solids to build models from. All are closed unless said otherwise and face outward.
#pragma once

#include "geometry/Mesh.h"

using Ring = std::vector<dvec3>;

/// A box between two corners.
Mesh box(const PaintRef& paint, const dvec3& lo, const dvec3& hi);
/// A box whose top (at hi.z) is drawn in by `inset` on every side.
Mesh taperedBox(const PaintRef& paint, const dvec3& lo, const dvec3& hi, double inset);
/// A skin through rings of equally many points, each ring a closed line; the ends are closed by fans when `capped`.
Mesh loft(const PaintRef& paint, const std::vector<Ring>& rings, bool capped = true);
/// A round bar or cone from a to b.
Mesh cylinder(const PaintRef& paint, const dvec3& a, const dvec3& b, double radius_a, double radius_b, int sides = 12);
inline Mesh cylinder(const PaintRef& paint, const dvec3& a, const dvec3& b, double radius, int sides = 12) {
    return cylinder(paint, a, b, radius, radius, sides);
}
/// A point of a turned profile: how far along the axis, and how far from it.
struct Turn {
    double along, radius;
};
/// A profile turned round the line through `origin` along Y; ends are closed where the radius is not 0.
Mesh revolve(const PaintRef& paint, const dvec3& origin, const std::vector<Turn>& profile, int sides = 24);
/// A dome: the upper part of a ball, closed below.
Mesh dome(const PaintRef& paint, const dvec3& middle, double radius, int sides = 16);

/// A cross-section at one place along Y.
struct Section {
    double y, z;             ///< middle
    double half_width;       ///< along X
    double up, down;         ///< heights above and below the middle
    double roundness = 2.0;  ///< exponent of the superellipse: 2 an ellipse, larger ever more of a box
    double x = 0.0;          ///< middle
};
/// The section's outline (superellipse |x/a|^n + |z/b|^n = 1), from the right upward.
Ring outline(const Section& section, int points = 24);
/// A body through sections.
Mesh body(const PaintRef& paint, const std::vector<Section>& sections, int points = 24, bool capped = true);

/// A wing's profile at one place: its leading edge, its chord (toward -Y), its thickness over its chord, and the
/// direction in which the thickness counts.
struct Rib {
    dvec3 leading_edge;
    double chord;
    double thickness;
    dvec3 normal{0.0, 0.0, 1.0};
};
/// A point on the mean line, at a fraction of the chord.
dvec3 chordPoint(const Rib& rib, double fraction);
/// The rib between two others; t = 0 is a.
Rib between(const Rib& a, const Rib& b, double t);
/// The piece of a wing between two ribs and two fractions of the chord, symmetrical profile of four digits.
Mesh wing(const PaintRef& paint, const Rib& a, const Rib& b, double from = 0.0, double to = 1.0);

/// A wheel whose axle runs along X.
Mesh wheel(const PaintRef& tyre, const PaintRef& rim, const dvec3& middle, double radius, double width);
