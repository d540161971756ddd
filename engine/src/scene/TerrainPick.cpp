// Intersection of segments with the ground: the segment is halved until each piece is above, below or within a few
// cells of the ground, and the triangles of those cells are solved. Called by intersection queries at any point of the
// frame.
#include "scene/TerrainPick.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "engine/globe/EllipsoidModel.h"
#include "engine/scene/ElevationRaster.h"

namespace {

constexpr int MAX_DEPTH = 48;               // halvings: 1e7 m down to less than a micrometre
constexpr double SMALL_SPAN = 2.0;          // cells per direction that are solved directly
constexpr double FLAT_SPAN = 0.002;         // degrees over which a chord sags by less than 1 mm
constexpr double MAX_PIECE_LENGTH = 500e3;  // metres; the bounds of a longer piece are too loose to be useful
constexpr double MAX_PIECE_WIDTH = 10.0;    // degrees of longitude, likewise
constexpr double HEIGHT_TOLERANCE = 1e-7;   // metres
constexpr double LINE_TOLERANCE = 1e-7;     // cells

/// A point of the segment in the raster's coordinates.
struct TrackPoint {
    double t;  // 0 at the segment's start, 1 at its end
    PostPlace place;
    double height;  // above the ellipsoid, metres

    double side() const { return place.column - place.row; }  // integers are the cells' diagonals
};

/// A triangle's plane and its cell.
struct Ground {
    GroundPlane plane;
    int column, row;

    double under(const TrackPoint& p) const { return plane.at(p.place.column - column, p.place.row - row); }
    double heightOver(const TrackPoint& p) const { return p.height - under(p); }
};

class GroundPick {
public:
    GroundPick(const ElevationRaster& raster, const dvec3& from, const dvec3& to)
        : m_raster(raster), m_from(from), m_step(to - from), m_length(length(m_step)) {}

    bool run(double& t) const;

private:
    bool clipToHeights(double& first, double& last) const;
    TrackPoint at(double t) const;
    bool search(const TrackPoint& a, const TrackPoint& b, int depth, double& t) const;
    bool mayMeet(const TrackPoint& a, const TrackPoint& b) const;
    bool solvePiece(const TrackPoint& a, const TrackPoint& b, double& t) const;
    bool solvePlane(const Ground& ground, TrackPoint a, TrackPoint b, double& t) const;
    TrackPoint refine(TrackPoint p, const TrackPoint& a, const TrackPoint& b, int family) const;
    bool findGround(const TrackPoint& a, const TrackPoint& b, Ground& ground) const;

    const ElevationRaster& m_raster;
    const EllipsoidModel m_ellipsoid{};
    const dvec3 m_from, m_step;
    const double m_length;
};

bool GroundPick::run(double& t) const {
    if (!(m_length > 0.0) || !std::isfinite(m_length)) return false;
    double first = 0.0, last = 1.0;
    return clipToHeights(first, last) && search(at(first), at(last), MAX_DEPTH, t);
}

/// Cuts off the part outside a sphere around all of the ground.
bool GroundPick::clipToHeights(double& first, double& last) const {
    const double radius = EllipsoidModel::SEMI_MAJOR + std::max(m_raster.getRange().max, 0.0f) + 1.0;
    const double a = m_length * m_length, half_b = dot(m_from, m_step), c = length2(m_from) - radius * radius;
    if (c <= 0.0 && length2(m_from + m_step) <= radius * radius) return true;
    const double discriminant = half_b * half_b - a * c;
    if (discriminant < 0.0) return false;
    const double root = std::sqrt(discriminant);
    first = std::max(0.0, (-half_b - root) / a);
    last = std::min(1.0, (-half_b + root) / a);
    return first < last;
}

TrackPoint GroundPick::at(double t) const {
    const dvec3 geo = m_ellipsoid.toWGS(m_from + m_step * t);
    return {t, m_raster.toPosts(geo.x, geo.y), geo.z};
}

bool GroundPick::search(const TrackPoint& a, const TrackPoint& b, int depth, double& t) const {
    if (!mayMeet(a, b)) return false;
    const double columns = std::fabs(a.place.column - b.place.column), rows = std::fabs(a.place.row - b.place.row);
    const bool small = columns <= SMALL_SPAN && rows <= SMALL_SPAN && columns * m_raster.getLonStep() <= FLAT_SPAN &&
                       rows * m_raster.getLatStep() <= FLAT_SPAN;
    if (small) return solvePiece(a, b, t);
    if (depth == 0) return false;
    const TrackPoint middle = at(0.5 * (a.t + b.t));
    return search(a, middle, depth - 1, t) || search(middle, b, depth - 1, t);
}

/// False when the piece cannot meet the ground. Between its ends longitude is monotonic; height is at most that of the
/// higher end (it is convex along a line) and at least that of the lower end minus the chord's sag, L^2 / (8 R);
/// latitude leaves the range of the ends by at most the bulge of a great circle, dlon^2 sin cos / 8 in radians.
bool GroundPick::mayMeet(const TrackPoint& a, const TrackPoint& b) const {
    const double piece = (b.t - a.t) * m_length;
    const double lon_span = std::fabs(a.place.column - b.place.column) * m_raster.getLonStep();
    if (piece > MAX_PIECE_LENGTH || lon_span > MAX_PIECE_WIDTH) return true;
    const double sag = piece * piece / 5.0e7, bulge = 0.0018 * lon_span * lon_span / m_raster.getLatStep() + 1e-6;
    const double left = std::min(a.place.column, b.place.column), right = std::max(a.place.column, b.place.column);
    const double bottom = std::min(a.place.row, b.place.row) - bulge, top = std::max(a.place.row, b.place.row) + bulge;
    const int last_column = m_raster.getNumColumns() - 2, last_row = m_raster.getNumRows() - 2;
    if (right < -1.0 || top < -1.0 || left > last_column + 2 || bottom > last_row + 2) return false;
    const auto cell = [](double place, int last) { return static_cast<int>(std::clamp(place, 0.0, double(last))); };
    const HeightRange ground = m_raster.getRange(cell(left, last_column), cell(bottom, last_row),
                                                 cell(right, last_column), cell(top, last_row));
    return !ground.isEmpty() && std::min(a.height, b.height) - sag <= ground.max + 1e-3 &&
           std::max(a.height, b.height) >= ground.min - 1e-3;
}

/// The lines where the ground's slope changes: whole columns (family 0), whole rows (1) and the diagonals (2).
double lineCoordinate(const TrackPoint& p, int family) {
    return family == 0 ? p.place.column : family == 1 ? p.place.row : p.side();
}

/// Moves p along the piece onto its line; the piece is so short that one or two steps suffice.
TrackPoint GroundPick::refine(TrackPoint p, const TrackPoint& a, const TrackPoint& b, int family) const {
    const double rate = (lineCoordinate(b, family) - lineCoordinate(a, family)) / (b.t - a.t);
    for (int i = 0; i < 3; ++i) {
        const double off = std::round(lineCoordinate(p, family)) - lineCoordinate(p, family);
        if (std::fabs(off) <= LINE_TOLERANCE) break;
        p = at(std::clamp(p.t + off / rate, a.t, b.t));
    }
    return p;
}

/// Splits the piece at the borders of triangles, so that the ground below each part is one plane.
bool GroundPick::solvePiece(const TrackPoint& a, const TrackPoint& b, double& t) const {
    struct Cut {
        double t;
        int family;
    };
    std::array<Cut, 16> cuts;  // a span of two cells crosses at most 3 + 3 lines and 5 diagonals
    std::size_t count = 0;
    for (int family = 0; family < 3; ++family) {
        const double from = lineCoordinate(a, family), to = lineCoordinate(b, family);
        const double low = std::min(from, to), high = std::max(from, to);
        for (double line = std::floor(low) + 1.0; line < high && count < cuts.size(); line += 1.0) {
            cuts[count++] = {a.t + (b.t - a.t) * (line - from) / (to - from), family};
        }
    }
    std::sort(cuts.begin(), cuts.begin() + count, [](const Cut& l, const Cut& r) { return l.t < r.t; });
    TrackPoint start = a;
    double end_above = 0.0;  // height above ground at the end of the previous part; 0 when it had no ground
    for (std::size_t i = 0; i <= count; ++i) {
        const TrackPoint end = i == count ? b : refine(at(cuts[i].t), a, b, cuts[i].family);
        Ground ground;
        if (!findGround(start, end, ground)) {
            end_above = 0.0;
        } else {
            const double above = ground.heightOver(start);
            // Both planes contain the line between them; a segment next to it could pass between them by a rounding
            // error.
            if (end_above * above < 0.0) return t = start.t, true;
            if (solvePlane(ground, start, end, t)) return true;
            end_above = ground.heightOver(end);
        }
        start = end;
    }
    return false;
}

/// The ground below the middle of a part; false when there is none.
bool GroundPick::findGround(const TrackPoint& a, const TrackPoint& b, Ground& ground) const {
    const PostPlace middle{0.5 * (a.place.column + b.place.column), 0.5 * (a.place.row + b.place.row)};
    if (!m_raster.isInside(middle)) return false;
    const int column = std::clamp(static_cast<int>(middle.column), 0, m_raster.getNumColumns() - 2);
    const int row = std::clamp(static_cast<int>(middle.row), 0, m_raster.getNumRows() - 2);
    const bool south_east = middle.column - column >= middle.row - row;
    ground = {planeOf(m_raster.getCell(column, row), south_east), column, row};
    return !std::isnan(ground.plane.base);
}

/// Root of the height above a plane between two points, by false position with the Illinois rule (Dowell and Jarratt,
/// BIT 11, 1971): the function is nearly linear, so that the first or second step is exact.
bool GroundPick::solvePlane(const Ground& ground, TrackPoint a, TrackPoint b, double& t) const {
    double fa = ground.heightOver(a), fb = ground.heightOver(b);
    if (std::fabs(fa) <= HEIGHT_TOLERANCE) return t = a.t, true;
    if (std::fabs(fb) <= HEIGHT_TOLERANCE) return t = b.t, true;
    if (fa * fb > 0.0) return false;
    t = a.t;
    for (int i = 0; i < 60; ++i) {
        t = (a.t * fb - b.t * fa) / (fb - fa);
        const TrackPoint p = at(t);
        const double f = ground.heightOver(p);
        if (std::fabs(f) <= HEIGHT_TOLERANCE) break;
        if (f * fb < 0.0) {
            a = b;
            fa = fb;
        } else {
            fa *= 0.5;
        }
        b = p;
        fb = f;
    }
    return true;
}

}  // namespace

bool pickGround(const ElevationRaster& raster, const dvec3& from, const dvec3& to, dvec3& hit) {
    double t = 0.0;
    if (!GroundPick(raster, from, to).run(t)) return false;
    hit = from + (to - from) * t;
    return true;
}
