// Textures of the ground.
#pragma once

#include <osg/Texture2D>

#include <string>

#include "terrain/TileMesh.h"

/// The imagery of a terrain in red, green and blue, and its extent. Null and one log line when there is an imagery path
/// but the file cannot be read; null without a log line when there is no path. Imagery wider than 4096 pixels is scaled
/// down to that.
osg::ref_ptr<osg::Image> loadImagery(const std::string& path, ImageryPlace& place);
/// Texels keep the sRGB values; shaders convert them to reflectances.
osg::ref_ptr<osg::Texture2D> makeImageryTexture(const osg::Image& imagery);
/// A copy of at most 512 x 512 pixels that is kept in memory.
osg::ref_ptr<osg::Image> makeOverview(const osg::Image& imagery);

/// A tiling square of ground at close range. Red: lightness of vegetation. Green: lightness of bare rock and sand. Both
/// have the mean 0.5, so that they vanish in the distance.
osg::ref_ptr<osg::Texture2D> makeGroundDetail();
