// The base class of a scene logic: access to the engine, the environment's tracks, the notifications.
#pragma once

#include <engine/gui/Events.h>

#include <memory>

#include "common/LogicApi.h"
#include "common/Signals.h"

class CameraControl;
class IApp;
class Material;
class Node;
class Object;
class ObjectPrefab;
class Track;
class World;

/// Base class of a scene logic. The engine calls `init` once, then `update`, `swap` and `render` each frame, input
/// callbacks between them, and `release` before the destruction. Frame thread only.
///
/// World and camera are not owned and outlive the logic. The order of the virtual functions is part of the contract.
class LOGIC_API LogicBase {
public:
    /// Folder of the tracks of weather, time of day and airport lights, under the runtime root.
    static constexpr const char* TRACK_FOLDER = "data/assets/Anim/Fly_simulator/";

    LogicBase(World* world, CameraControl* camera);
    /// A copy shares the tracks loaded so far; the last logic that holds them deletes them.
    LogicBase(const LogicBase& other);
    LogicBase& operator=(const LogicBase& other);

    virtual int getCamSpeed() const { return m_cam_speed; }  ///< metres per second
    virtual void setCamSpeed(int speed) { m_cam_speed = speed; }
    virtual ~LogicBase();
    virtual void setRain(float amount);  ///< 0..1; the base does nothing
    virtual void setSnow(float amount);  ///< 0..1; the base does nothing
    virtual void setTod(float time);     ///< time of day, 0..1 over the day; no effect without its track
    virtual void setAirportLightEnable(bool enable);
    virtual void setAirportLightBrightness(float brightness);  ///< 0..1
    /// Path of the scene file that the engine loads for this logic, under the runtime root; empty for none.
    virtual jString getWorldPath() const;
    virtual const World* getWorld() const { return m_world; }
    virtual World* getWorld() { return m_world; }
    virtual const CameraControl* getCameraControl() const { return m_camera; }
    virtual CameraControl* getCameraControl() { return m_camera; }
    virtual void apply_date(int year, int month, int day);  ///< fires notification 24
    /// Loads the environment's tracks; a track that cannot be loaded is logged and skipped. Always true.
    virtual bool init();
    virtual void update(float dt);  ///< one frame of dt seconds, before the physics step
    virtual void render();          ///< after the picture is drawn
    virtual void swap();            ///< after the physics step: sets the frame's final camera pose
    virtual void release();         ///< frees what must be freed before the destruction
    virtual void onMouseDown(const GUIEventMouse& event, IApp* app);
    virtual void onMouseUp(const GUIEventMouse& event, IApp* app);
    virtual void onMouseMove(const GUIEventMouse& event, IApp* app);
    virtual void onMouseWheel(const GUIEventWheel& event, IApp* app);
    virtual void onKeyPress(const GUIEventKey& event, IApp* app);
    /// Ctrl+T toggles the test mode.
    virtual void onKeyRelease(const GUIEventKey& event, IApp* app);

protected:
    /// Loads a track and keeps it. An empty path has no effect; a failure is logged once. A path may be loaded
    /// twice.
    virtual void load_track(const jString& path);
    /// The first track loaded from that path, null when there is none. Valid while this logic exists.
    virtual Track* get_track(const jString& path);

public:
    virtual void set_aircraft_path(jString path);  ///< aircraft configuration file; call before `init`
    virtual void set_airport_node(jString name);   ///< node where the aircraft starts; call before `init`
    virtual void set_carrier_node(jString name);   ///< node of the carrier; call before `init`
    void set_test_mode(bool on);                   ///< prints the new mode on the console
    bool isTestMode() const { return m_test_mode; }

protected:
    CameraControl* m_camera;
    World* m_world;
    jVector<std::shared_ptr<Track>> m_tracks;  ///< in order of loading; shared with copies of this logic
    int m_cam_speed = 100;
    jString m_aircraft_path;
    jString m_airport_node;
    jString m_carrier_node;
    bool m_test_mode = false;

public:
    // Notifications. Each name has a number, and a meaning if this library fires the notification.
    Signal<Node*> m_signal_1;
    Signal<int> m_signal_2_reset;  ///< fired with 25, then with 26
    Signal<double> m_signal_3;
    Signal<Node*> m_signal_4_missile_gone;                  ///< the missile, before it is deleted
    Signal<ObjectPrefab*, bool> m_signal_5_prefab_created;  ///< the prefab; the flag (it is new) is always true
    Signal<Node*, bool> m_signal_6_rotor_wash;              ///< an effect of the helicopter, at `init`; flag false
    Signal<jString, Node*, bool> m_signal_7;
    Signal<SynCoder::CMDPlaySpeOnceInfo*> m_signal_8_effect_started;  ///< pointer valid during the call
    Signal<Material*> m_signal_9;
    Signal<Object*, int> m_signal_10;
    Signal<Node*, const jString&> m_signal_11;
    Signal<const jString&> m_signal_12_prefab_preloaded;  ///< path of the prefab
    Signal<Track*> m_signal_13_track_loaded;
    Signal<CMD_TYPE> m_signal_14;
    Signal<int> m_signal_15;
    Signal<float, float> m_signal_16;
    Signal<float> m_signal_17;
    Signal<float> m_signal_18;
    Signal<float> m_signal_19;
    Signal<float> m_signal_20_fog;  ///< computed from the visibility: 0.39 in fog to 1.01 in clear air
    Signal<float> m_signal_21;
    Signal<float> m_signal_22;
    Signal<int> m_signal_23;
    Signal<int, int, int> m_signal_24_date;  ///< year, month, day
    Signal<float> m_signal_25;
    Signal<int, int, int, float> m_signal_26;
    Signal<float> m_signal_27;
    Signal<float> m_signal_28;
    Signal<float> m_signal_29;
    Signal<int> m_signal_30;
    Signal<CloudInfo*> m_signal_31;
    Signal<WEATHER_TYPE> m_signal_32;
    Signal<WEATHER_DETAIL> m_signal_33;
    Signal<WEATHER_DETAIL> m_signal_34;
    Signal<WEATHER_DETAIL> m_signal_35;
    Signal<CloudInfo*> m_signal_36;

protected:
    /// Levels the camera on the globe and keeps its heading and position; no effect without a camera node.
    void adjust_geo_rotation_forward();
    static void destroy_track(Track* track);  ///< releases and deletes a track made with jNew
    /// The first node of that name, null when there is none or no world.
    Node* find_node(const jString& name) const;

private:
    void set_track(const char* file, float position);
};

/// Version of this class's layout and of the order of its virtual functions. A library with another version cannot be
/// used.
constexpr int LOGIC_INTERFACE_VERSION = 1;
/// Each library exports, beside its factory, the version that it was built with.
extern "C" LOGIC_API const int LogicInterfaceVersion;

/// Creates this library's scene logic. The caller owns it: it calls `init`, and deletes it with `jDelete`.
extern "C" LOGIC_API LogicBase* CreateLogic(World* world, CameraControl* camera);
