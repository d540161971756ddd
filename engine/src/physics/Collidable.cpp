// Motion and modes of collision objects.
#include "physics/Collidable.h"

#include <LinearMath/btTransformUtil.h>

#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectTerrain.h"
#include "physics/Convert.h"

namespace {

constexpr double MAX_SPEED = 1000.0;  // m/s: a faster move of a node is a teleport
constexpr double PUSH = 0.02;         // m/s^2 and radians/s^2: smaller loads do not wake a body

// Against colliders the body's own value counts: friction is the smaller of two, restitution the product.
constexpr double COLLIDER_FRICTION = 1e6;
constexpr double COLLIDER_RESTITUTION = 1.0;

constexpr double FAR_FROM_ORIGIN = 20.0;  // metres

constexpr int SURFACE = btCollisionObject::CF_KINEMATIC_OBJECT | btCollisionObject::CF_CUSTOM_MATERIAL_CALLBACK;

std::unique_ptr<btRigidBody> makeRigid(Collidable& owner, btCollisionShape* shape) {
    btRigidBody::btRigidBodyConstructionInfo info(0.0, nullptr, shape);
    info.m_friction = COLLIDER_FRICTION;
    info.m_restitution = COLLIDER_RESTITUTION;
    auto rigid = std::make_unique<btRigidBody>(info);
    rigid->setCollisionFlags(btCollisionObject::CF_KINEMATIC_OBJECT);
    rigid->forceActivationState(DISABLE_DEACTIVATION);
    rigid->setUserPointer(&owner);
    return rigid;
}

}  // namespace

Collidable::Collidable(Type kind, Object* node) : type(kind), object(node), id(node->getId()) {
    from.setIdentity();
    to.setIdentity();
}

BodyState* Collidable::asBody() {
    return type == BODY ? static_cast<BodyState*>(this) : nullptr;
}

void Collidable::setPose(const btTransform& pose) {
    from = to = pose;
    rigid->setCenterOfMassTransform(pose);
    rigid->setLinearVelocity(btVector3(0, 0, 0));
    rigid->setAngularVelocity(btVector3(0, 0, 0));
}

void Collidable::moveKinematic(const btTransform& pose, double dt) {
    const btTransform last = rigid->getWorldTransform();
    if (!(dt > 0.0) || (pose.getOrigin() - last.getOrigin()).length() > MAX_SPEED * dt) {
        setPose(pose);
        return;
    }
    from = last;
    to = pose;
    btVector3 linear, angular;
    btTransformUtil::calculateVelocity(from, to, dt, linear, angular);
    rigid->setLinearVelocity(linear);
    rigid->setAngularVelocity(angular);
}

btVector3 Collidable::getVelocityAt(const btVector3& point) const {
    return rigid->getVelocityInLocalPoint(point - rigid->getWorldTransform().getOrigin());
}

MeshCollider::MeshCollider(Object* node, std::shared_ptr<MeshShape> mesh)
    : Collidable(MESH, node), shape(std::move(mesh)), scaled(shape->shape.get(), btVector3(1, 1, 1)) {
    rigid = makeRigid(*this, &scaled);
    rigid->setCollisionFlags(SURFACE);
}

TerrainPatch::TerrainPatch(ObjectTerrain* terrain, const BodyState* owner, const btVector3& origin)
    : Collidable(TERRAIN, terrain), body(owner), shape(*terrain, origin) {
    rigid = makeRigid(*this, &shape);
    rigid->setCollisionFlags(SURFACE);
    setPose(btTransform(btMatrix3x3::getIdentity(), origin));
}

void TerrainPatch::follow(const btVector3& place) {
    if ((place - shape.getOrigin()).length2() < FAR_FROM_ORIGIN * FAR_FROM_ORIGIN) return;
    shape.setOrigin(place);
    setPose(btTransform(btMatrix3x3::getIdentity(), place));
}

BodyState::BodyState(Object* node, const BodySettings& made_from)
    : Collidable(BODY, node), settings(made_from), shapes(made_from) {
    group = settings.group;
    mask = settings.mask;
    rigid = makeRigid(*this, shapes.compound.get());
    rigid->setFriction(settings.friction);
    rigid->setRestitution(settings.restitution);
    setPose(toPose(node->getWorldTransform()));
}

btTransform BodyState::toPose(const dmat4& place) {
    return toBullet(place, &scale) * shapes.frame;
}
dmat4 BodyState::toWorld(const btTransform& pose) const {
    return fromBullet(pose * shapes.frame.inverse(), scale);
}

void BodyState::setMode(Mode next) {
    mode = next;
    still_time = 0.0;
    const bool free = mode == Mode::DYNAMIC;
    rigid->setMassProps(free ? static_cast<double>(settings.mass) : 0.0, free ? shapes.inertia : btVector3(0, 0, 0));
    rigid->setCollisionFlags(free ? 0 : btCollisionObject::CF_KINEMATIC_OBJECT);
    rigid->updateInertiaTensor();
    rigid->clearForces();
}

void BodyState::setVelocity(const btVector3& linear, const btVector3& angular) {
    rigid->setLinearVelocity(linear);
    rigid->setAngularVelocity(angular);
}

void BodyState::forgetForces() {
    force.setZero();
    torque.setZero();
}

bool BodyState::isPushed() const {
    const double least = std::fmin(shapes.inertia.x(), std::fmin(shapes.inertia.y(), shapes.inertia.z()));
    return force.length() > PUSH * static_cast<double>(settings.mass) || torque.length() > PUSH * least;
}
