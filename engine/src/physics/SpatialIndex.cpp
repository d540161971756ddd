// Segment and box queries on the bounding volume hierarchy; the first query after a move updates it.
#include "physics/SpatialIndex.h"

#include "engine/math/jMath.h"
#include "physics/Convert.h"
#include "physics/TreeQuery.h"

namespace {

constexpr double PADDING = 0.001;  // metres: far above the rounding of geocentric boxes, 1e-9
constexpr std::size_t FEW = 16;    // objects that move in a typical frame
constexpr int PASSES = 4;          // leaves reinserted with every update

bool hasSurfaces(Node& node) {
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
    const BoundBox box = hasSurfaces(node) ? node.getWorldBoundBox() : BoundBox();
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
    // Objects inserted in the order of their positions make an unbalanced tree; a random order keeps it balanced.
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

void SpatialIndex::query(const dvec3& from, const dvec3& to, jVector<Node*>& tops) {
    if (!isFinite(from) || !isFinite(to)) return;
    refit();
    const int first = tops.size();
    // Bullet's own ray test takes no segment of length zero.
    m_stack.clear();
    if (m_tree->m_root) m_stack.push_back(m_tree->m_root);
    while (!m_stack.empty()) {
        const btDbvtNode* const node = m_stack.back();
        m_stack.pop_back();
        if (!intersects(BoundBox(fromBullet(node->volume.Mins()), fromBullet(node->volume.Maxs())), from, to)) continue;
        if (node->isinternal())
            m_stack.insert(m_stack.end(), {node->childs[0], node->childs[1]});
        else
            tops.append(static_cast<Node*>(node->data));
    }
    std::sort(tops.begin() + first, tops.end(),
              [](const Node* a, const Node* b) { return a->m_join_order < b->m_join_order; });
}

void SpatialIndex::query(const BoundBox& box, jVector<Object*>& tops) {
    if (box.isEmpty()) return;
    refit();
    const int first = tops.size();
    eachOverlap(*m_tree, toBullet(box.min), toBullet(box.max),
                [&tops](void* node) { tops.append(static_cast<Node*>(node)->asObject()); });
    std::sort(tops.begin() + first, tops.end(),
              [](const Node* a, const Node* b) { return a->m_join_order < b->m_join_order; });
}
