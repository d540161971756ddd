// Precipitation: a box of drops that repeats around the eye. The CPU moves the box, the shader positions the drops in
// it.
#include "effects/Precipitation.h"

#include <algorithm>
#include <cmath>

#include "base/Convert.h"
#include "base/ShaderLibrary.h"
#include "base/Uniforms.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/World.h"

namespace {

/// Drawing parameters of a kind.
struct Style {
    const char* node;
    const char* define;  ///< define for the shader
    double box;          ///< metres
    int most;            ///< drops at full density
    double shutter;      ///< exposure time of the motion blur, seconds
    double longest;      ///< maximum length of the motion blur, metres
    double width;        ///< width of the drawn drop relative to the node's size
};

constexpr Style STYLES[] = {{"rain", "RAIN", 28.0, 4000, 0.035, 1.6, 0.16},
                            {"hail", "HAIL", 28.0, 1500, 0.004, 0.3, 0.35},
                            {"snow", "SNOW", 22.0, 4000, 0.0025, 0.3, 0.28}};
constexpr int NUM_KINDS = 3;
constexpr int MAX_DROPS = 4000;
constexpr double MAX_EYE_SPEED = 1000.0;  // m/s; a faster move of the eye counts as a teleport
constexpr double SMOOTHING = 0.1;         // seconds

osg::ref_ptr<osg::Vec4Array> makeSeeds() {
    osg::ref_ptr<osg::Vec4Array> seeds = new osg::Vec4Array(osg::Array::BIND_PER_VERTEX);
    seeds->reserve(MAX_DROPS * 4);
    Random random(11);
    const auto share = [&random] { return random.getFloat(0.0f, 1.0f); };
    for (int i = 0; i < MAX_DROPS; ++i) {
        const float x = share(), y = share(), z = share();
        seeds->insert(seeds->end(), 4, osg::Vec4f(x, y, z, share()));
    }
    return seeds;
}

double wrap(double v, double period) {
    const double rest = std::fmod(v, period);
    return rest < 0.0 ? rest + period : rest;
}

const ObjectParticles* findActive(const World& world, const jString& name) {
    const Node* const node = world.getNodeByName(name);
    if (!node || node->getType() != Node::PARTICLES || !node->isActive()) return nullptr;
    return static_cast<const ObjectParticles*>(node);
}

double densityOf(const ObjectParticles& node) {
    const double authored = node.getAuthoredSpawnRate();
    return authored > 0.0 ? std::clamp(node.getSpawnRate() / authored, 0.0, 1.0) : 0.0;
}

double shareOf(Quality quality) {
    return quality == Quality::LOW ? 0.5 : 1.0;
}

/// Fall and drift relative to the ground, east, north, up.
dvec3 velocityOf(const ObjectParticles& node, const vec3& wind) {
    const double fall = std::fabs(node.getLinearVelocity().z);
    return dvec3(wind * node.getSettings().wind) - dvec3(0.0, 0.0, fall);
}

}  // namespace

void FallMotion::update(double dt, const dmat4& local, const dvec3& velocity) {
    const dvec3 moved = m_has_place ? local.t - m_place : dvec3();
    m_place = local.t;
    m_has_place = true;
    const dvec3 way(dot(local.x, moved), dot(local.y, moved), dot(local.z, moved));
    const dvec3 next = m_offset + velocity * dt - way;
    if (!isFinite(next)) return;
    m_offset = dvec3(wrap(next.x, m_box), wrap(next.y, m_box), wrap(next.z, m_box));
    if (dt > 0.0) {
        const bool is_flight = length(way) < MAX_EYE_SPEED * dt;
        m_eye_velocity += ((is_flight ? way / dt : dvec3()) - m_eye_velocity) * (1.0 - std::exp(-dt / SMOOTHING));
    }
    m_velocity = velocity - m_eye_velocity;
}

Precipitation::Precipitation(osg::Group& parent, ShaderLibrary& shaders) : m_group(new osg::Group) {
    const osg::ref_ptr<osg::Vec4Array> seeds = makeSeeds();
    m_group->setCullingActive(false);
    for (int i = 0; i < NUM_KINDS; ++i) m_kinds.push_back(makeKind(i, shaders, seeds));
    parent.addChild(m_group);
}

Precipitation::Kind Precipitation::makeKind(int index, ShaderLibrary& shaders, osg::Vec4Array* seeds) {
    const Style& style = STYLES[index];
    Kind kind{style.node, FallMotion(style.box), new osg::Geometry, new osg::DrawArrays(GL_QUADS, 0, 0), {}, {}, {}, {},
              {}};
    kind.geometry->setUseDisplayList(false);
    kind.geometry->setUseVertexBufferObjects(true);
    kind.geometry->setCullingActive(false);
    kind.geometry->setNodeMask(0);
    kind.geometry->setVertexArray(seeds);
    kind.geometry->addPrimitiveSet(kind.quads);
    osg::StateSet& state = *kind.geometry->getOrCreateStateSet();
    state.setAttributeAndModes(shaders.getProgram("rain", {style.define}));
    setBlended(state, DRAW_PRECIPITATION);
    kind.offset = addUniform(state, "u_drop_offset", osg::Vec3f());
    kind.centre = addUniform(state, "u_drop_centre", osg::Vec3f());
    kind.streak = addUniform(state, "u_drop_streak", osg::Vec3f());
    kind.look = addUniform(state, "u_drop_look", osg::Vec4f());
    kind.color = addUniform(state, "u_drop_color", osg::Vec4f());
    m_group->addChild(kind.geometry);
    return kind;
}

void Precipitation::setUniforms(Kind& kind, int index, const ObjectParticles& node, const FrameView& view) {
    const Style& style = STYLES[index];
    const dvec3 velocity = kind.motion.getVelocity();
    const double speed = length(velocity);
    const double smear = std::min(style.shutter, speed > 0.0 ? style.longest / speed : 0.0);
    const dvec3& middle = view.middle;
    const dvec3 centre =
        dvec3(dot(view.local.x, middle), dot(view.local.y, middle), dot(view.local.z, middle)) * (0.4 * style.box);
    const auto f = [](double v) { return static_cast<float>(v); };
    kind.offset->set(osg::Vec3f(toOsg(kind.motion.getOffset())));
    kind.centre->set(osg::Vec3f(toOsg(centre)));
    kind.streak->set(osg::Vec3f(toOsg(velocity * smear)));
    kind.look->set(osg::Vec4f(f(style.box), f(node.getSettings().size * style.width), f(view.focal),
                              f(std::fmod(view.time, 400.0 * jMath::PI))));
    kind.color->set(toOsg(node.getSettings().color));
}

void Precipitation::update(const FrameView& view, const World& world) {
    const vec3 wind = world.getEnvironment().wind;
    for (int i = 0; i < NUM_KINDS; ++i) {
        Kind& kind = m_kinds[static_cast<std::size_t>(i)];
        const ObjectParticles* const node = findActive(world, kind.node);
        const double density = node ? densityOf(*node) * shareOf(view.quality) : 0.0;
        const int count = static_cast<int>(std::lround(density * STYLES[i].most));
        kind.geometry->setNodeMask(count > 0 ? ~0u : 0u);
        kind.quads->setCount(4 * count);
        if (count == 0) continue;
        kind.motion.update(view.dt, view.local, velocityOf(*node, wind));
        setUniforms(kind, i, *node, view);
    }
}
