// Positions the discs and the stars every frame; stars are drawn only when it is dark enough to see one.
#include "sky/SkyBodies.h"

#include <osg/BlendFunc>

#include <algorithm>
#include <cmath>

#include "base/Convert.h"
#include "base/ShaderLibrary.h"
#include "base/Uniforms.h"
#include "engine/math/jMath.h"
#include "sky/Rgb.h"
#include "sky/SkyMesh.h"
#include "sky/StarCatalogue.h"

namespace {

constexpr double DISC_RADIUS = 0.266 * jMath::DEG2RAD;
/// Stray light in the eye is 10 cd/m^2 per lux at one degree (CIE 146, 2002); a thirtieth of it is enough for a
/// picture. Value at the disc's edge, relative to the disc's radiance:
constexpr float GLARE = 3e-4f;
constexpr float MOON_GLARE = 1.5e-5f;  // less than the sun's: night pictures are displayed brighter than nights are
constexpr double MIN_SINE = -0.12;     // sine of the elevation below which a disc with its halo is invisible

/// Keeps the colour of a low sun and the details of a moon that is thousands of times brighter than the night sky.
vec3 dimmed(const vec3& radiance, float brightest) {
    const float most = std::max({radiance.x, radiance.y, radiance.z});
    return most > brightest ? radiance * (brightest / most) : radiance;
}

}  // namespace

SkyBodies::SkyBodies(osg::Group& group, ShaderLibrary& shaders) {
    m_stars = new osg::Group;
    m_stars->addChild(makeStarField(shaders));
    m_stars->addChild(makeGalaxy(shaders));
    m_stars->setCullingActive(false);
    osg::StateSet& state = *m_stars->getOrCreateStateSet();
    state.setAttributeAndModes(new osg::BlendFunc(GL_ONE, GL_ONE));
    state.setRenderBinDetails(DRAW_SKY + 1, "RenderBin");
    m_to_local = addUniform(state, "u_stars_to_local", osg::Matrix3());
    m_depth = addUniform(state, "u_star_depth", osg::Vec3f());
    m_gain = addUniform(state, "u_star_gain", 1.0f);
    m_galaxy_light = addUniform(state, "u_galaxy_light", osg::Vec3f());
    group.addChild(m_stars);
    m_sun = makeDisc(group, shaders.getProgram("sky_disc", {"REACH 24.0"}));
    m_moon = makeDisc(group, shaders.getProgram("sky_disc", {"REACH 24.0", "MOON"}));
}

SkyBodies::Disc SkyBodies::makeDisc(osg::Group& group, osg::Program* program) {
    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
    for (const auto& [x, y] : {std::pair{-1.0f, -1.0f}, {1.0f, -1.0f}, {-1.0f, 1.0f}, {1.0f, 1.0f}}) {
        corners->push_back({x, y, 0.0f});
    }
    const osg::ref_ptr<osg::Geometry> square = makeGeometry(corners);
    square->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_STRIP, 0, 4));
    Disc disc;
    disc.geode = new osg::Geode;
    disc.geode->addDrawable(square);
    disc.geode->setCullingActive(false);
    osg::StateSet& state = *disc.geode->getOrCreateStateSet();
    state.setAttributeAndModes(program);
    state.setAttributeAndModes(new osg::BlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA));
    state.setRenderBinDetails(DRAW_SKY + 2, "RenderBin");
    disc.direction = addUniform(state, "u_disc_direction", osg::Vec3f());
    disc.right = addUniform(state, "u_disc_right", osg::Vec3f());
    disc.up = addUniform(state, "u_disc_up", osg::Vec3f());
    disc.radiance = addUniform(state, "u_disc_radiance", osg::Vec3f());
    disc.halo = addUniform(state, "u_disc_halo", osg::Vec3f());
    disc.to_sun = addUniform(state, "u_disc_to_sun", osg::Vec3f());
    group.addChild(disc.geode);
    return disc;
}

osg::ref_ptr<osg::Geode> SkyBodies::makeStarField(ShaderLibrary& shaders) {
    osg::ref_ptr<osg::Vec3Array> places = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec3Array> lights = new osg::Vec3Array;
    for (const Star& star : makeStars()) {
        places->push_back(osg::Vec3f(toOsg(star.direction)));
        lights->push_back(toOsg(star.light));
    }
    const osg::ref_ptr<osg::Geometry> points = makeGeometry(places);
    points->setColorArray(lights, osg::Array::BIND_PER_VERTEX);
    points->addPrimitiveSet(new osg::DrawArrays(GL_POINTS, 0, static_cast<GLsizei>(places->size())));
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(points);
    osg::StateSet& state = *geode->getOrCreateStateSet();
    state.setAttributeAndModes(shaders.getProgram("sky_stars"));
    state.setMode(GL_VERTEX_PROGRAM_POINT_SIZE, osg::StateAttribute::ON);
    state.setMode(GL_POINT_SPRITE_ARB, osg::StateAttribute::ON);
    return geode;
}

osg::ref_ptr<osg::Geode> SkyBodies::makeGalaxy(ShaderLibrary& shaders) {
    constexpr int ALONG = 160, ACROSS = 21;
    constexpr double HALF_WIDTH = 26.0 * jMath::DEG2RAD;
    const dvec3 pole = galaxyPole(), centre = galaxyCentre(), side = cross(pole, centre);
    osg::ref_ptr<osg::Vec3Array> places = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec3Array> at = new osg::Vec3Array;
    for (int i = 0; i <= ALONG; ++i) {
        const double turns = static_cast<double>(i) / ALONG, around = turns * 2.0 * jMath::PI;
        const dvec3 level = centre * std::cos(around) + side * std::sin(around);
        for (int j = 0; j < ACROSS; ++j) {
            const double across = 2.0 * j / (ACROSS - 1) - 1.0, latitude = across * HALF_WIDTH;
            places->push_back(osg::Vec3f(toOsg(level * std::cos(latitude) + pole * std::sin(latitude))));
            at->push_back(osg::Vec3f(toOsg(dvec3(turns, across, 0.55 + 0.45 * std::cos(around)))));
        }
    }
    const osg::ref_ptr<osg::Geometry> belt = makeGeometry(places);
    belt->setTexCoordArray(0, at);
    belt->addPrimitiveSet(makeTriangles(ACROSS, ALONG + 1));
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(belt);
    geode->getOrCreateStateSet()->setAttributeAndModes(shaders.getProgram("sky_galaxy"));
    return geode;
}

void SkyBodies::place(const Disc& disc, const dvec3& direction, const Heavens& heavens) {
    // The disc's up axis is celestial north, so that the moon shows its near side with the correct orientation.
    const dvec3 right = normalize(cross(heavens.stars.z, -direction));
    const dvec3 up = cross(-direction, right) * -1.0;
    disc.geode->setNodeMask(direction.z > MIN_SINE ? ~0u : 0u);
    disc.direction->set(osg::Vec3f(toOsg(direction)));
    disc.right->set(osg::Vec3f(toOsg(right * std::tan(DISC_RADIUS))));
    disc.up->set(osg::Vec3f(toOsg(up * std::tan(DISC_RADIUS))));
    disc.to_sun->set(
        osg::Vec3f(toOsg(dvec3(dot(right, heavens.sun), dot(up, heavens.sun), dot(-direction, heavens.sun)))));
}

void SkyBodies::update(const FrameView& view, const SkyLight& light, const Heavens& heavens,
                       const SkyPicture& picture) {
    place(m_sun, heavens.sun, heavens);
    place(m_moon, heavens.moon, heavens);
    const float exposure = light.exposure;
    m_sun.radiance->set(toOsg(dimmed(picture.sun_radiance, 14.0f / exposure)));
    m_moon.radiance->set(toOsg(dimmed(picture.moon_radiance, 1.3f / exposure)));
    m_sun.halo->set(toOsg(picture.sun_radiance * GLARE));
    m_moon.halo->set(toOsg(picture.moon_radiance * (MOON_GLARE * static_cast<float>(heavens.moon_lit))));

    const bool dark = exposure > 5.0f;
    m_stars->setNodeMask(dark ? ~0u : 0u);
    if (!dark) return;
    const dmat3& m = heavens.stars;
    const auto f = [](double v) { return static_cast<float>(v); };
    m_to_local->set(
        osg::Matrix3(f(m.x.x), f(m.x.y), f(m.x.z), f(m.y.x), f(m.y.y), f(m.y.z), f(m.z.x), f(m.z.y), f(m.z.z)));
    m_depth->set(toOsg(picture.star_depth));
    m_galaxy_light->set(toOsg(picture.galaxy_light));
    m_gain->set(static_cast<float>(view.focal * view.focal));
}
