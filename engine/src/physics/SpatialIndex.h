// Where things are: a bounding hierarchy over the outermost prefabs and the objects outside prefabs.
#pragma once

#include <memory>
#include <vector>

#include "engine/scene/Object.h"

struct btDbvt;
struct btDbvtNode;

/// Keeps the world boxes of its objects up to date when asked, not when they move, so that a move costs a list entry
/// and several moves between two queries cost as much as one. Boxes are geocentric, padded by 1 mm.
class SpatialIndex {
public:
    SpatialIndex();
    ~SpatialIndex();
    SpatialIndex(const SpatialIndex&) = delete;
    SpatialIndex& operator=(const SpatialIndex&) = delete;

    /// An object that joined the world; those within a prefab are the prefab's affair and ignored.
    void add(Node& node);
    /// It leaves the world; nodes that were not taken in are ignored.
    void remove(Node& node);
    /// Its place or its content changed; nodes that were not taken in are ignored.
    void moved(Node& node);

    /// Appends the nodes whose boxes the segment touches, in order of joining the world; inactive ones as well.
    void query(const dvec3& from, const dvec3& to, jVector<Node*>& tops);
    /// Appends the objects whose boxes overlap a geocentric box, in order of joining the world; inactive ones as well.
    void query(const BoundBox& box, jVector<Object*>& tops);

private:
    template <class Touches, class Found>
    void walk(const Touches& touches, const Found& found);
    void refit();
    void refit(Node& node);
    void dropLeaf(Node& node);

    std::unique_ptr<btDbvt> m_tree;
    std::vector<Node*> m_moved;
    std::vector<const btDbvtNode*> m_stack;  ///< kept from query to query
};
