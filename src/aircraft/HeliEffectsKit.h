// The helicopter's rotor wash: spray, dust and leaves on the ground or the sea below it.
#pragma once

#include <engine/math/Vec.h>
#include <engine/text/Containers.h>

class Helicopter;
class Node;
class ObjectParticles;
class ObjectPrefab;

/// Initialised with a helicopter, then each frame `updatePlacement` and `updateIntensity`, after the helicopter's own
/// steps. Without a successful `init` nothing happens in them. The effects are nodes of the helicopter's model.
class HeliEffectsKit {
public:
    /// Looks the effects up; false, with one log line where a node is missing, when there is nothing to show. The
    /// helicopter must outlive the kit.
    bool init(Helicopter* helicopter);
    /// Puts the effects on the surface below and chooses among them by height and by what is below.
    void updatePlacement();
    /// Sets how dense they are: `power` (clamped to 0..1) times what the height leaves.
    void updateIntensity(float power);
    /// Tells each effect, with false, to every handler; null stands for one that does not exist.
    void registerEffects(const jVector<Function<void(Node*, bool)>>& handlers) const;

    float getLastHeight() const { return m_last_height; }       ///< above the surface, metres
    const vec3& getFieldParameters() const { return m_field; }  ///< the node "field_anim"'s scale; 0 without one

private:
    void findParts(ObjectPrefab& model);
    void enableLeaves(bool enabled);
    void store(ObjectParticles* particles);
    void setIntensity(ObjectParticles* particles, double scale);

    Helicopter* m_helicopter = nullptr;  ///< null until `init` went well
    Node* m_downwash = nullptr;
    ObjectParticles* m_downwash_spe = nullptr;
    Node* m_stages[3] = {};  ///< for 28 m, 18 m and 10 m: no model has them
    ObjectParticles* m_leaf = nullptr;
    ObjectParticles* m_leaf_water = nullptr;
    ObjectParticles* m_downwash_water = nullptr;
    jMap<ObjectParticles*, int> m_base_rates;  ///< particles a second at full intensity
    vec3 m_field;
    float m_last_height = 0.0f;
};
