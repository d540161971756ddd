// Illumination of surfaces by lamps: the few that matter most near the eye.
#pragma once

#include <osg/StateSet>

#include <unordered_map>
#include <vector>

#include "base/FrameView.h"
#include "effects/Lamp.h"

class LampLights {
public:
    static constexpr int MAX_LAMPS = 4;  ///< same as in surface.glsl

    /// A chosen lamp and the share of its light that is used; the share makes changes of the choice gradual.
    struct Chosen {
        const Lamp* lamp = nullptr;
        double score = 0.0;  ///< illuminance at the eye, klx: the ranking
        double share = 0.0;  ///< 0..1
    };

    /// Adds the uniforms of surface.glsl to the state of the scene's root, and its define LAMPS while there are lamps.
    explicit LampLights(osg::StateSet& root_state);
    /// Adds or replaces the lamp of this node.
    void set(int id, const Lamp& lamp);
    void remove(int id);
    /// Chooses the lamps and sets the uniforms; none by day and while not `enabled`.
    void update(const FrameView& view, bool enabled);

    /// The lamps with the highest illuminance at a position (geocentric), highest first; returns their number.
    int choose(const dvec3& place, Chosen (&chosen)[MAX_LAMPS]) const;

private:
    osg::StateSet& m_root_state;
    bool m_defined = false;
    std::vector<Lamp> m_lamps;  ///< lamps that are on
    std::vector<int> m_ids;     ///< node ids, in the order of m_lamps
    std::unordered_map<int, std::size_t> m_slots;
    osg::ref_ptr<osg::Uniform> m_count, m_places, m_colors, m_axes;
};
