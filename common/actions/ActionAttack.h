// A particle effect that plays once.
#pragma once

#include <engine/action/Action.h>
#include <engine/math/Transform.h>

class Node;
class ObjectParticles;

/// Plays the effect of a node file. The effect is loaded when the action is created, starts 0.1 s after the action's
/// start (its position is then final), and is deleted when the action is released. The effect's top node is a particle
/// system; particle systems below it play with it, and its lights flash.
class ActionPlaySpe final : public ActionInterval {
public:
    /// An effect at `position` (geocentric metres), level there, as a child of `parent` (a node of a world), for
    /// `duration` seconds. Null, with one error logged and nothing added, when the file cannot be read, has no "node"
    /// or its node is no particle system. The caller owns the action until it passes it on.
    static ActionPlaySpe* Create(Node* parent, const jString& path, float duration, const dvec3& position);

    bool start() override;
    bool step(float dt) override;
    bool forceDone() override;
    void release() override;
    virtual bool initWithDuration(Node* parent, const jString& path, float duration, const dvec3& position);

    ObjectParticles* getEffect() const { return m_effect; }  ///< owned by the world; null after `release`

private:
    void shine(float brightness);
    void flash();

    float m_effect_duration = 0.0f;       ///< seconds
    ObjectParticles* m_effect = nullptr;  ///< owned by the world
    bool m_flashing = false;              ///< its lights have not faded out yet
};
