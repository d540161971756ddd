// Conversions to and from the ellipsoid, and local frames on it.
#include "engine/globe/EllipsoidModel.h"

#include "engine/math/jMath.h"

namespace {

constexpr double A = EllipsoidModel::SEMI_MAJOR;
constexpr double B = EllipsoidModel::SEMI_MINOR;
constexpr double E2 = EllipsoidModel::ECCENTRICITY_2;
constexpr double E2_PRIME = E2 / (1.0 - E2);  // second eccentricity, squared

struct Latitude {
    double sin, cos;
};

/// Bowring, "The accuracy of geodetic latitude and height equations", Survey Review 28 (1985): the reduced latitude is
/// kept as sine and cosine, so that no step needs an angle. p is the distance from the axis.
Latitude geodeticLatitude(double p, double z) {
    double sb = z * A, cb = p * B;  // initial reduced latitude
    for (int i = 0; i < 2; ++i) {
        const double n = std::sqrt(sb * sb + cb * cb);
        if (n == 0.0) return {0.0, 1.0};
        const double s = sb / n, c = cb / n;
        const double st = z + E2_PRIME * B * s * s * s;
        const double ct = p - E2 * A * c * c * c;
        sb = B * st;
        cb = A * ct;
    }
    const double s = sb / B, c = cb / A;
    const double n = std::sqrt(s * s + c * c);
    return n > 0.0 ? Latitude{s / n, c / n} : Latitude{0.0, 1.0};
}

}  // namespace

dvec3 EllipsoidModel::toWorld(const dvec3& geo) const {
    const double lon = geo.x * jMath::DEG2RAD, lat = geo.y * jMath::DEG2RAD;
    const double s = std::sin(lat), c = std::cos(lat);
    const double n = A / std::sqrt(1.0 - E2 * s * s);
    return {(n + geo.z) * c * std::cos(lon), (n + geo.z) * c * std::sin(lon), (n * (1.0 - E2) + geo.z) * s};
}

dvec3 EllipsoidModel::toWGS(const dvec3& world) const {
    const double p = std::sqrt(world.x * world.x + world.y * world.y);
    const Latitude lat = geodeticLatitude(p, world.z);
    // Height along the normal: exact at the equator and the poles, where p / cos would divide by zero.
    const double height = p * lat.cos + world.z * lat.sin - A * std::sqrt(1.0 - E2 * lat.sin * lat.sin);
    return {std::atan2(world.y, world.x) * jMath::RAD2DEG, std::atan2(lat.sin, lat.cos) * jMath::RAD2DEG, height};
}

dvec3 EllipsoidModel::getUp(const dvec3& world) const {
    const double p = std::sqrt(world.x * world.x + world.y * world.y);
    const Latitude lat = geodeticLatitude(p, world.z);
    if (p == 0.0) return {lat.cos, 0.0, lat.sin};
    return {lat.cos * world.x / p, lat.cos * world.y / p, lat.sin};
}

dmat4 EllipsoidModel::getWGSTransform(const dvec3& world) const {
    const double p = std::sqrt(world.x * world.x + world.y * world.y);
    const dvec3 east = p > 0.0 ? dvec3(-world.y / p, world.x / p, 0.0) : dvec3(0.0, 1.0, 0.0);
    const dvec3 up = getUp(world);
    return {east, cross(up, east), up, world};
}

dvec3 EllipsoidModel::toWgsHPR(const dmat4& world) const {
    dvec3 translation, scale;
    dquat rotation;
    decomposeTransform(world, translation, rotation, scale);
    const dquat enu(getWGSTransform(world.t).getMat3());
    const dvec3 hpr = (enu.inverse() * rotation).toEulerZXY();
    double heading = std::fmod(-hpr.x, 360.0);
    if (heading < 0.0) heading += 360.0;
    if (heading >= 360.0) heading = 0.0;
    return {heading, hpr.y, hpr.z};
}

dquat EllipsoidModel::fromWgsHPR(const dvec3& world, const dvec3& hpr) const {
    return dquat(getWGSTransform(world).getMat3()) * dquat::fromEulerZXY(-hpr.x, hpr.y, hpr.z);
}
