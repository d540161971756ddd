// Read access to the scene for front ends: poses, velocities, surfaces, line of sight, weather and the host link.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/math/Transform.h"

class Engine;
class Logic_Test_Fly;
class Node;
class Object;

/// Pose and velocity of an object.
struct MotionState {
    dvec3 geodetic;  ///< longitude, latitude in degrees, height above the ellipsoid in metres
    dvec3 wgs_hpr;   ///< heading clockwise from north, pitch nose up, roll right wing down; degrees
    dvec3 velocity;  ///< east, north, up; m/s, over the last frame
};

/// The surface below a point.
struct SurfaceBelow {
    enum Kind { OBJECT, TERRAIN, WATER } kind = WATER;
    double height = 0.0;             ///< metres above the ellipsoid; for water the mean level, 0
    const Object* object = nullptr;  ///< for OBJECT; valid until the object is removed from the world
};

/// The first hit of a line of sight.
struct SightHit {
    dvec3 geodetic;
    const Object* object = nullptr;  ///< may be the terrain; valid until the object is removed from the world
};

struct SceneWeather {
    double rain = 0.0, snow = 0.0;  ///< percent
    double time = 0.0;              ///< local solar hours, 0 to 24
    double visibility = 0.0;        ///< metres; 0 until it is set
    double sea = 0.0;               ///< Beaufort
    dvec3 wind;                     ///< east, north, up, m/s
    int year = 0, month = 0, day = 0;
};

/// Counters of the host link since the start.
struct LinkHealth {
    std::uint64_t records = 0;   ///< applied
    std::uint64_t feedback = 0;  ///< sent
    std::uint64_t unsent = 0;    ///< feedback that the system refused to send
    std::uint64_t refused = 0;   ///< datagrams from other senders
    double age = -1.0;           ///< seconds since the last record was applied; below 0 before the first
};

/// Reads the scene and changes nothing. Frame thread. The engine and the logic outlive it.
class SceneQuery {
public:
    SceneQuery(Engine& engine, const Logic_Test_Fly& logic) : m_engine(engine), m_logic(logic) {}
    SceneQuery(const SceneQuery&) = delete;
    SceneQuery& operator=(const SceneQuery&) = delete;

    /// Once a frame, after the physics step: measures velocities and the age of the link from frame to frame.
    void update();

    std::optional<MotionState> getAircraft() const;                       ///< empty without an aircraft
    std::optional<MotionState> getShip() const;                           ///< empty without a ship
    std::optional<MotionState> getTarget(const std::string& name) const;  ///< empty when there is no such target
    std::vector<std::string> getTargets() const;                          ///< names, sorted
    bool hasTarget(const std::string& name) const;
    /// Name of the target nearest to the aircraft within 100 km, empty when there is none; `distance` in metres.
    std::string getNearest(double& distance) const;

    bool areNavigationLightsOn() const;
    bool isPushed() const;
    bool isTestPanelShown() const;

    /// The highest surface at or below a geodetic point. For a point below ground or water, the surface above it.
    SurfaceBelow getSurfaceBelow(const dvec3& geodetic) const;
    /// The first obstacle between two geodetic points, empty when there is none. Water is transparent.
    std::optional<SightHit> getSightBlock(const dvec3& from, const dvec3& to) const;

    SceneWeather getWeather() const;
    LinkHealth getLink() const;

private:
    /// A node whose velocity is measured.
    struct Tracked {
        const Node* node = nullptr;
        dvec3 position;  ///< geocentric, in the last frame
        dvec3 velocity;  ///< geocentric, m/s
        void update(const Node* now, double dt);
    };

    std::optional<MotionState> getMotion(const Node* node, const dvec3& velocity) const;

    Engine& m_engine;
    const Logic_Test_Fly& m_logic;
    Tracked m_aircraft, m_ship;
    std::uint64_t m_records = 0;  ///< records counted so far
    double m_record_time = -1.0;  ///< time of the last record, seconds of the engine's clock
};
