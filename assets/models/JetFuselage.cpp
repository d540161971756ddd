// The table of the jet's fuselage.
#include "models/JetShape.h"

namespace jet {
namespace {

constexpr std::size_t POINTS = 9;
constexpr std::size_t EDGE = 4;  // index of the point that extends into the strake and the wing's root

/// A position along the fuselage and the outline there, (x, z) of each point: top, shoulder, side, fillet above the
/// edge, edge, fillet below it, lower side, lower shoulder, bottom.
struct Row {
    double y;
    double points[2 * POINTS];
};
// clang-format off
constexpr Row ROWS[] = {
    {5.6, {0, 1.34, 0.42, 1.20, 0.72, 0.82, 0.81, 0.58, 0.96, 0.50, 0.82, 0.38, 0.75, 0.02, 0.48, -0.34, 0, -0.44}},
    {4.8, {0, 1.46, 0.42, 1.31, 0.72, 0.90, 0.89, 0.62, 1.34, 0.48, 0.90, 0.36, 0.75, 0.02, 0.48, -0.33, 0, -0.44}},
    {4.2, {0, 1.53, 0.41, 1.37, 0.72, 0.94, 0.94, 0.64, 1.60, 0.47, 0.94, 0.35, 0.75, 0.00, 0.47, -0.32, 0, -0.43}},
    {3.4, {0, 1.56, 0.39, 1.40, 0.72, 0.96, 0.99, 0.65, 1.66, 0.45, 1.00, 0.34, 0.76, 0.03, 0.46, -0.27, 0, -0.38}},
    {2.4, {0, 1.52, 0.39, 1.36, 0.75, 0.95, 1.06, 0.66, 1.72, 0.42, 1.10, 0.33, 0.78, 0.10, 0.42, -0.14, 0, -0.24}},
    {1.4, {0, 1.43, 0.41, 1.27, 0.84, 0.90, 1.26, 0.64, 2.12, 0.32, 1.40, 0.26, 0.80, 0.13, 0.40, 0.00, 0, -0.06}},
    {0.0, {0, 1.29, 0.45, 1.12, 0.96, 0.80, 1.52, 0.57, 2.36, 0.30, 1.60, 0.13, 0.80, 0.12, 0.40, 0.05, 0, 0.02}},
    {-2.0, {0, 1.11, 0.45, 0.96, 0.98, 0.71, 1.56, 0.53, 2.40, 0.29, 1.60, 0.10, 0.80, 0.10, 0.40, 0.04, 0, 0.00}},
    {-4.0, {0, 0.93, 0.42, 0.81, 0.92, 0.63, 1.60, 0.49, 2.42, 0.27, 1.60, 0.06, 0.80, 0.06, 0.40, 0.00, 0, -0.04}},
    {-6.0, {0, 0.77, 0.38, 0.66, 0.86, 0.54, 1.60, 0.41, 2.36, 0.24, 1.60, 0.04, 0.80, 0.00, 0.38, -0.06, 0, -0.10}},
    {-7.4, {0, 0.66, 0.33, 0.55, 0.50, 0.42, 0.60, 0.30, 0.66, 0.20, 0.60, 0.08, 0.50, -0.02, 0.32, -0.12, 0, -0.15}},
    {-8.6, {0, 0.59, 0.24, 0.51, 0.36, 0.38, 0.41, 0.28, 0.42, 0.20, 0.41, 0.11, 0.35, 0.00, 0.22, -0.08, 0, -0.11}},
    {-9.8, {0, 0.48, 0.18, 0.43, 0.28, 0.34, 0.32, 0.26, 0.33, 0.20, 0.32, 0.13, 0.27, 0.05, 0.17, -0.01, 0, -0.03}},
    {-10.55, {0, 0.38, 0.13, 0.36, 0.21, 0.30, 0.24, 0.25, 0.25, 0.20, 0.24, 0.15, 0.20, 0.10, 0.12, 0.05, 0, 0.04}},
    {-10.75, {0, 0.28, 0.06, 0.27, 0.09, 0.24, 0.10, 0.22, 0.10, 0.20, 0.10, 0.18, 0.08, 0.16, 0.05, 0.13, 0, 0.12}},
};
// clang-format on

/// The round nose, then the table.
std::vector<Station> stations() {
    const std::vector<double> angles{90, 66, 38, 14, 0, -18, -40, -66, -90};
    std::vector<Station> list{oval(BULKHEAD, 0.26, 0.565, 0.57, 0.55, angles),
                              oval(8.0, 0.32, 0.66, 0.67, 0.64, angles), oval(7.2, 0.37, 0.73, 0.77, 0.75, angles),
                              oval(6.4, 0.42, 0.78, 0.84, 0.83, angles)};
    for (const Row& row : ROWS) {
        Station station{row.y, {}};
        for (std::size_t i = 0; i < POINTS; ++i) station.half.push_back({row.points[2 * i], row.points[2 * i + 1]});
        list.push_back(station);
    }
    return list;
}

}  // namespace

const Hull& fuselage() {
    static const Hull HULL(stations(), {EDGE});
    return HULL;
}

double sill(double y) {
    return smoothly(
        {{CANOPY_END, 1.08}, {5.3, 0.99}, {6.4, 0.97}, {7.0, 1.00}, {7.4, 1.045}, {WINDSHIELD_FRONT, 1.075}}, y);
}

}  // namespace jet
