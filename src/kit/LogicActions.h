// Timed actions for weapons.
#pragma once

#include <engine/action/Action.h>
#include <engine/math/Transform.h>

class Node;
class Object;

/// Moves a node along its current Y axis at constant speed until its life ends, then hides it. The node must outlive
/// the action and be a child of the world's root: the axis is in the world frame, the position in the parent's frame.
class ActionEmitMissile final : public ForeverAction {
public:
    /// `speed` in m/s, `life` in seconds; null without a node. The caller owns the action until it passes it on.
    static ActionEmitMissile* Create(Node* node, float speed, float life);

    bool start() override;  ///< resets the node to its pose when the action was made
    bool step(float dt) override;
    bool isDone() const override { return m_finished; }
    void release() override;
    virtual bool setup(Node* node, float speed, float life);
    virtual void advance(float dt);  ///< moves the node unless it is disabled

private:
    Node* m_node = nullptr;
    float m_life = 0.0f;   ///< seconds
    float m_speed = 0.0f;  ///< m/s
    dmat4 m_launch_transform;
    dvec3 m_heading;
    bool m_finished = false;
    float m_elapsed = 0.0f;  ///< seconds
};

/// The nodes and the life of one torpedo run. Nothing is owned.
struct TorpedoRun {
    void* owner = nullptr;
    Node* effect = nullptr;  ///< shown at the body's pose
    Object* body = nullptr;  ///< the torpedo
    void* data = nullptr;
    float life = 0.0f;  ///< seconds
};

/// Shows a run's effect at its body after the delay, and hides it when the life ends or the body is at sea level or
/// below. The run, its effect and its body must outlive the action.
class ActionEmitTorpedo final : public ForeverAction {
public:
    /// Hides the effect at once; null without a run, an effect or a body. `delay` in seconds. The caller owns the
    /// action until it passes it on.
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
