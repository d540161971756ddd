// How bodies and colliders move over a frame: what their nodes did, forces in equal parts of the frame, poses written
// back to the nodes.
#include <LinearMath/btTransformUtil.h>

#include <cmath>

#include "engine/scene/Object.h"
#include "engine/text/Log.h"
#include "physics/PhysicsState.h"

namespace {

/// Parts of at most LONGEST_PART, as few as possible; a little more than that is rounding.
int countParts(double dt) {
    return std::max(1, static_cast<int>(std::ceil(dt / LONGEST_PART - 1e-4)));
}

/// Whether Bullet can go on with it: finite, and slow enough for its boxes.
bool isSane(const btRigidBody& rigid) {
    constexpr double fastest = 1e5;  // m/s
    return isFinite(fromBullet(rigid.getWorldTransform())) && rigid.getLinearVelocity().length() < fastest &&
           std::isfinite(rigid.getAngularVelocity().length());
}

/// The simulated body that a collider's object hangs below, null when there is none.
const BodyState* findLeader(const PhysicsState& state, const Collidable& c) {
    for (const Node* node = c.object->getParent(); node; node = node->getParent()) {
        const auto found = state.bodies.find(node->getId());
        if (found != state.bodies.end() && found->second->mode == Mode::SIMULATE) return found->second;
    }
    return nullptr;
}

/// v' = f - d v over dt gives v(dt) = v(0) e + f dt * gain, exactly.
struct Decay {
    Decay(float rate, double dt) {
        const double x = static_cast<double>(rate) * dt;
        keep = std::exp(-x);
        gain = x > 1e-9 ? -std::expm1(-x) / x : 1.0;
    }
    double keep;
    double gain;
};

}  // namespace

// Nodes' movements. ---------------------------------------------------------------------------------------------------

void PhysicsWorld::movePreserving(Object& object, const dmat4& world) {
    place(object, world);
    if (object.m_physics && object.m_body) object.m_physics->mark(*object.m_body->m_state, true);
}

void PhysicsWorld::place(Object& object, const dmat4& world) {
    PhysicsState* const state = object.m_physics ? object.m_physics->m_state.get() : nullptr;
    const Node* const parent = object.getParent();
    const bool at_top = !parent || parent->getWorldTransform() == dmat4();
    if (state) state->placing = &object;
    object.setLocal(at_top ? world : inverse(parent->getWorldTransform()) * world, true);
    if (state) state->placing = nullptr;
}

/// What had a way in the last frame stands now, until it moves again.
void PhysicsWorld::endLastWays() {
    for (Collidable* c : m_state->movers) {
        BodyState* const body = c->asBody();
        c->moving = false;
        if (body && body->mode == Mode::SIMULATE) continue;
        if (body && body->mode == Mode::FOLLOW && body->isResident()) {
            // What velocity it has was given to it since.
            body->from = body->to = body->rigid->getWorldTransform();
            body->setMode(Mode::SIMULATE);
        } else {
            c->stand(c->rigid->getWorldTransform());
        }
    }
    m_state->movers.clear();
    for (BodyState* body : m_state->jumpers) body->jumped = false;
    m_state->jumpers.clear();
}

void PhysicsWorld::setWay(Collidable& c, const btTransform& pose) {
    c.go(pose, m_state->dt);
    if (c.moving) return;
    c.moving = true;
    m_state->movers.push_back(&c);
}

void PhysicsWorld::takeMarked(bool after_write) {
    // By index: reading a place may mark what is above it.
    for (std::size_t i = 0; i < m_state->marked.size(); ++i) {
        Collidable& c = *m_state->marked[i];
        c.marked = false;
        if (BodyState* const body = c.asBody())
            takeMove(*body, after_write);
        else if (after_write)
            c.stand(toBullet(c.object->getWorldTransform()));
        else
            takeMove(static_cast<MeshCollider&>(c));
        c.by_physics = false;
    }
    m_state->marked.clear();
}

void PhysicsWorld::takeMove(MeshCollider& collider) {
    dvec3 scale;
    const btTransform pose = toBullet(collider.object->getWorldTransform(), &scale);
    const btVector3 factors = toBullet(scale);
    if ((factors - collider.scaled.getLocalScaling()).length2() > 1e-18) collider.scaled.setLocalScaling(factors);
    if (collider.by_physics || !isMet(*collider.object))
        collider.stand(pose);
    else
        setWay(collider, pose);
}

void PhysicsWorld::takeMove(BodyState& body, bool after_write) {
    const btTransform pose = body.toPose(body.object->getWorldTransform());
    if (body.mode == Mode::OUT) {
        body.stand(pose);
    } else if (body.isResident()) {
        takeResidentMove(body, pose);
    } else {
        setWay(body, pose);
        if (after_write) {
            body.rigid->setCenterOfMassTransform(pose);
        } else {
            body.jumped = true;
            m_state->jumpers.push_back(&body);
        }
        setLeaf(body);
    }
}

/// A dynamic body whose node was moved is where that put it for this frame, unless it was given a velocity or a push
/// there.
void PhysicsWorld::takeResidentMove(BodyState& body, const btTransform& pose) {
    const btVector3 linear = body.rigid->getLinearVelocity(), angular = body.rigid->getAngularVelocity();
    if (!body.by_physics && linear.isZero() && angular.isZero() && !body.isPushed()) {
        body.setMode(Mode::FOLLOW);
        setWay(body, pose);
    } else {
        body.go(pose, m_state->dt);
        body.rigid->setCenterOfMassTransform(pose);
        body.setVelocity(linear, angular);
    }
    body.jumped = !body.by_physics;
    if (body.jumped)
        m_state->jumpers.push_back(&body);
    else
        body.from = pose;
}

// The parts of a frame. -----------------------------------------------------------------------------------------------

void PhysicsWorld::listSimulated() {
    m_state->simulated.clear();
    for (BodyState* body : m_state->residents) {
        if (body->mode != Mode::SIMULATE) continue;
        if (!body->jumped) body->from = body->rigid->getWorldTransform();
        m_state->simulated.push_back(body);
    }
}

/// Near colliders below a simulated body go along with it; what they miss of its way, its node's pose makes good.
void PhysicsWorld::leadGuests() {
    // Its mean velocity over the frame, as far as its own forces change it.
    const double gain = 0.5 * (m_state->dt + m_state->dt / countParts(m_state->dt));
    for (Collidable* c : m_state->guests) {
        const BodyState* const leader =
            c->moving || c->type == Collidable::TERRAIN ? nullptr : findLeader(*m_state, *c);
        if (!leader) continue;
        const btTransform pose = c->rigid->getWorldTransform();
        const btVector3 load = leader->force / static_cast<double>(leader->settings.mass) + getGravityAt(*leader);
        const btVector3 angular =
            leader->rigid->getAngularVelocity() + leader->rigid->getInvInertiaTensorWorld() * leader->torque * gain;
        const btVector3 arm = pose.getOrigin() - leader->rigid->getWorldTransform().getOrigin();
        btTransform next;
        btTransformUtil::integrateTransform(pose, leader->getVelocity() + load * gain + angular.cross(arm), angular,
                                            m_state->dt, next);
        setWay(*c, next);
    }
}

void PhysicsWorld::simulate() {
    const int parts = countParts(m_state->dt);
    m_state->part = m_state->dt / parts;
    m_state->done = 0.0;
    for (int i = 0; i < parts; ++i) {
        for (std::size_t k = 0; k < m_state->simulated.size(); ++k) applyLoads(*m_state->simulated[k], m_state->part);
        m_state->in_part = true;
        m_state->dynamics.runSubstep(m_state->part);
        m_state->in_part = false;
        for (BodyState* body : m_state->simulated) body->rigid->clearForces();
    }
}

btVector3 PhysicsWorld::getGravityAt(const BodyState& body) const {
    const dvec3 center = fromBullet(body.rigid->getWorldTransform().getOrigin());
    return toBullet(rotate(m_state->globe.getWGSTransform(center), m_state->gravity));
}

void PhysicsWorld::applyLoads(BodyState& body, double dt) {
    body.part = dt;
    const Decay linear(body.settings.linear_damping, dt), angular(body.settings.angular_damping, dt);
    const btVector3 weight = getGravityAt(body) * static_cast<double>(body.settings.mass);
    body.rigid->applyCentralForce((weight + body.force) * linear.gain);
    body.rigid->applyTorque(body.torque * angular.gain);
    body.setVelocity(body.rigid->getLinearVelocity() * linear.keep, body.rigid->getAngularVelocity() * angular.keep);
}

void PhysicsWorld::contactsFound() {
    noteTouches();
    listGround();
}

void PhysicsWorld::integrate(double dt) {
    m_state->done += dt;
    for (BodyState* body : m_state->simulated) body->rigid->proceedToTransform(m_state->dynamics.advance(*body, dt));
    for (Collidable* c : m_state->movers) {
        if (const BodyState* const body = c->asBody(); body && body->mode == Mode::SIMULATE) continue;
        btTransform pose;
        btTransformUtil::integrateTransform(c->from, c->rigid->getLinearVelocity(), c->rigid->getAngularVelocity(),
                                            m_state->done, pose);
        c->rigid->setCenterOfMassTransform(pose);
    }
}

void PhysicsWorld::finishWays() {
    for (Collidable* c : m_state->movers) {
        const BodyState* const body = c->asBody();
        if (!body || body->mode != Mode::SIMULATE) c->rigid->setCenterOfMassTransform(c->to);
    }
}

/// A dynamic body that its node put somewhere has no velocity of its own.
void PhysicsWorld::stopMoved() {
    for (Collidable* c : m_state->movers) {
        BodyState* const body = c->asBody();
        if (body && body->mode == Mode::FOLLOW && body->isResident()) {
            body->setVelocity(btVector3(0, 0, 0), btVector3(0, 0, 0));
        }
    }
}

void PhysicsWorld::writeBack() {
    for (BodyState* body : m_state->simulated) {
        if (!isSane(*body->rigid)) {
            jLog::error("%s: the body was pushed beyond all measure; it is put back", body->object->getName().c_str());
            body->stand(body->from);
            body->rigid->forceActivationState(DISABLE_DEACTIVATION);
        }
        place(*body->object, body->toWorld(body->rigid->getWorldTransform()));
        setLeaf(*body);
    }
    for (BodyState* body : m_state->residents) body->forgetForces();
}
