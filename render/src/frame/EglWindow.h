// An OpenGL context without a display.
#pragma once

#include <osg/GraphicsContext>

#include <string>

/// An off-screen context of this size in pixels. Null when the driver provides none, with the reason in `error`.
osg::ref_ptr<osg::GraphicsContext> makeOffscreenContext(int width, int height, std::string& error);
