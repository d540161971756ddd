// What can stand in the Bullet world: bodies, mesh colliders, patches of terrain. All of it geocentric.
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

/// One collision object with its way over the frame. Bodies and mesh colliders belong to their objects, patches to the
/// body they surround.
struct Collidable {
    enum Type { BODY, MESH, TERRAIN };

    Collidable(Type kind, Object* node);
    virtual ~Collidable() = default;
    Collidable(const Collidable&) = delete;
    Collidable& operator=(const Collidable&) = delete;

    BodyState* asBody();
    /// Stands still at a pose, with no velocity.
    void stand(const btTransform& pose);
    /// Goes from `from` to a pose within dt seconds; standing there when dt is 0 or the speed is not to be believed.
    void go(const btTransform& pose, double dt);
    /// Velocity of the matter at a geocentric point, m/s.
    btVector3 getVelocityAt(const btVector3& point) const;

    const Type type;
    Object* const object;
    const int id;  ///< the object's; orders whatever must not depend on addresses
    int group = 1;
    int mask = -1;
    int excluded = -1;                   ///< id of the node whose subtree it does not meet
    std::unique_ptr<btRigidBody> rigid;  ///< its pose is that of the centre of mass
    btTransform from, to;                ///< this frame's way; equal when it stands
    bool moving = false;                 ///< listed as having a way or a velocity of its own
    bool marked = false;                 ///< listed: its node moved since the last step
    bool by_physics = false;             ///< that move came from a body above, or keeps velocities
    bool inserted = false;               ///< stands in the Bullet world
    unsigned needed = 0;                 ///< the last frame in which an active body was near
};

/// A mesh's triangles, following the node.
struct MeshCollider final : Collidable {
    MeshCollider(Object* node, std::shared_ptr<MeshShape> mesh);

    std::shared_ptr<MeshShape> shape;
    btScaledBvhTriangleMeshShape scaled;
};

/// The terrain round one body, for that body alone.
struct TerrainPatch final : Collidable {
    TerrainPatch(ObjectTerrain* terrain, const BodyState* body, const btVector3& origin);
    /// Keeps the origin near a body that moves on: Bullet finds no contacts with triangles far from their origin.
    void follow(const btVector3& place);

    const BodyState* const body;
    TerrainShape shape;
};

/// What a frozen body stands on, and where it stands in that object's frame.
struct Support {
    Object* object;
    dmat4 place;
    dmat4 last;  ///< that object's frame when the body was last placed
};

/// One of a body's shapes touching something.
struct Touch {
    int shape;
    int other;        ///< id of the other object
    bool passing;     ///< met on the way, left again before the frame's end
    double fraction;  ///< of the frame's way when it was met
};

/// How a body takes part in a frame.
enum class Mode {
    OUT,       ///< disabled, or in no world
    FOLLOW,    ///< goes where its node went
    SIMULATE,  ///< moves by forces
    FROZEN     ///< at rest, riding on its supports
};

/// Everything of a body that its contract hides.
struct BodyState final : Collidable {
    BodyState(Object* node, const BodySettings& made_from);

    bool isResident() const { return settings.kind == BodySettings::DYNAMIC && !nested; }
    bool isFrozen() const { return mode == Mode::FROZEN; }
    /// The pose of the centre of mass for a world transform of the object.
    btTransform toPose(const dmat4& place);
    /// The object's world transform for a pose.
    dmat4 toWorld(const btTransform& pose) const;
    btVector3 getVelocity() const { return rigid->getLinearVelocity(); }
    void setMode(Mode next);
    void setVelocity(const btVector3& linear, const btVector3& angular);
    void forgetForces();
    /// Whether the forces of this frame would move it at all.
    bool isPushed() const;

    BodySettings settings;
    Body* body = nullptr;
    PhysicsWorld* physics = nullptr;  ///< null outside a world
    BodyShapes shapes;
    dvec3 scale{1.0, 1.0, 1.0};  ///< of the node, kept when its pose is written
    Mode mode = Mode::OUT;
    bool nested = false;  ///< below an object with a body that moves
    bool freezable = true;
    btVector3 force{0, 0, 0};         ///< N, at the centre of mass, world axes
    btVector3 torque{0, 0, 0};        ///< N m
    bool jumped = false;              ///< its node was moved: what lies between is swept
    double sunk = 0.0;                ///< metres that it was into the ground when last looked at
    double part = 0.0;                ///< seconds of the part of the frame that it moves over
    double still_time = 0.0;          ///< seconds at rest on something
    std::vector<Support> supports;    ///< the first carries; filled while frozen
    std::vector<Collidable*> ground;  ///< what it stands on in this frame
    std::vector<std::unique_ptr<TerrainPatch>> patches;
    BodyContactCallbackBase* callback = nullptr;
    std::vector<Touch> touches, last_touches;
    dvec3 contact_position;      ///< geocentric, of the object's origin, in the frame below
    unsigned contact_frame = 0;  ///< the last in which a contact was told of
    btDbvtNode* leaf = nullptr;
};
