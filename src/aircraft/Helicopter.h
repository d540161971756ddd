// The helicopter: a prefab flown from the keyboard by a small force model on its physics body.
#pragma once

#include <engine/math/Transform.h>
#include <engine/text/Containers.h>

class BodyRigid;
class ControlApp;
class Node;
class Object;
class ObjectPrefab;
class World;

/// Create it, place it, then call `updateKeys` and `updateFlight` each frame. The order of the virtual functions is
/// part of the contract. World transforms are geocentric, angles are in degrees.
///
/// Nodes that the model lacks are skipped. Without a body the helicopter does not fly. If the model cannot be loaded,
/// every operation can be called and has no effect on the scene.
class Helicopter final {
public:
    /// Loads the model and adds it to the world, which must outlive the helicopter. With `body_enabled` false the body
    /// does not move and does not collide.
    Helicopter(World* world, const jString& path, bool body_enabled = true);
    /// Removes the model from the world and deletes it.
    ~Helicopter();
    Helicopter(const Helicopter&) = delete;
    Helicopter& operator=(const Helicopter&) = delete;

    // The setters ignore values that are not finite.
    virtual float getRotorSpeed() const { return m_rotor_speed; }  ///< degrees per frame
    virtual void setRotorSpeed(float degrees);
    virtual float getSurfaceHeight() const { return m_surface_height; }  ///< of the ground or sea below, metres
    virtual void setSurfaceHeight(float metres);
    virtual float getCollectiveDecay() const { return m_collective_decay; }  ///< factor per frame without keys
    virtual void setCollectiveDecay(float factor);
    virtual bool isOverWater() const { return m_over_water; }
    virtual void setOverWater(bool over) { m_over_water = over; }
    virtual bool isWipersOn() const { return m_wipers_on; }
    virtual void setWipersOn(bool on) { m_wipers_on = on; }
    virtual bool isBodyEnabled() const { return m_body_enabled; }  ///< the constructor's argument

    /// Places the model at a world transform and calls `setPhysics`.
    void setWorldTransform(const dmat4& world);
    /// Sets the body's damping to the values of the force model.
    void setPhysics();
    /// Sets collective and stick by the held keys: R and F collective, W and S pitch, A and D roll, Q and E yaw.
    void updateKeys(float dt);
    /// Updates wipers, rotors and light, and applies the body's forces for the next physics step.
    void updateFlight(float dt);
    /// Switches the search light on or off; no effect without one.
    void toggleLight();

    ObjectPrefab* getModel() const { return m_model; }  ///< owned by the world; null if it could not be loaded
    BodyRigid* getBody() const { return m_body; }       ///< owned by the model; null without one
    const dmat4& getStartTransform() const { return m_start_transform; }  ///< of the last `setWorldTransform`
    bool isPhysicsSet() const { return m_physics_set; }
    float getCollective() const { return m_collective; }  ///< 0..1
    float getYawInput() const { return m_yaw; }           ///< -1..1, positive nose left
    float getPitchInput() const { return m_pitch; }       ///< -1..1, positive ahead
    float getRollInput() const { return m_roll; }         ///< -7..7, positive left

private:
    void findNodes();
    void prepareLight();
    void updateCollective(const ControlApp& control, float step);
    void sweepWipers();
    void turnRotors();
    void flashLight(float dt);
    void clampInputs();
    void applyForces(dmat4 place);
    dvec3 limitAttitude(const dmat4& place);
    void limitVelocity(const dmat4& place, const dvec3& tilt);

    ObjectPrefab* m_model = nullptr;
    Node* m_main_rotor = nullptr;
    Node* m_tail_rotor = nullptr;
    Node* m_main_blades = nullptr;
    Node* m_main_disc = nullptr;
    Node* m_tail_blades = nullptr;
    Node* m_tail_disc = nullptr;
    Node* m_front_light = nullptr;
    Node* m_right_wiper = nullptr;
    Node* m_left_wiper = nullptr;
    Object* m_anticollision_light = nullptr;
    BodyRigid* m_body = nullptr;
    World* m_world;
    float m_rotor_angle = 0.0f;  ///< degrees
    float m_rotor_speed = 0.0f;
    bool m_physics_set = false;
    float m_yaw = 0.0f;
    float m_pitch = 0.0f;
    float m_roll = 0.0f;
    float m_collective = 0.0f;
    vec3 m_hub_point;   ///< application point of the pitch force, from the centre of mass, model frame
    vec3 m_side_point;  ///< application point of the roll force, the same frame
    dmat4 m_start_transform;
    float m_light_phase = 0.0f;  ///< seconds, 0..1
    float m_surface_height = 0.0f;
    float m_collective_decay = 1.0f;
    bool m_over_water = false;
    bool m_wipers_on = false;
    bool m_body_enabled;
};
