// What clouds look like from below, as a pattern without seams.
#pragma once

#include <osg/Image>
#include <osg/ref_ptr>

/// Side of the pattern, texels.
constexpr int CLOUD_TEXELS = 512;

/// A square of four bytes a texel. Red: cloud, the share of the pattern that has less of it, so that a threshold of
/// 1 - c leaves the share c under cloud. Green and blue: its slope along x and y, 0.5 for none. Alpha: 1. The same
/// every time.
osg::ref_ptr<osg::Image> makeCloudPattern();
