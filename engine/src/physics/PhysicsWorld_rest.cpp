// Sleeping: bodies at rest are attached to their ground, move with it, and wake.
#include "engine/scene/Object.h"
#include "physics/PhysicsState.h"

namespace {

constexpr double STILL_TIME = 0.5;    // seconds
constexpr double STILL_SPEED = 0.05;  // m/s and radians/s relative to the ground; faster contacts wake a body
constexpr double MAX_SUPPORT_DRIFT =
    0.01;  // metres, and columns of the rotation, between supports; more wakes the body

/// Whether the body moves with the ground, compared at the body's centre.
bool isStillOn(const BodyState& body, const Collidable& ground) {
    const btVector3 drift = body.getVelocity() - ground.getVelocityAt(body.rigid->getWorldTransform().getOrigin());
    const btVector3 turn = body.rigid->getAngularVelocity() - ground.rigid->getAngularVelocity();
    return drift.length() < STILL_SPEED && turn.length() < STILL_SPEED;
}

bool isStill(const BodyState& body) {
    if (!body.can_sleep || body.teleported || body.ground.empty() || body.isPushed()) return false;
    for (const Collidable* ground : body.ground) {
        if (!isStillOn(body, *ground)) return false;
    }
    return true;
}

bool isApart(const dmat4& a, const dmat4& b) {
    return length(a.t - b.t) > MAX_SUPPORT_DRIFT || length(a.x - b.x) > MAX_SUPPORT_DRIFT ||
           length(a.y - b.y) > MAX_SUPPORT_DRIFT;
}

}  // namespace

// Falling asleep. -----------------------------------------------------------------------------------------------------

/// Lists what supports every simulated body: all it touches that is not simulated itself.
void PhysicsWorld::listGround() {
    for (BodyState* body : m_state->simulated) {
        body->ground.clear();
        body->penetration = 0.0;
    }
    const auto add = [](Collidable& above, Collidable& below, const btPersistentManifold& manifold) {
        BodyState *const body = above.asBody(), *const ground = below.asBody();
        if (!body || body->mode != Mode::DYNAMIC || (ground && ground->mode == Mode::DYNAMIC)) return;
        if (std::find(body->ground.begin(), body->ground.end(), &below) == body->ground.end()) {
            body->ground.push_back(&below);
        }
        for (int i = 0; i < manifold.getNumContacts(); ++i) {
            body->penetration = btMax(body->penetration, -manifold.getContactPoint(i).getDistance());
        }
    };
    m_state->eachManifold([&](Collidable& a, Collidable& b, const btPersistentManifold& manifold) {
        add(a, b, manifold);
        add(b, a, manifold);
    });
}

void PhysicsWorld::updateSleep() {
    for (BodyState* body : m_state->simulated) {
        body->still_time = isStill(*body) ? body->still_time + m_state->dt : 0.0;
        if (body->still_time >= STILL_TIME) putToSleep(*body);
    }
}

void PhysicsWorld::putToSleep(BodyState& body) {
    std::sort(body.ground.begin(), body.ground.end(),
              [](const Collidable* a, const Collidable* b) { return a->id < b->id; });
    const btVector3 center = body.rigid->getWorldTransform().getOrigin();
    const btVector3 linear = body.ground[0]->getVelocityAt(center);
    const btVector3 angular = body.ground[0]->rigid->getAngularVelocity();
    body.supports.clear();
    for (const Collidable* ground : body.ground) {
        const dmat4& frame = frameOf(*ground->object);
        body.supports.push_back({ground->object, inverse(frame) * body.object->getWorldTransform(), frame});
    }
    body.ground.clear();
    body.setMode(Mode::SLEEPING);
    body.setVelocity(linear, angular);
}

// Attached bodies. ----------------------------------------------------------------------------------------------------

void PhysicsWorld::moveAttachedBodies(bool after_write) {
    // Repeated for bodies that are attached to one moved here: the list is in order of ids.
    for (bool again = true; again;) {
        again = false;
        for (BodyState* body : m_state->dynamic_bodies) {
            again = (body->isSleeping() && moveAttachedBody(*body, after_write)) || again;
        }
    }
}

/// True when it was moved.
bool PhysicsWorld::moveAttachedBody(BodyState& body, bool after_write) {
    bool moved = false;
    for (const Support& support : body.supports) moved = moved || !(frameOf(*support.object) == support.last);
    if (!moved) return false;
    const dmat4 world = frameOf(*body.supports[0].object) * body.supports[0].place;
    for (Support& support : body.supports) {
        support.last = frameOf(*support.object);
        if (isApart(support.last * support.place, world)) {
            wake(body);
            return false;
        }
    }
    writePose(*body.object, world);
    setTarget(body, body.toPose(world));
    if (after_write) body.rigid->setCenterOfMassTransform(body.to);
    setLeaf(body);
    return true;
}

// Waking. -------------------------------------------------------------------------------------------------------------

void PhysicsWorld::wake(BodyState& body) {
    if (!body.isSleeping()) return;
    const btVector3 linear = body.rigid->getLinearVelocity(), angular = body.rigid->getAngularVelocity();
    body.setMode(Mode::DYNAMIC);
    body.setVelocity(linear, angular);
    body.supports.clear();
    if (m_state->in_substep) {
        insertById(m_state->simulated, &body);
        applyLoads(body, m_state->substep);
    }
    wakeAttachedTo(*body.object);
}

void PhysicsWorld::wakeAttachedTo(const Object& support) {
    for (BodyState* body : m_state->dynamic_bodies) {
        for (std::size_t i = 0; i < body->supports.size(); ++i) {
            if (body->supports[i].object != &support) continue;
            wake(*body);
            break;
        }
    }
}

void PhysicsWorld::wakePushedBodies() {
    for (BodyState* body : m_state->dynamic_bodies) {
        if (body->isSleeping() && body->isPushed()) wake(*body);
    }
}

/// A sleeping body wakes when a simulated one hits or pushes it.
bool PhysicsWorld::wakeTouched() {
    const std::size_t awake = m_state->simulated.size();
    const auto touch = [this](Collidable& a, Collidable& b, const btPersistentManifold& manifold) {
        BodyState *const body = a.asBody(), *const other = b.asBody();
        if (!body || !other || !body->isSleeping() || other->mode != Mode::DYNAMIC) return;
        if (isStillOn(*other, *body) && !other->isPushed()) return;
        for (int i = 0; i < manifold.getNumContacts(); ++i) {
            if (manifold.getContactPoint(i).getDistance() > 0.0) continue;
            wake(*body);
            return;
        }
    };
    m_state->eachManifold([&](Collidable& a, Collidable& b, const btPersistentManifold& manifold) {
        touch(a, b, manifold);
        touch(b, a, manifold);
    });
    return m_state->simulated.size() > awake;
}
