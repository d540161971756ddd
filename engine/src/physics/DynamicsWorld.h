// Bullet's world with the engine's substeps, collision filter and integration.
#pragma once

#include <btBulletDynamicsCommon.h>

#include <vector>

#include "physics/Collidable.h"

/// Whether two may collide: by groups and masks; never two of one body's subtree; patches with their own body only.
bool mayTouch(const Collidable& a, const Collidable& b);
inline Collidable& collidableOf(const btCollisionObject& object) {
    return *static_cast<Collidable*>(object.getUserPointer());
}

/// What the owner of the bodies does within a substep.
class SubstepObserver {
public:
    /// Called with the contacts of the bodies that are awake. True when it woke others, whose contacts are then found
    /// as well.
    virtual bool wakeTouched() = 0;
    /// Called with all contacts, before impulses are solved.
    virtual void contactsFound() = 0;
    /// Called with the solved velocities: moves bodies and kinematic targets by dt seconds.
    virtual void integrate(double dt) = 0;

protected:
    ~SubstepObserver() = default;
};

/// Bullet's components in the order of construction.
struct DynamicsParts {
    DynamicsParts();

    struct Filter final : btOverlapFilterCallback {
        bool needBroadphaseCollision(btBroadphaseProxy* a, btBroadphaseProxy* b) const override;
    };
    struct Dispatcher final : btCollisionDispatcher {
        using btCollisionDispatcher::btCollisionDispatcher;
        bool needsCollision(const btCollisionObject* a, const btCollisionObject* b) override;
        /// By the ids of the two and of their shapes. Bullet's own order comes from its broadphase, which compares
        /// addresses, and decides the solver's last bits.
        void sortManifolds();

        bool ignore_modes = false;  ///< also test pairs without a simulated body
    };

    /// Small pools that grow: the library's defaults are for thousands of bodies.
    static btDefaultCollisionConstructionInfo smallPools() {
        btDefaultCollisionConstructionInfo info;
        info.m_defaultMaxPersistentManifoldPoolSize = info.m_defaultMaxCollisionAlgorithmPoolSize = 512;
        return info;
    }

    btDefaultCollisionConfiguration configuration{smallPools()};
    Dispatcher dispatcher{&configuration};
    btDbvtBroadphase broadphase;
    Filter filter;
    btSequentialImpulseConstraintSolver solver;
};

class DynamicsWorld final : public btDiscreteDynamicsWorld {
public:
    DynamicsWorld(DynamicsParts& parts, SubstepObserver& observer);

    void insert(Collidable& c);
    void remove(Collidable& c);
    /// Removes its pairs, so that the filter decides on them again.
    void refilter(Collidable& c);
    void runSubstep(double dt) { internalSingleStepSimulation(dt); }
    /// Reports where two overlap, also where a step would not test the pair.
    void findOverlaps(Collidable& a, Collidable& b, ContactResultCallback& found);
    /// The pose that a body reaches in dt seconds, stopped where one of its cores would enter a collider.
    btTransform advance(const BodyState& body, double dt);

protected:
    void performDiscreteCollisionDetection() override;
    void integrateTransforms(btScalar dt) override { m_observer.integrate(dt); }

private:
    DynamicsParts& m_parts;
    SubstepObserver& m_observer;
    std::vector<Collidable*> m_near;  ///< scratch, kept for its capacity
};
