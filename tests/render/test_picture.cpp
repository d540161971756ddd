// The drawn world stands where the engine has it.
#include "PictureScene.h"

#include <malloc.h>
#include <osg/Notify>

#include "engine/scene/ObjectPrefab.h"
#include "engine/text/Log.h"

namespace {

const dvec3 PLACE{112.0, 16.0, 500.0};
constexpr const char* JET = "data/assets/Targets/MODELS/FJ_CN_J15/FJ_CN_J15.prefab";

/// Distance along the view's axis to the first surface of the prefab on a ray; infinite without one.
double pickedDistance(const ObjectPrefab& prefab, const Ray& ray) {
    constexpr double REACH = 1000.0;
    double nearest = std::numeric_limits<double>::infinity();
    for (Object* object : prefab.getObjects()) {
        if (!object->isActive()) continue;
        for (int i = 0; i < object->getNumSurfaces(); ++i) {
            dvec3 hit;
            const dvec3 to = object->toLocal(ray.eye + ray.step * REACH);
            if (!object->getIntersection(object->toLocal(ray.eye), to, i, hit)) continue;
            nearest = std::min(nearest, dot(object->toWorld(hit) - ray.eye, ray.step) / dot(ray.step, ray.step));
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
        int hits = 0, misses = 0, wrong = 0;
        for (int y = 2; y < shot.height; y += 5) {
            for (int x = 3; x < shot.width; x += 5) {
                const double wanted = pickedDistance(static_cast<ObjectPrefab&>(*jet), scene.rayAt(x, y));
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
    scene.world().removeNode(jet);
    EXPECT_FALSE(showsJet());
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

TEST(Picture, RandomStatesMakeNoFaultAndKeepNoMemory) {
    jString complaint;
    jLog::setSink([&](jLog::Level level, const jString& line) {
        if (level != jLog::MESSAGE) complaint = line;
    });
    PictureScene scene;
    PictureSettings settings;
    settings.width = 64;
    settings.height = 36;
    scene.open(settings);
    osg::setNotifyLevel(osg::NOTICE);  // errors of the graphics library come as notices
    scene.loadDemo();
    Environment& environment = scene.world().getEnvironment();
    // The same states each time: afterwards as much memory is in use.
    const auto drawStates = [&] {
        Random random(3);
        const auto share = [&] { return random.getFloat(0.0f, 1.0f); };
        for (int i = 0; i < 80; ++i) {
            environment.time_of_day = 24.0f * share();
            environment.wetness = std::max(2.0f * share() - 1.0f, 0.0f);
            environment.snow = std::max(2.0f * share() - 1.0f, 0.0f);
            environment.cloudiness = share();
            for (const char* name : {"rain", "hail", "snow"}) {
                scene.world().getNodeByName(name)->setEnabled(share() < 0.3f);
            }
            scene.picture->setVisibility(share() < 0.2f ? 300.0 : 20000.0);
            scene.picture->setParts(share() < 0.2f ? random.getInt() & PART_ALL : PART_ALL);
            scene.picture->setStatusLine(share() < 0.5f ? "" : std::to_string(i));
            scene.look({112.36, 16.83, 105.0}, {360.0 * share(), -40.0 * share(), 0.0});
            scene.draw();
        }
        const struct mallinfo2 heap = mallinfo2();
        return static_cast<long>(heap.uordblks + heap.hblkhd);
    };
    drawStates();
    const long before = drawStates(), after = drawStates();
    EXPECT_LT(after - before, 2 << 20) << "bytes";
    EXPECT_EQ(complaint, "");
    jLog::setSink({});
}

}  // namespace
