// A target of the host: a model in the world that glides to each place reported.
#pragma once

#include <engine/memory/Allocator.h>

#include <memory>

#include "common/LogicApi.h"
#include "common/actions/ActionMoveAndLookAt.h"
#include "src/kit/UdpRecords.h"

class ObjectPrefab;
class World;

/// Has its model in the world, tagged and named by the target's name, and at most one glide running. Taken out of both
/// when destroyed; the world and the manager outlive it.
class LOGIC_API Target {
public:
    using Ptr = std::unique_ptr<Target, jDeleter>;

    /// Null, with one error logged and nothing added, when the record has no name, no model that loads, or no place on
    /// the globe. `path` is the model's prefab.
    static Ptr Create(World* world, ActionManager* actions, const TargetInfo& info, const jString& path);
    /// For `Create`: the model is loaded and in the world.
    Target(ActionManager* actions, ObjectPrefab* prefab, const TargetInfo& info);
    ~Target();
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    /// Takes a new record. Beyond 1 m from where the last glide leads, the target glides to its place within a second;
    /// nearer ones are kept as record only. A record with no place on the globe is refused with one error logged. The
    /// model stays, whatever type the record has.
    void update(const TargetInfo& info);
    /// Puts it at once where its glide leads.
    void endGlide();

    ObjectPrefab* getPrefab() const { return m_prefab; }  ///< the world's
    int getStatus() const;                                ///< 100: its model is loaded
    Node* getNode() const;
    const dvec3& getPosition() const { return m_position; }  ///< longitude, latitude, height that it glides to
    const TargetInfo& getInfo() const { return m_info; }     ///< the last record taken
    dvec3 getVelocity() const;                               ///< of its glide, geocentric axes, m/s; zero without one
    bool isGliding() const { return m_glide != nullptr; }

private:
    void glide(const dvec3& place);

    ActionManager* m_actions;
    ObjectPrefab* m_prefab;                  ///< the world's
    ActionMoveAndLookAt* m_glide = nullptr;  ///< the manager's, while it runs
    dvec3 m_position;
    int m_type;                ///< that its model was made by
    bool m_type_told = false;  ///< that a record had another
    TargetInfo m_info;
};
