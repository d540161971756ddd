// What foam looks like close by.
#pragma once

#include <osg/Texture2D>

/// A tiling pattern of bubbles and threads. Its values are spread evenly over 0..1, so that the part p of it lies above
/// 1 - p: foam that covers the part p of the water is where the pattern is above that.
osg::Texture2D* makeFoamTexture();
