// Upright solids over a plan, and what is built along their walls.
#pragma once

#include "geometry/Shapes.h"

/// A convex outline seen from above, counter-clockwise; heights are not used.
using Plan = std::vector<dvec3>;

Plan rectangle(double x0, double y0, double x1, double y1);
/// A rectangle with its corners cut off; `cuts` along both sides at the corners (x0, y0), (x1, y0), (x1, y1), (x0, y1).
Plan chamfered(double x0, double y0, double x1, double y1, const std::array<double, 4>& cuts);
/// The outline drawn in by `by` metres all round, or out when negative.
Plan inset(const Plan& plan, double by);
/// The plan at a height.
Ring atHeight(const Plan& plan, double z);

struct PrismPaints {
    PaintRef walls, top, bottom;
};
/// Walls from the plan at `z0` to the plan drawn in by `draw_in` at `z1`, closed above and below.
Mesh prism(const PrismPaints& paints, const Plan& plan, double z0, double z1, double draw_in = 0.0);
inline Mesh prism(const PaintRef& paint, const Plan& plan, double z0, double z1, double draw_in = 0.0) {
    return prism(PrismPaints{paint, paint, paint}, plan, z0, z1, draw_in);
}

/// A band of windows: glass from the plan at `z0` to the plan drawn in by `draw_in` at `z1`, with posts about
/// `spacing` apart that stand out before it, corners included.
struct WindowBand {
    Plan plan;
    double z0, z1, draw_in;
    double spacing = 1.2, post = 0.12;
};
Mesh windowBand(const PaintRef& glass, const PaintRef& frame, const WindowBand& band);

/// A thin wall along a path of points, `height` tall, seen from both sides in a double-sided paint: railings and nets.
Mesh fence(const PaintRef& paint, const std::vector<dvec3>& path, double height);
/// A thin bar of three sides, open at its ends.
Mesh bar(const PaintRef& paint, const dvec3& a, const dvec3& b, double width);
/// A round bar or cone from a to b of few triangles; closed at b, and at a when `both`.
Mesh drum(const PaintRef& paint, const dvec3& a, const dvec3& b, double radius_a, double radius_b, int sides = 8,
          bool both = false);
/// A ball on a foot, open below.
Mesh ball(const PaintRef& paint, const dvec3& middle, double radius, int sides = 9);

/// The triangles whose middles lie between `from` and `to` along Y.
Mesh slice(const Mesh& mesh, double from, double to);
