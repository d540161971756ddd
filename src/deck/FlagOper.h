// The motion of a flag on the deck.
#pragma once

#include <engine/math/Vec.h>

#include "common/LogicApi.h"

class Node;

/// Turns a flag's node about its Z axis: its +X points downwind and swings a little. The node is not owned and must
/// outlive this.
class LOGIC_API FlagOper {
public:
    /// Sets the node. False for null: the flag then has no node.
    bool init(Node* root);
    /// Advances the motion by dt seconds, with the world's wind. Without a node logs one line.
    void update(float dt);
    /// Sets an additional turn in degrees, counter-clockwise seen from above; no effect without a node.
    void setYawBias(float degrees);

    float getAngle() const { return m_angle; }  ///< angle of the swing, degrees

private:
    Node* m_root = nullptr;
    float m_angle = 0.0f;
    float m_limit = 10.0f;  ///< degrees
    float m_speed = 3.0f;   ///< degrees per second
    int m_direction = 1;
    float m_yaw_bias = 0.0f;  ///< degrees
};
