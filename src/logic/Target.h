// A target reported by the host: a model in the world that glides to each reported position.
#pragma once

#include <engine/memory/Allocator.h>

#include <memory>

#include "common/LogicApi.h"
#include "common/actions/ActionMoveAndLookAt.h"
#include "src/kit/UdpRecords.h"

class ObjectPrefab;
class World;

/// A model in the world, with the target's name as node name and tag, and at most one running glide action. The
/// destructor removes both. The world and the action manager must outlive it.
class LOGIC_API Target {
public:
    using Ptr = std::unique_ptr<Target, jDeleter>;

    /// Null, with one error logged and nothing added, when the record has no name or no position on the globe, or when
    /// the model cannot be loaded. `path` is the model's prefab.
    static Ptr Create(World* world, ActionManager* actions, const TargetInfo& info, const jString& path);
    /// Used by `Create`. REQUIRES that the model is loaded and in the world.
    Target(ActionManager* actions, ObjectPrefab* prefab, const TargetInfo& info);
    ~Target();
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    /// Applies a new record. If its position is more than 1 m from the end of the last glide, the target glides to it
    /// in one second; else the record is only stored. A record without a position on the globe is ignored, with one
    /// error logged. The model does not change, whatever type the record has.
    void update(const TargetInfo& info);
    /// Ends the glide and places the target at its end position.
    void endGlide();

    ObjectPrefab* getPrefab() const { return m_prefab; }  ///< owned by the world
    int getStatus() const;                                ///< 100: the model is loaded
    Node* getNode() const;
    const dvec3& getPosition() const { return m_position; }  ///< end of the glide: longitude, latitude, height
    const TargetInfo& getInfo() const { return m_info; }     ///< the last record applied
    dvec3 getVelocity() const;                               ///< of the glide, geocentric axes, m/s; zero without one
    bool isGliding() const { return m_glide != nullptr; }

private:
    void glide(const dvec3& place);

    ActionManager* m_actions;
    ObjectPrefab* m_prefab;                  ///< owned by the world
    ActionMoveAndLookAt* m_glide = nullptr;  ///< owned by the manager while it runs, else null
    dvec3 m_position;
    int m_type;                    ///< type of the record that the model was made for
    bool m_type_reported = false;  ///< a record with another type was logged
    TargetInfo m_info;
};
