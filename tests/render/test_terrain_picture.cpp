// The ground in the picture is the ground that queries answer from.
#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "PictureScene.h"
#include "engine/math/jMath.h"
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
std::string gridText(int posts, double step, Height height) {
    std::ostringstream out;
    out << "ncols " << posts << "\nnrows " << posts << "\nxllcenter " << WEST << "\nyllcenter " << SOUTH
        << "\ncellsize " << step << "\nNODATA_value " << HOLE << "\n";
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
    explicit GroundScene(Height height) : scene((write(height), m_folder.getPath().c_str())) {
        auto node = std::make_unique<ObjectTerrain>("data/ground.asc", "");
        terrain = node.get();
        scene.world().addChild(std::move(node));
        scene.open();
    }
    /// Place of a post, some metres above the ellipsoid.
    static dvec3 above(double column, double row, double height) {
        return {WEST + column * STEP, SOUTH + row * STEP, height};
    }

private:
    template <class Height>
    void write(Height height) {
        m_folder.write("data/ground.asc", gridText(POSTS, STEP, height));
        m_folder.write("data/ground.prj", WGS84);
    }
    TestFolder m_folder;

public:
    PictureScene scene;
    ObjectTerrain* terrain = nullptr;
};

/// What a pixel's ray meets: `step` is from the eye, one metre along the view's axis.
struct Ray {
    dvec3 eye, step;
};
Ray rayAt(PictureScene& scene, int x, int y) {
    const PictureSettings size = PictureScene::small();
    const dmat4& camera = scene.engine.getCameraControl()->getNode()->getWorldTransform();
    const double slope = std::tan(size.fov * 0.5 * jMath::DEG2RAD);
    const double px = ((x + 0.5) / size.width * 2.0 - 1.0) * slope * size.width / size.height;
    return {camera.t, rotate(camera, dvec3(px, (1.0 - (y + 0.5) / size.height * 2.0) * slope, -1.0))};
}
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
        int near = 0;
        for (int y = 1; y < shot.height; y += 3) {
            for (int x = 1; x < shot.width; x += 3) {
                const double distance = distanceAt(shot, x, y);
                const Ray ray = rayAt(ground.scene, x, y);
                if (!(distance * length(ray.step) < 180.0)) continue;
                const dvec3 drawn = ground.scene.engine.getEllipsoid().toWGS(ray.eye + ray.step * distance);
                double height = 1e9;
                ASSERT_TRUE(ground.terrain->getAltitudeByLonLat(drawn.x, drawn.y, height));
                ASSERT_NEAR(drawn.z, height, 0.02) << "pixel " << x << ", " << y << " from " << view.height;
                ++near;
            }
        }
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
                return std::isfinite(pickedDistance(*ground.terrain, rayAt(ground.scene, x, y)));
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
}

TEST(TerrainPicture, GroundComesAndGoesWithItsNode) {
    GroundScene ground(roughHeight);
    ground.scene.look(GroundScene::above(100.0, 100.0, 200.0), {0.0, -90.0, 0.0});
    const auto isDrawn = [&] {
        ground.scene.draw();
        return std::isfinite(distanceAt(ground.scene.capture(true), 160, 90));
    };
    EXPECT_TRUE(isDrawn());
    ground.terrain->setEnabled(false);
    EXPECT_FALSE(isDrawn());
    ground.terrain->setEnabled(true);
    EXPECT_TRUE(isDrawn());
    Node* const second = ground.scene.world().addChild(std::make_unique<ObjectTerrain>("data/ground.asc", ""));
    EXPECT_TRUE(isDrawn());
    ground.scene.world().removeNode(second);
    EXPECT_TRUE(isDrawn()) << "the first is still there";
    ground.scene.world().removeNode(ground.terrain);
    EXPECT_FALSE(isDrawn());
    ground.scene.world().addChild(std::make_unique<ObjectTerrain>("data/none.asc", ""));
    EXPECT_FALSE(isDrawn());
}

TEST(TerrainPicture, WeatherShows) {
    GroundScene ground(roughHeight);
    const auto brightness = [&](const char* parameter, float value) {
        ground.terrain->setParameter(parameter, value);
        ground.scene.draw();
        ground.terrain->setParameter(parameter, 0.0f);
        const Snapshot shot = ground.scene.capture();
        double sum = 0.0;
        for (int i = 0; i < shot.width; ++i) sum += luminanceAt(shot, i, i * shot.height / shot.width);
        return sum / shot.width;
    };
    for (const double height : {160.0, 2000.0}) {
        ground.scene.look(GroundScene::above(130.0, 130.0, height), {0.0, -80.0, 0.0});
        const double dry = brightness("wetness", 0.0f);
        EXPECT_GT(dry, 0.05) << height;
        EXPECT_LT(brightness("wetness", 1.0f), dry * 0.97) << height;
        const double dusted = brightness("snow", 0.25f), half = brightness("snow", 0.5f);
        const double white = brightness("snow", 1.0f);
        EXPECT_GT(dusted, dry * 1.05) << height;
        EXPECT_LT(dusted, 0.9 * white) << height;
        EXPECT_GT(half, dry + 0.7 * (white - dry)) << height << ": half of the snow covers most of the ground";
    }
}

TEST(TerrainPicture, TheRunwayCoversItsGroundFromNearAndFar) {
    PictureScene scene;
    scene.loadDemo();
    scene.open();
    auto* const runway = dynamic_cast<DecalOrtho*>(scene.world().getNodeByName("runway"));
    auto* const terrain = dynamic_cast<ObjectTerrain*>(scene.world().getNodeByName("terrain"));
    ASSERT_TRUE(runway && terrain);
    int all_outside = 0;
    // What stands on the ground or drifts over it would hide it.
    scene.world().getEnvironment().cloudiness = 0.0f;
    for (const char* name : {"airfield", "pavement", "ocean"}) scene.world().getNodeByName(name)->setEnabled(false);
    for (Node* node : scene.world().getNodes()) {
        if (node->getType() == Node::LIGHT) node->setEnabled(false);
    }
    const dvec3 middle = runway->getWgsPosition(), up = runway->getWGSTransform().z;
    const struct {
        double south, height, pitch;
    } VIEWS[] = {
        {0.0, 7.0, -30.0}, {0.0, 20.0, -8.0}, {0.01, 300.0, -14.0}, {0.03, 3000.0, -40.0}, {0.0, 18000.0, -90.0}};
    for (const auto& view : VIEWS) {
        scene.look({middle.x, middle.y - view.south, view.height}, {5.0, view.pitch, 0.0});
        scene.picture->setVisibility(200000.0);
        runway->setEnabled(true);
        scene.draw(10);
        const Snapshot with = scene.capture();
        runway->setEnabled(false);
        scene.draw();
        const Snapshot without = scene.capture();
        int inside = 0, shown = 0, outside = 0, stray = 0;
        for (int y = 0; y < with.height; ++y) {
            for (int x = 0; x < with.width; ++x) {
                const Ray ray = rayAt(scene, x, y);
                const double distance = pickedDistance(*terrain, ray);
                if (std::isinf(distance)) continue;
                const dvec3 at = runway->toLocal(ray.eye + ray.step * distance);
                // Of the ground under a pixel, metres: its height over the slant of the view.
                const double slant = -dot(ray.step, up) / length(ray.step),
                             pixel = distance * 0.0046 / std::max(slant, 0.02);
                const double off =
                    std::max(std::fabs(at.x) - 0.5 * runway->getWidth(), std::fabs(at.y) - 0.5 * runway->getHeight());
                const bool differs = std::fabs(luminanceAt(with, x, y) - luminanceAt(without, x, y)) > 0.004;
                if (off < -std::min(pixel, 15.0)) ++inside, shown += differs;
                if (off > 4.0 * pixel) ++outside, stray += differs;
            }
        }
        EXPECT_GT(inside, 5) << view.height;
        EXPECT_GT(shown, inside * 0.9) << view.height;
        EXPECT_EQ(stray, 0) << view.height;
        all_outside += outside;
    }
    EXPECT_GT(all_outside, 10000);
}

TEST(TerrainTriangles, FewTrianglesCoverTheTileWithinTheirTolerance) {
    const auto rough = [](int x, int y) { return static_cast<float>(roughHeight(x, y)); };
    const auto smooth = [](int x, int y) { return 50.0f + 0.02f * static_cast<float>(x * x - y * y); };
    for (const float tolerance : {0.5f, 2.0f, 8.0f}) {
        for (const bool is_rough : {false, true}) {
            TilePosts posts;
            for (int y = 0; y < TILE_POSTS; ++y) {
                for (int x = 0; x < TILE_POSTS; ++x)
                    posts.heights[y * TILE_POSTS + x] = is_rough ? rough(x, y) : smooth(x, y);
            }
            TileCorners corners;
            joinFew(posts, tolerance, corners);
            // Inside the tile each edge is gone along once in either direction: there is no crack and no overlap.
            std::map<std::pair<int, int>, int> edges;
            double area = 0.0;
            for (std::size_t i = 0; i < corners.size(); i += 3) {
                const int t[] = {corners[i], corners[i + 1], corners[i + 2]};
                const auto x = [&](int k) { return t[k] % TILE_POSTS; };
                const auto y = [&](int k) { return t[k] / TILE_POSTS; };
                const int twice = (x(1) - x(0)) * (y(2) - y(0)) - (x(2) - x(0)) * (y(1) - y(0));
                ASSERT_GT(twice, 0);
                area += 0.5 * twice;
                for (int k = 0; k < 3; ++k) ++edges[{t[k], t[(k + 1) % 3]}];
                for (int py = 0; py < TILE_POSTS; ++py) {
                    for (int px = 0; px < TILE_POSTS; ++px) {
                        const double u = ((px - x(0)) * (y(2) - y(0)) - (x(2) - x(0)) * (py - y(0))) / double(twice);
                        const double v = ((x(1) - x(0)) * (py - y(0)) - (px - x(0)) * (y(1) - y(0))) / double(twice);
                        if (u < 0.0 || v < 0.0 || u + v > 1.0) continue;
                        const auto h = [&](int k) { return seenHeight(posts.heights[t[k]]); };
                        const double drawn = h(0) + u * (h(1) - h(0)) + v * (h(2) - h(0));
                        // Halvings stop where the middles are near enough; what lies beside them may be a little more
                        // off.
                        ASSERT_NEAR(drawn, seenHeight(posts.at(px, py)), 3.0 * tolerance);
                    }
                }
            }
            EXPECT_EQ(area, TILE_CELLS * TILE_CELLS);
            for (const auto& [edge, count] : edges) {
                const auto [a, b] = edge;
                const bool on_rim = (a % TILE_POSTS == b % TILE_POSTS && a % TILE_POSTS % TILE_CELLS == 0) ||
                                    (a / TILE_POSTS == b / TILE_POSTS && a / TILE_POSTS % TILE_CELLS == 0);
                ASSERT_EQ(count, 1);
                ASSERT_TRUE(on_rim || edges.count({b, a}) == 1);
            }
            EXPECT_LT(corners.size() / 3, is_rough ? 2049u : 700u);
        }
    }
}

TEST(TerrainTree, AWideRasterIsDrawnInPartsAndForgotten) {
    const TestFolder folder;
    folder.write("ground.asc", gridText(100, STEP, roughHeight));
    folder.write("ground.prj", WGS84);
    // The same hills drawn out over 10,000 x 10,000 posts.
    std::ostringstream text;
    text
        << "<VRTDataset rasterXSize=\"10000\" rasterYSize=\"10000\"><SRS>"
        << "EPSG:4326"
        << "</SRS><GeoTransform>" << WEST << ", " << STEP << ", 0, " << SOUTH + 10000 * STEP << ", 0, " << -STEP
        << "</GeoTransform>"
        << "<VRTRasterBand dataType=\"Float32\" band=\"1\"><SimpleSource><SourceFilename relativeToVRT=\"1\">ground.asc"
        << "</SourceFilename><SourceBand>1</SourceBand><SrcRect xOff=\"0\" yOff=\"0\" xSize=\"100\" ySize=\"100\"/>"
        << "<DstRect xOff=\"0\" yOff=\"0\" xSize=\"10000\" "
           "ySize=\"10000\"/></SimpleSource></VRTRasterBand></VRTDataset>";
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
    for (int frame = 0; frame < 3000; ++frame) {
        view.geodetic = {WEST + (2000 + frame) * STEP, SOUTH + 5000 * STEP, 400.0};
        const dvec3 eye = globe.toWorld(view.geodetic);
        view.camera = dmat4(globe.fromWgsHPR(eye, {90.0, -5.0, 0.0}) * dquat(dvec3(1.0, 0.0, 0.0), 90.0), eye);
        tree.update(view);
        ASSERT_GT(tree.getNumTriangles(), 0);
        ASSERT_LT(tree.getNumTriangles(), 120000);
        most = std::max(most, tree.getNumTiles());
    }
    EXPECT_LT(most, 3000);
    const int settled = tree.getNumTiles();
    const std::vector<osg::MatrixTransform*> drawn = tree.getGroup()->drawn;
    for (int i = 0; i < 400; ++i) tree.update(view);
    // At rest the same is drawn, and no more than a little is made beside it.
    tree.update(view);
    EXPECT_NEAR(tree.getNumTiles(), settled, settled / 2);
    EXPECT_GE(tree.getGroup()->drawn.size(), drawn.size() / 2);
}

}  // namespace
