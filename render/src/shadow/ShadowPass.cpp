// The map of what lies in shadow, drawn before the scene.
#include "shadow/ShadowPass.h"

#include <osg/Depth>
#include <osg/PolygonOffset>

#include <algorithm>
#include <cmath>

#include "frame/Convert.h"
#include "frame/ShaderLibrary.h"
#include "mirror/MeshMirror.h"

namespace {

constexpr double TALLEST = 200.0;    // metres that a caster may stand beyond the area, toward the light
constexpr double HIGH = 90.0;        // metres above the sea
constexpr double BESIDE = 45.0;      // metres
constexpr double LEAST_TURN = 1e-6;  // 1 - cosine of the light's turn that shows: 0.08 degrees

int sizeOf(Quality quality) {
    return quality == Quality::HIGH ? 3072 : 2048;
}

osg::ref_ptr<osg::Texture2D> makeMap(int size) {
    osg::ref_ptr<osg::Texture2D> map = new osg::Texture2D;
    map->setTextureSize(size, size);
    map->setInternalFormat(GL_DEPTH_COMPONENT16);
    map->setSourceFormat(GL_DEPTH_COMPONENT);
    map->setSourceType(GL_UNSIGNED_SHORT);
    map->setShadowComparison(true);
    map->setShadowCompareFunc(osg::Texture::LEQUAL);
    map->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
    map->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    map->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    map->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    return map;
}

/// Half the width of the area: what matters grows with the eye's height.
double radiusFor(double height) {
    constexpr double LEAST = 90.0, MOST = 360.0;
    double radius = LEAST;
    while (radius < MOST && radius < height * 2.0) radius *= 2.0;
    return radius;
}

/// A frame whose Z axis is `z`; X and Y follow a fixed rule.
dmat4 frameAlong(const dvec3& z, const dvec3& origin) {
    const dvec3 other = std::fabs(z.z) < 0.9 ? dvec3(0.0, 0.0, 1.0) : dvec3(1.0, 0.0, 0.0);
    const dvec3 x = normalize(cross(other, z));
    return {x, cross(z, x), z, origin};
}

}  // namespace

ShadowPass::ShadowPass(osg::Group& before_scene, osg::StateSet& scene, MeshMirror& meshes, ShaderLibrary& shaders,
                       Quality quality)
    : m_meshes(meshes),
      m_scene(scene),
      m_quality(quality),
      m_size(sizeOf(quality)),
      m_camera(new osg::Camera),
      m_matrix(new osg::Uniform("u_shadow_matrix", osg::Matrixf())) {
    const osg::ref_ptr<osg::Texture2D> map = makeMap(m_size);
    m_camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    m_camera->setRenderOrder(osg::Camera::PRE_RENDER);
    m_camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
    m_camera->attach(osg::Camera::DEPTH_BUFFER, map);
    m_camera->setImplicitBufferAttachmentMask(0, 0);  // no colours
    m_camera->setDrawBuffer(GL_NONE);
    m_camera->setReadBuffer(GL_NONE);
    m_camera->setViewport(0, 0, m_size, m_size);
    m_camera->setClearMask(GL_DEPTH_BUFFER_BIT);
    m_camera->setClearDepth(1.0);
    m_camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
    m_camera->setInheritanceMask(m_camera->getInheritanceMask() & ~osg::CullSettings::CULL_MASK);
    m_camera->setCullMask(MASK_CASTS_SHADOW);
    m_camera->addChild(meshes.getGroup());
    constexpr auto OVER = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE;
    osg::StateSet& state = *m_camera->getOrCreateStateSet();
    state.setAttributeAndModes(shaders.getProgram("shadow_map"), OVER);
    state.setAttributeAndModes(new osg::PolygonOffset(1.5f, 4.0f), OVER);
    state.setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0.0, 1.0), OVER);
    state.setMode(GL_CULL_FACE, osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE);
    before_scene.addChild(m_camera);
    scene.setTextureAttribute(UNIT_SHADOW, map);
    scene.addUniform(m_matrix);
    setVisible(true);
}

void ShadowPass::setVisible(bool visible) {
    m_visible = visible && m_quality != Quality::LOW;
    m_scene.setDefine("SHADOWS", m_visible ? osg::StateAttribute::ON : osg::StateAttribute::OFF);
    m_radius = 0.0;
}

bool ShadowPass::placeArea(const FrameView& view) {
    const vec3& to_light = view.light.light_direction;
    const dvec3 axis = normalize(rotate(view.local, dvec3(to_light)));
    // High up, beside an aircraft, only that one's own shadows show.
    const bool is_aloft = view.geodetic.z > HIGH && m_meshes.getDistance(toOsg(view.camera.t)) < BESIDE;
    const double radius = is_aloft ? BESIDE : radiusFor(view.geodetic.z);
    const double drop = is_aloft ? 0.0 : std::min(view.geodetic.z, radius);
    // Ahead of the eye and as low as its foot, in steps, so that a small move keeps the map.
    const dvec3 ahead = -view.camera.z - view.local.z * dot(view.local.z, -view.camera.z);
    const dvec3 middle = view.camera.t + ahead * (radius * 0.6) - view.local.z * drop;
    const bool is_turned = dot(axis, m_light.z) < 1.0 - LEAST_TURN;
    const bool is_left = length(middle - m_light.t) > radius * 0.25;
    if (radius == m_radius && !is_turned && !is_left) return false;
    m_radius = radius;
    m_light = frameAlong(axis, middle);
    return true;
}

ShadowPass::Texels ShadowPass::findDisturbed() const {
    const osg::Matrixd to_light = toOsg(inverse(m_light));
    osg::BoundingBoxd box;
    for (const osg::BoundingSphere& bound : m_disturbed) {
        const osg::Vec3d middle = osg::Vec3d(bound.center()) * to_light;
        const osg::Vec3d reach(bound.radius(), bound.radius(), bound.radius());
        box.expandBy(osg::BoundingBoxd(middle - reach, middle + reach));
    }
    if (!box.valid()) return {};
    const auto texel = [this](double metres) { return std::clamp((metres / m_radius + 1.0) * 0.5, 0.0, 1.0) * m_size; };
    return {static_cast<int>(texel(box.xMin())), static_cast<int>(texel(box.yMin())),
            static_cast<int>(std::ceil(texel(box.xMax()))), static_cast<int>(std::ceil(texel(box.yMax())))};
}

void ShadowPass::aim(const Texels& part) {
    const auto metres = [this](int texel) { return (2.0 * texel / m_size - 1.0) * m_radius; };
    const double depth = m_radius + TALLEST;
    m_camera->setViewport(part.left, part.bottom, part.right - part.left, part.top - part.bottom);
    m_camera->setViewMatrix(toOsg(inverse(m_light)));
    m_camera->setProjectionMatrixAsOrtho(metres(part.left), metres(part.right), metres(part.bottom), metres(part.top),
                                         -depth, depth);
}

void ShadowPass::update(const FrameView& view) {
    m_meshes.takeDisturbed(m_disturbed);
    if (!m_visible) {
        m_camera->setNodeMask(0);
        return;
    }
    const Texels part = placeArea(view) ? Texels{0, 0, m_size, m_size} : findDisturbed();
    const bool is_stale = part.left < part.right && part.bottom < part.top;
    m_camera->setNodeMask(is_stale ? ~0u : 0u);
    if (is_stale) aim(part);
    // The frame's own place in the whole map, whatever part of it is drawn.
    const double depth = m_radius + TALLEST;
    const osg::Matrixd to_map = osg::Matrixd::ortho(-m_radius, m_radius, -m_radius, m_radius, -depth, depth) *
                                osg::Matrixd::translate(1.0, 1.0, 1.0) * osg::Matrixd::scale(0.5, 0.5, 0.5);
    m_matrix->set(osg::Matrixf(toOsg(inverse(m_light) * view.camera) * to_map));
}
