// Solids for models. All are closed unless stated otherwise, with faces outward.
#pragma once

#include "geometry/Mesh.h"

using Ring = std::vector<dvec3>;

/// A box between two corners.
Mesh box(const PaintRef& paint, const dvec3& lo, const dvec3& hi);
/// A box with a top (at hi.z) that is smaller by `inset` on every side.
Mesh taperedBox(const PaintRef& paint, const dvec3& lo, const dvec3& hi, double inset);
/// A skin through closed rings with equal numbers of points; closed at the ends when `capped`.
Mesh loft(const PaintRef& paint, const std::vector<Ring>& rings, bool capped = true);
/// A round bar or cone from a to b.
Mesh cylinder(const PaintRef& paint, const dvec3& a, const dvec3& b, double radius_a, double radius_b, int sides = 12);
inline Mesh cylinder(const PaintRef& paint, const dvec3& a, const dvec3& b, double radius, int sides = 12) {
    return cylinder(paint, a, b, radius, radius, sides);
}
/// A point of a profile for revolution: position along the axis and distance from it.
struct Turn {
    double along, radius;
};
/// A profile revolved about the line through `origin` along Y; closed at ends with a radius other than 0.
Mesh revolve(const PaintRef& paint, const dvec3& origin, const std::vector<Turn>& profile, int sides = 24);
/// A dome: the upper half of a sphere, closed at the bottom.
Mesh dome(const PaintRef& paint, const dvec3& middle, double radius, int sides = 16);

/// A cross-section at one position along Y.
struct Section {
    double y, z;             ///< middle
    double half_width;       ///< along X
    double up, down;         ///< heights above and below the middle
    double roundness = 2.0;  ///< exponent of the superellipse: 2 is an ellipse, larger values approach a rectangle
    double x = 0.0;          ///< middle
};
/// The section's outline (superellipse |x/a|^n + |z/b|^n = 1), from the right upward.
Ring outline(const Section& section, int points = 24);
/// A body through sections.
Mesh body(const PaintRef& paint, const std::vector<Section>& sections, int points = 24, bool capped = true);

/// A wing's profile at one position: its leading edge, its chord (toward -Y), its thickness relative to the chord, and
/// the direction of the thickness.
struct Rib {
    dvec3 leading_edge;
    double chord;
    double thickness;
    dvec3 normal{0.0, 0.0, 1.0};
};
/// A point on the mean line at a fraction of the chord.
dvec3 chordPoint(const Rib& rib, double fraction);
/// Interpolates between two ribs; t = 0 is a.
Rib between(const Rib& a, const Rib& b, double t);
/// The piece of a wing between two ribs and two fractions of the chord, with a symmetrical four-digit profile.
Mesh wing(const PaintRef& paint, const Rib& a, const Rib& b, double from = 0.0, double to = 1.0);

/// A wheel whose axle runs along X.
Mesh wheel(const PaintRef& tyre, const PaintRef& rim, const dvec3& middle, double radius, double width);
