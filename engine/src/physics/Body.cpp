// Implementation of the contract's bodies. Forces accumulate between steps.
#include "engine/physics/Body.h"

#include "engine/scene/Object.h"
#include "engine/text/Log.h"
#include "physics/Collidable.h"
#include "physics/Convert.h"
#include "physics/PhysicsWorld.h"

namespace {

// Smaller changes are the caller's rounding and do not wake a sleeping body.
constexpr double SAME_PLACE = 1e-4;     // metres, and radians
constexpr double SAME_VELOCITY = 1e-3;  // m/s, and radians/s

bool isFinite(const vec3& v) {
    return isFinite(dvec3(v));
}

bool isOfDynamicKind(const BodyState& s) {
    return s.settings.kind == BodySettings::DYNAMIC;
}

/// Whether the body is affected by forces at present; values that are not finite are refused with one log line.
bool takes(const BodyState& s, const char* what, bool finite) {
    if (finite) return isOfDynamicKind(s) && s.settings.enabled && !s.nested;
    jLog::warning("%s: a %s with a NaN or an infinity is refused", s.object->getName().c_str(), what);
    return false;
}

btVector3 getCenter(const BodyState& s) {
    return toBullet(s.object->getWorldTransform() * dvec3(s.settings.center_of_mass));
}

void addForceAt(BodyState& s, const btVector3& arm, const btVector3& force) {
    s.force += force;
    s.torque += arm.cross(force);
}

bool isSamePlace(const btTransform& a, const btTransform& b) {
    double turn = 0.0;
    for (int i = 0; i < 3; ++i) turn += (a.getBasis()[i] - b.getBasis()[i]).length2();
    return (a.getOrigin() - b.getOrigin()).length() < SAME_PLACE && turn < 2.0 * SAME_PLACE * SAME_PLACE;
}

/// The rate, or 0 for NaN and negative values.
float toRate(float rate) {
    return rate > 0.0f ? rate : 0.0f;
}

}  // namespace

Body::Body(Object* object, const BodySettings& settings) : m_state(std::make_unique<BodyState>(object, settings)) {
    m_state->body = this;
    m_state->settings.linear_damping = toRate(settings.linear_damping);
    m_state->settings.angular_damping = toRate(settings.angular_damping);
}

Body::~Body() = default;

Object* Body::getObject() const {
    return m_state->object;
}
const jString& Body::getName() const {
    return m_state->object->getName();
}
BodySettings::Kind Body::getKind() const {
    return m_state->settings.kind;
}
bool Body::isEnabled() const {
    return m_state->settings.enabled;
}

void Body::setEnabled(bool enabled) {
    m_state->settings.enabled = enabled;
    if (!enabled) m_state->forgetForces();
    if (m_state->physics) m_state->physics->refreshMode(*m_state);
}

int Body::getNumShapes() const {
    return m_state->settings.shapes.size();
}

const Shape* Body::getShape(int i) const {
    return i >= 0 && i < getNumShapes() ? &m_state->settings.shapes[i] : nullptr;
}

int Body::findShape(const jString& name) const {
    for (int i = 0; i < getNumShapes(); ++i) {
        if (m_state->settings.shapes[i].name == name) return i;
    }
    return -1;
}

const dmat4& Body::getTransform() const {
    return m_state->object->getWorldTransform();
}
void Body::setTransform(const dmat4& world) {
    m_state->object->setWorldTransform(world);
}

void Body::setPreserveTransform(const dmat4& world) {
    BodyState& s = *m_state;
    if (isOfDynamicKind(s) && isFinite(world)) {
        const bool same = isSamePlace(toBullet(world), toBullet(getTransform()));
        if (same && s.isSleeping()) return;
        if (!same) s.still_time = 0.0;
        if (s.physics) s.physics->wake(s);
    }
    PhysicsWorld::movePreserving(*s.object, world);
}

void Body::setContactCallback(BodyContactCallbackBase* callback) {
    m_state->callback = callback;
    m_state->touches.clear();
    m_state->last_touches.clear();
    if (m_state->physics) m_state->physics->refreshCallback(*m_state);
}

dvec3 Body::getContactPosition() const {
    const BodyState& s = *m_state;
    return s.physics && s.physics->isCurrent(s.contact_frame) ? s.contact_position : getTransform().t;
}

BodyRigid::BodyRigid(Object* object, const BodySettings& settings) : Body(object, settings) {}
BodyRigid::~BodyRigid() = default;

float BodyRigid::getMass() const {
    return m_state->settings.mass;
}
const vec3& BodyRigid::getCenterOfMass() const {
    return m_state->settings.center_of_mass;
}
vec3 BodyRigid::getLinearVelocity() const {
    return narrow(m_state->rigid->getLinearVelocity());
}
vec3 BodyRigid::getAngularVelocity() const {
    return narrow(m_state->rigid->getAngularVelocity());
}

void BodyRigid::setLinearVelocity(const vec3& velocity) {
    BodyState& s = *m_state;
    if (!takes(s, "velocity", isFinite(velocity))) return;
    const btVector3 now = s.rigid->getLinearVelocity();
    if (s.isSleeping() && (toBullet(velocity) - now).length() < SAME_VELOCITY) return;
    if (s.physics) s.physics->wake(s);
    s.rigid->setLinearVelocity(toBullet(velocity));
}

void BodyRigid::setAngularVelocity(const vec3& velocity) {
    BodyState& s = *m_state;
    if (!takes(s, "angular velocity", isFinite(velocity))) return;
    const btVector3 now = s.rigid->getAngularVelocity();
    if (s.isSleeping() && (toBullet(velocity) - now).length() < SAME_VELOCITY) return;
    if (s.physics) s.physics->wake(s);
    s.rigid->setAngularVelocity(toBullet(velocity));
}

vec3 BodyRigid::getWorldVelocity(const dvec3& point) const {
    return narrow(m_state->rigid->getVelocityInLocalPoint(toBullet(point) - getCenter(*m_state)));
}

void BodyRigid::addForce(const vec3& force) {
    if (takes(*m_state, "force", isFinite(force))) m_state->force += toBullet(force);
}

void BodyRigid::addForce(const vec3& offset, const vec3& force) {
    if (takes(*m_state, "force", isFinite(offset) && isFinite(force))) {
        addForceAt(*m_state, toBullet(offset), toBullet(force));
    }
}

void BodyRigid::addWorldForce(const dvec3& point, const vec3& force) {
    if (takes(*m_state, "force", ::isFinite(point) && isFinite(force))) {
        addForceAt(*m_state, toBullet(point) - getCenter(*m_state), toBullet(force));
    }
}

void BodyRigid::addTorque(const vec3& torque) {
    if (takes(*m_state, "torque", isFinite(torque))) m_state->torque += toBullet(torque);
}

float BodyRigid::getLinearDamping() const {
    return m_state->settings.linear_damping;
}
void BodyRigid::setLinearDamping(float rate) {
    m_state->settings.linear_damping = toRate(rate);
}
float BodyRigid::getAngularDamping() const {
    return m_state->settings.angular_damping;
}
void BodyRigid::setAngularDamping(float rate) {
    m_state->settings.angular_damping = toRate(rate);
}

void BodyRigid::setFreezable(bool can_sleep) {
    m_state->can_sleep = can_sleep;
    if (!can_sleep && m_state->physics) m_state->physics->wake(*m_state);
}

bool BodyRigid::isFrozen() const {
    return m_state->isSleeping();
}

void BodyRigid::setMask(int mask) {
    if (m_state->mask == mask) return;
    m_state->mask = mask;
    if (m_state->physics) m_state->physics->refreshFilter(*m_state);
}

int BodyRigid::getMask() const {
    return m_state->mask;
}

void BodyRigid::setExcluded(const Node* node) {
    m_state->excluded = node ? node->getId() : -1;
    if (m_state->physics) m_state->physics->refreshFilter(*m_state);
}
