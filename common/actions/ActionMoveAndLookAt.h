// A straight glide between two positions on the globe.
#pragma once

#include <engine/action/Action.h>
#include <engine/math/Transform.h>

class Node;

/// Moves a node from one geodetic position to another, linear in longitude, latitude and height; the node faces the
/// direction of travel. The step in which the time ends leaves the node where the previous step ended: a caller
/// that needs the exact end connects to `done`. The node must outlive the action.
class ActionMoveAndLookAt final : public ActionInterval {
public:
    /// `from` and `to` are (longitude, latitude, height), degrees and metres; 360 is subtracted from a longitude above
    /// 180. The node turns at once: Y along the travel, Z up. With vertical travel it keeps its X axis, with none its
    /// attitude. A duration of 0 or less becomes 1 ms, with an error logged. The caller owns the action until it
    /// passes it on.
    static ActionMoveAndLookAt* Create(Node* node, float duration, const dvec3& from, const dvec3& to);

    bool step(float dt) override;
    bool forceDone() override;
    /// Sets the values as `Create` does and restarts the action if it is running. Always true.
    bool initWithDuration(Node* node, float duration, const dvec3& from, const dvec3& to);

    const dvec3& getTravel() const { return m_travel; }  ///< world(to) - world(from), metres

private:
    dvec3 m_from;
    dvec3 m_to;
    dvec3 m_travel;
    Node* m_node = nullptr;
};
