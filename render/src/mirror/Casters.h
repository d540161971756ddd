// What throws shadows, and what of it moved since they were drawn.
#pragma once

#include <unordered_map>
#include <vector>

#include "engine/math/Transform.h"

/// A sphere that holds something, metres.
struct Reach {
    dvec3 middle;
    double radius = 0.0;
};

class Casters {
public:
    /// The mesh node of that id stands there from now on; `reach` is in its own frame. `changed`: it throws another
    /// shadow than before.
    void place(int id, const Reach& reach, const dmat4& to_world, bool changed);
    /// It throws no shadow any more.
    void remove(int id);

    /// Gives the bounds, in a frame of the world, of all shadows' casters that moved in it, came or went since the
    /// last call: where they were and where they are. What moves with the frame does not move. Moves too small to see
    /// are given when they have added up. Costs grow with what changed; while the frame moves, with all that is there.
    /// `bounds` is written anew.
    void takeDisturbed(const dmat4& frame, std::vector<Reach>& bounds);

private:
    struct Caster {
        Reach reach;
        dmat4 place;
        dmat4 drawn;  ///< place in the frame when its bounds were last given
        bool is_drawn = false, is_changed = true;
    };

    static void check(Caster& caster, const dmat4& to_frame, std::vector<Reach>& bounds);

    std::unordered_map<int, Caster> m_casters;  ///< by node id
    std::vector<int> m_moved;                   ///< since the last call
    std::vector<Reach> m_gone;                  ///< since the last call, in its frame
    dmat4 m_frame;
};
