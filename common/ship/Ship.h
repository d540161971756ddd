// A floating ship, driven by forces.
#pragma once

#include <engine/math/Transform.h>

#include "common/LogicApi.h"

class BodyRigid;
class Buoyancy;
class Object;
class ObjectOcean;
class Wakes;

/// Applies propulsion, steering and hull drag to an object's rigid body, and owns its buoyancy and its wake. The axes
/// of the body are the axes of the ship: +Y ahead, +X to starboard, +Z up. Thrust and rudder depend on the immersion of
/// the hull: strongest at one half, zero out of the water and fully under it. Drag and damping grow with the immersion.
class LOGIC_API Ship {
public:
    enum ControlMode {
        NO_INPUT = 0,
        KEYBOARD = 1,  ///< up and down for thrust, right and left for the rudder
        STEADY = 2     ///< full ahead
    };

    /// Neither is owned; both must outlive the ship. The ocean may be null: the sea is then level.
    Ship(Object* object, ObjectOcean* ocean);
    Ship(const Ship&) = delete;
    Ship& operator=(const Ship&) = delete;

    virtual float getForwardThrust() const { return m_forward_thrust; }
    virtual void setForwardThrust(float thrust) { m_forward_thrust = thrust; }  ///< N per cubic metre of the box, ahead
    virtual int getControlMode() const { return m_control_mode; }
    virtual void setControlMode(int mode) { m_control_mode = mode; }  ///< other values mean no input
    virtual float getDriveAngle() const { return m_drive_angle; }
    /// Direction of a further constant force of 300 kN, degrees from starboard toward ahead; 0 for none.
    virtual void setDriveAngle(float degrees) { m_drive_angle = degrees; }
    virtual ~Ship();

    /// Applies the forces for the next physics step; no effect unless the object is enabled. A hull without sample
    /// points gets no forces.
    void update();
    /// Steps the wake; no effect unless the object is enabled.
    void updateWakes();
    /// Sets every setting to its default; position and velocity of the body do not change.
    void reset();
    /// Removes all foam particles.
    void clearWakes();

    Object* getObject() const { return m_object; }
    vec3 getVelocity() const;  ///< m/s, world axes; without a body the value set last
    void setVelocity(const vec3& velocity) { m_stored_velocity = velocity; }
    Buoyancy* getBuoyancy() const { return m_buoyancy; }   ///< owned by the ship; null without a body
    Wakes* getWakes() const { return m_wakes; }            ///< owned by the ship; null without a node "wakes"
    const vec3& getControl() const { return m_control; }   ///< x throttle, y rudder, of the last step
    float getHullVolume() const { return m_hull_volume; }  ///< m^3; 0 if the first shape is no box

private:
    void updateControl();
    void drive(const dmat4& axes);
    void steer(const dmat4& axes);
    void drag(float submerged);

    Object* m_object;
    BodyRigid* m_body = nullptr;  ///< of the object, which owns it
    Buoyancy* m_buoyancy = nullptr;
    Wakes* m_wakes = nullptr;
    vec3 m_control;  ///< x throttle, positive ahead; y rudder
    vec3 m_stored_velocity;
    float m_hull_drag;              ///< N s^2/m^2
    float m_angular_damping_scale;  ///< per second, at full immersion
    float m_reverse_thrust;         ///< N per cubic metre of the box, astern
    float m_pitch_torque;           ///< N m per unit of throttle
    float m_yaw_torque;             ///< N m per unit of rudder; the roll torque too
    float m_roll_torque;
    float m_hull_volume = 0.0f;
    float m_forward_thrust;
    int m_control_mode = NO_INPUT;
    float m_drive_angle;
};
