// Clouds seen from below, as a tiling pattern.
#pragma once

#include <osg/Image>
#include <osg/ref_ptr>

/// Side of the pattern, texels.
constexpr int CLOUD_TEXELS = 512;

/// A square of four bytes per texel. Red channel: cloud coverage as a percentile, so that the threshold 1 - c covers
/// the fraction c. Green and blue: its slope along x and y, 0.5 for none. Alpha: 1. Deterministic.
osg::ref_ptr<osg::Image> makeCloudPattern();
