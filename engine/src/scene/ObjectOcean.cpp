// The sea's state, and the positions of its waves on the globe.
#include "engine/scene/ObjectOcean.h"

#include <algorithm>
#include <cmath>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "scene/WaveSpectrum.h"
#include "scene/WorldState.h"

namespace {

/// Seed of the wave phases. Constant, so that all channels of a display show the same sea.
constexpr std::uint64_t SEED = 0x5EA;

constexpr double NORTH_PER_DEGREE = jMath::DEG2RAD * EllipsoidModel::SEMI_MAJOR;

/// The world's wind; calm where it is not finite.
vec3 windOver(const ObjectOcean& ocean) {
    World* const world = ocean.getWorld();
    return world && isFinite(dvec3(world->getEnvironment().wind)) ? world->getEnvironment().wind : vec3();
}

}  // namespace

ObjectOcean::ObjectOcean() : m_field(SEED) {
    readOrigin();
}

dvec3 ObjectOcean::getWorldPoint(const dvec3& world) const {
    const EllipsoidModel globe;
    const dvec3 geo = globe.toWGS(world);
    double east, north;
    getFieldPlace(geo.x, geo.y, east, north);
    return globe.toWorld(dvec3(geo.x, geo.y, getField().getHeight(east, north)));
}

const WaveField& ObjectOcean::getField() const {
    const vec3 wind = windOver(*this);
    m_field.setWind(isGlobal() ? std::hypot(wind.x, wind.y) : getBeaufortSpeed(m_beaufort), wind.x, wind.y);
    m_field.update(WorldState::running ? WorldState::running->time : 0.0);
    return m_field;
}

void ObjectOcean::getFieldPlace(double lon, double lat, double& east, double& north) const {
    if (!(getWorldPosition() == m_place)) readOrigin();
    const double turn = lon - m_origin.x;
    east = (turn - 360.0 * std::floor(turn / 360.0 + 0.5)) * m_east_per_degree;
    north = (lat - m_origin.y) * NORTH_PER_DEGREE;
}

void ObjectOcean::readOrigin() const {
    m_place = getWorldPosition();
    const bool placed = length(m_place) > EllipsoidModel::SEMI_MINOR / 2.0;
    m_origin = placed ? getWgsPosition() : dvec3();
    m_east_per_degree = NORTH_PER_DEGREE * std::cos(m_origin.y * jMath::DEG2RAD);
}

int ObjectOcean::getBeaufort() const {
    if (!isGlobal()) return m_beaufort;
    const vec3 wind = windOver(*this);
    return static_cast<int>(std::lround(std::min(getBeaufortNumber(std::hypot(wind.x, wind.y)), 12.0)));
}

void ObjectOcean::setBeaufort(int beaufort) {
    m_beaufort = std::clamp(beaufort, 0, 12);
}

bool ObjectOcean::setParameter(const jString& parameter, float value) {
    if (parameter != "beaufort") return Object::setParameter(parameter, value);
    setBeaufort(static_cast<int>(std::lround(std::fmin(std::fmax(value, 0.0f), 12.0f))));
    return true;
}
