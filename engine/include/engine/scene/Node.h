// The scene tree.
#pragma once

#include <cstdint>
#include <memory>

#include "engine/Api.h"
#include "engine/math/Bounds.h"
#include "engine/memory/Allocator.h"
#include "engine/text/Containers.h"

class Object;
class Package;
class World;

/// A named node with a transform. A node owns its children; without a parent it is owned by its creator. Positions are
/// metres; angles degrees, (heading, pitch, roll) about (Z, X, Y); models have +Y ahead, +X right, +Z up.
///
/// Names need not be unique: lookups return the first in the order of joining the tree (depth first below a parent).
class ENGINE_API Node {
public:
    /// Type numbers of the contract; 8, 18, 19 and 26 are fixed by it.
    enum Type {
        NODE = 0,
        LIGHT = 1,
        TEXT = 2,
        TRIGGER = 3,
        TERRAIN = 4,
        OCEAN = 5,
        DECAL_ORTHO = 8,
        PREFAB = 18,
        PARTICLES = 19,
        MESH_STATIC = 26
    };

    Node();
    virtual ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// Nodes use blocks of the engine's allocator, so that deletion is the same for nodes made by `jNew` and by `new`;
    /// deletion also removes the registration of the memory.
    static void* operator new(std::size_t size) { return jAllocator::get()->localAlloc(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) {
        memRemoveInfo(block);
        jAllocator::get()->localFree(block);
    }
    static void operator delete(void*, void*) noexcept {}

    virtual int getType() const { return NODE; }
    /// This node as an object, null when it is not one.
    virtual Object* asObject() { return nullptr; }
    bool isObject() const { return const_cast<Node*>(this)->asObject() != nullptr; }

    /// The first node with this name in the running engine's world, null when there is none.
    static Node* GetNodeByName(const jString& name);

    int getId() const { return m_id; }  ///< unique in the process, in order of creation
    const jString& getName() const { return m_name; }
    void setName(const jString& name);
    const jVector<jString>& getTags() const { return m_tags; }
    void addTag(const jString& tag);
    bool hasTag(const jString& tag) const { return m_tags.find(tag) >= 0; }

    // The tree. -------------------------------------------------------------------------------------------------------
    World* getWorld() const { return m_world; }  ///< null outside a world
    Node* getParent() const { return m_parent; }
    int getNumChildren() const { return static_cast<int>(m_children.size()); }
    Node* getChild(int i) const { return m_children[static_cast<std::size_t>(i)].get(); }
    /// Takes ownership; the child keeps its local transform. REQUIRES a child without a parent.
    Node* addChild(std::unique_ptr<Node> child);
    /// Returns the ownership of a direct child; null when it is not a child.
    std::unique_ptr<Node> takeChild(Node* child);
    /// The first child with this name; with `recursive` the first in the subtree, depth first.
    Node* getChildByName(const jString& name, bool recursive = false) const;
    /// The nearest ancestor that is a prefab, null when there is none.
    Node* getPrefabNode() const;

    // Activity. -------------------------------------------------------------------------------------------------------
    bool isEnabled() const { return m_enabled; }  ///< its own flag only
    void setEnabled(bool enabled);
    /// Whether it and all its ancestors are enabled.
    bool isActive() const { return m_active; }
    /// Whether segment queries and physics include it; true by default.
    bool isCollider() const { return m_collider; }
    void setCollider(bool collider);
    /// Whether triggers report it when it enters or leaves them; `size` is the full extent of its box, centred on the
    /// node's origin, metres (zero: a point).
    bool isSensor() const { return m_sensor; }
    const vec3& getSensorSize() const { return m_sensor_size; }
    void setSensor(bool sensor, const vec3& size = {});

    // Transforms. Every setter teleports the physics bodies in the subtree and zeroes their velocities, unless the body
    // preserves its transform. A transform with a NaN or an infinity is refused with one log line.
    const dmat4& getTransform() const { return m_local; }  ///< relative to the parent
    void setTransform(const dmat4& local);
    dvec3 getPosition() const { return m_local.t; }
    void setPosition(const dvec3& position);
    dquat getRotation() const;
    void setRotation(const dquat& rotation);  ///< keeps position and scale
    dvec3 getScale() const;
    void setScale(const dvec3& scale);  ///< keeps position and rotation
    dvec3 getHPR() const;               ///< of the local rotation
    void setHPR(const dvec3& hpr);      ///< keeps position and scale

    const dmat4& getWorldTransform() const;  ///< geocentric; valid until the node or an ancestor moves
    void setWorldTransform(const dmat4& world);
    dvec3 getWorldPosition() const { return getWorldTransform().t; }
    void setWorldPosition(const dvec3& position);
    dvec3 getWgsPosition() const;           ///< longitude, latitude, height
    void setWgsPosition(const dvec3& geo);  ///< keeps the geodetic attitude
    dvec3 getWgsHPR() const;                ///< geodetic heading, pitch, roll
    void setWgsHPR(const dvec3& hpr);       ///< keeps position and scale
    dmat4 getWGSTransform() const;          ///< east, north, up and position

    /// Bounding box of this node's own content in its own frame; empty when it has none.
    virtual BoundBox getBoundBox() const { return {}; }
    BoundBox getWorldBoundBox() const;

    /// Sets a named value, for tracks: "enabled" (above 0.5), "position_x|y|z", "heading", "pitch", "roll", "scale",
    /// and those of the derived types. False when this node has no such parameter.
    virtual bool setParameter(const jString& parameter, float value);

    /// Incremented with every change of the transform, the flags or (in derived types) the content; mirrors compare it.
    std::uint32_t getRevision() const { return m_revision; }

protected:
    /// call after a change of the content's box or appearance
    void contentChanged();
    virtual void worldChanged() {}                                    ///< joined or left a world
    virtual void placeChanged(bool by_physics) { (void)by_physics; }  ///< its world transform changed
    virtual void activityChanged() {}                                 ///< active or collider flag changed

private:
    friend class World;
    friend struct WorldState;
    friend class SpatialIndex;
    friend class PhysicsWorld;

    void setLocal(const dmat4& local, bool by_physics);
    void setWorldPlace(const dvec3& position, const dquat& rotation);
    void markPlaceDirty(bool by_physics);
    void readPlaceForBody();
    void contentMoved();
    void treeChanged();
    void updateActive();
    void joinWorld(World* world);

    int m_id;
    std::uint32_t m_revision = 0;
    bool m_enabled = true;
    bool m_active = true;
    bool m_collider = true;
    bool m_sensor = false;
    mutable bool m_world_dirty = true;  ///< all descendants are then dirty and notified too
    bool m_trigger_part = false;        ///< a sensor or trigger in a world: its motion updates the triggers
    bool m_bounds_top = false;          ///< it has its own entry in the spatial index
    int m_change_slot = -1;             ///< index in the world's list of changes; -1 when not in it
    int m_bounds_slot = -1;             ///< index in the spatial index's list of moved nodes; -1 when not in it
    void* m_bounds_leaf = nullptr;      ///< leaf of the spatial index
    std::uint64_t m_join_order = 0;     ///< order of joining a world
    World* m_world = nullptr;
    Node* m_parent = nullptr;
    dmat4 m_local;
    mutable dmat4 m_world_transform;
    jString m_name;
    std::size_t m_name_hash;
    vec3 m_sensor_size;
    jVector<jString> m_tags;
    std::vector<std::unique_ptr<Node>> m_children;
};
