// Coming to rest, riding on what one stands on, waking again.
#include "engine/scene/Object.h"
#include "physics/PhysicsState.h"

namespace {

constexpr double STILL_TIME = 0.5;    // seconds
constexpr double STILL_SPEED = 0.05;  // m/s and radians/s against the ground, also the least that wakes by touch
constexpr double TORN = 0.01;         // metres, and columns of the rotation: supports that moved apart by more drop it

/// Whether b's matter at the body's centre moves along with it.
bool isStillOn(const BodyState& body, const Collidable& ground) {
    const btVector3 drift = body.getVelocity() - ground.getVelocityAt(body.rigid->getWorldTransform().getOrigin());
    const btVector3 turn = body.rigid->getAngularVelocity() - ground.rigid->getAngularVelocity();
    return drift.length() < STILL_SPEED && turn.length() < STILL_SPEED;
}

bool isStill(const BodyState& body) {
    if (!body.freezable || body.jumped || body.ground.empty() || body.isPushed()) return false;
    for (const Collidable* ground : body.ground) {
        if (!isStillOn(body, *ground)) return false;
    }
    return true;
}

bool isApart(const dmat4& a, const dmat4& b) {
    return length(a.t - b.t) > TORN || length(a.x - b.x) > TORN || length(a.y - b.y) > TORN;
}

}  // namespace

// Coming to rest. -----------------------------------------------------------------------------------------------------

/// What every simulated body stands on now: anything that does not itself move by forces.
void PhysicsWorld::listGround() {
    for (BodyState* body : m_state->simulated) {
        body->ground.clear();
        body->sunk = 0.0;
    }
    const auto add = [](Collidable& above, Collidable& below, const btPersistentManifold& manifold) {
        BodyState *const body = above.asBody(), *const ground = below.asBody();
        if (!body || body->mode != Mode::SIMULATE || (ground && ground->mode == Mode::SIMULATE)) return;
        if (std::find(body->ground.begin(), body->ground.end(), &below) == body->ground.end()) {
            body->ground.push_back(&below);
        }
        for (int i = 0; i < manifold.getNumContacts(); ++i) {
            body->sunk = btMax(body->sunk, -manifold.getContactPoint(i).getDistance());
        }
    };
    m_state->eachManifold([&](Collidable& a, Collidable& b, const btPersistentManifold& manifold) {
        add(a, b, manifold);
        add(b, a, manifold);
    });
}

void PhysicsWorld::settleRest() {
    for (BodyState* body : m_state->simulated) {
        body->still_time = isStill(*body) ? body->still_time + m_state->dt : 0.0;
        if (body->still_time >= STILL_TIME) freeze(*body);
    }
}

void PhysicsWorld::freeze(BodyState& body) {
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
    body.setMode(Mode::FROZEN);
    body.setVelocity(linear, angular);
}

// Riding. -------------------------------------------------------------------------------------------------------------

void PhysicsWorld::ride(bool after_write) {
    // Again for those that stand on one that rode: the list is not in order of standing.
    for (bool again = true; again;) {
        again = false;
        for (BodyState* body : m_state->residents) again = (body->isFrozen() && ride(*body, after_write)) || again;
    }
}

/// True when it was moved.
bool PhysicsWorld::ride(BodyState& body, bool after_write) {
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
    place(*body.object, world);
    setWay(body, body.toPose(world));
    if (after_write) body.rigid->setCenterOfMassTransform(body.to);
    setLeaf(body);
    return true;
}

// Waking. -------------------------------------------------------------------------------------------------------------

void PhysicsWorld::wake(BodyState& body) {
    if (!body.isFrozen()) return;
    const btVector3 linear = body.rigid->getLinearVelocity(), angular = body.rigid->getAngularVelocity();
    body.setMode(Mode::SIMULATE);
    body.setVelocity(linear, angular);
    body.supports.clear();
    if (m_state->in_part) {
        insertById(m_state->simulated, &body);
        applyLoads(body, m_state->part);
    }
    wakeRidersOn(*body.object);
}

void PhysicsWorld::wakeRidersOn(const Object& support) {
    for (BodyState* body : m_state->residents) {
        for (std::size_t i = 0; i < body->supports.size(); ++i) {
            if (body->supports[i].object != &support) continue;
            wake(*body);
            break;
        }
    }
}

void PhysicsWorld::wakePushed() {
    for (BodyState* body : m_state->residents) {
        if (body->isFrozen() && body->isPushed()) wake(*body);
    }
}

/// A frozen body wakes when something simulated runs or pushes into it.
bool PhysicsWorld::wakeTouched() {
    const std::size_t awake = m_state->simulated.size();
    const auto touch = [this](Collidable& a, Collidable& b, const btPersistentManifold& manifold) {
        BodyState *const body = a.asBody(), *const other = b.asBody();
        if (!body || !other || !body->isFrozen() || other->mode != Mode::SIMULATE) return;
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
