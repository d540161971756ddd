// The ground as a scene object: opens its raster in the constructor and passes queries to it.
#include "engine/scene/ObjectTerrain.h"

#include <algorithm>
#include <cmath>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "engine/scene/ElevationRaster.h"
#include "engine/text/Log.h"
#include "scene/TerrainPick.h"
#include "text/RuntimeRoot.h"

namespace {

struct Interval {
    double min, max;
};

Interval operator*(const Interval& a, const Interval& b) {
    const auto [lo, hi] = std::minmax({a.min * b.min, a.min * b.max, a.max * b.min, a.max * b.max});
    return {lo, hi};
}

/// The range of the cosine between two angles in degrees, from <= to.
Interval cosineRange(double from, double to) {
    const auto cosine = [](double degrees) { return std::cos(degrees * jMath::DEG2RAD); };
    Interval range{std::min(cosine(from), cosine(to)), std::max(cosine(from), cosine(to))};
    if (std::floor(to / 360.0) >= std::ceil(from / 360.0)) range.max = 1.0;
    if (std::floor((to - 180.0) / 360.0) >= std::ceil((from - 180.0) / 360.0)) range.min = -1.0;
    return range;
}

/// The geocentric bounding box of the volume between two heights over a raster, from the ranges of the factors.
BoundBox globeBox(const ElevationRaster& raster, const HeightRange& heights) {
    const double west = raster.getWest(), east = raster.getLongitude(raster.getNumColumns() - 1);
    const double south = raster.getSouth(), north = raster.getLatitude(raster.getNumRows() - 1);
    const Interval cos_lat = cosineRange(south, north), cos_lon = cosineRange(west, east);
    const Interval sin_lat = cosineRange(south - 90.0, north - 90.0), sin_lon = cosineRange(west - 90.0, east - 90.0);
    // The radius of curvature in the prime vertical is between the semi-major axis and its polar value.
    constexpr double A = EllipsoidModel::SEMI_MAJOR, E2 = EllipsoidModel::ECCENTRICITY_2;
    const auto normal = [](double sine) { return A / std::sqrt(1.0 - E2 * sine * sine); };
    const double most = std::max(std::fabs(sin_lat.min), std::fabs(sin_lat.max));
    const double least =
        sin_lat.min * sin_lat.max <= 0.0 ? 0.0 : std::min(std::fabs(sin_lat.min), std::fabs(sin_lat.max));
    const Interval radius{normal(least), normal(most)};
    const Interval across = Interval{radius.min + heights.min, radius.max + heights.max} * cos_lat;
    const Interval z = Interval{radius.min * (1.0 - E2) + heights.min, radius.max * (1.0 - E2) + heights.max} * sin_lat;
    const Interval x = across * cos_lon, y = across * sin_lon;
    return {dvec3(x.min, y.min, z.min), dvec3(x.max, y.max, z.max)};
}

}  // namespace

ObjectTerrain::ObjectTerrain(const jString& elevation, const jString& imagery) : m_imagery(imagery) {
    const jString path = resolvePath(elevation);
    if (path.empty()) {
        jLog::error("%s: the elevation raster lies outside the runtime root", elevation.c_str());
        return;
    }
    m_raster = ElevationRaster::open(path);
}

ObjectTerrain::~ObjectTerrain() = default;

bool ObjectTerrain::getAltitudeByLonLat(double lon, double lat, double& altitude, const TileKey*) const {
    return m_raster && m_raster->getAltitude(lon, lat, altitude);
}

bool ObjectTerrain::getIntersection(const dvec3& from, const dvec3& to, int surface, dvec3& hit) const {
    dvec3 world;
    if (surface != 0 || !m_raster || !pickGround(*m_raster, toWorld(from), toWorld(to), world)) return false;
    hit = toLocal(world);
    return true;
}

BoundBox ObjectTerrain::getBoundBox() const {
    if (!m_raster || m_raster->getRange().isEmpty()) return {};
    return inverse(getWorldTransform()) * globeBox(*m_raster, m_raster->getRange());
}

bool ObjectTerrain::setParameter(const jString& parameter, float value) {
    float* const target = parameter == "wetness"  ? &m_wetness
                          : parameter == "snow"   ? &m_snow
                          : parameter == "autumn" ? &m_autumn
                                                  : nullptr;
    if (target == nullptr) return Object::setParameter(parameter, value);
    *target = std::isfinite(value) ? std::clamp(value, 0.0f, 1.0f) : 0.0f;
    contentChanged();
    return true;
}
