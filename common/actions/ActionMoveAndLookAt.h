// A straight glide between two places on the globe.
#pragma once

#include <engine/action/Action.h>
#include <engine/math/Transform.h>

class Node;

/// Moves a node from one geodetic place to another, linear in longitude, latitude and height, facing its travel. The
/// step in which the time runs out leaves the node where the step before it ended: who wants the exact end connects to
/// `done`. The node outlives the action.
class ActionMoveAndLookAt final : public ActionInterval {
public:
    /// `from` and `to` are (longitude, latitude, height), degrees and metres; a longitude above 180 is taken less 360.
    /// The node turns at once: Y along the travel, Z up; travel straight up or down keeps its X axis, none its
    /// attitude. A duration of 0 or less becomes 1 ms, with an error logged. The caller owns the action until it gives
    /// it away.
    static ActionMoveAndLookAt* Create(Node* node, float duration, const dvec3& from, const dvec3& to);

    bool step(float dt) override;
    bool forceDone() override;
    /// What `Create` does, on an action that may be running already: it begins anew. Always true.
    bool initWithDuration(Node* node, float duration, const dvec3& from, const dvec3& to);

    const dvec3& getTravel() const { return m_travel; }  ///< world(to) - world(from), metres

private:
    dvec3 m_from;
    dvec3 m_to;
    dvec3 m_travel;
    Node* m_node = nullptr;
};
