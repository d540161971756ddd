// Managers: actions stepped once per update, functions called after a delay.
#include <algorithm>

#include "engine/action/Action.h"
#include "engine/action/TimerManager.h"

ActionManager::~ActionManager() {
    removeAllActions();
    sweep();
}

void ActionManager::addAction(Action* action) {
    if (!action) return;
    action->m_slot = m_actions.size();
    m_actions.append(action);
    action->start();
}

void ActionManager::remove(int index) {
    Action* const action = m_actions[index];
    if (!action) return;
    m_actions[index] = nullptr;
    action->m_slot = -1;
    ++m_gaps;
    // The action may be the one whose step is running: it is destroyed after the update.
    m_removed.append(action);
}

void ActionManager::removeAction(Action* action) {
    const int i = action ? action->m_slot : -1;
    if (i < 0 || i >= m_actions.size() || m_actions[i] != action) return;
    remove(i);
    if (!m_updating) sweep();
}

void ActionManager::removeAllActions() {
    for (int i = 0; i < m_actions.size(); ++i) remove(i);
    if (!m_updating) sweep();
}

int ActionManager::getNumActions() const {
    return m_actions.size() - m_gaps;
}

void ActionManager::update(float dt) {
    if (m_updating) return;
    m_updating = true;
    const int count = m_actions.size();
    for (int i = 0; i < count; ++i) {
        Action* const action = m_actions[i];
        if (!action) continue;
        action->step(dt);
        if (m_actions[i] != action || !action->isDone()) continue;
        remove(i);
        action->trigger();
    }
    m_updating = false;
    sweep();
}

void ActionManager::sweep() {
    m_updating = true;  // ending an action may remove others
    for (int i = 0; i < m_removed.size(); ++i) {
        const auto* const interval = dynamic_cast<const ActionInterval*>(m_removed[i]);
        if (interval && interval->isDoneIfDel() && !interval->isDone()) m_removed[i]->forceDone();
        destroyAction(m_removed[i]);
    }
    m_removed.clear();
    m_updating = false;
    // Not at every removal: compaction at half the size keeps the cost of many single removals linear.
    if (2 * m_gaps > m_actions.size()) closeGaps();
}

void ActionManager::closeGaps() {
    int kept = 0;
    for (Action* action : m_actions) {
        if (!action) continue;
        action->m_slot = kept;
        m_actions[kept++] = action;
    }
    m_actions.resize(kept);
    m_gaps = 0;
}

int TimerManager::addTimer(float delay, bool repeat, Function<void()> function) {
    m_timers.append(Timer{m_next_id, delay, delay, repeat, std::move(function)});
    return m_next_id++;
}

void TimerManager::removeTimer(int id) {
    for (int i = 0; i < m_timers.size(); ++i) {
        if (m_timers[i].id == id) {
            m_timers.removeAt(i);
            return;
        }
    }
}

void TimerManager::update(float dt) {
    jVector<int> due;  // ids: a call may add and remove timers
    for (Timer& timer : m_timers) {
        timer.left -= dt;
        if (timer.left <= 0.0f) due.append(timer.id);
    }
    for (const int id : due) {
        const auto it = std::find_if(m_timers.begin(), m_timers.end(), [id](const Timer& t) { return t.id == id; });
        if (it == m_timers.end()) continue;
        const Function<void()> function = it->function;
        if (it->repeat)
            it->left += it->delay;
        else
            removeTimer(id);
        function();
    }
}
