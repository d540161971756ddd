// Who is in the physics and in which mode, and the frame's step as a list.
#include "physics/PhysicsWorld.h"

#include <cassert>

#include "engine/scene/Object.h"
#include "physics/PhysicsState.h"
#include "physics/TriangleContacts.h"

namespace {

btScalar combineFriction(const btCollisionObject* a, const btCollisionObject* b) {
    return btMin(a->getFriction(), b->getFriction());
}

bool hasMovingBodyAbove(const Object& object) {
    for (Node* node = object.getParent(); node; node = node->getParent()) {
        Object* const above = node->asObject();
        if (above && above->getBody() && above->getBody()->getKind() != BodySettings::STATIC) return true;
    }
    return false;
}

Mode chooseMode(const BodyState& body) {
    if (!body.physics || !body.settings.enabled || !body.object->isActive()) return Mode::OUT;
    return body.isResident() ? Mode::SIMULATE : Mode::FOLLOW;
}

}  // namespace

const dmat4& frameOf(const Object& object) {
    static const dmat4 globe;
    return object.getType() == Node::TERRAIN ? globe : object.getWorldTransform();
}

void addBox(const BodyState& body, const btTransform& pose, btVector3& lo, btVector3& hi) {
    btVector3 box_min, box_max;
    body.shapes.compound->getAabb(pose, box_min, box_max);
    lo.setMin(box_min);
    hi.setMax(box_max);
}

void getWayBox(const BodyState& body, btVector3& lo, btVector3& hi) {
    body.shapes.compound->getAabb(body.from, lo, hi);
    addBox(body, body.rigid->getWorldTransform(), lo, hi);
}

void PhysicsState::findBodies(const btVector3& lo, const btVector3& hi) {
    struct List final : btDbvt::ICollide {
        explicit List(std::vector<BodyState*>& into) : list(into) {}
        void Process(const btDbvtNode* leaf) override { list.push_back(static_cast<BodyState*>(leaf->data)); }
        std::vector<BodyState*>& list;
    };
    bodies_near.clear();
    if (!tree.m_root) return;
    List list(bodies_near);
    tree.collideTV(tree.m_root, btDbvtVolume::FromMM(lo, hi), list);
    std::sort(bodies_near.begin(), bodies_near.end(),
              [](const BodyState* a, const BodyState* b) { return a->id < b->id; });
}

PhysicsWorld::PhysicsWorld(SpatialIndex& spatial) : m_state(std::make_unique<PhysicsState>(*this, spatial)) {
    assert(btIsDoublePrecision());
    gCalculateCombinedFrictionCallback = combineFriction;
    gContactAddedCallback = turnToFace;
}

PhysicsWorld::~PhysicsWorld() = default;

vec3 PhysicsWorld::getGravity() const {
    return narrow(m_state->gravity);
}

void PhysicsWorld::setGravity(const vec3& gravity) {
    if (isFinite(dvec3(gravity))) m_state->gravity = dvec3(gravity);
}

int PhysicsWorld::getNumStanding() const {
    return m_state->dynamics.getNumCollisionObjects();
}

bool PhysicsWorld::isCurrent(unsigned frame) const {
    return frame == m_state->frame && frame > 0;
}

void PhysicsWorld::step(double dt) {
    m_state->dt = dt > 0.0 && std::isfinite(dt) ? dt : 0.0;
    ++m_state->frame;
    wakePushed();
    endLastWays();
    takeMarked(false);
    ride(false);
    listSimulated();
    if (m_state->dt > 0.0 && !m_state->simulated.empty()) {
        findNear();
        leadGuests();
        simulate();
    }
    finishWays();
    writeBack();
    settleRest();
    takeMarked(true);
    ride(true);
    sweepJumps();
    stopMoved();
    dismissGuests();
    reportContacts();
}

// What objects report. ------------------------------------------------------------------------------------------------

void PhysicsWorld::objectJoined(Object& object) {
    if (!object.m_body || !object.getWorld()) return;
    object.m_physics = static_cast<PhysicsWorld*>(object.getWorld()->getPhysics());
    object.m_physics->addBody(*object.m_body->m_state);
}

void PhysicsWorld::objectLeft(Object& object) {
    PhysicsWorld* const physics = std::exchange(object.m_physics, nullptr);
    if (!physics) return;
    if (object.m_body) physics->removeBody(*object.m_body->m_state);
    if (object.m_mesh_collider) {
        physics->removeCollider(*object.m_mesh_collider);
        removeFrom(physics->m_state->marked, object.m_mesh_collider.get());
        physics->m_state->meshes.erase(object.getId());
        object.m_mesh_collider.reset();
    }
    physics->removePatches(object);
    physics->wakeRidersOn(object);
}

void PhysicsWorld::objectMoved(Object& object, bool by_physics) {
    PhysicsWorld* const physics = object.m_physics;
    if (!physics) return;
    if (object.m_mesh_collider) physics->mark(*object.m_mesh_collider, by_physics);
    if (!object.m_body || physics->m_state->placing == &object) return;
    BodyState& body = *object.m_body->m_state;
    if (!by_physics && body.isResident()) {
        physics->wake(body);
        body.setVelocity(btVector3(0, 0, 0), btVector3(0, 0, 0));
    }
    physics->mark(body, by_physics);
}

void PhysicsWorld::objectActivity(Object& object) {
    PhysicsWorld* const physics = object.m_physics;
    if (!physics) return;
    if (object.m_body) physics->refreshMode(*object.m_body->m_state);
    if (isMet(object)) return;
    if (object.m_mesh_collider) physics->removeCollider(*object.m_mesh_collider);
    physics->removePatches(object);
    physics->wakeRidersOn(object);
}

// Bodies. -------------------------------------------------------------------------------------------------------------

void PhysicsWorld::addBody(BodyState& body) {
    body.physics = this;
    body.nested = hasMovingBodyAbove(*body.object);
    m_state->bodies[body.id] = &body;
    if (body.isResident()) insertById(m_state->residents, &body);
    refreshCallback(body);
    refreshMode(body);
}

void PhysicsWorld::removeBody(BodyState& body) {
    body.physics = nullptr;
    refreshMode(body);
    if (body.mode != Mode::OUT) forgetBody(body);
    m_state->bodies.erase(body.id);
    removeFrom(m_state->residents, &body);
    removeFrom(m_state->listeners, &body);
    removeFrom(m_state->marked, &body);
    body.marked = false;
}

void PhysicsWorld::refreshMode(BodyState& body) {
    const Mode wanted = chooseMode(body);
    if ((wanted == Mode::OUT) == (body.mode == Mode::OUT)) return;
    if (wanted == Mode::OUT) {
        forgetBody(body);
        return;
    }
    body.stand(body.toPose(body.object->getWorldTransform()));
    body.setMode(wanted);
    if (body.isResident()) m_state->dynamics.insert(body);
    setLeaf(body);
}

/// Takes it out of everything that only enabled bodies are in.
void PhysicsWorld::forgetBody(BodyState& body) {
    removeCollider(body);
    removeFrom(m_state->movers, &body);
    removeFrom(m_state->jumpers, &body);
    removeFrom(m_state->simulated, &body);
    for (const auto& patch : body.patches) removeCollider(*patch);
    body.patches.clear();
    if (body.leaf) m_state->tree.remove(body.leaf);
    body.leaf = nullptr;
    body.setMode(Mode::OUT);
    body.setVelocity(btVector3(0, 0, 0), btVector3(0, 0, 0));
    body.forgetForces();
    body.supports.clear();
    body.ground.clear();
    body.touches.clear();
    body.last_touches.clear();
    body.jumped = false;
    wakeRidersOn(*body.object);
}

void PhysicsWorld::refreshFilter(BodyState& body) {
    wake(body);
    m_state->dynamics.refilter(body);
}

void PhysicsWorld::refreshCallback(BodyState& body) {
    removeFrom(m_state->listeners, &body);
    if (body.callback) insertById(m_state->listeners, &body);
}

void PhysicsWorld::setLeaf(BodyState& body) {
    btVector3 lo, hi;
    getWayBox(body, lo, hi);
    btDbvtVolume volume = btDbvtVolume::FromMM(lo, hi);
    if (body.leaf)
        m_state->tree.update(body.leaf, volume);
    else
        body.leaf = m_state->tree.insert(volume, &body);
}

// Colliders. ----------------------------------------------------------------------------------------------------------

/// Out of Bullet and out of the frame's lists; it may be needed again.
void PhysicsWorld::removeCollider(Collidable& c) {
    m_state->dynamics.take(c);
    removeFrom(m_state->guests, &c);
    removeFrom(m_state->movers, &c);
    for (BodyState* body : m_state->residents) removeFrom(body->ground, &c);
    c.moving = false;
}

void PhysicsWorld::removePatches(const Object& terrain) {
    if (terrain.getType() != Node::TERRAIN) return;  // a walk over every body
    for (const auto& [id, body] : m_state->bodies) {
        for (std::size_t i = body->patches.size(); i-- > 0;) {
            if (body->patches[i]->object != &terrain) continue;
            removeCollider(*body->patches[i]);
            body->patches.erase(body->patches.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
}

void PhysicsWorld::mark(Collidable& c, bool by_physics) {
    c.by_physics = by_physics && (c.by_physics || !c.marked);
    if (c.marked) return;
    c.marked = true;
    m_state->marked.push_back(&c);
}
