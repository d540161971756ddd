// The carrier jet.
#pragma once

#include "src/aircraft/PlaneParts.h"

class BodyRigid;
class ObjectParticles;

/// The position of a control node gives its role: 0..4 and 17..19 undercarriage, 5, 7 … 15 and 6, 8 … 16 the two groups
/// of control surfaces, 20 the tail hook, 31 a light, 32 a surface with its own material, 33 and 34 the exhaust.
class PlaneJ15 final : public PlaneParts {
public:
    PlaneJ15() : PlaneParts("PlaneJ15") {}

    using PlaneParts::init;
    bool init(World* world, const jString& path) override;
    bool update(float dt) override;
    /// Move the gear: first one group (doors or legs), then the other, 8 seconds each. No effect when the gear is
    /// already in that state. A running movement is cancelled; the new one starts from its end pose.
    void openUndercarriage() override;
    void closeUndercarriage() override;
    void flyPose() override;
    void standPose() override;
    void setFlightState(const FlyFrame* state) override;
    void stopPose() override;

    virtual bool isStanding() const { return m_standing; }
    // Values for the caller; the jet only stores them.
    virtual dmat4 getUserTransform() const { return m_user_transform; }
    virtual void setUserTransform(const dmat4& transform) { m_user_transform = transform; }
    virtual bool getUserFlag1() const { return m_user_flag1; }
    virtual void setUserFlag1(bool flag) { m_user_flag1 = flag; }
    virtual bool getUserFlag2() const { return m_user_flag2; }
    virtual void setUserFlag2(bool flag) { m_user_flag2 = flag; }

    // Set the parts to their end pose at once; the gear's flag does not change.
    void openUndercarriageNow();
    void closeUndercarriageNow();
    void openHook();
    void closeHook();
    /// Rotates the part at a position by degrees about its axis, from its flight pose; no effect without a node.
    void deflectSurface(int position, float angle);
    /// Switches the light at position 31 on or off; no effect without one.
    void toggleLight();
    /// The pilot's stick and pedals, -1..1: x nose up, y right wing down, z nose left.
    void setControlInput(const vec3& input) { m_control_input = input; }

private:
    void runOpenUndercarriageActions();
    void runCloseUndercarriageActions();
    ActionMulti* makeRotations(int first, int last, bool opening);
    void snapUndercarriage(bool opening);
    void snapSurface(const jString& name, int position, bool opening);
    int countParts() const;
    void driveBody();
    void updateExhaust();
    ObjectParticles* findEmitter(int position) const;
    const vec3& rotation(int position, bool open) const {
        return open ? m_open_rots[position] : m_close_rots[position];
    }

    vec3 m_control_input;
    ObjectParticles* m_exhaust_1 = nullptr;
    ObjectParticles* m_exhaust_2 = nullptr;
    int m_exhaust_rate = 0;  ///< particles per second at full thrust
    bool m_standing = false;
    dmat4 m_user_transform;
    bool m_user_flag1 = false;
    bool m_user_flag2 = false;
};
