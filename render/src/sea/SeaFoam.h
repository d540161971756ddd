// The foam's pattern at close range.
#pragma once

#include <osg/Texture2D>

/// A tiling pattern of bubbles and threads. Its values are uniformly distributed over 0..1, so that the fraction p of
/// them is above 1 - p: foam that covers the fraction p of the water is where the pattern is above 1 - p.
osg::Texture2D* makeFoamTexture();
