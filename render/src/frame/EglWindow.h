// A place to draw on without a display.
#pragma once

#include <osg/GraphicsContext>

#include <string>

/// An off-screen context of that size. Null, with `error` saying why, when the driver gives none.
osg::ref_ptr<osg::GraphicsContext> makeOffscreenContext(int width, int height, std::string& error);
