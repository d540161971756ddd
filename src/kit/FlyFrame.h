// One timed state of an aircraft.
#pragma once

#include <engine/math/Vec.h>

#include <cstddef>

/// A record of a flight path; also the state that places an aircraft. The position is in metres in the frame of the
/// aircraft's base transform; angles are in degrees.
struct FlyFrame {
    float time = 0.0f;           ///< seconds on the path's timeline
    dvec3 pivot;                 ///< position
    float undercarriage = 0.0f;  ///< truncated to an integer: 0 up, other values down
    float pitch = 0.0f;          ///< nose up
    float roll = 0.0f;           ///< left wing down
    float heading = 0.0f;        ///< counter-clockwise from +X
    float wing1 = 0.0f;          ///< first group of control surfaces
    float wing2 = 0.0f;          ///< second group of control surfaces
};

static_assert(offsetof(FlyFrame, time) == 0);
static_assert(offsetof(FlyFrame, pivot) == 16);
static_assert(offsetof(FlyFrame, undercarriage) == 48);
static_assert(offsetof(FlyFrame, pitch) == 52);
static_assert(offsetof(FlyFrame, roll) == 56);
static_assert(offsetof(FlyFrame, heading) == 60);
static_assert(offsetof(FlyFrame, wing1) == 64);
static_assert(offsetof(FlyFrame, wing2) == 68);
