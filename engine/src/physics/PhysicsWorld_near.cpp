// Colliders other than dynamic bodies: they are in Bullet while an active body is near.
#include "engine/scene/Object.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectPrefab.h"
#include "physics/PhysicsState.h"

namespace {

constexpr unsigned KEEP_FRAMES = 30;  // frames that an unneeded collider stays

bool hasCollider(const Object& object) {
    return (object.getType() == Node::MESH_STATIC || object.getType() == Node::TERRAIN) && object.isActive() &&
           object.isCollider();
}

bool overlaps(const BoundBox& box, const btVector3& lo, const btVector3& hi) {
    return box.min.x <= hi.x() && box.max.x >= lo.x() && box.min.y <= hi.y() && box.max.y >= lo.y() &&
           box.min.z <= hi.z() && box.max.z >= lo.z();
}

}  // namespace

void PhysicsWorld::addNearbyColliders() {
    m_state->sleeping_near.clear();
    for (BodyState* body : m_state->simulated) addNearbyColliders(*body);
    // The ground of a sleeping body is needed when it is hit and woken.
    for (std::size_t i = 0, n = m_state->sleeping_near.size(); i < n; ++i) {
        addNearbyColliders(*m_state->sleeping_near[i]);
    }
}

void PhysicsWorld::addNearbyColliders(BodyState& body) {
    btVector3 lo, hi;
    getMotionBox(body, lo, hi);
    const double reach = NEAR_MARGIN + body.rigid->getLinearVelocity().length() * m_state->dt;
    lo -= btVector3(reach, reach, reach);
    hi += btVector3(reach, reach, reach);
    m_state->findBodies(lo, hi);
    for (BodyState* other : m_state->bodies_near) {
        if (!mayTouch(body, *other)) continue;
        if (!other->isDynamic()) {
            addOnDemand(*other);
        } else if (other->isSleeping() && other->last_needed != m_state->frame) {
            other->last_needed = m_state->frame;
            m_state->sleeping_near.push_back(other);
        }
    }
    listObjects(lo, hi);
    for (Object* object : m_state->objects_near) {
        Collidable* const c = colliderOf(body, *object, lo, hi);
        if (c && mayTouch(body, *c)) addOnDemand(*c);
    }
}

void PhysicsWorld::addOnDemand(Collidable& c) {
    c.last_needed = m_state->frame;
    if (c.inserted) return;
    m_state->dynamics.insert(c);
    m_state->on_demand.push_back(&c);
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

Collidable* PhysicsWorld::colliderOf(BodyState& body, Object& object, const btVector3& lo, const btVector3& hi) {
    if (object.getType() == Node::TERRAIN) return patchOf(body, object, lo, hi);
    return meshColliderOf(object);
}

MeshCollider* PhysicsWorld::meshColliderOf(Object& object) {
    if (object.m_mesh_collider) return object.m_mesh_collider.get();
    const MeshData& mesh = static_cast<ObjectMeshStatic&>(object).getMesh();
    std::shared_ptr<MeshShape> shape = m_state->mesh_shapes.get(mesh);
    if (!shape) return nullptr;
    object.m_mesh_collider = std::make_unique<MeshCollider>(&object, std::move(shape));
    object.m_physics = this;
    m_state->meshes[object.getId()] = object.m_mesh_collider.get();
    dvec3 scale;
    object.m_mesh_collider->setPose(toBullet(object.getWorldTransform(), &scale));
    object.m_mesh_collider->scaled.setLocalScaling(toBullet(scale));
    return object.m_mesh_collider.get();
}

/// The body's patch of that terrain, made when missing; null when there is no ground within the box.
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

void PhysicsWorld::removeUnneededColliders() {
    std::vector<Collidable*>& on_demand = m_state->on_demand;
    for (std::size_t i = on_demand.size(); i-- > 0;) {
        if (m_state->frame - on_demand[i]->last_needed <= KEEP_FRAMES) continue;
        m_state->dynamics.remove(*on_demand[i]);
        on_demand.erase(on_demand.begin() + static_cast<std::ptrdiff_t>(i));
    }
}
