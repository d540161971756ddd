// Upright solids over a plan, and parts along their walls.
#pragma once

#include "geometry/Shapes.h"

/// A convex outline seen from above, counter-clockwise; heights are not used.
using Plan = std::vector<dvec3>;

Plan rectangle(double x0, double y0, double x1, double y1);
/// A rectangle with its corners cut off; `cuts` along both sides at the corners (x0, y0), (x1, y0), (x1, y1), (x0, y1).
Plan chamfered(double x0, double y0, double x1, double y1, const std::array<double, 4>& cuts);
/// The outline moved inward by `by` metres on all sides; outward when negative.
Plan inset(const Plan& plan, double by);
/// The plan at a height.
Ring atHeight(const Plan& plan, double z);

struct PrismPaints {
    PaintRef walls, top, bottom;
};
/// Walls from the plan at `z0` to the plan inset by `draw_in` at `z1`, closed at top and bottom.
Mesh prism(const PrismPaints& paints, const Plan& plan, double z0, double z1, double draw_in = 0.0);
inline Mesh prism(const PaintRef& paint, const Plan& plan, double z0, double z1, double draw_in = 0.0) {
    return prism(PrismPaints{paint, paint, paint}, plan, z0, z1, draw_in);
}

/// A band of windows: glass from the plan at `z0` to the plan inset by `draw_in` at `z1`, with projecting posts at a
/// spacing of about `spacing` and at the corners.
struct WindowBand {
    Plan plan;
    double z0, z1, draw_in;
    double spacing = 1.2, post = 0.12;
};
Mesh windowBand(const PaintRef& glass, const PaintRef& frame, const WindowBand& band);

/// A thin wall along a path of points, `height` tall, for railings and nets. The paint is double-sided.
Mesh fence(const PaintRef& paint, const std::vector<dvec3>& path, double height);
/// A thin triangular bar, open at its ends.
Mesh bar(const PaintRef& paint, const dvec3& a, const dvec3& b, double width);
/// A round bar or cone from a to b with few triangles; closed at b, and also at a when `both`.
Mesh drum(const PaintRef& paint, const dvec3& a, const dvec3& b, double radius_a, double radius_b, int sides = 8,
          bool both = false);
/// A sphere open at the bottom, for mounting on a foot.
Mesh ball(const PaintRef& paint, const dvec3& middle, double radius, int sides = 9);

/// The triangles with centres between `from` and `to` along Y.
Mesh slice(const Mesh& mesh, double from, double to);
