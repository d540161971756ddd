// Timed actions and their manager.
#pragma once

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// An operation over several frames. Actions are made with jNew. The owner of an action (a manager or a group) calls
/// `step` in each update and then `isDone`; when that is true it triggers, releases and destroys the action.
class ENGINE_API Action {
public:
    virtual bool isPause() const { return m_pause; }
    virtual void setPause(bool pause) { m_pause = pause; }
    virtual int getTag() const { return m_tag; }
    virtual void setTag(int tag) { m_tag = tag; }
    virtual void* getData() const { return m_data; }
    virtual void setData(void* data) { m_data = data; }  ///< not owned
    virtual ~Action();
    virtual bool start();  ///< called once, before the first step
    /// Advances by dt seconds. False when nothing was advanced, as for a paused interval; the result does not end the
    /// action and the manager ignores it. A group that returns false has not stepped its actions.
    virtual bool step(float dt);
    virtual bool isDone() const;  ///< read by the owner after each step; true ends the action
    virtual bool forceDone();     ///< jumps to the end, so that `isDone` is true
    virtual void trigger();       ///< calls the handlers of `done`
    virtual void release();       ///< frees held resources; called before the destruction

    jVector<Function<void(Action*)>> done;  ///< called once by `trigger` when the action has ended

private:
    friend class ActionManager;

    bool m_pause = false;
    int m_tag = 0;
    int m_slot = -1;  ///< in its manager's list
    void* m_data = nullptr;
};

/// An action with a duration.
class ENGINE_API FiniteTimeAction : public Action {
public:
    virtual float getDuration() const { return m_duration; }  ///< seconds
    virtual void setDuration(float seconds) { m_duration = seconds; }

protected:
    float m_duration = 0.0f;
};

/// An action that measures the time since its start.
class ENGINE_API ActionInterval : public FiniteTimeAction {
public:
    /// A wait of `duration` seconds; the caller owns it until it is added to a manager or a group.
    static ActionInterval* Create(float duration);

    bool start() override;
    bool step(float dt) override;
    bool isDone() const override;
    bool forceDone() override;
    virtual bool isDoneIfDel() const { return m_done_if_del; }
    /// Whether removal before the end first forces the action to its end.
    virtual void setDoneIfDel(bool ends) { m_done_if_del = ends; }
    float getElapsed() const { return m_elapsed; }  ///< seconds

protected:
    float m_elapsed = 0.0f;

private:
    bool m_done_if_del = false;
};

/// An action without an end of its own; it ends when it is removed.
class ENGINE_API ForeverAction : public Action {
public:
    bool isDone() const override { return false; }
};

/// Runs its actions in parallel; done when all are done. Owns them. Its duration is the longest one among the added
/// ones.
class ENGINE_API ActionMulti : public ActionInterval {
public:
    static ActionMulti* Create();
    ~ActionMulti() override;
    /// Takes ownership; null is ignored.
    void addAction(Action* action);
    int getNumActions() const { return m_actions.size(); }
    bool start() override;
    bool step(float dt) override;
    bool isDone() const override;
    bool forceDone() override;
    void release() override;

private:
    jVector<Action*> m_actions;
};

/// Runs its actions one after the other; the remaining time of a step is passed to the next action. Owns them. Its
/// duration is the sum of those added.
class ENGINE_API ActionSequence : public ActionInterval {
public:
    static ActionSequence* Create();
    ~ActionSequence() override;
    /// Takes ownership; null is ignored.
    void addAction(Action* action);
    int getNumActions() const { return m_actions.size(); }
    bool start() override;
    bool step(float dt) override;
    bool isDone() const override;
    bool forceDone() override;
    void release() override;

private:
    jVector<Action*> m_actions;  ///< actions that have not ended; the first one is running
};

/// Releases and destroys an action outside a manager. Null is allowed.
ENGINE_API void destroyAction(Action* action);

/// Runs actions: `start` when added, `step` in each update until done, then `trigger`, `release` and destruction.
/// Actions may be added and removed during a step; an added action then gets its first step in the next update.
class ENGINE_API ActionManager {
public:
    ActionManager() = default;
    ~ActionManager();
    ActionManager(const ActionManager&) = delete;
    ActionManager& operator=(const ActionManager&) = delete;

    /// Takes ownership and starts it; null is ignored.
    void addAction(Action* action);
    /// Releases and destroys it without `trigger`; ignores an action of another manager or of none. REQUIRES that it
    /// has not ended.
    void removeAction(Action* action);
    void removeAllActions();
    int getNumActions() const;
    void update(float dt);  ///< seconds

private:
    void remove(int index);
    void sweep();
    void closeGaps();

    jVector<Action*> m_actions;  ///< null for removed actions
    jVector<Action*> m_removed;  ///< destroyed at the end of the update
    int m_gaps = 0;              ///< nulls in the list
    bool m_updating = false;
};
