// Traversal of the scene tree.
#pragma once

#include <type_traits>

#include "engine/scene/Node.h"
#include "engine/scene/ObjectParticles.h"

/// Calls `f` for the node and all its descendants, parents first; const for a const node. `f` must not add or remove
/// nodes below `node`.
template <class AnyNode, class F>
void forEachNode(AnyNode& node, const F& f) {
    using Walked = std::conditional_t<std::is_const_v<AnyNode>, const Node, Node>;
    Walked& walked = node;
    f(walked);
    for (int i = 0; i < walked.getNumChildren(); ++i) forEachNode<Walked>(*walked.getChild(i), f);
}

/// Calls `f` for the particle systems among the node and its descendants.
template <class AnyNode, class F>
void forEachParticles(AnyNode& node, const F& f) {
    using Found = std::conditional_t<std::is_const_v<AnyNode>, const ObjectParticles, ObjectParticles>;
    forEachNode(node, [&f](auto& n) {
        if (n.getType() == Node::PARTICLES) f(static_cast<Found&>(n));
    });
}
