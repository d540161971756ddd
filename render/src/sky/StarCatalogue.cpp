// Bright stars after the Bright Star Catalogue, 5th edition (J2000); fainter stars are random with the catalogue's
// distribution of magnitudes.
#include "sky/StarCatalogue.h"

#include <algorithm>
#include <cmath>

#include "engine/math/jMath.h"

namespace {

constexpr int NUM_FAINT = 2000;
constexpr double FAINT_FROM = 2.6, FAINT_TO = 5.7;  // magnitudes

/// Right ascension in hours, declination in degrees, visual magnitude, colour index B - V.
struct Entry {
    double ascension, declination, magnitude, color;
};

constexpr Entry BRIGHT[] = {
    {6.752, -16.716, -1.46, 0.00},  {6.399, -52.696, -0.72, 0.15},  {14.660, -60.834, -0.27, 0.71},
    {14.261, 19.182, -0.04, 1.23},  {18.616, 38.784, 0.03, 0.00},   {5.278, 45.998, 0.08, 0.80},
    {5.242, -8.202, 0.12, -0.03},   {7.655, 5.225, 0.38, 0.42},     {1.629, -57.237, 0.46, -0.16},
    {5.919, 7.407, 0.50, 1.85},     {14.064, -60.373, 0.61, -0.23}, {19.846, 8.868, 0.77, 0.22},
    {12.443, -63.099, 0.77, -0.24}, {4.599, 16.509, 0.85, 1.54},    {16.490, -26.432, 0.96, 1.83},
    {13.420, -11.161, 0.98, -0.23}, {7.755, 28.026, 1.14, 1.00},    {22.961, -29.622, 1.16, 0.09},
    {12.795, -59.689, 1.25, -0.23}, {20.690, 45.280, 1.25, 0.09},   {10.139, 11.967, 1.35, -0.11},
    {6.977, -28.972, 1.50, -0.21},  {7.577, 31.888, 1.58, 0.03},    {12.519, -57.113, 1.63, 1.59},
    {17.560, -37.104, 1.63, -0.22}, {5.419, 6.350, 1.64, -0.22},    {5.438, 28.608, 1.65, -0.13},
    {9.220, -69.717, 1.68, 0.00},   {5.604, -1.202, 1.70, -0.19},   {22.137, -46.961, 1.74, -0.13},
    {5.679, -1.943, 1.77, -0.21},   {12.900, 55.960, 1.77, -0.02},  {3.405, 49.861, 1.79, 0.48},
    {11.062, 61.751, 1.79, 1.07},   {8.159, -47.337, 1.78, -0.22},  {18.403, -34.385, 1.85, -0.03},
    {7.140, -26.393, 1.84, 0.68},   {13.792, 49.313, 1.86, -0.19},  {8.375, -59.510, 1.86, 1.28},
    {17.622, -42.998, 1.87, 0.40},  {5.992, 44.947, 1.90, 0.03},    {16.811, -69.028, 1.92, 1.44},
    {6.629, 16.399, 1.93, 0.00},    {20.427, -56.735, 1.94, -0.20}, {8.745, -54.709, 1.96, 0.04},
    {2.530, 89.264, 2.02, 0.60},    {6.378, -17.956, 1.98, -0.23},  {9.460, -8.659, 1.98, 1.44},
    {2.120, 23.462, 2.00, 1.15},    {10.333, 19.842, 1.98, 1.15},   {0.727, -17.987, 2.02, 1.02},
    {18.921, -26.297, 2.02, -0.22}, {14.112, -36.370, 2.06, 1.01},  {0.140, 29.091, 2.06, -0.11},
    {1.162, 35.621, 2.06, 1.58},    {5.796, -9.670, 2.06, -0.17},   {14.845, 74.156, 2.08, 1.47},
    {17.582, 12.560, 2.08, 0.15},   {3.136, 40.956, 2.12, -0.05},   {11.818, 14.572, 2.14, 0.09},
    {15.578, 26.715, 2.23, -0.02},  {20.371, 40.257, 2.20, 0.68},   {17.943, 51.489, 2.23, 1.52},
    {5.533, -0.299, 2.23, -0.22},   {0.675, 56.537, 2.23, 1.17},    {0.153, 59.150, 2.27, 0.34},
    {13.399, 54.925, 2.27, 0.02},   {16.836, -34.293, 2.29, 1.15},  {16.006, -22.622, 2.32, -0.12},
    {11.031, 56.382, 2.37, -0.02},  {11.897, 53.695, 2.44, 0.00},   {12.257, 57.033, 3.31, 0.08},
    {0.945, 60.717, 2.47, -0.15},   {1.430, 60.235, 2.68, 0.13},    {1.907, 63.670, 3.38, -0.15},
    {16.091, -19.805, 2.62, -0.07}, {17.708, -39.030, 2.41, -0.22}, {3.791, 24.105, 2.87, -0.09},
};

dvec3 fromAngles(double longitude, double latitude) {
    const double a = longitude * jMath::DEG2RAD, b = latitude * jMath::DEG2RAD;
    return {std::cos(b) * std::cos(a), std::cos(b) * std::sin(a), std::sin(b)};
}

/// Light of a star: magnitude 0 is 2.54e-9 klx; colours range from blue over white to orange.
vec3 starLight(double magnitude, double color) {
    const auto warm = static_cast<float>(std::clamp(color, -0.3, 1.8));
    const vec3 tint(1.0f + 0.28f * warm, 1.0f, 1.25f - 0.5f * warm);
    return tint * static_cast<float>(2.54e-9 * std::pow(10.0, -0.4 * magnitude));
}

/// Random direction, less frequent away from the galactic plane.
dvec3 drawDirection(Random& random) {
    for (;;) {
        const double z = random.getDouble(-1.0, 1.0), around = random.getDouble(0.0, 2.0 * jMath::PI);
        const double level = std::sqrt(1.0 - z * z);
        const dvec3 direction(level * std::cos(around), level * std::sin(around), z);
        const double off_plane = dot(direction, galaxyPole());
        if (random.getDouble(0.0, 1.0) < 0.45 + 0.55 * std::exp(-10.0 * off_plane * off_plane)) return direction;
    }
}

}  // namespace

dvec3 galaxyPole() {
    return fromAngles(192.859, 27.128);
}

dvec3 galaxyCentre() {
    return fromAngles(266.417, -29.008);
}

std::vector<Star> makeStars() {
    std::vector<Star> stars;
    for (const Entry& e : BRIGHT) {
        stars.push_back({fromAngles(e.ascension * 15.0, e.declination), starLight(e.magnitude, e.color)});
    }
    Random random(20240621);
    // Each magnitude has about 10^0.5 times as many stars as the one before.
    const double lowest = std::pow(10.0, 0.5 * FAINT_FROM), highest = std::pow(10.0, 0.5 * FAINT_TO);
    for (int i = 0; i < NUM_FAINT; ++i) {
        const double magnitude = 2.0 * std::log10(random.getDouble(lowest, highest));
        const double color = random.getDouble(-0.2, 0.9) + random.getDouble(0.0, 0.7);
        stars.push_back({drawDirection(random), starLight(magnitude, color)});
    }
    std::stable_sort(stars.begin(), stars.end(), [](const Star& a, const Star& b) { return a.light.y > b.light.y; });
    return stars;
}
