// Trigger volumes: reports the sensors that enter and leave, once per frame after the physics.
#include <array>

#include "engine/scene/SceneNodes.h"
#include "scene/WorldState.h"

namespace {

/// A box as centre and half edges, world frame; a point has edges of length 0.
struct OrientedBox {
    OrientedBox(const Node& node, const vec3& size) {
        const dmat4& world = node.getWorldTransform();
        center = world.t;
        edges = {world.x * (0.5 * size.x), world.y * (0.5 * size.y), world.z * (0.5 * size.z)};
    }
    double reach(const dvec3& axis) const {
        return std::abs(dot(axis, edges[0])) + std::abs(dot(axis, edges[1])) + std::abs(dot(axis, edges[2]));
    }

    dvec3 center;
    std::array<dvec3, 3> edges;
};

/// Whether the axis orthogonal to both edges separates the boxes.
bool separates(const dvec3& e, const dvec3& f, const OrientedBox& a, const OrientedBox& b) {
    const dvec3 axis = cross(e, f);
    // Nearly parallel edges, or those of a point, define no axis.
    if (length2(axis) <= 1e-12 * length2(e) * length2(f)) return false;
    return std::abs(dot(axis, b.center - a.center)) > a.reach(axis) + b.reach(axis);
}

bool hasSeparatingFace(const OrientedBox& of, const OrientedBox& a, const OrientedBox& b) {
    for (std::size_t i = 0; i < 3; ++i) {
        if (separates(of.edges[i], of.edges[(i + 1) % 3], a, b)) return true;
    }
    return false;
}

/// Separating axis test of two boxes (Gottschalk, Lin, Manocha, "OBBTree", SIGGRAPH 1996): the normals of the faces and
/// the cross products of the edges.
bool overlap(const OrientedBox& a, const OrientedBox& b) {
    if (hasSeparatingFace(a, a, b) || hasSeparatingFace(b, a, b)) return false;
    for (const dvec3& e : a.edges) {
        for (const dvec3& f : b.edges) {
            if (separates(e, f, a, b)) return false;
        }
    }
    return true;
}

}  // namespace

NodeTrigger::~NodeTrigger() = default;

BoundBox NodeTrigger::getBoundBox() const {
    const dvec3 half = dvec3(m_size) * 0.5;
    return {-half, half};
}

bool NodeTrigger::overlaps(const Node& sensor) const {
    return overlap(OrientedBox(*this, m_size), OrientedBox(sensor, sensor.getSensorSize()));
}

void NodeTrigger::update(const jVector<Node*>& sensors) {
    m_now.clear();
    for (Node* sensor : sensors) {
        if (isActive() && sensor->isActive() && overlaps(*sensor)) m_now.append(sensor);
    }
    jVector<Change> changes;
    int was = 0, now = 0;
    while (was < m_inside.size() || now < m_now.size()) {
        Node* const old = was < m_inside.size() ? m_inside[was] : nullptr;
        Node* const present = now < m_now.size() ? m_now[now] : nullptr;
        if (old == present) {
            ++was, ++now;
        } else if (!present || (old && old->getId() < present->getId())) {
            changes.append({old, old->getId(), false});
            ++was;
        } else {
            changes.append({present, present->getId(), true});
            ++now;
        }
    }
    std::swap(m_inside, m_now);
    fire(changes);
}

/// Calls the connected handlers. A handler may remove any node, including this one.
void NodeTrigger::fire(const jVector<Change>& changes) {
    const WorldState* const state = getWorld() ? &getWorld()->getState() : nullptr;
    const int id = getId();
    for (const Change& change : changes) {
        const jVector<Function<void(Node*)>> callbacks = change.entered ? enter : leave;
        for (const auto& callback : callbacks) {
            if (state && !state->isAlive(change.sensor, change.id)) break;
            callback(change.sensor);
            if (state && !state->isAlive(this, id)) return;
        }
    }
}
