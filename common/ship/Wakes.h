// The foam behind a ship.
#pragma once

#include <engine/math/Transform.h>
#include <engine/text/Containers.h>

#include <array>
#include <cstdint>

#include "common/LogicApi.h"

class DecalOrtho;
class Node;
class ObjectOcean;
class ObjectParticles;
class Ship;

/// Authored settings of one particle system of the wake.
struct AuthoredParticles {
    float life = 0.0f, life_spread = 0.0f;  ///< seconds
    vec3 velocity, velocity_spread;         ///< m/s
    float spawn_rate = 0.0f;                ///< particles per second
};

/// Keeps the wake's node level and aligned with the ship's course, sizes the foam decal to cover its particles, and
/// shortens the life of the foam in higher seas.
class LOGIC_API Wakes {
public:
    /// None is owned; all must outlive this. The ocean may be null: the foam then has its authored life.
    Wakes(Node* node, Ship* ship, ObjectOcean* ocean);

    virtual float getFoamLife() const { return m_foam_life; }
    virtual void setFoamLife(float seconds) { m_foam_life = seconds; }  ///< life in a calm sea
    virtual ~Wakes() = default;

    /// Call once a frame before the physics step. No effect without foam particles.
    void update();
    /// Sets tuning and foam life to their defaults.
    void reset();
    void clearParticles();  ///< removes all foam particles

    const jVector<ObjectParticles*>& getFoamParticles() const { return m_foam_particles; }
    /// By the node's id; null for a particle system outside the wake's subtree.
    const AuthoredParticles* getAuthored(int id) const;

private:
    using Tuning = std::array<float, 14>;

    void sizeFoam();
    void level();
    void shortenLife();

    Ship* m_ship;
    dmat4 m_wake_offset;  ///< pose of the wake's node relative to the ship
    jMap<int, AuthoredParticles> m_authored;
    DecalOrtho* m_foam = nullptr;
    jVector<ObjectParticles*> m_foam_particles;
    ObjectOcean* m_ocean;
    Tuning m_tuning;  ///< not used yet; for spray and bow waves
    std::uint64_t m_tuning_end = 0;
    Node* m_node;
    float m_foam_life;
};
