// A bounding volume hierarchy over the outermost prefabs and the objects outside prefabs.
#pragma once

#include <memory>
#include <vector>

#include "engine/scene/Object.h"

struct btDbvt;
struct btDbvtNode;

/// World boxes are updated by the next query, not by a move, so that a move costs a list entry and several moves
/// between two queries cost as much as one. Boxes are geocentric, padded by 1 mm.
class SpatialIndex {
public:
    SpatialIndex();
    ~SpatialIndex();
    SpatialIndex(const SpatialIndex&) = delete;
    SpatialIndex& operator=(const SpatialIndex&) = delete;

    /// Adds an object that joined the world; objects within a prefab are ignored, the prefab is added for them.
    void add(Node& node);
    /// Removes a node that leaves the world; nodes that were not added are ignored.
    void remove(Node& node);
    /// To be called after a change of place or content; nodes that were not added are ignored.
    void moved(Node& node);

    /// Appends the nodes whose boxes the segment touches, in order of joining the world; inactive ones as well.
    void query(const dvec3& from, const dvec3& to, jVector<Node*>& tops);
    /// Appends the objects whose boxes overlap a geocentric box, in order of joining the world; inactive ones as well.
    void query(const BoundBox& box, jVector<Object*>& tops);

private:
    void refit();
    void refit(Node& node);
    void dropLeaf(Node& node);

    std::unique_ptr<btDbvt> m_tree;
    std::vector<Node*> m_moved;
    std::vector<const btDbvtNode*> m_stack;  ///< kept from query to query
};
