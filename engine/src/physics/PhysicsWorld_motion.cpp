// Motion over a frame: moves of the nodes, simulation in equal substeps, poses written back to the nodes.
#include <LinearMath/btTransformUtil.h>

#include <cmath>

#include "engine/scene/Object.h"
#include "engine/text/Log.h"
#include "physics/PhysicsState.h"

namespace {

/// The least number of substeps of at most MAX_SUBSTEP, with a tolerance for rounding.
int countSubsteps(double dt) {
    return std::max(1, static_cast<int>(std::ceil(dt / MAX_SUBSTEP - 1e-4)));
}

/// Whether the state is finite and slow enough for Bullet's boxes.
bool isSane(const btRigidBody& rigid) {
    constexpr double max_speed = 1e5;  // m/s
    return isFinite(fromBullet(rigid.getWorldTransform())) && rigid.getLinearVelocity().length() < max_speed &&
           std::isfinite(rigid.getAngularVelocity().length());
}

/// The simulated body above a collider's object in the tree, null when there is none.
const BodyState* findParentBody(const PhysicsState& state, const Collidable& c) {
    for (const Node* node = c.object->getParent(); node; node = node->getParent()) {
        const auto found = state.bodies.find(node->getId());
        if (found != state.bodies.end() && found->second->mode == Mode::DYNAMIC) return found->second;
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

// Moves of nodes. -----------------------------------------------------------------------------------------------------

void PhysicsWorld::movePreserving(Object& object, const dmat4& world) {
    writePose(object, world);
    if (object.m_physics && object.m_body) object.m_physics->noteNodeMove(*object.m_body->m_state, true);
}

void PhysicsWorld::writePose(Object& object, const dmat4& world) {
    PhysicsState* const state = object.m_physics ? object.m_physics->m_state.get() : nullptr;
    const Node* const parent = object.getParent();
    const bool at_top = !parent || parent->getWorldTransform() == dmat4();
    if (state) state->writing_pose = &object;
    object.setLocal(at_top ? world : inverse(parent->getWorldTransform()) * world, true);
    if (state) state->writing_pose = nullptr;
}

/// Kinematic targets of the last frame have been reached: without a new one there is no motion.
void PhysicsWorld::endLastMotions() {
    for (Collidable* c : m_state->kinematic_targets) {
        BodyState* const body = c->asBody();
        c->moving = false;
        if (body && body->mode == Mode::DYNAMIC) continue;
        if (body && body->mode == Mode::KINEMATIC && body->isDynamic()) {
            // Its velocity, if any, was set since.
            body->from = body->to = body->rigid->getWorldTransform();
            body->setMode(Mode::DYNAMIC);
        } else {
            c->setPose(c->rigid->getWorldTransform());
        }
    }
    m_state->kinematic_targets.clear();
    for (BodyState* body : m_state->teleported) body->teleported = false;
    m_state->teleported.clear();
}

void PhysicsWorld::setTarget(Collidable& c, const btTransform& pose) {
    c.moveKinematic(pose, m_state->dt);
    if (c.moving) return;
    c.moving = true;
    m_state->kinematic_targets.push_back(&c);
}

void PhysicsWorld::applyNodeMoves(bool after_write) {
    // By index: reading a transform may append nodes above.
    for (std::size_t i = 0; i < m_state->node_moves.size(); ++i) {
        Collidable& c = *m_state->node_moves[i];
        c.node_moved = false;
        if (BodyState* const body = c.asBody())
            applyNodeMove(*body, after_write);
        else if (after_write)
            c.setPose(toBullet(c.object->getWorldTransform()));
        else
            applyNodeMove(static_cast<MeshCollider&>(c));
        c.by_physics = false;
    }
    m_state->node_moves.clear();
}

void PhysicsWorld::applyNodeMove(MeshCollider& collider) {
    dvec3 scale;
    const btTransform pose = toBullet(collider.object->getWorldTransform(), &scale);
    const btVector3 factors = toBullet(scale);
    if ((factors - collider.scaled.getLocalScaling()).length2() > 1e-18) collider.scaled.setLocalScaling(factors);
    if (collider.by_physics || !canCollide(*collider.object))
        collider.setPose(pose);
    else
        setTarget(collider, pose);
}

void PhysicsWorld::applyNodeMove(BodyState& body, bool after_write) {
    const btTransform pose = body.toPose(body.object->getWorldTransform());
    if (body.mode == Mode::DISABLED) {
        body.setPose(pose);
    } else if (body.isDynamic()) {
        applyDynamicMove(body, pose);
    } else {
        setTarget(body, pose);
        if (after_write) {
            body.rigid->setCenterOfMassTransform(pose);
        } else {
            body.teleported = true;
            m_state->teleported.push_back(&body);
        }
        setLeaf(body);
    }
}

/// A dynamic body whose node was moved is kinematic for this frame, unless it was given a velocity or a force since.
void PhysicsWorld::applyDynamicMove(BodyState& body, const btTransform& pose) {
    const btVector3 linear = body.rigid->getLinearVelocity(), angular = body.rigid->getAngularVelocity();
    if (!body.by_physics && linear.isZero() && angular.isZero() && !body.isPushed()) {
        body.setMode(Mode::KINEMATIC);
        setTarget(body, pose);
    } else {
        body.moveKinematic(pose, m_state->dt);
        body.rigid->setCenterOfMassTransform(pose);
        body.setVelocity(linear, angular);
    }
    body.teleported = !body.by_physics;
    if (body.teleported)
        m_state->teleported.push_back(&body);
    else
        body.from = pose;
}

// Simulation. ---------------------------------------------------------------------------------------------------------

void PhysicsWorld::listSimulated() {
    m_state->simulated.clear();
    for (BodyState* body : m_state->dynamic_bodies) {
        if (body->mode != Mode::DYNAMIC) continue;
        if (!body->teleported) body->from = body->rigid->getWorldTransform();
        m_state->simulated.push_back(body);
    }
}

/// Colliders below a simulated body get its expected motion as their target; the rest is corrected when its node moves.
void PhysicsWorld::moveAttachedColliders() {
    // Its mean velocity over the frame under its own forces.
    const double gain = 0.5 * (m_state->dt + m_state->dt / countSubsteps(m_state->dt));
    for (Collidable* c : m_state->on_demand) {
        const BodyState* const parent =
            c->moving || c->type == Collidable::TERRAIN ? nullptr : findParentBody(*m_state, *c);
        if (!parent) continue;
        const btTransform pose = c->rigid->getWorldTransform();
        const btVector3 load = parent->force / static_cast<double>(parent->settings.mass) + getGravityAt(*parent);
        const btVector3 angular =
            parent->rigid->getAngularVelocity() + parent->rigid->getInvInertiaTensorWorld() * parent->torque * gain;
        const btVector3 arm = pose.getOrigin() - parent->rigid->getWorldTransform().getOrigin();
        btTransform next;
        btTransformUtil::integrateTransform(pose, parent->getVelocity() + load * gain + angular.cross(arm), angular,
                                            m_state->dt, next);
        setTarget(*c, next);
    }
}

void PhysicsWorld::simulate() {
    const int parts = countSubsteps(m_state->dt);
    m_state->substep = m_state->dt / parts;
    m_state->substep_time = 0.0;
    for (int i = 0; i < parts; ++i) {
        for (std::size_t k = 0; k < m_state->simulated.size(); ++k) {
            applyLoads(*m_state->simulated[k], m_state->substep);
        }
        m_state->in_substep = true;
        m_state->dynamics.runSubstep(m_state->substep);
        m_state->in_substep = false;
        for (BodyState* body : m_state->simulated) body->rigid->clearForces();
    }
}

btVector3 PhysicsWorld::getGravityAt(const BodyState& body) const {
    const dvec3 center = fromBullet(body.rigid->getWorldTransform().getOrigin());
    return toBullet(rotate(m_state->globe.getWGSTransform(center), m_state->gravity));
}

void PhysicsWorld::applyLoads(BodyState& body, double dt) {
    body.substep = dt;
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
    m_state->substep_time += dt;
    for (BodyState* body : m_state->simulated) body->rigid->proceedToTransform(m_state->dynamics.advance(*body, dt));
    for (Collidable* c : m_state->kinematic_targets) {
        if (const BodyState* const body = c->asBody(); body && body->mode == Mode::DYNAMIC) continue;
        btTransform pose;
        btTransformUtil::integrateTransform(c->from, c->rigid->getLinearVelocity(), c->rigid->getAngularVelocity(),
                                            m_state->substep_time, pose);
        c->rigid->setCenterOfMassTransform(pose);
    }
}

void PhysicsWorld::finishMotions() {
    for (Collidable* c : m_state->kinematic_targets) {
        const BodyState* const body = c->asBody();
        if (!body || body->mode != Mode::DYNAMIC) c->rigid->setCenterOfMassTransform(c->to);
    }
}

/// A dynamic body that was moved by its node has no velocity of its own.
void PhysicsWorld::stopMovedBodies() {
    for (Collidable* c : m_state->kinematic_targets) {
        BodyState* const body = c->asBody();
        if (body && body->mode == Mode::KINEMATIC && body->isDynamic()) {
            body->setVelocity(btVector3(0, 0, 0), btVector3(0, 0, 0));
        }
    }
}

void PhysicsWorld::writeBack() {
    for (BodyState* body : m_state->simulated) {
        if (!isSane(*body->rigid)) {
            jLog::error("%s: the body was pushed beyond all measure; it is put back", body->object->getName().c_str());
            body->setPose(body->from);
            body->rigid->forceActivationState(DISABLE_DEACTIVATION);
        }
        writePose(*body->object, body->toWorld(body->rigid->getWorldTransform()));
        setLeaf(*body);
    }
    for (BodyState* body : m_state->dynamic_bodies) body->forgetForces();
}
