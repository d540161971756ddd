// The aerobatic aircraft.
#pragma once

#include "src/aircraft/PlaneParts.h"

/// Its control nodes have no fixed roles: each is moved separately, by its position in the table of nodes. A position
/// without a node, or with a node of another kind, is printed on the console and has no effect.
class PlaneExtra300s final : public PlaneParts {
public:
    PlaneExtra300s() : PlaneParts("PlaneExtra300s") {}

    using PlaneParts::init;
    bool init(World* world, const jString& path) override;
    void flyPose() override;
    void standPose() override;
    /// Places the model; no surface is deflected.
    void setFlightState(const FlyFrame* state) override;
    void stopPose() override;

    virtual dmat4 getCameraTransform() const { return m_camera_transform; }  ///< the pilot's eye in the model's frame
    virtual void setCameraTransform(const dmat4& transform) { m_camera_transform = transform; }
    // Values for the caller; the aircraft only stores them.
    virtual bool getUserFlag() const { return m_user_flag; }
    virtual void setUserFlag(bool flag) { m_user_flag = flag; }
    virtual float getUserValue() const { return m_user_value; }
    virtual void setUserValue(float value) { m_user_value = value; }

    /// Rotates a part to (heading, pitch, roll) = value x the position's axis, degrees.
    void setWingDirect(int position, float value);
    /// Moves a part from its initial position, metres in its parent's frame.
    void setNodeOffsetDirect(int position, const vec3& offset);
    /// Moves a part from its initial position by value x the position's axis.
    void setNodeOffset(int position, float value);
    bool getNodeEnable(int position) const;
    void setNodeEnable(int position, bool enabled);
    /// Moves the texture on a part's first surface by value x the position's axis, in texture widths and heights.
    void setUVOffset(int position, float value);
    /// Shows a number in a text node.
    void setUIText(int position, int number);
    /// Poses a part between its open (0) and its close rotation (1), linear in the angles, at its initial position.
    void partAnimRot(int position, float part);

private:
    /// The node at a position; null, with a line on the console that names the operation, without one.
    Node* findNode(int position, const char* operation) const;
    void ownMovedMaterials();

    dmat4 m_camera_transform;
    bool m_user_flag = false;
    float m_user_value = 0.0f;
};
