// Makes coarser versions of a surface when its mesh is loaded, and selects one for each view during culling.
#include "mirror/SurfaceDetail.h"

#include <meshoptimizer.h>
#include <osg/Geode>
#include <osgUtil/CullVisitor>

#include <algorithm>

#include "engine/scene/MeshData.h"
#include "mirror/MeshMirror.h"

namespace {

constexpr float STEPS[] = {0.004f, 0.016f, 0.05f, 0.1f, 0.25f};  // maximum error relative to the previous level, metres
constexpr std::size_t MIN_INDICES = 3 * 64;                      // indices; smaller surfaces are not simplified
constexpr double WORTHWHILE = 0.75;                              // maximum size relative to the previous level
// metres; from this error on, simplification may close gaps and holes
constexpr float ROUGH = 0.05f;
constexpr float MIN_CELL = 1e-3f;       // relative to the surface's extent: minimum cell size of vertex clustering
constexpr float CELL_DIAGONAL = 1.75f;  // cells; maximum motion of a vertex by clustering
constexpr float PIXELS = 0.6f;          // allowed deviation from the true shape on screen
constexpr float SHADOW_ERROR = 0.03f;   // metres; less than a texel of the finest shadow map

template <class Array, class Source>
osg::ref_ptr<Array> makeArray(const Source& source) {
    using Element = typename Array::ElementDataType;
    static_assert(sizeof(Element) == sizeof(source[0]));
    const auto* const from = reinterpret_cast<const Element*>(source.data());
    osg::ref_ptr<Array> array = new Array(from, from + source.size());
    array->setBinding(osg::Array::BIND_PER_VERTEX);
    return array;
}

using Indices = std::vector<unsigned>;

osg::ref_ptr<osg::Geometry> makeGeometry(const MeshSurface& surface) {
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setVertexArray(makeArray<osg::Vec3Array>(surface.positions));
    if (!surface.normals.empty()) geometry->setNormalArray(makeArray<osg::Vec3Array>(surface.normals));
    if (!surface.uvs.empty()) geometry->setTexCoordArray(0, makeArray<osg::Vec2Array>(surface.uvs));
    if (!surface.tangents.empty()) {
        geometry->setVertexAttribArray(TANGENT_ATTRIBUTE, makeArray<osg::Vec4Array>(surface.tangents));
    }
    geometry->addPrimitiveSet(new osg::DrawElementsUInt(GL_TRIANGLES, surface.indices.begin(), surface.indices.end()));
    return geometry;
}

osg::ref_ptr<osg::Geometry> withTriangles(const osg::Geometry& whole, const Indices& indices) {
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry(whole);  // shares the arrays
    geometry->removePrimitiveSet(0);
    geometry->addPrimitiveSet(new osg::DrawElementsUInt(GL_TRIANGLES, indices.begin(), indices.end()));
    return geometry;
}

/// Metres per relative error of 1.
float scaleOf(const MeshSurface& surface) {
    return meshopt_simplifyScale(surface.positions.front().data(), surface.positions.size(),
                                 sizeof(surface.positions[0]));
}

/// Simplifies to at most `error` metres; sets `error` to the error reached.
Indices simplify(const MeshSurface& surface, const Indices& from, float scale, float& error) {
    Indices to(from.size());
    float reached = 0.0f;
    to.resize(meshopt_simplify(to.data(), from.data(), from.size(), surface.positions.front().data(),
                               surface.positions.size(), sizeof(surface.positions[0]), 0, error / scale, 0, &reached));
    // For surfaces of many small pieces, edge collapse hardly removes triangles unless it removes whole pieces.
    const std::size_t most = to.empty() ? from.size() : to.size();
    if (error >= ROUGH && error >= MIN_CELL * scale && most > MIN_INDICES) {
        Indices rough(from.size());
        rough.resize(meshopt_simplifySloppy(rough.data(), from.data(), from.size(), surface.positions.front().data(),
                                            surface.positions.size(), sizeof(surface.positions[0]), 0, error / scale));
        if (!rough.empty() && 2 * rough.size() < most) {
            error *= CELL_DIAGONAL;
            return rough;
        }
    }
    error = reached * scale;
    return to;
}

}  // namespace

std::vector<DetailLevel> makeLevels(const MeshSurface& surface) {
    std::vector<DetailLevel> levels{{makeGeometry(surface), 0.0f}};
    Indices indices(surface.indices.begin(), surface.indices.end());
    if (indices.size() < MIN_INDICES) return levels;
    const float scale = scaleOf(surface);
    for (const float step : STEPS) {
        float error = step;
        Indices fewer = simplify(surface, indices, scale, error);
        if (static_cast<double>(fewer.size()) > WORTHWHILE * static_cast<double>(indices.size())) continue;
        if (fewer.empty()) break;
        levels.push_back({withTriangles(*levels.front().geometry, fewer), levels.back().error + error});
        indices = std::move(fewer);
        if (indices.size() < MIN_INDICES) break;
    }
    return levels;
}

SurfaceDetail::SurfaceDetail(const std::vector<DetailLevel>& levels) {
    for (const DetailLevel& level : levels) {
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        geode->addDrawable(level.geometry);
        addChild(geode);
        m_errors.push_back(level.error);
    }
}

std::size_t SurfaceDetail::levelFor(float error) const {
    const auto above = std::upper_bound(m_errors.begin() + 1, m_errors.end(), error);
    return static_cast<std::size_t>(above - m_errors.begin()) - 1;
}

void SurfaceDetail::traverse(osg::NodeVisitor& visitor) {
    if (visitor.getVisitorType() != osg::NodeVisitor::CULL_VISITOR) {
        osg::Group::traverse(visitor);
        return;
    }
    float error = SHADOW_ERROR;
    if (visitor.getTraversalMask() & MASK_DRAWN) {
        const osg::BoundingSphere& bound = getBound();
        const float distance = visitor.getDistanceToEyePoint(bound.center(), false) - bound.radius();
        error = PIXELS * distance * visitor.asCullVisitor()->getLODScale();
    }
    getChild(static_cast<unsigned>(levelFor(error)))->accept(visitor);
}
