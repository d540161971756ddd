// Aircraft wheels.
#pragma once

#include "geometry/Shapes.h"

/// Paints of a wheel.
struct WheelPaints {
    PaintRef tyre, rim, hub;
};
/// A wheel with its axle along X: a round tyre with grooves, a dished rim with holes on both sides.
Mesh aircraftWheel(const WheelPaints& paints, const dvec3& middle, double radius, double width);
/// The two hinged links that prevent rotation of a sliding strut: from `top` to `foot` on the strut, with the knee
/// offset by `reach`.
Mesh torqueLinks(const PaintRef& paint, const dvec3& top, const dvec3& foot, const dvec3& reach, double width);
