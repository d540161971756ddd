// What a world owns, for the engine's own sources.
#pragma once

#include <memory>
#include <unordered_map>

#include "engine/scene/World.h"
#include "engine/text/Package.h"
#include "physics/PhysicsWorld.h"
#include "scene/NodeIndex.h"
#include "scene/SpatialIndex.h"

class NodeTrigger;
class ObjectParticles;

/// What a track's channel wants a value of the environment to be at least.
struct EnvironmentRaise {
    const float* target;
    const void* by;  ///< the channel; null for the value's own
    float value;
};

struct WorldState {
    Environment environment;
    std::vector<EnvironmentRaise> raises;
    bool enabled = true;
    std::uint64_t joined = 0;  ///< nodes that ever joined: the next one's place in the order
    int num_nodes = 0;
    NodeIndex names;  ///< nodes without a name are not in it
    NodeIndex tags;
    SpatialIndex spatial;
    jVector<ObjectParticles*> particles;
    jVector<NodeTrigger*> triggers;
    jVector<Node*> sensors;       ///< in order of their ids
    bool triggers_stale = false;  ///< a sensor or trigger moved or changed its activity
    bool closing = false;         ///< the world goes: nothing is reported any more
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
    /// Puts the node on the list of changes, if there is one and it is not on it.
    void touch(Node& node);
    void nameChanged(Node& node, const jString& old_name);
    void tagAdded(Node& node, const jString& tag);
    void sensorChanged(Node& node);

    void stepParticles(float dt);
    void stepTriggers();
    /// Tells the triggers that held sensors which have left meanwhile; call it when the tree is whole again.
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
    std::vector<std::vector<Departure>*> m_reports;            ///< under way, the outermost first
    std::vector<std::pair<NodeTrigger*, int>> m_trigger_walk;  ///< kept for its memory
};
