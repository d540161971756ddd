// Aircraft wheels.
#pragma once

#include "geometry/Shapes.h"

/// What a wheel is painted with.
struct WheelPaints {
    PaintRef tyre, rim, hub;
};
/// A wheel whose axle runs along X: a round tyre with grooves, a dished rim with holes on both sides.
Mesh aircraftWheel(const WheelPaints& paints, const dvec3& middle, double radius, double width);
/// The two hinged links that keep a sliding strut from turning: from `top` to `foot` on the strut, their knee `reach`
/// away from it.
Mesh torqueLinks(const PaintRef& paint, const dvec3& top, const dvec3& foot, const dvec3& reach, double width);
