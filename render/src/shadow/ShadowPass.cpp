// Draws the shadow map before the scene.
#include "shadow/ShadowPass.h"

#include <osg/Depth>
#include <osg/PolygonOffset>

#include <algorithm>
#include <cmath>

#include "base/Convert.h"
#include "base/ShaderLibrary.h"
#include "mirror/MeshMirror.h"

namespace {

constexpr double MAX_CASTER_DISTANCE =
    200.0;                         // maximum distance of a caster outside the area, toward the light, metres
constexpr double HIGH = 90.0;      // metres above the sea
constexpr double BESIDE = 45.0;    // metres to the nearest mesh; also half the width of the area
constexpr double MIN_TURN = 1e-6;  // 1 - cosine of the smallest visible turn of the light: 0.08 degrees

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

/// Half the width of the area; grows with the eye's height.
double radiusFor(double height) {
    constexpr double MIN_RADIUS = 90.0, MAX_RADIUS = 360.0;
    double radius = MIN_RADIUS;
    while (radius < MAX_RADIUS && radius < height * 2.0) radius *= 2.0;
    return radius;
}

/// A frame with the given Z axis; X and Y follow a fixed rule.
dmat4 frameAlong(const dvec3& z, const dvec3& origin) {
    const dvec3 other = std::fabs(z.z) < 0.9 ? dvec3(0.0, 0.0, 1.0) : dvec3(1.0, 0.0, 0.0);
    const dvec3 x = normalize(cross(other, z));
    return {x, cross(z, x), z, origin};
}

/// The frame with its scale removed.
dmat4 rigidOf(const dmat4& place) {
    return {normalize(place.x), normalize(place.y), normalize(place.z), place.t};
}

}  // namespace

ShadowPass::ShadowPass(osg::Group& before_scene, osg::StateSet& scene, MeshMirror& meshes, ShaderLibrary& shaders,
                       Quality quality)
    : m_meshes(meshes),
      m_scene(scene),
      m_quality(quality),
      m_size(sizeOf(quality)),
      m_matrix(new osg::Uniform("u_shadow_matrix", osg::Matrixf())) {
    const osg::ref_ptr<osg::Texture2D> map = makeMap(m_size);
    for (auto& camera : m_cameras) {
        camera = makeCamera(map, shaders);
        before_scene.addChild(camera);
    }
    m_parts.reserve(MAX_PARTS);
    scene.setTextureAttribute(UNIT_SHADOW, map);
    scene.addUniform(m_matrix);
    setVisible(true);
}

osg::ref_ptr<osg::Camera> ShadowPass::makeCamera(osg::Texture2D* map, ShaderLibrary& shaders) const {
    osg::ref_ptr<osg::Camera> camera = new osg::Camera;
    camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    camera->setRenderOrder(osg::Camera::PRE_RENDER);
    camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
    camera->attach(osg::Camera::DEPTH_BUFFER, map);
    camera->setImplicitBufferAttachmentMask(0, 0);  // no colours
    camera->setDrawBuffer(GL_NONE);
    camera->setReadBuffer(GL_NONE);
    camera->setClearMask(GL_DEPTH_BUFFER_BIT);
    camera->setClearDepth(1.0);
    camera->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
    camera->setInheritanceMask(camera->getInheritanceMask() & ~osg::CullSettings::CULL_MASK);
    camera->setCullMask(MASK_CASTS_SHADOW);
    camera->addChild(m_meshes.getGroup());
    constexpr auto OVER = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE;
    osg::StateSet& state = *camera->getOrCreateStateSet();
    state.setAttributeAndModes(shaders.getProgram("shadow_map"), OVER);
    state.setAttributeAndModes(new osg::PolygonOffset(1.5f, 4.0f), OVER);
    state.setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0.0, 1.0), OVER);
    state.setMode(GL_CULL_FACE, osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE);
    return camera;
}

ShadowPass::Texels ShadowPass::Texels::joined(const Texels& other) const {
    return {std::min(left, other.left), std::min(bottom, other.bottom), std::max(right, other.right),
            std::max(top, other.top)};
}

void ShadowPass::setVisible(bool visible) {
    m_visible = visible && m_quality != Quality::LOW;
    m_scene.setDefine("SHADOWS", m_visible ? osg::StateAttribute::ON : osg::StateAttribute::OFF);
    m_radius = 0.0;
}

bool ShadowPass::placeArea(const FrameView& view) {
    const vec3& to_light = view.light.light_direction;
    const dvec3 axis = normalize(rotate(view.local, dvec3(to_light)));
    // High up and close to an aircraft only the shadows on that aircraft are visible.
    const bool is_aloft = view.geodetic.z > HIGH && m_meshes.getDistance(toOsg(view.camera.t)) < BESIDE;
    const double radius = is_aloft ? BESIDE : radiusFor(view.geodetic.z);
    const double drop = is_aloft ? 0.0 : std::min(view.geodetic.z, radius);
    // Centre of the area: ahead of the eye, lowered to the ellipsoid, in steps so that a small move keeps the map.
    const dvec3 ahead = -view.camera.z - view.local.z * dot(view.local.z, -view.camera.z);
    const dvec3 middle = view.camera.t + ahead * (radius * 0.6) - view.local.z * drop;
    const bool is_turned = dot(axis, m_light.z) < 1.0 - MIN_TURN;
    const bool is_left = length(middle - m_light.t) > radius * 0.25;
    if (radius == m_radius && !is_turned && !is_left) return false;
    m_radius = radius;
    m_light = frameAlong(axis, middle);
    return true;
}

void ShadowPass::findDisturbed() {
    constexpr int MARGIN = 2;  // the shadow lookup reads neighbouring texels
    const dmat4 to_light = inverse(m_riding);
    const auto texel = [this](double metres) {
        return static_cast<int>(std::floor(std::clamp((metres / m_radius + 1.0) * 0.5, -1.0, 2.0) * m_size));
    };
    const auto inside = [this](int value) { return std::clamp(value, 0, m_size); };
    for (const Reach& bound : m_disturbed) {
        const dvec3 middle = to_light * bound.middle;
        const double reach = bound.radius;
        if (!std::isfinite(middle.x + middle.y + reach)) continue;
        const Texels part{inside(texel(middle.x - reach) - MARGIN), inside(texel(middle.y - reach) - MARGIN),
                          inside(texel(middle.x + reach) + 1 + MARGIN), inside(texel(middle.y + reach) + 1 + MARGIN)};
        if (part.left < part.right && part.bottom < part.top) addPart(part);
    }
}

void ShadowPass::addPart(const Texels& part) {
    constexpr long WORTH_A_PASS = 128 * 128;  // texels
    Texels* best = nullptr;
    long least = 0;
    for (Texels& other : m_parts) {
        const long growth = other.joined(part).getArea() - other.getArea() - part.getArea();
        if (best && growth >= least) continue;
        best = &other;
        least = growth;
    }
    if (best && (least <= WORTH_A_PASS || m_parts.size() == MAX_PARTS)) {
        *best = best->joined(part);
    } else {
        m_parts.push_back(part);
    }
}

void ShadowPass::aim(osg::Camera& camera, const Texels& part) const {
    const auto metres = [this](int texel) { return (2.0 * texel / m_size - 1.0) * m_radius; };
    const double depth = m_radius + MAX_CASTER_DISTANCE;
    camera.setViewport(part.left, part.bottom, part.right - part.left, part.top - part.bottom);
    camera.setViewMatrix(toOsg(inverse(m_light)));
    camera.setProjectionMatrixAsOrtho(metres(part.left), metres(part.right), metres(part.bottom), metres(part.top),
                                      -depth, depth);
}

void ShadowPass::update(const FrameView& view, const Cover& cover) {
    const dmat4 carrier = cover.top ? rigidOf(cover.place) : dmat4();
    m_meshes.getCasters().takeDisturbed(carrier, m_disturbed);
    m_light = carrier * m_riding;
    m_parts.clear();
    if (m_visible) {
        if (placeArea(view)) {
            m_riding = inverse(carrier) * m_light;
            m_parts.push_back({0, 0, m_size, m_size});
        } else {
            findDisturbed();
        }
    }
    for (std::size_t i = 0; i < MAX_PARTS; ++i) {
        const bool is_stale = i < m_parts.size();
        m_cameras[i]->setNodeMask(is_stale ? ~0u : 0u);
        if (is_stale) aim(*m_cameras[i], m_parts[i]);
    }
    if (!m_visible) return;
    // The map's frame covers the whole map, whichever parts of it are drawn.
    const double depth = m_radius + MAX_CASTER_DISTANCE;
    const osg::Matrixd to_map = osg::Matrixd::ortho(-m_radius, m_radius, -m_radius, m_radius, -depth, depth) *
                                osg::Matrixd::translate(1.0, 1.0, 1.0) * osg::Matrixd::scale(0.5, 0.5, 0.5);
    m_matrix->set(osg::Matrixf(toOsg(inverse(m_light) * view.camera) * to_map));
}
