// Timed actions and what runs them.
#pragma once

#include "engine/Api.h"
#include "engine/text/Containers.h"

/// Something that goes on over frames. Actions are made with jNew; whoever is given one (a manager, a group) owns it,
/// calls `release` on it when it ends and destroys it.
class ENGINE_API Action {
public:
    virtual bool isPause() const { return m_pause; }
    virtual void setPause(bool pause) { m_pause = pause; }
    virtual int getTag() const { return m_tag; }
    virtual void setTag(int tag) { m_tag = tag; }
    virtual void* getData() const { return m_data; }
    virtual void setData(void* data) { m_data = data; }  ///< not owned
    virtual ~Action();
    virtual bool start();         ///< called once, before the first step
    virtual bool step(float dt);  ///< seconds
    virtual bool isDone() const;
    virtual bool forceDone();  ///< jumps to the end
    virtual void trigger();    ///< calls what was connected to `done`
    virtual void release();    ///< gives back what it holds, before it is destroyed

    jVector<Function<void(Action*)>> done;  ///< called once by `trigger` when the action has ended

private:
    friend class ActionManager;

    bool m_pause = false;
    int m_tag = 0;
    int m_slot = -1;  ///< in its manager's list
    void* m_data = nullptr;
};

/// An action with a length.
class ENGINE_API FiniteTimeAction : public Action {
public:
    virtual float getDuration() const { return m_duration; }  ///< seconds
    virtual void setDuration(float seconds) { m_duration = seconds; }

protected:
    float m_duration = 0.0f;
};

/// An action that counts the time since its start.
class ENGINE_API ActionInterval : public FiniteTimeAction {
public:
    /// A plain wait of that length; the caller owns it until it is given away.
    static ActionInterval* Create(float duration);

    bool start() override;
    bool step(float dt) override;
    bool isDone() const override;
    bool forceDone() override;
    virtual bool isDoneIfDel() const { return m_done_if_del; }
    /// Whether the action is brought to its end when it is removed before it.
    virtual void setDoneIfDel(bool ends) { m_done_if_del = ends; }
    float getElapsed() const { return m_elapsed; }  ///< seconds

protected:
    float m_elapsed = 0.0f;

private:
    bool m_done_if_del = false;
};

/// An action that goes on until it says so itself.
class ENGINE_API ForeverAction : public Action {
public:
    bool isDone() const override { return false; }
};

/// Runs its actions side by side; done when all are. Owns them. Its duration is that of the longest, as it was added.
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

/// Runs its actions one after the other; what a step leaves over of one goes into the next. Owns them. Its
/// duration is their sum, as they were added.
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
    jVector<Action*> m_actions;  ///< those not ended yet; the first one runs
};

/// Ends an action's life outside a manager: release and destruction. Null is allowed.
ENGINE_API void destroyAction(Action* action);

/// Runs actions: `start` when added, `step` each update until done, then `trigger`, `release` and destruction. Actions
/// may be added and removed from within a step; what is added then gets its first step with the next update.
class ENGINE_API ActionManager {
public:
    ActionManager() = default;
    ~ActionManager();
    ActionManager(const ActionManager&) = delete;
    ActionManager& operator=(const ActionManager&) = delete;

    /// Takes ownership and starts it; null is ignored.
    void addAction(Action* action);
    /// Ends and destroys it; one of another manager, or of none, is ignored. REQUIRES that it has not ended yet.
    void removeAction(Action* action);
    void removeAllActions();
    int getNumActions() const;
    void update(float dt);  ///< seconds

private:
    void remove(int index);
    void sweep();
    void closeGaps();

    jVector<Action*> m_actions;  ///< null where one was removed
    jVector<Action*> m_removed;  ///< wait for the end of the update
    int m_gaps = 0;              ///< nulls in the list
    bool m_updating = false;
};
