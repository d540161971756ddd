// The light of lamps on surfaces: the few that matter most near the eye.
#pragma once

#include <osg/StateSet>

#include <unordered_map>
#include <vector>

#include "base/FrameView.h"
#include "effects/Lamp.h"

class LampLights {
public:
    static constexpr int MAX_LAMPS = 4;  ///< as surface.glsl has it

    /// One that was chosen, with how much of its light is let through so that none comes or goes at once.
    struct Chosen {
        const Lamp* lamp = nullptr;
        double score = 0.0;  ///< illuminance at the eye, klx, by which they are chosen
        double share = 0.0;  ///< 0..1
    };

    /// Adds the uniforms of surface.glsl to the state of the scene's root, and its define LAMPS while there are any.
    explicit LampLights(osg::StateSet& root_state);
    /// The lamp of that node, new or anew.
    void set(int id, const Lamp& lamp);
    void remove(int id);
    /// Chooses the lamps and sets the uniforms; none by day and while not `enabled`.
    void update(const FrameView& view, bool enabled);

    /// The lamps that give a place (geocentric) the most light, strongest first; returns how many.
    int choose(const dvec3& place, Chosen (&chosen)[MAX_LAMPS]) const;

private:
    osg::StateSet& m_root_state;
    bool m_defined = false;
    std::vector<Lamp> m_lamps;  ///< those that shine
    std::vector<int> m_ids;     ///< their nodes'
    std::unordered_map<int, std::size_t> m_slots;
    osg::ref_ptr<osg::Uniform> m_count, m_places, m_colors, m_axes;
};
