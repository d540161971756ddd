// The flight-test scene's logic: a table of contents by subject, each with a source file of its own.
#pragma once

#include <engine/action/Action.h>
#include <engine/action/TimerManager.h>
#include <engine/core/Clock.h>
#include <engine/core/Message.h>

#include "common/LogicBase.h"
#include "src/kit/UdpRecords.h"
#include "src/logic/HitCallback.h"

class ControlApp;
class NodeTrigger;
class ObjectOcean;
class ObjectTerrain;
class PlaneBase;
class PlaneJ15;
class UIElement;
class UdpRecvKit;
class UdpSendKit;

/// Where the view is. Other values are kept and leave the camera alone.
enum PLAYER_MODE : std::int32_t { FIRST_VIEW = 0, THIRD_VIEW = 1, FREE_VIEW = 2 };
/// What moves the aircraft: the host's records, its own step, a recorded path. Other values are kept and move nothing.
enum FLY_MODE : std::int32_t { DATA_FLY = 0, MANUAL_FLY = 1, AUTO_FLY = 2 };

/// What went over the host link so far.
struct LinkCounts {
    std::uint64_t records = 0;   ///< host records applied
    std::uint64_t feedback = 0;  ///< feedback records sent
};

/// The scene's behaviour. The engine drives it through `LogicBase`; what lies beyond is for the host application. Node
/// and object pointers that it hands out are the world's. REQUIRES that nobody removes the aircraft's model, the
/// terrain, the ocean or the weather's nodes from the world while the logic lives.
class LOGIC_API Logic_Test_Fly final : public LogicBase, public MsgNode {
public:
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
    /// Reads the configuration file; without it every key has its default.
    void init_config();
    /// Airport lights off, third-person view, flight mode as configured.
    void default_setting();
    /// Frames a second that the host application is to let through at most.
    double get_fps_limit() const;

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
    bool isRaining() const { return m_raining; }
    Node* getRainNode() const { return m_rain; }       ///< null without one
    Node* getHailNode() const { return m_hail; }       ///< null without one
    Node* getSnowNode() const { return m_snow; }       ///< null without one
    ObjectOcean* getOcean() const { return m_ocean; }  ///< null without one
    /// Visibility in steps of 300 m: tells the fog's value to whoever draws it.
    void setVisibilityDistance(int steps);
    int getVisibilityDistance() const;  ///< steps of 300 m
    /// The label's text; empty until a visibility was set.
    const jString& getVisibilityText() const { return m_visibility_text; }
    /// Share of light that fog of this density takes over `base` metres: the calibration of the fog's value.
    static double calFog(double base, double density);
    /// Fires notification 20 with the fog's value for a visibility in metres, 0.39 at 300 m and below, 1.01 at most.
    void use_visibility_set_fog(int metres);
    // Kept for the host application.
    void setNaviLight(unsigned short value) { m_navi_light = value; }
    int getNaviLight() const { return m_navi_light; }

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
    /// Puts the aircraft back to where the start node is now, undamaged; nothing without that node.
    void reset_plane();
    /// Gear up and down at once, on the carrier jet; the event and the element are not looked at.
    void on_open_undercarriage(const GUIEventMouse& event, UIElement* element);
    void on_close_undercarriage(const GUIEventMouse& event, UIElement* element);
    /// A shape of the aircraft's body touched something: changes nothing.
    void on_plane_hit(Body* body, int shape);
    const jString& getAircraftType() const { return m_aircraft_type; }
    PlaneBase* getAircraft() const { return m_aircraft; }        ///< owned by the logic; null without one
    int getControlCount() const;                                 ///< control nodes that the aircraft's model has
    Object* getAircraftNode() const { return m_aircraft_node; }  ///< its model; null without one

    // Flight modes: _modes.cpp
    /// Any value is kept. Data flight opens the host link when it is not open; automatic flight resets the scene.
    void set_fly_mode(FLY_MODE mode);
    FLY_MODE getFlyMode() const { return m_fly_mode; }

    // View: _view.cpp. Without a camera node nothing moves.
    void swap() override;
    /// Any value is kept; one that is no view leaves the camera alone. The third-person view comes back as it was left.
    void set_player_mode(PLAYER_MODE mode);
    PLAYER_MODE getPlayerMode() const { return m_player_mode; }
    /// The next of the three views.
    void change_view();
    /// The mode's name, as the view button shows it; empty until a view was chosen.
    const jString& getViewText() const { return m_view_text; }
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
    void load_track(const jString& path) override;
    Track* get_track(const jString& path) override;
    void init_jet(const dmat4& start);
    bool is_jet() const;
    void update_aircraft(float dt);
    void measure_gears(UdpSendData& record) const;
    void disconnect_triggers();
    void follow_aircraft();
    void update_keys(ControlApp& control);
    void zoom_third_view(double factor);
    void place_camera(const dvec3& position, const dquat& rotation);
    void set_view_text(const char* text) { m_view_text = text; }
    void release_tracks();

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
    jVector<dmat4> m_head_transforms;  ///< the first is the pilot's eye in the aircraft's frame
    HitCallback m_hit_callback;
    TimerManager m_timer_manager;
    UdpRecvKit* m_receiver = nullptr;
    UdpSendKit* m_sender = nullptr;
    UdpSendKit* m_multicast_sender = nullptr;  ///< lives until the process ends

    PlaneJ15* m_jet = nullptr;          ///< the aircraft when it is the carrier jet; owned
    Object* m_aircraft_node = nullptr;  ///< the world's
    bool m_raining = false;
    Node* m_rain = nullptr;  ///< the world's, as those below
    Node* m_hail = nullptr;
    Node* m_snow = nullptr;
    ObjectTerrain* m_terrain = nullptr;
    ObjectOcean* m_ocean = nullptr;
    jVector<Track*> m_own_tracks;   ///< owned, in order of loading; the base's list stays empty
    std::int32_t m_visibility = 0;  ///< metres, a multiple of 300
    jString m_visibility_text;
    std::uint16_t m_navi_light = 0;
    dmat4 m_start_transform;
    bool m_destroyed = false;
    Stopwatch m_fly_stopwatch;
    PLAYER_MODE m_player_mode = FIRST_VIEW;
    jString m_view_text;
    Node* m_third_target = nullptr;  ///< what the third-person camera orbits, the world's
    dquat m_third_rotation;          ///< the third-person view as it was left
    dvec3 m_third_position;
    jVector<jString> m_key_controls;    ///< texts of configured keys
    float m_target_head_offset = 0.0f;  ///< told by the keys that change it
    FLY_MODE m_fly_mode = DATA_FLY;
    LinkCounts m_link_counts;
    UdpSendData m_last_feedback;
    jVector<UdpRecvData> m_records;    ///< those being applied
    jVector<NodeTrigger*> m_triggers;  ///< those connected
    mutable jVector<Node*> m_picked;   ///< kept so that a pick allocates nothing
};
