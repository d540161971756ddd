// Positions of all objects of the demonstration, shared by terrain, models and the world file.
#pragma once

#include "engine/math/Transform.h"

/// Longitude and latitude of the runway's middle, degrees; height 0.
inline const dvec3 DEMO_CENTRE{112.35, 16.84, 0.0};

// The airfield's frame: origin on the ground at the runway's middle, +Y along the runway, +X to its right.
constexpr double RUNWAY_HEADING = 67.25;  ///< degrees clockwise from north
constexpr double RUNWAY_LENGTH = 2500.0;  ///< metres
constexpr double RUNWAY_WIDTH = 45.0;
constexpr double AIRFIELD_HEIGHT = 4.9375;  ///< metres above the ellipsoid, exact in single precision
/// The exactly level ground: extents in the airfield's frame.
constexpr double LEVEL_LEFT = -150.0, LEVEL_RIGHT = 340.0, LEVEL_BACK = -1400.0, LEVEL_FRONT = 1400.0;
constexpr double APRON_LEFT = 80.0, APRON_RIGHT = 230.0, APRON_BACK = -330.0, APRON_FRONT = 190.0;

// The carrier's frame: origin at the waterline amidships, +Y to the bow.
constexpr double CARRIER_HEADING = 67.25;
constexpr double DECK_HEIGHT = 20.0;  ///< above the waterline, except on the ramp
constexpr double RAMP_START = 95.0;   ///< position along Y where the deck begins to rise
/// Start of the second launch run: the aircraft's position across and along the deck.
inline const dvec3 LAUNCH_POINT{5.0, 40.0, DECK_HEIGHT};
/// The landing lens: outboard of the port edge beside the landing strip, its origin level with the deck.
inline const dvec3 LENS_POINT{-39.0, -62.0, DECK_HEIGHT};

/// Height of an aircraft's origin above the ground, and extra height of the start nodes, which the logic removes.
constexpr double STANDING_HEIGHT = 2.0;
constexpr double START_EXTRA = 0.2;

/// World transforms of the two frames.
dmat4 airfieldFrame();
dmat4 carrierFrame();

/// Geodetic position of a point in the airfield's frame. Its height is measured from the level ground (which follows
/// the ellipsoid, not the frame's plane).
dvec3 airfieldPlace(double right, double along, double height);

struct GeodeticPose {
    dvec3 geodetic;  ///< longitude, latitude, height
    dvec3 wgs_hpr;   ///< heading clockwise from north, pitch nose up, roll right wing down; degrees
};
GeodeticPose poseOf(const dmat4& world);
/// Poses of an aircraft at the launch point and at the runway's threshold, each START_EXTRA too high.
GeodeticPose deckStart();
GeodeticPose runwayStart();
