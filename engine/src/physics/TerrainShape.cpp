// Cells of terrain near a body, and their triangles for Bullet's queries.
#include "physics/TerrainShape.h"

#include <algorithm>

#include "engine/globe/EllipsoidModel.h"
#include "engine/scene/ElevationRaster.h"
#include "physics/Convert.h"

namespace {

constexpr int SLACK = 4;          // cells beyond the query, so that the window stays valid while the body moves
constexpr int MAX_CELLS = 512;    // along a window's edge
constexpr double CORNERS = 1e-3;  // cells: the corners of a box bound what lies between them but for the globe's curve

/// Geodetic bounds of a geocentric box; longitudes run on from the first corner's, without a jump at 180 degrees.
BoundBox toGeodetic(const btVector3& lo, const btVector3& hi) {
    const EllipsoidModel globe;
    BoundBox box;
    double first = 0.0;
    for (int i = 0; i < 8; ++i) {
        const dvec3 corner((i & 1 ? hi : lo).x(), (i & 2 ? hi : lo).y(), (i & 4 ? hi : lo).z());
        dvec3 geo = globe.toWGS(corner);
        if (i == 0) first = geo.x;
        geo.x = first + std::remainder(geo.x - first, 360.0);
        box.expand(geo);
    }
    return box;
}

}  // namespace

void TerrainShape::Window::clip(const Window& w) {
    first_column = std::max(first_column, w.first_column);
    first_row = std::max(first_row, w.first_row);
    last_column = std::min(last_column, w.last_column);
    last_row = std::min(last_row, w.last_row);
}

void TerrainShape::Window::widen(int cells) {
    first_column -= cells;
    first_row -= cells;
    last_column += cells;
    last_row += cells;
}

TerrainShape::TerrainShape(const ObjectTerrain& terrain, const btVector3& origin)
    : m_raster(terrain.getRaster()), m_origin(origin) {
    m_shapeType = FAST_CONCAVE_MESH_PROXYTYPE;
    m_all = {0, 0, m_raster.getNumColumns() - 2, m_raster.getNumRows() - 2};
}

void TerrainShape::setOrigin(const btVector3& origin) {
    m_origin = origin;
    m_window = {};
}

TerrainShape::Window TerrainShape::toCells(const btVector3& box_min, const btVector3& box_max) const {
    const BoundBox geo = toGeodetic(box_min, box_max);
    const PostPlace low = m_raster.toPosts(geo.min.x, geo.min.y);
    const double columns = (geo.max.x - geo.min.x) / m_raster.getLonStep();
    const double rows = (geo.max.y - geo.min.y) / m_raster.getLatStep();
    const auto toCell = [](double place) { return static_cast<int>(std::floor(std::clamp(place, -1e9, 1e9))); };
    Window w{toCell(low.column - CORNERS), toCell(low.row - CORNERS), toCell(low.column + columns + CORNERS),
             toCell(low.row + rows + CORNERS)};
    w.clip(m_all);
    return w;
}

bool TerrainShape::cover(const btVector3& box_min, const btVector3& box_max) {
    Window wanted = toCells(box_min, box_max);
    if (wanted.isEmpty()) return false;
    const HeightRange range =
        m_raster.getRange(wanted.first_column, wanted.first_row, wanted.last_column, wanted.last_row);
    if (range.isEmpty()) return false;
    const EllipsoidModel globe;
    const dvec3 center = fromBullet((box_min + box_max) * 0.5);
    const double reach = 0.5 * (box_max - box_min).length();
    if (globe.toWGS(center).z - reach > static_cast<double>(range.max)) return false;
    if (m_window.holds(wanted)) return true;
    wanted.widen(SLACK);
    const int columns = wanted.last_column - wanted.first_column, rows = wanted.last_row - wanted.first_row;
    if (columns >= MAX_CELLS) wanted.first_column += (columns - MAX_CELLS) / 2 + 1;
    if (rows >= MAX_CELLS) wanted.first_row += (rows - MAX_CELLS) / 2 + 1;
    wanted.last_column = std::min(wanted.last_column, wanted.first_column + MAX_CELLS - 1);
    wanted.last_row = std::min(wanted.last_row, wanted.first_row + MAX_CELLS - 1);
    wanted.clip(m_all);
    fill(wanted);
    return true;
}

void TerrainShape::fill(const Window& window) {
    const EllipsoidModel globe;
    m_window = window;
    m_posts.clear();
    m_box_min.setValue(BT_LARGE_FLOAT, BT_LARGE_FLOAT, BT_LARGE_FLOAT);
    m_box_max = -m_box_min;
    for (int row = window.first_row; row <= window.last_row + 1; ++row) {
        for (int column = window.first_column; column <= window.last_column + 1; ++column) {
            const double height = m_raster.getPost(column, row);
            const dvec3 geo(m_raster.getLongitude(column), m_raster.getLatitude(row), height);
            m_posts.push_back(std::isfinite(height) ? toBullet(globe.toWorld(geo)) - m_origin
                                                    : btVector3(NAN, NAN, NAN));
            if (!std::isfinite(height)) continue;
            m_box_min.setMin(m_posts.back());
            m_box_max.setMax(m_posts.back());
        }
    }
    if (m_box_min.x() > m_box_max.x()) m_box_min = m_box_max = btVector3(0, 0, 0);
}

void TerrainShape::processAllTriangles(btTriangleCallback* callback, const btVector3& box_min,
                                       const btVector3& box_max) const {
    Window cells = toCells(box_min + m_origin, box_max + m_origin);
    cells.clip(m_window);
    const int posts_a_row = m_window.last_column - m_window.first_column + 2;
    for (int row = cells.first_row; row <= cells.last_row; ++row) {
        for (int column = cells.first_column; column <= cells.last_column; ++column) {
            const btVector3* const sw = &m_posts[static_cast<std::size_t>((row - m_window.first_row) * posts_a_row +
                                                                          column - m_window.first_column)];
            const btVector3 &se = sw[1], &nw = sw[posts_a_row], &ne = sw[posts_a_row + 1];
            const int index = 2 * (row * (m_all.last_column + 1) + column);
            btVector3 lower[] = {*sw, se, ne}, upper[] = {*sw, ne, nw};
            if (std::isnan(sw->x()) || std::isnan(ne.x())) continue;
            if (!std::isnan(se.x())) callback->processTriangle(lower, 0, index);
            if (!std::isnan(nw.x())) callback->processTriangle(upper, 0, index + 1);
        }
    }
}

void TerrainShape::getAabb(const btTransform& pose, btVector3& box_min, btVector3& box_max) const {
    box_min = m_box_min + pose.getOrigin();
    box_max = m_box_max + pose.getOrigin();
}
