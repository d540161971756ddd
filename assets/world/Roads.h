// Dirt roads over the demonstration's ground.
#pragma once

#include <functional>
#include <vector>

/// A place in metres.
struct RoadPoint {
    double x, y;
};

/// The road from one place to another that climbs least: over a grid of places `step` metres apart from (0, 0) up to
/// (size, size), then rounded. `height` gives metres at a place; a road keeps off ground below 1.5 m.
std::vector<RoadPoint> findRoad(const RoadPoint& from, const RoadPoint& to, double size, double step,
                                const std::function<double(double x, double y)>& height);
