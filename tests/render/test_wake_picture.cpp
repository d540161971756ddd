// Foam of ships: how particles become a picture of foam, and where the sea shows it.
#include <gtest/gtest.h>

#include "PictureScene.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/SceneNodes.h"
#include "sea/FoamMap.h"
#include "sea/SeaWake.h"

namespace {

constexpr double LON = 112.4, LAT = 16.8, SIDE = 128.0;

/// A level sea, and foam that is born in a strip 40 m wide and 10 m long, 30 m to the east of a decal's middle.
class WakePicture : public ::testing::Test {
protected:
    WakePicture() {
        const dvec3 middle = m_scene.engine.getEllipsoid().toWorld({LON, LAT, 0.0});
        const dmat4 frame = m_scene.engine.getEllipsoid().getWGSTransform(middle);
        auto* const ocean = static_cast<ObjectOcean*>(m_scene.world().addChild(std::make_unique<ObjectOcean>()));
        ocean->setUseGlobalWind(false);
        ocean->setBeaufort(0);
        m_wakes = m_scene.world().addChild(std::make_unique<Node>());
        m_wakes->setTransform(frame);
        auto decal = std::make_unique<DecalOrtho>(static_cast<float>(SIDE), static_cast<float>(SIDE), 9.0f, "");
        m_decal = static_cast<DecalOrtho*>(m_wakes->addChild(std::move(decal)));
        ParticleSettings foam;
        foam.spawn_rate = 600.0f;
        foam.life = 60.0f;
        foam.velocity = {};
        foam.emitter_size = {40.0f, 10.0f, 0.0f};
        foam.size = 6.0f;
        m_particles = static_cast<ObjectParticles*>(m_decal->addChild(std::make_unique<ObjectParticles>(foam)));
        m_particles->setTransform(dmat4::translation({30.0, 0.0, 0.0}));
        m_to_picture =
            dmat4({1.0 / SIDE, 0.0, 0.0}, {0.0, 1.0 / SIDE, 0.0}, {0.0, 0.0, 1.0}, {0.5, 0.5, 0.0}) * inverse(frame);
    }

    void foamFor(int frames) {
        for (int i = 0; i < frames; ++i) {
            m_scene.engine.beginFrame(1.0 / 60.0);
            m_scene.engine.step();
            m_scene.engine.endFrame();
        }
    }
    /// Mean brightness of a square of the picture as seen from 250 m straight up, north on top; metres from the middle.
    double brightnessAt(double east, double north) {
        m_scene.look({LON, LAT, 250.0}, {0.0, -90.0, 0.0});
        m_scene.draw();
        const Snapshot shot = m_scene.capture();
        const double pixels_per_metre = 0.5 * shot.height / (250.0 * 0.41421356237309503);
        double sum = 0.0;
        for (int dy = -2; dy <= 2; ++dy) {
            for (int dx = -2; dx <= 2; ++dx) {
                sum += luminanceAt(shot, static_cast<int>(0.5 * shot.width + east * pixels_per_metre) + dx,
                                   static_cast<int>(0.5 * shot.height - north * pixels_per_metre) + dy);
            }
        }
        return sum / 25.0;
    }

    PictureScene m_scene;
    Node* m_wakes;
    DecalOrtho* m_decal;
    ObjectParticles* m_particles;
    dmat4 m_to_picture;
};

TEST_F(WakePicture, ParticlesBecomeFoamInTheirPlaceOnTheDecal) {
    FoamMap map;
    const float scale = static_cast<float>(FoamMap::SIDE / SIDE);
    map.draw(*m_decal, m_to_picture, scale);
    EXPECT_TRUE(map.isEmpty());
    foamFor(60);
    map.draw(*m_decal, m_to_picture, scale);
    ASSERT_FALSE(map.isEmpty());
    const auto at = [&](double east, double north) {
        const auto column = static_cast<std::size_t>((east / SIDE + 0.5) * FoamMap::SIDE);
        const auto row = static_cast<std::size_t>((north / SIDE + 0.5) * FoamMap::SIDE);
        return map.getTexels()[row * FoamMap::SIDE + column];
    };
    EXPECT_GT(at(25.0, 0.0), 200);
    for (const auto& [east, north] : {std::pair(0.0, 0.0), {25.0, 15.0}, {25.0, -15.0}, {-30.0, 0.0}, {63.9, 0.0}}) {
        EXPECT_EQ(at(east, north), 0) << east << ' ' << north;
    }
    EXPECT_TRUE(map.isFoamIn(0.6f, 0.45f, 0.7f, 0.55f));
    EXPECT_TRUE(map.isFoamIn(-3.0f, -3.0f, 4.0f, 4.0f));
    EXPECT_FALSE(map.isFoamIn(0.1f, 0.1f, 0.3f, 0.9f));
    EXPECT_FALSE(map.isFoamIn(1.2f, 0.4f, 1.5f, 0.6f));
    m_particles->clear();
    map.draw(*m_decal, m_to_picture, scale);
    EXPECT_TRUE(map.isEmpty());
    EXPECT_EQ(at(25.0, 0.0), 0) << "what was drawn before is gone";
}

TEST_F(WakePicture, TheSeaShowsFoamOfTheTaggedWakeAlone) {
    m_scene.open();
    foamFor(60);
    const double water = brightnessAt(30.0, 0.0);
    EXPECT_NEAR(brightnessAt(30.0, 30.0), water, 0.05) << "neither foam nor sprites without the tag";
    m_wakes->addTag(SeaWake::SEA_FOAM);
    EXPECT_GT(brightnessAt(30.0, 0.0), water + 0.3);
    EXPECT_NEAR(brightnessAt(30.0, 30.0), water, 0.05);
    EXPECT_NEAR(brightnessAt(-30.0, 0.0), water, 0.05);
    m_decal->setEnabled(false);
    EXPECT_NEAR(brightnessAt(30.0, 0.0), water, 0.05);
    m_decal->setEnabled(true);
    m_decal->setTransform(dmat4::translation({-400.0, 0.0, 0.0}));
    EXPECT_NEAR(brightnessAt(30.0, 0.0), water, 0.05) << "beyond the decal there is none";
    m_scene.world().removeNode(m_wakes);
    EXPECT_NEAR(brightnessAt(30.0, 0.0), water, 0.05);
}

}  // namespace
