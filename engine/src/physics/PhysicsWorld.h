// The rigid bodies of one world: what stands in Bullet, how it moves with its nodes, what it touches.
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
/// Static and driven bodies, mesh colliders and terrain stand in Bullet only while an active body is near, so that a
/// frame's cost does not grow with what stands about.
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

    /// Objects in Bullet's world now: what a step's cost depends on.
    int getNumStanding() const;

    // What objects report.
    static void objectJoined(Object& object);
    static void objectLeft(Object& object);
    static void objectMoved(Object& object, bool by_physics);
    static void objectActivity(Object& object);

    // What bodies ask for.
    /// Moves an object without a teleport of its body. A transform that is not finite is refused with one log line.
    static void movePreserving(Object& object, const dmat4& world);
    void refreshMode(BodyState& body);      ///< its enabled flag or its node's changed
    void refreshFilter(BodyState& body);    ///< its mask changed
    void refreshCallback(BodyState& body);  ///< its contact callback changed
    void wake(BodyState& body);             ///< no effect unless frozen
    bool isCurrent(unsigned frame) const;   ///< whether a frame is the last one begun

private:
    friend struct PhysicsState;

    static void place(Object& object, const dmat4& world);
    void addBody(BodyState& body);
    void removeBody(BodyState& body);
    void forgetBody(BodyState& body);
    void removeCollider(Collidable& c);
    void removePatches(const Object& terrain);
    void mark(Collidable& c, bool by_physics);
    void setLeaf(BodyState& body);
    void wakeRidersOn(const Object& support);

    // The step, in order.
    void wakePushed();
    void endLastWays();
    void takeMarked(bool after_write);
    void ride(bool after_write);
    void listSimulated();
    void findNear();
    void leadGuests();
    void simulate();
    void finishWays();
    void writeBack();
    void settleRest();
    void sweepJumps();
    void stopMoved();
    void dismissGuests();
    void reportContacts();

    // Parts of these.
    void takeMove(BodyState& body, bool after_write);
    void takeMove(MeshCollider& collider);
    void takeResidentMove(BodyState& body, const btTransform& pose);
    void setWay(Collidable& c, const btTransform& pose);
    bool ride(BodyState& body, bool after_write);
    void findNear(BodyState& body);
    void listObjects(const btVector3& lo, const btVector3& hi);
    MeshCollider* colliderOf(Object& object);
    TerrainPatch* patchOf(BodyState& body, Object& object, const btVector3& lo, const btVector3& hi);
    void need(Collidable& c);
    btVector3 getGravityAt(const BodyState& body) const;
    void applyLoads(BodyState& body, double dt);
    void contactsFound();
    void integrate(double dt);
    void noteTouches();
    bool wakeTouched();
    void listGround();
    void sweepJump(BodyState& body);
    void compareWays(BodyState& body, Collidable& other);
    void collectEvents(BodyState& body);
    void keepContactPosition(BodyState& body, double fraction);
    bool stillTouches(const BodyState& body, const Touch& touch) const;
    void freeze(BodyState& body);

    std::unique_ptr<PhysicsState> m_state;
};
