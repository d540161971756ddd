// Begin of contacts: those of the simulation, those found by sweeping teleported bodies, and the callbacks after the
// step.
#include "engine/scene/Object.h"
#include "physics/PhysicsState.h"
#include "physics/TriangleContacts.h"

namespace {

constexpr double TOUCH = 0.005;  // metres: distance at which a contact begins; it lasts while Bullet keeps its points
constexpr double MAX_COLLIDER_SPEED = 400.0;  // m/s of meshes that may cross the motion of a teleported body
constexpr double WAKING_DISTANCE = 1e-3;      // metres that a teleported body must move to wake what it hits

/// Notes the shapes of two that overlap at their present poses.
class Overlaps final : public btCollisionWorld::ContactResultCallback {
public:
    Overlaps(BodyState& a, Collidable& b) : m_a(a), m_b(b) {}

    btScalar addSingleResult(btManifoldPoint& point, const btCollisionObjectWrapper* wrap, int, int index0,
                             const btCollisionObjectWrapper*, int, int index1) override {
        if (point.getDistance() > 0.0) return 0.0;
        const bool swapped = wrap->getCollisionObject() != m_a.rigid.get();
        any = true;
        noteTouch(m_a, swapped ? index1 : index0, m_b.id, false);
        if (BodyState* const body = m_b.asBody()) noteTouch(*body, swapped ? index0 : index1, m_a.id, false);
        return 0.0;
    }

    bool any = false;

private:
    BodyState& m_a;
    Collidable& m_b;
};

/// Whether the box of a collider's motion overlaps a box.
bool motionOverlaps(const Collidable& c, const btVector3& lo, const btVector3& hi) {
    const btCollisionShape& shape = *c.rigid->getCollisionShape();
    btVector3 from_lo, from_hi, to_lo, to_hi;
    shape.getAabb(c.from, from_lo, from_hi);
    shape.getAabb(c.rigid->getWorldTransform(), to_lo, to_hi);
    from_lo.setMin(to_lo);
    from_hi.setMax(to_hi);
    return TestAabbAgainstAabb2(from_lo, from_hi, lo, hi);
}

/// Sweeps the shapes of `a` from `start` to its present pose against `b` at its present pose and notes the contacts.
/// True when there are any. `start` is relative to the motion of b.
bool sweepShapes(BodyState& a, const btTransform& start, Collidable& b) {
    BodyState* const body = b.asBody();
    const btTransform end = a.rigid->getWorldTransform(), there = b.rigid->getWorldTransform();
    const int parts = body ? body->shapes.compound->getNumChildShapes() : 1;
    bool any = false;
    for (int i = 0; i < a.shapes.compound->getNumChildShapes(); ++i) {
        const btTransform& place = a.shapes.compound->getChildTransform(i);
        const btConvexShape& shape = *a.shapes.children[static_cast<std::size_t>(i)];
        for (int k = 0; k < parts; ++k) {
            const btCollisionShape& other =
                body ? *body->shapes.compound->getChildShape(k) : *b.rigid->getCollisionShape();
            const btTransform pose = body ? there * body->shapes.compound->getChildTransform(k) : there;
            const SweepHit hit = sweep(shape, start * place, end * place, *b.rigid, other, pose, 0.0);
            if (!hit.found) continue;
            any = true;
            noteTouch(a, i, b.id, true, hit.fraction);
            if (body) noteTouch(*body, k, a.id, true, hit.fraction);
        }
    }
    return any;
}

}  // namespace

bool hasTouch(const std::vector<Touch>& touches, int shape, int other) {
    return std::any_of(touches.begin(), touches.end(),
                       [&](const Touch& t) { return t.shape == shape && t.other == other; });
}

void noteTouch(BodyState& body, int shape, int other, bool passing, double fraction) {
    if (!body.callback) return;
    for (Touch& touch : body.touches) {
        if (touch.shape != shape || touch.other != other) continue;
        touch.passing = touch.passing && passing;
        touch.fraction = std::fmin(touch.fraction, fraction);
        return;
    }
    body.touches.push_back({shape, other, passing, fraction});
}

void PhysicsWorld::noteTouches() {
    if (m_state->with_callback.empty()) return;
    m_state->eachManifold([](Collidable& a, Collidable& b, const btPersistentManifold& manifold) {
        for (int i = 0; i < manifold.getNumContacts(); ++i) {
            const btManifoldPoint& point = manifold.getContactPoint(i);
            const auto note = [&point](Collidable& c, int shape, int other) {
                BodyState* const body = c.asBody();
                if (!body || !body->callback) return;
                if (point.getDistance() > TOUCH && !hasTouch(body->last_touches, shape, other)) return;
                noteTouch(*body, shape, other, false);
            };
            note(a, point.m_index0, b.id);
            note(b, point.m_index1, a.id);
        }
    });
}

// Teleported bodies. --------------------------------------------------------------------------------------------------

void PhysicsWorld::sweepTeleportedBodies() {
    for (BodyState* body : m_state->teleported) setLeaf(*body);
    for (BodyState* body : m_state->teleported) sweepTeleportedBody(*body);
}

void PhysicsWorld::sweepTeleportedBody(BodyState& body) {
    btVector3 lo, hi;
    getMotionBox(body, lo, hi);
    m_state->findBodies(lo, hi);
    for (BodyState* other : m_state->bodies_near) compareMotions(body, *other);
    if (!body.callback) return;
    // Colliders that may be hit in the next frame are made now: their motion is known from then on.
    const double distance = (body.rigid->getWorldTransform().getOrigin() - body.from.getOrigin()).length();
    const double reach = NEAR_MARGIN + distance + MAX_COLLIDER_SPEED * m_state->dt;
    const btVector3 margin(reach, reach, reach);
    listObjects(lo - margin, hi + margin);
    for (Object* object : m_state->objects_near) {
        Collidable* const c = colliderOf(body, *object, lo, hi);
        if (c && (c->type == Collidable::TERRAIN || motionOverlaps(*c, lo, hi))) compareMotions(body, *c);
    }
}

void PhysicsWorld::compareMotions(BodyState& body, Collidable& other) {
    BodyState* const other_body = other.asBody();
    if (other_body && other_body->teleported && other_body->id <= body.id) return;  // compared before, or itself
    const bool is_sleeping = other_body && other_body->isSleeping();
    if (!body.callback && !is_sleeping && !(other_body && other_body->callback)) return;
    if (!mayTouch(body, other)) return;

    const btTransform now = other.rigid->getWorldTransform();
    const btTransform start = other.from == now ? body.from : now * other.from.inverse() * body.from;
    const double distance = (body.rigid->getWorldTransform().getOrigin() - start.getOrigin()).length();
    Overlaps overlaps(body, other);
    m_state->dynamics.findOverlaps(body, other, overlaps);
    const bool hit = (distance > body.shapes.inset && sweepShapes(body, start, other)) || overlaps.any;
    if (hit && is_sleeping && distance > WAKING_DISTANCE) wake(*other_body);
}

// Callbacks. ----------------------------------------------------------------------------------------------------------

/// A teleported body has moved on since the contact: the position is interpolated.
void PhysicsWorld::keepContactPosition(BodyState& body, double fraction) {
    const dvec3 now = body.toWorld(body.rigid->getWorldTransform()).t;
    const dvec3 before = body.teleported ? body.toWorld(body.from).t : now;
    body.contact_position = before + (now - before) * fraction;
    body.contact_frame = m_state->frame;
}

/// Whether a touch that was not tested in this frame continues, because neither side moved.
bool PhysicsWorld::stillTouches(const BodyState& body, const Touch& touch) const {
    if (body.mode == Mode::DYNAMIC || body.teleported) return false;
    if (const auto found = m_state->bodies.find(touch.other); found != m_state->bodies.end()) {
        const BodyState& other = *found->second;
        return other.mode != Mode::DISABLED && other.mode != Mode::DYNAMIC && !other.teleported;
    }
    if (const auto found = m_state->meshes.find(touch.other); found != m_state->meshes.end()) {
        return !found->second->moving || body.isSleeping();
    }
    return std::any_of(body.patches.begin(), body.patches.end(),
                       [&](const auto& patch) { return patch->id == touch.other; });
}

void PhysicsWorld::collectEvents(BodyState& body) {
    const std::size_t first = m_state->events.size();
    double fraction = 1.0;
    for (const Touch& touch : body.touches) {
        if (hasTouch(body.last_touches, touch.shape, touch.other)) continue;
        fraction = std::fmin(fraction, touch.fraction);
        const auto reported = [&](const ContactEvent& event) { return event.shape == touch.shape; };
        if (std::none_of(m_state->events.begin() + static_cast<std::ptrdiff_t>(first), m_state->events.end(),
                         reported)) {
            m_state->events.push_back({body.id, touch.shape});
        }
    }
    if (m_state->events.size() > first) keepContactPosition(body, fraction);
    for (const Touch& touch : body.last_touches) {
        if (!hasTouch(body.touches, touch.shape, touch.other) && stillTouches(body, touch))
            body.touches.push_back(touch);
    }
    body.touches.erase(
        std::remove_if(body.touches.begin(), body.touches.end(), [](const Touch& touch) { return touch.passing; }),
        body.touches.end());
    body.last_touches.swap(body.touches);
    body.touches.clear();
}

/// Last in a step: a callback may disable, move or delete anything.
void PhysicsWorld::reportContacts() {
    m_state->events.clear();
    for (BodyState* body : m_state->with_callback) collectEvents(*body);
    for (std::size_t i = 0; i < m_state->events.size(); ++i) {
        const ContactEvent event = m_state->events[i];
        const auto found = m_state->bodies.find(event.body);
        if (found == m_state->bodies.end()) continue;
        BodyState& body = *found->second;
        if (body.mode != Mode::DISABLED && body.callback) body.callback->contact(body.body, event.shape);
    }
}
