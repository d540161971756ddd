// Particle systems as batches of quads, written once per frame while any particle lives.
#include "effects/ParticleDrawing.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "base/Convert.h"
#include "base/ShaderLibrary.h"
#include "base/TextureStore.h"
#include "engine/scene/ObjectParticles.h"

namespace {

constexpr unsigned SPRITE_UNIT = 0;
constexpr std::size_t FIRST_CAPACITY = 64;
constexpr float FADE = 0.2f;  // when particles are merged: share of them that fades in or out instead of switching

bool isFlat(const ParticleSettings& settings) {
    return settings.velocity.z == 0.0f && settings.velocity_spread.z == 0.0f && settings.buoyancy == 0.0f &&
           !settings.additive;
}

/// Particles below a decal are foam; the decal shows them.
bool isBelowDecal(const Node& node) {
    const Node* const above = node.getParent();
    return above && (above->getType() == Node::DECAL_ORTHO || isBelowDecal(*above));
}

/// Maximum area covered by all particles together, in picture areas; overlaps count several times.
double fillLimit(Quality quality) {
    return quality == Quality::LOW ? 0.6 : quality == Quality::MEDIUM ? 1.3 : 10.0;
}

/// Computes the area that a particle covers on screen.
class Frustum {
public:
    explicit Frustum(const FrameView& view) : m_camera(view.camera) {
        m_half_width = 0.5 * view.width / view.focal;
        m_half_height = 0.5 * view.height / view.focal;
        m_picture = 4.0 * m_half_width * m_half_height;
        const double ahead = -dot(view.middle, m_camera.z);
        m_middle_x = dot(view.middle, m_camera.x) / ahead;
        m_middle_y = dot(view.middle, m_camera.y) / ahead;
        const dvec3 corner(std::fabs(m_middle_x) + m_half_width, std::fabs(m_middle_y) + m_half_height, 1.0);
        m_slant = length(corner);
    }
    /// In picture areas, at most 1; 0 when out of sight.
    double getArea(const Particle& p) const {
        const dvec3 from_eye = p.position - m_camera.t;
        const double ahead = -dot(from_eye, m_camera.z), size2 = p.size * p.size, reach = p.size * m_slant;
        const double x = dot(from_eye, m_camera.x) - ahead * m_middle_x;
        const double y = dot(from_eye, m_camera.y) - ahead * m_middle_y;
        const bool is_outside = ahead < -p.size || std::fabs(x) > std::max(ahead, 0.0) * m_half_width + reach ||
                                std::fabs(y) > std::max(ahead, 0.0) * m_half_height + reach;
        return is_outside ? 0.0 : std::min(size2 / (std::max(length2(from_eye), size2) * m_picture), 1.0);
    }

private:
    dmat4 m_camera;
    // Half sizes and centre of the picture at 1 m along the eye's axis.
    double m_half_width, m_half_height;
    double m_middle_x, m_middle_y;
    double m_picture;  ///< area of the picture
    double m_slant;    ///< distance of the furthest corner
};

/// Histogram of areas by powers of two.
class AreaCounts {
public:
    void add(double area) {
        if (area <= 0.0) return;
        const int bin = std::clamp(-std::ilogb(area), 0, BINS - 1);
        ++m_counts[bin];
        m_sums[bin] += area;
    }
    /// The largest area per particle for which the sum keeps the limit; 1 when no limit is necessary.
    double findWidest(double limit) const {
        double smaller = 0.0;
        for (const double sum : m_sums) smaller += sum;
        int wider = 0;
        for (int bin = 0; bin < BINS && smaller + wider * std::ldexp(1.0, -bin) > limit; ++bin) {
            smaller -= m_sums[bin];
            wider += m_counts[bin];
        }
        return wider == 0 ? 1.0 : std::max(limit - smaller, 0.0) / wider;
    }

private:
    static constexpr int BINS = 32;
    int m_counts[BINS] = {};
    double m_sums[BINS] = {};
};

/// Rotation of the sprite: differs between particles and is constant for each, since it depends on its time of birth.
float turnOf(const Particle& p, double time) {
    return static_cast<float>(std::fmod(std::fabs((time - p.age) * 97.0 + p.life * 31.0), 2.0 * jMath::PI));
}

osg::ref_ptr<osg::StateSet> makeState(ShaderLibrary& shaders, osg::Texture2D* texture, bool additive, bool flat) {
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    std::vector<std::string> defines;
    if (texture) defines.emplace_back("IMAGE");
    if (additive) defines.emplace_back("ADDITIVE");
    if (flat) defines.emplace_back("FLAT");
    state->setAttributeAndModes(shaders.getProgram("particle", defines));
    if (texture) {
        state->setTextureAttribute(SPRITE_UNIT, texture);
        state->addUniform(new osg::Uniform("u_sprite", static_cast<int>(SPRITE_UNIT)));
    }
    if (additive) {
        setPremultiplied(*state, DRAW_BLENDED + 1);
    } else {
        setBlended(*state, DRAW_BLENDED, "DepthSortedBin");
    }
    return state;
}

}  // namespace

ParticleDrawing::ParticleDrawing(osg::Group& parent, ShaderLibrary& shaders)
    : m_shaders(shaders), m_group(new osg::Group) {
    parent.addChild(m_group);
}

void ParticleDrawing::add(const ObjectParticles& particles) {
    if (isBelowDecal(particles)) return;
    const auto [at, is_new] = m_systems.try_emplace(particles.getId());
    if (!is_new) return;
    const ParticleSettings& settings = particles.getSettings();
    at->second.particles = &particles;
    at->second.look = {settings.texture, settings.additive, isFlat(settings)};
}

void ParticleDrawing::remove(int id) {
    const auto found = m_systems.find(id);
    if (found == m_systems.end()) return;
    const System& system = found->second;
    if (system.place) {
        m_looks.at(system.look).group->removeChild(system.place);
        releaseLook(system.look);
    }
    m_systems.erase(found);
}

osg::Group& ParticleDrawing::acquireLook(const LookKey& key) {
    Look& look = m_looks[key];
    if (look.users++ == 0) {
        const auto& [texture, additive, flat] = key;
        look.group = new osg::Group;
        const osg::ref_ptr<osg::Texture2D> image = texture.empty() ? nullptr : loadTexture(texture);
        look.group->setStateSet(makeState(m_shaders, image, additive, flat));
        m_group->addChild(look.group);
    }
    return *look.group;
}

void ParticleDrawing::releaseLook(const LookKey& key) {
    const auto found = m_looks.find(key);
    if (--found->second.users > 0) return;
    m_group->removeChild(found->second.group);
    m_looks.erase(found);
}

void ParticleDrawing::makeNode(System& system) {
    const ParticleSettings& settings = system.particles->getSettings();
    system.place = new osg::MatrixTransform;
    system.place->setDataVariance(osg::Object::DYNAMIC);
    system.geometry = new SpriteGeometry;
    system.places = new osg::Vec4Array(osg::Array::BIND_PER_VERTEX);
    system.ages = new osg::Vec4Array(osg::Array::BIND_PER_VERTEX);
    system.quads = new osg::DrawArrays(GL_QUADS, 0, 0);
    system.geometry->setVertexArray(system.places);
    system.geometry->setTexCoordArray(0, system.ages);
    system.geometry->addPrimitiveSet(system.quads);
    system.geometry->expectChanges();
    osg::StateSet& state = *system.geometry->getOrCreateStateSet();
    state.addUniform(new osg::Uniform("u_start_color", toOsg(settings.color)));
    state.addUniform(new osg::Uniform("u_end_color", toOsg(settings.end_color)));
    system.place->addChild(system.geometry);
    acquireLook(system.look).addChild(system.place);
}

void ParticleDrawing::sortByDistance(const ObjectParticles& particles, const dvec3& eye) {
    m_order.clear();
    for (const Particle& p : particles.getParticles()) {
        m_order.emplace_back(static_cast<float>(length2(p.position - eye)), static_cast<std::uint32_t>(m_order.size()));
    }
    std::sort(m_order.begin(), m_order.end(), std::greater<>());
}

/// Finds the maximum area per particle for which all of them together keep the limit.
void ParticleDrawing::limitFill(const FrameView& view) {
    const Frustum frustum(view);
    AreaCounts counts;
    for (const auto& [id, system] : m_systems) {
        for (const Particle& p : system.particles->getParticles()) counts.add(frustum.getArea(p));
    }
    m_widest = counts.findWidest(fillLimit(view.quality));
}

void ParticleDrawing::write(System& system, const FrameView& view) {
    const std::vector<Particle>& particles = system.particles->getParticles();
    const std::size_t count = particles.size() * 4;
    if (system.places->size() < count) {
        std::size_t capacity = std::max(system.places->size() / 4, FIRST_CAPACITY);
        while (capacity < particles.size()) capacity *= 2;
        system.places->resize(capacity * 4);
        system.ages->resize(capacity * 4);
    }
    const BoundBox& box = system.particles->getWorldParticleBox();
    const dvec3 origin = box.getCenter();
    const Frustum frustum(view);
    const auto put = [&](const Particle& p, std::size_t at) {
        const osg::Vec3f place(toOsg(p.position - origin));
        const float age = p.life > 0.0f ? std::min(p.age / p.life, 1.0f) : 1.0f;
        const float turn = turnOf(p, view.time);
        const double area = frustum.getArea(p);
        const float share = area > m_widest ? static_cast<float>(m_widest / area) : 1.0f;
        const float rank = turn * static_cast<float>(0.5 / jMath::PI);
        const float weight = std::clamp((share * (1.0f + FADE) - rank) / (share * FADE), 0.0f, 1.0f);
        if (weight == 0.0f) return at;
        std::fill_n(&(*system.places)[at], 4, osg::Vec4f(place, p.size));
        std::fill_n(&(*system.ages)[at], 4, osg::Vec4f(age, turn, weight, 1.0f / share));
        return at + 4;
    };
    std::size_t at = 0;
    if (system.particles->getSettings().additive) {
        for (const Particle& p : particles) at = put(p, at);
    } else {
        sortByDistance(*system.particles, view.camera.t);
        for (const auto& entry : m_order) at = put(particles[entry.second], at);
    }
    system.places->dirty();
    system.ages->dirty();
    system.quads->setCount(static_cast<int>(at));
    const osg::Vec3f half(toOsg(box.getSize() * 0.75 + dvec3(1.0, 1.0, 1.0)));  // sprites are rotated in their boxes
    system.geometry->setBox(osg::BoundingBox(-half, half));
    system.place->setMatrix(osg::Matrixd::translate(toOsg(origin)));
}

void ParticleDrawing::update(const FrameView& view) {
    limitFill(view);
    for (auto& [id, system] : m_systems) {
        const bool lives = !system.particles->getParticles().empty();
        if (!lives && !system.place) continue;
        if (!system.place) makeNode(system);
        system.place->setNodeMask(lives ? ~0u : 0u);
        if (lives) write(system, view);
    }
}
