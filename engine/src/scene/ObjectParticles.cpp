// Particle systems: birth, motion and death of particles, once per frame after the physics.
#include "engine/scene/ObjectParticles.h"

#include <cmath>

#include "engine/globe/EllipsoidModel.h"
#include "scene/WorldState.h"

namespace {

constexpr double MAX_EMITTER_SPEED = 2000.0;  // m/s; a faster move of the emitter counts as a teleport

float spread(Random& random, float middle, float range) {
    return middle + range * random.getFloat(-1.0f, 1.0f);
}

vec3 spread(Random& random, const vec3& middle, const vec3& range) {
    const float x = spread(random, middle.x, range.x);
    const float y = spread(random, middle.y, range.y);
    return {x, y, spread(random, middle.z, range.z)};
}

/// Forces on a particle during a step.
struct Air {
    vec3 lift;     ///< acceleration, m/s^2, world frame
    vec3 carry;    ///< velocity that drag converges to
    float drag;    ///< 1/s
    float growth;  ///< metres per second
};

void advance(Particle& p, const Air& air, float dt, float fade) {
    p.age += dt;
    p.velocity = air.carry + (p.velocity - air.carry) * fade + air.lift * dt;
    p.position += dvec3(p.velocity) * static_cast<double>(dt);
    p.size = std::max(0.0f, p.size + air.growth * dt);
}

/// Moves particles that fell through a plane back onto it.
void deflect(std::vector<Particle>& particles, const dmat4& plane) {
    const dvec3 normal = normalize(plane.z);
    for (Particle& p : particles) {
        const double above = dot(p.position - plane.t, normal);
        if (above >= 0.0) continue;
        p.position -= normal * above;
        const float away = dot(p.velocity, narrow(normal));
        if (away < 0.0f) p.velocity = p.velocity - narrow(normal) * away;
    }
}

}  // namespace

struct ObjectParticles::Step {
    float dt;
    Air air;
};

ObjectParticles::ObjectParticles(const ParticleSettings& settings)
    : m_settings(settings), m_authored_rate(settings.spawn_rate), m_emitting(settings.emitting) {}

ObjectParticles::~ObjectParticles() = default;

void ObjectParticles::worldChanged() {
    Object::worldChanged();
    if (!getWorld()) return;
    // From the node's order in the world, which is reproducible; ids are not.
    m_random.setSeed((getWorld()->getState().joined + 1) * 0x9E3779B97F4A7C15ULL);
    m_has_last_frame = false;
}

void ObjectParticles::play() {
    if (!m_emitting) m_played = 0.0f;
    m_emitting = true;
}

void ObjectParticles::clear() {
    m_particles.clear();
    m_world_box = {};
    m_due = 0.0f;
}

void ObjectParticles::setDeflector(int i, const dmat4& world) {
    if (i >= 0 && i < m_deflectors.size() && isFinite(world)) m_deflectors[i] = world;
}

bool ObjectParticles::setParameter(const jString& parameter, float value) {
    if (parameter == "spawn_rate")
        setSpawnRate(value);
    else if (parameter == "emitting")
        value > 0.5f ? play() : stop();
    else
        return Object::setParameter(parameter, value);
    return true;
}

void ObjectParticles::simulate(float dt, const vec3& wind) {
    if (!(dt > 0.0f)) return;
    if (m_particles.empty() && !(m_emitting && isActive())) {
        m_has_last_frame = false;
        return;
    }
    const vec3 up = narrow(EllipsoidModel().getUp(getWorldPosition()));
    const float drag = std::max(0.0f, m_settings.drag);
    const Step step{dt, {up * m_settings.buoyancy, wind * m_settings.wind, drag, m_settings.growth}};
    const float fade = std::exp(-drag * dt);
    for (std::size_t i = 0; i < m_particles.size();) {
        Particle& p = m_particles[i];
        advance(p, step.air, dt, fade);
        if (p.age < p.life) {
            ++i;
        } else {
            p = m_particles.back();
            m_particles.pop_back();
        }
    }
    emit(step);
    for (const dmat4& plane : m_deflectors) deflect(m_particles, plane);
    updateBox();
}

/// Advances the playing time; returns whether the system now emits.
bool ObjectParticles::isEmitting(float dt) {
    if (!m_emitting || !isActive()) return false;
    m_played += dt;
    const float begun = m_played - m_settings.delay;
    return begun > 0.0f && !(m_settings.duration > 0.0f && begun - dt >= m_settings.duration);
}

/// Particles are born uniformly over the step, along the motion of the emitter, and move from then on.
void ObjectParticles::emit(const Step& step) {
    const dmat4 to = getWorldTransform();
    const bool is_steady = m_has_last_frame && length(to.t - m_last_frame.t) <= MAX_EMITTER_SPEED * step.dt;
    const dmat4 from = is_steady ? m_last_frame : to;
    m_has_last_frame = isEmitting(step.dt);
    m_last_frame = to;
    if (!m_has_last_frame || !(m_settings.spawn_rate > 0.0f)) {
        m_due = 0.0f;
        return;
    }
    const auto most = static_cast<std::size_t>(std::max(0, m_settings.max_particles));
    m_particles.reserve(most);
    const float owed_before = m_due;
    m_due = std::min(m_due + m_settings.spawn_rate * step.dt, static_cast<float>(most) + 1.0f);
    const float per_particle = step.dt / (m_due - owed_before);
    for (int n = 1; m_due >= 1.0f; ++n) {
        m_due -= 1.0f;
        if (m_particles.size() >= most) continue;
        const float born = std::clamp((static_cast<float>(n) - owed_before) * per_particle, 0.0f, step.dt);
        dmat4 frame = to;
        frame.t = from.t + (to.t - from.t) * static_cast<double>(born / step.dt);
        Particle p = makeParticle(frame, step);
        const float flown = step.dt - born;
        advance(p, step.air, flown, std::exp(-step.air.drag * flown));
        if (p.age < p.life) m_particles.push_back(p);
    }
}

Particle ObjectParticles::makeParticle(const dmat4& frame, const Step& step) {
    Particle p;
    const vec3 place = spread(m_random, {}, m_settings.emitter_size * 0.5f);
    const vec3 velocity = spread(m_random, m_settings.velocity, m_settings.velocity_spread);
    p.position = frame * dvec3(place);
    p.velocity = narrow(rotate(frame, dvec3(velocity))) + step.air.carry;
    p.life = spread(m_random, m_settings.life, m_settings.life_spread);
    p.size = std::max(0.0f, spread(m_random, m_settings.size, m_settings.size_spread));
    return p;
}

void ObjectParticles::updateBox() {
    m_world_box = {};
    dvec3 lo = m_world_box.min, hi = m_world_box.max;
    for (const Particle& p : m_particles) {
        const double r = 0.5 * p.size;
        lo =
            dvec3(std::min(lo.x, p.position.x - r), std::min(lo.y, p.position.y - r), std::min(lo.z, p.position.z - r));
        hi =
            dvec3(std::max(hi.x, p.position.x + r), std::max(hi.y, p.position.y + r), std::max(hi.z, p.position.z + r));
    }
    m_world_box = BoundBox(lo, hi);
}
