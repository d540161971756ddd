// Drawing data of a lamp.
#pragma once

#include "engine/math/Vec.h"

class NodeLight;

struct Lamp {
    dvec3 position;          ///< geocentric
    vec3 axis;               ///< direction of a spot, world frame, length 1
    vec3 color;              ///< linear; the largest component is 1
    float intensity = 0.0f;  ///< current intensity of the largest component, candela
    float range = 1.0f;      ///< metres; 0: it illuminates no surface
    float size = 0.0f;       ///< diameter, metres
    float cone = -2.0f;      ///< cosine of a spot's half angle; -2 for an omnidirectional lamp
};

/// The current state of the lamp; intensity 0 when it is switched off or has no usable values.
Lamp readLamp(const NodeLight& light);
