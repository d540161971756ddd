// Bullet's world as this engine drives it: fixed parts of a frame, own filter, own integration.
#pragma once

#include <btBulletDynamicsCommon.h>

#include <vector>

#include "physics/Collidable.h"

/// Whether two could touch at all: groups and masks, nothing of the same body's tree, patches for their body alone.
bool mayTouch(const Collidable& a, const Collidable& b);
inline Collidable& collidableOf(const btCollisionObject& object) {
    return *static_cast<Collidable*>(object.getUserPointer());
}

/// What the owner of the bodies does inside a part of the frame.
class SubstepObserver {
public:
    /// Contacts of what is awake are known. True when that woke others, whose contacts are then found as well.
    virtual bool wakeTouched() = 0;
    /// All contacts are known, impulses not yet.
    virtual void contactsFound() = 0;
    /// Velocities are solved; move what moves.
    virtual void integrate(double dt) = 0;

protected:
    ~SubstepObserver() = default;
};

/// Bullet's collaborators in the order of their lives.
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

        bool asked = false;  ///< about a pair whatever its modes
    };

    /// The library's pools start small and grow: its own sizes are for thousands of bodies.
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
    void take(Collidable& c);
    /// Forgets its pairs, so that they are made anew by the filter.
    void refilter(Collidable& c);
    void runSubstep(double dt) { internalSingleStepSimulation(dt); }
    /// Reports where two overlap, whether or not they would meet in a step.
    void findOverlaps(Collidable& a, Collidable& b, ContactResultCallback& found);
    /// The pose a body reaches in dt, held back where one of its cores would pass into something.
    btTransform advance(const BodyState& body, double dt);

protected:
    void performDiscreteCollisionDetection() override;
    void integrateTransforms(btScalar dt) override { m_observer.integrate(dt); }

private:
    DynamicsParts& m_parts;
    SubstepObserver& m_observer;
    std::vector<Collidable*> m_near;  ///< kept for its memory
};
