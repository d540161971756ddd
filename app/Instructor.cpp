// The instructor's operations, between frames; `update` runs as each frame begins.
#include "Instructor.h"

#include <algorithm>
#include <cmath>

#include "engine/core/Engine.h"
#include "engine/net/SocketUDP.h"
#include "engine/scene/NodeWalk.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "src/logic/Logic_Test_Fly.h"
#include "src/logic/Target.h"
#include "src/logic/WeaponFiles.h"

namespace {

constexpr int LEVEL_CAMERA = 654321;  // message that the logic answers by levelling its camera
constexpr std::uint8_t CTRL = 1;      // flag of a key event

constexpr double TORPEDO_SPEED = 20.0, TORPEDO_RUN = 60.0;  // m/s; seconds
constexpr double WAKE_LIFE = 10.0;                          // seconds that its wake outlives it

constexpr struct {
    const char* name;
    const char* path;
    float duration;  // seconds
} EFFECTS[] = {{"explosion", weapons::EXPLOSION, 20.0f},
               {"aircraft_explosion", weapons::AIRCRAFT_EXPLOSION, 6.0f},
               {"water_explosion", weapons::WATER_EXPLOSION, 12.0f},
               {"water_drop", weapons::WATER_DROP, 12.0f},
               {"decoy", weapons::DECOY, 12.0f}};

void setPose(TargetInfo& info, const dvec3& geo, const TargetPlace& place) {
    info.pose[0] = geo.x;
    info.pose[1] = geo.y;
    info.pose[2] = geo.z;
    info.pose[4] = place.heading;
}

}  // namespace

void Instructor::update() {
    m_logic.update_missle();
    runTorpedoes(static_cast<double>(m_engine.getFrameTime()));
    const std::uint64_t records = m_logic.getLinkCounts().records;
    if (records != m_records) m_record_time = m_engine.getTime();
    m_records = records;
}

void Instructor::setRain(double percent) {
    m_rain = std::clamp(percent, 0.0, 100.0);
    m_logic.setRain(static_cast<float>(m_rain / 100.0));
}

void Instructor::setSnow(double percent) {
    m_snow = std::clamp(percent, 0.0, 100.0);
    m_logic.setSnow(static_cast<float>(m_snow / 100.0));
}

void Instructor::setTime(double hours) {
    m_logic.setTod(static_cast<float>(std::clamp(hours, 0.0, 24.0) / 24.0));
}

double Instructor::getTime() const {
    return static_cast<double>(m_engine.getWorld()->getEnvironment().time_of_day);
}

void Instructor::setVisibility(double metres) {
    m_logic.setVisibilityDistance(static_cast<int>(std::lround(metres / Logic_Test_Fly::VISIBILITY_STEP)));
}

double Instructor::getVisibility() const {
    return m_logic.getVisibilityDistance() * Logic_Test_Fly::VISIBILITY_STEP;
}

void Instructor::setSea(double beaufort) {
    if (ObjectOcean* const ocean = m_logic.getOcean()) ocean->setBeaufort(static_cast<int>(std::lround(beaufort)));
}

double Instructor::getSea() const {
    const ObjectOcean* const ocean = m_logic.getOcean();
    return ocean ? ocean->getBeaufort() : 0;
}

void Instructor::setNavigationLights(bool on) {
    m_navigation_lights = on;
    m_logic.setNaviLight(on ? 1 : 0);
    Object* const model = m_logic.getModel();
    if (!model) return;
    forEachNode(*model, [on](Node& node) {
        if (node.getName().rfind("navigation", 0) == 0) node.setEnabled(on);
    });
}

void Instructor::sendKey(int key, int modifier) {
    GUIEventKey event;
    event.key = static_cast<std::uint16_t>(key);
    event.modifier = static_cast<std::uint8_t>(modifier);
    m_logic.onKeyRelease(event, m_engine.getApp());
}

void Instructor::switchLight() {
    sendKey('g', 0);
}

void Instructor::showTestPanel() {
    sendKey('t', CTRL);
}

void Instructor::setGear(bool down) {
    if (down)
        m_logic.on_open_undercarriage({}, nullptr);
    else
        m_logic.on_close_undercarriage({}, nullptr);
}

void Instructor::setPush(bool on) {
    if (m_logic.isMovingForward() != on) m_logic.on_move_foward({}, nullptr);
}

bool Instructor::isPushed() const {
    return m_logic.isMovingForward();
}

void Instructor::backToStart() {
    m_logic.on_reset_postion({}, nullptr);
}

bool Instructor::fire() {
    if (m_logic.getAircraftNode()) {
        m_logic.emit_missile();
        return true;
    }
    jLog::warning("there is no aircraft that fires missiles");
    return false;
}

bool Instructor::explode() {
    if (m_logic.plan_explosion()) return true;
    jLog::warning("there is no aircraft to blow up");
    return false;
}

void Instructor::reset() {
    for (Torpedo& torpedo : m_torpedoes) torpedo.left = -WAKE_LIFE;
    m_logic.reset();
}

void Instructor::setView(int view) {
    m_logic.set_player_mode(static_cast<PLAYER_MODE>(view));
}

void Instructor::setFlightMode(int mode) {
    m_logic.set_fly_mode(static_cast<FLY_MODE>(mode));
}

void Instructor::nextView() {
    m_logic.change_view();
}

void Instructor::levelView() {
    UiMsg message{LEVEL_CAMERA};
    MsgNode::send(&message);
}

/// Height of the ground or the sea; of a deck when that lies no more than a little above `from`.
double Instructor::findGround(const dvec3& geo, double from) const {
    constexpr double STEP = 5.0;  // metres
    const EllipsoidModel& globe = m_engine.getEllipsoid();
    const double ground = std::max(static_cast<double>(m_logic.calc_height(geo)), 0.0);
    const double top = std::max(from, ground) + STEP;
    dvec3 hit;
    if (!m_logic.select_object(globe.toWorld({geo.x, geo.y, top}), globe.toWorld({geo.x, geo.y, ground}), &hit)) {
        return ground;
    }
    return globe.toWGS(hit).z;
}

/// False, with one log line, without an aircraft to measure from.
bool Instructor::findPlace(const TargetPlace& place, const std::string& what, dvec3& geo) const {
    const Object* const aircraft = m_logic.getModel();
    if (!aircraft) {
        jLog::warning("%s: there is no aircraft to measure from", what.c_str());
        return false;
    }
    const EllipsoidModel& globe = m_engine.getEllipsoid();
    const double azimuth = place.bearing * jMath::DEG2RAD;
    const dmat4 level = globe.getWGSTransform(aircraft->getWorldPosition());
    geo = globe.toWGS(level * (dvec3(std::sin(azimuth), std::cos(azimuth), 0.0) * place.distance));
    geo.z = findGround(geo, m_engine.getEllipsoid().toWGS(aircraft->getWorldPosition()).z) + place.height;
    return true;
}

bool Instructor::hasTarget(const std::string& name) const {
    return m_logic.get_target(name) != nullptr;
}

bool Instructor::addTarget(const std::string& name, int type, const TargetPlace& place) {
    if (hasTarget(name)) {
        jLog::warning("there is a target \"%s\" already", name.c_str());
        return false;
    }
    dvec3 geo;
    if (!findPlace(place, name, geo)) return false;
    TargetInfo info;
    info.name = name;
    info.type = static_cast<std::uint16_t>(type);
    setPose(info, geo, place);
    if (!m_logic.apply_target(info)) return false;
    m_targets.push_back(name);
    return true;
}

bool Instructor::moveTarget(const std::string& name, const TargetPlace& place) {
    const Target* const target = m_logic.get_target(name);
    dvec3 geo;
    if (!target) {
        jLog::warning("there is no target \"%s\" to move", name.c_str());
        return false;
    }
    target->getPrefab()->setEnabled(false);  // it is no ground of its own
    const bool found = findPlace(place, name, geo);
    target->getPrefab()->setEnabled(true);
    if (!found) return false;
    TargetInfo info = target->getInfo();
    setPose(info, geo, place);
    return m_logic.apply_target(info);
}

bool Instructor::removeTarget(const std::string& name) {
    std::erase(m_targets, name);
    if (m_logic.remove_target(name)) return true;
    jLog::warning("there is no target \"%s\" to remove", name.c_str());
    return false;
}

std::string Instructor::getNearest(double& distance) const {
    constexpr float NONE = 100000.0f;
    distance = static_cast<double>(m_logic.get_min_distance_target_dis());
    return distance < NONE ? m_logic.get_min_distance_target()->getName() : jString();
}

bool Instructor::playEffect(const std::string& name, const TargetPlace& place) {
    dvec3 geo;
    if (!findPlace(place, name, geo)) return false;
    for (const auto& effect : EFFECTS) {
        if (name != effect.name) continue;
        const EllipsoidModel& globe = m_engine.getEllipsoid();
        m_logic.start_effect(effect.path, effect.duration, globe.getWGSTransform(globe.toWorld(geo)));
        return true;
    }
    return false;
}

std::vector<std::string> Instructor::getEffects() {
    std::vector<std::string> names;
    for (const auto& effect : EFFECTS) names.emplace_back(effect.name);
    return names;
}

bool Instructor::launchTorpedo(const TargetPlace& place) {
    dvec3 geo;
    if (!findPlace(place, "torpedo", geo)) return false;
    Node* const torpedo = m_logic.create_objectPrefab(weapons::TORPEDO, "torpedo");
    if (!torpedo) return false;
    torpedo->setWgsPosition(geo);
    torpedo->setWgsHPR({place.heading, 0.0, 0.0});
    m_torpedoes.push_back({torpedo, TORPEDO_RUN});
    return true;
}

void Instructor::runTorpedoes(double dt) {
    const EllipsoidModel& globe = m_engine.getEllipsoid();
    for (Torpedo& torpedo : m_torpedoes) {
        torpedo.left -= dt;
        if (torpedo.left < 0.0) torpedo.node->setEnabled(false);
        const dmat4& now = torpedo.node->getWorldTransform();
        dvec3 geo = globe.toWGS(now.t + now.y * (TORPEDO_SPEED * dt));
        geo.z = globe.toWGS(now.t).z;
        torpedo.node->setWgsPosition(geo);
    }
    std::erase_if(m_torpedoes, [this](const Torpedo& torpedo) {
        if (torpedo.left > -WAKE_LIFE) return false;
        m_engine.getWorld()->removeNode(torpedo.node);
        return true;
    });
}

LinkHealth Instructor::getLinkHealth() const {
    const LinkCounts& counts = m_logic.getLinkCounts();
    const double age = m_record_time < 0.0 ? -1.0 : m_engine.getTime() - m_record_time;
    return {counts.records, counts.feedback, SocketUDP::getStats().refused, age};
}
