// An aircraft with moving parts: what the carrier jet and the aerobatic aircraft have in common.
#pragma once

#include "src/aircraft/PlaneBase.h"

class Node;

/// Finds the configured control nodes in the model, poses them, sets up wheels and colliders, and shows damage.
///
/// A control node that the model lacks takes no place in the table of nodes: later nodes move one position down, while
/// rotations, axes and initial transforms stay in the configuration's order.
class PlaneParts : public PlaneBase {
public:
    using PlaneBase::init;
    bool init(World* world, const jString& path) override;
    void setAircraftInfo(AirCraftInfo info) override;
    void showDestroyed() override;
    /// Stops the aircraft's actions and shows it undamaged in its standing pose.
    void resetDamage() override;
    void resetToBase() override;
    void resetAt(const dmat4& world) override;
    /// Shows the fire and kicks the body with two torques of random sign.
    bool catchFire() override;

    virtual bool isPhysicsEnabled() const { return m_physics_enabled; }
    virtual void setPhysicsEnabled(bool enabled) { m_physics_enabled = enabled; }  ///< before `init`
    virtual float getThrust() const { return m_thrust; }
    virtual void setThrust(float thrust) { m_thrust = thrust; }  ///< 0..1

    Node* getNode(int position) const;                              ///< null for a position that has no node
    int getNumNodes() const { return m_nodes.size(); }              ///< positions that have a node
    const jMap<Node*, int>& getWheels() const { return m_wheels; }  ///< wheel node to shape of the model's body

protected:
    explicit PlaneParts(const char* class_name) : m_class_name(class_name) {}
    ~PlaneParts() = default;

    /// Gives every rotating node its rotation, at its initial place.
    void poseNodes(const jVector<vec3>& rotations);
    void poseNode(int position, const vec3& hpr);
    /// Sets the model's local transform from a state relative to the base transform.
    void placeAt(const FlyFrame& state);

    jVector<jString> m_node_names;
    jVector<vec3> m_open_rots, m_close_rots;  ///< degrees, (heading, pitch, roll)
    jVector<vec3> m_axes;
    jVector<Node*> m_nodes;               ///< those found, in order
    jVector<dmat4> m_initial_transforms;  ///< local, one a name; identity for one not found
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
