// The bounding hierarchy behind segment and box queries; brought up to date by the first query after a move.
#include "physics/SpatialIndex.h"

#include <BulletCollision/BroadphaseCollision/btDbvt.h>

#include "engine/math/jMath.h"

namespace {

constexpr double PADDING = 0.001;  // metres: far above the rounding of geocentric boxes, 1e-9
constexpr std::size_t FEW = 16;    // objects that move in a usual frame
constexpr int PASSES = 4;          // leaves that are put to a better place with every change

btVector3 toBullet(const dvec3& v) {
    return {v.x, v.y, v.z};
}
dvec3 fromBullet(const btVector3& v) {
    return {v.x(), v.y(), v.z()};
}
Node* nodeOf(const btDbvtNode* leaf) {
    return static_cast<Node*>(leaf->data);
}

bool canBeMet(Node& node) {
    return node.getType() == Node::PREFAB || node.asObject()->getNumSurfaces() > 0;
}

}  // namespace

SpatialIndex::SpatialIndex() : m_tree(std::make_unique<btDbvt>()) {}
SpatialIndex::~SpatialIndex() = default;

void SpatialIndex::add(Node& node) {
    if (!node.asObject() || node.getPrefabNode()) return;
    node.m_bounds_top = true;
    moved(node);
}

void SpatialIndex::remove(Node& node) {
    if (!node.m_bounds_top) return;
    node.m_bounds_top = false;
    if (node.m_bounds_slot >= 0) {
        Node* const last = m_moved.back();
        m_moved[static_cast<std::size_t>(node.m_bounds_slot)] = last;
        last->m_bounds_slot = node.m_bounds_slot;
        m_moved.pop_back();
        node.m_bounds_slot = -1;
    }
    dropLeaf(node);
}

void SpatialIndex::moved(Node& node) {
    if (!node.m_bounds_top || node.m_bounds_slot >= 0) return;
    node.m_bounds_slot = static_cast<int>(m_moved.size());
    m_moved.push_back(&node);
}

void SpatialIndex::dropLeaf(Node& node) {
    if (!node.m_bounds_leaf) return;
    m_tree->remove(static_cast<btDbvtNode*>(node.m_bounds_leaf));
    node.m_bounds_leaf = nullptr;
}

void SpatialIndex::refit(Node& node) {
    const BoundBox box = canBeMet(node) ? node.getWorldBoundBox() : BoundBox();
    if (box.isEmpty() || !isFinite(box.min) || !isFinite(box.max)) {
        dropLeaf(node);
        return;
    }
    const dvec3 pad(PADDING, PADDING, PADDING);
    btDbvtVolume volume = btDbvtVolume::FromMM(toBullet(box.min - pad), toBullet(box.max + pad));
    if (node.m_bounds_leaf) {
        m_tree->update(static_cast<btDbvtNode*>(node.m_bounds_leaf), volume);
    } else {
        node.m_bounds_leaf = m_tree->insert(volume, &node);
    }
}

void SpatialIndex::refit() {
    if (m_moved.empty()) return;
    // A row of objects that join one after the other would make a chain of a tree; in mixed order it comes out
    // balanced.
    Random random;
    for (std::size_t left = m_moved.size(); left > FEW; --left) {
        std::swap(m_moved[left - 1], m_moved[random.getInt() % left]);
    }
    for (Node* node : m_moved) {
        node->m_bounds_slot = -1;
        refit(*node);
    }
    m_moved.clear();
    m_tree->optimizeIncremental(PASSES);
}

template <class Touches, class Found>
void SpatialIndex::walk(const Touches& touches, const Found& found) {
    refit();
    if (!m_tree->m_root) return;
    m_stack.assign(1, m_tree->m_root);
    while (!m_stack.empty()) {
        const btDbvtNode* const node = m_stack.back();
        m_stack.pop_back();
        if (!touches(node->volume)) continue;
        if (node->isinternal()) {
            m_stack.push_back(node->childs[0]);
            m_stack.push_back(node->childs[1]);
        } else {
            found(nodeOf(node));
        }
    }
}

void SpatialIndex::query(const dvec3& from, const dvec3& to, jVector<Node*>& tops) {
    if (!isFinite(from) || !isFinite(to)) return;
    const int first = tops.size();
    walk(
        [&](const btDbvtVolume& v) {
            return intersects(BoundBox(fromBullet(v.Mins()), fromBullet(v.Maxs())), from, to);
        },
        [&](Node* node) { tops.append(node); });
    std::sort(tops.begin() + first, tops.end(),
              [](const Node* a, const Node* b) { return a->m_join_order < b->m_join_order; });
}

void SpatialIndex::query(const BoundBox& box, jVector<Object*>& tops) {
    if (box.isEmpty()) return;
    const int first = tops.size();
    const btDbvtVolume wanted = btDbvtVolume::FromMM(toBullet(box.min), toBullet(box.max));
    walk([&](const btDbvtVolume& v) { return Intersect(v, wanted); },
         [&](Node* node) { tops.append(node->asObject()); });
    std::sort(tops.begin() + first, tops.end(),
              [](const Node* a, const Node* b) { return a->m_join_order < b->m_join_order; });
}
