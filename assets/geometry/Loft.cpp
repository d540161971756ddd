// Interpolated hulls, sheets, tubes and plates.
#include "geometry/Loft.h"

#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"

namespace {

/// Tangent at an inner knot of a monotone cubic: the weighted harmonic mean of the adjacent slopes.
double tangent(double step_a, double slope_a, double step_b, double slope_b) {
    if (slope_a * slope_b <= 0.0) return 0.0;
    const double wa = 2.0 * step_b + step_a, wb = step_b + 2.0 * step_a;
    return (wa + wb) / (wa / slope_a + wb / slope_b);
}

double slopeBetween(const Point2& a, const Point2& b) {
    return (b[1] - a[1]) / (b[0] - a[0]);
}

double tangentAt(const std::vector<Point2>& table, std::size_t i) {
    const std::size_t last = table.size() - 1;
    if (i == 0) return slopeBetween(table[0], table[1]);
    if (i == last) return slopeBetween(table[last - 1], table[last]);
    return tangent(table[i][0] - table[i - 1][0], slopeBetween(table[i - 1], table[i]), table[i + 1][0] - table[i][0],
                   slopeBetween(table[i], table[i + 1]));
}

Point2 operator+(const Point2& a, const Point2& b) {
    return {a[0] + b[0], a[1] + b[1]};
}
Point2 operator*(const Point2& a, double s) {
    return {a[0] * s, a[1] * s};
}
double distance(const Point2& a, const Point2& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1]);
}

/// The direction of the outline at a control point: horizontal at both ends, one-sided at corners.
Point2 direction(const std::vector<Point2>& p, std::size_t i, bool corner, bool outgoing) {
    const std::size_t last = p.size() - 1;
    if (i == 0) return {1.0, 0.0};
    if (i == last) return {-1.0, 0.0};
    const Point2 in = p[i] + p[i - 1] * -1.0, out = p[i + 1] + p[i] * -1.0;
    const double a = std::max(1e-6, distance(p[i], p[i - 1])), b = std::max(1e-6, distance(p[i + 1], p[i]));
    if (corner) return outgoing ? out * (1.0 / b) : in * (1.0 / a);
    const Point2 mean = in * (b / a / (a + b)) + out * (a / b / (a + b));
    return mean * (1.0 / std::max(1e-6, std::hypot(mean[0], mean[1])));
}

Point2 hermite(const Point2& a, const Point2& da, const Point2& b, const Point2& db, double t) {
    const double t2 = t * t, t3 = t2 * t;
    return a * (2 * t3 - 3 * t2 + 1) + da * (t3 - 2 * t2 + t) + b * (3 * t2 - 2 * t3) + db * (t3 - t2);
}

}  // namespace

double smoothly(const std::vector<Point2>& table, double at) {
    if (at <= table.front()[0]) return table.front()[1];
    if (at >= table.back()[0]) return table.back()[1];
    std::size_t i = 0;
    while (table[i + 1][0] < at) ++i;
    const double step = table[i + 1][0] - table[i][0], t = (at - table[i][0]) / step;
    const Point2 value = hermite({0.0, table[i][1]}, {0.0, tangentAt(table, i) * step}, {0.0, table[i + 1][1]},
                                 {0.0, tangentAt(table, i + 1) * step}, t);
    return value[1];
}

Station oval(double y, double z, double half_width, double up, double down, const std::vector<double>& angles,
             double roundness) {
    Station station{y, {}};
    for (const double angle : angles) {
        const double c = std::cos(angle * jMath::DEG2RAD), s = std::sin(angle * jMath::DEG2RAD);
        // At vertical directions the cosine is 0 except for rounding.
        const double x = std::abs(c) < 1e-9 ? 0.0 : std::pow(c, 2.0 / roundness);
        const double rise = std::copysign(std::pow(std::abs(s), 2.0 / roundness), s);
        station.half.push_back({half_width * x, z + (s > 0.0 ? up : down) * rise});
    }
    return station;
}

Hull::Hull(std::vector<Station> stations, std::vector<std::size_t> corners, int points_per_span)
    : m_stations(std::move(stations)), m_corners(std::move(corners)), m_points_per_span(points_per_span) {
    std::sort(m_stations.begin(), m_stations.end(), [](const Station& a, const Station& b) { return a.y < b.y; });
}

std::vector<Point2> Hull::controls(double y) const {
    std::vector<Point2> points;
    for (std::size_t i = 0; i < m_stations.front().half.size(); ++i) {
        Point2 point{};
        for (std::size_t axis = 0; axis < 2; ++axis) {
            std::vector<Point2> path;
            for (const Station& station : m_stations) path.push_back({station.y, station.half[i][axis]});
            point[axis] = smoothly(path, y);
        }
        points.push_back(point);
    }
    return points;
}

std::vector<Point2> Hull::half(double y) const {
    const std::vector<Point2> p = controls(y);
    const auto isCorner = [&](std::size_t i) {
        return std::find(m_corners.begin(), m_corners.end(), i) != m_corners.end();
    };
    std::vector<Point2> line;
    for (std::size_t i = 0; i + 1 < p.size(); ++i) {
        const double span = distance(p[i], p[i + 1]);
        const Point2 from = direction(p, i, isCorner(i), true) * span;
        const Point2 to = direction(p, i + 1, isCorner(i + 1), false) * span;
        for (int s = 0; s < m_points_per_span; ++s) {
            line.push_back(hermite(p[i], from, p[i + 1], to, static_cast<double>(s) / m_points_per_span));
        }
    }
    line.push_back(p.back());
    return line;
}

Ring Hull::ring(double y) const {
    const std::vector<Point2> right = half(y);
    Ring ring;
    for (const Point2& p : right) ring.emplace_back(p[0], y, p[1]);
    for (std::size_t i = right.size() - 2; i > 0; --i) ring.emplace_back(-right[i][0], y, right[i][1]);
    return ring;
}

std::vector<Point2> Hull::halfBelow(double y, double z) const {
    const std::vector<Point2> whole = half(y);
    std::size_t first = 0;
    while (first + 1 < whole.size() && whole[first + 1][1] > z) ++first;
    const Point2 &above = whole[first], &below = whole[std::min(first + 1, whole.size() - 1)];
    const double t = std::clamp((above[1] - z) / std::max(1e-9, above[1] - below[1]), 0.0, 1.0);
    std::vector<Point2> rest = whole;
    std::fill(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(first) + 1, above * (1.0 - t) + below * t);
    return rest;
}

Mesh Hull::skin(const PaintRef& paint, double from, double to, int steps, bool capped) const {
    std::vector<Ring> rings;
    for (int i = 0; i <= steps; ++i) rings.push_back(ring(from + (to - from) * i / steps));
    return loft(paint, rings, capped);
}

Mesh Hull::skinBelow(const PaintRef& paint, double from, double to, int steps, double (*rim)(double)) const {
    std::vector<Ring> lines;
    for (int i = 0; i <= steps; ++i) {
        const double y = from + (to - from) * i / steps;
        const std::vector<Point2> right = halfBelow(y, rim(y));
        Ring line;
        for (const Point2& p : right) line.emplace_back(p[0], y, p[1]);
        for (std::size_t k = right.size() - 1; k-- > 0;) line.emplace_back(-right[k][0], y, right[k][1]);
        lines.push_back(line);
    }
    return sheet(paint, lines).facingOutward();
}

Ring arch(double y, double half_width, double foot, double rise, double roundness, int points) {
    Ring ring;
    for (int i = 0; i <= points; ++i) {
        const double a = jMath::PI * i / points, c = std::cos(a);
        ring.emplace_back(half_width * std::copysign(std::pow(std::abs(c), 2.0 / roundness), c), y,
                          foot + rise * std::pow(std::max(0.0, std::sin(a)), 2.0 / roundness));
    }
    return ring;
}

Mesh sheet(const PaintRef& paint, const std::vector<Ring>& lines) {
    Mesh mesh;
    for (std::size_t r = 0; r + 1 < lines.size(); ++r) {
        for (std::size_t i = 0; i + 1 < lines[r].size(); ++i) {
            mesh.quad(paint, lines[r][i], lines[r][i + 1], lines[r + 1][i + 1], lines[r + 1][i]);
        }
    }
    return mesh;
}

Mesh insideOut(const Mesh& mesh) {
    Mesh result;
    for (const Mesh::Surface& s : mesh.surfaces()) {
        for (const Mesh::Triangle& t : s.triangles) result.triangle(s.paint, t[0], t[2], t[1]);
    }
    return result;
}

Mesh tube(const PaintRef& paint, const Ring& line, double radius, int sides) {
    std::vector<Ring> rings;
    dvec3 across;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const dvec3 along = normalize(line[std::min(i + 1, line.size() - 1)] - line[i == 0 ? 0 : i - 1]);
        // The first direction of each ring is that of the previous ring, made perpendicular again: the tube does not
        // twist.
        if (i == 0) across = std::abs(along.z) < 0.9 ? dvec3(0, 0, 1) : dvec3(1, 0, 0);
        across = normalize(across - along * dot(across, along));
        const dvec3 other = cross(along, across);
        Ring ring;
        for (int k = 0; k < sides; ++k) {
            const double angle = 2.0 * jMath::PI * k / sides;
            ring.push_back(line[i] + (across * std::cos(angle) + other * std::sin(angle)) * radius);
        }
        rings.push_back(ring);
    }
    return loft(paint, rings);
}

Mesh plate(const PaintRef& paint, const Ring& outline, const dvec3& normal, double thickness) {
    Ring front, back;
    for (const dvec3& p : outline) {
        front.push_back(p + normalize(normal) * (thickness / 2.0));
        back.push_back(p - normalize(normal) * (thickness / 2.0));
    }
    return loft(paint, {back, front});
}
