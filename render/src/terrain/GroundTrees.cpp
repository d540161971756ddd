// Plants trees when the tiles near the eye are made.
#include "terrain/GroundTrees.h"

#include <algorithm>
#include <cmath>

#include "base/TextureStore.h"
#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "terrain/Chance.h"

namespace {

constexpr double SPOT = 9.0;        // metres between possible positions of a tree
constexpr float MIN_HEIGHT = 2.0f;  // metres above the sea
constexpr int TREE_SIZE = 128;      // pixels

template <class Array>
Array* addArray(osg::ref_ptr<Array>& array) {
    array = new Array;
    array->setBinding(osg::Array::BIND_PER_VERTEX);
    return array;
}

}  // namespace

struct GroundTrees::Tree {
    dvec3 geodetic;
    osg::Vec2d uv;
    float size;
};

GroundTrees::GroundTrees(const ElevationRaster& raster, const osg::Image* imagery, const ImageryPlace& place)
    : m_raster(raster), m_imagery(imagery), m_place(place) {
    constexpr double DEGREE = EllipsoidModel::SEMI_MAJOR * jMath::DEG2RAD;
    const double middle = raster.getLatitude(0.5 * (raster.getNumRows() - 1)) * jMath::DEG2RAD;
    m_spots_per_column = std::clamp(raster.getLonStep() * DEGREE * std::cos(middle) / SPOT, 0.125, 2.0);
    m_spots_per_row = std::clamp(raster.getLatStep() * DEGREE / SPOT, 0.125, 2.0);
}

/// Probability of a tree at a position of the imagery: woods are dark and green.
float GroundTrees::woodsAt(const osg::Vec2d& uv) const {
    if (uv.x() < 0.0 || uv.y() < 0.0 || uv.x() >= 1.0 || uv.y() >= 1.0) return 0.0f;
    const unsigned char* const rgb =
        m_imagery->data(static_cast<unsigned>(uv.x() * m_imagery->s()), static_cast<unsigned>(uv.y() * m_imagery->t()));
    const float light = static_cast<float>(rgb[0] + 2 * rgb[1] + rgb[2]) * 0.25f;
    return rgb[1] > rgb[0] ? std::clamp((71.0f - light) / 16.0f, 0.0f, 1.0f) : 0.0f;
}

bool GroundTrees::findTree(double column, double row, std::uint32_t chance, Tree& tree) const {
    if (column >= m_raster.getNumColumns() - 1 || row >= m_raster.getNumRows() - 1) return false;
    const double lon = m_raster.getLongitude(column), lat = m_raster.getLatitude(row);
    tree.uv = {(lon - m_place.west) / (m_place.east - m_place.west),
               (lat - m_place.south) / (m_place.north - m_place.south)};
    if (toUnit(chance) >= woodsAt(tree.uv)) return false;
    const int c = static_cast<int>(column), r = static_cast<int>(row);
    const double u = column - c, v = row - r;
    const double height = planeOf(m_raster.getCell(c, r), u >= v).at(u, v);
    if (!(height > MIN_HEIGHT)) return false;
    tree.geodetic = {lon, lat, height};
    tree.size = 7.0f + 7.0f * toUnit(scramble(chance));
    return true;
}

osg::ref_ptr<osg::Geometry> GroundTrees::plant(const TileArea& area, const dmat4& frame) const {
    if (!m_imagery) return nullptr;
    const EllipsoidModel globe;
    osg::ref_ptr<osg::Vec3Array> places;
    osg::ref_ptr<osg::Vec4Array> corners;
    osg::ref_ptr<osg::Vec2Array> uvs;
    addArray(places), addArray(corners), addArray(uvs);
    const int across = static_cast<int>(TILE_CELLS * m_spots_per_column),
              up = static_cast<int>(TILE_CELLS * m_spots_per_row);
    for (int y = 0; y < up; ++y) {
        for (int x = 0; x < across; ++x) {
            const std::uint32_t chance = scramble(static_cast<std::uint32_t>(area.column * 64 + x) +
                                                  scramble(static_cast<std::uint32_t>(area.row * 64 + y)));
            const double east = x + toUnit(scramble(chance + 1)), north = y + toUnit(scramble(chance + 2));
            Tree tree;
            if (!findTree(area.column + east / m_spots_per_column, area.row + north / m_spots_per_row, chance, tree))
                continue;
            const dvec3 from = globe.toWorld(tree.geodetic) - frame.t;
            const osg::Vec3f place(osg::Vec3d(dot(from, frame.x), dot(from, frame.y), dot(from, frame.z)));
            for (const auto& [right, top] : {std::pair(-1.0f, 0.0f), {1.0f, 0.0f}, {1.0f, 1.0f}, {-1.0f, 1.0f}}) {
                places->push_back(place);
                corners->push_back({right, top, tree.size, toUnit(chance)});
                uvs->push_back(osg::Vec2f(tree.uv));
            }
        }
    }
    if (places->empty()) return nullptr;
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setCullingActive(false);
    geometry->setVertexArray(places);
    geometry->setTexCoordArray(0, uvs);
    geometry->setVertexAttribArray(GROUND_ATTRIBUTE, corners);
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_QUADS, 0, static_cast<GLsizei>(places->size())));
    return geometry;
}

osg::ref_ptr<osg::Texture2D> makeTreeTexture() {
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(2 * TREE_SIZE, TREE_SIZE, 1, GL_RG, GL_UNSIGNED_BYTE);
    std::fill_n(image->data(), image->getTotalSizeInBytes(), static_cast<unsigned char>(0));
    // Tufts of leaves, from back to front; each is lighter toward its top.
    const auto tuft = [&](float mx, float my, float radius, float light, std::uint32_t seed) {
        for (int y = 0; y < TREE_SIZE; ++y) {
            for (int x = 0; x < 2 * TREE_SIZE; ++x) {
                const float dx = (static_cast<float>(x) + 0.5f) / TREE_SIZE - mx,
                            dy = (static_cast<float>(y) + 0.5f) / TREE_SIZE - my;
                const float ragged = 0.75f + 0.35f * toUnit(scramble(seed + static_cast<std::uint32_t>(y * 512 + x)));
                if (dx * dx + dy * dy > radius * radius * ragged * ragged) continue;
                unsigned char* const texel = image->data(static_cast<unsigned>(x), static_cast<unsigned>(y));
                texel[0] = static_cast<unsigned char>(
                    std::clamp((light + 0.28f * dy / radius) * ragged * 255.0f, 0.0f, 255.0f));
                texel[1] = 255;
            }
        }
    };
    constexpr std::uint32_t TUFTS = 70;
    for (int i = 0; i < 24; ++i) tuft(0.5f, 0.02f + 0.014f * static_cast<float>(i), 0.018f, 0.25f, 7);
    for (std::uint32_t i = 0; i < TUFTS; ++i) {
        const float angle = 6.2832f * toUnit(scramble(i * 3 + 1)), out = std::sqrt(toUnit(scramble(i * 3 + 2)));
        const float depth = static_cast<float>(i) / TUFTS, dy = std::sin(angle) * out;
        tuft(0.5f + 0.40f * std::cos(angle) * out, 0.60f + 0.29f * dy, 0.09f, 0.30f + 0.16f * dy + 0.24f * depth,
             i * 99991U);
        tuft(1.5f + 0.40f * std::cos(angle) * out, 0.5f + 0.40f * dy, 0.09f, 0.28f + 0.36f * depth, i * 77773U);
    }
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
    texture->setInternalFormat(GL_RG8);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_NEAREST);
    keepOnDeviceOnly(*texture);
    return texture;
}
