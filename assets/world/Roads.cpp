// Finds roads with Dijkstra's shortest paths; climbs increase the cost of a step.
#include "world/Roads.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <queue>

namespace {

constexpr double MIN_HEIGHT = 1.5;  // metres
constexpr double STEEP = 0.07;      // rise per metre that doubles the cost of a step
constexpr int ROUNDINGS = 3;

struct Reached {
    double cost;
    int cell;
    bool operator<(const Reached& other) const { return cost > other.cost; }
};

/// Chaikin's corner cutting (1974).
std::vector<RoadPoint> rounded(const std::vector<RoadPoint>& path) {
    std::vector<RoadPoint> out{path.front()};
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        const RoadPoint &a = path[i], &b = path[i + 1];
        out.push_back({0.75 * a.x + 0.25 * b.x, 0.75 * a.y + 0.25 * b.y});
        out.push_back({0.25 * a.x + 0.75 * b.x, 0.25 * a.y + 0.75 * b.y});
    }
    out.push_back(path.back());
    return out;
}

}  // namespace

std::vector<RoadPoint> findRoad(const RoadPoint& from, const RoadPoint& to, double size, double step,
                                const std::function<double(double x, double y)>& height) {
    const int side = static_cast<int>(size / step);
    std::vector<double> heights(static_cast<std::size_t>(side) * side);
    for (int i = 0; i < side * side; ++i)
        heights[static_cast<std::size_t>(i)] = height(i % side * step, i / side * step);
    const auto cellOf = [&](const RoadPoint& p) { return std::lround(p.y / step) * side + std::lround(p.x / step); };
    const int start = static_cast<int>(cellOf(from)), end = static_cast<int>(cellOf(to));
    std::vector<double> costs(heights.size(), std::numeric_limits<double>::infinity());
    std::vector<int> before(heights.size(), -1);
    std::priority_queue<Reached> open;
    costs[static_cast<std::size_t>(start)] = 0.0;
    open.push({0.0, start});
    while (!open.empty() && open.top().cell != end) {
        const auto [cost, cell] = open.top();
        open.pop();
        if (cost > costs[static_cast<std::size_t>(cell)]) continue;
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx) {
                const int x = cell % side + dx, y = cell / side + dy;
                if ((dx == 0 && dy == 0) || x < 0 || y < 0 || x >= side || y >= side) continue;
                const auto next = static_cast<std::size_t>(y * side + x);
                if (heights[next] < MIN_HEIGHT) continue;
                const double way = std::hypot(dx, dy) * step;
                const double climb = (heights[next] - heights[static_cast<std::size_t>(cell)]) / (way * STEEP);
                const double sum = cost + way * (1.0 + climb * climb);
                if (sum >= costs[next]) continue;
                costs[next] = sum;
                before[next] = cell;
                open.push({sum, static_cast<int>(next)});
            }
        }
    }
    std::vector<RoadPoint> path;
    for (int cell = end; cell >= 0; cell = before[static_cast<std::size_t>(cell)]) {
        path.push_back({cell % side * step, cell / side * step});
    }
    for (int i = 0; i < ROUNDINGS; ++i) path = rounded(path);
    return path;
}
