// The demonstration's landing lens as it is seen over the sea from the approach.
#include "PictureScene.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectPrefab.h"

namespace {

constexpr const char* LENS = "data/assets/Targets/MODELS/JT_CN_LNJ/Fresnel_light.prefab";

TEST(LensPicture, EachLampShowsItsColourFromNearAndFar) {
    constexpr std::size_t RED = 0, GREEN = 1, BLUE = 2;
    const struct {
        const char* name;
        std::size_t strongest;
        double min, max;  ///< green over blue, of the strongest over blue: what makes amber
    } lamps[] = {{"deng01", RED, 0.3, 0.8}, {"deng05", RED, -1.0, 0.2}, {"green_light", GREEN, 1.0, 1.0}};
    PictureScene scene;
    auto* const ocean = static_cast<ObjectOcean*>(scene.world().addChild(std::make_unique<ObjectOcean>()));
    ocean->setUseGlobalWind(false);
    ocean->setBeaufort(0);
    auto* const lens = static_cast<ObjectPrefab*>(scene.world().addChild(std::make_unique<ObjectPrefab>(LENS)));
    for (const char* const name : {"deng01", "deng02", "deng03", "deng04", "deng05", "green_light"}) {
        lens->getNodeByName(name)->setEnabled(false);
    }
    ASSERT_NO_FATAL_FAILURE(scene.open());
    const double path = 4.0 * jMath::DEG2RAD;
    for (const auto& [hour, distance] : {std::pair(12.0f, 6000.0), {12.0f, 1000.0}, {0.0f, 6000.0}}) {
        scene.world().getEnvironment().time_of_day = hour;
        const dvec3 eye(112.4, 16.8, 20.0 + distance * std::sin(path));
        scene.look(eye, {0.0, -4.0, 0.0});
        lens->setWorldPosition(scene.placeAt(eye, {0.0, distance * std::cos(path), -distance * std::sin(path)}));
        lens->setWgsHPR({});
        const double scale = 2.5 + 22.5 * distance / 6000.0;  // as the logic draws it
        lens->setScale({scale, scale, scale});
        scene.draw(2);
        const auto drawMiddle = [&] {
            scene.picture->draw();
            return meanOf(scene.capture(), 148, 78, 24, 24);
        };
        const Color dark = drawMiddle();
        for (const auto& lamp : lamps) {
            SCOPED_TRACE(::testing::Message() << lamp.name << " at " << distance << " m, " << hour << " h");
            lens->getNodeByName(lamp.name)->setEnabled(true);
            Color gain = drawMiddle();
            lens->getNodeByName(lamp.name)->setEnabled(false);
            for (std::size_t i = 0; i < 3; ++i) gain[i] -= dark[i];
            EXPECT_GT(gain[lamp.strongest], 0.2 / (24 * 24));
            EXPECT_GT(gain[lamp.strongest], 2.0 * gain[lamp.strongest == RED ? BLUE : RED]);
            const double share = (gain[GREEN] - gain[BLUE]) / (gain[lamp.strongest] - gain[BLUE]);
            EXPECT_GE(share, lamp.min);
            EXPECT_LE(share, lamp.max);
        }
    }
}

}  // namespace
