// Dirt roads on the demonstration's ground.
#pragma once

#include <functional>
#include <vector>

/// A position in metres.
struct RoadPoint {
    double x, y;
};

/// The road with the smallest climb between two points: on a grid with a spacing of `step` metres from (0, 0) to (size,
/// size), then rounded. `height` returns metres at a point. Roads avoid ground below 1.5 m.
std::vector<RoadPoint> findRoad(const RoadPoint& from, const RoadPoint& to, double size, double step,
                                const std::function<double(double x, double y)>& height);
