// Picking of objects along a segment; the terrain feedback asks each frame what lies under the aircraft.
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include "src/logic/Logic_Test_Fly.h"

namespace {

bool canBeHit(const Node& node) {
    return node.isActive() && node.isCollider();
}

/// The nearest hit so far; of equal distances the earlier one stays.
class NearestHit {
public:
    NearestHit(const dvec3& from, const dvec3& to) : m_from(from), m_to(to) {}
    Object* getObject() const { return m_object; }
    const dvec3& getPoint() const { return m_point; }

    void test(Object& candidate) {
        const dmat4 to_local = inverse(candidate.getWorldTransform());
        const dvec3 from = to_local * m_from;
        const dvec3 to = to_local * m_to;
        dvec3 hit;
        for (int i = 0; i < candidate.getNumSurfaces(); ++i) {
            if (candidate.getIntersection(from, to, i, hit)) keep(candidate, candidate.toWorld(hit));
        }
    }

private:
    void keep(Object& candidate, const dvec3& point) {
        const double distance2 = length2(point - m_from);
        if (!(distance2 < m_distance2)) return;
        m_distance2 = distance2;
        m_object = &candidate;
        m_point = point;
    }

    const dvec3 m_from, m_to;
    double m_distance2 = 1e30;
    Object* m_object = nullptr;
    dvec3 m_point;
};

}  // namespace

Object* Logic_Test_Fly::select_object(const dvec3& from, const dvec3& to, dvec3* hit) const {
    if (!m_world) {
        jLog::error("%s:%s", "Logic_Test_Fly::select_object", "world");
        return nullptr;
    }
    if (!m_world->getIntersection(from, to, m_picked)) return nullptr;
    NearestHit nearest(from, to);
    for (Node* node : m_picked) {
        if (!canBeHit(*node)) continue;
        if (node->getType() == Node::PREFAB) {
            for (Object* object : static_cast<ObjectPrefab*>(node)->getObjects()) {
                if (canBeHit(*object)) nearest.test(*object);
            }
        } else if (Object* const object = node->asObject()) {
            nearest.test(*object);
        }
    }
    if (nearest.getObject() && hit) *hit = nearest.getPoint();
    return nearest.getObject();
}
