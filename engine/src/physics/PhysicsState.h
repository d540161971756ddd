// What the physics world keeps from frame to frame, and the helpers that its sources share.
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

/// The longest part of a frame, seconds.
constexpr double LONGEST_PART = 1.0 / 60.0;
/// How far round an active body everything stands in Bullet, metres, besides its way over the frame.
constexpr double NEAR_MARGIN = 5.0;

/// One call of a contact callback to come.
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

    /// Bodies whose boxes overlap this one, by id, into `bodies_near`.
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
    SpatialIndex& spatial;  ///< the objects of the world
    EllipsoidModel globe;
    dvec3 gravity{0.0, 0.0, -9.80665};  ///< east, north, up, m/s^2; standard gravity, CGPM 1901
    DynamicsParts parts;
    DynamicsWorld dynamics;
    MeshShapes mesh_shapes;
    btDbvt tree;                          ///< every enabled body, over its way of the frame
    std::map<int, BodyState*> bodies;     ///< by id
    std::map<int, MeshCollider*> meshes;  ///< by id
    std::vector<BodyState*> residents;    ///< dynamic bodies, always in Bullet, by id
    std::vector<BodyState*> simulated;    ///< of this frame, by id
    std::vector<Collidable*> guests;      ///< in Bullet because an active body is near
    std::vector<Collidable*> marked;      ///< their nodes moved since the last step
    std::vector<Collidable*> movers;      ///< have a way in this frame
    std::vector<BodyState*> jumpers;      ///< were moved by their nodes
    std::vector<BodyState*> listeners;    ///< bodies with a contact callback, by id
    std::vector<ContactEvent> events;
    const Object* placing = nullptr;  ///< this object's pose is being written
    unsigned frame = 0;
    double dt = 0.0;                      ///< this frame's, seconds
    double part = 0.0;                    ///< of one part of it
    bool in_part = false;                 ///< a part is being simulated
    double done = 0.0;                    ///< parts simulated so far
    std::vector<BodyState*> bodies_near;  ///< these four are kept for their memory
    std::vector<BodyState*> sleepers;     ///< frozen bodies near simulated ones
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

/// Adds a touch unless it is there; one that lasts replaces one in passing.
void noteTouch(BodyState& body, int shape, int other, bool passing, double fraction = 1.0);
bool hasTouch(const std::vector<Touch>& touches, int shape, int other);
/// The frame in which things stand on an object; terrain stands on the globe whatever its node does.
const dmat4& frameOf(const Object& object);
/// Whether a mesh or terrain is there to be met.
inline bool isMet(const Object& collider) {
    return collider.isActive() && collider.isCollider();
}
/// Grows a box by that of a body at a pose.
void addBox(const BodyState& body, const btTransform& pose, btVector3& lo, btVector3& hi);
/// The box of a body over its way of this frame.
void getWayBox(const BodyState& body, btVector3& lo, btVector3& hi);
