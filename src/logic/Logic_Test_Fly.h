// The flight-test scene's logic. The operations are grouped by subject, one source file for each subject.
#pragma once

#include <engine/action/Action.h>
#include <engine/action/TimerManager.h>
#include <engine/core/Clock.h>
#include <engine/core/Message.h>
#include <engine/memory/Allocator.h>

#include "common/LogicBase.h"
#include "src/aircraft/HeliEffectsKit.h"
#include "src/deck/FresnelLight.h"
#include "src/kit/PlaneFlyKit.h"
#include "src/kit/UdpRecords.h"
#include "src/logic/HitCallback.h"

class ActionEmitMissile;
class ControlApp;
class Helicopter;
class NodeTrigger;
class ObjectOcean;
class ObjectTerrain;
class PlaneBase;
class PlaneExtra300s;
class PlaneJ15;
class Ship;
class Target;
class UIButton;
class UIElement;
class UIGridLayout;
class UIHLayout;
class UILabel;
class UISlider;
class UIVLayout;
class UdpRecvKit;
class UdpSendKit;
struct AirCraftPartInfo;

/// Kind of view. Other values are stored and do not move the camera.
enum PLAYER_MODE : std::int32_t { FIRST_VIEW = 0, THIRD_VIEW = 1, FREE_VIEW = 2 };
/// Source of the aircraft's motion: host records, its own step, a recorded path. Other values are stored: no motion.
enum FLY_MODE : std::int32_t { DATA_FLY = 0, MANUAL_FLY = 1, AUTO_FLY = 2 };

/// Counts of the records on the host link so far.
struct LinkCounts {
    std::uint64_t records = 0;   ///< host records applied
    std::uint64_t feedback = 0;  ///< feedback records sent
    std::uint64_t unsent = 0;    ///< feedback records that the system did not accept
};

/// Local transforms of nodes of the helicopter's model; identity for a node that the model lacks.
struct HelicopterPlaces {
    dmat4 left[3];    ///< "dl_0" to "dl_2"
    dmat4 right[3];   ///< "dr_0" to "dr_2"
    dmat4 sonar;      ///< "sonar"
    dmat4 winch;      ///< "winch"
    dmat4 deflector;  ///< "deflector": the plane that stops the downwash; its height follows the effects
    dmat4 eye;        ///< "cam_first_player": the pilot's eye
};

/// The behaviour of the scene. The engine calls the operations of `LogicBase`; the others are for the host application.
/// The world owns all nodes and objects whose pointers are returned. REQUIRES that the aircraft's model, the carrier,
/// the terrain, the ocean and the weather's nodes are not removed from the world while the logic exists.
class LOGIC_API Logic_Test_Fly final : public LogicBase, public MsgNode {
public:
    static constexpr int VISIBILITY_STEP = 300;  ///< metres
    using MissileCallback = HitCallback;

    Logic_Test_Fly(World* world, CameraControl* camera);
    Logic_Test_Fly(const Logic_Test_Fly&) = delete;
    Logic_Test_Fly& operator=(const Logic_Test_Fly&) = delete;
    ~Logic_Test_Fly() override;

    // Lifetime and frame: Logic_Test_Fly.cpp
    jString getWorldPath() const override;
    bool init() override;
    void update(float dt) override;
    /// Closes the receiver and the sender to the host.
    void release() override;
    // These have no effect.
    void render() override;
    void onMouseDown(const GUIEventMouse& event, IApp* app) override;
    void onMouseUp(const GUIEventMouse& event, IApp* app) override;
    void onMouseMove(const GUIEventMouse& event, IApp* app) override;
    void onKeyPress(const GUIEventKey& event, IApp* app) override;
    /// Message 654321 levels the camera.
    void processMsg(UiMsg* msg) override;
    /// Resets the scene to its start and fires notification 2.
    void reset();

    // Configuration: _config.cpp
    /// Reads the configuration file unless the application has read it; without it every key has its default. Loads
    /// the recorded flight.
    void init_config();
    /// Sets airport lights off, third-person view and the configured flight mode.
    void default_setting();

    // Environment: _environment.cpp
    /// Finds the weather's nodes, the terrain and the ocean; the ocean from now on keeps its own sea state. Without
    /// terrain the feedback contains no terrain heights.
    void init_environment();
    /// Loads the tracks that this logic sets itself, in addition to those of `LogicBase::init`.
    void load_tracks();
    /// Each sets its track, 0..1, if it was loaded. The track switches the particles, this logic does not.
    void setRain(float amount) override;
    void setSnow(float amount) override;
    void setTod(float time) override;
    /// Sets a track by its full path, 0..100 percent; no effect when it was not loaded.
    void set_anim(jString path, float percent);
    float getRain() const;  ///< position of the rain's track, 0..1; 0 without the track
    float getSnow() const;  ///< the same for the snow's track
    bool isRaining() const { return m_raining; }
    Node* getRainNode() const { return m_rain; }       ///< null without one
    Node* getHailNode() const { return m_hail; }       ///< null without one
    Node* getSnowNode() const { return m_snow; }       ///< null without one
    ObjectOcean* getOcean() const { return m_ocean; }  ///< null without one
    /// Sets the visibility in steps of 300 m, and the fog by `use_visibility_set_fog`.
    void setVisibilityDistance(int steps);
    int getVisibilityDistance() const;         ///< steps of 300 m
    const jString& getVisibilityText() const;  ///< text of the label; empty until a visibility was set
    /// Share of light, 0..1, lost over `base` metres of fog with this density; calibrates the fog's value.
    static double calFog(double base, double density);
    /// Fires notification 20 with the fog's value for a visibility in metres: 0.39 at 300 m and below, 1.01 at most.
    void use_visibility_set_fog(int metres);
    /// The visibility in metres, at least 300, of the last notification 20; 0 before the first one. It is set before
    /// the notification is fired. The picture's extinction per metre is 3.912 / visibility.
    int getFogVisibility() const;
    // State of the navigation lights, 1 for on; 1 at first, as in the models. Only stored, for the host application.
    void setNaviLight(unsigned short value);
    int getNaviLight() const;

    // Host link: _link.cpp
    /// In data flight opens a new receiver and new senders; does not close those of an earlier call.
    void init_udp();
    bool isReceiverReady() const { return m_recv_ready; }
    bool isSenderReady() const { return m_send_ready; }
    /// In data flight applies the records that have arrived.
    void receive_data();
    void use_recv_data(jVector<UdpRecvData>& records);
    /// Stores the host's order; a change to 1 resets the scene.
    void apply_status(const UdpRecvData& record);
    // For the further fields of a record; they are not interpreted.
    void apply_plane(UdpRecvData& record);
    void apply_lights(UdpRecvData& record);
    void apply_ships(UdpRecvData& record);
    void apply_targets(UdpRecvData& record);
    void print_recv_data(const UdpRecvData& record);
    int getLastOrder() const { return m_last_order; }
    const LinkCounts& getLinkCounts() const { return m_link_counts; }

    // Terrain feedback: _feedback.cpp
    /// Sends the heights under the wheels while the host's order is 2 or orders are ignored.
    void send_udp();
    /// Terrain height in metres at a position (longitude, latitude in degrees), at least -100; -100 where there is no
    /// terrain.
    float calc_height(const dvec3& geo) const;
    void print_send_data(const UdpSendData& record);
    const UdpSendData& getLastFeedback() const { return m_last_feedback; }  ///< the last record sent
    /// Connects the collision triggers; false when the world has none. REQUIRES that the triggers outlive the logic.
    bool init_triggers();
    // The aircraft's body enters or leaves a trigger: sets or clears the collision flag. Other nodes are ignored.
    void on_enter_trigger(Node* node);
    void on_exit_trigger(Node* node);

    // Aircraft: _aircraft.cpp
    /// Makes the configured aircraft at the start node. There is no aircraft without that node, with an unknown type or
    /// if its model cannot be loaded; the reason is printed or logged. REQUIRES that it was not called before.
    void init_aircraft();
    /// Resets the aircraft, undamaged: the jet to the start node's current pose, the aerobatic aircraft to its first
    /// pose; the helicopter stops at its position. No effect without the start node.
    void reset_plane();
    /// Contact handler of the aircraft's body; has no effect.
    void on_plane_hit(Body* body, int shape);
    /// Shows the aircraft destroyed; called after its explosion has started. The action is not used.
    void on_plane_destory(Action* action);
    /// Places the first deflector of a particle system under the helicopter, at the height of the system's node. Other
    /// nodes, and systems without a deflector, are not changed.
    void update_deflector(Node* node);
    const jString& getAircraftType() const { return m_aircraft_type; }
    PlaneBase* getAircraft() const { return m_aircraft; }       ///< owned by the logic; null without one
    Helicopter* getHelicopter() const { return m_helicopter; }  ///< owned by the logic; null without one
    /// Switches the helicopter's wipers; no effect without a helicopter.
    void set_wipers(bool on);
    const HelicopterPlaces& getHelicopterPlaces() const { return m_heli_places; }
    int getControlCount() const;                                 ///< number of control nodes in the aircraft's model
    Object* getAircraftNode() const { return m_aircraft_node; }  ///< the plane's model; null without one
    Object* getModel() const;                                    ///< model of plane or helicopter; null without either
    const dmat4& getStartTransform() const { return m_start_transform; }  ///< first pose of the aircraft
    const jVector<Object*>& getObjects() const { return m_objects; }      ///< models that the logic placed

    // Ships and the landing lens: _ships.cpp
    /// Makes the ship of the carrier node, at rest at the node "start_ship1", with its body disabled. Without the
    /// carrier node there is no ship.
    void init_ships();
    /// The ship's step (wake and forces), if `setShipsAutoMove` enabled it. For the host application, which enables the
    /// ship's body; call after `update` and before the physics step.
    void ships_auto_move();
    void setShipsAutoMove(bool moves) { m_ships_auto_move = moves; }
    Ship* getShip() const { return m_ship; }             ///< owned by the logic; null without one
    bool isShipsReady() const { return m_ships_ready; }  ///< `init_ships` was called
    const dmat4& getShipStartTransform() const { return m_ship_start_transform; }  ///< first pose of the ship
    /// Finds the lens of a ship; its lamp is chosen for the camera's node.
    void init_fresnel_light(Object* ship);
    const FresnelLight& getFresnelLight() const { return m_fresnel_light; }

    // Missiles: _missiles.cpp
    /// Fires a missile 5 m ahead of the aircraft: 300 m/s for 20 s. Without an aircraft no missile is fired, and the
    /// created missile stays allocated.
    void emit_missile();
    /// Removes the ended missiles (those with a disabled node) from the world; fires notification 4 before each
    /// removal. The last missile of the list replaces a removed one and is examined in the next call. No effect when
    /// called by a handler of that notification.
    void update_missle();
    /// Contact handler of a missile's body: disables it and starts an explosion at the contact (notification 8). Null
    /// and a disabled body are ignored.
    void on_missile_hit(Body* body, int shape);
    int getNumMissiles() const { return m_missiles.size(); }
    ObjectPrefab* getMissile(int i) const { return m_missiles[i].prefab; }  ///< in list order; owned by the world

    // Targets: _targets.cpp
    /// Makes the target of that name, or moves it if it exists. Its model is the record's path or, if empty, the path
    /// for its type in the configuration's "target_type". A new target fires notification 5. False, with one error
    /// logged, when it does not exist and cannot be made.
    bool apply_target(TargetInfo info);
    bool remove_target(const jString& name);        ///< false when there is none
    Target* get_target(const jString& name) const;  ///< null when there is none; valid until it is removed or replaced
    const jMap<jString, std::unique_ptr<Target, jDeleter>>& getTargets() const { return m_targets; }  ///< by name
    int getNumTargets() const { return static_cast<int>(m_targets.size()); }
    /// The target nearest to the aircraft; at equal distances the first by name. Null, with a line printed, when no
    /// target is nearer than 100 km or there is no aircraft.
    Node* get_min_distance_target() const;
    float get_min_distance_target_dis() const;  ///< metres, 100000 at most

    // Effects: _effects.cpp
    /// Starts an explosion at the aircraft and shows the aircraft destroyed 0.2 s later. False without an aircraft.
    bool plan_explosion();
    bool isExploded() const { return m_exploded; }  ///< stays true after the first explosion
    /// Loads the prefabs of weapons and effects into the cache before they are needed; notification 12 for each.
    void prefab_cache();
    /// Adds a prefab with that name to the world, which owns it (notification 5). Null, with an error logged, when it
    /// cannot be loaded; the failed object stays allocated.
    ObjectPrefab* create_objectPrefab(jString path, jString name);
    /// Plays an effect once for `duration` seconds (notification 8). `place`: world frame.
    void start_effect(const jString& path, float duration, const dmat4& place);
    /// Removes every particle in the world.
    void clear_all_particles();

    // The aircraft's controls: _controls.cpp
    // Handlers of the panel's controls. The element's id is the position of its control node. The value is stored in
    // the control values at that position, if it exists, and moves the aircraft's node. For an aircraft type without
    // such controls neither happens.
    void set_node_deflection(const GUIEventChange& event, UIElement* element);  ///< degrees; jet, aerobatic aircraft
    void set_node_offset(const GUIEventChange& event, UIElement* element);  ///< this and the next: aerobatic aircraft
    void set_node_uv_offset(const GUIEventChange& event, UIElement* element);
    void set_node_digit(const GUIEventChange& event, UIElement* element);  ///< truncated to an integer
    void set_node_onoff(const GUIEventChange& event, UIElement* element);
    void toggle_light();       ///< the jet's landing light, the helicopter's search light
    void set_gear(bool down);  ///< at once, carrier jet only; other aircraft: no effect
    /// Call `set_gear`; event and element are not used.
    void on_open_undercarriage(const GUIEventMouse& event, UIElement* element);
    void on_close_undercarriage(const GUIEventMouse& event, UIElement* element);

    // Flight modes: _modes.cpp
    /// Stores any value. Data flight stops the playback, places the aircraft at the start of the recorded flight and
    /// opens the host link if it is not open. Automatic flight resets the scene and starts the playback.
    void set_fly_mode(FLY_MODE mode);
    void change_flymode();  ///< selects the next of the three modes
    FLY_MODE getFlyMode() const { return m_fly_mode; }
    const jString& getFlyModeText() const;  ///< text of the fly mode button; empty before `init`
    /// While the push is on, moves the aircraft's model along its +Y axis at 30 m/s for dt seconds.
    void move_forward(float dt);
    void set_moving_forward(bool moves) { m_moving_forward = moves; }  ///< the push
    void back_to_start();  ///< push off, aircraft to the start node; no effect without either
    // Event and element are not used.
    void on_move_foward(const GUIEventMouse& event, UIElement* element);    ///< push on or off
    void on_reset_postion(const GUIEventMouse& event, UIElement* element);  ///< push off, aircraft to the start node
    bool isMovingForward() const { return m_moving_forward; }

    // Recorded flight: _playback.cpp
    /// Loads "data/www.dat", lowers the start node by 0.2 m and turns the path to start there; no effect without the
    /// start node. REQUIRES that it was not called before.
    void local_data_init();
    /// Plays from 23 s on the file's timeline; the aircraft is first placed at the start node in its standing pose.
    void local_data_start_fly();
    /// While playing, advances by three times the time since the start and applies the state at that time. After the
    /// last frame the playback restarts.
    void local_data_update_fly();
    void local_data_stop_fly();
    /// Applies the recording's first state and switches the engine off; does not stop the playback.
    void local_data_reset_fly();
    bool isPlaying() const { return m_fly_stopwatch.isRunning(); }
    float getPlayTime() const { return m_play_time; }  ///< seconds on the file's timeline

    // View: _view.cpp. Without a camera node there is no motion.
    void swap() override;
    /// Stores any value; one that is no view does not move the camera. Restores the last pose of the third-person view.
    void set_player_mode(PLAYER_MODE mode);
    PLAYER_MODE getPlayerMode() const { return m_player_mode; }
    /// Selects the next of the three views.
    void change_view();
    const jString& getViewText() const;  ///< text of the view button; empty before `init`
    /// Places the camera at the third-person distance from the aircraft, opposite to its viewing direction. Without an
    /// aircraft only stores the pose. Always true.
    bool update_third_view();
    /// Reduces the third-person distance by `step` metres, to 1 m at least.
    bool on_third_view_wheel(float step);
    /// Turns the camera around the point ahead of it at the third-person distance: dx counter-clockwise, dy upward,
    /// degrees. False without a turn or a camera node.
    bool rot_around(float dx, float dy);
    /// While the left button is held, W A S D move the camera for dt seconds at the camera's speed, at four times the
    /// speed with Shift; no effect while Ctrl is held.
    void cam_mov(float dt);
    /// While the left or the right button is held, turns the camera by degrees: dx to the right, dy downward; no effect
    /// while Ctrl is held.
    void cam_free_rot(float dx, float dy);
    /// Longitude, latitude in degrees, height in metres; the rotation does not change.
    void set_cam_pos_geo(const dvec3& geo);
    dvec3 get_cam_pos_geo() const;

    // Panels: _ui.cpp. The UI root owns them. REQUIRES that the UI root is not cleared while frames run, and is cleared
    // before the logic's destruction if input is dispatched after it.
    /// Makes all three panels.
    void init_ui();
    /// Makes the camera bar and the labels for warning and visibility.
    void init_ui_cam();
    void init_ui_btns();
    /// Makes the test panel: one row for each control node in the aircraft's file.
    void init_ui_test_btns();
    /// Places the panels in the corners of the window at its current size, and shows the test panel in test mode.
    void update_ui_pos();
    // Handlers of the buttons; event and element are not used.
    void on_click_change_view(const GUIEventMouse& event, UIElement* element);
    void on_click_change_flymode(const GUIEventMouse& event, UIElement* element);
    void on_world_enable(const GUIEventMouse& event, UIElement* element);
    void on_click_reset(const GUIEventMouse& event, UIElement* element);

    // Input and picking: _input.cpp
    /// Handles keys and mouse of this frame.
    void update_input();
    /// Changes the third-person distance by 1 m: outward on an event without a turn, inward on every other.
    void onMouseWheel(const GUIEventWheel& event, IApp* app) override;
    /// Keys for the record prints, the light, the head offset and the test mode.
    void onKeyRelease(const GUIEventKey& event, IApp* app) override;
    /// The first active object that a segment (geocentric metres) intersects, null when there is none. `hit`, if not
    /// null, receives the intersection; it is not changed without one.
    Object* select_object(const dvec3& from, const dvec3& to, dvec3* hit = nullptr) const;

private:
    using ClickHandler = void (Logic_Test_Fly::*)(const GUIEventMouse&, UIElement*);
    using ChangeHandler = void (Logic_Test_Fly::*)(const GUIEventChange&, UIElement*);
    struct Missile {
        ObjectPrefab* prefab;       ///< owned by the world
        ActionEmitMissile* flight;  ///< owned by the action manager; null after its end
    };

    void load_track(const jString& path) override;
    Track* get_track(const jString& path) override;
    Track* find_own_track(const jString& path) const;
    void init_jet();
    void init_aerobatic();
    void init_helicopter();
    bool init_plane(PlaneBase* plane, const jString& name);
    void place_plane();
    void register_object(Object* object);
    bool is_jet() const;
    bool is_aerobatic() const;
    bool is_helicopter() const;
    void update_deflectors();
    void store_control(int position, double value);
    float scale_control(int position, double value) const;
    void update_aircraft(float dt);
    void apply_fly_frame(const FlyFrame* frame);
    void place_at_start();
    void update_helicopter(float dt);
    void select_lamp();
    void measure_helicopter_surface();
    void measure_gears(UdpSendData& record) const;
    void disconnect_triggers();
    void follow_aircraft();
    void update_keys(ControlApp& control);
    void zoom_third_view(double factor);
    void place_camera(const dvec3& position, const dquat& rotation);
    UILabel* add_scene_label(const jString& text, const vec4& color, double top);
    UIButton* add_button(const char* text, ClickHandler handler);
    void add_test_row(const AirCraftPartInfo& part);
    void add_test_slider(int position, float low, float high, ChangeHandler handler);
    void add_test_box(int position);
    void bind_control(UIElement& control, int position, ChangeHandler handler);
    void update_sliders();
    bool is_slider_held() const;
    void set_view_text(const char* text);
    void set_fly_mode_text(const char* text);
    void show_warning(bool shown);
    void show_visibility(const jString& text);
    void release_tracks();
    void tell_effect(const jString& path, float duration, const dmat4& place);
    void end_flight(ObjectPrefab* missile);
    void remove_missile(const Missile& missile);
    void end_missiles();
    void end_glides();
    const jVector<Node*>& list_targets() const;
    Node* find_nearest_target(float& distance) const;

    jVector<UISlider*> m_sliders;       ///< of the test panel, in row order; owned by the UI root
    jVector<UILabel*> m_slider_labels;  ///< their values
    jString m_aircraft_type;
    PlaneBase* m_aircraft = nullptr;
    float m_third_distance = 25.0f;  ///< metres from the aircraft to the third-person camera
    ActionManager m_action_manager;
    bool m_show_recv = false;
    bool m_show_send = false;
    bool m_recv_ready = false;
    bool m_send_ready = false;
    std::int32_t m_last_order = 0;
    bool m_ignore_order = false;
    std::uint16_t m_collision = 0;
    jVector<float> m_control_values;   ///< one per control of the panel, by the position of its node
    jVector<dmat4> m_head_transforms;  ///< the first: the pilot's eye in the aircraft's frame
    HitCallback m_hit_callback;
    MissileCallback m_missile_callback;  ///< of every missile's body
    jVector<Missile> m_missiles;         ///< in order of firing, except those moved by `update_missle`
    bool m_retiring_missiles = false;    ///< `update_missle` is running
    jMap<jString, std::unique_ptr<Target, jDeleter>> m_targets;
    mutable jVector<Node*> m_target_nodes;  ///< of the map, in its order; rebuilt on demand after a change
    mutable bool m_target_nodes_stale = false;
    bool m_exploded = false;
    TimerManager m_timer_manager;
    UdpRecvKit* m_receiver = nullptr;
    UdpSendKit* m_sender = nullptr;
    UdpSendKit* m_multicast_sender = nullptr;  ///< never deleted

    PlaneJ15* m_jet = nullptr;              ///< the aircraft when it is the carrier jet; owned
    PlaneExtra300s* m_aerobatic = nullptr;  ///< the aircraft when it is the aerobatic one; owned
    Object* m_aircraft_node = nullptr;      ///< owned by the world
    Helicopter* m_helicopter = nullptr;     ///< the aircraft when it is the helicopter; owned
    HelicopterPlaces m_heli_places;
    HeliEffectsKit m_heli_effects;
    Ship* m_ship = nullptr;
    dmat4 m_ship_start_transform;
    bool m_ships_ready = false;
    bool m_ships_auto_move = false;
    FresnelLight m_fresnel_light;
    jVector<Node*> m_deflected;  ///< effects that the deflector follows; owned by the world
    jVector<Object*> m_objects;  ///< owned by the world
    bool m_raining = false;
    Node* m_rain = nullptr;  ///< owned by the world, as the next four
    Node* m_hail = nullptr;
    Node* m_snow = nullptr;
    ObjectTerrain* m_terrain = nullptr;
    ObjectOcean* m_ocean = nullptr;
    jVector<Track*> m_own_tracks;       ///< owned, in order of loading; the base's list stays empty
    std::int32_t m_visibility = 0;      ///< metres, a multiple of 300
    std::int32_t m_fog_visibility = 0;  ///< metres
    std::uint16_t m_navi_light = 1;
    dmat4 m_start_transform;
    bool m_destroyed = false;
    Stopwatch m_fly_stopwatch;
    PlaneFlyKit m_fly_kit;
    float m_play_time = 0.0f;  ///< seconds on the file's timeline
    float m_play_rate = 3.0f;
    bool m_moving_forward = false;
    PLAYER_MODE m_player_mode = FIRST_VIEW;
    Node* m_third_target = nullptr;  ///< target of the third-person camera; owned by the world
    dquat m_third_rotation;          ///< last pose of the third-person view
    dvec3 m_third_position;
    bool m_world_enabled = true;
    // Panels and their elements that change; null before `init`; owned by the UI root.
    UIHLayout* m_camera_bar = nullptr;
    UIVLayout* m_button_column = nullptr;
    UIGridLayout* m_test_panel = nullptr;
    UIButton* m_view_button = nullptr;
    UIButton* m_fly_mode_button = nullptr;
    UILabel* m_warning_label = nullptr;
    UILabel* m_visibility_label = nullptr;
    jVector<jString> m_key_controls;    ///< texts of configured keys
    float m_target_head_offset = 0.0f;  ///< metres; printed by the keys that change it
    FLY_MODE m_fly_mode = DATA_FLY;
    LinkCounts m_link_counts;
    UdpSendData m_last_feedback;
    jVector<UdpRecvData> m_records;    ///< the records being applied
    jVector<NodeTrigger*> m_triggers;  ///< connected triggers
    mutable jVector<Node*> m_picked;   ///< reused: a pick allocates no memory
};
