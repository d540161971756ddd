// The motion of a waving deck hand.
#pragma once

#include <engine/math/Transform.h>

#include "common/LogicApi.h"

class Node;
class ObjectPrefab;

/// Swings the nodes "left_hand" and "right_hand" of a prefab about their Z axes. The prefab is not owned and must
/// outlive this; arms that it lacks are skipped.
class LOGIC_API HandOper {
public:
    /// Sets the prefab. False for null: `update` then has no effect.
    bool init(ObjectPrefab* root);
    /// Advances the swing by dt seconds.
    void update(float dt);

    float getAngle() const { return m_angle; }                 ///< degrees
    const dmat4& getLeftRest() const { return m_left_rest; }   ///< the left arm's transform as authored
    static double getRunningTime() { return s_running_time; }  ///< total seconds of all instances

private:
    static double s_running_time;

    ObjectPrefab* m_root = nullptr;
    Node* m_left = nullptr;
    Node* m_right = nullptr;
    dmat4 m_left_rest;
    float m_angle = 0.0f;
    float m_limit = 45.0f;   ///< degrees
    float m_speed = 120.0f;  ///< degrees per second
    int m_direction = 1;
};
