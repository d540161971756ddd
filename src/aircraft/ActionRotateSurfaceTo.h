// A timed rotation of one part of a model.
#pragma once

#include <engine/action/Action.h>
#include <engine/math/Transform.h>

class Node;
class Object;

/// The local transform of a part: rotated by (heading, pitch, roll) in degrees, at the position of `initial`.
dmat4 posedTransform(const vec3& hpr, const dmat4& initial);

/// Rotates a node of an object from one Euler triple to another, linear in the angles, about its initial position.
/// The object must outlive the action.
class ActionRotateSurfaceTo final : public ActionInterval {
public:
    /// Null, with one error logged, when the object has no such node. A duration of 0 or less becomes 1 ms, with an
    /// error. The caller owns the action until it passes it on.
    static ActionRotateSurfaceTo* Create(Object* object, const jString& surface, const dmat4& initial, float duration,
                                         const vec3& from, const vec3& to);

    bool step(float dt) override;
    bool forceDone() override;

private:
    bool initWithDuration(Object* object, const jString& surface, const dmat4& initial, float duration,
                          const vec3& from, const vec3& to);

    Node* m_surface = nullptr;
    dmat4 m_initial;
    vec3 m_from;
    vec3 m_to;
};
