// Registration and modes of bodies, and the list of a frame's steps.
#include "physics/PhysicsWorld.h"

#include <cassert>

#include "engine/scene/Object.h"
#include "physics/PhysicsState.h"
#include "physics/TreeQuery.h"
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
    if (!body.physics || !body.settings.enabled || !body.object->isActive()) return Mode::DISABLED;
    return body.isDynamic() ? Mode::DYNAMIC : Mode::KINEMATIC;
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

void getMotionBox(const BodyState& body, btVector3& lo, btVector3& hi) {
    body.shapes.compound->getAabb(body.from, lo, hi);
    addBox(body, body.rigid->getWorldTransform(), lo, hi);
}

void PhysicsState::findBodies(const btVector3& lo, const btVector3& hi) {
    bodies_near.clear();
    eachOverlap(tree, lo, hi, [this](void* body) { bodies_near.push_back(static_cast<BodyState*>(body)); });
    std::sort(bodies_near.begin(), bodies_near.end(),
              [](const BodyState* a, const BodyState* b) { return a->id < b->id; });
}

PhysicsWorld::PhysicsWorld(SpatialIndex& spatial) : m_state(std::make_unique<PhysicsState>(*this, spatial)) {
    assert(btIsDoublePrecision());
    gCalculateCombinedFrictionCallback = combineFriction;
    gContactAddedCallback = useFaceNormal;
}

PhysicsWorld::~PhysicsWorld() = default;

vec3 PhysicsWorld::getGravity() const {
    return narrow(m_state->gravity);
}

void PhysicsWorld::setGravity(const vec3& gravity) {
    if (isFinite(dvec3(gravity))) m_state->gravity = dvec3(gravity);
}

int PhysicsWorld::getNumCollisionObjects() const {
    return m_state->dynamics.getNumCollisionObjects();
}

bool PhysicsWorld::isCurrent(unsigned frame) const {
    return frame == m_state->frame && frame > 0;
}

void PhysicsWorld::step(double dt) {
    m_state->dt = dt > 0.0 && std::isfinite(dt) ? dt : 0.0;
    ++m_state->frame;
    wakePushedBodies();
    endLastMotions();
    applyNodeMoves(false);
    moveAttachedBodies(false);
    listSimulated();
    if (m_state->dt > 0.0 && !m_state->simulated.empty()) {
        addNearbyColliders();
        moveAttachedColliders();
        simulate();
    }
    finishMotions();
    writeBack();
    updateSleep();
    applyNodeMoves(true);
    moveAttachedBodies(true);
    sweepTeleportedBodies();
    stopMovedBodies();
    removeUnneededColliders();
    reportContacts();
}

// Called by objects. --------------------------------------------------------------------------------------------------

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
        removeFrom(physics->m_state->node_moves, object.m_mesh_collider.get());
        physics->m_state->meshes.erase(object.getId());
        object.m_mesh_collider.reset();
    }
    physics->removePatches(object);
    physics->wakeAttachedTo(object);
}

void PhysicsWorld::objectMoved(Object& object, bool by_physics) {
    PhysicsWorld* const physics = object.m_physics;
    if (!physics) return;
    if (object.m_mesh_collider) physics->noteNodeMove(*object.m_mesh_collider, by_physics);
    if (!object.m_body || physics->m_state->writing_pose == &object) return;
    BodyState& body = *object.m_body->m_state;
    if (!by_physics && body.isDynamic()) {
        physics->wake(body);
        body.setVelocity(btVector3(0, 0, 0), btVector3(0, 0, 0));
    }
    physics->noteNodeMove(body, by_physics);
}

void PhysicsWorld::objectActivity(Object& object) {
    PhysicsWorld* const physics = object.m_physics;
    if (!physics) return;
    if (object.m_body) physics->refreshMode(*object.m_body->m_state);
    if (canCollide(object)) return;
    if (object.m_mesh_collider) physics->removeCollider(*object.m_mesh_collider);
    physics->removePatches(object);
    physics->wakeAttachedTo(object);
}

// Bodies. -------------------------------------------------------------------------------------------------------------

void PhysicsWorld::addBody(BodyState& body) {
    body.physics = this;
    body.nested = hasMovingBodyAbove(*body.object);
    m_state->bodies[body.id] = &body;
    if (body.isDynamic()) insertById(m_state->dynamic_bodies, &body);
    refreshCallback(body);
    refreshMode(body);
}

void PhysicsWorld::removeBody(BodyState& body) {
    body.physics = nullptr;
    refreshMode(body);
    if (body.mode != Mode::DISABLED) forgetBody(body);
    m_state->bodies.erase(body.id);
    removeFrom(m_state->dynamic_bodies, &body);
    removeFrom(m_state->with_callback, &body);
    removeFrom(m_state->node_moves, &body);
    body.node_moved = false;
}

void PhysicsWorld::refreshMode(BodyState& body) {
    const Mode wanted = chooseMode(body);
    if ((wanted == Mode::DISABLED) == (body.mode == Mode::DISABLED)) return;
    if (wanted == Mode::DISABLED) {
        forgetBody(body);
        return;
    }
    body.setPose(body.toPose(body.object->getWorldTransform()));
    body.setMode(wanted);
    if (body.isDynamic()) m_state->dynamics.insert(body);
    setLeaf(body);
}

/// Removes it from everything that only enabled bodies are in.
void PhysicsWorld::forgetBody(BodyState& body) {
    removeCollider(body);
    removeFrom(m_state->kinematic_targets, &body);
    removeFrom(m_state->teleported, &body);
    removeFrom(m_state->simulated, &body);
    for (const auto& patch : body.patches) removeCollider(*patch);
    body.patches.clear();
    if (body.leaf) m_state->tree.remove(body.leaf);
    body.leaf = nullptr;
    body.setMode(Mode::DISABLED);
    body.setVelocity(btVector3(0, 0, 0), btVector3(0, 0, 0));
    body.forgetForces();
    body.supports.clear();
    body.ground.clear();
    body.touches.clear();
    body.last_touches.clear();
    body.teleported = false;
    wakeAttachedTo(*body.object);
}

void PhysicsWorld::refreshFilter(BodyState& body) {
    wake(body);
    m_state->dynamics.refilter(body);
}

void PhysicsWorld::refreshCallback(BodyState& body) {
    removeFrom(m_state->with_callback, &body);
    if (body.callback) insertById(m_state->with_callback, &body);
}

void PhysicsWorld::setLeaf(BodyState& body) {
    btVector3 lo, hi;
    getMotionBox(body, lo, hi);
    btDbvtVolume volume = btDbvtVolume::FromMM(lo, hi);
    if (body.leaf)
        m_state->tree.update(body.leaf, volume);
    else
        body.leaf = m_state->tree.insert(volume, &body);
}

// Colliders. ----------------------------------------------------------------------------------------------------------

/// Removes it from Bullet and from the frame's lists; it may be added again.
void PhysicsWorld::removeCollider(Collidable& c) {
    m_state->dynamics.remove(c);
    removeFrom(m_state->on_demand, &c);
    removeFrom(m_state->kinematic_targets, &c);
    for (BodyState* body : m_state->dynamic_bodies) removeFrom(body->ground, &c);
    c.moving = false;
}

void PhysicsWorld::removePatches(const Object& terrain) {
    if (terrain.getType() != Node::TERRAIN) return;  // the loop below visits every body
    for (const auto& [id, body] : m_state->bodies) {
        for (std::size_t i = body->patches.size(); i-- > 0;) {
            if (body->patches[i]->object != &terrain) continue;
            removeCollider(*body->patches[i]);
            body->patches.erase(body->patches.begin() + static_cast<std::ptrdiff_t>(i));
        }
    }
}

void PhysicsWorld::noteNodeMove(Collidable& c, bool by_physics) {
    c.by_physics = by_physics && (c.by_physics || !c.node_moved);
    if (c.node_moved) return;
    c.node_moved = true;
    m_state->node_moves.push_back(&c);
}
