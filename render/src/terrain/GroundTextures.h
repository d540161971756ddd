// The pictures that the ground is covered with.
#pragma once

#include <osg/Texture2D>

#include <string>

#include "terrain/TileMesh.h"

/// The imagery of a terrain, red, green and blue, and what it covers. Null, with one log line, when there is an imagery
/// path and it cannot be read; null and silent without one. One wider than 4096 pixels is scaled down to that.
osg::ref_ptr<osg::Image> loadImagery(const std::string& path, ImageryPlace& place);
/// Its values stay as they are: shaders turn them to reflectances.
osg::ref_ptr<osg::Texture2D> makeImageryTexture(const osg::Image& imagery);
/// The same in at most 512 x 512 pixels, for keeping in memory.
osg::ref_ptr<osg::Image> makeOverview(const osg::Image& imagery);

/// A square of ground as it looks from near, which repeats without a seam. Red: lightness of what grows. Green: of bare
/// rock and sand. Both have the mean 0.5, so that they vanish in the distance.
osg::ref_ptr<osg::Texture2D> makeGroundDetail();
