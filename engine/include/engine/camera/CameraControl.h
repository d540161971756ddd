// The one camera that the logic drives.
#pragma once

#include "engine/Api.h"
#include "engine/math/Transform.h"
#include "engine/text/Containers.h"

class Node;

/// Position and rotation of the view; `apply` writes them to a camera node. The camera looks along its node's -Z, Y up.
/// The data members are part of the contract: a logic reads and writes them directly. "Stored only": `apply` and the
/// engine do not read the value.
class ENGINE_API CameraControl {
public:
    virtual ~CameraControl() = default;
    virtual int getIndex() const { return m_index; }
    virtual void setIndex(int index) { m_index = index; }
    virtual int* getTarget() { return &m_target; }  ///< never null; points to `m_target`
    virtual void setTarget(int target) { m_target = target; }
    virtual const jString& getName() const { return m_name; }
    virtual void setName(const jString& name) { m_name = name; }
    virtual const vec3& getPositionOffset() const { return m_position_offset; }
    virtual void setPositionOffset(const vec3& offset) { m_position_offset = offset; }
    virtual vec3& getAngles() { return m_angles; }
    virtual dvec3& getPosition() { return m_position; }
    virtual dquat& getRotation() { return m_rotation; }
    virtual Node* getNode() const { return m_node; }  ///< null without an engine

    /// Sets the node's world transform from the position and rotation * (angles). A position offset longer than 1 mm
    /// moves the node along its own axes. No effect without a node.
    void apply();

    int m_index = 0;         ///< number of the camera, free for the logic; stored only
    int m_target = -1;       ///< number of the observed target, -1 for none; stored only
    jString m_name;          ///< stored only
    vec3 m_position_offset;  ///< metres, the node's axes
    vec3 m_angles;           ///< (heading, pitch, roll), degrees
    dvec3 m_position;        ///< geocentric metres
    dquat m_rotation;
    Node* m_node = nullptr;                              ///< owned by the world; null outside a running engine
    void* m_data = nullptr;                              ///< free for the logic, not owned; stored only
    float m_limits[4] = {25.0f, -25.0f, -30.0f, 30.0f};  ///< limits of the view's angles, degrees; stored only
    double m_near = 1.0;                                 ///< near plane, metres; stored only
    double m_far = 1.0e7;                                ///< far plane, metres; stored only
};
