// The drawn world stands where the engine has it.
#include "PictureScene.h"

#include <cstdio>
#include <filesystem>

#include "engine/math/jMath.h"
#include "engine/scene/ObjectPrefab.h"
#include "support/TestScene.h"

namespace {

const dvec3 PLACE{112.0, 16.0, 500.0};
constexpr const char* JET = "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.prefab";

/// Distance along the view's axis to the first surface of the prefab on a pixel's ray; infinite without one.
double pickedDistance(const dmat4& camera, const ObjectPrefab& prefab, const PictureSettings& settings, int x, int y) {
    constexpr double REACH = 1000.0;
    const double slope = std::tan(settings.fov * 0.5 * jMath::DEG2RAD);
    const double px = ((x + 0.5) / settings.width * 2.0 - 1.0) * slope * settings.width / settings.height;
    const double py = (1.0 - (y + 0.5) / settings.height * 2.0) * slope;
    const dvec3 to = camera * dvec3(px * REACH, py * REACH, -REACH);
    double nearest = std::numeric_limits<double>::infinity();
    for (Object* object : prefab.getObjects()) {
        if (!object->isActive()) continue;
        for (int i = 0; i < object->getNumSurfaces(); ++i) {
            dvec3 hit;
            if (!object->getIntersection(object->toLocal(camera.t), object->toLocal(to), i, hit)) continue;
            nearest = std::min(nearest, -(inverse(camera) * object->toWorld(hit)).z);
        }
    }
    return nearest;
}

TEST(Picture, TheJetIsDrawnWhereItStands) {
    PictureScene scene;
    scene.open();
    Node* const jet = scene.world().addChild(std::make_unique<ObjectPrefab>(JET));
    jet->setWgsPosition(PLACE);
    jet->setWgsHPR({30.0, 10.0, -20.0});
    const EllipsoidModel globe;
    const dvec3 eye = jet->getWorldTransform() * dvec3(25.0, -8.0, 6.0);
    const dvec3 ahead = inverse(globe.getWGSTransform(eye)) * jet->getWorldPosition();
    const double heading = std::atan2(ahead.x, ahead.y) * jMath::RAD2DEG;
    const double pitch = std::asin(ahead.z / length(ahead)) * jMath::RAD2DEG;
    for (const double turn : {0.0, 3.0}) {  // the second moves the picture without a move in the world
        scene.look(globe.toWGS(eye), {heading + turn, pitch, 5.0});
        scene.draw();
        const Snapshot shot = scene.capture(true);
        const dmat4 camera = scene.engine.getCameraControl()->getNode()->getWorldTransform();
        int hits = 0, misses = 0, wrong = 0;
        for (int y = 2; y < shot.height; y += 5) {
            for (int x = 3; x < shot.width; x += 5) {
                const double wanted = pickedDistance(camera, static_cast<ObjectPrefab&>(*jet), scene.small(), x, y);
                const float drawn = distanceAt(shot, x, y);
                std::isinf(wanted) ? ++misses : ++hits;
                // Back faces are picked and not drawn, outlines fall to either side of a pixel, and the triangles drawn
                // are up to half a pixel, 6 cm, off those picked.
                if (std::isinf(drawn) != std::isinf(wanted) || std::fabs(drawn - wanted) > 0.12) ++wrong;
            }
        }
        EXPECT_GT(hits, 100);
        EXPECT_GT(misses, 100);
        EXPECT_LT(wrong, hits / 10);
    }
}

TEST(Picture, NodesThatMoveHideAndGoDoSoInThePicture) {
    PictureScene scene;
    scene.open();
    Node* const jet = scene.world().addChild(std::make_unique<ObjectPrefab>(JET));
    jet->setWgsPosition(PLACE);
    scene.look({PLACE.x, PLACE.y, PLACE.z + 60.0}, {0.0, -90.0, 0.0});
    const auto showsJet = [&] {
        scene.draw();
        return std::isfinite(distanceAt(scene.capture(true), 160, 90));
    };
    EXPECT_TRUE(showsJet());
    jet->setEnabled(false);
    EXPECT_FALSE(showsJet());
    jet->setWgsPosition({PLACE.x, PLACE.y + 0.001, PLACE.z});
    jet->setEnabled(true);
    EXPECT_FALSE(showsJet());
    jet->setWgsPosition(PLACE);
    EXPECT_TRUE(showsJet());
    scene.world().setEnabled(false);
    EXPECT_FALSE(showsJet());
    scene.world().setEnabled(true);
    scene.world().removeNode(jet);
    EXPECT_FALSE(showsJet());
}

TEST(Picture, ChannelsMeetAtTheirSeam) {
    const auto shoot = [](int width, double shear) {
        PictureScene scene;
        PictureSettings settings = PictureScene::small();
        settings.width = width;
        settings.shear = {shear, 0.0};
        scene.open(settings);
        scene.loadDemo();
        scene.look({112.393, 16.821, 60.0}, {40.0, -4.0, 0.0});
        scene.draw(2);
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

TEST(Picture, TakesAnySizeAndRefusesNone) {
    for (const auto& [width, height, good] :
         {std::tuple{1, 1, true}, {3, 200, true}, {0, 100, false}, {100, -1, false}, {20000, 100, false}}) {
        PictureScene scene;
        PictureSettings settings;
        settings.width = width;
        settings.height = height;
        std::string error;
        scene.picture.reset(createPicture(scene.engine, settings, error));
        ASSERT_EQ(scene.picture != nullptr, good) << width << "x" << height << ": " << error;
        EXPECT_EQ(error.empty(), good);
        if (!good) continue;
        scene.draw();
        const Snapshot shot = scene.capture();
        EXPECT_EQ(shot.rgb.size(), static_cast<std::size_t>(3 * width * height));
    }
}

TEST(Picture, AScreenshotIsWrittenWithItsFolderOrRefused) {
    const TestFolder folder;
    PictureScene scene;
    scene.open();
    scene.draw();
    std::string error;
    const std::filesystem::path file = folder.getPath() / "deep" / "down" / "a.png";
    EXPECT_TRUE(scene.picture->save(file, error)) << error;
    EXPECT_GT(std::filesystem::file_size(file), 100u);
    EXPECT_FALSE(scene.picture->save(file / "below_a_file.png", error));
    EXPECT_NE(error.find("below_a_file.png"), std::string::npos);
}

TEST(Picture, DrawsThroughAllWeatherWithoutFault) {
    PictureScene scene;
    PictureSettings settings;
    settings.width = 64;
    settings.height = 36;
    scene.open(settings);
    scene.loadDemo();
    Environment& environment = scene.world().getEnvironment();
    double brightest = 0.0, darkest = 1.0;
#ifdef __SANITIZE_ADDRESS__
    constexpr int FRAMES = 2000;  // five times as slow there
#else
    constexpr int FRAMES = 10000;
#endif
    for (int i = 0; i < FRAMES; ++i) {
        const double t = static_cast<double>(i) / FRAMES;
        environment.time_of_day = static_cast<float>(24.0 * t);
        environment.wetness = i % 700 < 300 ? 0.8f : 0.0f;
        environment.snow = i % 900 < 300 ? 0.5f : 0.0f;
        environment.cloudiness = static_cast<float>(i % 500) / 500.0f;
        for (const char* name : {"rain", "hail", "snow"}) {
            if (Node* const node = scene.world().getNodeByName(name)) node->setEnabled((i / 100 + name[0]) % 3 == 0);
        }
        scene.picture->setVisibility(i % 600 < 100 ? 300.0 : 20000.0);
        scene.look({112.35 + 0.05 * std::sin(40.0 * t), 16.83, 5.0 + 3000.0 * t}, {360.0 * t * 7.0, -10.0, 0.0});
        scene.draw();
        if (i % 50 != 0) continue;
        const double middle = luminanceAt(scene.capture(), 32, 4);
        brightest = std::max(brightest, middle);
        darkest = std::min(darkest, middle);
    }
    EXPECT_GT(brightest, 0.4);
    EXPECT_LT(darkest, 0.15);
}

}  // namespace
