// Where a segment meets the ground of an elevation raster.
#pragma once

#include "engine/math/Vec.h"

class ElevationRaster;

/// The first point, from either side, at which the segment crosses the raster's ground, in geocentric metres: that of
/// `ElevationRaster::getAltitude`, to 1e-6 m in height. False without one; `hit` is then left alone. A segment of no
/// length, or not finite, hits nothing.
bool pickGround(const ElevationRaster& raster, const dvec3& from, const dvec3& to, dvec3& hit);
