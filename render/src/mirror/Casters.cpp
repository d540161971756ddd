// Compares caster poses in the frame that the shadow map was drawn in.
#include "mirror/Casters.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr double UNSEEN = 0.01;  // metres; the shadow may be off by twice this, half the finest texel

Reach reachAt(const dmat4& place, const Reach& reach) {
    const double scale = std::max({length(place.x), length(place.y), length(place.z)});
    return {place * reach.middle, reach.radius * scale};
}

/// Upper bound, in metres, of the motion of any point in the sphere.
double moveBetween(const dmat4& from, const dmat4& to, const Reach& reach) {
    const dvec3 x = to.x - from.x, y = to.y - from.y, z = to.z - from.z;
    const double turn = std::sqrt(dot(x, x) + dot(y, y) + dot(z, z));
    return length(to * reach.middle - from * reach.middle) + turn * reach.radius;
}

}  // namespace

void Casters::place(int id, const Reach& reach, const dmat4& to_world, bool changed) {
    Caster& caster = m_casters[id];
    caster.reach = reach;
    caster.place = to_world;
    caster.is_changed = caster.is_changed || changed;
    m_moved.push_back(id);
}

void Casters::remove(int id) {
    const auto found = m_casters.find(id);
    if (found == m_casters.end()) return;
    if (found->second.is_drawn) m_gone.push_back(reachAt(found->second.drawn, found->second.reach));
    m_casters.erase(found);
}

void Casters::takeDisturbed(const dmat4& frame, std::vector<Reach>& bounds) {
    bounds.clear();
    bounds.swap(m_gone);
    const dmat4 to_frame = inverse(frame);
    if (std::memcmp(&frame, &m_frame, sizeof frame) != 0) {
        m_frame = frame;
        for (auto& [id, caster] : m_casters) check(caster, to_frame, bounds);
    } else {
        for (const int id : m_moved) {
            const auto found = m_casters.find(id);
            if (found != m_casters.end()) check(found->second, to_frame, bounds);
        }
    }
    m_moved.clear();
}

void Casters::check(Caster& caster, const dmat4& to_frame, std::vector<Reach>& bounds) {
    const dmat4 now = to_frame * caster.place;
    if (!caster.is_changed && moveBetween(caster.drawn, now, caster.reach) < UNSEEN) return;
    if (caster.is_drawn) bounds.push_back(reachAt(caster.drawn, caster.reach));
    bounds.push_back(reachAt(now, caster.reach));
    caster.drawn = now;
    caster.is_drawn = true;
    caster.is_changed = false;
}
