// Finds the height with the largest level area of a surface and stores which grid cells are closed there.
#include "mirror/LevelTop.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

#include "engine/scene/MeshData.h"

namespace {

constexpr double MIN_AREA = 2000.0;   // m^2
constexpr double FLAT = 0.995;        // minimum cosine of the slope of a level triangle
constexpr double SLACK = 0.3;         // metres of allowed unevenness
constexpr double MIN_DISTANCE = 1.0;  // metres; closer to the eye the picture's near plane may clip it
constexpr double MIN_CELL = 1.0;      // metres
constexpr int MAX_CELLS = 1024;       // per side

using Triangle = std::array<dvec3, 3>;

std::vector<Triangle> findFlat(const MeshSurface& surface) {
    std::vector<Triangle> flat;
    for (std::size_t i = 0; i + 2 < surface.indices.size(); i += 3) {
        Triangle triangle;
        for (std::size_t k = 0; k < 3; ++k) {
            const auto& p = surface.positions[surface.indices[i + k]];
            triangle[k] = {p[0], p[1], p[2]};
        }
        const dvec3 normal = cross(triangle[1] - triangle[0], triangle[2] - triangle[0]);
        if (normal.z > FLAT * length(normal)) flat.push_back(triangle);
    }
    return flat;
}

double areaOf(const Triangle& t) {
    return 0.5 * length(cross(t[1] - t[0], t[2] - t[0]));
}

/// Keeps the triangles at the height with the largest total area; returns this height.
double keepHeight(std::vector<Triangle>& flat) {
    std::map<long, double> areas;
    for (const Triangle& t : flat) areas[std::lround(t[0].z / SLACK)] += areaOf(t);
    const auto most =
        std::max_element(areas.begin(), areas.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
    const double height = most == areas.end() ? 0.0 : static_cast<double>(most->first) * SLACK;
    std::erase_if(flat, [height](const Triangle& t) {
        return std::any_of(t.begin(), t.end(), [height](const dvec3& p) { return std::fabs(p.z - height) > SLACK; });
    });
    return height;
}

/// A rectangle in plan view.
struct Area {
    double left = std::numeric_limits<double>::infinity(), bottom = left, right = -left, top = -left;

    void add(const dvec3& p) {
        left = std::min(left, p.x);
        bottom = std::min(bottom, p.y);
        right = std::max(right, p.x);
        top = std::max(top, p.y);
    }
};

/// Left and right end of the part of the line at `y` inside the triangle, in plan view; left > right where there is
/// none.
std::pair<double, double> spanAt(const Triangle& triangle, double y) {
    Area span;
    for (std::size_t k = 0; k < 3; ++k) {
        const dvec3 &a = triangle[k], &b = triangle[(k + 1) % 3];
        if ((a.y < y) != (b.y < y)) span.add(a + (b - a) * ((y - a.y) / (b.y - a.y)));
    }
    return {span.left, span.right};
}

}  // namespace

std::unique_ptr<LevelTop> LevelTop::find(const MeshSurface& surface) {
    std::vector<Triangle> flat = findFlat(surface);
    const double height = keepHeight(flat);
    double size = 0.0;
    Area bounds;
    for (const Triangle& t : flat) {
        size += areaOf(t);
        for (const dvec3& p : t) bounds.add(p);
    }
    if (size < MIN_AREA) return nullptr;

    std::unique_ptr<LevelTop> top(new LevelTop);
    const double wide = bounds.right - bounds.left, deep = bounds.top - bounds.bottom;
    top->m_height = height;
    top->m_left = bounds.left;
    top->m_bottom = bounds.bottom;
    top->m_cell = std::max({MIN_CELL, wide / MAX_CELLS, deep / MAX_CELLS});
    top->m_columns = static_cast<int>(wide / top->m_cell) + 1;
    top->m_rows = static_cast<int>(deep / top->m_cell) + 1;
    std::vector<char> closed(static_cast<std::size_t>(top->m_columns) * static_cast<std::size_t>(top->m_rows));
    for (const Triangle& t : flat) top->close(t, closed);
    top->sum(closed);
    return top;
}

void LevelTop::close(const Triangle& triangle, std::vector<char>& closed) const {
    constexpr double HAIR = 1e-3;  // metres; avoids gaps between triangles that share an edge
    const auto [first, last] = std::minmax({triangle[0].y, triangle[1].y, triangle[2].y});
    const int from_row = static_cast<int>((first - m_bottom) / m_cell);
    const int to_row = std::min(static_cast<int>((last - m_bottom) / m_cell), m_rows - 1);
    for (int row = from_row; row <= to_row; ++row) {
        const auto [left, right] = spanAt(triangle, m_bottom + (row + 0.5) * m_cell);
        if (left > right) continue;
        // Cells whose centres are inside.
        const int from = std::max(static_cast<int>(std::ceil((left - HAIR - m_left) / m_cell - 0.5)), 0);
        const int to = std::min(static_cast<int>(std::floor((right + HAIR - m_left) / m_cell - 0.5)), m_columns - 1);
        for (int column = from; column <= to; ++column) closed[cellAt(column, row)] = 1;
    }
}

void LevelTop::sum(const std::vector<char>& closed) {
    const auto isClosed = [&](int column, int row) {
        return column >= 0 && row >= 0 && column < m_columns && row < m_rows && closed[cellAt(column, row)];
    };
    m_open.assign(static_cast<std::size_t>(m_columns + 1) * static_cast<std::size_t>(m_rows + 1), 0);
    for (int row = 0; row < m_rows; ++row) {
        int open = 0;
        for (int column = 0; column < m_columns; ++column) {
            bool covers = true;  // true when all its neighbours are closed too
            for (int k = 0; k < 9; ++k) covers = covers && isClosed(column + k % 3 - 1, row + k / 3 - 1);
            open += covers ? 0 : 1;
            m_open[cornerAt(column + 1, row + 1)] = m_open[cornerAt(column + 1, row)] + open;
        }
    }
}

double LevelTop::getDistance(const dvec3& eye) const {
    const double above = eye.z - m_height;
    if (above < SLACK + MIN_DISTANCE) return std::numeric_limits<double>::infinity();
    const double x = std::clamp(eye.x, m_left, m_left + m_columns * m_cell) - eye.x;
    const double y = std::clamp(eye.y, m_bottom, m_bottom + m_rows * m_cell) - eye.y;
    return length(dvec3(x, y, above));
}

bool LevelTop::hides(const dvec3& eye, const std::array<dvec3, 8>& corners) const {
    // Lines of sight must enter and leave the layer around the top through closed cells.
    Area passed;
    for (const dvec3& corner : corners) {
        if (corner.z > m_height - SLACK) return false;
        for (const double height : {m_height - SLACK, m_height + SLACK}) {
            passed.add(eye + (corner - eye) * ((eye.z - height) / (eye.z - corner.z)));
        }
    }
    const double left = (passed.left - m_left) / m_cell, right = (passed.right - m_left) / m_cell + 1.0;
    const double bottom = (passed.bottom - m_bottom) / m_cell, top = (passed.top - m_bottom) / m_cell + 1.0;
    const bool is_inside = left >= 0.0 && bottom >= 0.0 && right <= m_columns && top <= m_rows;
    if (!is_inside || !(left < right && bottom < top)) return false;
    const auto openTo = [&](double column, double row) {
        return m_open[cornerAt(static_cast<int>(column), static_cast<int>(row))];
    };
    return openTo(right, top) - openTo(left, top) - openTo(right, bottom) + openTo(left, bottom) == 0;
}
