// A particle effect that plays once.
#pragma once

#include <engine/action/Action.h>
#include <engine/math/Transform.h>

class Node;
class ObjectParticles;

/// Plays the effect of a node file: loads it with the action, starts it 0.1 s after the action's start, so that its
/// place has settled, and deletes it when the action is released. The effect's top node is a particle system; those
/// below it play with it, and its lights flash.
class ActionPlaySpe final : public ActionInterval {
public:
    /// An effect at `position` (geocentric metres), level there, below `parent` (a node of a world), for `duration`
    /// seconds. Null, with one error logged and nothing left behind, when the file cannot be read, has no "node" or one
    /// that is no particle system. The caller owns the action until it gives it away.
    static ActionPlaySpe* Create(Node* parent, const jString& path, float duration, const dvec3& position);

    bool start() override;
    bool step(float dt) override;
    bool forceDone() override;
    void release() override;
    virtual bool initWithDuration(Node* parent, const jString& path, float duration, const dvec3& position);

    ObjectParticles* getEffect() const { return m_effect; }  ///< the world's; null once released

private:
    void shine(float brightness);
    void flash();

    float m_effect_duration = 0.0f;       ///< seconds
    ObjectParticles* m_effect = nullptr;  ///< the world's
    bool m_flashing = false;              ///< its lights have not died away yet
};
