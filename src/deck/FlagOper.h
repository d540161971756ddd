// A flag on the deck.
#pragma once

#include <engine/math/Vec.h>

#include "common/LogicApi.h"

class Node;

/// Turns a flag's node about its Z axis so that its +X lies downwind, swinging a little. The node is not owned and must
/// outlive this.
class LOGIC_API FlagOper {
public:
    /// False for a null node; the flag then has none.
    bool init(Node* root);
    /// dt seconds more, in the world's wind. Without a node one log line.
    void update(float dt);
    /// Turns the flag further by so many degrees, counter-clockwise from above; nothing without a node.
    void setYawBias(float degrees);

    float getAngle() const { return m_angle; }  ///< of the swing, degrees

private:
    Node* m_root = nullptr;
    float m_angle = 0.0f;
    float m_limit = 10.0f;  ///< degrees
    float m_speed = 3.0f;   ///< degrees a second
    int m_direction = 1;
    float m_yaw_bias = 0.0f;  ///< degrees
};
