// Particle systems: simulated here, drawn by the picture.
#pragma once

#include <vector>

#include "engine/Api.h"
#include "engine/math/jMath.h"
#include "engine/scene/Object.h"

/// Emission and motion of particles. Positions and directions are in the node's frame at birth; after that particles
/// are in the world frame.
struct ParticleSettings {
    float spawn_rate = 10.0f;                ///< particles per second
    float life = 1.0f;                       ///< seconds
    float life_spread = 0.0f;                ///< plus or minus, seconds
    vec3 velocity{0.0f, 0.0f, 1.0f};         ///< m/s
    vec3 velocity_spread;                    ///< plus or minus per component, m/s
    vec3 emitter_size;                       ///< full extents of the emission box, metres
    float size = 1.0f;                       ///< metres
    float size_spread = 0.0f;                ///< plus or minus, metres
    float growth = 0.0f;                     ///< metres per second
    float drag = 0.0f;                       ///< per second
    float buoyancy = 0.0f;                   ///< acceleration along the local vertical, m/s^2 (negative falls)
    float wind = 0.0f;                       ///< share of the wind's velocity that drag converges to, 0..1
    vec4 color{1.0f, 1.0f, 1.0f, 1.0f};      ///< at birth
    vec4 end_color{1.0f, 1.0f, 1.0f, 0.0f};  ///< at death
    bool additive = false;
    bool emitting = true;   ///< emits from the start
    float delay = 0.0f;     ///< seconds from the start of playing to the first emission
    float duration = 0.0f;  ///< seconds of emission after the delay; 0 for unlimited
    int max_particles = 1000;
    jString texture;  ///< image file; empty for a soft disc
};

/// One living particle; geocentric, metres and m/s.
struct Particle {
    dvec3 position;
    vec3 velocity;
    float age = 0.0f;   ///< seconds
    float life = 1.0f;  ///< seconds
    float size = 1.0f;  ///< current, metres
};

/// Emits while its emitter is enabled and the node is active; living particles always continue to the end of their
/// life.
class ENGINE_API ObjectParticles final : public Object {
public:
    explicit ObjectParticles(const ParticleSettings& settings);
    ~ObjectParticles() override;

    int getType() const override { return PARTICLES; }
    const ParticleSettings& getSettings() const { return m_settings; }

    void play();                                          ///< no effect when it is playing
    void stop() { m_emitting = false; }                   ///< living particles are kept
    bool isEmitterEnabled() const { return m_emitting; }  ///< is playing, also before and after the emission
    void clear();                                         ///< removes all living particles

    float getSpawnRate() const { return m_settings.spawn_rate; }  ///< per second
    void setSpawnRate(float rate) { m_settings.spawn_rate = rate; }
    float getAuthoredSpawnRate() const { return m_authored_rate; }  ///< its value in the settings, per second
    float getLife() const { return m_settings.life; }
    void setLife(float seconds) { m_settings.life = seconds; }
    float getLifeSpread() const { return m_settings.life_spread; }
    void setLifeSpread(float seconds) { m_settings.life_spread = seconds; }
    const vec3& getLinearVelocity() const { return m_settings.velocity; }
    void setLinearVelocity(const vec3& v) { m_settings.velocity = v; }
    const vec3& getLinearVelocitySpread() const { return m_settings.velocity_spread; }
    void setLinearVelocitySpread(const vec3& v) { m_settings.velocity_spread = v; }

    /// Planes (XY of the frames, world transforms) that stop falling particles.
    int getNumDeflectors() const { return m_deflectors.size(); }
    void setDeflector(int i, const dmat4& world);
    void addDeflector(const dmat4& world) { m_deflectors.append(world); }

    const std::vector<Particle>& getParticles() const { return m_particles; }
    /// Bounding box of the living particles in the world; empty when there are none.
    const BoundBox& getWorldParticleBox() const { return m_world_box; }
    /// "spawn_rate", "emitting".
    bool setParameter(const jString& parameter, float value) override;

    /// Simulates one step of dt seconds with a wind (world frame, m/s); called by the world.
    void simulate(float dt, const vec3& wind);

protected:
    void worldChanged() override;

private:
    struct Step;

    void emit(const Step& step);
    bool isEmitting(float dt);
    Particle makeParticle(const dmat4& frame, const Step& step);
    void updateBox();

    ParticleSettings m_settings;
    float m_authored_rate;
    bool m_emitting;
    float m_played = 0.0f;  ///< seconds since the start of playing
    float m_due = 0.0f;     ///< particles due for emission, with fraction
    bool m_has_last_frame = false;
    dmat4 m_last_frame;  ///< world transform at the end of the last step with emission
    Random m_random;     ///< own sequence, so that systems are independent of each other
    jVector<dmat4> m_deflectors;
    std::vector<Particle> m_particles;
    BoundBox m_world_box;
};
