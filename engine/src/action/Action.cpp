// Actions: single ones and groups.
#include "engine/action/Action.h"

#include <algorithm>

#include "engine/memory/Allocator.h"

namespace {

constexpr const char* SOURCE = "engine\\action\\Action";

/// Ends an action: calls the handlers of its end, releases it and destroys it.
void finish(Action* action) {
    action->trigger();
    destroyAction(action);
}

float durationOf(const Action* action) {
    const auto* const finite = dynamic_cast<const FiniteTimeAction*>(action);
    return finite ? finite->getDuration() : 0.0f;
}

}  // namespace

Action::~Action() = default;
bool Action::start() {
    return true;
}
bool Action::step(float) {
    return true;
}
bool Action::isDone() const {
    return true;
}
bool Action::forceDone() {
    return true;
}
void Action::release() {}

void Action::trigger() {
    for (int i = 0; i < done.size(); ++i) {
        const Function<void(Action*)> handler = done[i];  // it may connect further handlers
        handler(this);
    }
}

void destroyAction(Action* action) {
    if (!action) return;
    action->release();
    jDelete(action);
}

ActionInterval* ActionInterval::Create(float duration) {
    auto* const action = jNew<ActionInterval>({SOURCE, "ActionInterval::Create"});
    action->m_duration = duration;
    return action;
}

bool ActionInterval::start() {
    m_elapsed = 0.0f;
    return true;
}

bool ActionInterval::step(float dt) {
    if (isPause()) return false;
    m_elapsed += dt;
    return true;
}

bool ActionInterval::isDone() const {
    return m_elapsed >= getDuration();
}

bool ActionInterval::forceDone() {
    m_elapsed = getDuration();
    return true;
}

ActionMulti* ActionMulti::Create() {
    return jNew<ActionMulti>({SOURCE, "ActionMulti::Create"});
}

ActionMulti::~ActionMulti() {
    for (Action* action : m_actions) destroyAction(action);
}

void ActionMulti::addAction(Action* action) {
    if (!action) return;
    m_actions.append(action);
    m_duration = std::max(m_duration, durationOf(action));
}

bool ActionMulti::start() {
    for (Action* action : m_actions) action->start();
    return ActionInterval::start();
}

bool ActionMulti::step(float dt) {
    if (!ActionInterval::step(dt)) return false;
    for (int i = 0; i < m_actions.size();) {
        Action* const action = m_actions[i];
        action->step(dt);
        if (action->isDone()) {
            m_actions.removeAt(i);
            finish(action);
        } else {
            ++i;
        }
    }
    return true;
}

bool ActionMulti::isDone() const {
    return m_actions.empty();
}

bool ActionMulti::forceDone() {
    for (Action* action : m_actions) {
        action->forceDone();
        finish(action);
    }
    m_actions.clear();
    return true;
}

void ActionMulti::release() {
    for (Action* action : m_actions) destroyAction(action);
    m_actions.clear();
}

ActionSequence* ActionSequence::Create() {
    return jNew<ActionSequence>({SOURCE, "ActionSequence::Create"});
}

ActionSequence::~ActionSequence() {
    for (Action* action : m_actions) destroyAction(action);
}

void ActionSequence::addAction(Action* action) {
    if (!action) return;
    m_actions.append(action);
    m_duration += durationOf(action);
}

bool ActionSequence::start() {
    if (!m_actions.empty()) m_actions[0]->start();
    return ActionInterval::start();
}

bool ActionSequence::step(float dt) {
    if (!ActionInterval::step(dt)) return false;
    while (!m_actions.empty()) {
        Action* const action = m_actions[0];
        const auto* interval = dynamic_cast<const ActionInterval*>(action);
        action->step(dt);
        if (!action->isDone()) break;
        dt = interval ? std::max(0.0f, interval->getElapsed() - interval->getDuration()) : 0.0f;
        m_actions.removeAt(0);
        finish(action);
        if (!m_actions.empty()) m_actions[0]->start();
    }
    return true;
}

bool ActionSequence::isDone() const {
    return m_actions.empty();
}

bool ActionSequence::forceDone() {
    for (int i = 0; i < m_actions.size(); ++i) {
        if (i > 0) m_actions[i]->start();
        m_actions[i]->forceDone();
        finish(m_actions[i]);
    }
    m_actions.clear();
    return true;
}

void ActionSequence::release() {
    for (Action* action : m_actions) destroyAction(action);
    m_actions.clear();
}
