// The pictures that the ground is covered with.
#pragma once

#include <osg/Texture2D>

#include <string>

#include "terrain/TileMesh.h"

/// The imagery of a terrain, and what it covers. Null, with one log line, when there is an imagery path and it cannot
/// be read; null and silent without one. A raster wider than 4096 pixels is scaled down to that.
osg::ref_ptr<osg::Texture2D> loadImagery(const std::string& path, ImageryPlace& place);

/// A square of ground as it looks from near, which repeats without a seam. Red and green: its slope to the east and to
/// the north, from -1 to 1. Blue: lightness of what grows. Alpha: lightness of bare rock and sand. All have the mean
/// 0.5, so that they vanish in the distance.
osg::ref_ptr<osg::Texture2D> makeGroundDetail();
