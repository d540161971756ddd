// Particles, lamps, texts, rain and snow: what is chosen and counted, and what the picture shows of them.
#include <map>

#include "base/ShaderLibrary.h"
#include "effects/EffectsLayer.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/SceneNodes.h"
#include "render/PictureScene.h"

namespace {

const dvec3 EYE(112.0, 16.0, 60.0);  // looks north

struct Pixel {
    int x, y;
    auto operator<=>(const Pixel&) const = default;
};
/// Where such a place shows with the default field of view.
Pixel pixelOf(const Snapshot& shot, const dvec3& at) {
    const double focal = 0.5 * shot.height / std::tan(22.5 * jMath::DEG2RAD);
    return {static_cast<int>(0.5 * shot.width + focal * at.x / at.y),
            static_cast<int>(0.5 * shot.height - focal * at.z / at.y)};
}

/// How much brighter a place is in the first picture than in the second: display values, over the pixels round it.
double gain(const Snapshot& with, const Snapshot& without, const dvec3& at) {
    const Pixel middle = pixelOf(with, at);
    const int reach = with.height / 30;
    const auto sumOf = [&](const Snapshot& shot) {
        const int side = 2 * reach + 1;
        return luminanceOf(meanOf(shot, middle.x - reach, middle.y - reach, side, side)) * side * side;
    };
    return sumOf(with) - sumOf(without);
}

/// Pixels in which two pictures differ by more than noise.
std::vector<Pixel> differences(const Snapshot& a, const Snapshot& b) {
    std::vector<Pixel> pixels;
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            if (std::fabs(luminanceAt(a, x, y) - luminanceAt(b, x, y)) > 0.02) pixels.push_back({x, y});
        }
    }
    return pixels;
}

class EffectsPicture : public ::testing::Test {
protected:
    void open(float hour) {
        scene.world().getEnvironment().time_of_day = hour;
        scene.look(EYE, {});
        ASSERT_NO_FATAL_FAILURE(scene.open());
        scene.draw(2);
    }
    template <class T>
    T* add(T* node, const dvec3& offset) {
        return scene.addAt(node, EYE, offset);
    }
    /// Draws the world as it is, without a step in time.
    Snapshot drawNow() {
        scene.picture->draw();
        return scene.capture();
    }

    PictureScene scene;
};

NodeLight* makeLamp(float intensity, LightSettings::Kind kind = LightSettings::POINT) {
    LightSettings settings;
    settings.intensity = intensity;
    settings.size = 0.3f;
    settings.kind = kind;
    settings.angle = 40.0f;
    return new NodeLight(settings);
}

TEST_F(EffectsPicture, LampsShineAtTheirPlacesAndInTheirCones) {
    ASSERT_NO_FATAL_FAILURE(open(0.0f));
    const Snapshot dark = drawNow();
    const dvec3 at(30.0, 150.0, 12.0), other(-30.0, 150.0, 12.0), moved(0.0, 150.0, 40.0);
    NodeLight* const lamp = add(makeLamp(200.0f), at);
    NodeLight* const spot = add(makeLamp(200.0f, LightSettings::SPOT), other);
    const auto shown = [&](const dvec3& place) { return gain(drawNow(), dark, place); };
    EXPECT_GT(shown(at), 2.0);
    const double aside = shown(other);  // the spot points north, away from the eye
    spot->setWgsHPR({180.0, 0.0, 0.0});
    EXPECT_GT(shown(other), 2.0 * aside);
    lamp->setEnabled(false);
    EXPECT_LT(std::fabs(shown(at)), 0.05);
    lamp->setEnabled(true);
    lamp->setParameter("brightness", 0.0f);
    EXPECT_LT(std::fabs(shown(at)), 0.05);
    lamp->setParameter("brightness", 1.0f);
    lamp->setWorldPosition(scene.placeAt(EYE, moved));
    EXPECT_LT(std::fabs(shown(at)), 0.05);
    EXPECT_GT(shown(moved), 2.0);
}

TEST_F(EffectsPicture, WallsHideLampsAndLampsLightWalls) {
    ASSERT_NO_FATAL_FAILURE(open(0.0f));
    scene.addAt(makeWall(40.0f, 40.0f), EYE, {0.0, 60.0, 0.0});
    const Snapshot dark = drawNow();
    const dvec3 middle(0.0, 60.0, 0.0);
    NodeLight* const lamp = add(makeLamp(200.0f), {0.0, 70.0, 0.0});
    EXPECT_NEAR(gain(drawNow(), dark, middle), 0.0, 0.1);
    lamp->setWorldPosition(scene.placeAt(EYE, {6.0, 57.0, 0.0}));
    EXPECT_GT(gain(drawNow(), dark, middle), 2.0);
}

TEST_F(EffectsPicture, ParticlesShowWhereTheEngineHasThem) {
    ASSERT_NO_FATAL_FAILURE(open(12.0f));
    ParticleSettings settings;
    settings.spawn_rate = 4.0f;
    settings.life = 5.0f;
    settings.velocity = {0.0f, 0.0f, 0.01f};
    settings.size = 6.0f;
    for (const bool additive : {false, true}) {
        settings.color = settings.end_color = additive ? vec4(1.0f, 0.4f, 0.1f, 1.0f) : vec4(0.02f, 0.02f, 0.02f, 1.0f);
        settings.additive = additive;
        const dvec3 at(-15.0, 80.0, 8.0);
        auto* const smoke = add(new ObjectParticles(settings), at);
        scene.draw(120);
        const Snapshot with = drawNow();
        smoke->clear();
        const Snapshot without = drawNow();
        const std::vector<Pixel> pixels = differences(with, without);
        EXPECT_GT(pixels.size(), 20u);
        const Pixel middle = pixelOf(with, at);
        const double reach = 0.5 * with.height / std::tan(22.5 * jMath::DEG2RAD) * 0.75 * settings.size / at.y;
        for (const Pixel& p : pixels) EXPECT_LT(std::hypot(p.x - middle.x, p.y - middle.y), reach);
        const double change = luminanceAt(with, middle.x, middle.y) - luminanceAt(without, middle.x, middle.y);
        EXPECT_GT(additive ? change : -change, 0.05);
        scene.world().removeNode(smoke);
    }
}

TEST_F(EffectsPicture, TextsReadFromTheFrontAndTheStatusLineIsInTheUpperLeftCorner) {
    ASSERT_NO_FATAL_FAILURE(open(0.0f));
    const Snapshot empty = drawNow();
    auto* const text = add(new NodeText("L", 10.0f, {1.0f, 1.0f, 1.0f, 1.0f}), {0.0, 50.0, -4.0});
    // From the front the upright of an L is on the left.
    for (const bool is_front : {true, false}) {
        text->setWgsHPR({is_front ? 0.0 : 180.0, 0.0, 0.0});
        const std::vector<Pixel> ink = differences(empty, drawNow());
        ASSERT_GT(ink.size(), 50u);
        const auto [left, right] = std::minmax_element(ink.begin(), ink.end());
        EXPECT_EQ(ink.front().x < (left->x + right->x) / 2, is_front);
    }
    scene.world().removeNode(text);
    scene.picture->setStatusLine("帧率 60");
    const std::vector<Pixel> pixels = differences(empty, drawNow());
    EXPECT_GT(pixels.size(), 100u);
    for (const Pixel& p : pixels) EXPECT_TRUE(p.x < empty.height / 2 && p.y < empty.height / 8) << p.x << ' ' << p.y;
}

TEST_F(EffectsPicture, ItRainsHailsAndSnowsOnlyWhileSwitchedOn) {
    ASSERT_NO_FATAL_FAILURE(open(12.0f));
    ParticleSettings settings;
    settings.emitting = false;
    settings.spawn_rate = 1000.0f;
    settings.velocity = {0.0f, 0.0f, -8.0f};
    settings.size = 0.08f;
    settings.color = settings.end_color = {0.9f, 0.9f, 0.9f, 0.8f};
    const Snapshot dry = drawNow();
    for (const char* name : {"rain", "hail", "snow"}) {
        SCOPED_TRACE(name);
        auto* const node = add(new ObjectParticles(settings), {0.0, 20.0, 0.0});
        node->setName(name);
        const std::size_t full = differences(dry, drawNow()).size();
        EXPECT_GT(full, 30u);
        node->setSpawnRate(100.0f);
        EXPECT_LT(differences(dry, drawNow()).size(), full / 3);
        node->setEnabled(false);
        EXPECT_TRUE(differences(dry, drawNow()).empty());
        scene.world().removeNode(node);
    }
}

TEST(LampLights, NoneComesOrGoesAtOnce) {
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    LampLights lights(*state);
    for (int i = 0; i < 40; ++i) {
        Lamp lamp;
        lamp.position = dvec3(20.0 * i, i % 2 == 0 ? -6.0 : 6.0, 0.0);
        lamp.intensity = i % 7 == 0 ? 300.0f : 150.0f;
        lights.set(i, lamp);
    }
    std::map<const Lamp*, double> last;
    for (double x = 0.0; x < 780.0; x += 0.25) {
        LampLights::Chosen chosen[LampLights::MAX_LAMPS];
        ASSERT_EQ(lights.choose(dvec3(x, 1.0, 2.0), chosen), LampLights::MAX_LAMPS);
        std::map<const Lamp*, double> now;
        for (const auto& one : chosen) now[one.lamp] = one.share;
        if (x > 0.0) {
            for (const auto& [lamp, share] : now) last.try_emplace(lamp, 0.0);
            for (const auto& [lamp, share] : last) EXPECT_NEAR(share, now[lamp], 0.12) << "at " << x;
        }
        last = now;
    }
    for (int i = 0; i < 38; ++i) lights.remove(i);
    LampLights::Chosen chosen[LampLights::MAX_LAMPS];
    EXPECT_EQ(lights.choose({}, chosen), 2);
    Lamp point;  // without a range
    point.intensity = 100000.0f;
    point.range = 0.0f;
    lights.set(1, point);
    EXPECT_EQ(lights.choose({}, chosen), 2);
}

TEST(FallMotion, DropsStayInTheWorldWhileTheEyeMoves) {
    constexpr double BOX = 40.0, DT = 1.0 / 60.0;
    const EllipsoidModel globe;
    FallMotion motion(BOX);
    dvec3 geo(112.0, 16.0, 100.0);
    const dvec3 fall(-3.0, 1.0, -9.0), flight(50.0, 120.0, 4.0);
    dmat4 local = globe.getWGSTransform(globe.toWorld(geo));
    motion.update(DT, local, fall);
    const dvec3 start = motion.getOffset();
    for (int i = 0; i < 120; ++i) {
        local = globe.getWGSTransform(local * (flight * DT));
        motion.update(DT, local, fall);
    }
    const dvec3 moved = motion.getOffset() - start, expected = (fall - flight) * (120.0 * DT);
    for (int axis = 0; axis < 3; ++axis) EXPECT_NEAR(std::remainder(moved[axis] - expected[axis], BOX), 0.0, 0.05);
    local = globe.getWGSTransform(globe.toWorld({0.0, 0.0, 100.0}));
    motion.update(DT, local, fall);
    EXPECT_LT(length(motion.getVelocity()), 200.0) << "a leap is no flight";
    motion.update(0.0, local, fall);
    EXPECT_TRUE(isFinite(motion.getOffset()) && isFinite(motion.getVelocity()));
}

}  // namespace
