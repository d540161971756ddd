// The helicopter's rotor wash: spray, dust and leaves on the ground or the sea below it.
#pragma once

#include <engine/math/Vec.h>
#include <engine/text/Containers.h>

class Helicopter;
class Node;
class ObjectParticles;
class ObjectPrefab;

/// Call `init` with a helicopter, then `updatePlacement` and `updateIntensity` each frame, after the helicopter's own
/// steps. Without a successful `init` they have no effect. The effects are nodes of the helicopter's model.
class HeliEffectsKit {
public:
    /// Finds the effects. False when there is nothing to show; a missing node is logged in one line. The helicopter
    /// must outlive the kit.
    bool init(Helicopter* helicopter);
    /// Places the effects on the surface below, and enables them by height and kind of the surface (ground or sea).
    void updatePlacement();
    /// Sets the density of the effects: `power` (clamped to 0..1) times the fade with height.
    void updateIntensity(float power);
    /// Calls every handler with each effect and false; the effect is null if the model lacks it.
    void registerEffects(const jVector<Function<void(Node*, bool)>>& handlers) const;

    float getLastHeight() const { return m_last_height; }       ///< above the surface, metres
    const vec3& getFieldParameters() const { return m_field; }  ///< the node "field_anim"'s scale; 0 without one

private:
    void findParts(ObjectPrefab& model);
    void enableLeaves(bool enabled);
    void store(ObjectParticles* particles);
    void setIntensity(ObjectParticles* particles, double scale);

    Helicopter* m_helicopter = nullptr;  ///< null before a successful `init`
    Node* m_downwash = nullptr;
    ObjectParticles* m_downwash_spe = nullptr;
    Node* m_stages[3] = {};  ///< for 28 m, 18 m and 10 m; always null: no model has them
    ObjectParticles* m_leaf = nullptr;
    ObjectParticles* m_leaf_water = nullptr;
    ObjectParticles* m_downwash_water = nullptr;
    jMap<ObjectParticles*, int> m_base_rates;  ///< particles per second at full intensity
    vec3 m_field;
    float m_last_height = 0.0f;
};
