// Cuts decals out of the ground when they are added, moved or resized.
#include "terrain/GroundDecals.h"

#include <osg/BlendFunc>
#include <osg/Depth>

#include <algorithm>
#include <cmath>

#include "base/Convert.h"
#include "base/FrameView.h"
#include "base/ShaderLibrary.h"
#include "base/TextureStore.h"
#include "engine/core/Engine.h"
#include "engine/math/jMath.h"
#include "engine/scene/SceneNodes.h"

namespace {

constexpr int MAX_BLOCK = 8;  // maximum cells of level ground merged into two triangles

template <class Array>
Array* makeArray() {
    auto* const array = new Array;
    array->setBinding(osg::Array::BIND_PER_VERTEX);
    return array;
}

osg::ref_ptr<osg::Geometry> makeGeometry() {
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setCullingActive(false);
    geometry->setVertexArray(makeArray<osg::Vec3Array>());
    geometry->setNormalArray(makeArray<osg::Vec3Array>());
    geometry->setTexCoordArray(0, makeArray<osg::Vec4Array>());
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, 0));
    return geometry;
}

}  // namespace

GroundDecals::GroundDecals(ShaderLibrary& shaders) : m_group(new osg::Group) {
    m_group->setCullingActive(false);
    m_group->getOrCreateStateSet()->setAttributeAndModes(shaders.getProgram("decal"));
}

void GroundDecals::setGround(const ElevationRaster* raster, const TileBuilder* builder) {
    m_raster = raster;
    m_builder = builder;
    for (auto& [id, decal] : m_decals) cut(decal);
}

void GroundDecals::update(const DecalOrtho& node) {
    const auto [found, is_new] = m_decals.try_emplace(node.getId());
    Decal& decal = found->second;
    if (is_new) {
        decal.place = new osg::MatrixTransform;
        decal.place->setCullingActive(false);
        m_group->insertChild(static_cast<unsigned>(std::distance(m_decals.begin(), found)), decal.place);
        rank();
    }
    const bool is_same = !is_new && decal.world == node.getWorldTransform() && decal.width == node.getWidth() &&
                         decal.height == node.getHeight() && decal.depth == node.getDepth();
    decal.is_active = node.isActive();
    decal.world = node.getWorldTransform();
    decal.width = node.getWidth();
    decal.height = node.getHeight();
    decal.depth = node.getDepth();
    decal.texture = node.getTexture();
    if (is_same) {
        decal.place->setNodeMask(decal.is_active && decal.geometry ? ~0u : 0u);
    } else {
        cut(decal);
    }
}

void GroundDecals::remove(int id) {
    const auto found = m_decals.find(id);
    if (found == m_decals.end()) return;
    m_group->removeChild(found->second.place);
    m_decals.erase(found);
    rank();
}

void GroundDecals::rank() {
    float place = 0.0f;
    for (auto& [id, decal] : m_decals) decal.rank->set(place++);
}

void GroundDecals::load(Decal& decal) {
    decal.geometry = makeGeometry();
    decal.place->addChild(decal.geometry);
    const osg::ref_ptr<osg::Texture2D> image = loadTexture(decal.texture);
    osg::StateSet& state = *decal.geometry->getOrCreateStateSet();
    state.setTextureAttribute(0, image);
    state.addUniform(decal.rank);
    state.addUniform(decal.size);
    if (!image->getImage()->isImageTranslucent()) {
        state.setRenderBinDetails(DRAW_OPAQUE, "RenderBin");
        return;
    }
    state.setRenderBinDetails(DRAW_DECALS, "TraversalOrderBin");
    state.setMode(GL_BLEND, osg::StateAttribute::ON);
    state.setAttributeAndModes(new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
    state.setAttributeAndModes(new osg::Depth(osg::Depth::GEQUAL, 0.0, 1.0, false));
}

void GroundDecals::cut(Decal& decal) {
    m_triangles.clear();
    if (m_raster && decal.width > 0.0 && decal.height > 0.0) {
        const EllipsoidModel& globe = Engine::get()->getEllipsoid();
        m_frame = globe.getWGSTransform(decal.world.t);
        m_to_image = inverse(decal.world);
        double west = 1e30, east = -1e30, south = 1e30, north = -1e30;
        for (int i = 0; i < 8; ++i) {
            const dvec3 corner((i & 1 ? 0.5 : -0.5) * decal.width, (i & 2 ? 0.5 : -0.5) * decal.height,
                               i & 4 ? -decal.depth : 0.0);
            const dvec3 geo = globe.toWGS(decal.world * corner);
            const PostPlace post = m_raster->toPosts(geo.x, geo.y);
            west = std::min(west, post.column), east = std::max(east, post.column);
            south = std::min(south, post.row), north = std::max(north, post.row);
        }
        const int last_column = m_raster->getNumColumns() - 2, last_row = m_raster->getNumRows() - 2;
        if (east >= 0.0 && north >= 0.0 && west < last_column + 1 && south < last_row + 1) {
            const int left = static_cast<int>(std::max(west, 0.0)), bottom = static_cast<int>(std::max(south, 0.0));
            const int right = static_cast<int>(std::min<double>(east, last_column));
            const int top = static_cast<int>(std::min<double>(north, last_row));
            if (m_raster->getRange(left, bottom, right, top).max > 0.0f) {
                for (int r = bottom - bottom % MAX_BLOCK; r <= top; r += MAX_BLOCK) {
                    for (int c = left - left % MAX_BLOCK; c <= right; c += MAX_BLOCK) {
                        cutBlock(decal, c, r, MAX_BLOCK);
                    }
                }
            }
        }
    }
    write(decal);
}

bool GroundDecals::isLevel(int column, int row, int size) const {
    constexpr float LEVEL = 0.001f;  // metres
    if (column + size >= m_raster->getNumColumns() || row + size >= m_raster->getNumRows()) return false;
    const float height = m_raster->getPost(column, row);
    for (int r = row; r <= row + size; ++r) {
        for (int c = column; c <= column + size; ++c) {
            if (!(std::fabs(m_raster->getPost(c, r) - height) < LEVEL)) return false;
        }
    }
    return true;
}

GroundDecals::Corner GroundDecals::cornerAt(int column, int row) const {
    Corner corner;
    corner.height = m_raster->getPost(column, row);
    const dvec3 world = Engine::get()->getEllipsoid().toWorld(
        {m_raster->getLongitude(column), m_raster->getLatitude(row), corner.height});
    const dvec3 from = world - m_frame.t;
    corner.local = {dot(from, m_frame.x), dot(from, m_frame.y), dot(from, m_frame.z)};
    corner.image = m_to_image * world;
    corner.normal = m_builder->normalAt(column, row);
    return corner;
}

void GroundDecals::cutBlock(const Decal& decal, int column, int row, int size) {
    if (column > m_raster->getNumColumns() - 2 || row > m_raster->getNumRows() - 2) return;
    if (size > 1 && !isLevel(column, row, size)) {
        const int half = size / 2;
        for (const int r : {row, row + half}) {
            for (const int c : {column, column + half}) cutBlock(decal, c, r, half);
        }
        return;
    }
    const Corner south_west = cornerAt(column, row), north_east = cornerAt(column + size, row + size);
    cutTriangle(decal, south_west, cornerAt(column + size, row), north_east);
    cutTriangle(decal, south_west, north_east, cornerAt(column, row + size));
}

void GroundDecals::cutTriangle(const Decal& decal, const Corner& a, const Corner& b, const Corner& c) {
    if (!(a.height + b.height + c.height > -1e9) || std::max({a.height, b.height, c.height}) <= 0.0) return;
    m_polygon = {a, b, c};
    clip(decal);
    for (std::size_t i = 2; i < m_polygon.size(); ++i) {
        for (const std::size_t k : {std::size_t{0}, i - 1, i}) m_triangles.push_back(m_polygon[k]);
    }
}

/// Sutherland-Hodgman clipping: cuts the polygon by one side of the decal's box after another.
void GroundDecals::clip(const Decal& decal) {
    const auto cutBy = [&](auto inside) {
        m_clipped.clear();
        for (std::size_t i = 0; i < m_polygon.size(); ++i) {
            const Corner &from = m_polygon[i], &to = m_polygon[(i + 1) % m_polygon.size()];
            const double a = inside(from.image), b = inside(to.image);
            if (a >= 0.0) m_clipped.push_back(from);
            if ((a >= 0.0) == (b >= 0.0)) continue;
            const double t = a / (a - b);
            const auto mix = [t](const auto& x, const auto& y) { return x + (y - x) * t; };
            m_clipped.push_back({mix(from.local, to.local), mix(from.image, to.image),
                                 from.normal + (to.normal - from.normal) * static_cast<float>(t),
                                 mix(from.height, to.height)});
        }
        m_polygon.swap(m_clipped);
    };
    cutBy([&](const dvec3& p) { return 0.5 * decal.width - p.x; });
    cutBy([&](const dvec3& p) { return 0.5 * decal.width + p.x; });
    cutBy([&](const dvec3& p) { return 0.5 * decal.height - p.y; });
    cutBy([&](const dvec3& p) { return 0.5 * decal.height + p.y; });
    cutBy([&](const dvec3& p) { return -p.z; });
    cutBy([&](const dvec3& p) { return p.z + decal.depth; });
}

void GroundDecals::write(Decal& decal) const {
    if (!m_triangles.empty()) {
        if (!decal.geometry) load(decal);
        decal.size->set(osg::Vec2f(osg::Vec2d(decal.width, decal.height)));
        auto& places = static_cast<osg::Vec3Array&>(*decal.geometry->getVertexArray());
        auto& normals = static_cast<osg::Vec3Array&>(*decal.geometry->getNormalArray());
        auto& ground = static_cast<osg::Vec4Array&>(*decal.geometry->getTexCoordArray(0));
        places.clear(), normals.clear(), ground.clear();
        for (const Corner& corner : m_triangles) {
            places.push_back(osg::Vec3f(toOsg(corner.local)));
            normals.push_back(toOsg(corner.normal));
            ground.push_back(
                osg::Vec4f(osg::Vec4d(corner.image.x / decal.width + 0.5, corner.image.y / decal.height + 0.5,
                                      corner.local.x, corner.local.y)));
        }
        places.dirty(), normals.dirty(), ground.dirty();
        auto& triangles = static_cast<osg::DrawArrays&>(*decal.geometry->getPrimitiveSet(0));
        triangles.setCount(static_cast<GLsizei>(places.size()));
        triangles.dirty();
        decal.place->setMatrix(toOsg(m_frame));
    } else if (decal.geometry) {
        decal.place->removeChild(decal.geometry);
        decal.geometry = nullptr;
    }
    decal.place->setNodeMask(decal.is_active && decal.geometry ? ~0u : 0u);
}
