// Collision filter, continuous collision detection and the parts of a Bullet step.
#include "physics/DynamicsWorld.h"

#include <algorithm>
#include <array>

#include <BulletCollision/CollisionDispatch/btSimulationIslandManager.h>

#include "engine/scene/Object.h"
#include "physics/TriangleContacts.h"

namespace {

bool isWithin(const Node* node, const Node* top) {
    while (node && node != top) node = node->getParent();
    return node != nullptr;
}

bool isDynamic(Collidable& c) {
    const BodyState* const body = c.asBody();
    return body && body->isDynamic();
}

/// Ids of the two, then the shapes in contact; manifolds without contacts are last.
std::array<int, 5> keyOf(const btPersistentManifold& manifold) {
    if (manifold.getNumContacts() == 0) return {1, 0, 0, 0, 0};
    const btManifoldPoint& point = manifold.getContactPoint(0);
    return {0, collidableOf(*manifold.getBody0()).id, collidableOf(*manifold.getBody1()).id, point.m_index0,
            point.m_index1};
}

bool excludes(const Collidable& c, const Collidable& other) {
    if (c.excluded < 0) return false;
    const Node* node = other.object;
    while (node && node->getId() != c.excluded) node = node->getParent();
    return node != nullptr;
}

bool isSimulated(Collidable& c) {
    const BodyState* const body = c.asBody();
    return body && body->mode == Mode::DYNAMIC;
}

class ProxyList final : public btBroadphaseAabbCallback {
public:
    explicit ProxyList(std::vector<Collidable*>& list) : m_list(list) {}
    bool process(const btBroadphaseProxy* proxy) override {
        m_list.push_back(&collidableOf(*static_cast<btCollisionObject*>(proxy->m_clientObject)));
        return true;
    }

private:
    std::vector<Collidable*>& m_list;
};

}  // namespace

bool mayTouch(const Collidable& a, const Collidable& b) {
    if (!(a.group & b.mask) || !(b.group & a.mask)) return false;
    if (excludes(a, b) || excludes(b, a)) return false;
    if (a.type == Collidable::TERRAIN) return static_cast<const TerrainPatch&>(a).body == &b;
    if (b.type == Collidable::TERRAIN) return static_cast<const TerrainPatch&>(b).body == &a;
    return !isWithin(a.object, b.object) && !isWithin(b.object, a.object);
}

DynamicsParts::DynamicsParts() {
    broadphase.getOverlappingPairCache()->setOverlapFilterCallback(&filter);
    solver.setRandSeed(0);
}

bool DynamicsParts::Filter::needBroadphaseCollision(btBroadphaseProxy* a, btBroadphaseProxy* b) const {
    Collidable& one = collidableOf(*static_cast<btCollisionObject*>(a->m_clientObject));
    Collidable& two = collidableOf(*static_cast<btCollisionObject*>(b->m_clientObject));
    return (isDynamic(one) || isDynamic(two)) && mayTouch(one, two);
}

bool DynamicsParts::Dispatcher::needsCollision(const btCollisionObject* a, const btCollisionObject* b) {
    return ignore_modes || isSimulated(collidableOf(*a)) || isSimulated(collidableOf(*b));
}

void DynamicsParts::Dispatcher::sortManifolds() {
    if (m_manifoldsPtr.size() == 0) return;
    std::sort(&m_manifoldsPtr[0], &m_manifoldsPtr[0] + m_manifoldsPtr.size(),
              [](const btPersistentManifold* a, const btPersistentManifold* b) { return keyOf(*a) < keyOf(*b); });
    for (int i = 0; i < m_manifoldsPtr.size(); ++i) m_manifoldsPtr[i]->m_index1a = i;
}

DynamicsWorld::DynamicsWorld(DynamicsParts& parts, SubstepObserver& observer)
    : btDiscreteDynamicsWorld(&parts.dispatcher, &parts.broadphase, &parts.solver, &parts.configuration),
      m_parts(parts),
      m_observer(observer) {
    setForceUpdateAllAabbs(false);
    setGravity(btVector3(0, 0, 0));
    // Bullet's sorting of islands is not stable; bodies here do not sleep by islands.
    getSimulationIslandManager()->setSplitIslands(false);
}

void DynamicsWorld::insert(Collidable& c) {
    if (c.inserted) return;
    addRigidBody(c.rigid.get(), -1, -1);
    c.inserted = true;
}

void DynamicsWorld::remove(Collidable& c) {
    if (!c.inserted) return;
    removeRigidBody(c.rigid.get());
    c.inserted = false;
}

void DynamicsWorld::refilter(Collidable& c) {
    if (c.inserted) refreshBroadphaseProxy(c.rigid.get());
}

void DynamicsWorld::performDiscreteCollisionDetection() {
    btDiscreteDynamicsWorld::performDiscreteCollisionDetection();
    m_parts.dispatcher.sortManifolds();
    while (m_observer.wakeTouched()) {
        m_parts.dispatcher.dispatchAllCollisionPairs(m_parts.broadphase.getOverlappingPairCache(), getDispatchInfo(),
                                                     &m_parts.dispatcher);
        m_parts.dispatcher.sortManifolds();
    }
    m_observer.contactsFound();
}

void DynamicsWorld::findOverlaps(Collidable& a, Collidable& b, ContactResultCallback& found) {
    m_parts.dispatcher.ignore_modes = true;
    contactPairTest(a.rigid.get(), b.rigid.get(), found);
    m_parts.dispatcher.ignore_modes = false;
}

btTransform DynamicsWorld::advance(const BodyState& body, double dt) {
    btRigidBody& rigid = *body.rigid;
    btTransform next;
    rigid.predictIntegratedTransform(dt, next);
    const btTransform now = rigid.getWorldTransform();
    const double inset = body.shapes.inset;
    if ((next.getOrigin() - now.getOrigin()).length2() < inset * inset) return next;

    btVector3 lo, hi, lo_next, hi_next;
    body.shapes.compound->getAabb(now, lo, hi);
    body.shapes.compound->getAabb(next, lo_next, hi_next);
    lo.setMin(lo_next);
    hi.setMax(hi_next);
    m_near.clear();
    ProxyList list(m_near);
    getBroadphase()->aabbTest(lo, hi, list);

    double fraction = 1.0;
    for (Collidable* other : m_near) {
        if (other == &body || !mayTouch(body, *other)) continue;
        for (std::size_t i = 0; i < body.shapes.cores.size(); ++i) {
            const btTransform& child = body.shapes.compound->getChildTransform(static_cast<int>(i));
            const SweepHit hit =
                sweep(*body.shapes.cores[i], now * child, next * child, *other->rigid,
                      *other->rigid->getCollisionShape(), other->rigid->getWorldTransform(), 0.5 * inset);
            fraction = std::fmin(fraction, hit.fraction);
        }
    }
    if (fraction < 1.0) rigid.predictIntegratedTransform(dt * fraction, next);
    return next;
}
