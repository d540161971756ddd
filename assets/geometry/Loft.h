// Bodies interpolated through tables of cross-sections, smooth along and across.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "geometry/Shapes.h"

using Point2 = std::array<double, 2>;  ///< (x, z)

/// The right half of a cross-section at one position along Y: points from the top's middle to the bottom's middle.
struct Station {
    double y;
    std::vector<Point2> half;
};

/// Half an oval around (0, z) as the points of a station, at `angles` degrees above the horizontal. `roundness` is the
/// exponent of the superellipse.
Station oval(double y, double z, double half_width, double up, double down, const std::vector<double>& angles,
             double roundness = 2.0);

/// The smooth body through stations with equal numbers of points. Lengthwise the interpolation does not overshoot the
/// table's values. Crosswise the outline is a smooth curve except at the `corners`.
class Hull {
public:
    Hull(std::vector<Station> stations, std::vector<std::size_t> corners = {}, int points_per_span = 3);

    std::vector<Point2> half(double y) const;  ///< outline of the right half, from top to bottom
    Ring ring(double y) const;                 ///< the whole outline, closed
    /// The outline of the half with all points above a height moved to the point at that height, so that cut rows match
    /// whole rows; and the width at that height.
    std::vector<Point2> halfBelow(double y, double z) const;
    double halfWidthAt(double y, double z) const { return halfBelow(y, z).front()[0]; }

    /// The skin between two positions along Y, `steps` rows long.
    Mesh skin(const PaintRef& paint, double from, double to, int steps, bool capped = false) const;
    /// The same, open above the height `rim`(y).
    Mesh skinBelow(const PaintRef& paint, double from, double to, int steps, double (*rim)(double y)) const;

private:
    std::vector<Point2> controls(double y) const;

    std::vector<Station> m_stations;
    std::vector<std::size_t> m_corners;
    int m_points_per_span;
};

/// A surface through open lines with equal numbers of points. It faces to the left of a line's direction when the next
/// line is ahead.
Mesh sheet(const PaintRef& paint, const std::vector<Ring>& lines);
/// An arch across Y at the position `y`, from its right foot over the top to its left foot: a superellipse with feet at
/// (+-half_width, foot).
Ring arch(double y, double half_width, double foot, double rise, double roundness, int points = 24);
/// The same faces with the opposite orientation.
Mesh insideOut(const Mesh& mesh);
/// A tube along a line of points, with flat ends.
Mesh tube(const PaintRef& paint, const Ring& line, double radius, int sides = 8);
/// A flat plate with a thickness. The outline is in a plane, counter-clockwise seen from the side of `normal`.
Mesh plate(const PaintRef& paint, const Ring& outline, const dvec3& normal, double thickness);
/// Smooth interpolation in a table of (position, value), positions ascending, without overshoot (Fritsch and Carlson,
/// 1980); constant outside.
double smoothly(const std::vector<Point2>& table, double at);
