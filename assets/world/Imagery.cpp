// Colours from height, slope and noise: forest and grass, fields, beaches and reefs, rock, airfield meadow, roads.
#include "world/Imagery.h"

#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/jMath.h"
#include "plan/AirfieldPlan.h"
#include "plan/Layout.h"
#include "plan/Noise.h"
#include "world/Elevation.h"
#include "world/Roads.h"

namespace {

constexpr int SIZE = 2048;                         // pixels
constexpr double PIXEL = 3.8;                      // metres
constexpr double WEST = -4200.0, SOUTH = -2690.0;  // of the south-west corner, metres from the runway's middle
constexpr int STEP = 2;                            // pixels between heights
constexpr int HEIGHTS = SIZE / STEP + 1;

/// Linear reflectances.
struct Tint {
    double r, g, b;
};
constexpr Tint operator*(const Tint& c, double f) {
    return {c.r * f, c.g * f, c.b * f};
}
Tint mix(const Tint& a, const Tint& b, double t) {
    t = std::clamp(t, 0.0, 1.0);
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

constexpr Tint FOREST{0.024, 0.046, 0.017}, GROVE{0.043, 0.070, 0.024}, SCRUB{0.064, 0.081, 0.031},
    GRASS{0.092, 0.114, 0.040}, DRY{0.165, 0.150, 0.075}, EARTH{0.220, 0.130, 0.080}, ROCK{0.165, 0.148, 0.125},
    SAND{0.540, 0.470, 0.345}, WET_SAND{0.330, 0.280, 0.200}, REEF{0.090, 0.095, 0.060}, BED{0.330, 0.320, 0.260},
    MEADOW{0.098, 0.132, 0.046}, ROAD{0.300, 0.225, 0.155};

double smoothStep(double v, double from, double to) {
    const double t = std::clamp((v - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

/// The ground at one pixel.
struct GroundPoint {
    double east, north;    ///< metres from the runway's middle
    double right, along;   ///< the same in the airfield's frame
    double height, slope;  ///< metres; rise per metre
    double hollow;         ///< mean height of the surroundings above the point, metres
};

class Painter {
public:
    Tint paint(const GroundPoint& p) const;

private:
    Tint paintLand(const GroundPoint& p) const;
    Tint paintHills(const GroundPoint& p) const;
    Tint paintFields(const GroundPoint& p) const;
    Tint paintAirfield(const GroundPoint& p) const;
    Tint paintBed(const GroundPoint& p) const;

    Noise m_patches{71}, m_crowns{83}, m_fields{97}, m_reefs{103}, m_grain{109};
};

Tint Painter::paint(const GroundPoint& p) const {
    if (p.height < -0.4) return paintBed(p);
    // Irregular edges of wet sand and vegetation.
    const double wander = m_patches.fractal(p.east / 55.0, p.north / 55.0, 3);
    const Tint sand = mix(WET_SAND, SAND, smoothStep(p.height, 0.3 + 0.3 * wander, 0.9 + 0.3 * wander));
    const double grain = 1.0 + 0.08 * m_grain.at(p.east / 9.0, p.north / 9.0);
    const double grown = smoothStep(p.height + 0.7 * wander, 1.5, 2.1);
    const Tint shore = mix(paintBed(p), sand * grain, smoothStep(p.height, -0.4, 0.1));
    return grown > 0.0 ? mix(shore, paintLand(p), grown) : shore;
}

Tint Painter::paintLand(const GroundPoint& p) const {
    const double outside_right = std::max({LEVEL_LEFT - p.right, p.right - LEVEL_RIGHT, 0.0});
    const double outside_along = std::max({LEVEL_BACK - p.along, p.along - LEVEL_FRONT, 0.0});
    const double outside = std::hypot(outside_right, outside_along);
    const double edge = outside + 22.0 * m_patches.at(p.east / 70.0, p.north / 70.0);
    if (edge <= 35.0) return paintAirfield(p);
    // Fields on flat low ground, where the noise is high.
    const double farmed = smoothStep(m_fields.fractal(p.east / 1300.0 + 0.4, p.north / 1300.0, 2), 0.07, 0.11) *
                          (1.0 - smoothStep(p.slope, 0.05, 0.08)) * (1.0 - smoothStep(p.height, 24.0, 30.0)) *
                          smoothStep(p.height, 3.0, 3.6);
    const Tint wild = mix(paintHills(p), paintFields(p), farmed);
    return mix(paintAirfield(p), wild, smoothStep(edge, 35.0, 45.0));
}

Tint Painter::paintHills(const GroundPoint& p) const {
    const double chance = m_patches.fractal(p.east / 640.0, p.north / 640.0, 6, 0.6);
    const double damp = 0.16 + chance + 0.05 * p.hollow + 0.0006 * p.height - 0.5 * std::max(p.slope - 0.45, 0.0);
    const double crown = m_crowns.at(p.east / 10.0, p.north / 10.0) + 0.6 * m_grain.at(p.east / 5.0, p.north / 5.0);
    const Tint trees = mix(GROVE, FOREST, 0.5 + 1.6 * chance) * (1.0 + 0.42 * crown);
    const Tint open = mix(mix(GRASS, DRY, 0.35 + 1.5 * m_fields.fractal(p.east / 210.0, p.north / 210.0, 4)), SCRUB,
                          smoothStep(damp, -0.35, -0.05));
    // Single trees in the open, denser toward the forest.
    const double woods = smoothStep(damp + 0.22 * crown, -0.08, 0.10);
    Tint ground = mix(open * (1.0 + 0.15 * crown), trees, woods);
    const double bare = p.slope + 0.16 * m_grain.fractal(p.east / 60.0, p.north / 60.0, 4) - 0.012 * p.hollow;
    ground = mix(ground, EARTH * (1.0 + 0.2 * crown), 0.8 * smoothStep(bare, 0.52, 0.66) * (1.0 - woods * 0.6));
    ground = mix(ground, ROCK * (1.0 + 0.25 * crown), smoothStep(bare, 0.66, 0.82));
    return ground * (1.0 - 0.35 * std::clamp(p.hollow / 14.0, -0.5, 1.0));
}

// Strips in different greens with hedges between them.
Tint Painter::paintFields(const GroundPoint& p) const {
    constexpr double WIDTH = 62.0, LENGTH = 118.0, HEDGE = 4.5;
    const double turn = 0.35 * std::floor(2.0 * m_fields.at(p.east / 900.0, p.north / 900.0));
    const double x = p.right * std::cos(turn) - p.along * std::sin(turn);
    const double y = p.right * std::sin(turn) + p.along * std::cos(turn);
    const double column = std::floor(x / WIDTH), row = std::floor(y / LENGTH + 0.37 * column);
    const double in_x = x - column * WIDTH, in_y = (y / LENGTH + 0.37 * column - row) * LENGTH;
    const double kind = 0.5 + 0.9 * m_crowns.at(column * 0.737 + 0.31, row * 0.619 + 0.17);
    const double bed = 0.06 * std::sin(in_x * 2.0 * jMath::PI / 9.0) + 0.10 * m_grain.at(p.east / 14.0, p.north / 14.0);
    const Tint crop = kind < 0.35   ? GRASS
                      : kind < 0.55 ? mix(SCRUB, GRASS, 0.5)
                      : kind < 0.75 ? mix(GROVE, SCRUB, kind)
                      : kind < 0.92 ? mix(GRASS, DRY, 0.7)
                                    : mix(EARTH, SCRUB, 0.4);
    const double inside = std::min({in_x, WIDTH - in_x, in_y, LENGTH - in_y});
    return mix(FOREST * 1.2, crop * (1.0 + bed), smoothStep(inside, HEDGE * 0.5, HEDGE));
}

/// Mown in strips along the runway, with dry patches.
Tint Painter::paintAirfield(const GroundPoint& p) const {
    constexpr double STRIP = 14.0;
    const double mown = std::sin(p.right * jMath::PI / STRIP) > 0.0 ? 1.05 : 0.95;
    const double dry = m_patches.fractal(p.east / 160.0, p.north / 160.0, 5, 0.6);
    const double grain = 1.0 + 0.12 * m_grain.at(p.east / 7.0, p.north / 7.0);
    return mix(MEADOW, DRY, 0.18 + 0.9 * dry) * (mown * grain);
}

Tint Painter::paintBed(const GroundPoint& p) const {
    const double depth = -p.height;
    const double reef = m_reefs.fractal(p.east / 170.0, p.north / 170.0, 5, 0.6) - 0.12 + 0.02 * std::min(depth, 6.0);
    const Tint bottom =
        mix(SAND * 0.85, BED, smoothStep(depth, 1.0, 8.0)) * (1.0 + 0.06 * m_grain.at(p.east / 12.0, p.north / 12.0));
    const double covered = smoothStep(reef, 0.0, 0.14) * smoothStep(depth, 0.8, 2.2);
    return mix(bottom, REEF, 0.85 * covered) * (1.0 - 0.45 * smoothStep(depth, 8.0, 28.0));
}

/// Heights on a grid, and a blurred copy.
class Ground {
public:
    explicit Ground(const Island& island) : m_heights(static_cast<std::size_t>(HEIGHTS) * HEIGHTS) {
        for (int i = 0; i < HEIGHTS * HEIGHTS; ++i) {
            m_heights[static_cast<std::size_t>(i)] = static_cast<float>(
                island.height(WEST + i % HEIGHTS * STEP * PIXEL, SOUTH + i / HEIGHTS * STEP * PIXEL));
        }
        m_blurred = blurred(blurred(m_heights, 1, HEIGHTS), HEIGHTS, 1);
    }
    /// Position in metres from the south-west corner.
    double height(double x, double y) const { return sample(m_heights, x, y); }
    double around(double x, double y) const { return sample(m_blurred, x, y); }

private:
    using Grid = std::vector<float>;

    /// Moving means along lines. Index steps: `along` within a line, `across` from line to line.
    static Grid blurred(const Grid& in, int along, int across) {
        constexpr int REACH = 9;
        Grid out(in.size());
        for (int line = 0; line < HEIGHTS; ++line) {
            const auto at = [&](int i) {
                return static_cast<std::size_t>(line * across + std::clamp(i, 0, HEIGHTS - 1) * along);
            };
            double sum = 0.0;
            for (int i = -REACH; i <= REACH; ++i) sum += in[at(i)];
            for (int i = 0; i < HEIGHTS; ++i) {
                out[at(i)] = static_cast<float>(sum / (2 * REACH + 1));
                sum += static_cast<double>(in[at(i + REACH + 1)]) - in[at(i - REACH)];
            }
        }
        return out;
    }
    static double sample(const Grid& grid, double x, double y) {
        const double u = std::clamp(x / (STEP * PIXEL), 0.0, HEIGHTS - 1.001);
        const double v = std::clamp(y / (STEP * PIXEL), 0.0, HEIGHTS - 1.001);
        const auto at = static_cast<std::size_t>(static_cast<int>(v) * HEIGHTS + static_cast<int>(u));
        const double fu = u - std::floor(u), fv = v - std::floor(v);
        return (grid[at] * (1.0 - fu) + grid[at + 1] * fu) * (1.0 - fv) +
               (grid[at + HEIGHTS] * (1.0 - fu) + grid[at + HEIGHTS + 1] * fu) * fv;
    }

    Grid m_heights, m_blurred;
};

GroundPoint pointAt(const Ground& ground, int column, int row) {
    constexpr double SPAN = STEP * PIXEL;
    const double x = (column + 0.5) * PIXEL, y = (row + 0.5) * PIXEL;
    GroundPoint p;
    p.east = WEST + x;
    p.north = SOUTH + y;
    const double angle = RUNWAY_HEADING * jMath::DEG2RAD;
    p.right = p.east * std::cos(angle) - p.north * std::sin(angle);
    p.along = p.east * std::sin(angle) + p.north * std::cos(angle);
    p.height = ground.height(x, y);
    p.slope = std::hypot(ground.height(x + SPAN, y) - ground.height(x - SPAN, y),
                         ground.height(x, y + SPAN) - ground.height(x, y - SPAN)) /
              (2.0 * SPAN);
    p.hollow = ground.around(x, y) - p.height;
    return p;
}

/// Fraction of each pixel that is covered by a road.
using RoadMap = std::vector<float>;

void drawRoad(const std::vector<RoadPoint>& road, RoadMap& map) {
    constexpr double HALF_WIDTH = 3.2, SOFT = 2.4;
    for (std::size_t i = 0; i + 1 < road.size(); ++i) {
        const RoadPoint &a = road[i], &b = road[i + 1];
        const int steps = 1 + static_cast<int>(std::hypot(b.x - a.x, b.y - a.y) / 2.0);
        for (int k = 0; k < steps; ++k) {
            const double t = static_cast<double>(k) / steps;
            const double x = (a.x + (b.x - a.x) * t) / PIXEL, y = (a.y + (b.y - a.y) * t) / PIXEL;
            for (int py = static_cast<int>(y) - 2; py <= static_cast<int>(y) + 2; ++py) {
                for (int px = static_cast<int>(x) - 2; px <= static_cast<int>(x) + 2; ++px) {
                    if (px < 0 || py < 0 || px >= SIZE || py >= SIZE) continue;
                    const double off = std::hypot(px + 0.5 - x, py + 0.5 - y) * PIXEL;
                    float& share = map[static_cast<std::size_t>(py * SIZE + px)];
                    share = std::max(share,
                                     static_cast<float>(1.0 - smoothStep(off, HALF_WIDTH - SOFT, HALF_WIDTH + SOFT)));
                }
            }
        }
    }
}

/// From the apron to the mast on the summit, and on to the opposite shore.
RoadMap makeRoads(const Island& island, const Ground& ground) {
    const EllipsoidModel globe;
    const dmat4 middle = globe.getWGSTransform(globe.toWorld(DEMO_CENTRE));
    const auto toMap = [&](const dvec3& geodetic) {
        const dvec3 local = inverse(middle) * globe.toWorld({geodetic.x, geodetic.y, 0.0});
        return RoadPoint{local.x - WEST, local.y - SOUTH};
    };
    dvec3 summit;
    island.summit(summit.x, summit.y);
    const RoadPoint apron = toMap(airfieldPlace(LEVEL_LEFT - 40.0, -700.0, 0.0)), top = toMap(summit);
    const RoadPoint hamlet = toMap(airfieldPlace(-1900.0, 1500.0, 0.0)),
                    gate = toMap(airfieldPlace(airfield::TOWER.x + 30.0, 60.0, 0.0));
    const RoadPoint village = toMap(airfieldPlace(-500.0, -1900.0, 0.0));
    const auto height = [&](double x, double y) { return ground.height(x, y); };
    RoadMap map(static_cast<std::size_t>(SIZE) * SIZE);
    const std::pair<RoadPoint, RoadPoint> ways[] = {{apron, top}, {apron, hamlet}, {village, apron}, {village, gate}};
    for (const auto& [from, to] : ways) drawRoad(findRoad(from, to, SIZE * PIXEL, 30.0, height), map);
    return map;
}

/// sRGB encoding of a reflectance (IEC 61966-2-1).
class ToBytes {
public:
    ToBytes() {
        for (std::size_t i = 0; i < m_values.size(); ++i) {
            const double v = static_cast<double>(i) / (m_values.size() - 1);
            const double s = v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1.0 / 2.4) - 0.055;
            m_values[i] = static_cast<std::uint8_t>(std::lround(255.0 * s));
        }
    }
    std::uint8_t operator()(double v) const {
        return m_values[static_cast<std::size_t>(std::clamp(v, 0.0, 1.0) * static_cast<double>(m_values.size() - 1))];
    }

private:
    std::vector<std::uint8_t> m_values = std::vector<std::uint8_t>(8192);
};

std::vector<std::uint8_t> paintAll(const Island& island) {
    const Ground ground(island);
    const RoadMap roads = makeRoads(island, ground);
    const Painter painter;
    const ToBytes to_byte;
    std::vector<std::uint8_t> pixels;
    pixels.reserve(static_cast<std::size_t>(SIZE) * SIZE * 3);
    for (int row = SIZE; row-- > 0;) {
        for (int column = 0; column < SIZE; ++column) {
            const GroundPoint point = pointAt(ground, column, row);
            const float road = roads[static_cast<std::size_t>(row * SIZE + column)];
            const Tint tint = mix(painter.paint(point), ROAD, 0.85 * road);
            for (const double part : {tint.r, tint.g, tint.b}) pixels.push_back(to_byte(part));
        }
    }
    return pixels;
}

}  // namespace

void writeImagery(const std::string& path, const Island& island) {
    const char* const options[] = {"TILED=YES", "COMPRESS=JPEG", "PHOTOMETRIC=YCBCR", "JPEG_QUALITY=88", nullptr};
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    GDALDataset* file = driver->Create(path.c_str(), SIZE, SIZE, 3, GDT_Byte, const_cast<char**>(options));
    if (file == nullptr) throw std::runtime_error("cannot create " + path);
    OGRSpatialReference reference;
    reference.importFromEPSG(4326);
    file->SetSpatialRef(&reference);
    const MetresPerDegree degree = metresPerDegree();
    double place[6] = {DEMO_CENTRE.x + WEST / degree.lon,
                       PIXEL / degree.lon,
                       0.0,
                       DEMO_CENTRE.y + (SOUTH + SIZE * PIXEL) / degree.lat,
                       0.0,
                       -PIXEL / degree.lat};
    file->SetGeoTransform(place);
    std::vector<std::uint8_t> pixels = paintAll(island);
    const bool done = file->RasterIO(GF_Write, 0, 0, SIZE, SIZE, pixels.data(), SIZE, SIZE, GDT_Byte, 3, nullptr, 3,
                                     SIZE * 3, 1, nullptr) == CE_None;
    if (GDALClose(file), !done) throw std::runtime_error("cannot write " + path);
}
