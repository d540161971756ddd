// Box queries on Bullet's bounding volume trees.
#pragma once

#include <BulletCollision/BroadphaseCollision/btDbvt.h>

/// Calls f(data of the leaf) for every leaf whose box overlaps the box from `lo` to `hi`.
template <class F>
void eachOverlap(const btDbvt& tree, const btVector3& lo, const btVector3& hi, const F& f) {
    struct Visitor final : btDbvt::ICollide {
        explicit Visitor(const F& function) : visit(function) {}
        void Process(const btDbvtNode* leaf) override { visit(leaf->data); }
        const F& visit;
    };
    if (!tree.m_root) return;
    Visitor visitor(f);
    tree.collideTV(tree.m_root, btDbvtVolume::FromMM(lo, hi), visitor);
}
