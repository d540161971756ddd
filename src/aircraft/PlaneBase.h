// A fixed-wing aircraft: one prefab in the world, its configuration, and the operations common to all fixed-wing
// aircraft.
#pragma once

#include <engine/action/Action.h>
#include <engine/math/Transform.h>

#include <memory>

#include "src/aircraft/AirCraftInfo.h"

class ObjectPrefab;
class World;
struct FlyFrame;

enum DAMAGE_STATE : std::int16_t { DAMAGE_NONE = 0, DAMAGE_DESTROYED = 1 };

/// Call `setAircraftInfo`, then `init`, place the aircraft, then call `update` each frame. The order of the virtual
/// functions is part of the contract; derived classes append theirs. World transforms are geocentric, angles are in
/// degrees.
///
/// Without a loaded model every operation can be called and moves nothing. The world owns the model once it is loaded;
/// the model must outlive the aircraft.
class PlaneBase {
public:
    virtual const jString& getPrefabPath() const { return m_prefab_path; }  ///< path of the loaded model; empty before
    virtual bool isUndercarriageOpen() const { return m_undercarriage_open; }
    virtual bool init(World* world);  ///< uses the configured path
    /// Loads the model and adds it to the world. True without a load when that path is loaded already; false, with
    /// nothing added, when it cannot be loaded.
    virtual bool init(World* world, const jString& path);
    virtual bool update(float dt);  ///< seconds
    virtual void refresh();         ///< does nothing
    /// Reference frame of poses and flight states.
    virtual const dmat4& getBaseTransform() const { return m_base_transform; }
    virtual void setBaseTransform(const dmat4& world) { m_base_transform = world; }
    virtual const AirCraftInfo& getAircraftInfo() const { return m_info; }
    virtual void assignAircraftInfo(const AirCraftInfo& info) { m_info = info; }
    virtual const std::int16_t& getDamageState() const { return m_damage_state; }  ///< a DAMAGE_STATE
    virtual void setDamageState(std::int16_t state) { m_damage_state = state; }
    /// Sets the gear flag; with `animate` starts the movement if the flag changes. Returns `open`.
    virtual bool setUndercarriage(bool open, bool animate);
    virtual void setWgsHPR(const dvec3& hpr);
    virtual void setWgsPosition(const dvec3& geo);
    virtual void setWorldTransform(const dmat4& world);
    virtual const dmat4& getWorldTransform() const;          ///< identity without a model
    virtual dvec3& getWorldPosition(dvec3& position) const;  ///< fills and returns `position`
    virtual void openUndercarriage() { m_undercarriage_open = true; }
    virtual void closeUndercarriage() { m_undercarriage_open = false; }
    virtual void flyPose();    ///< parts as in flight; the base does nothing
    virtual void standPose();  ///< parts as on the ground; the base does nothing
    /// Places the aircraft and its surfaces by a state relative to the base transform; the base does nothing.
    virtual void setFlightState(const FlyFrame* state);
    virtual void stopPose();  ///< engine off, gear down; the base does nothing
    virtual void setAircraftInfo(AirCraftInfo info) { assignAircraftInfo(info); }
    virtual void showDestroyed();              ///< the base does nothing
    virtual void resetDamage();                ///< the base does nothing
    virtual void resetToBase();                ///< undamaged at the base transform; the base does nothing
    virtual void resetAt(const dmat4& world);  ///< undamaged at `world`; the base does nothing
    virtual bool catchFire() { return true; }
    virtual void addPositionOffset(const dvec3& offset);          ///< metres in the model's parent's frame
    virtual void addRotationDeflection(const dvec3& deflection);  ///< (heading, pitch, roll)

    /// Null before `init`. A model that failed to load is outside the world and owned by the aircraft.
    ObjectPrefab* getModel() const { return m_model; }
    float getElapsedTime() const { return m_elapsed; }  ///< sum of `update`'s seconds
    int getNumActions() const { return m_actions.getNumActions(); }

    PlaneBase(const PlaneBase&) = delete;
    PlaneBase& operator=(const PlaneBase&) = delete;

protected:
    PlaneBase();
    ~PlaneBase();  ///< not virtual (no place in the contract's order): delete through the derived type

    float m_elapsed = 0.0f;
    ObjectPrefab* m_model = nullptr;
    ActionManager m_actions;
    jString m_prefab_path;
    bool m_undercarriage_open = false;
    dmat4 m_base_transform;
    AirCraftInfo m_info;
    std::int16_t m_damage_state = DAMAGE_NONE;

private:
    std::unique_ptr<ObjectPrefab> m_failed_model;
};
