// The demonstration's landing lens as it is seen over the sea from the approach.
#include "PictureScene.h"
#include "effects/LampLights.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectPrefab.h"

namespace {

constexpr const char* LENS = "data/assets/Targets/MODELS/JT_CN_LNJ/Fresnel_light.prefab";

using Color = std::array<double, 3>;

/// Display values of the pixels round the picture's middle, summed.
Color sumOfMiddle(const Snapshot& shot) {
    Color sum{};
    for (int y = shot.height / 2 - 12; y < shot.height / 2 + 12; ++y) {
        for (int x = shot.width / 2 - 12; x < shot.width / 2 + 12; ++x) {
            const Color pixel = pixelAt(shot, x, y);
            for (std::size_t i = 0; i < 3; ++i) sum[i] += pixel[i];
        }
    }
    return sum;
}

TEST(LensPicture, EachLampShowsItsColourUpToSixKilometresByDayAndNight) {
    constexpr std::size_t RED = 0, GREEN = 1, BLUE = 2;
    const struct {
        const char* lamp;
        std::size_t strongest;
        double least, most;  ///< green over blue, of the strongest over blue: what makes amber
    } lamps[] = {{"deng01", RED, 0.3, 0.8},
                 {"deng03", RED, 0.3, 0.8},
                 {"deng05", RED, -1.0, 0.2},
                 {"green_light", GREEN, 1.0, 1.0}};
    PictureScene scene;
    auto* const ocean = static_cast<ObjectOcean*>(scene.world().addChild(std::make_unique<ObjectOcean>()));
    ocean->setUseGlobalWind(false);
    ocean->setBeaufort(0);
    auto* const lens = static_cast<ObjectPrefab*>(scene.world().addChild(std::make_unique<ObjectPrefab>(LENS)));
    ASSERT_NO_FATAL_FAILURE(scene.open());
    const EllipsoidModel& globe = scene.engine.getEllipsoid();
    const double path = 4.0 * jMath::DEG2RAD;
    for (const float hour : {12.0f, 0.0f}) {
        scene.world().getEnvironment().time_of_day = hour;
        for (const double distance : {1000.0, 3000.0, 6000.0}) {
            const dvec3 eye(112.4, 16.8, 20.0 + distance * std::sin(path));
            scene.look(eye, {0.0, -4.0, 0.0});
            const dvec3 place(0.0, distance * std::cos(path), -distance * std::sin(path));
            lens->setWorldPosition(globe.getWGSTransform(globe.toWorld(eye)) * place);
            lens->setWgsHPR({});
            const double scale = 2.5 + 22.5 * distance / 6000.0;  // as the logic draws it
            lens->setScale({scale, scale, scale});
            for (const auto& l : lamps) lens->getNodeByName(l.lamp)->setEnabled(false);
            scene.draw(2);
            const Color dark = sumOfMiddle(scene.capture());
            for (const auto& l : lamps) {
                SCOPED_TRACE(::testing::Message() << l.lamp << " at " << distance << " m, " << hour << " h");
                lens->getNodeByName(l.lamp)->setEnabled(true);
                scene.picture->draw();
                Color gain = sumOfMiddle(scene.capture());
                lens->getNodeByName(l.lamp)->setEnabled(false);
                for (std::size_t i = 0; i < 3; ++i) gain[i] -= dark[i];
                EXPECT_GT(gain[l.strongest], 0.2);
                EXPECT_GT(gain[l.strongest], 2.0 * gain[l.strongest == RED ? BLUE : RED]);
                const double share = (gain[GREEN] - gain[BLUE]) / (gain[l.strongest] - gain[BLUE]);
                EXPECT_GE(share, l.least);
                EXPECT_LE(share, l.most);
            }
        }
    }
}

TEST(LampLights, PointsWithoutARangeTakeNoLampsPlace) {
    const osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    LampLights lights(*state);
    LampLights::Chosen chosen[LampLights::MAX_LAMPS];
    Lamp lamp;
    lamp.intensity = 100000.0f;
    for (const float range : {0.0f, 5.0f, 0.0f}) {
        lamp.range = range;
        lights.set(1, lamp);
        EXPECT_EQ(lights.choose({}, chosen), range > 0.0f ? 1 : 0);
    }
}

}  // namespace
