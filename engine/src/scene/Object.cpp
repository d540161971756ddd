// Common parts of nodes with surfaces or a body: body, frame, defaults of surfaces. The scene tree calls the hooks.
#include "engine/scene/Object.h"

#include "engine/physics/Body.h"
#include "engine/scene/World.h"
#include "physics/BodyShapes.h"
#include "physics/Collidable.h"
#include "physics/PhysicsWorld.h"

Object::Object() = default;

Object::~Object() {
    PhysicsWorld::objectLeft(*this);
}

Node* Object::getNodeByName(const jString& name) {
    return getName() == name ? this : getChildByName(name, true);
}

bool Object::getIntersection(const dvec3&, const dvec3&, int, dvec3&) const {
    return false;
}
dvec3 Object::toLocal(const dvec3& world) const {
    return inverse(getWorldTransform()) * world;
}
dvec3 Object::toWorld(const dvec3& local) const {
    return getWorldTransform() * local;
}

Material* Object::getSurfaceMaterial(int) {
    return nullptr;
}
void Object::setSurfaceMaterialInherit(int, bool) {}

bool Object::setBody(const BodySettings& settings) {
    PhysicsWorld::objectLeft(*this);
    m_body = isUsable(settings, getName()) ? std::make_unique<BodyRigid>(this, settings) : nullptr;
    PhysicsWorld::objectJoined(*this);
    return m_body != nullptr;
}

void Object::placeChanged(bool by_physics) {
    PhysicsWorld::objectMoved(*this, by_physics);
}
void Object::activityChanged() {
    PhysicsWorld::objectActivity(*this);
}

void Object::worldChanged() {
    PhysicsWorld::objectLeft(*this);
    PhysicsWorld::objectJoined(*this);
}
