// Computes the answers from the current state of the world and the logic.
#include "app/scene/SceneQuery.h"

#include <algorithm>

#include "common/ship/Ship.h"
#include "engine/core/Engine.h"
#include "engine/net/SocketUDP.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/World.h"
#include "src/logic/Logic_Test_Fly.h"
#include "src/logic/Target.h"

namespace {

constexpr double MAX_SPEED = 2000.0;  // m/s; a faster motion is a teleport

}  // namespace

void SceneQuery::Tracked::update(const Node* now, double dt) {
    const dvec3 place = now ? now->getWorldPosition() : dvec3();
    const bool moves = now && now == node && dt > 0.0 && length(place - position) < MAX_SPEED * dt;
    velocity = moves ? (place - position) / dt : dvec3();
    node = now;
    position = place;
}

void SceneQuery::update() {
    const auto dt = static_cast<double>(m_engine.getFrameTime());
    const Ship* const ship = m_logic.getShip();
    m_aircraft.update(m_logic.getModel(), dt);
    m_ship.update(ship ? ship->getObject() : nullptr, dt);
    const std::uint64_t records = m_logic.getLinkCounts().records;
    if (records != m_records) m_record_time = m_engine.getTime();
    m_records = records;
}

std::optional<MotionState> SceneQuery::getMotion(const Node* node, const dvec3& velocity) const {
    if (!node) return std::nullopt;
    const dmat4 level = m_engine.getEllipsoid().getWGSTransform(node->getWorldPosition());
    return MotionState{node->getWgsPosition(),
                       node->getWgsHPR(),
                       {dot(velocity, level.x), dot(velocity, level.y), dot(velocity, level.z)}};
}

std::optional<MotionState> SceneQuery::getAircraft() const {
    return getMotion(m_logic.getModel(), m_aircraft.velocity);
}

std::optional<MotionState> SceneQuery::getShip() const {
    const Ship* const ship = m_logic.getShip();
    return getMotion(ship ? ship->getObject() : nullptr, m_ship.velocity);
}

std::optional<MotionState> SceneQuery::getTarget(const std::string& name) const {
    const Target* const target = m_logic.get_target(name);
    return target ? getMotion(target->getNode(), target->getVelocity()) : std::nullopt;
}

std::vector<std::string> SceneQuery::getTargets() const {
    std::vector<std::string> names;
    for (const auto& [name, target] : m_logic.getTargets()) names.push_back(name);
    return names;
}

bool SceneQuery::hasTarget(const std::string& name) const {
    return m_logic.get_target(name) != nullptr;
}

std::string SceneQuery::getNearest(double& distance) const {
    constexpr float NONE = 100000.0f;
    distance = static_cast<double>(m_logic.get_min_distance_target_dis());
    return distance < NONE ? m_logic.get_min_distance_target()->getName() : jString();
}

bool SceneQuery::areNavigationLightsOn() const {
    return m_logic.getNaviLight() != 0;
}

bool SceneQuery::isPushed() const {
    return m_logic.isMovingForward();
}

bool SceneQuery::isTestPanelShown() const {
    return m_logic.isTestMode();
}

SurfaceBelow SceneQuery::getSurfaceBelow(const dvec3& geodetic) const {
    const auto terrain = static_cast<double>(m_logic.calc_height(geodetic));
    SurfaceBelow surface{terrain > 0.0 ? SurfaceBelow::TERRAIN : SurfaceBelow::WATER, std::max(terrain, 0.0)};
    if (geodetic.z <= surface.height) return surface;
    const dvec3 foot(geodetic.x, geodetic.y, surface.height);
    if (const std::optional<SightHit> hit = getSightBlock(geodetic, foot)) {
        surface.height = hit->geodetic.z;
        if (hit->object->getType() != Node::TERRAIN) {
            surface.kind = SurfaceBelow::OBJECT;
            surface.object = hit->object;
        }
    }
    return surface;
}

std::optional<SightHit> SceneQuery::getSightBlock(const dvec3& from, const dvec3& to) const {
    const EllipsoidModel& globe = m_engine.getEllipsoid();
    dvec3 hit;
    const Object* const object = m_logic.select_object(globe.toWorld(from), globe.toWorld(to), &hit);
    return object ? std::optional(SightHit{globe.toWGS(hit), object}) : std::nullopt;
}

SceneWeather SceneQuery::getWeather() const {
    const Environment& environment = m_engine.getWorld()->getEnvironment();
    SceneWeather weather;
    weather.rain = static_cast<double>(m_logic.getRain()) * 100.0;
    weather.snow = static_cast<double>(m_logic.getSnow()) * 100.0;
    weather.time = static_cast<double>(environment.time_of_day);
    weather.visibility = m_logic.getFogVisibility();
    if (const ObjectOcean* const ocean = m_logic.getOcean()) weather.sea = ocean->getBeaufort();
    weather.wind = dvec3(environment.wind);
    weather.year = environment.year;
    weather.month = environment.month;
    weather.day = environment.day;
    return weather;
}

LinkHealth SceneQuery::getLink() const {
    const LinkCounts& counts = m_logic.getLinkCounts();
    const double age = m_record_time < 0.0 ? -1.0 : m_engine.getTime() - m_record_time;
    return {counts.records, counts.feedback, counts.unsent, SocketUDP::getStats().refused, age};
}
