// The members of a world, for the engine's own sources.
#pragma once

#include <memory>
#include <unordered_map>

#include "engine/scene/World.h"
#include "engine/text/Package.h"
#include "physics/PhysicsWorld.h"
#include "physics/SpatialIndex.h"
#include "scene/NodeIndex.h"

class NodeTrigger;
class ObjectParticles;

/// A lower bound that a track's channel sets for a value of the environment.
struct EnvironmentRaise {
    const float* target;
    const void* by;  ///< the channel; null for the value's own entry
    float value;
};

struct WorldState {
    /// The state of the running engine's world, null when there is none. Set by the engine.
    inline static WorldState* running = nullptr;

    double time = 0.0;  ///< the engine's time, seconds
    Environment environment;
    std::vector<EnvironmentRaise> raises;
    bool enabled = true;
    std::uint64_t joined = 0;  ///< number of nodes that have joined so far: the next join order
    int num_nodes = 0;
    NodeIndex names;  ///< nodes without a name are not in it
    NodeIndex tags;
    SpatialIndex spatial;
    jVector<ObjectParticles*> particles;
    jVector<NodeTrigger*> triggers;
    jVector<Node*> sensors;       ///< in order of their ids
    bool triggers_stale = false;  ///< a sensor or trigger moved or changed its activity
    bool closing = false;         ///< the world is being destroyed: no more reports
    bool watched = false;         ///< a mirror takes the changes
    WorldChanges changes;
    std::unordered_map<std::string, Package> prefab_files;  ///< by absolute path
    std::unique_ptr<PhysicsWorld> physics;
    Node root;

    void nodeJoined(Node& node);
    void nodeLeft(Node& node);
    void placeChanged(Node& node);
    void activityChanged(Node& node);
    void contentChanged(Node& node);
    /// Adds the node to the list of changes, if there is a list and the node is not in it.
    void touch(Node& node);
    void nameChanged(Node& node, const jString& old_name);
    void tagAdded(Node& node, const jString& tag);
    void sensorChanged(Node& node);

    void stepParticles(float dt);
    void stepTriggers();
    /// Notifies the triggers of sensors that have left; call it when the tree is consistent again.
    void reportDepartures();
    bool isAlive(const NodeTrigger* trigger, int id) const;
    bool isAlive(const Node* sensor, int id) const;

private:
    struct Departure {
        NodeTrigger* trigger;
        int trigger_id;
        Node* sensor;
    };

    void addSensor(Node& node);
    void removeSensor(Node& node);

    std::vector<Departure> m_departures;
    std::vector<std::vector<Departure>*> m_reports;            ///< in progress, the outermost first
    std::vector<std::pair<NodeTrigger*, int>> m_trigger_walk;  ///< kept for its memory
};
