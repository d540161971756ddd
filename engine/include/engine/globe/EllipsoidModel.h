// The WGS84 globe: conversions between geodetic and geocentric coordinates.
#pragma once

#include "engine/Api.h"
#include "engine/math/Transform.h"

/// The reference ellipsoid WGS84. Geodetic triples are (longitude in degrees [-180, 180], latitude in degrees, height
/// above the ellipsoid in metres); world positions are geocentric metres, X through (0, 0), Z through the north pole.
class ENGINE_API EllipsoidModel {
public:
    static constexpr double SEMI_MAJOR = 6378137.0;                            ///< metres
    static constexpr double FLATTENING = 1.0 / 298.257223563;                  ///< NGA.STND.0036
    static constexpr double SEMI_MINOR = SEMI_MAJOR * (1.0 - FLATTENING);      ///< metres
    static constexpr double ECCENTRICITY_2 = FLATTENING * (2.0 - FLATTENING);  ///< first, squared

    dvec3 toWorld(const dvec3& geo) const;
    /// Two steps of Bowring's formula; error below 1e-8 m from -10 km to 100,000 km. Latitude 0 at the globe's centre.
    dvec3 toWGS(const dvec3& world) const;
    /// Columns east, north, up, and the position. On the axis, east is that of longitude 0.
    dmat4 getWGSTransform(const dvec3& world) const;
    /// The local vertical, of length 1.
    dvec3 getUp(const dvec3& world) const;

    /// Geodetic attitude of a world transform: heading clockwise from north in [0, 360), pitch nose up, roll right wing
    /// down, degrees, over the local east-north-up frame.
    dvec3 toWgsHPR(const dmat4& world) const;
    /// The world rotation at a position for such an attitude: ENU * Qz(-heading) * Qx(pitch) * Qy(roll).
    dquat fromWgsHPR(const dvec3& world, const dvec3& hpr) const;
};
