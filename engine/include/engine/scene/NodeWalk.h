// Walking a part of the scene.
#pragma once

#include "engine/scene/Node.h"
#include "engine/scene/ObjectParticles.h"

/// Calls `f(Node&)` for the node, then for everything below it, parents first. `f` must not add or remove nodes there.
template <class F>
void forEachNode(Node& node, const F& f) {
    f(node);
    for (int i = 0; i < node.getNumChildren(); ++i) forEachNode(*node.getChild(i), f);
}

/// Calls `f(ObjectParticles&)` for the particle systems among them.
template <class F>
void forEachParticles(Node& node, const F& f) {
    forEachNode(node, [&f](Node& n) {
        if (n.getType() == Node::PARTICLES) f(static_cast<ObjectParticles&>(n));
    });
}
