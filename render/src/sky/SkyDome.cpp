// Draws the table of the sky as a dome whose vertices match the table, with clouds added in the fragment shader.
// Updated every frame; the table is uploaded only when it has changed.
#include "sky/SkyDome.h"

#include <osg/Depth>

#include <algorithm>
#include <cmath>

#include "base/Convert.h"
#include "base/ShaderLibrary.h"
#include "base/Uniforms.h"
#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "engine/scene/World.h"
#include "sky/CloudTexture.h"
#include "sky/SkyMesh.h"

namespace {

constexpr float PI = 3.14159265f;
constexpr int UNIT_CLOUDS = 0;
constexpr double PATTERN_SIDE = 18000.0;  // metres

osg::ref_ptr<osg::Texture2D> makeTable(osg::Image* image) {
    image->allocateImage(SkyGrid::COLUMNS, SkyGrid::ROWS, 1, GL_RGBA, GL_FLOAT);
    image->setDataVariance(osg::Object::DYNAMIC);
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
    // Nights are a millionth as bright as days, a range beyond half floats.
    texture->setInternalFormat(GL_RGBA32F_ARB);
    texture->setResizeNonPowerOfTwoHint(false);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    return texture;
}

osg::ref_ptr<osg::Texture2D> makeCloudTexture() {
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(makeCloudPattern());
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_NEAREST);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
    return texture;
}

/// Sines of the elevations of the dome's rings: dense near the horizon, where the sky changes quickly.
std::vector<float> ringSines() {
    constexpr float NARROW = 0.02f, WIDE = 0.095f, GROWTH = 0.22f;  // radians between rings
    std::vector<float> sines{
        -1.0f, -0.4f, -0.15f, -0.08f, -0.055f, -0.035f, -0.02f, -0.01f, SkyGrid::sineOf(SkyGrid::ROWS / 2)};
    for (float elevation = 0.029f; elevation < 0.5f * PI - 0.5f * WIDE;) {
        sines.push_back(std::sin(elevation));
        elevation += std::clamp(GROWTH * elevation, NARROW, WIDE);
    }
    sines.push_back(1.0f);
    return sines;
}

/// Directions with x toward the sun's azimuth, and their table coordinates.
osg::ref_ptr<osg::Geometry> makeDome() {
    constexpr int SIDES = 54;
    osg::ref_ptr<osg::Vec3Array> places = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec2Array> texels = new osg::Vec2Array;
    const std::vector<float> sines = ringSines();
    for (const float sine : sines) {
        const float level = std::sqrt(std::fmax(1.0f - sine * sine, 0.0f));
        for (int i = 0; i <= SIDES; ++i) {
            const float around = 2.0f * PI * static_cast<float>(i) / SIDES;
            places->push_back({level * std::cos(around), level * std::sin(around), sine});
            texels->push_back({std::sin(0.5f * around), 0.5f + std::copysign(0.5f * std::sqrt(std::fabs(sine)), sine)});
        }
    }
    const osg::ref_ptr<osg::Geometry> dome = makeGeometry(places);
    dome->setTexCoordArray(0, texels);
    dome->addPrimitiveSet(makeTriangles(SIDES + 1, static_cast<int>(sines.size())));
    return dome;
}

/// Position in the plane of the cloud pattern, metres. Meridians at multiples of ten degrees are straight in it.
dvec3 placeInSheet(const dvec3& geodetic) {
    const double meridian = std::round(geodetic.x / 10.0) * 10.0;
    const double latitude = geodetic.y * jMath::DEG2RAD;
    return {(geodetic.x - meridian) * jMath::DEG2RAD * EllipsoidModel::SEMI_MAJOR * std::cos(latitude),
            latitude * EllipsoidModel::SEMI_MAJOR, 0.0};
}

float wrapped(double metres) {
    const double sides = metres / PATTERN_SIDE;
    return static_cast<float>(sides - std::floor(sides));
}

}  // namespace

SkyDome::SkyDome(osg::Group& group, ShaderLibrary& shaders) : m_table(new osg::Image) {
    m_radiance = makeTable(m_table);
    osg::StateSet& shared = *group.getOrCreateStateSet();
    shared.setTextureAttribute(UNIT_CLOUDS, makeCloudTexture());
    shared.addUniform(new osg::Uniform("u_clouds", UNIT_CLOUDS));
    m_cloud_sheet = addUniform(shared, "u_cloud_sheet", osg::Vec4f());
    m_cloud_place = addUniform(shared, "u_cloud_place", osg::Vec2f());
    m_cloud_air = addUniform(shared, "u_cloud_air", osg::Vec2f());
    m_cloud_slope = addUniform(shared, "u_cloud_slope", osg::Vec3f());
    m_cloud_edge = addUniform(shared, "u_cloud_edge", osg::Vec4f());
    m_cloud_to_light = addUniform(shared, "u_cloud_to_light", osg::Vec3f());
    m_cloud_light = addUniform(shared, "u_cloud_light", osg::Vec3f());
    m_cloud_ambient = addUniform(shared, "u_cloud_ambient", osg::Vec3f());
    // The sky is infinitely far and hides nothing.
    shared.setAttributeAndModes(new osg::Depth(osg::Depth::GEQUAL, 0.0, 1.0, false));
    shared.setMode(GL_CULL_FACE, osg::StateAttribute::OFF);

    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(makeDome());
    geode->setCullingActive(false);
    osg::StateSet& state = *geode->getOrCreateStateSet();
    state.setAttributeAndModes(shaders.getProgram("sky"));
    state.setRenderBinDetails(DRAW_SKY, "RenderBin");
    m_sun = addUniform(state, "u_sun", osg::Vec3f());
    m_glow_color = addUniform(state, "u_glow_color", osg::Vec3f());
    group.addChild(geode);
}

void SkyDome::setPicture(const SkyPicture& picture) {
    auto* const texels = reinterpret_cast<float*>(m_table->data());
    for (std::size_t i = 0; i < picture.table.size(); ++i) {
        const vec4& texel = picture.table[i];
        texels[4 * i] = texel.x, texels[4 * i + 1] = texel.y, texels[4 * i + 2] = texel.z, texels[4 * i + 3] = texel.w;
    }
    m_table->dirty();
}

void SkyDome::update(const FrameView& view, const SkyLight& light, const Environment& environment,
                     const Heavens& heavens, const SkyPicture& picture) {
    m_sun->set(osg::Vec3f(toOsg(narrow(heavens.sun))));
    m_glow_color->set(toOsg(picture.glow_color));
    updateClouds(view, light, environment, picture);
}

void SkyDome::updateClouds(const FrameView& view, const SkyLight& light, const Environment& environment,
                           const SkyPicture& picture) {
    const auto eye = static_cast<float>(view.geodetic.z);
    const float over_eye = std::fmax(CLOUD_HEIGHT - eye, 100.0f);
    const float share = std::clamp(environment.cloudiness, 0.0f, 1.0f);
    const float closed = smoothStep(0.55f, 1.0f, share);
    // The clouds fade out before the eye passes through them.
    const float near = 1.0f - smoothStep(CLOUD_HEIGHT - 700.0f, CLOUD_HEIGHT - 100.0f, eye);
    m_cloud_sheet->set(osg::Vec4f(over_eye, 2.0f * over_eye / GLOBE_RADIUS, static_cast<float>(1.0 / PATTERN_SIDE),
                                  near * (0.96f - 0.2f * closed)));
    const dvec3 place = placeInSheet(view.geodetic);
    m_cloud_place->set(osg::Vec2f(wrapped(place.x - static_cast<double>(environment.wind.x) * view.time),
                                  wrapped(place.y - static_cast<double>(environment.wind.y) * view.time)));
    m_cloud_air->set(osg::Vec2f(static_cast<float>(view.extinction * 0.6 + 5e-6) * 1.4427f,
                                static_cast<float>(CLOUD_TEXELS / (view.focal * PATTERN_SIDE))));

    // At both ends the threshold is shifted beyond the pattern's range: no cloud without cover, no gap in a closed one.
    const float threshold = 1.0f - share + 0.25f * (1.0f - smoothStep(0.0f, 0.15f, share)) - 0.5f * closed;
    const float hardness = 9.0f - 7.0f * closed, thickening = 2.0f - closed;
    m_cloud_edge->set(
        osg::Vec4f(hardness, -threshold * hardness, -thickening, 1.0f + std::fmax(threshold, 0.0f) * thickening));
    const vec3& to_light = light.light_direction;
    m_cloud_slope->set(osg::Vec3f(-2.0f * to_light.x, -2.0f * to_light.y, 1.0f + to_light.x + to_light.y));
    m_cloud_to_light->set(toOsg(to_light));
    m_cloud_light->set(toOsg(picture.cloud_light * (1.3f / PI)));
    m_cloud_ambient->set(toOsg(picture.cloud_ambient * (1.0f / PI) + picture.cloud_light * 0.03f));
}
