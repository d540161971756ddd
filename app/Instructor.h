// What an instructor does to the scene: the one home of the panel's buttons, the script's lines and the keys.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/math/Transform.h"

class Engine;
class Logic_Test_Fly;
class Node;

/// A place seen from the aircraft, over level ground.
struct TargetPlace {
    double bearing = 0.0;   ///< degrees clockwise from north
    double distance = 0.0;  ///< metres
    double height = 0.0;    ///< metres above the ground or the sea there
    double heading = 0.0;   ///< of the target, degrees clockwise from north
};

/// The health of the host link.
struct LinkHealth {
    std::uint64_t records = 0;   ///< applied
    std::uint64_t feedback = 0;  ///< sent
    std::uint64_t refused = 0;   ///< datagrams from elsewhere
    double age = -1.0;           ///< seconds since the last record was applied; below 0 when there was none
};

/// Works on the logic through what it exports. Operations that return a bool say with one log line why they did
/// nothing. Lives no longer than the engine and the logic.
class Instructor {
public:
    Instructor(Engine& engine, Logic_Test_Fly& logic) : m_engine(engine), m_logic(logic) {}
    Instructor(const Instructor&) = delete;
    Instructor& operator=(const Instructor&) = delete;

    /// Once a frame, before the logic's update: retires spent missiles, runs torpedoes and watches the link.
    void update();

    // Weather. Values outside the range are taken into it.
    void setRain(double percent);
    void setSnow(double percent);
    void setTime(double hours);         ///< 0..24
    void setVisibility(double metres);  ///< in steps of 300
    void setSea(double beaufort);       ///< 0..12, whole; nothing without an ocean
    double getRain() const { return m_rain; }
    double getSnow() const { return m_snow; }
    double getTime() const;
    double getVisibility() const;  ///< metres; 0 until one was set
    double getSea() const;

    // The aircraft.
    void setNavigationLights(bool on);  ///< the lights of its model whose names begin with "navigation"
    bool areNavigationLightsOn() const { return m_navigation_lights; }
    void switchLight();  ///< landing or search light, on and off
    void setGear(bool down);
    void setPush(bool on);  ///< ahead at 30 m/s
    bool isPushed() const;
    void backToStart();
    bool fire();     ///< a missile of the plane's; the helicopter has none
    bool explode();  ///< blows the plane up, until a reset
    void reset();    ///< the whole scene

    // View and flight mode, in the logic's numbers.
    void setView(int view);
    void setFlightMode(int mode);
    void nextView();
    void levelView();
    void showTestPanel();  ///< or hides it

    // Targets.
    bool addTarget(const std::string& name, int type, const TargetPlace& place);
    bool moveTarget(const std::string& name, const TargetPlace& place);  ///< it glides there and keeps its model
    bool removeTarget(const std::string& name);
    const std::vector<std::string>& getTargets() const { return m_targets; }  ///< names in order of adding
    bool hasTarget(const std::string& name) const;
    /// The nearest target's name, empty when there is none within 100 km; `distance` in metres from the aircraft.
    std::string getNearest(double& distance) const;

    /// Plays an effect once at a place; names are those of `getEffects`.
    bool playEffect(const std::string& name, const TargetPlace& place);
    static std::vector<std::string> getEffects();
    /// A torpedo runs from a place along its heading for a minute, at 20 m/s; its wake shows it.
    bool launchTorpedo(const TargetPlace& place);

    LinkHealth getLinkHealth() const;

private:
    struct Torpedo {
        Node* node;   ///< the world's
        double left;  ///< seconds of its run; below 0 its wake dies away
    };

    bool findPlace(const TargetPlace& place, const std::string& what, dvec3& geo) const;
    double findGround(const dvec3& geo, double from) const;
    void sendKey(int key, int modifier);
    void runTorpedoes(double dt);

    Engine& m_engine;
    Logic_Test_Fly& m_logic;
    std::vector<std::string> m_targets;
    std::vector<Torpedo> m_torpedoes;
    double m_rain = 0.0, m_snow = 0.0;
    bool m_navigation_lights = true;
    std::uint64_t m_records = 0;  ///< seen
    double m_record_time = -1.0;  ///< when the last came, seconds of the engine's clock
};
