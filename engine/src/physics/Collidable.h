// What can be in the Bullet world: bodies, mesh colliders, patches of terrain. Positions are geocentric.
#pragma once

#include <btBulletDynamicsCommon.h>

#include <memory>
#include <vector>

#include "engine/physics/Body.h"
#include "physics/BodyShapes.h"
#include "physics/MeshShape.h"
#include "physics/TerrainShape.h"

class Node;
class Object;
class ObjectTerrain;
class PhysicsWorld;
struct BodyState;
struct btDbvtNode;

/// One collision object and its motion over the frame. Bodies and mesh colliders are owned by their objects, patches by
/// the body that they surround.
struct Collidable {
    enum Type { BODY, MESH, TERRAIN };

    Collidable(Type kind, Object* node);
    virtual ~Collidable() = default;
    Collidable(const Collidable&) = delete;
    Collidable& operator=(const Collidable&) = delete;

    BodyState* asBody();
    /// Teleports to a pose: no motion in this frame, no velocity.
    void setPose(const btTransform& pose);
    /// Sets a kinematic target: moves from the present pose to `pose` within dt seconds. Teleports when dt is 0 or the
    /// speed is implausible.
    void moveKinematic(const btTransform& pose, double dt);
    /// Velocity of the matter at a geocentric point, m/s.
    btVector3 getVelocityAt(const btVector3& point) const;

    const Type type;
    Object* const object;
    const int id;  ///< the object's; orders whatever must not depend on addresses
    int group = 1;
    int mask = -1;
    int excluded = -1;                   ///< id of the node whose subtree it does not meet
    std::unique_ptr<btRigidBody> rigid;  ///< its pose is that of the centre of mass
    btTransform from, to;                ///< motion of this frame; equal without one
    bool moving = false;                 ///< in the list of kinematic targets
    bool node_moved = false;             ///< in the list of node moves of the next step
    bool by_physics = false;             ///< that move is due to a body above, or keeps velocities
    bool inserted = false;               ///< is in the Bullet world
    unsigned last_needed = 0;            ///< last frame in which an active body was near
};

/// A mesh's triangles, at the pose of its node.
struct MeshCollider final : Collidable {
    MeshCollider(Object* node, std::shared_ptr<MeshShape> mesh);

    std::shared_ptr<MeshShape> shape;
    btScaledBvhTriangleMeshShape scaled;
};

/// The terrain around one body; collides with that body only.
struct TerrainPatch final : Collidable {
    TerrainPatch(ObjectTerrain* terrain, const BodyState* body, const btVector3& origin);
    /// Keeps the origin near the moving body: Bullet finds no contacts with triangles far from their origin.
    void follow(const btVector3& place);

    const BodyState* const body;
    TerrainShape shape;
};

/// An object that a sleeping body is attached to.
struct Support {
    Object* object;
    dmat4 place;  ///< the body's transform in that object's frame
    dmat4 last;   ///< that object's frame when the body was last moved with it
};

/// One of a body's shapes touching something.
struct Touch {
    int shape;
    int other;        ///< id of the other object
    bool passing;     ///< found by a sweep; over before the frame's end
    double fraction;  ///< of the frame's motion at the first contact
};

/// How a body takes part in a frame.
enum class Mode {
    DISABLED,   ///< disabled, or in no world
    KINEMATIC,  ///< kinematic: follows its node
    DYNAMIC,    ///< moved by forces
    SLEEPING    ///< at rest, attached to its supports
};

/// The state behind the contract's Body.
struct BodyState final : Collidable {
    BodyState(Object* node, const BodySettings& made_from);

    /// Dynamic, and not moved by a body above its object.
    bool isDynamic() const { return settings.kind == BodySettings::DYNAMIC && !nested; }
    bool isSleeping() const { return mode == Mode::SLEEPING; }
    /// The pose of the centre of mass for a world transform of the object.
    btTransform toPose(const dmat4& place);
    /// The object's world transform for a pose.
    dmat4 toWorld(const btTransform& pose) const;
    btVector3 getVelocity() const { return rigid->getLinearVelocity(); }
    void setMode(Mode next);
    void setVelocity(const btVector3& linear, const btVector3& angular);
    void forgetForces();
    /// Whether the forces of this frame are large enough to wake it.
    bool isPushed() const;

    BodySettings settings;
    Body* body = nullptr;
    PhysicsWorld* physics = nullptr;  ///< null outside a world
    BodyShapes shapes;
    dvec3 scale{1.0, 1.0, 1.0};  ///< of the node, kept when its pose is written
    Mode mode = Mode::DISABLED;
    bool nested = false;  ///< below an object with a body that moves
    bool can_sleep = true;
    btVector3 force{0, 0, 0};         ///< N, at the centre of mass, world axes
    btVector3 torque{0, 0, 0};        ///< N m
    bool teleported = false;          ///< teleported by its node: the path between is swept
    double penetration = 0.0;         ///< of the deepest contact with its ground in the last substep, metres
    double substep = 0.0;             ///< of the substep, seconds
    double still_time = 0.0;          ///< seconds at rest on its ground
    std::vector<Support> supports;    ///< the body moves with the first; filled while sleeping
    std::vector<Collidable*> ground;  ///< what supports it in this frame
    std::vector<std::unique_ptr<TerrainPatch>> patches;
    BodyContactCallbackBase* callback = nullptr;
    std::vector<Touch> touches, last_touches;
    dvec3 contact_position;      ///< geocentric, of the object's origin, in contact_frame
    unsigned contact_frame = 0;  ///< last frame in which a contact was reported
    btDbvtNode* leaf = nullptr;
};
