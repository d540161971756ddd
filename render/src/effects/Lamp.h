// A lamp of the world as the picture needs it.
#pragma once

#include "engine/math/Vec.h"

class NodeLight;

struct Lamp {
    dvec3 position;          ///< geocentric
    vec3 axis;               ///< where a spot points, world frame, length 1
    vec3 color;              ///< linear; its largest part is 1
    float intensity = 0.0f;  ///< candela of that part, now
    float range = 1.0f;      ///< metres; at 0 it lights nothing
    float size = 0.0f;       ///< diameter, metres
    float cone = -2.0f;      ///< cosine of a spot's half angle; -2 for a lamp that shines all around
};

/// The lamp as it is now; an intensity of 0 for one that is switched off or has no usable values.
Lamp readLamp(const NodeLight& light);
