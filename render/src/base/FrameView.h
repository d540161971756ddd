// Frame data shared by all parts of the picture.
#pragma once

#include <osg/Matrixd>

#include "engine/math/Transform.h"
#include "render/Picture.h"

/// Light of the sky over the eye. Radiances are in kcd/m^2, illuminances in klx; colours linear, sRGB primaries.
/// Directions are east, north, up at the eye.
struct SkyLight {
    vec3 sun_direction{0.0f, 0.0f, 1.0f};    ///< to the sun, also below the horizon
    vec3 moon_direction{0.0f, 0.0f, -1.0f};  ///< to the moon
    vec3 light_direction{0.0f, 0.0f, 1.0f};  ///< to the sun, or to the moon when it gives more light
    vec3 light_color;                        ///< illuminance of a surface that faces this light
    vec3 ambient_above;                      ///< illuminance of an upward surface from the sky
    vec3 ambient_below;                      ///< illuminance of a downward surface from ground and sea
    vec3 horizon;                            ///< mean radiance of the sky along the horizon
    float exposure = 1.0f;                   ///< display value of 1 kcd/m^2
    float night = 0.0f;                      ///< 0 by day, 1 in full night
};

/// The frame to be drawn. World positions are geocentric metres.
struct FrameView {
    int width = 0, height = 0;  ///< pixels
    double focal = 1.0;         ///< pixels that 1 m covers at a distance of 1 m
    osg::Matrixd view;          ///< world to eye; the eye looks along -Z, Y up
    osg::Matrixd projection;
    dmat4 camera;  ///< the eye's frame in the world
    /// direction to the picture's middle in the world; differs from the eye's axis in a sheared channel
    dvec3 middle;
    dmat4 local;        ///< east, north, up and position of the eye
    dvec3 geodetic;     ///< of the eye: longitude, latitude, height
    double time = 0.0;  ///< of the engine, seconds
    double dt = 0.0;    ///< seconds since the last frame
    Quality quality = Quality::MEDIUM;
    double extinction = 3.912 / 40000.0;  ///< of the air at sea level, 1/m; the initial value is a clear day
    float wetness = 0.0f;                 ///< of upward surfaces, 0..1
    float snow = 0.0f;                    ///< snow cover of upward surfaces, 0..1
    SkyLight light;
};

/// Scale height of the haze, metres: extinction(h) = extinction(0) * exp(-h / HAZE_HEIGHT).
constexpr double HAZE_HEIGHT = 1000.0;

/// Order of drawing, as render bin numbers of the main pass.
enum DrawOrder {
    DRAW_SMALL = -1,  ///< small meshes, from front to back: a cockpit hides its aircraft and most other things
    DRAW_OPAQUE = 0,
    DRAW_DECALS = 4,
    DRAW_SEA = 10,
    DRAW_SKY = 20,
    DRAW_BLENDED = 30,  ///< sorted from back to front
    DRAW_PRECIPITATION = 40,
    DRAW_LAMPS = 45,
    DRAW_PANELS = 90
};

/// Texture units of the frame; the parts use units 0 to 7.
enum FrameTextures { UNIT_SKY = 8, UNIT_SHADOW = 9 };
