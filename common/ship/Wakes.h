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

/// What a particle system of the wake was authored with.
struct AuthoredParticles {
    float life = 0.0f, life_spread = 0.0f;  ///< seconds
    vec3 velocity, velocity_spread;         ///< m/s
    float spawn_rate = 0.0f;                ///< a second
};

/// Keeps the wake's node level on the ship's course, lays the foam's picture as wide as its particles reach, and lets
/// foam live shorter in higher seas.
class LOGIC_API Wakes {
public:
    /// None is owned; all must outlive this. The ocean may be null: the foam's life is then as authored.
    Wakes(Node* node, Ship* ship, ObjectOcean* ocean);

    virtual float getFoamLife() const { return m_foam_life; }
    virtual void setFoamLife(float seconds) { m_foam_life = seconds; }  ///< in a calm sea
    virtual ~Wakes() = default;

    /// Once a frame before the physics. Without foam particles nothing happens.
    void update();
    /// Tuning and the foam's life as they were at first.
    void reset();
    void clearParticles();  ///< ends all living foam

    const jVector<ObjectParticles*>& getFoamParticles() const { return m_foam_particles; }
    /// By the node's id; null for a system that does not hang below the wake's node.
    const AuthoredParticles* getAuthored(int id) const;

private:
    using Tuning = std::array<float, 14>;

    void sizeFoam();
    void level();
    void shortenLife();

    Ship* m_ship;
    dmat4 m_wake_offset;  ///< of the wake's node, relative to the ship
    jMap<int, AuthoredParticles> m_authored;
    DecalOrtho* m_foam = nullptr;
    jVector<ObjectParticles*> m_foam_particles;
    ObjectOcean* m_ocean;
    Tuning m_tuning;  ///< for spray and bow waves to come
    std::uint64_t m_tuning_end = 0;
    Node* m_node;
    float m_foam_life;
};
