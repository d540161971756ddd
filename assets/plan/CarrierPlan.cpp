// The carrier's plan: the deck's edges and height, the landing strip.
#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"
#include "plan/CarrierPlan.h"
#include "plan/Layout.h"

namespace carrier {
namespace {

struct Point {
    double y, x;
};
// From the stern to the bow.
const std::vector<Point> PORT{{STERN, -18.5}, {-147.0, -21.5}, {-118.0, -26.0}, {-95.0, -31.0}, {-72.0, -35.5},
                              {-52.0, -38.0}, {-40.0, -38.8},  {24.0, -38.8},   {31.0, -37.2},  {46.0, -29.0},
                              {58.0, -23.2},  {66.0, -21.2},   {95.0, -18.5},   {120.0, -16.5}, {136.0, -14.4},
                              {143.0, -12.6}, {147.0, -11.2},  {149.5, -9.8},   {151.0, -8.0},  {152.0, -5.6},
                              {152.35, -3.6}, {BOW, -1.6}};
const std::vector<Point> STARBOARD{{STERN, 18.5}, {-147.0, 21.5}, {-120.0, 25.5}, {-100.0, 30.5}, {-90.0, 34.4},
                                   {-82.0, 36.2}, {43.0, 36.2},   {50.0, 33.4},   {60.0, 27.0},   {70.0, 23.8},
                                   {95.0, 20.6},  {120.0, 17.6},  {136.0, 14.8},  {145.0, 11.8},  {149.5, 9.3},
                                   {151.6, 6.6},  {BOW, 4.0}};
// In the order of the hull's frames.
const std::vector<Point> HULL{{-148.0, 16.6}, {-140.0, 17.6}, {-120.0, 18.8}, {-80.0, 19.4}, {30.0, 19.4},
                              {60.0, 18.8},   {80.0, 17.6},   {95.0, 16.2},   {112.0, 13.9}, {126.0, 11.4},
                              {136.0, 9.0},   {144.0, 6.2},   {149.0, 3.3},   {151.4, 1.4},  {BOW, 0.25}};

double valueAt(const std::vector<Point>& line, double y) {
    if (y <= line.front().y) return line.front().x;
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (y > line[i].y) continue;
        const double t = (y - line[i - 1].y) / (line[i].y - line[i - 1].y);
        return line[i - 1].x + t * (line[i].x - line[i - 1].x);
    }
    return line.back().x;
}

}  // namespace

double deckHeight(double y) {
    if (y <= RAMP_START) return DECK_HEIGHT;
    const double radius = (BOW - RAMP_START) / std::sin(RAMP_ANGLE * jMath::DEG2RAD);
    const double along = std::min(y, BOW) - RAMP_START;
    return DECK_HEIGHT + radius - std::sqrt(radius * radius - along * along);
}

double portEdge(double y) {
    return valueAt(PORT, y);
}
double starboardEdge(double y) {
    return valueAt(STARBOARD, y);
}
double hullHalf(double y) {
    return valueAt(HULL, y);
}

std::vector<double> deckStations() {
    std::vector<double> stations;
    for (const auto* line : {&PORT, &STARBOARD}) {
        for (const Point& point : *line) stations.push_back(point.y);
    }
    for (double y = RAMP_START; y < 145.0; y += 5.0) stations.push_back(y);
    for (const double lift : LIFTS) {
        for (const double side : {-LIFT_HALF, LIFT_HALF}) stations.push_back(lift + side);
    }
    std::sort(stations.begin(), stations.end());
    const auto close = [](double a, double b) { return b - a < 0.1; };
    stations.erase(std::unique(stations.begin(), stations.end(), close), stations.end());
    return stations;
}

dvec3 onStrip(double along, double right) {
    const double angle = STRIP_ANGLE * jMath::DEG2RAD;
    return {STRIP_X - along * std::sin(angle) + right * std::cos(angle),
            STERN + along * std::cos(angle) + right * std::sin(angle), DECK_HEIGHT};
}

}  // namespace carrier
