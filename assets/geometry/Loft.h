// Bodies through tables of cross-sections, smooth along and across.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "geometry/Shapes.h"

using Point2 = std::array<double, 2>;  ///< (x, z)

/// A cross-section's right half at one place along Y: points from the top's middle round to the bottom's middle.
struct Station {
    double y;
    std::vector<Point2> half;
};

/// Half an oval round (0, z) as a station's points: at `angles` degrees above the horizontal. `roundness` is the
/// exponent of the superellipse.
Station oval(double y, double z, double half_width, double up, double down, const std::vector<double>& angles,
             double roundness = 2.0);

/// The smooth body through stations of equally many points. Along the body a point's path
/// never swings beyond the table's values; across, the outline is a smooth curve save at the `corners`.
class Hull {
public:
    Hull(std::vector<Station> stations, std::vector<std::size_t> corners = {}, int points_per_span = 3);

    std::vector<Point2> half(double y) const;  ///< the right half's outline, from the top to the bottom
    Ring ring(double y) const;                 ///< the whole outline, closed
    /// The half's outline with what lies above a height drawn together into the point at that height, so that cut rows
    /// match whole ones; and the width there.
    std::vector<Point2> halfBelow(double y, double z) const;
    double halfWidthAt(double y, double z) const { return halfBelow(y, z).front()[0]; }

    /// The skin between two places, `steps` rows long.
    Mesh skin(const PaintRef& paint, double from, double to, int steps, bool capped = false) const;
    /// The same, open above the height `rim`(y).
    Mesh skinBelow(const PaintRef& paint, double from, double to, int steps, double (*rim)(double y)) const;

private:
    std::vector<Point2> controls(double y) const;

    std::vector<Station> m_stations;
    std::vector<std::size_t> m_corners;
    int m_points_per_span;
};

/// A surface through open lines of equally many points; it faces to the left of the way along a line, seen with the
/// next line ahead.
Mesh sheet(const PaintRef& paint, const std::vector<Ring>& lines);
/// An arch across at a place along Y, from its right foot over the top to its left one: a superellipse on feet at
/// (+-half_width, foot).
Ring arch(double y, double half_width, double foot, double rise, double roundness, int points = 24);
/// The same faces looking the other way.
Mesh insideOut(const Mesh& mesh);
/// A tube along a line of points, round ends closed flat.
Mesh tube(const PaintRef& paint, const Ring& line, double radius, int sides = 8);
/// A flat plate of a thickness: an outline in a plane, counter-clockwise seen from the side that `normal` points to.
Mesh plate(const PaintRef& paint, const Ring& outline, const dvec3& normal, double thickness);
/// A value that runs smoothly through a table of (place, value), places in ascending order, without swinging beyond
/// neighbouring values (Fritsch and Carlson, 1980); constant outside.
double smoothly(const std::vector<Point2>& table, double at);
