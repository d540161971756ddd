// Timed actions of weapons.
#pragma once

#include <engine/action/Action.h>
#include <engine/math/Transform.h>

class Node;
class Object;

/// Flies a node straight along the Y axis that it has now, at constant speed, until its life ends; then hides it. The
/// node outlives the action and hangs at the top of the world: the axis is the world's, the position its own.
class ActionEmitMissile final : public ForeverAction {
public:
    /// Metres a second and seconds; null without a node. The caller owns the action until it gives it away.
    static ActionEmitMissile* Create(Node* node, float speed, float life);

    bool start() override;  ///< puts the node back to where it was when the action was made
    bool step(float dt) override;
    bool isDone() const override { return m_finished; }
    void release() override;
    virtual bool setup(Node* node, float speed, float life);
    virtual void advance(float dt);  ///< moves the node; one that is switched off stays where it is

private:
    Node* m_node = nullptr;
    float m_life = 0.0f;   ///< seconds
    float m_speed = 0.0f;  ///< m/s
    dmat4 m_launch_transform;
    dvec3 m_heading;
    bool m_finished = false;
    float m_elapsed = 0.0f;  ///< seconds
};

/// What a torpedo's run is shown by. Nothing is owned.
struct TorpedoRun {
    void* owner = nullptr;
    Node* effect = nullptr;  ///< revealed where the body is
    Object* body = nullptr;  ///< what runs
    void* data = nullptr;
    float life = 0.0f;  ///< seconds
};

/// Shows a run's effect at its body once the delay has passed, and hides it when the life ends or the body is at sea
/// level or below. The run, with its effect and its body, outlives the action.
class ActionEmitTorpedo final : public ForeverAction {
public:
    /// Hides the effect at once; null without a run, an effect or a body. `delay` in seconds. The caller owns the
    /// action until it gives it away.
    static ActionEmitTorpedo* Create(TorpedoRun* run, float delay);

    bool start() override;
    bool step(float dt) override;
    bool isDone() const override { return m_finished; }
    bool forceDone() override;
    void release() override;
    virtual bool setup(TorpedoRun* run, float delay);
    virtual void advance(float dt);  ///< does nothing

private:
    void finish();

    TorpedoRun* m_run = nullptr;
    float m_delay = 0.0f;    ///< seconds
    float m_life = 0.0f;     ///< seconds
    float m_elapsed = 0.0f;  ///< seconds
    bool m_shown = false;
    bool m_finished = false;
};
