// The rigid bodies of one world: their simulation, their motion with their nodes, their contacts.
#pragma once

#include <memory>

#include "engine/math/Transform.h"
#include "engine/physics/Physics.h"

class Body;
class Node;
class Object;
class SpatialIndex;
struct BodyState;
struct Collidable;
struct MeshCollider;
struct PhysicsState;
struct TerrainPatch;
struct Touch;
class btTransform;
class btVector3;

/// Owned by the world, which calls `step` once a frame. Bodies and colliders register through their objects, which must
/// have left the world before this goes. Frame thread only.
///
/// Static and driven bodies, mesh colliders and terrain are in Bullet only while an active body is near, so that the
/// cost of a frame does not grow with the size of the scene. docs/architecture.md explains the terms.
class PhysicsWorld final : public Physics {
public:
    /// `spatial` holds the world's objects and must outlive this.
    explicit PhysicsWorld(SpatialIndex& spatial);
    ~PhysicsWorld() override;
    PhysicsWorld(const PhysicsWorld&) = delete;
    PhysicsWorld& operator=(const PhysicsWorld&) = delete;

    vec3 getGravity() const override;
    void setGravity(const vec3& gravity) override;

    /// One frame of dt seconds: nodes' movements, bodies, poses written back, contact callbacks. Zero moves no body by
    /// itself; a negative or NaN dt counts as 0.
    void step(double dt);

    /// Collision objects in Bullet's world now, which the cost of a step depends on.
    int getNumCollisionObjects() const;

    // Called by objects.
    static void objectJoined(Object& object);
    static void objectLeft(Object& object);
    static void objectMoved(Object& object, bool by_physics);
    static void objectActivity(Object& object);

    // Called by bodies.
    /// Moves an object without a teleport of its body. A transform that is not finite is refused with one log line.
    static void movePreserving(Object& object, const dmat4& world);
    void refreshMode(BodyState& body);      ///< its enabled flag or its node's changed
    void refreshFilter(BodyState& body);    ///< its mask changed
    void refreshCallback(BodyState& body);  ///< its contact callback changed
    void wake(BodyState& body);             ///< no effect unless sleeping
    bool isCurrent(unsigned frame) const;   ///< whether this is the present frame's number

private:
    friend struct PhysicsState;

    static void writePose(Object& object, const dmat4& world);
    void addBody(BodyState& body);
    void removeBody(BodyState& body);
    void forgetBody(BodyState& body);
    void removeCollider(Collidable& c);
    void removePatches(const Object& terrain);
    void noteNodeMove(Collidable& c, bool by_physics);
    void setLeaf(BodyState& body);
    void wakeAttachedTo(const Object& support);

    // The step, in order.
    void wakePushedBodies();
    void endLastMotions();
    void applyNodeMoves(bool after_write);
    void moveAttachedBodies(bool after_write);
    void listSimulated();
    void addNearbyColliders();
    void moveAttachedColliders();
    void simulate();
    void finishMotions();
    void writeBack();
    void updateSleep();
    void sweepTeleportedBodies();
    void stopMovedBodies();
    void removeUnneededColliders();
    void reportContacts();

    // Operations that the steps consist of.
    void applyNodeMove(BodyState& body, bool after_write);
    void applyNodeMove(MeshCollider& collider);
    void applyDynamicMove(BodyState& body, const btTransform& pose);
    void setTarget(Collidable& c, const btTransform& pose);
    bool moveAttachedBody(BodyState& body, bool after_write);
    void addNearbyColliders(BodyState& body);
    void listObjects(const btVector3& lo, const btVector3& hi);
    Collidable* colliderOf(BodyState& body, Object& object, const btVector3& lo, const btVector3& hi);
    MeshCollider* meshColliderOf(Object& object);
    TerrainPatch* patchOf(BodyState& body, Object& object, const btVector3& lo, const btVector3& hi);
    void addOnDemand(Collidable& c);
    btVector3 getGravityAt(const BodyState& body) const;
    void applyLoads(BodyState& body, double dt);
    void contactsFound();
    void integrate(double dt);
    void noteTouches();
    bool wakeTouched();
    void listGround();
    void sweepTeleportedBody(BodyState& body);
    void compareMotions(BodyState& body, Collidable& other);
    void collectEvents(BodyState& body);
    void keepContactPosition(BodyState& body, double fraction);
    bool stillTouches(const BodyState& body, const Touch& touch) const;
    void putToSleep(BodyState& body);

    std::unique_ptr<PhysicsState> m_state;
};
