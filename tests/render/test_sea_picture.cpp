// The drawn sea: where its surface and its horizon lie, that it has no holes, and what its state changes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "PictureScene.h"
#include "engine/math/jMath.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/WaveField.h"
#include "mirror/LevelTop.h"
#include "sea/SeaMesh.h"
#include "sea/SeaSlopes.h"

namespace {

const EllipsoidModel GLOBE;

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

    float distanceAt(int column, int row) const {
        return m_shot.distance[static_cast<std::size_t>(row * m_shot.width + column)];
    }
    /// Right and up of a pixel's middle, for a depth of 1.
    double rightOf(int column) const { return (2.0 * (column + 0.5) - m_shot.width) / m_shot.height * TANGENT; }
    double upOf(int row) const { return (1.0 - 2.0 * (row + 0.5) / m_shot.height) * TANGENT; }
    dvec3 placeAt(int column, int row) {
        const CameraControl& camera = *m_scene.engine.getCameraControl();
        const double depth = static_cast<double>(distanceAt(column, row));
        return camera.getNode()->getWorldTransform() * dvec3(rightOf(column) * depth, upOf(row) * depth, -depth);
    }

    static constexpr double TANGENT = 0.41421356237309503;  // of half the height's 45 degrees
    PictureScene m_scene;
    ObjectOcean* m_ocean = nullptr;
    Snapshot m_shot;
};

/// Heights drawn and heights of the ocean, metres, of pixels all over the picture up to some distance.
struct Heights {
    std::vector<double> drawn, wanted;

    double getRms() const {
        double sum = 0.0;
        for (std::size_t i = 0; i < drawn.size(); ++i) sum += (drawn[i] - wanted[i]) * (drawn[i] - wanted[i]);
        return std::sqrt(sum / static_cast<double>(drawn.size()));
    }
    double getWorst() const {
        double worst = 0.0;
        for (std::size_t i = 0; i < drawn.size(); ++i) worst = std::max(worst, std::fabs(drawn[i] - wanted[i]));
        return worst;
    }
    /// How many times as high the drawn waves are.
    double getRatio() const {
        double both = 0.0, one = 0.0;
        for (std::size_t i = 0; i < drawn.size(); ++i) {
            both += drawn[i] * wanted[i];
            one += wanted[i] * wanted[i];
        }
        return both / one;
    }
};

class SeaHeights : public SeaPicture {
protected:
    /// Wanted are the ocean's waves as far as they are left at the eye's height.
    Heights compare(double farthest) {
        Heights heights;
        const double rise =
            jMath::getFadeOut(m_scene.engine.getCameraControl()->getNode()->getWgsPosition().z, 1000.0, 1000.0);
        for (int row = 1; row < m_shot.height; row += 7) {
            for (int column = 1; column < m_shot.width; column += 7) {
                if (!(static_cast<double>(distanceAt(column, row)) < farthest)) continue;
                const dvec3 place = placeAt(column, row);
                heights.drawn.push_back(GLOBE.toWGS(place).z);
                heights.wanted.push_back(GLOBE.toWGS(m_ocean->getWorldPoint(place)).z * rise);
            }
        }
        return heights;
    }
};

TEST_F(SeaHeights, SurfaceIsTheOceansNearTheEye) {
    const struct {
        int beaufort;
        dvec3 eye, hpr;
        double farthest, worst, rms;
    } cases[] = {
        {0, {112.5, 16.7, 8.0}, {0.0, -30.0, 0.0}, 100.0, 1e-3, 1e-3},
        {4, {112.5, 16.7, 5.0}, {67.0, -60.0, 0.0}, 9.0, 0.02, 0.004},
        {7, {112.5, 16.7, 7.0}, {200.0, -60.0, 0.0}, 9.0, 0.05, 0.008},
        {4, {112.5, 16.7, 15.0}, {67.0, -20.0, 0.0}, 80.0, 0.25, 0.05},
        {7, {112.5, 16.7, 30.0}, {200.0, -60.0, 10.0}, 80.0, 0.25, 0.05},
        {8, {112.5, 16.7, 100.0}, {310.0, -75.0, 0.0}, 140.0, 0.5, 0.11},
        {7, {-140.0, 52.0, 7.0}, {300.0, -60.0, 0.0}, 9.0, 0.05, 0.008},  // far from the field's origin
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << "Beaufort " << c.beaufort << " from " << c.eye.z << " m");
        see(c.beaufort, c.eye, c.hpr);
        const Heights heights = compare(c.farthest);
        ASSERT_GT(heights.drawn.size(), 200u);
        EXPECT_LT(heights.getWorst(), c.worst);
        EXPECT_LT(heights.getRms(), c.rms);
    }
}

TEST_F(SeaHeights, WavesGoDownAsTheEyeRises) {
    for (const double height : {300.0, 500.0}) {
        see(8, dvec3(112.5, 16.7, height), dvec3(0.0, -90.0, 0.0));
        EXPECT_NEAR(compare(2000.0).getRatio(), 1.0, 0.18) << height << " m";
    }
    see(8, dvec3(112.5, 16.7, 1500.0), dvec3(0.0, -90.0, 0.0));
    const std::vector<double> flat = compare(2000.0).drawn;
    EXPECT_LT(*std::max_element(flat.begin(), flat.end()), 1e-2);
    EXPECT_GT(*std::min_element(flat.begin(), flat.end()), -1e-2);
}

TEST_F(SeaPicture, HorizonLiesWhereTheEarthCurvesAway) {
    for (const double height : {3.0, 45.0, 1000.0, 5000.0, 12000.0}) {
        see(0, dvec3(112.5, 16.7, height), dvec3(67.0, 0.0, 0.0));
        const double dip = std::acos(6.36e6 / (6.36e6 + height));
        for (const int column : {0, 80, 160, 240, 319}) {
            const double wanted = -std::tan(dip) * std::hypot(1.0, rightOf(column));
            const double pixel = upOf(0) - upOf(1);
            for (int row = 0; row < m_shot.height; ++row) {
                const double above = (upOf(row) - wanted) / pixel;
                if (std::fabs(above) < 1.0) continue;
                ASSERT_EQ(std::isinf(distanceAt(column, row)), above > 0.0)
                    << height << " m: column " << column << ", row " << row;
            }
        }
    }
}

TEST_F(SeaPicture, SurfaceHasNoHoles) {
    for (const double height : {8.0, 45.0, 110.0, 400.0, 3000.0}) {
        for (const double pitch : {-42.0, -75.0}) {
            see(6, dvec3(112.5, 16.7, height), dvec3(25.0 * height, pitch, 12.0));
            const auto holes = std::count_if(m_shot.distance.begin(), m_shot.distance.end(),
                                             [](float distance) { return std::isinf(distance); });
            EXPECT_EQ(holes, 0) << height << " m, pitch " << pitch;
        }
    }
}

TEST_F(SeaPicture, FoamComesWithTheWind) {
    m_scene.world().getEnvironment().time_of_day = 8.0f;
    // Away from the sun, the picture's far part left out.
    const auto whiteShare = [&](int beaufort) {
        see(beaufort, dvec3(112.5, 16.7, 60.0), dvec3(270.0, -35.0, 0.0));
        const auto& rgb = m_shot.rgb;
        double mean = 0.0;
        for (const unsigned char value : rgb) mean += value;
        mean /= static_cast<double>(rgb.size());
        int white = 0;
        for (std::size_t i = 0; i < rgb.size(); i += 3) white += rgb[i] > 60 + mean;
        return 3.0 * white / static_cast<double>(rgb.size());
    };
    EXPECT_EQ(whiteShare(1), 0.0);
    EXPECT_GT(whiteShare(9), 10.0 * whiteShare(4) + 0.002);
}

TEST_F(SeaPicture, GlitterLiesUnderTheSun) {
    Environment& environment = m_scene.world().getEnvironment();
    environment.time_of_day = 16.5f;
    environment.cloudiness = 0.0f;
    // Mean of the lower half's middle columns, with the sun ahead and behind.
    const auto brightness = [&](double heading) {
        m_scene.look(dvec3(112.5, 16.7, 45.0), dvec3(heading, -5.0, 0.0));
        m_scene.draw(30);
        m_shot = m_scene.capture();
        double sum = 0.0;
        for (int row = 100; row < 180; ++row) {
            for (int column = 140; column < 180; ++column)
                sum += m_shot.rgb[static_cast<std::size_t>(3 * (row * 320 + column))];
        }
        return sum / (80.0 * 40.0);
    };
    m_ocean->setBeaufort(3);
    EXPECT_GT(brightness(285.0), 1.5 * brightness(105.0));
}

TEST(SeaUnderADeck, NoHoleOpensWhetherTheDeckIsThereOrNot) {
    PictureScene scene;
    scene.open();
    scene.loadDemo();
    Node* const ship = scene.world().getNodeByName("start_deck")->getParent();
    const auto countHoles = [&] {
        scene.draw();
        const Snapshot shot = scene.capture(true);
        return std::count_if(shot.distance.begin(), shot.distance.end(), [](float d) { return std::isinf(d); });
    };
    for (const double height : {21.3, 27.0, 60.0}) {
        for (int heading = 7; heading < 360; heading += 60) {
            scene.look(dvec3(112.39587, 16.82388, height), dvec3(heading, -25.0, 0.0));
            ship->setEnabled(true);
            EXPECT_EQ(countHoles(), 0) << height << " m, heading " << heading;
            ship->setEnabled(false);
            EXPECT_EQ(countHoles(), 0) << "without the ship, " << height << " m, heading " << heading;
        }
    }
}

TEST(SeaUnderADeck, WhatItHidesIsLeftOut) {
    WaveField field(7);
    field.setWind(6.0, 1.0, 0.0);
    field.update(10.0);
    SeaSlopes slopes;
    slopes.update(field);
    MeshSurface deck;
    deck.positions = {
        {-40.0f, -150.0f, 20.0f}, {40.0f, -150.0f, 20.0f}, {40.0f, 150.0f, 20.0f}, {-40.0f, 150.0f, 20.0f}};
    deck.indices = {0, 1, 2, 0, 2, 3};
    const auto top = LevelTop::find(deck);
    ASSERT_TRUE(top);
    // Patches ahead of an eye 6 m above the deck, which points to a heading.
    const auto countPatches = [&](const LevelTop* cover, double heading) {
        SeaMeshView view;
        view.height = 26.0;
        view.reach_sideways = slopes.getReachSideways();
        view.reach_upward = slopes.getReachUpward();
        view.sides = {{{1.0, 1.0, 0.0, 0.0}, {-1.0, 1.0, 0.0, 0.0}, {0.0, 1.0, 0.5, 0.0}, {0.0, 0.2, -1.0, 0.0}}};
        view.cover = cover;
        const dmat4 ship(dquat(dvec3(0.0, 0.0, 1.0), -heading), dvec3(0.0, 0.0, -26.0));
        view.to_cover = inverse(ship);
        SeaMesh mesh;
        mesh.update(view, field, slopes, nullptr);
        return mesh.getNumPatches();
    };
    const int all = countPatches(nullptr, 0.0), along = countPatches(top.get(), 0.0),
              across = countPatches(top.get(), 90.0);
    EXPECT_LT(along, 0.6 * all);
    EXPECT_LT(across, 0.9 * all);
    EXPECT_LT(along, across) << "a deck that lies ahead hides more than one that lies across";
}

TEST_F(SeaPicture, NothingIsDrawnWithoutAnOcean) {
    m_scene.world().removeNode(m_ocean);
    m_scene.look(dvec3(112.5, 16.7, 45.0), dvec3(0.0, -30.0, 0.0));
    m_scene.draw();
    m_shot = m_scene.capture(true);
    EXPECT_TRUE(std::all_of(m_shot.distance.begin(), m_shot.distance.end(), [](float d) { return std::isinf(d); }));
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
    for (int cascade = 0; cascade < WaveField::NUM_CASCADES; ++cascade) {
        for (int level = 1; level < SeaSlopes::NUM_LEVELS; ++level) {
            EXPECT_LE(slopes.getMeanSquare(cascade, level), slopes.getMeanSquare(cascade, level - 1));
        }
    }
}

}  // namespace
