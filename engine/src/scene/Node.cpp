// The scene tree: names, transforms, activity, and notification of the world.
#include "engine/scene/Node.h"

#include <algorithm>
#include <atomic>
#include <functional>

#include "engine/globe/EllipsoidModel.h"
#include "engine/scene/Object.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/SceneNodes.h"
#include "engine/text/Log.h"
#include "scene/WorldState.h"

namespace {

std::size_t hashName(const jString& name) {
    return std::hash<std::string_view>()(name);
}

int takeId() {
    static std::atomic<int> next{1};
    return next++;
}

dquat toRotation(const dmat4& m) {
    dvec3 translation, scale;
    dquat rotation;
    decomposeTransform(m, translation, rotation, scale);
    return rotation;
}

dvec3 toScale(const dmat4& m) {
    dvec3 translation, scale;
    dquat rotation;
    decomposeTransform(m, translation, rotation, scale);
    return scale;
}

}  // namespace

Node::Node() : m_id(takeId()), m_name_hash(hashName(m_name)) {}
Node::~Node() = default;

Node* Node::GetNodeByName(const jString& name) {
    return WorldState::running ? WorldState::running->names.getFirst(name) : nullptr;
}

void Node::setName(const jString& name) {
    const jString old = std::exchange(m_name, name);
    m_name_hash = hashName(m_name);
    if (m_world) m_world->getState().nameChanged(*this, old);
}

void Node::addTag(const jString& tag) {
    if (tag.empty() || hasTag(tag)) return;
    m_tags.append(tag);
    if (m_world) m_world->getState().tagAdded(*this, tag);
}

// The tree. -----------------------------------------------------------------------------------------------------------

Node* Node::addChild(std::unique_ptr<Node> child) {
    if (!child) return nullptr;
    Node* const node = child.get();
    m_children.push_back(std::move(child));
    node->m_parent = this;
    // Without a parent its local transform was its world transform.
    if (!(getWorldTransform() == dmat4())) node->markPlaceDirty(false);
    node->updateActive();
    treeChanged();
    if (m_world) node->joinWorld(m_world);
    return node;
}

std::unique_ptr<Node> Node::takeChild(Node* child) {
    if (!child || child->m_parent != this) return nullptr;
    // In a world children are sorted by their order of joining it; outside a world there are few.
    const auto found = m_world ? std::lower_bound(m_children.begin(), m_children.end(), child->m_join_order,
                                                  [](const auto& c, auto order) { return c->m_join_order < order; })
                               : std::find_if(m_children.begin(), m_children.end(),
                                              [child](const auto& c) { return c.get() == child; });
    std::unique_ptr<Node> node = std::move(*found);
    m_children.erase(found);
    World* const world = m_world;
    if (world) node->joinWorld(nullptr);
    node->m_parent = nullptr;
    if (!(getWorldTransform() == dmat4())) node->markPlaceDirty(false);
    node->updateActive();
    treeChanged();
    if (world) world->getState().reportDepartures();
    return node;
}

void Node::joinWorld(World* world) {
    if (m_world) m_world->getState().nodeLeft(*this);
    m_world = world;
    if (m_world) m_world->getState().nodeJoined(*this);
    worldChanged();
    readPlaceForBody();
    for (const auto& child : m_children) child->joinWorld(world);
}

Node* Node::getChildByName(const jString& name, bool recursive) const {
    const std::size_t hash = hashName(name);
    for (const auto& child : m_children) {
        if (child->m_name_hash == hash && child->m_name == name) return child.get();
        if (Node* const below = recursive ? child->getChildByName(name, true) : nullptr) return below;
    }
    return nullptr;
}

Node* Node::getPrefabNode() const {
    Node* node = m_parent;
    while (node && node->getType() != PREFAB) node = node->m_parent;
    return node;
}

void Node::treeChanged() {
    for (Node* node = this; node; node = node->m_parent) {
        if (node->getType() == PREFAB) static_cast<ObjectPrefab*>(node)->m_lists_dirty = true;
    }
    contentMoved();
}

/// Called when content in this node's frame moved, was added or was removed: invalidates the boxes of this prefab and
/// of the prefabs that contain it.
void Node::contentMoved() {
    for (Node* node = this; node; node = node->m_parent) {
        if (node->getType() != PREFAB) continue;
        auto* const prefab = static_cast<ObjectPrefab*>(node);
        if (prefab->m_box_dirty) return;  // the outer ones are invalid too, since they are computed from this one
        prefab->m_box_dirty = true;
        if (m_world) m_world->getState().spatial.moved(*prefab);
    }
}

void Node::contentChanged() {
    ++m_revision;
    if (m_world) m_world->getState().contentChanged(*this);
    if (m_parent) m_parent->contentMoved();
}

// Activity. -----------------------------------------------------------------------------------------------------------

void Node::setEnabled(bool enabled) {
    if (m_enabled == enabled) return;
    m_enabled = enabled;
    ++m_revision;
    updateActive();
}

void Node::updateActive() {
    const bool active = m_enabled && (!m_parent || m_parent->m_active);
    if (m_active == active) return;
    m_active = active;
    activityChanged();
    if (m_world) m_world->getState().activityChanged(*this);
    for (const auto& child : m_children) child->updateActive();
}

void Node::setCollider(bool collider) {
    if (m_collider == collider) return;
    m_collider = collider;
    ++m_revision;
    activityChanged();
}

void Node::setSensor(bool sensor, const vec3& size) {
    m_sensor = sensor;
    m_sensor_size = size;
    if (m_world) m_world->getState().sensorChanged(*this);
}

// Transforms. ---------------------------------------------------------------------------------------------------------

void Node::setTransform(const dmat4& local) {
    setLocal(local, false);
}

void Node::setLocal(const dmat4& local, bool by_physics) {
    if (!isFinite(local)) {
        jLog::error("%s: a transform with a NaN or an infinity is refused", m_name.c_str());
        return;
    }
    m_local = local;
    ++m_revision;
    markPlaceDirty(by_physics);
    if (m_parent) m_parent->contentMoved();
}

void Node::markPlaceDirty(bool by_physics) {
    const bool was_dirty = m_world_dirty;
    m_world_dirty = true;
    if (m_world) m_world->getState().placeChanged(*this);
    placeChanged(by_physics);
    if (!was_dirty) {
        for (const auto& child : m_children) {
            if (!child->m_world_dirty) child->markPlaceDirty(by_physics);
        }
    }
    readPlaceForBody();
}

/// `markPlaceDirty` does not descend from nodes that are already dirty. A body must be notified of every move, so it
/// and its ancestors must not stay dirty.
void Node::readPlaceForBody() {
    const Object* const object = asObject();
    if (object && object->getBody()) getWorldTransform();
}

const dmat4& Node::getWorldTransform() const {
    if (m_world_dirty) {
        m_world_transform = m_parent ? m_parent->getWorldTransform() * m_local : m_local;
        m_world_dirty = false;
    }
    return m_world_transform;
}

void Node::setPosition(const dvec3& position) {
    dmat4 local = m_local;
    local.t = dvec3(position.x, position.y, position.z);
    setLocal(local, false);
}

dquat Node::getRotation() const {
    return toRotation(m_local);
}
void Node::setRotation(const dquat& rotation) {
    setLocal(composeTransform(m_local.t, rotation, getScale()), false);
}
dvec3 Node::getScale() const {
    return toScale(m_local);
}
void Node::setScale(const dvec3& scale) {
    setLocal(composeTransform(m_local.t, getRotation(), scale), false);
}
dvec3 Node::getHPR() const {
    return getRotation().toEulerZXY();
}
void Node::setHPR(const dvec3& hpr) {
    setRotation(dquat::fromEulerZXY(hpr));
}

void Node::setWorldTransform(const dmat4& world) {
    setLocal(m_parent ? inverse(m_parent->getWorldTransform()) * world : world, false);
}

void Node::setWorldPosition(const dvec3& position) {
    dmat4 world = getWorldTransform();
    world.t = dvec3(position.x, position.y, position.z);
    setWorldTransform(world);
}

void Node::setWorldPlace(const dvec3& position, const dquat& rotation) {
    setWorldTransform(composeTransform(position, rotation, toScale(getWorldTransform())));
}

dvec3 Node::getWgsPosition() const {
    return EllipsoidModel().toWGS(getWorldPosition());
}

void Node::setWgsPosition(const dvec3& geo) {
    const EllipsoidModel globe;
    const dvec3 position = globe.toWorld(geo);
    setWorldPlace(position, globe.fromWgsHPR(position, getWgsHPR()));
}

dvec3 Node::getWgsHPR() const {
    return EllipsoidModel().toWgsHPR(getWorldTransform());
}

void Node::setWgsHPR(const dvec3& hpr) {
    setWorldPlace(getWorldPosition(), EllipsoidModel().fromWgsHPR(getWorldPosition(), hpr));
}

dmat4 Node::getWGSTransform() const {
    return EllipsoidModel().getWGSTransform(getWorldPosition());
}

BoundBox Node::getWorldBoundBox() const {
    return getWorldTransform() * getBoundBox();
}

// Parameters. ---------------------------------------------------------------------------------------------------------

namespace {

constexpr const char* POSITION_NAMES[] = {"position_x", "position_y", "position_z"};
constexpr const char* HPR_NAMES[] = {"heading", "pitch", "roll"};

/// Replaces in `value` the component whose name in `names` is `parameter`; false when there is none.
bool replaceComponent(const char* const (&names)[3], const jString& parameter, double component, dvec3& value) {
    for (int i = 0; i < 3; ++i) {
        if (parameter != names[i]) continue;
        (i == 0 ? value.x : i == 1 ? value.y : value.z) = component;
        return true;
    }
    return false;
}

}  // namespace

bool Node::setParameter(const jString& parameter, float value) {
    dvec3 position = m_local.t;
    dvec3 hpr = getHPR();
    if (parameter == "enabled")
        setEnabled(value > 0.5f);
    else if (parameter == "scale")
        setScale(dvec3(value, value, value));
    else if (replaceComponent(POSITION_NAMES, parameter, value, position))
        setPosition(position);
    else if (replaceComponent(HPR_NAMES, parameter, value, hpr))
        setHPR(hpr);
    else
        return false;
    return true;
}
