// The one camera that the logic drives.
#pragma once

#include "engine/Api.h"
#include "engine/math/Transform.h"
#include "engine/text/Containers.h"

class Node;

/// Position and rotation of the view, written to a camera node by `apply`. The camera looks along its node's -Z, Y up.
/// The data members are the contract: a logic reads and writes them directly.
class ENGINE_API CameraControl {
public:
    virtual ~CameraControl() = default;
    virtual int getIndex() const { return m_index; }
    virtual void setIndex(int index) { m_index = index; }
    virtual int* getTarget() { return &m_target; }
    virtual void setTarget(int target) { m_target = target; }
    virtual const jString& getName() const { return m_name; }
    virtual void setName(const jString& name) { m_name = name; }
    virtual const vec3& getPositionOffset() const { return m_position_offset; }
    virtual void setPositionOffset(const vec3& offset) { m_position_offset = offset; }
    virtual vec3& getAngles() { return m_angles; }
    virtual dvec3& getPosition() { return m_position; }
    virtual dquat& getRotation() { return m_rotation; }
    virtual Node* getNode() const { return m_node; }

    /// Writes the node's world transform from the position and rotation * (angles). A position offset longer than 1 mm
    /// moves the node along its own axes. Does nothing without a node.
    void apply();

    int m_index = 0;
    int m_target = -1;
    jString m_name;
    vec3 m_position_offset;  ///< metres, the node's axes
    vec3 m_angles;           ///< (heading, pitch, roll), degrees
    dvec3 m_position;        ///< geocentric metres
    dquat m_rotation;
    Node* m_node = nullptr;  ///< not owned
    void* m_data = nullptr;
    float m_limits[4] = {25.0f, -25.0f, -30.0f, 30.0f};  ///< degrees
    double m_near = 1.0;                                 ///< metres
    double m_far = 1.0e7;                                ///< metres
};
