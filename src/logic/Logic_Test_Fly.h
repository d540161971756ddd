// The flight-test scene's logic: a table of contents by subject, each with a source file of its own.
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

/// Where the view is. Other values are kept and leave the camera alone.
enum PLAYER_MODE : std::int32_t { FIRST_VIEW = 0, THIRD_VIEW = 1, FREE_VIEW = 2 };
/// What moves the aircraft: the host's records, its own step, a recorded path. Other values are kept and move nothing.
enum FLY_MODE : std::int32_t { DATA_FLY = 0, MANUAL_FLY = 1, AUTO_FLY = 2 };

/// What went over the host link so far.
struct LinkCounts {
    std::uint64_t records = 0;   ///< host records applied
    std::uint64_t feedback = 0;  ///< feedback records sent
    std::uint64_t unsent = 0;    ///< feedback records that the system refused to send
};

/// Local transforms of places on the helicopter's model; identity for one that the model lacks.
struct HelicopterPlaces {
    dmat4 left[3];    ///< "dl_0" to "dl_2"
    dmat4 right[3];   ///< "dr_0" to "dr_2"
    dmat4 sonar;      ///< "sonar"
    dmat4 winch;      ///< "winch"
    dmat4 deflector;  ///< "deflector": the plane that the downwash does not pass; its height follows the effects
    dmat4 eye;        ///< "cam_first_player": the pilot's
};

/// The scene's behaviour. The engine drives it through `LogicBase`; what lies beyond is for the host application. Node
/// and object pointers that it hands out are the world's. REQUIRES that nobody removes the aircraft's model, the
/// carrier, the terrain, the ocean or the weather's nodes from the world while the logic lives.
class LOGIC_API Logic_Test_Fly final : public LogicBase, public MsgNode {
public:
    static constexpr int VISIBILITY_STEP = 300;  ///< metres
    using MissileCallback = HitCallback;

    Logic_Test_Fly(World* world, CameraControl* camera);
    Logic_Test_Fly(const Logic_Test_Fly&) = delete;
    Logic_Test_Fly& operator=(const Logic_Test_Fly&) = delete;
    ~Logic_Test_Fly() override;

    // Life and frame: Logic_Test_Fly.cpp
    jString getWorldPath() const override;
    bool init() override;
    void update(float dt) override;
    /// Closes the receiver and the sender to the host.
    void release() override;
    // Nothing happens on these.
    void render() override;
    void onMouseDown(const GUIEventMouse& event, IApp* app) override;
    void onMouseUp(const GUIEventMouse& event, IApp* app) override;
    void onMouseMove(const GUIEventMouse& event, IApp* app) override;
    void onKeyPress(const GUIEventKey& event, IApp* app) override;
    /// Message 654321 levels the camera.
    void processMsg(UiMsg* msg) override;
    /// Puts the scene back to its start and tells so (notification 2).
    void reset();

    // Configuration: _config.cpp
    /// Reads the configuration file, unless the application did; without it every key has its default. Loads the
    /// recorded flight.
    void init_config();
    /// Airport lights off, third-person view, flight mode as configured.
    void default_setting();

    // Environment: _environment.cpp
    /// Looks the weather's nodes, the terrain and the ocean up; the ocean keeps its own sea state from now on. Without
    /// terrain the feedback has no heights.
    void init_environment();
    /// Loads the tracks that this logic sets itself, besides those of `LogicBase::init`.
    void load_tracks();
    /// These set their track, 0..1, if it was loaded. Particles are the track's to switch.
    void setRain(float amount) override;
    void setSnow(float amount) override;
    void setTod(float time) override;
    /// Sets a track by its full path, 0..100 percent; nothing when it was not loaded.
    void set_anim(jString path, float percent);
    float getRain() const;  ///< position of the rain's track, 0..1; 0 without it
    float getSnow() const;  ///< of the snow's
    bool isRaining() const { return m_raining; }
    Node* getRainNode() const { return m_rain; }       ///< null without one
    Node* getHailNode() const { return m_hail; }       ///< null without one
    Node* getSnowNode() const { return m_snow; }       ///< null without one
    ObjectOcean* getOcean() const { return m_ocean; }  ///< null without one
    /// Visibility in steps of 300 m: tells the fog's value to whoever draws it.
    void setVisibilityDistance(int steps);
    int getVisibilityDistance() const;         ///< steps of 300 m
    const jString& getVisibilityText() const;  ///< the label's; empty until a visibility was set
    /// Share of light that fog of this density takes over `base` metres: the calibration of the fog's value.
    static double calFog(double base, double density);
    /// Fires notification 20 with the fog's value for a visibility in metres, 0.39 at 300 m and below, 1.01 at most.
    void use_visibility_set_fog(int metres);
    /// The visibility in metres, 300 at least, that the last notification 20 was computed from, set before it is fired:
    /// the picture's extinction is 3.912 / visibility. 0 before the first.
    int getFogVisibility() const;
    // Whether the navigation lights are on, 1 at first as the models have them. Kept for the host application.
    void setNaviLight(unsigned short value);
    int getNaviLight() const;

    // Host link: _link.cpp
    /// In data flight opens the receiver and the senders anew; kits of an earlier call stay as they are.
    void init_udp();
    bool isReceiverReady() const { return m_recv_ready; }
    bool isSenderReady() const { return m_send_ready; }
    /// In data flight applies what has arrived.
    void receive_data();
    void use_recv_data(jVector<UdpRecvData>& records);
    /// Keeps the host's order; a change to 1 resets the scene.
    void apply_status(const UdpRecvData& record);
    // Where the carried fields of a record are to be applied; they are not interpreted.
    void apply_plane(UdpRecvData& record);
    void apply_lights(UdpRecvData& record);
    void apply_ships(UdpRecvData& record);
    void apply_targets(UdpRecvData& record);
    void print_recv_data(const UdpRecvData& record);
    int getLastOrder() const { return m_last_order; }
    const LinkCounts& getLinkCounts() const { return m_link_counts; }

    // Terrain feedback: _feedback.cpp
    /// Sends what lies under the wheels, while the host's order is 2 or orders are ignored.
    void send_udp();
    /// Terrain height in metres under a place (longitude, latitude in degrees); -100 where there is none or it is
    /// lower.
    float calc_height(const dvec3& geo) const;
    void print_send_data(const UdpSendData& record);
    const UdpSendData& getLastFeedback() const { return m_last_feedback; }  ///< as it was sent
    /// Connects the collision triggers; false when the world has none. REQUIRES that they outlive the logic.
    bool init_triggers();
    // The aircraft's body came into a trigger, or left one: the feedback's collision flag. Other nodes are ignored.
    void on_enter_trigger(Node* node);
    void on_exit_trigger(Node* node);

    // Aircraft: _aircraft.cpp
    /// Makes the configured aircraft at the start node. Without that node, with another type or a model that cannot be
    /// loaded there is none: the console and the log say why. REQUIRES that it was not called before.
    void init_aircraft();
    /// Puts the aircraft back, undamaged: the jet to where the start node is now, the aerobatic aircraft to where it
    /// was placed first; the helicopter stops where it is. Nothing without the start node.
    void reset_plane();
    /// A shape of the aircraft's body touched something: changes nothing.
    void on_plane_hit(Body* body, int shape);
    /// The aircraft's destruction has played: shows it destroyed. The action is not looked at.
    void on_plane_destory(Action* action);
    /// Puts the first deflector of a particle system under it, in the helicopter's frame, at its own height. Other
    /// nodes, and systems without a deflector, are left alone.
    void update_deflector(Node* node);
    const jString& getAircraftType() const { return m_aircraft_type; }
    PlaneBase* getAircraft() const { return m_aircraft; }       ///< owned by the logic; null without one
    Helicopter* getHelicopter() const { return m_helicopter; }  ///< owned by the logic; null without one
    /// The helicopter's wipers; nothing without a helicopter.
    void set_wipers(bool on);
    const HelicopterPlaces& getHelicopterPlaces() const { return m_heli_places; }
    int getControlCount() const;                                 ///< control nodes that the aircraft's model has
    Object* getAircraftNode() const { return m_aircraft_node; }  ///< the plane's model; null without one
    Object* getModel() const;  ///< the plane's or the helicopter's; null without either
    const dmat4& getStartTransform() const { return m_start_transform; }  ///< where the aircraft was placed
    const jVector<Object*>& getObjects() const { return m_objects; }      ///< models that the logic placed

    // Ships and the landing lens: _ships.cpp
    /// Makes the ship of the carrier node, at rest where "start_ship1" stands, its body off. Without that carrier there
    /// is none.
    void init_ships();
    /// The ship's step, while the flag is set: wake and forces. For the host application, which enables the ship's
    /// body; after `update` and before the physics step.
    void ships_auto_move();
    void setShipsAutoMove(bool moves) { m_ships_auto_move = moves; }
    Ship* getShip() const { return m_ship; }             ///< owned by the logic; null without one
    bool isShipsReady() const { return m_ships_ready; }  ///< `init_ships` has run
    const dmat4& getShipStartTransform() const { return m_ship_start_transform; }  ///< where the ship was put
    /// Looks the lens of a ship up; its lamp is chosen for the camera's node.
    void init_fresnel_light(Object* ship);
    const FresnelLight& getFresnelLight() const { return m_fresnel_light; }

    // Missiles: _missiles.cpp
    /// Fires a missile from the aircraft, 5 m ahead of it: 300 m/s for 20 s. Without an aircraft the missile that was
    /// made stays allocated and nothing happens.
    void emit_missile();
    /// Takes the missiles that have ended, seen by their node being switched off, out of the world, and tells of each
    /// before (notification 4). The last of the list takes the place of one that goes and is looked at with the next
    /// call. Nothing when a handler of that notification calls it.
    void update_missle();
    /// A missile's body met something: it is switched off and bursts where it met it (notification 8). A body that is
    /// switched off already, and null, are ignored.
    void on_missile_hit(Body* body, int shape);
    int getNumMissiles() const { return m_missiles.size(); }
    ObjectPrefab* getMissile(int i) const { return m_missiles[i].prefab; }  ///< in order of the list; the world's

    // Targets: _targets.cpp
    /// Makes the target of that name or moves it. Its model is the record's path or, without one, that of its type in
    /// the configuration's "target_type". Tells of a new one (notification 5). False, with one error logged, when there
    /// is none of that name and none can be made.
    bool apply_target(TargetInfo info);
    bool remove_target(const jString& name);        ///< false when there is none
    Target* get_target(const jString& name) const;  ///< null when there is none; valid until it is removed or made anew
    const jMap<jString, std::unique_ptr<Target, jDeleter>>& getTargets() const { return m_targets; }  ///< by name
    int getNumTargets() const { return static_cast<int>(m_targets.size()); }
    /// The target nearest to the aircraft; of equally far ones the first by name. Null, with a line printed, when none
    /// is nearer than 100 km or there is no aircraft.
    Node* get_min_distance_target() const;
    float get_min_distance_target_dis() const;  ///< metres; 100000 when there is none nearer

    // Effects: _effects.cpp
    /// Blows the aircraft up: an effect where it is, and its destroyed look 0.2 s later. False without an aircraft.
    bool plan_explosion();
    bool isExploded() const { return m_exploded; }  ///< once it was, for good
    /// Reads the prefabs of weapons and effects once, so that they are there when needed (notification 12, each).
    void prefab_cache();
    /// Adds a prefab of that name to the world (notification 5); the world owns it. Null, with an error logged, when it
    /// cannot be loaded; the failed object stays allocated.
    ObjectPrefab* create_objectPrefab(jString path, jString name);
    /// Plays an effect once for so many seconds and tells of it (notification 8). `place`: world frame.
    void start_effect(const jString& path, float duration, const dmat4& place);
    /// Ends every particle in the world.
    void clear_all_particles();

    // The aircraft's controls: _controls.cpp
    // A control of the panel was moved; the element's id is the position of its control node. The value is stored at
    // that place of the control values, if there is one, and moves the aircraft's node. An aircraft of a type that
    // such a control does not move leaves both alone.
    void set_node_deflection(const GUIEventChange& event, UIElement* element);  ///< degrees; jet, aerobatic aircraft
    void set_node_offset(const GUIEventChange& event, UIElement* element);      ///< from here on aerobatic aircraft
    void set_node_uv_offset(const GUIEventChange& event, UIElement* element);
    void set_node_digit(const GUIEventChange& event, UIElement* element);  ///< truncated to an integer
    void set_node_onoff(const GUIEventChange& event, UIElement* element);
    void toggle_light();       ///< landing light of the jet, search light of the helicopter
    void set_gear(bool down);  ///< at once, on the carrier jet; nothing on another aircraft
    /// `set_gear`; the event and the element are not looked at.
    void on_open_undercarriage(const GUIEventMouse& event, UIElement* element);
    void on_close_undercarriage(const GUIEventMouse& event, UIElement* element);

    // Flight modes: _modes.cpp
    /// Any value is kept. Data flight stops the playback, puts the aircraft where the recorded flight begins and opens
    /// the host link when it is not open; automatic flight resets the scene and starts the playback.
    void set_fly_mode(FLY_MODE mode);
    void change_flymode();  ///< the next of the three modes
    FLY_MODE getFlyMode() const { return m_fly_mode; }
    const jString& getFlyModeText() const;  ///< the fly mode button's; empty before `init`
    /// While the push is on, moves the aircraft's model along its own +Y at 30 m/s for dt seconds.
    void move_forward(float dt);
    void set_moving_forward(bool moves) { m_moving_forward = moves; }  ///< the push
    void back_to_start();  ///< push off, the aircraft to the start node; nothing without either
    // Event and element are not looked at.
    void on_move_foward(const GUIEventMouse& event, UIElement* element);    ///< push on or off
    void on_reset_postion(const GUIEventMouse& event, UIElement* element);  ///< push off, aircraft to the start node
    bool isMovingForward() const { return m_moving_forward; }

    // Recorded flight: _playback.cpp
    /// Loads "data/www.dat", lowers the start node by 0.2 m and turns the path to start there; nothing without that
    /// node. REQUIRES that it was not called before.
    void local_data_init();
    /// Plays from 23 s on the file's time line, the aircraft standing at the start node.
    void local_data_start_fly();
    /// While playing, moves on by three times the time since the start and applies the state there; begins again after
    /// the last frame.
    void local_data_update_fly();
    void local_data_stop_fly();
    /// The recording's first state and the engine off; it goes on playing when it does.
    void local_data_reset_fly();
    bool isPlaying() const { return m_fly_stopwatch.isRunning(); }
    float getPlayTime() const { return m_play_time; }  ///< seconds on the file's time line

    // View: _view.cpp. Without a camera node nothing moves.
    void swap() override;
    /// Any value is kept; one that is no view leaves the camera alone. The third-person view comes back as it was left.
    void set_player_mode(PLAYER_MODE mode);
    PLAYER_MODE getPlayerMode() const { return m_player_mode; }
    /// The next of the three views.
    void change_view();
    const jString& getViewText() const;  ///< the view button's; empty before `init`
    /// Puts the camera at its distance from the aircraft, against the way that it looks. Until there is an aircraft
    /// only the pose is kept. Always true.
    bool update_third_view();
    /// Goes nearer by so many metres, up to 1 m.
    bool on_third_view_wheel(float step);
    /// Turns the camera round the point ahead of it at the third-person distance: counter-clockwise and upward,
    /// degrees. False when there is nothing to turn.
    bool rot_around(float dx, float dy);
    /// While the left button is held, W A S D move the camera for dt seconds at the camera's speed, four times that
    /// with Shift; Ctrl holds it back.
    void cam_mov(float dt);
    /// While the left or the right button is held, turns the camera by degrees: dx to the right, dy downward. Ctrl
    /// holds it back.
    void cam_free_rot(float dx, float dy);
    /// Longitude, latitude in degrees, height in metres; the rotation stays.
    void set_cam_pos_geo(const dvec3& geo);
    dvec3 get_cam_pos_geo() const;

    // Panels: _ui.cpp. The UI root owns them: REQUIRES that it is not cleared while frames go on, and that it is before
    // the logic ends if input goes on after that.
    /// Makes all three panels.
    void init_ui();
    /// Camera bar, warning and visibility.
    void init_ui_cam();
    void init_ui_btns();
    /// One row for each control node that the aircraft's file describes.
    void init_ui_test_btns();
    /// Puts the panels in the corners of the window as it is now, and shows the test panel in test mode.
    void update_ui_pos();
    // The buttons'; event and element are not looked at.
    void on_click_change_view(const GUIEventMouse& event, UIElement* element);
    void on_click_change_flymode(const GUIEventMouse& event, UIElement* element);
    void on_world_enable(const GUIEventMouse& event, UIElement* element);
    void on_click_reset(const GUIEventMouse& event, UIElement* element);

    // Input and picking: _input.cpp
    /// Keys and mouse of this frame.
    void update_input();
    /// Steps the third-person distance: outward by 1 m on an event without a turn, inward on every other.
    void onMouseWheel(const GUIEventWheel& event, IApp* app) override;
    /// Switches of the record prints, the light, the head offset and the test mode.
    void onKeyRelease(const GUIEventKey& event, IApp* app) override;
    /// The active object that a segment (geocentric metres) meets first, null when it meets none. `hit`, if not null,
    /// gets the place where; it is left alone without a hit.
    Object* select_object(const dvec3& from, const dvec3& to, dvec3* hit = nullptr) const;

private:
    using ClickHandler = void (Logic_Test_Fly::*)(const GUIEventMouse&, UIElement*);
    using ChangeHandler = void (Logic_Test_Fly::*)(const GUIEventChange&, UIElement*);
    struct Missile {
        ObjectPrefab* prefab;       ///< the world's
        ActionEmitMissile* flight;  ///< the action manager's; null once it has ended
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

    jVector<UISlider*> m_sliders;       ///< of the test panel, in row order; the UI root's
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
    jVector<float> m_control_values;   ///< one a control of the panel, by the position of its node
    jVector<dmat4> m_head_transforms;  ///< the first is the pilot's eye in the aircraft's frame
    HitCallback m_hit_callback;
    MissileCallback m_missile_callback;  ///< of every missile's body
    jVector<Missile> m_missiles;         ///< in order of firing, but for what `update_missle` moved
    bool m_retiring_missiles = false;    ///< `update_missle` runs
    jMap<jString, std::unique_ptr<Target, jDeleter>> m_targets;
    mutable jVector<Node*> m_target_nodes;  ///< of the map, in its order; made when asked for after a change
    mutable bool m_target_nodes_stale = false;
    bool m_exploded = false;
    TimerManager m_timer_manager;
    UdpRecvKit* m_receiver = nullptr;
    UdpSendKit* m_sender = nullptr;
    UdpSendKit* m_multicast_sender = nullptr;  ///< lives until the process ends

    PlaneJ15* m_jet = nullptr;              ///< the aircraft when it is the carrier jet; owned
    PlaneExtra300s* m_aerobatic = nullptr;  ///< the aircraft when it is the aerobatic one; owned
    Object* m_aircraft_node = nullptr;      ///< the world's
    Helicopter* m_helicopter = nullptr;     ///< the aircraft when it is the helicopter; owned
    HelicopterPlaces m_heli_places;
    HeliEffectsKit m_heli_effects;
    Ship* m_ship = nullptr;
    dmat4 m_ship_start_transform;
    bool m_ships_ready = false;
    bool m_ships_auto_move = false;
    FresnelLight m_fresnel_light;
    jVector<Node*> m_deflected;  ///< effects that the helicopter's deflector follows, the world's
    jVector<Object*> m_objects;  ///< the world's
    bool m_raining = false;
    Node* m_rain = nullptr;  ///< the world's, as those below
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
    float m_play_time = 0.0f;  ///< seconds on the file's time line
    float m_play_rate = 3.0f;
    bool m_moving_forward = false;
    PLAYER_MODE m_player_mode = FIRST_VIEW;
    Node* m_third_target = nullptr;  ///< what the third-person camera orbits, the world's
    dquat m_third_rotation;          ///< the third-person view as it was left
    dvec3 m_third_position;
    bool m_world_enabled = true;
    // Panels and what changes on them, null before `init`; the UI root's.
    UIHLayout* m_camera_bar = nullptr;
    UIVLayout* m_button_column = nullptr;
    UIGridLayout* m_test_panel = nullptr;
    UIButton* m_view_button = nullptr;
    UIButton* m_fly_mode_button = nullptr;
    UILabel* m_warning_label = nullptr;
    UILabel* m_visibility_label = nullptr;
    jVector<jString> m_key_controls;    ///< texts of configured keys
    float m_target_head_offset = 0.0f;  ///< told by the keys that change it
    FLY_MODE m_fly_mode = DATA_FLY;
    LinkCounts m_link_counts;
    UdpSendData m_last_feedback;
    jVector<UdpRecvData> m_records;    ///< those being applied
    jVector<NodeTrigger*> m_triggers;  ///< those connected
    mutable jVector<Node*> m_picked;   ///< kept so that a pick allocates nothing
};
