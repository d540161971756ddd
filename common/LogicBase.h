// What every scene logic has: the engine's handles, the environment's tracks, the notifications.
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

/// The base of a scene logic, as the engine drives it: `init` once, then each frame `update`, `swap` and `render`,
/// input callbacks between them, and `release` before its destruction. Frame thread only.
///
/// World and camera are not owned and outlive the logic. The order of the virtual operations is part of the contract.
class LOGIC_API LogicBase {
public:
    /// The tracks of weather, time of day and airport lights lie here, under the runtime root.
    static constexpr const char* TRACK_FOLDER = "data/assets/Anim/Fly_simulator/";

    LogicBase(World* world, CameraControl* camera);
    /// A copy shares the tracks loaded so far; they end with the last logic that has them.
    LogicBase(const LogicBase& other);
    LogicBase& operator=(const LogicBase& other);

    virtual int getCamSpeed() const { return m_cam_speed; }  ///< metres a second
    virtual void setCamSpeed(int speed) { m_cam_speed = speed; }
    virtual ~LogicBase();
    virtual void setRain(float amount);  ///< 0..1; the base does nothing
    virtual void setSnow(float amount);  ///< 0..1; the base does nothing
    virtual void setTod(float time);     ///< time of day, 0..1 over the day; nothing without its track
    virtual void setAirportLightEnable(bool enable);
    virtual void setAirportLightBrightness(float brightness);  ///< 0..1
    /// The scene file that the engine loads for this logic, under the runtime root; empty for none.
    virtual jString getWorldPath() const;
    virtual const World* getWorld() const { return m_world; }
    virtual World* getWorld() { return m_world; }
    virtual const CameraControl* getCameraControl() const { return m_camera; }
    virtual CameraControl* getCameraControl() { return m_camera; }
    virtual void apply_date(int year, int month, int day);  ///< fires notification 24
    /// Loads the environment's tracks; a track that cannot be loaded is logged and left out. Always true.
    virtual bool init();
    virtual void update(float dt);  ///< one frame of dt seconds, before the physics step
    virtual void render();          ///< after the picture
    virtual void swap();            ///< after the physics step: the last word on the camera
    virtual void release();         ///< gives back what must go before the destruction
    virtual void onMouseDown(const GUIEventMouse& event, IApp* app);
    virtual void onMouseUp(const GUIEventMouse& event, IApp* app);
    virtual void onMouseMove(const GUIEventMouse& event, IApp* app);
    virtual void onMouseWheel(const GUIEventWheel& event, IApp* app);
    virtual void onKeyPress(const GUIEventKey& event, IApp* app);
    /// Ctrl+T toggles the test mode.
    virtual void onKeyRelease(const GUIEventKey& event, IApp* app);

protected:
    /// Loads a track and keeps it; an empty path does nothing, a failure costs one log line. A path may be loaded
    /// twice.
    virtual void load_track(const jString& path);
    /// The first track loaded from that path, null when there is none. Valid as long as this logic.
    virtual Track* get_track(const jString& path);

public:
    virtual void set_aircraft_path(jString path);  ///< aircraft configuration file; before `init`
    virtual void set_airport_node(jString name);   ///< node that the aircraft starts at; before `init`
    virtual void set_carrier_node(jString name);   ///< node of the carrier; before `init`
    void set_test_mode(bool on);                   ///< tells so on the console
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
    // Notifications, named by number, and by meaning where this library fires them.
    Signal<Node*> m_signal_1;
    Signal<int> m_signal_2_reset;  ///< with 25, then with 26
    Signal<double> m_signal_3;
    Signal<Node*> m_signal_4_missile_gone;                  ///< about to be deleted
    Signal<ObjectPrefab*, bool> m_signal_5_prefab_created;  ///< and whether it is new: true
    Signal<Node*, bool> m_signal_6_rotor_wash;  ///< an effect of the helicopter, at `init`; the flag is false
    Signal<jString, Node*, bool> m_signal_7;
    Signal<SynCoder::CMDPlaySpeOnceInfo*> m_signal_8_effect_started;  ///< valid during the call
    Signal<Material*> m_signal_9;
    Signal<Object*, int> m_signal_10;
    Signal<Node*, const jString&> m_signal_11;
    Signal<const jString&> m_signal_12_prefab_preloaded;  ///< its path
    Signal<Track*> m_signal_13_track_loaded;
    Signal<CMD_TYPE> m_signal_14;
    Signal<int> m_signal_15;
    Signal<float, float> m_signal_16;
    Signal<float> m_signal_17;
    Signal<float> m_signal_18;
    Signal<float> m_signal_19;
    Signal<float> m_signal_20_fog;  ///< from the visibility: 0.39 in fog to 1.01 in clear air
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
    /// Levels the camera on the globe and keeps its heading and position; nothing without a camera node.
    void adjust_geo_rotation_forward();
    static void destroy_track(Track* track);  ///< releases one made with jNew and deletes it
    /// The first node of that name, null when there is none or no world.
    Node* find_node(const jString& name) const;

private:
    void set_track(const char* file, float position);
};

/// Number of this class's layout and of the order of its virtual operations. A library of another number cannot be
/// used.
constexpr int LOGIC_INTERFACE_VERSION = 1;
/// Each library exports the number that it was built with beside its factory.
extern "C" LOGIC_API const int LogicInterfaceVersion;

/// Makes this library's scene logic. The caller initialises it, and ends it with `jDelete`.
extern "C" LOGIC_API LogicBase* CreateLogic(World* world, CameraControl* camera);
