// What stands in Bullet besides the dynamic bodies: whatever is near one that is active, and only for as long.
#include "engine/scene/Object.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectPrefab.h"
#include "physics/PhysicsState.h"

namespace {

constexpr unsigned STAY = 30;  // frames without need before a guest goes

bool hasCollider(const Object& object) {
    return (object.getType() == Node::MESH_STATIC || object.getType() == Node::TERRAIN) && object.isActive() &&
           object.isCollider();
}

bool overlaps(const BoundBox& box, const btVector3& lo, const btVector3& hi) {
    return box.min.x <= hi.x() && box.max.x >= lo.x() && box.min.y <= hi.y() && box.max.y >= lo.y() &&
           box.min.z <= hi.z() && box.max.z >= lo.z();
}

}  // namespace

void PhysicsWorld::findNear() {
    m_state->sleepers.clear();
    for (BodyState* body : m_state->simulated) findNear(*body);
    // What a frozen body stands on must be there when something runs into it.
    for (std::size_t i = 0, n = m_state->sleepers.size(); i < n; ++i) findNear(*m_state->sleepers[i]);
}

void PhysicsWorld::findNear(BodyState& body) {
    btVector3 lo, hi;
    getWayBox(body, lo, hi);
    const double reach = NEAR_MARGIN + body.rigid->getLinearVelocity().length() * m_state->dt;
    lo -= btVector3(reach, reach, reach);
    hi += btVector3(reach, reach, reach);
    m_state->findBodies(lo, hi);
    for (BodyState* other : m_state->bodies_near) {
        if (!mayTouch(body, *other)) continue;
        if (!other->isResident()) {
            need(*other);
        } else if (other->isFrozen() && other->needed != m_state->frame) {
            other->needed = m_state->frame;
            m_state->sleepers.push_back(other);
        }
    }
    listObjects(lo, hi);
    for (Object* object : m_state->objects_near) {
        Collidable* c = nullptr;
        if (object->getType() == Node::TERRAIN)
            c = patchOf(body, *object, lo, hi);
        else
            c = colliderOf(*object);
        if (c && mayTouch(body, *c)) need(*c);
    }
}

void PhysicsWorld::need(Collidable& c) {
    c.needed = m_state->frame;
    if (c.inserted) return;
    m_state->dynamics.insert(c);
    m_state->guests.push_back(&c);
}

void PhysicsWorld::listObjects(const btVector3& lo, const btVector3& hi) {
    std::vector<Object*>& found = m_state->objects_near;
    jVector<Object*>& tops = m_state->tops;
    found.clear();
    tops.clear();
    m_state->spatial.query(BoundBox(fromBullet(lo), fromBullet(hi)), tops);
    for (Object* top : tops) {
        if (!top->isActive()) continue;
        if (hasCollider(*top)) found.push_back(top);
        if (top->getType() != Node::PREFAB || !top->isCollider()) continue;
        for (Object* object : static_cast<ObjectPrefab*>(top)->getObjects()) {
            if (hasCollider(*object) && overlaps(object->getWorldBoundBox(), lo, hi)) found.push_back(object);
        }
    }
}

MeshCollider* PhysicsWorld::colliderOf(Object& object) {
    if (object.m_mesh_collider) return object.m_mesh_collider.get();
    const MeshData& mesh = static_cast<ObjectMeshStatic&>(object).getMesh();
    std::shared_ptr<MeshShape> shape = m_state->mesh_shapes.get(mesh);
    if (!shape) return nullptr;
    object.m_mesh_collider = std::make_unique<MeshCollider>(&object, std::move(shape));
    object.m_physics = this;
    m_state->meshes[object.getId()] = object.m_mesh_collider.get();
    dvec3 scale;
    object.m_mesh_collider->stand(toBullet(object.getWorldTransform(), &scale));
    object.m_mesh_collider->scaled.setLocalScaling(toBullet(scale));
    return object.m_mesh_collider.get();
}

/// The body's piece of that terrain, made when missing; null when there is no ground within the box.
TerrainPatch* PhysicsWorld::patchOf(BodyState& body, Object& object, const btVector3& lo, const btVector3& hi) {
    auto& terrain = static_cast<ObjectTerrain&>(object);
    if (!terrain.isLoaded()) return nullptr;
    TerrainPatch* patch = nullptr;
    for (const auto& p : body.patches) {
        if (p->object == &terrain) patch = p.get();
    }
    if (!patch) {
        body.patches.push_back(
            std::make_unique<TerrainPatch>(&terrain, &body, body.rigid->getWorldTransform().getOrigin()));
        patch = body.patches.back().get();
        object.m_physics = this;
    }
    patch->follow(body.rigid->getWorldTransform().getOrigin());
    return patch->shape.cover(lo, hi) ? patch : nullptr;
}

void PhysicsWorld::dismissGuests() {
    std::vector<Collidable*>& guests = m_state->guests;
    for (std::size_t i = guests.size(); i-- > 0;) {
        if (m_state->frame - guests[i]->needed <= STAY) continue;
        m_state->dynamics.take(*guests[i]);
        guests.erase(guests.begin() + static_cast<std::ptrdiff_t>(i));
    }
}
