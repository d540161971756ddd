// An aircraft with moving parts: the common base class of the carrier jet and the aerobatic aircraft.
#pragma once

#include "src/aircraft/PlaneBase.h"

class Node;

/// Finds the configured control nodes in the model, poses them, sets up wheels and colliders, and shows damage.
///
/// A control node that the model lacks has no entry in the table of nodes: later nodes move down one position, but
/// rotations, axes and initial transforms keep the configuration's order.
class PlaneParts : public PlaneBase {
public:
    using PlaneBase::init;
    bool init(World* world, const jString& path) override;
    void setAircraftInfo(AirCraftInfo info) override;
    void showDestroyed() override;
    /// Stops the aircraft's actions and shows it undamaged in its pose on the ground.
    void resetDamage() override;
    void resetToBase() override;
    void resetAt(const dmat4& world) override;
    /// Shows the fire and applies two torques of random sign to the body.
    bool catchFire() override;

    virtual bool isPhysicsEnabled() const { return m_physics_enabled; }
    virtual void setPhysicsEnabled(bool enabled) { m_physics_enabled = enabled; }  ///< call before `init`
    virtual float getThrust() const { return m_thrust; }
    virtual void setThrust(float thrust) { m_thrust = thrust; }  ///< 0..1

    Node* getNode(int position) const;                              ///< null for a position without a node
    int getNumNodes() const { return m_nodes.size(); }              ///< number of positions with a node
    const jMap<Node*, int>& getWheels() const { return m_wheels; }  ///< wheel node to shape index in the body

protected:
    explicit PlaneParts(const char* class_name) : m_class_name(class_name) {}
    ~PlaneParts() = default;

    /// Sets the rotation of every rotating node, at its initial position.
    void poseNodes(const jVector<vec3>& rotations);
    void poseNode(int position, const vec3& hpr);
    /// Sets the model's local transform from a state relative to the base transform.
    void placeAt(const FlyFrame& state);

    jVector<jString> m_node_names;
    jVector<vec3> m_open_rots, m_close_rots;  ///< degrees, (heading, pitch, roll)
    jVector<vec3> m_axes;
    jVector<Node*> m_nodes;               ///< the nodes found, in order
    jVector<dmat4> m_initial_transforms;  ///< local, one per name; identity for a missing node
    bool m_physics_enabled = true;
    float m_thrust = 0.0f;   ///< 0..1
    int m_rot_node_num = 0;  ///< entries of type 0, which come first

private:
    void collectNodes();
    void setUpPhysics();
    void findWheels();
    void enableLook(const char* name, bool enabled);

    const char* m_class_name;
    jMap<Node*, int> m_wheels;
};
