// The drawn sea: its surface and its horizon, that it has no holes, and what its state changes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "PictureScene.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/WaveField.h"
#include "sea/SeaSlopes.h"

namespace {

const EllipsoidModel GLOBE;

/// Pixels in which nothing but the sky was drawn.
long countHoles(const Snapshot& shot) {
    return std::count_if(shot.distance.begin(), shot.distance.end(), [](float d) { return std::isinf(d); });
}

class SeaPicture : public ::testing::Test {
protected:
    SeaPicture() {
        m_ocean = static_cast<ObjectOcean*>(m_scene.world().addChild(std::make_unique<ObjectOcean>()));
        m_ocean->setTransform(dmat4::translation(GLOBE.toWorld(dvec3(112.4, 16.8, 0.0))));
        m_ocean->setUseGlobalWind(false);
        m_scene.open();
        m_scene.picture->setParts(PART_SEA | PART_SKY);
        m_scene.picture->setVisibility(50000.0);
    }

    void see(int beaufort, const dvec3& geodetic, const dvec3& hpr) {
        m_ocean->setBeaufort(beaufort);
        m_scene.look(geodetic, hpr);
        m_scene.draw(2);
        m_shot = m_scene.capture(true);
    }

    PictureScene m_scene;
    ObjectOcean* m_ocean = nullptr;
    Snapshot m_shot;
};

TEST_F(SeaPicture, SurfaceIsTheOceansNearTheEyeAndLevelFromHighAbove) {
    const struct {
        int beaufort;
        dvec3 eye, hpr;
        double farthest, worst, rms;
    } cases[] = {
        {0, {112.5, 16.7, 8.0}, {0.0, -30.0, 0.0}, 100.0, 1e-3, 1e-3},
        {7, {112.5, 16.7, 7.0}, {200.0, -60.0, 0.0}, 9.0, 0.05, 0.008},
        {4, {112.5, 16.7, 15.0}, {67.0, -20.0, 0.0}, 80.0, 0.25, 0.05},
        {8, {112.5, 16.7, 100.0}, {310.0, -75.0, 0.0}, 140.0, 0.5, 0.11},
        {7, {-140.0, 52.0, 7.0}, {300.0, -60.0, 0.0}, 9.0, 0.05, 0.008},  // far from the field's origin
        {8, {112.5, 16.7, 1500.0}, {0.0, -90.0, 0.0}, 2000.0, 1e-2, 1e-2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << "Beaufort " << c.beaufort << " from " << c.eye.z << " m");
        see(c.beaufort, c.eye, c.hpr);
        const double rise = jMath::getFadeOut(c.eye.z, 1000.0, 1000.0);
        int count = 0;
        double worst = 0.0, squares = 0.0;
        for (int row = 1; row < m_shot.height; row += 7) {
            for (int column = 1; column < m_shot.width; column += 7) {
                const double distance = distanceAt(m_shot, column, row);
                if (!(distance < c.farthest)) continue;
                const Ray ray = m_scene.rayAt(column, row);
                const dvec3 place = ray.eye + ray.step * distance;
                const double error = GLOBE.toWGS(place).z - GLOBE.toWGS(m_ocean->getWorldPoint(place)).z * rise;
                ++count;
                worst = std::max(worst, std::fabs(error));
                squares += error * error;
            }
        }
        ASSERT_GT(count, 200);
        EXPECT_LT(worst, c.worst);
        EXPECT_LT(std::sqrt(squares / count), c.rms);
    }
}

TEST_F(SeaPicture, TheHorizonIsWhereTheEarthCurvesAway) {
    for (const double height : {3.0, 45.0, 1000.0, 5000.0, 12000.0}) {
        const dvec3 eye(112.5, 16.7, height);
        see(0, eye, dvec3(67.0, 0.0, 0.0));
        const double dip = std::acos(6.36e6 / (6.36e6 + height));
        const dvec3 up = GLOBE.getWGSTransform(GLOBE.toWorld(eye)).z;
        for (const int column : {0, 80, 160, 240, 319}) {
            for (int row = 0; row < m_shot.height; ++row) {
                const dvec3 step = m_scene.rayAt(column, row).step;
                const double above = std::asin(dot(step, up) / length(step)) + dip;
                if (std::fabs(above) < 0.0046) continue;  // a pixel
                ASSERT_EQ(std::isinf(distanceAt(m_shot, column, row)), above > 0.0)
                    << height << " m: column " << column << ", row " << row;
            }
        }
    }
}

TEST_F(SeaPicture, SurfaceHasNoHoles) {
    for (const double height : {8.0, 45.0, 110.0, 400.0, 3000.0}) {
        for (const double pitch : {-42.0, -75.0}) {
            see(6, dvec3(112.5, 16.7, height), dvec3(25.0 * height, pitch, 12.0));
            EXPECT_EQ(countHoles(m_shot), 0) << height << " m, pitch " << pitch;
        }
    }
    m_scene.world().removeNode(m_ocean);
    m_scene.draw();
    EXPECT_EQ(countHoles(m_scene.capture(true)), 320 * 180) << "without an ocean";
}

TEST_F(SeaPicture, FoamComesWithTheWind) {
    m_scene.world().getEnvironment().time_of_day = 8.0f;
    // Away from the sun, the picture's far part left out.
    const auto whiteShare = [&](int beaufort) {
        see(beaufort, dvec3(112.5, 16.7, 60.0), dvec3(270.0, -35.0, 0.0));
        const auto& rgb = m_shot.rgb;
        const double mean = std::accumulate(rgb.begin(), rgb.end(), 0.0) / static_cast<double>(rgb.size());
        int white = 0;
        for (std::size_t i = 0; i < rgb.size(); i += 3) white += rgb[i] > 60 + mean;
        return 3.0 * white / static_cast<double>(rgb.size());
    };
    EXPECT_EQ(whiteShare(1), 0.0);
    EXPECT_GT(whiteShare(9), 10.0 * whiteShare(4) + 0.002);
}

TEST_F(SeaPicture, GlitterIsUnderTheSun) {
    Environment& environment = m_scene.world().getEnvironment();
    environment.time_of_day = 16.5f;
    environment.cloudiness = 0.0f;
    // Of the lower half's middle columns, with the sun ahead and behind.
    const auto brightness = [&](double heading) {
        m_scene.look(dvec3(112.5, 16.7, 45.0), dvec3(heading, -5.0, 0.0));
        m_scene.draw(30);
        return meanOf(m_scene.capture(), 140, 100, 40, 80)[0];
    };
    m_ocean->setBeaufort(3);
    EXPECT_GT(brightness(285.0), 1.5 * brightness(105.0));
}

TEST(SeaUnderADeck, NoHoleOpensWhetherTheDeckIsThereOrNot) {
    PictureScene scene;
    scene.open();
    scene.loadDemo();
    Node* const ship = scene.world().getNodeByName("start_deck")->getParent();
    for (const double height : {21.3, 27.0, 60.0}) {
        for (int heading = 7; heading < 360; heading += 60) {
            scene.look(dvec3(112.39587, 16.82388, height), dvec3(heading, -25.0, 0.0));
            for (const bool is_there : {true, false}) {
                ship->setEnabled(is_there);
                scene.draw();
                EXPECT_EQ(countHoles(scene.capture(true)), 0) << height << " m, heading " << heading << is_there;
            }
        }
    }
}

TEST(SeaSlopes, SlopesAreThoseOfTheDisplacedSurface) {
    WaveField field(7);
    field.setWind(9.0, 1.0, 0.4);
    field.update(31.0);
    SeaSlopes slopes;
    slopes.update(field);
    // Large cascade alone: neighbours a sample apart see the surface's tangents.
    const WaveCascade& large = field.getCascade(0);
    const double step = large.length / WaveCascade::SIZE;
    double error = 0.0, size = 0.0;
    for (int row = 1; row < WaveCascade::SIZE - 1; row += 3) {
        for (int column = 1; column < WaveCascade::SIZE - 1; column += 3) {
            const auto at = [&](int x, int y) {
                const auto& s = large.samples[static_cast<std::size_t>(y * WaveCascade::SIZE + x)];
                return dvec3(x * step + static_cast<double>(s[0]), y * step + static_cast<double>(s[1]),
                             static_cast<double>(s[2]));
            };
            const dvec3 normal =
                cross(at(column + 1, row) - at(column - 1, row), at(column, row + 1) - at(column, row - 1));
            const auto& texel = slopes.getLarge()[static_cast<std::size_t>(row * WaveCascade::SIZE + column)];
            error += std::fabs(static_cast<double>(texel[0]) + normal.x / normal.z);
            size += std::fabs(normal.x / normal.z);
        }
    }
    EXPECT_LT(error, 0.01 * size);
}

}  // namespace
