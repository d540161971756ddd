// The world: the root of the tree, its indexes and its physics.
#pragma once

#include <memory>

#include "engine/Api.h"
#include "engine/scene/Node.h"

class Physics;
struct WorldState;

/// What the whole scene shares.
struct Environment {
    int year = 2024, month = 6, day = 21;
    float time_of_day = 10.0f;               ///< local solar hours, 0..24
    vec3 wind{-5.0f, 0.0f, 0.0f};            ///< east, north, up; m/s
    float wetness = 0.0f;                    ///< how wet everything is that looks up, 0..1
    float snow = 0.0f;                       ///< and how far snow covers it, 0..1
    float cloudiness = 0.25f;                ///< share of the sky under cloud, 0..1
    dvec3 camera_geodetic{0.0, 0.0, 100.0};  ///< where the view starts
    dvec3 camera_wgs_hpr;                    ///< and how it looks: geodetic heading, pitch, roll
};

/// What happened to the tree since the list was last taken.
struct WorldChanges {
    jVector<Node*> changed;  ///< joined, moved, switched or changed in content: each once, none that has left
    jVector<int> left;       ///< ids of nodes that left; one that came back is in `changed`, too
};

/// Owns every node that was added. Lookups by name and by tag go through indexes, segment queries through a bounding
/// hierarchy over the objects; neither slows down with the number of nodes that do not match.
class ENGINE_API World {
public:
    World();
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    /// Reads a `.world` file and adds its nodes. False, with one log line and nothing added, when it cannot be read; a
    /// node within that cannot be made is left out with a line of its own.
    bool load(const jString& path);
    /// Makes a node and its children from its description; paths in it are relative to `base` (a folder under the root)
    /// unless they start with "data/". The caller owns the result; null, with one log line, when it cannot be made.
    static std::unique_ptr<Node> LoadNode(const Package& node, const jString& base);

    Node* getRoot() const;
    /// Adds a node at the top; the world owns it from now on.
    Node* addChild(Node* node);
    Node* addChild(std::unique_ptr<Node> node);
    /// Deletes a node and everything below it; null and nodes of no world are ignored.
    void removeNode(Node* node);

    Node* getNodeByName(const jString& name) const;  ///< first of that name, null when there is none
    Node* getNodeByTag(const jString& tag) const;    ///< first with that tag, null when there is none
    int getNumNodes() const;
    /// Every node, parents before children, in order.
    jVector<Node*> getNodes() const;

    /// The objects at the top of prefabs, and those outside prefabs, whose boxes the segment crosses (geocentric
    /// metres); nearest box first is not promised. False when there is none. `nodes` is cleared first.
    bool getIntersection(const dvec3& from, const dvec3& to, jVector<Node*>& nodes) const;

    Physics* getPhysics() const;
    Environment& getEnvironment();
    const Environment& getEnvironment() const;
    /// Whether the world is drawn.
    bool isEnabled() const;
    void setEnabled(bool enabled);

    /// Begins a list of changes for the one mirror that a world can have; every node is in the first list.
    void watchChanges();
    /// Hands the list out in place of what `changes` held, and begins the next. A node that moved is listed again only
    /// once its world transform was read: read it, also of a node that is not active.
    void takeChanges(WorldChanges& changes);

    /// One frame of dt seconds: bodies, contacts, particles, triggers. Called by the engine.
    void step(double dt);

    /// The world's indexes and lists, for the engine's own sources.
    WorldState& getState() const { return *m_state; }

private:
    std::unique_ptr<WorldState> m_state;
};
