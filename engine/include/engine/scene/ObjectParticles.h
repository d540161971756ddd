// Particle systems: simulated here, drawn by the picture.
#pragma once

#include <vector>

#include "engine/Api.h"
#include "engine/math/jMath.h"
#include "engine/scene/Object.h"

/// How a system emits and how its particles move. Positions and directions are in the node's frame at birth; particles
/// then live in the world.
struct ParticleSettings {
    float spawn_rate = 10.0f;                ///< particles a second
    float life = 1.0f;                       ///< seconds
    float life_spread = 0.0f;                ///< plus or minus, seconds
    vec3 velocity{0.0f, 0.0f, 1.0f};         ///< m/s
    vec3 velocity_spread;                    ///< plus or minus, m/s, a component
    vec3 emitter_size;                       ///< full extents of the box of birth, metres
    float size = 1.0f;                       ///< metres
    float size_spread = 0.0f;                ///< plus or minus, metres
    float growth = 0.0f;                     ///< metres a second
    float drag = 0.0f;                       ///< a second
    float buoyancy = 0.0f;                   ///< upward acceleration along the local vertical, m/s^2 (negative falls)
    float wind = 0.0f;                       ///< how much of the wind's velocity it takes, 0..1
    vec4 color{1.0f, 1.0f, 1.0f, 1.0f};      ///< at birth
    vec4 end_color{1.0f, 1.0f, 1.0f, 0.0f};  ///< at death
    bool additive = false;
    bool emitting = true;   ///< plays from the start
    float delay = 0.0f;     ///< seconds from when it begins to play until it emits
    float duration = 0.0f;  ///< seconds that it then emits; 0 as long as it plays
    int max_particles = 1000;
    jString texture;  ///< image file; empty for a soft disc
};

/// One living particle: geocentric metres and m/s.
struct Particle {
    dvec3 position;
    vec3 velocity;
    float age = 0.0f;   ///< seconds
    float life = 1.0f;  ///< seconds
    float size = 1.0f;  ///< metres, now
};

/// Emits while its emitter is enabled and the node is active; what lives goes on until its life ends.
class ENGINE_API ObjectParticles final : public Object {
public:
    explicit ObjectParticles(const ParticleSettings& settings);
    ~ObjectParticles() override;

    int getType() const override { return PARTICLES; }
    const ParticleSettings& getSettings() const { return m_settings; }

    void play();                                          ///< one that plays goes on
    void stop() { m_emitting = false; }                   ///< living particles stay
    bool isEmitterEnabled() const { return m_emitting; }  ///< plays, also before and after what it emits
    void clear();                                         ///< ends every living particle

    float getSpawnRate() const { return m_settings.spawn_rate; }  ///< a second
    void setSpawnRate(float rate) { m_settings.spawn_rate = rate; }
    float getAuthoredSpawnRate() const { return m_authored_rate; }  ///< that it was made with, a second
    float getLife() const { return m_settings.life; }
    void setLife(float seconds) { m_settings.life = seconds; }
    float getLifeSpread() const { return m_settings.life_spread; }
    void setLifeSpread(float seconds) { m_settings.life_spread = seconds; }
    const vec3& getLinearVelocity() const { return m_settings.velocity; }
    void setLinearVelocity(const vec3& v) { m_settings.velocity = v; }
    const vec3& getLinearVelocitySpread() const { return m_settings.velocity_spread; }
    void setLinearVelocitySpread(const vec3& v) { m_settings.velocity_spread = v; }

    /// Planes (their frames' XY) that living particles do not fall through; world transforms.
    int getNumDeflectors() const { return m_deflectors.size(); }
    void setDeflector(int i, const dmat4& world);
    void addDeflector(const dmat4& world) { m_deflectors.append(world); }

    const std::vector<Particle>& getParticles() const { return m_particles; }
    /// Box of the living particles in the world; empty when none lives.
    const BoundBox& getWorldParticleBox() const { return m_world_box; }
    /// "spawn_rate", "emitting".
    bool setParameter(const jString& parameter, float value) override;

    /// One step of dt seconds in a wind (world frame, m/s); called by the world.
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
    float m_played = 0.0f;  ///< seconds since it began to play
    float m_due = 0.0f;     ///< particles owed
    bool m_has_last_frame = false;
    dmat4 m_last_frame;  ///< world transform at the end of the last step that emitted
    Random m_random;     ///< of its own, so that no system disturbs another
    jVector<dmat4> m_deflectors;
    std::vector<Particle> m_particles;
    BoundBox m_world_box;
};
