// The island's shape and its height raster.
#include "world/Elevation.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "plan/Layout.h"

namespace {

const MetresPerDegree DEGREE = metresPerDegree();

constexpr int POSTS = 2048;
constexpr double POST_SPACING = 9.0;  // metres
constexpr double SUMMIT = 350.0;      // maximum height of the hills, metres

double smoothStep(double v, double from, double to) {
    const double t = std::clamp((v - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

/// Distance of a point in the airfield's frame from the level ground, metres; 0 on it.
double levelDistance(double right, double along) {
    const double dx = std::max({LEVEL_LEFT - right, right - LEVEL_RIGHT, 0.0});
    const double dy = std::max({LEVEL_BACK - along, along - LEVEL_FRONT, 0.0});
    return std::hypot(dx, dy);
}

/// A beach that slopes gently into the sea, and a sea bed that becomes level.
double shoreProfile(double inland) {
    constexpr double DEPTH = 60.0, SLOPE = 0.035, PLAIN = 5.0;
    if (inland < 0.0) return -DEPTH * (1.0 - std::exp(inland * SLOPE / DEPTH));
    return PLAIN * (1.0 - std::exp(-inland * SLOPE / PLAIN));
}

}  // namespace

MetresPerDegree metresPerDegree() {
    const EllipsoidModel globe;
    const double s = std::sin(DEMO_CENTRE.y * jMath::DEG2RAD);
    const double w2 = 1.0 - globe.ECCENTRICITY_2 * s * s;
    const double prime = globe.SEMI_MAJOR / std::sqrt(w2);
    return {prime * std::cos(DEMO_CENTRE.y * jMath::DEG2RAD) * jMath::DEG2RAD,
            prime * (1.0 - globe.ECCENTRICITY_2) / w2 * jMath::DEG2RAD};
}

Island::Island() : m_coast(11), m_hills(23), m_detail(37) {}

double Island::shoreDistance(double right, double along) const {
    // An oval that extends inland to the left of the runway, with bays cut by noise.
    constexpr double HALF_LENGTH = 3000.0, HALF_WIDTH = 2300.0, MIDDLE_RIGHT = -1100.0, BAYS = 1150.0, BAY = 2300.0;
    const double r = std::hypot(along / HALF_LENGTH, (right - MIDDLE_RIGHT) / HALF_WIDTH);
    return (1.0 - r) * 2600.0 + BAYS * m_coast.fractal(along / BAY, right / BAY, 5, 0.45);
}

double Island::wildHeight(double east, double north, double right, double along) const {
    const double inland = shoreDistance(right, along);
    const double shore = shoreProfile(inland);
    const double roughness = 0.6 * m_detail.fractal(east / 120.0, north / 120.0, 4) * smoothStep(inland, 20.0, 200.0);
    // No hills beside the runway or below the flight paths at its ends.
    const double clear = smoothStep(levelDistance(right, along * 0.55), 250.0, 1500.0);
    const double mass = smoothStep(inland, 150.0, 1500.0) * clear;
    const double broad = 0.62 + 0.55 * m_hills.fractal(east / 2600.0, north / 2600.0, 3);
    const double ridges = m_hills.ridged(east / 1500.0 + 5.2, north / 1500.0 - 3.1, 7, 0.47);
    return shore + roughness + SUMMIT * mass * std::max(0.0, broad) * (0.28 + 1.15 * ridges);
}

double Island::height(double east, double north) const {
    const double angle = RUNWAY_HEADING * jMath::DEG2RAD;
    const double along = east * std::sin(angle) + north * std::cos(angle);
    const double right = east * std::cos(angle) - north * std::sin(angle);
    const double outside = levelDistance(right, along);
    // Some posts beyond the edge are level, too: otherwise the cells at the edge would be tilted.
    constexpr double MARGIN = 2.0 * POST_SPACING, BLEND = 420.0;
    const double share = smoothStep(outside, MARGIN, MARGIN + BLEND);
    if (share <= 0.0) return AIRFIELD_HEIGHT;
    return AIRFIELD_HEIGHT + share * (wildHeight(east, north, right, along) - AIRFIELD_HEIGHT);
}

double Island::heightAt(double lon, double lat) const {
    return height((lon - DEMO_CENTRE.x) * DEGREE.lon, (lat - DEMO_CENTRE.y) * DEGREE.lat);
}

void Island::summit(double& lon, double& lat) const {
    double best = -1e9, best_east = 0.0, best_north = 0.0;
    constexpr double REACH = 4000.0, STEP = 2.0 * POST_SPACING;
    for (double north = -REACH; north <= REACH; north += STEP) {
        for (double east = -REACH; east <= REACH; east += STEP) {
            const double h = height(east, north);
            if (h <= best) continue;
            best = h, best_east = east, best_north = north;
        }
    }
    lon = DEMO_CENTRE.x + best_east / DEGREE.lon;
    lat = DEMO_CENTRE.y + best_north / DEGREE.lat;
}

void writeElevation(const std::string& path, const Island& island) {
    const char* const options[] = {"TILED=YES", "COMPRESS=DEFLATE", "PREDICTOR=3", "ZLEVEL=6", nullptr};
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    GDALDataset* file = driver->Create(path.c_str(), POSTS, POSTS, 1, GDT_Float32, const_cast<char**>(options));
    if (file == nullptr) throw std::runtime_error("cannot create " + path);
    OGRSpatialReference reference;
    reference.importFromEPSG(4326);
    file->SetSpatialRef(&reference);
    const double step_lon = POST_SPACING / DEGREE.lon, step_lat = POST_SPACING / DEGREE.lat;
    double place[6] = {DEMO_CENTRE.x - POSTS / 2 * step_lon, step_lon, 0.0,
                       DEMO_CENTRE.y + POSTS / 2 * step_lat, 0.0,      -step_lat};
    file->SetGeoTransform(place);
    bool done = true;
    std::vector<float> row(POSTS);
    for (int y = 0; y < POSTS && done; ++y) {
        const double north = (POSTS / 2 - (y + 0.5)) * POST_SPACING;
        for (int x = 0; x < POSTS; ++x) {
            // Steps of 1/64 m: finer steps only make the file larger.
            const double h = island.height((x + 0.5 - POSTS / 2) * POST_SPACING, north);
            row[static_cast<std::size_t>(x)] = static_cast<float>(std::round(h * 64.0) / 64.0);
        }
        done = file->GetRasterBand(1)->RasterIO(GF_Write, 0, y, POSTS, 1, row.data(), POSTS, 1, GDT_Float32, 0, 0,
                                                nullptr) == CE_None;
    }
    if (GDALClose(file), !done) throw std::runtime_error("cannot write " + path);
}
