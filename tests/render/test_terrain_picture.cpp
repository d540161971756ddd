// The ground in the picture is the ground that queries answer from.
#include <algorithm>
#include <sstream>

#include "PictureScene.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectTerrain.h"
#include "engine/scene/SceneNodes.h"
#include "support/TestScene.h"
#include "terrain/TerrainTree.h"

namespace {

constexpr double WEST = 112.0, SOUTH = 16.0, STEP = 8e-5;  // degrees; about 8.8 m
constexpr int POSTS = 260;
constexpr double HOLE = -9999.0;

/// A raster as text, its first row the northernmost; `height` of column and row from the south-west.
template <class Height>
std::string gridText(int posts, Height height) {
    std::ostringstream out;
    out << "ncols " << posts << "\nnrows " << posts << "\nxllcenter " << WEST << "\nyllcenter " << SOUTH
        << "\ncellsize " << STEP << "\nNODATA_value " << HOLE << "\n";
    for (int r = posts; r-- > 0;) {
        for (int c = 0; c < posts; ++c) out << height(c, r) << (c + 1 < posts ? " " : "\n");
    }
    return out.str();
}

const char* const WGS84 =
    R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],PRIMEM["Greenwich",0],)"
    R"(UNIT["degree",0.0174532925199433]])";

double roughHeight(int c, int r) {
    Random chance(static_cast<std::uint64_t>(c * 1009 + r) * 0x9E3779B97F4A7C15ULL);
    return 60.0 + 40.0 * std::sin(c * 0.05) * std::cos(r * 0.07) + 3.0 * chance.getDouble(0.0, 1.0);
}

/// A world with nothing but a terrain.
class GroundScene {
public:
    template <class Height>
    explicit GroundScene(Height height, const Quarters* imagery = nullptr)
        : scene((write(height, imagery), folder.getPath().c_str())) {
        terrain = new ObjectTerrain("data/ground.asc", imagery ? "data/imagery.png" : "");
        scene.world().addChild(terrain);
        scene.open();
    }
    /// Place of a post, some metres above the ellipsoid.
    static dvec3 above(double column, double row, double height) {
        return {WEST + column * STEP, SOUTH + row * STEP, height};
    }

private:
    template <class Height>
    void write(Height height, const Quarters* imagery) {
        folder.write("data/ground.asc", gridText(POSTS, height));
        folder.write("data/ground.prj", WGS84);
        if (!imagery) return;
        writeImage(folder.getPath() / "data/imagery.png", *imagery);
        std::ostringstream place;
        place << "<PAMDataset><SRS>EPSG:4326</SRS><GeoTransform>" << WEST << "," << STEP * POSTS / 256 << ",0,"
              << SOUTH + STEP * POSTS << ",0," << -STEP * POSTS / 256 << "</GeoTransform></PAMDataset>";
        folder.write("data/imagery.png.aux.xml", place.str());
    }

public:
    const TestFolder folder;
    PictureScene scene;
    ObjectTerrain* terrain = nullptr;
};

/// Metres along the view's axis to the ground that segments meet; infinite without any.
double pickedDistance(const ObjectTerrain& terrain, const Ray& ray) {
    constexpr double REACH = 30000.0;
    dvec3 hit;
    if (!terrain.getIntersection(terrain.toLocal(ray.eye), terrain.toLocal(ray.eye + ray.step * REACH), 0, hit)) {
        return std::numeric_limits<double>::infinity();
    }
    return dot(terrain.toWorld(hit) - ray.eye, ray.step) / dot(ray.step, ray.step);
}

TEST(TerrainPicture, NearTheEyeTheGroundIsTheRastersOwn) {
    GroundScene ground(roughHeight);
    const struct {
        double column, row, height;
        dvec3 attitude;
    } VIEWS[] = {{100.3, 100.7, 150.0, {0.0, -90.0, 0.0}},
                 {127.9, 128.1, 140.0, {20.0, -35.0, 10.0}},
                 {160.0, 64.0, 120.0, {300.0, -20.0, 0.0}}};
    for (const auto& view : VIEWS) {
        ground.scene.look(GroundScene::above(view.column, view.row, view.height), view.attitude);
        ground.scene.draw();
        const Snapshot shot = ground.scene.capture(true);
        int near = 0, too_coarse = 0;
        for (int y = 1; y < shot.height; y += 3) {
            for (int x = 1; x < shot.width; x += 3) {
                const double distance = distanceAt(shot, x, y);
                const Ray ray = ground.scene.rayAt(x, y);
                const double range = distance * length(ray.step);
                if (!std::isfinite(range)) continue;
                const dvec3 drawn = ground.scene.engine.getEllipsoid().toWGS(ray.eye + ray.step * distance);
                double height = 1e9;
                const bool has_ground = ground.terrain->getAltitudeByLonLat(drawn.x, drawn.y, height);
                if (range < 180.0) {
                    ASSERT_TRUE(has_ground);
                    ASSERT_NEAR(drawn.z, height, 0.02) << "pixel " << x << ", " << y << " from " << view.height;
                    ++near;
                } else if (std::fabs(drawn.z - height) > 0.015 * range) {
                    ++too_coarse;
                }
            }
        }
        EXPECT_LT(too_coarse, near / 50);
        EXPECT_GT(near, 1000);
    }
}

TEST(TerrainPicture, NoGapsButTheHoles) {
    // One post without data, and far round it ground of all degrees of coarseness.
    GroundScene ground([](int c, int r) { return c == 70 && r == 90 ? HOLE : roughHeight(c, r); });
    int holes = 0;
    for (const dvec3& view : {dvec3(70.0, 90.0, 140.0), dvec3(10.0, 10.0, 300.0), dvec3(250.0, 30.0, 900.0)}) {
        for (const double pitch : {-90.0, -25.0}) {
            ground.scene.look(GroundScene::above(view.x, view.y, view.z), {315.0, pitch, 0.0});
            ground.scene.draw();
            const Snapshot shot = ground.scene.capture(true);
            const auto isGround = [&](int x, int y) {
                return std::isfinite(pickedDistance(*ground.terrain, ground.scene.rayAt(x, y)));
            };
            for (int y = 8; y + 8 < shot.height; y += 4) {
                for (int x = 8; x + 8 < shot.width; x += 4) {
                    // Outlines may lie some pixels off.
                    bool same[2] = {true, true};
                    for (const int dy : {-7, 0, 7}) {
                        for (const int dx : {-7, 0, 7}) same[isGround(x + dx, y + dy)] = false;
                    }
                    if (!same[0] && !same[1]) continue;
                    holes += same[1];
                    ASSERT_EQ(std::isfinite(distanceAt(shot, x, y)), same[0])
                        << "pixel " << x << ", " << y << " from " << view.z << ", pitch " << pitch;
                }
            }
        }
    }
    EXPECT_GT(holes, 20);
    ground.terrain->setEnabled(false);
    ground.scene.draw();
    const std::vector<float> distances = ground.scene.capture(true).distance;
    EXPECT_TRUE(std::none_of(distances.begin(), distances.end(), [](float d) { return std::isfinite(d); }));
}

TEST(TerrainPicture, ChannelsMeetAtTheirSeam) {
    GroundScene ground(roughHeight);
    PictureScene& scene = ground.scene;
    scene.world().addChild(new ObjectOcean);  // seen beyond the raster
    scene.look(GroundScene::above(130.0, 20.0, 150.0), {20.0, -8.0, 0.0});
    const auto shoot = [&](int width, double shear) {
        PictureSettings settings = PictureScene::small();
        settings.width = width;
        settings.shear = {shear, 0.0};
        scene.open(settings);
        scene.picture->draw();  // at the same moment
        return scene.capture();
    };
    const Snapshot whole = shoot(320, 0.0), left = shoot(160, -1.0), right = shoot(160, 1.0);
    int different = 0;
    for (int y = 0; y < whole.height; ++y) {
        for (int x = 0; x < whole.width; ++x) {
            const double part = x < 160 ? luminanceAt(left, x, y) : luminanceAt(right, x - 160, y);
            if (std::fabs(part - luminanceAt(whole, x, y)) > 0.04) ++different;
        }
    }
    // Outlines and sparkle may fall to another pixel, a seam or a shift may not.
    EXPECT_LT(different, whole.width * whole.height / 50);
}

TEST(TerrainPicture, WeatherShows) {
    GroundScene ground(roughHeight);
    const auto brightness = [&](const char* parameter, float value) {
        ground.terrain->setParameter(parameter, value);
        ground.scene.draw();
        ground.terrain->setParameter(parameter, 0.0f);
        return luminanceOf(meanOf(ground.scene.capture(), 0, 0, 320, 180));
    };
    for (const double height : {160.0, 2000.0}) {
        SCOPED_TRACE(height);
        ground.scene.look(GroundScene::above(130.0, 130.0, height), {0.0, -80.0, 0.0});
        const double dry = brightness("wetness", 0.0f), white = brightness("snow", 1.0f);
        EXPECT_LT(brightness("wetness", 1.0f), dry * 0.97);
        EXPECT_LT(brightness("snow", 0.25f), 0.9 * white);
        EXPECT_GT(brightness("snow", 0.5f), dry + 0.7 * (white - dry)) << "half of the snow covers most of the ground";
    }
}

constexpr Quarters COLORS{{{180, 40, 40, 255}, {40, 40, 180, 255}, {10, 80, 10, 255}, {180, 180, 40, 255}}};
constexpr int WOODS = 2;

/// The quarter of that colour.
int quarterOf(const Color& pixel) {
    const auto likeness = [&](const std::array<unsigned char, 4>& color) {
        const dvec3 a(pixel[0], pixel[1], pixel[2]), b(color[0], color[1], color[2]);
        return dot(a, b) / length(b);
    };
    return static_cast<int>(std::max_element(COLORS.begin(), COLORS.end(),
                                             [&](const auto& a, const auto& b) { return likeness(a) < likeness(b); }) -
                            COLORS.begin());
}

TEST(TerrainPicture, ImageryAndDecalsAreAtTheirPlaces) {
    // The level part has decals of blocks.
    GroundScene ground([](int c, int r) { return c < 190 ? 40.0 : roughHeight(c, r); }, &COLORS);
    Quarters with_hole = COLORS;
    with_hole[1][3] = 0;
    writeImage(ground.folder.getPath() / "data/decal.png", with_hole);
    DecalOrtho* const decals[] = {new DecalOrtho(500.0f, 300.0f, 300.0f, "data/imagery.png"),
                                  new DecalOrtho(300.0f, 500.0f, 300.0f, "data/decal.png")};
    for (const int i : {0, 1}) {
        ground.scene.world().addChild(decals[i]);
        decals[i]->setWgsPosition(GroundScene::above(190.0, i == 0 ? 60.0 : 200.0, 200.0));
        decals[i]->setWgsHPR({30.0, 0.0, 0.0});
    }
    const auto colorAt = [&](const dvec3& place) {
        const auto quarter = [](double x, double y) { return (x < 0.0 ? 0 : 1) + (y < 0.0 ? 2 : 0); };
        for (const DecalOrtho* const decal : decals) {
            const dvec3 at = decal->toLocal(place);
            if (std::fabs(at.x) > 0.5 * decal->getWidth() || std::fabs(at.y) > 0.5 * decal->getHeight()) continue;
            if (decal == decals[0] || quarter(at.x, at.y) != 1) return quarter(at.x, at.y);
        }
        const dvec3 geodetic = ground.scene.engine.getEllipsoid().toWGS(place);
        return quarter(geodetic.x - WEST - 0.5 * POSTS * STEP, geodetic.y - SOUTH - 0.5 * POSTS * STEP);
    };
    const struct {
        dvec3 eye, attitude;
    } VIEWS[] = {{GroundScene::above(130.0, 130.0, 2500.0), {0.0, -90.0, 0.0}},
                 {GroundScene::above(190.0, 0.0, 700.0), {350.0, -40.0, 10.0}},
                 {GroundScene::above(200.0, 205.0, 130.0), {200.0, -50.0, 0.0}},
                 {GroundScene::above(188.0, 45.0, 55.0), {20.0, -12.0, 0.0}},
                 {GroundScene::above(130.0, 130.0, 6000.0), {90.0, -90.0, 0.0}}};
    ground.scene.picture->setVisibility(200000.0);
    for (const auto& view : VIEWS) {
        ground.scene.look(view.eye, view.attitude);
        ground.scene.draw(10);
        const Snapshot shot = ground.scene.capture(true);
        int seen = 0, wrong = 0;
        for (int y = 0; y < shot.height; y += 2) {
            for (int x = 0; x < shot.width; x += 2) {
                const Ray ray = ground.scene.rayAt(x, y);
                const double distance = distanceAt(shot, x, y);
                if (std::isinf(distance)) continue;
                const dvec3 place = ray.eye + ray.step * distance;
                const double margin = 8.0 + 0.015 * distance;
                const int color = colorAt(place);
                bool is_inside = true;
                for (const dvec3& axis : {ground.scene.placeAt(view.eye, {1.0, 0.0, 0.0}),
                                          ground.scene.placeAt(view.eye, {0.0, 1.0, 0.0})}) {
                    const dvec3 step = (axis - ray.eye) * margin;
                    is_inside = is_inside && colorAt(place + step) == color && colorAt(place - step) == color;
                }
                if (!is_inside) continue;
                ++seen;
                wrong += quarterOf(pixelAt(shot, x, y)) != color;
            }
        }
        EXPECT_GT(seen, 500) << view.eye.z;
        EXPECT_LT(wrong, seen / 200) << view.eye.z;
    }
}

TEST(TerrainPicture, TreesStandWhereTheImageryIsDarkGreen) {
    GroundScene ground([](int, int) { return 40.0; }, &COLORS);
    ground.scene.look(GroundScene::above(130.0, 130.0, 190.0), {0.0, -90.0, 0.0});
    ground.scene.draw();
    const Snapshot shot = ground.scene.capture(true);
    int trees[4] = {};
    for (int y = 0; y < shot.height; ++y) {
        for (int x = 0; x < shot.width; ++x) {
            const bool is_tree = distanceAt(shot, x, y) < 148.0f;
            const bool is_edge = std::abs(x - 160) < 12 || std::abs(y - 90) < 12;  // a crown hangs over
            if (is_tree && !is_edge) ++trees[(x < 160 ? 0 : 1) + (y < 90 ? 0 : 2)];
        }
    }
    for (const int quarter : {0, 1, 3}) EXPECT_EQ(trees[quarter], 0) << quarter;
    EXPECT_GT(trees[WOODS], 500);
}

TEST(TerrainTree, AWideRasterIsDrawnInPartsAndForgotten) {
    const TestFolder folder;
    folder.write("ground.asc", gridText(100, roughHeight));
    folder.write("ground.prj", WGS84);
    // The same hills drawn out over 10,000 x 10,000 posts.
    std::ostringstream text;
    text << R"(<VRTDataset rasterXSize="10000" rasterYSize="10000"><SRS>EPSG:4326</SRS><GeoTransform>)" << WEST << ", "
         << STEP << ", 0, " << SOUTH + 10000 * STEP << ", 0, " << -STEP << R"(</GeoTransform>
        <VRTRasterBand dataType="Float32" band="1"><SimpleSource>
        <SourceFilename relativeToVRT="1">ground.asc</SourceFilename><SourceBand>1</SourceBand>
        <SrcRect xOff="0" yOff="0" xSize="100" ySize="100"/><DstRect xOff="0" yOff="0" xSize="10000" ySize="10000"/>
        </SimpleSource></VRTRasterBand></VRTDataset>)";
    folder.write("wide.vrt", text.str());
    const auto raster = ElevationRaster::open((folder.getPath() / "wide.vrt").string());
    ASSERT_TRUE(raster);
    TerrainTree tree(*raster, nullptr, {},
                     {new osg::StateSet, new osg::StateSet, new osg::StateSet, new osg::StateSet});
    const EllipsoidModel globe;
    FrameView view;
    view.width = 1280, view.height = 720;
    const double scale = 1.0 / std::tan(22.5 * jMath::DEG2RAD);
    view.projection = osg::Matrixd(scale * 9.0 / 16.0, 0, 0, 0, 0, scale, 0, 0, 0, 0, 0, -1, 0, 0, 0.2, 0);
    int most = 0;
    const auto fly = [&](double column) {
        view.geodetic = {WEST + column * STEP, SOUTH + 5000 * STEP, 400.0};
        const dvec3 eye = globe.toWorld(view.geodetic);
        view.camera = dmat4(globe.fromWgsHPR(eye, {90.0, -5.0, 0.0}) * dquat(dvec3(1.0, 0.0, 0.0), 90.0), eye);
        tree.update(view);
        ASSERT_GT(tree.getNumTriangles(), 0);
        ASSERT_LT(tree.getNumTriangles(), 120000);
        most = std::max(most, tree.getNumTiles());
    };
    for (int frame = 0; frame < 1000; ++frame) ASSERT_NO_FATAL_FAILURE(fly(2000 + frame));
    EXPECT_LT(most, 1000);
    const int flown = tree.getNumTiles();
    for (int frame = 0; frame < 1000; ++frame) fly(3000);
    EXPECT_LT(tree.getNumTiles(), flown) << "what was left behind is dropped";
}

}  // namespace
