// Shadow casters, and which of them moved since the shadow map was drawn.
#pragma once

#include <unordered_map>
#include <vector>

#include "engine/math/Transform.h"

/// A bounding sphere, metres.
struct Reach {
    dvec3 middle;
    double radius = 0.0;
};

class Casters {
public:
    /// Sets the pose of the mesh node with this id; `reach` is in the node's frame. `changed`: its shadow has another
    /// shape than before.
    void place(int id, const Reach& reach, const dmat4& to_world, bool changed);
    /// The node casts no shadow any more.
    void remove(int id);

    /// Writes to `bounds`, in the given frame of the world, the bounds of all casters that moved relative to it, were
    /// added or were removed since the last call: old and new bounds. Moves too small to see are collected until their
    /// sum is visible. The cost is proportional to the changes, or to all casters while the frame itself moves.
    /// Previous content of `bounds` is replaced.
    void takeDisturbed(const dmat4& frame, std::vector<Reach>& bounds);

private:
    struct Caster {
        Reach reach;
        dmat4 place;
        dmat4 drawn;  ///< pose in the frame when its bounds were last written
        bool is_drawn = false, is_changed = true;
    };

    static void check(Caster& caster, const dmat4& to_frame, std::vector<Reach>& bounds);

    std::unordered_map<int, Caster> m_casters;  ///< by node id
    std::vector<int> m_moved;                   ///< node ids, since the last call
    std::vector<Reach> m_gone;                  ///< bounds of removed casters since the last call, in its frame
    dmat4 m_frame;
};
