// Elevation rasters, heights and picks on the ground.
#include <GeographicLib/UTMUPS.hpp>
#include <cmath>
#include <functional>
#include <limits>

#include "engine/scene/ElevationRaster.h"
#include "engine/scene/ObjectTerrain.h"
#include "scene/TerrainPick.h"
#include "support/TestScene.h"

namespace {

constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

/// A raster as a virtual data set over raw numbers, which says everything about itself in text.
struct TestRaster {
    int columns = 3, rows = 3;
    std::array<double, 6> transform{112.0, 0.001, 0.0, 17.0, 0.0, -0.001};  ///< as GDAL counts it: corner, steps
    std::string srs = "EPSG:4326";
    std::string extra;  ///< further elements of the band
    int line = 0;       ///< bytes from row to row; 0 for rows one after the other
    std::string bytes;

    void fill(const std::function<double(int column, int row)>& value) {
        bytes.clear();
        for (int i = 0; i < columns * rows; ++i) {
            const auto v = static_cast<float>(value(i % columns, i / columns));
            bytes.append(reinterpret_cast<const char*>(&v), sizeof v);
        }
    }
    /// The place of a pixel's centre in the raster's own system.
    std::array<double, 2> centre(double column, double row) const {
        const double c = column + 0.5, r = row + 0.5;
        return {transform[0] + c * transform[1] + r * transform[2], transform[3] + c * transform[4] + r * transform[5]};
    }
    std::string describe() const {
        char place[200];
        std::snprintf(place, sizeof place, "%.17g,%.17g,%.17g,%.17g,%.17g,%.17g", transform[0], transform[1],
                      transform[2], transform[3], transform[4], transform[5]);
        return "<VRTDataset rasterXSize=\"" + std::to_string(columns) + "\" rasterYSize=\"" + std::to_string(rows) +
               "\">" + (srs.empty() ? "" : "<SRS>" + srs + "</SRS><GeoTransform>" + place + "</GeoTransform>") +
               R"(<VRTRasterBand dataType="Float32" band="1" subClass="VRTRawRasterBand">)" + extra +
               R"(<SourceFilename relativetoVRT="1">heights.raw</SourceFilename><ImageOffset>0</ImageOffset>)"
               "<PixelOffset>4</PixelOffset><LineOffset>" +
               std::to_string(line ? line : columns * 4) +
               "</LineOffset><ByteOrder>LSB</ByteOrder></VRTRasterBand></VRTDataset>";
    }
};

class TerrainTest : public SceneTest {
protected:
    std::unique_ptr<ElevationRaster> open(const TestRaster& raster) {
        write("data/heights.raw", raster.bytes);
        write("data/heights.vrt", raster.describe());
        return ElevationRaster::open((root() / "data/heights.vrt").string());
    }
    static double heightAt(const ElevationRaster& raster, double lon, double lat) {
        double height = NONE;
        return raster.getAltitude(lon, lat, height) ? height : NONE;
    }
};

/// A fold of hills between -150 and 150 m.
double hills(double lon, double lat) {
    return 100.0 * std::sin(lon * 400.0) + 50.0 * std::cos(lat * 300.0 + lon * 100.0);
}

/// Two triangles a cell written out on their own: the height between the posts of a raster whose row 0 is the northern
/// one and whose rows start `stride` posts apart.
double expectedHeight(const std::vector<float>& posts, int size, int stride, double column, double row_from_north) {
    const int c = std::min(static_cast<int>(column), size - 2);
    const int r = std::min(static_cast<int>(row_from_north), size - 2);
    const auto post = [&](int dc, int dr) {
        return double(posts[static_cast<std::size_t>((r + dr) * stride + c + dc)]);
    };
    const double u = column - c, v = 1.0 - (row_from_north - r);  // from the south-west post (0, 1)
    const double sw = post(0, 1), se = post(1, 1), nw = post(0, 0), ne = post(1, 0);
    return u > v ? (1 - u) * sw + (u - v) * se + v * ne : (1 - v) * sw + (v - u) * nw + u * ne;
}

TEST_F(TerrainTest, HeightsAreThoseOfTwoTrianglesACell) {
    constexpr int STRIDE = 2;  // rows overlap in the file, which keeps it small
    Random r(3);
    for (const int size : {300, 256 * 22 + 10}) {  // all tiles at once; more tiles than are kept
        TestRaster source;
        source.columns = source.rows = size;
        source.line = STRIDE * 4;
        source.transform = {112.0, 0.0001, 0, 17.0, 0, -0.0001};
        std::vector<float> posts(static_cast<std::size_t>((1 + STRIDE) * size));
        for (float& post : posts) post = r.getFloat(-100.0f, 2000.0f);
        source.bytes.assign(reinterpret_cast<const char*>(posts.data()), posts.size() * 4);
        const auto raster = open(source);
        ASSERT_TRUE(raster);
        const int tiles = size / 256 + 1;
        const double last = size - 1.0;
        for (int i = 0; i < 2 * 23 * 23 * 20; ++i) {  // every tile of the large one twice
            double column = std::min(i / 20 % tiles * 256 + r.getDouble(0.0, 256.0), last);
            double row = std::min(i / 20 / tiles % tiles * 256 + r.getDouble(0.0, 256.0), last);
            if (i % 10 == 0) column = std::floor(column);
            if (i % 20 == 0) row = std::floor(row);
            const auto [lon, lat] = source.centre(column, row);
            ASSERT_NEAR(heightAt(*raster, lon, lat), expectedHeight(posts, size, STRIDE, column, row), 1e-3)
                << column << " " << row;
        }
        for (const double column : {-0.01, 0.0, last, last + 0.01}) {
            for (const double row : {-0.01, 0.0, last, last + 0.01}) {
                const auto [lon, lat] = source.centre(column, row);
                const bool inside = column >= 0.0 && column <= last && row >= 0.0 && row <= last;
                EXPECT_EQ(!std::isnan(heightAt(*raster, lon + 360.0, lat)), inside) << column << " " << row;
            }
        }
        EXPECT_TRUE(std::isnan(heightAt(*raster, NONE, 16.999)));
    }
    EXPECT_EQ(lines().size(), 0u);
}

TEST_F(TerrainTest, ATriangleWithAHoleIsNoGround) {
    // The middle of 3 x 3 posts misses: only two of the eight triangles do not touch it.
    const std::tuple<const char*, double, const char*> holes[] = {
        {"declared", -9999.0, "<NoDataValue>-9999</NoDataValue>"},
        {"NaN", NONE, ""},
        {"no height on earth", -32768.0, ""}};
    for (const auto& [what, value, extra] : holes) {
        TestRaster source;
        source.extra = extra;
        source.fill([&, hole = value](int column, int row) { return column == 1 && row == 1 ? hole : 7.0; });
        const auto raster = open(source);
        ASSERT_TRUE(raster) << what;
        const EllipsoidModel globe;
        for (int i = 0; i < 8; ++i) {
            const int column = i & 1, row = i >> 1 & 1;
            const bool east = i & 4;
            const auto [lon, lat] = source.centre(column + (east ? 0.7 : 0.3), row + (east ? 0.7 : 0.3));
            const bool ground = column == row && east == (column == 1);
            EXPECT_EQ(!std::isnan(heightAt(*raster, lon, lat)), ground) << what << i;
            dvec3 hit;
            EXPECT_EQ(pickGround(*raster, globe.toWorld({lon, lat, 100}), globe.toWorld({lon, lat, -100}), hit),
                      ground);
        }
    }
}

TEST_F(TerrainTest, VerticalPicksAgreeWithHeightsAtAnyPlaceAndSpacing) {
    const EllipsoidModel globe;
    Random r(5);
    const std::tuple<double, double, double> cases[] = {
        {112.0, 17.0, 0.00001}, {-40.0, -60.0, 0.5}, {179.0, 2.0, 0.1}, {20.0, 89.5, 0.03}};
    for (const auto& [west, north, step] : cases) {
        TestRaster source;
        source.columns = source.rows = 40;
        source.transform = {west, step, 0, north, 0, -step};
        source.fill([&](int, int) { return r.getDouble(-50.0, 3000.0); });
        open(source);
        auto* const terrain = add(std::make_unique<ObjectTerrain>("data/heights.vrt", ""));
        ASSERT_TRUE(terrain->isLoaded());
        terrain->setPosition({100.0, -2000.0, 30.0});  // without effect
        for (int i = 0; i < 500; ++i) {
            const auto [lon, lat] = source.centre(r.getDouble(0, 39), i % 10 ? r.getDouble(0, 39) : r.getInt() % 39);
            const auto at = [&, lon = lon, lat = lat](double height) { return globe.toWorld({lon, lat, height}); };
            double height = NONE;
            ASSERT_TRUE(terrain->getAltitudeByLonLat(std::remainder(lon, 360.0), lat, height));
            dvec3 hit;
            for (const auto& [from, to] : {std::pair(100e3, -1e3), {-1e3, 5e3}, {height + 1.0, height - 1.0}}) {
                jVector<Node*> nodes;
                EXPECT_TRUE(world().getIntersection(at(from), at(to), nodes));
                ASSERT_TRUE(terrain->getIntersection(terrain->toLocal(at(from)), terrain->toLocal(at(to)), 0, hit))
                    << lon << " " << lat;
                EXPECT_NEAR(globe.toWGS(terrain->toWorld(hit)).z, height, 1e-3);
            }
            EXPECT_FALSE(terrain->getIntersection(terrain->toLocal(at(4e3)), terrain->toLocal(at(3.01e3)), 0, hit));
        }
        world().removeNode(terrain);
    }
}

// Against small steps along the segment.
TEST_F(TerrainTest, SlantedPicksFindTheFirstCrossing) {
    TestRaster source;
    source.columns = 500;
    source.rows = 400;
    source.transform = {112.0, 0.0003, 0, 17.0, 0, -0.0003};
    Random r(6);
    source.fill([&](int c, int row) { return hills(c * 0.0003, row * 0.0003) + r.getDouble(0.0, 10.0); });
    const auto raster = open(source);
    ASSERT_TRUE(raster);
    const EllipsoidModel globe;
    const auto point = [&] {
        return globe.toWorld({r.getDouble(111.95, 112.2), r.getDouble(16.85, 17.03), r.getDouble(-100, 300)});
    };
    constexpr int STEPS = 20000;
    int hits = 0;
    for (int i = 0; i < 150; ++i) {
        const dvec3 a = i % 3 == 0 ? globe.toWorld({112.5, 17.0, 40e3}) : point(), b = point();
        const auto heightAbove = [&](const dvec3& p) {
            const dvec3 geo = globe.toWGS(p);
            return geo.z - heightAt(*raster, geo.x, geo.y);
        };
        double before = NONE, first = NONE;
        for (int k = 0; k <= STEPS && std::isnan(first); ++k) {
            const double above = heightAbove(a + (b - a) * (double(k) / STEPS));
            if (before * above < 0.0) first = double(k) / STEPS;
            before = above;
        }
        dvec3 hit;
        const bool met = pickGround(*raster, a, b, hit);
        EXPECT_TRUE(met || std::isnan(first)) << i;
        if (!met) continue;
        ++hits;
        EXPECT_NEAR(heightAbove(hit), 0.0, 1e-3) << i;
        EXPECT_LE(length(hit - a) / length(b - a), std::isnan(first) ? 1.0 : first + 1e-9) << i;
    }
    EXPECT_GT(hits, 50);
    const dvec3 over = globe.toWorld({112.1, 16.95, 500.0});
    dvec3 hit;
    for (const dvec3& end : {over, dvec3(NONE, 0, 0), dvec3(HUGE_VAL, 0, 0)}) {
        EXPECT_FALSE(pickGround(*raster, over, end, hit));
    }
    EXPECT_TRUE(pickGround(*raster, over, -over, hit)) << "straight through the globe";
}

TEST_F(TerrainTest, OtherSystemsAreTransformedToLongitudeAndLatitude) {
    const auto smooth = [](double lon, double lat) { return 100.0 * std::sin(lon * 200.0) * std::cos(lat * 200.0); };
    const double s = 0.0002, east = s * std::cos(0.5), north = s * std::sin(0.5);
    const std::pair<const char*, std::array<double, 6>> cases[] = {
        {"EPSG:32649", {645000, 20, 0, 1866000, 0, -20}},                 // UTM
        {"EPSG:4326+5773", {112.38, east, north, 16.84, north, -east}}};  // turned; with a height system
    for (const auto& [srs, transform] : cases) {
        const bool utm = transform[1] == 20;
        TestRaster source;
        source.columns = source.rows = 250;
        source.srs = srs;
        source.transform = transform;
        source.extra = "<Scale>0.01</Scale><Offset>3</Offset>";
        const auto toLonLat = [&](double column, double row) {
            std::array<double, 2> place = source.centre(column, row);
            if (utm) GeographicLib::UTMUPS::Reverse(49, true, place[0], place[1], place[1], place[0]);
            return place;
        };
        source.fill([&](int column, int row) {
            const auto [lon, lat] = toLonLat(column, row);
            return (smooth(lon, lat) - 3.0) * 100.0;
        });
        const auto raster = open(source);
        ASSERT_TRUE(raster) << source.srs;
        Random r(8);
        for (int i = 0; i < 500; ++i) {
            const auto [lon, lat] = toLonLat(r.getDouble(2, 247), r.getDouble(2, 247));
            EXPECT_NEAR(heightAt(*raster, lon, lat), smooth(lon, lat), 0.3) << source.srs;
        }
        EXPECT_EQ(lines().size(), 0u) << source.srs;
    }
}

TEST_F(TerrainTest, WhatCannotBeReadIsRefusedWithOneLine) {
    TestRaster good;
    good.fill([](int, int) { return 1.0; });
    TestRaster unplaced = good, thin = good;
    unplaced.srs.clear();
    thin.columns = 1;
    const std::string endless =
        R"(<VRTDataset rasterXSize="2000000000" rasterYSize="2000000000"><SRS>EPSG:4326</SRS>)"
        R"(<GeoTransform>0,1e-9,0,0,0,-1e-9</GeoTransform><VRTRasterBand dataType="Byte" band="1"/></VRTDataset>)";
    const std::pair<const char*, std::string> cases[] = {{"no raster", "hills and valleys"},
                                                         {"no georeference", unplaced.describe()},
                                                         {"one column", thin.describe()},
                                                         {"too large", endless},
                                                         {"cut off", good.describe().substr(0, 150)}};
    for (const auto& [what, text] : cases) {
        clearLines();
        write("data/heights.raw", good.bytes);
        write("data/broken.dem", text);
        const ObjectTerrain terrain("data/broken.dem", "");
        EXPECT_FALSE(terrain.isLoaded()) << what;
        EXPECT_EQ(lines().size(), 1u) << what << (lines().size() > 1 ? lines()[1] : "");
        EXPECT_EQ(countLines("broken.dem"), 1) << what;
        double height = 0.0;
        dvec3 hit;
        EXPECT_FALSE(terrain.getAltitudeByLonLat(112.0, 17.0, height));
        EXPECT_FALSE(terrain.getIntersection({7e6, 0, 0}, {}, 0, hit));
        EXPECT_TRUE(terrain.getBoundBox().isEmpty());
    }
}

}  // namespace
