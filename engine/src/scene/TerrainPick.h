// Intersection of a segment with the ground of an elevation raster.
#pragma once

#include "engine/math/Vec.h"

class ElevationRaster;

/// The first point, from either side, at which the segment crosses the raster's ground, in geocentric metres. The
/// ground is that of `ElevationRaster::getAltitude`, to 1e-6 m in height. False without a hit; `hit` is then unchanged.
/// A segment of length 0, or not finite, hits nothing.
bool pickGround(const ElevationRaster& raster, const dvec3& from, const dvec3& to, dvec3& hit);
