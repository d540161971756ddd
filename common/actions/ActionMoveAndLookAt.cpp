// Glides of targets; the logic's action manager steps them.
#include "common/actions/ActionMoveAndLookAt.h"

#include <engine/globe/EllipsoidModel.h>
#include <engine/memory/Allocator.h>
#include <engine/scene/Node.h>
#include <engine/text/Log.h>

namespace {

/// Sine of the angle to the vertical below which travel is straight up or down. The vertical here is the direction
/// from the globe's centre, which differs by 0.19 degrees at most from the ellipsoid's normal.
constexpr double PARALLEL = 4e-3;

/// Axes with Y along the travel and X level. With vertical travel X is as close as possible to the old X axis.
dmat4 facing(const dmat4& now, const dvec3& travel) {
    const dvec3 y = normalize(travel);
    dvec3 x = cross(y, normalize(now.t));
    if (length(x) < PARALLEL) x = now.x - y * dot(now.x, y);
    x.normalize();
    return {x, y, cross(x, y), now.t};
}

}  // namespace

ActionMoveAndLookAt* ActionMoveAndLookAt::Create(Node* node, float duration, const dvec3& from, const dvec3& to) {
    auto* const action =
        jNew<ActionMoveAndLookAt>({"common\\actions\\ActionMoveAndLookAt", "ActionMoveAndLookAt::Create"});
    if (action->initWithDuration(node, duration, from, to)) return action;
    destroyAction(action);
    return nullptr;
}

bool ActionMoveAndLookAt::initWithDuration(Node* node, float duration, const dvec3& from, const dvec3& to) {
    m_node = node;
    if (!(duration > 0.0f)) {
        jLog::error("%s:dt <=0 ,make dt = 0.001f", "ActionMoveAndLookAt::initWithDuration");
        duration = 0.001f;
    }
    const EllipsoidModel globe;
    m_from = from;
    m_to = to;
    m_travel = globe.toWorld(to) - globe.toWorld(from);
    if (m_node && length2(m_travel) > 0.0) m_node->setWorldTransform(facing(m_node->getWorldTransform(), m_travel));
    m_duration = duration;
    m_elapsed = 0.0f;
    return true;
}

bool ActionMoveAndLookAt::step(float dt) {
    if (!m_node) return false;
    if (m_elapsed >= m_duration) {
        m_node->setWgsPosition(m_to);
    } else {
        dvec3 place = m_from + (m_to - m_from) * static_cast<double>(m_elapsed / getDuration());
        if (place.x > 180.0) place.x -= 360.0;
        m_node->setWgsPosition(place);
    }
    return ActionInterval::step(dt);
}

bool ActionMoveAndLookAt::forceDone() {
    if (m_node) m_node->setWgsPosition(m_to);
    return ActionInterval::forceDone();
}
