// Samples the raster's posts into tiles; called while the tree of tiles is refined.
#include "terrain/TileMesh.h"

#include <algorithm>
#include <cmath>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"

namespace {

const EllipsoidModel GLOBE;

/// Sine and cosine of the geodetic angles along a line of posts.
struct Angle {
    double sine, cosine;
    explicit Angle(double degrees)
        : sine(std::sin(degrees * jMath::DEG2RAD)), cosine(std::cos(degrees * jMath::DEG2RAD)) {}
};

/// Radius of curvature in the prime vertical, metres.
double primeRadius(double sine) {
    return GLOBE.SEMI_MAJOR / std::sqrt(1.0 - GLOBE.ECCENTRICITY_2 * sine * sine);
}

osg::Vec3f inFrame(const dmat4& frame, const dvec3& world) {
    const dvec3 from = world - frame.t;
    return {static_cast<float>(dot(from, frame.x)), static_cast<float>(dot(from, frame.y)),
            static_cast<float>(dot(from, frame.z))};
}

}  // namespace

struct TileBuilder::Arrays {
    osg::ref_ptr<osg::Vec3Array> places = new osg::Vec3Array, normals = new osg::Vec3Array, ground = new osg::Vec3Array;
    osg::ref_ptr<osg::DrawElementsUShort> triangles = new osg::DrawElementsUShort(GL_TRIANGLES);
};

TileBuilder::TileBuilder(const ElevationRaster& raster, const ImageryPlace& imagery)
    : m_raster(raster), m_imagery(imagery) {
    const Angle middle(raster.getLatitude(0.5 * (raster.getNumRows() - 1)));
    const double prime = primeRadius(middle.sine);
    const double meridian =
        prime * (1.0 - GLOBE.ECCENTRICITY_2) / (1.0 - GLOBE.ECCENTRICITY_2 * middle.sine * middle.sine);
    m_column_width = std::max(prime * middle.cosine * raster.getLonStep() * jMath::DEG2RAD, 1e-3);
    m_row_height = meridian * raster.getLatStep() * jMath::DEG2RAD;
}

TileBuilder::Line TileBuilder::makeLine(int first, int stride, int last) const {
    Line line;
    line.count = 0;
    line.posts[0] = std::max(first - stride, 0);
    for (int i = 0; i < TILE_POSTS && (i == 0 || line.posts[i] < last); ++i, ++line.count) {
        line.posts[i + 1] = std::min(first + i * stride, last);
    }
    line.posts[line.count + 1] = std::min(line.posts[line.count] + stride, last);
    return line;
}

void TileBuilder::sample(const TileArea& area) {
    m_columns = makeLine(area.column, area.stride, m_raster.getNumColumns() - 1);
    m_rows = makeLine(area.row, area.stride, m_raster.getNumRows() - 1);
    for (int y = 0; y < m_rows.count + 2; ++y) {
        for (int x = 0; x < m_columns.count + 2; ++x) {
            m_heights[y][x] = m_raster.getPost(m_columns.posts[x], m_rows.posts[y]);
        }
    }
    m_posts.columns = m_columns.count;
    m_posts.rows = m_rows.count;
    for (int y = 0; y < m_rows.count; ++y) {
        std::copy_n(&m_heights[y + 1][1], m_columns.count, &m_posts.heights[y * TILE_POSTS]);
    }
}

/// Maximum error of the posts at the midpoints of each cell's south edge, west edge and diagonal.
float TileBuilder::measureError() const {
    float worst = 0.0f;
    const auto compare = [&](int column, int row, float a, float b) {
        const float off = std::fabs(seenHeight(m_raster.getPost(column, row)) - seenHeight(0.5f * (a + b)));
        if (off > worst) worst = off;  // false for NaN, that is for holes
    };
    for (int y = 0; y + 1 < m_rows.count; ++y) {
        const int row = m_rows.posts[y + 1], middle_row = (row + m_rows.posts[y + 2]) / 2;
        for (int x = 0; x + 1 < m_columns.count; ++x) {
            const int column = m_columns.posts[x + 1], middle_column = (column + m_columns.posts[x + 2]) / 2;
            const float corner = heightAt(x, y);
            compare(middle_column, row, corner, heightAt(x + 1, y));
            compare(column, middle_row, corner, heightAt(x, y + 1));
            compare(middle_column, middle_row, corner, heightAt(x + 1, y + 1));
        }
    }
    return worst;
}

TileMeasures TileBuilder::place(const TileArea& area) const {
    const int columns = std::min(TILE_CELLS * area.stride, m_raster.getNumColumns() - 1 - area.column);
    const int rows = std::min(TILE_CELLS * area.stride, m_raster.getNumRows() - 1 - area.row);
    const double lon = m_raster.getLongitude(area.column + 0.5 * columns);
    const double lat = m_raster.getLatitude(area.row + 0.5 * rows);
    const double south = std::fabs(m_raster.getLatitude(area.row)),
                 north = std::fabs(m_raster.getLatitude(area.row + rows));
    // The widest row is used; the ellipsoid's radii differ by less than one in a hundred.
    const double widest = std::cos(std::min({south, north, std::fabs(lat)}) * jMath::DEG2RAD);
    constexpr double ARC = 0.5 * jMath::DEG2RAD * EllipsoidModel::SEMI_MAJOR * 1.01;
    TileMeasures tile;
    tile.frame = GLOBE.getWGSTransform(GLOBE.toWorld({lon, lat, 0.0}));
    tile.half_east = columns * m_raster.getLonStep() * ARC * widest;
    tile.half_north = rows * m_raster.getLatStep() * ARC;
    tile.heights.expand(-ElevationRaster::HEIGHT_LIMIT);
    tile.heights.expand(ElevationRaster::HEIGHT_LIMIT);
    return tile;
}

TileMeasures TileBuilder::measure(const TileArea& area) {
    TileMeasures tile = place(area);
    tile.heights = {};
    sample(area);
    for (int y = 0; y < m_rows.count; ++y) {
        for (int x = 0; x < m_columns.count; ++x) tile.heights.expand(heightAt(x, y));
    }
    if (area.stride > 1) {
        // Estimate: the posts between those midpoints add about half as much error again, and so on.
        tile.error = measureError() * (area.stride == 2 ? 1.0 : area.stride == 4 ? 1.3 : 1.5);
    }
    return tile;
}

osg::ref_ptr<osg::Geometry> TileBuilder::build(const TileArea& area, const dmat4& frame, double tolerance,
                                               double skirt) {
    sample(area);
    m_corners.clear();
    if (tolerance > 0.0 && m_posts.isWhole()) {
        joinFew(m_posts, static_cast<float>(tolerance), m_corners);
    } else {
        joinAll(m_posts, m_corners);
    }
    if (m_corners.empty()) return nullptr;
    std::fill(std::begin(m_vertices), std::end(m_vertices), -1);
    for (const std::uint16_t corner : m_corners) m_vertices[corner] = 0;
    Arrays arrays;
    addVertices(frame, arrays);
    for (const std::uint16_t corner : m_corners) {
        arrays.triangles->push_back(static_cast<GLushort>(m_vertices[corner]));
    }
    addSkirt(skirt, arrays);
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setCullingActive(false);
    for (const auto& array : {arrays.places, arrays.normals, arrays.ground}) {
        array->setBinding(osg::Array::BIND_PER_VERTEX);
    }
    geometry->setVertexArray(arrays.places);
    geometry->setNormalArray(arrays.normals);
    geometry->setVertexAttribArray(GROUND_ATTRIBUTE, arrays.ground);
    geometry->addPrimitiveSet(arrays.triangles);
    return geometry;
}

vec3 TileBuilder::slopeNormal(float west, float east, float south, float north, int columns, int rows) const {
    const auto slope = [](float from, float to, double over) {
        const double rise = static_cast<double>(to) - from;
        return over > 0.0 && !std::isnan(rise) ? static_cast<float>(rise / over) : 0.0f;
    };
    return normalize(
        vec3(-slope(west, east, columns * m_column_width), -slope(south, north, rows * m_row_height), 1.0f));
}

vec3 TileBuilder::normalAt(int column, int row) const {
    const int west = std::max(column - 1, 0), east = std::min(column + 1, m_raster.getNumColumns() - 1);
    const int south = std::max(row - 1, 0), north = std::min(row + 1, m_raster.getNumRows() - 1);
    return slopeNormal(m_raster.getPost(west, row), m_raster.getPost(east, row), m_raster.getPost(column, south),
                       m_raster.getPost(column, north), east - west, north - south);
}

void TileBuilder::addVertices(const dmat4& frame, Arrays& arrays) {
    // The local vertical is tilted relative to that at the tile's centre.
    constexpr float LEAN = static_cast<float>(1.0 / EllipsoidModel::SEMI_MAJOR);
    std::vector<Angle> longitudes;
    for (int x = 0; x < m_columns.count; ++x) longitudes.emplace_back(m_raster.getLongitude(m_columns.posts[x + 1]));
    const double u_scale = 1.0 / (m_imagery.east - m_imagery.west), v_scale = 1.0 / (m_imagery.north - m_imagery.south);
    for (int y = 0; y < m_rows.count; ++y) {
        const int row = m_rows.posts[y + 1];
        const Angle lat(m_raster.getLatitude(row));
        const double prime = primeRadius(lat.sine), v = (m_raster.getLatitude(row) - m_imagery.south) * v_scale;
        for (int x = 0; x < m_columns.count; ++x) {
            int& vertex = m_vertices[y * TILE_POSTS + x];
            if (vertex < 0) continue;
            vertex = static_cast<int>(arrays.places->size());
            const float height = heightAt(x, y);
            const Angle& lon = longitudes[static_cast<std::size_t>(x)];
            const double across = (prime + height) * lat.cosine;
            const osg::Vec3f place = inFrame(frame, {across * lon.cosine, across * lon.sine,
                                                     (prime * (1.0 - GLOBE.ECCENTRICITY_2) + height) * lat.sine});
            const vec3 n =
                slopeNormal(heightAt(x - 1, y), heightAt(x + 1, y), heightAt(x, y - 1), heightAt(x, y + 1),
                            m_columns.posts[x + 2] - m_columns.posts[x], m_rows.posts[y + 2] - m_rows.posts[y]);
            const double u = (m_raster.getLongitude(m_columns.posts[x + 1]) - m_imagery.west) * u_scale;
            arrays.places->push_back(place);
            arrays.normals->push_back({n.x + place.x() * LEAN, n.y + place.y() * LEAN, n.z});
            arrays.ground->push_back(osg::Vec3f(osg::Vec3d(u, v, height)));
        }
    }
}

/// Runs counter-clockwise along the rim; the skirt faces outward.
void TileBuilder::addSkirt(double skirt, Arrays& arrays) const {
    int before = -1, before_low = -1;
    const auto step = [&](int x, int y) {
        const int vertex = m_vertices[y * TILE_POSTS + x];
        int low = -1;
        if (vertex >= 0) {
            const auto top = static_cast<std::size_t>(vertex);
            low = static_cast<int>(arrays.places->size());
            arrays.places->push_back((*arrays.places)[top] - osg::Vec3f(0.0f, 0.0f, static_cast<float>(skirt)));
            arrays.normals->push_back(osg::Vec3f((*arrays.normals)[top]));
            arrays.ground->push_back(osg::Vec3f((*arrays.ground)[top]));
            if (before >= 0) {
                for (const int i : {before, before_low, low, before, low, vertex}) {
                    arrays.triangles->push_back(static_cast<GLushort>(i));
                }
            }
        } else if (!std::isnan(heightAt(x, y))) {
            return;
        }
        before = vertex;
        before_low = low;
    };
    const int right = m_columns.count - 1, top = m_rows.count - 1;
    for (int x = 0; x < right; ++x) step(x, 0);
    for (int y = 0; y < top; ++y) step(right, y);
    for (int x = right; x > 0; --x) step(x, top);
    for (int y = top; y >= 0; --y) step(0, y);
}
