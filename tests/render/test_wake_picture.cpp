// Foam of ships: where the sea shows it.
#include <gtest/gtest.h>

#include "PictureScene.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/SceneNodes.h"
#include "sea/SeaWake.h"

namespace {

TEST(WakePicture, TheSeaShowsFoamOfTheTaggedWakeAlone) {
    const dvec3 middle(112.4, 16.8, 0.0), eye(112.4, 16.8, 250.0);
    PictureScene scene;
    scene.open();
    scene.look(eye, {0.0, -90.0, 0.0});
    auto* const ocean = static_cast<ObjectOcean*>(scene.world().addChild(std::make_unique<ObjectOcean>()));
    ocean->setUseGlobalWind(false);
    ocean->setBeaufort(0);
    Node* const wakes = scene.addAt(new Node, middle, {});
    Node* const decal = wakes->addChild(std::make_unique<DecalOrtho>(128.0f, 128.0f, 9.0f, ""));
    // Born in a strip 40 m wide and 10 m long, 30 m to the east and 20 m to the north of the decal's middle.
    ParticleSettings foam;
    foam.spawn_rate = 600.0f;
    foam.life = 60.0f;
    foam.velocity = {};
    foam.emitter_size = {40.0f, 10.0f, 0.0f};
    foam.size = 6.0f;
    decal->addChild(std::make_unique<ObjectParticles>(foam))->setTransform(dmat4::translation({30.0, 20.0, 0.0}));
    scene.run(60);
    // Of a square that many metres from the picture's middle.
    const auto brightnessAt = [&](double east, double north) {
        scene.draw();
        const double pixels_per_metre = 217.3 / eye.z;
        return luminanceOf(meanOf(scene.capture(), static_cast<int>(160.0 + east * pixels_per_metre) - 2,
                                  static_cast<int>(90.0 - north * pixels_per_metre) - 2, 5, 5));
    };
    const double water = brightnessAt(30.0, 20.0);
    EXPECT_NEAR(brightnessAt(30.0, -20.0), water, 0.05) << "neither foam nor sprites without the tag";
    wakes->addTag(SeaWake::SEA_FOAM);
    EXPECT_GT(brightnessAt(30.0, 20.0), water + 0.3);
    for (const auto& [east, north] : {std::pair(30.0, -20.0), {-30.0, 20.0}, {30.0, 40.0}, {0.0, 20.0}}) {
        EXPECT_NEAR(brightnessAt(east, north), water, 0.05) << east << ' ' << north;
    }
    decal->setEnabled(false);
    EXPECT_NEAR(brightnessAt(30.0, 20.0), water, 0.05);
    decal->setEnabled(true);
    decal->setTransform(dmat4::translation({-400.0, 0.0, 0.0}));
    EXPECT_NEAR(brightnessAt(30.0, 20.0), water, 0.05) << "beyond the decal there is none";
}

}  // namespace
