// The world: the root of the scene tree, its indexes and its physics.
#pragma once

#include <memory>

#include "engine/Api.h"
#include "engine/scene/Node.h"

class Physics;
struct WorldState;

/// Conditions of the whole scene.
struct Environment {
    int year = 2024, month = 6, day = 21;
    float time_of_day = 10.0f;               ///< local solar hours, 0..24
    vec3 wind{-5.0f, 0.0f, 0.0f};            ///< east, north, up; m/s
    float wetness = 0.0f;                    ///< wetness of upward surfaces, 0..1
    float snow = 0.0f;                       ///< snow cover of upward surfaces, 0..1
    float cloudiness = 0.25f;                ///< share of the sky covered by clouds, 0..1
    dvec3 camera_geodetic{0.0, 0.0, 100.0};  ///< initial position of the view
    dvec3 camera_wgs_hpr;                    ///< initial attitude of the view: geodetic heading, pitch, roll
};

/// Changes of the tree since the list was last taken.
struct WorldChanges {
    jVector<Node*> changed;  ///< joined, moved, switched or with changed content: each once, without nodes that left
    jVector<int> left;       ///< ids of nodes that left; one that returned is also in `changed`
};

/// Owns all its nodes. Lookups by name and by tag use indexes, segment queries a bounding volume hierarchy over the
/// objects; the cost of each is independent of the number of nodes that do not match.
class ENGINE_API World {
public:
    World();
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Reads a `.world` file and adds its nodes. False, with one log line and nothing added, when it cannot be read; a
    /// node in it that cannot be made is omitted with its own log line.
    bool load(const jString& path);
    /// Makes a node and its children from a description; paths in it are relative to `base` (a folder below the root)
    /// unless they start with "data/". The caller owns the result; null, with one log line, when it cannot be made.
    static std::unique_ptr<Node> LoadNode(const Package& node, const jString& base);

    Node* getRoot() const;
    /// Adds a node at the top of the tree and takes its ownership.
    Node* addChild(Node* node);
    Node* addChild(std::unique_ptr<Node> node);
    /// Deletes a node and its descendants; null and nodes outside a world are ignored.
    void removeNode(Node* node);

    Node* getNodeByName(const jString& name) const;  ///< first with this name, null when there is none
    Node* getNodeByTag(const jString& tag) const;    ///< first with this tag, null when there is none
    int getNumNodes() const;
    /// All nodes in tree order, parents before children.
    jVector<Node*> getNodes() const;

    /// The objects at the top of prefabs, and those outside prefabs, whose bounding boxes intersect the segment
    /// (geocentric metres), in no defined order. False when there is none. `nodes` is cleared first.
    bool getIntersection(const dvec3& from, const dvec3& to, jVector<Node*>& nodes) const;

    Physics* getPhysics() const;
    Environment& getEnvironment();
    const Environment& getEnvironment() const;
    /// Whether the world is drawn.
    bool isEnabled() const;
    void setEnabled(bool enabled);

    /// Starts the list of changes for the single mirror of a world; the first list has all nodes.
    void watchChanges();
    /// Replaces the content of `changes` by the list and starts a new one. A moved node is listed again only after its
    /// world transform was read: read it for every listed node, also for inactive ones.
    void takeChanges(WorldChanges& changes);

    /// One frame of dt seconds: bodies, contacts, particles, triggers. Called by the engine.
    void step(double dt);

    /// Indexes and lists of the world, for the engine's own sources, not for plug-ins.
    WorldState& getState() const { return *m_state; }

private:
    std::unique_ptr<WorldState> m_state;
};
