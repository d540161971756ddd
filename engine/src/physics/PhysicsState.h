// The state of the physics world, and helpers that its sources share.
#pragma once

#include <BulletCollision/BroadphaseCollision/btDbvt.h>

#include <algorithm>
#include <map>
#include <vector>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/Bounds.h"
#include "engine/scene/Object.h"
#include "engine/scene/World.h"
#include "physics/Convert.h"
#include "physics/DynamicsWorld.h"
#include "physics/PhysicsWorld.h"
#include "physics/SpatialIndex.h"

/// The longest substep, seconds.
constexpr double MAX_SUBSTEP = 1.0 / 60.0;
/// Colliders this close to an active body's motion of the frame are in the Bullet world; metres.
constexpr double NEAR_MARGIN = 5.0;

/// A pending call of a contact callback.
struct ContactEvent {
    int body;
    int shape;
};

struct PhysicsState final : SubstepObserver {
    PhysicsState(PhysicsWorld& physics, SpatialIndex& objects)
        : owner(physics), spatial(objects), dynamics(parts, *this) {}

    bool wakeTouched() override { return owner.wakeTouched(); }
    void contactsFound() override { owner.contactsFound(); }
    void integrate(double seconds) override { owner.integrate(seconds); }

    /// Lists the bodies whose boxes overlap a box in `bodies_near`, by id.
    void findBodies(const btVector3& lo, const btVector3& hi);
    /// Calls f(a, b, manifold) for every pair with contact points that takes part in this frame.
    template <class F>
    void eachManifold(const F& f) {
        for (int i = 0; i < parts.dispatcher.getNumManifolds(); ++i) {
            btPersistentManifold& manifold = *parts.dispatcher.getManifoldByIndexInternal(i);
            if (manifold.getNumContacts() == 0) continue;
            if (!parts.dispatcher.needsCollision(manifold.getBody0(), manifold.getBody1())) continue;
            f(collidableOf(*manifold.getBody0()), collidableOf(*manifold.getBody1()), manifold);
        }
    }

    PhysicsWorld& owner;
    SpatialIndex& spatial;  ///< index of the world's objects
    EllipsoidModel globe;
    dvec3 gravity{0.0, 0.0, -9.80665};  ///< east, north, up, m/s^2; standard gravity, CGPM 1901
    DynamicsParts parts;
    DynamicsWorld dynamics;
    MeshShapes mesh_shapes;
    btDbvt tree;                                 ///< every enabled body; boxes of the motion of the frame
    std::map<int, BodyState*> bodies;            ///< by id
    std::map<int, MeshCollider*> meshes;         ///< by id
    std::vector<BodyState*> dynamic_bodies;      ///< always in Bullet while enabled, by id
    std::vector<BodyState*> simulated;           ///< dynamic and awake in this frame, by id
    std::vector<Collidable*> on_demand;          ///< in Bullet while an active body is near
    std::vector<Collidable*> node_moves;         ///< colliders whose nodes moved since the last step
    std::vector<Collidable*> kinematic_targets;  ///< colliders with a motion in this frame
    std::vector<BodyState*> teleported;          ///< bodies teleported by their nodes
    std::vector<BodyState*> with_callback;       ///< bodies with a contact callback, by id
    std::vector<ContactEvent> events;
    const Object* writing_pose = nullptr;  ///< the object whose transform is being written
    unsigned frame = 0;
    double dt = 0.0;                        ///< this frame's, seconds
    double substep = 0.0;                   ///< of one substep, seconds
    bool in_substep = false;                ///< a substep is being simulated
    double substep_time = 0.0;              ///< simulated so far in this frame, seconds
    std::vector<BodyState*> bodies_near;    ///< these four are scratch, kept for their capacity
    std::vector<BodyState*> sleeping_near;  ///< sleeping bodies near simulated ones
    std::vector<Object*> objects_near;
    jVector<Object*> tops;
};

template <class T, class U>
void removeFrom(std::vector<T*>& list, const U* item) {
    list.erase(std::remove(list.begin(), list.end(), item), list.end());
}

/// Keeps the list in order of ids.
inline void insertById(std::vector<BodyState*>& list, BodyState* body) {
    list.insert(std::lower_bound(list.begin(), list.end(), body,
                                 [](const BodyState* a, const BodyState* b) { return a->id < b->id; }),
                body);
}

/// Adds a touch unless it is listed; a lasting one replaces a passing one.
void noteTouch(BodyState& body, int shape, int other, bool passing, double fraction = 1.0);
bool hasTouch(const std::vector<Touch>& touches, int shape, int other);
/// The frame that bodies on an object are attached to; for terrain the globe, whatever its node's transform.
const dmat4& frameOf(const Object& object);
/// Whether a mesh or terrain collides at present.
inline bool canCollide(const Object& collider) {
    return collider.isActive() && collider.isCollider();
}
/// Expands a box by that of a body at a pose.
void addBox(const BodyState& body, const btTransform& pose, btVector3& lo, btVector3& hi);
/// The box of a body over its motion of this frame.
void getMotionBox(const BodyState& body, btVector3& lo, btVector3& hi);
