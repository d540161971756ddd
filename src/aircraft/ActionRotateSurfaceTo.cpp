// Timed rotations of gear legs, doors and hooks; stepped by the aircraft's action manager.
#include "src/aircraft/ActionRotateSurfaceTo.h"

#include <engine/memory/Allocator.h>
#include <engine/scene/Object.h>
#include <engine/text/Log.h>

dmat4 posedTransform(const vec3& hpr, const dmat4& initial) {
    return {dquat::fromEulerZXY(dvec3(hpr)), initial.getTranslation()};
}

ActionRotateSurfaceTo* ActionRotateSurfaceTo::Create(Object* object, const jString& surface, const dmat4& initial,
                                                     float duration, const vec3& from, const vec3& to) {
    auto* const action =
        jNew<ActionRotateSurfaceTo>({"src\\aircraft\\ActionRotateSurfaceTo", "ActionRotateSurfaceTo::Create"});
    if (action->initWithDuration(object, surface, initial, duration, from, to)) return action;
    destroyAction(action);
    return nullptr;
}

bool ActionRotateSurfaceTo::initWithDuration(Object* object, const jString& surface, const dmat4& initial,
                                             float duration, const vec3& from, const vec3& to) {
    m_surface = object->getNodeByName(surface);
    if (!m_surface) {
        jLog::error("%s:can not find surface \"%s\" in Object \"%s\"", "ActionRotateSurfaceTo::initWithDuration",
                    surface.c_str(), object->getName().c_str());
        return false;
    }
    if (!(duration > 0.0f)) {
        jLog::error("%s:dt <=0 ,make dt = 0.001f", "ActionRotateSurfaceTo::initWithDuration");
        duration = 0.001f;
    }
    m_duration = duration;
    m_elapsed = 0.0f;
    m_initial = initial;
    m_from = from;
    m_to = to;
    return true;
}

/// Advances the time first, so that the last step sets exactly the end pose.
bool ActionRotateSurfaceTo::step(float dt) {
    if (!ActionInterval::step(dt)) return false;
    const float part = std::min(1.0f, m_elapsed / m_duration);
    const vec3 hpr = part < 1.0f ? m_from + (m_to - m_from) * part : m_to;
    m_surface->setTransform(posedTransform(hpr, m_initial));
    return true;
}

bool ActionRotateSurfaceTo::forceDone() {
    m_surface->setTransform(posedTransform(m_to, m_initial));
    return ActionInterval::forceDone();
}
