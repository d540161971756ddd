// Rigid bodies of objects. All of it is in geocentric double precision.
#pragma once

#include <memory>

#include "engine/Api.h"
#include "engine/math/Transform.h"
#include "engine/text/Containers.h"

class Body;
class Node;
class Object;
struct BodyState;

/// One convex piece of a body, placed in the object's frame.
class Shape {
public:
    enum Type { SPHERE = 1, CAPSULE = 2, BOX = 3, CYLINDER = 4 };

    Type type = BOX;
    jString name;
    vec3 size{1.0f, 1.0f, 1.0f};  ///< box: full extents; sphere: x is the diameter; capsule and cylinder: x is the
                                  ///< diameter, z the whole height along Z; metres
    dmat4 transform;              ///< in the object's frame

    int getType() const { return type; }
    const jString& getName() const { return name; }
    const vec3& getSize() const { return size; }
    const dmat4& getTransform() const { return transform; }
};

/// How a body is made.
struct BodySettings {
    enum Kind {
        STATIC,   ///< never moves
        DYNAMIC,  ///< moved by forces
        DRIVEN    ///< moved by its node; carries the bodies on it
    } kind = DYNAMIC;
    float mass = 1000.0f;  ///< kg
    vec3 inertia;          ///< principal moments, kg m^2; zero computes them from the shapes
    vec3 center_of_mass;   ///< in the object's frame, metres
    float friction = 0.6f;
    float restitution = 0.0f;
    float linear_damping = 0.0f;   ///< a second
    float angular_damping = 0.0f;  ///< a second
    int group = 1;                 ///< bits
    int mask = -1;                 ///< bits of the groups that it collides with; terrain and colliders are group 1
    bool enabled = true;
    jVector<Shape> shapes;
};

/// Contact callback. Called after each step in which shapes of the body began a contact, once for each such shape,
/// when all bodies have moved.
class ENGINE_API BodyContactCallbackBase {
public:
    virtual ~BodyContactCallbackBase() = default;
    /// `shape` is the index of the body's own shape that began to touch.
    virtual void contact(Body* body, int shape) = 0;
};

/// An object's body, as every kind has it. Owned by the object.
class ENGINE_API Body {
public:
    virtual ~Body();
    Body(const Body&) = delete;
    Body& operator=(const Body&) = delete;

    Object* getObject() const;
    const jString& getName() const;  ///< its object's
    BodySettings::Kind getKind() const;
    bool isEnabled() const;
    /// A disabled body neither moves nor collides.
    void setEnabled(bool enabled);

    int getNumShapes() const;
    const Shape* getShape(int i) const;        ///< null for an index that does not exist
    int findShape(const jString& name) const;  ///< -1 when there is none of that name

    const dmat4& getTransform() const;  ///< the object's world transform, geocentric
    /// Teleports: velocities become zero.
    void setTransform(const dmat4& world);
    /// Moves it and keeps its velocities.
    void setPreserveTransform(const dmat4& world);

    /// Not owned; must outlive the body or be set to null before. Replaces the one set.
    void setContactCallback(BodyContactCallbackBase* callback);
    /// Position of the object's origin, geocentric, at the begin of the contact that the last callback reported; the
    /// present position if there was none in this frame. A fast body has moved on since the contact.
    dvec3 getContactPosition() const;

protected:
    Body(Object* object, const BodySettings& settings);
    std::unique_ptr<BodyState> m_state;
    friend class PhysicsWorld;
};

/// The operations of a body that moves. Forces in newtons, torques in newton metres, world axes; they act over the next
/// step and are then forgotten. A static or driven body ignores them.
class ENGINE_API BodyRigid final : public Body {
public:
    BodyRigid(Object* object, const BodySettings& settings);
    ~BodyRigid() override;

    float getMass() const;                ///< kg
    const vec3& getCenterOfMass() const;  ///< in the object's frame, metres
    vec3 getLinearVelocity() const;       ///< of the centre of mass, m/s
    void setLinearVelocity(const vec3& velocity);
    vec3 getAngularVelocity() const;  ///< radians a second
    void setAngularVelocity(const vec3& velocity);
    vec3 getWorldVelocity(const dvec3& point) const;  ///< of the body's matter at a geocentric point, m/s

    void addForce(const vec3& force);                           ///< at the centre of mass
    void addForce(const vec3& offset, const vec3& force);       ///< at an offset from the centre of mass, world axes
    void addWorldForce(const dvec3& point, const vec3& force);  ///< at a geocentric point
    void addTorque(const vec3& torque);

    float getLinearDamping() const;
    void setLinearDamping(float rate);  ///< v * exp(-rate * dt); a second; NaN counts as 0
    float getAngularDamping() const;
    void setAngularDamping(float rate);  ///< the same for the angular velocity
    /// Whether it may sleep, attached to its ground.
    void setFreezable(bool freezable);
    bool isFrozen() const;  ///< sleeping, attached to its ground
    void setMask(int mask);
    int getMask() const;
    /// Excludes, in addition to the mask, the bodies and colliders of a node and all below it; null for none. The
    /// node may go before the body.
    void setExcluded(const Node* node);
};
