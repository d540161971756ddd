// Particles, lamps, texts, rain and snow: what is chosen and counted, and what the picture shows of them.
#include <map>
#include <set>

#include "base/ShaderLibrary.h"
#include "effects/EffectsLayer.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/SceneNodes.h"
#include "render/PictureScene.h"
#include "support/TestScene.h"

namespace {

const dvec3 EYE(112.0, 16.0, 60.0);  // looks north

/// A place seen from the eye: metres to the right, ahead, up.
dvec3 placeAt(Engine& engine, const dvec3& at) {
    const EllipsoidModel& globe = engine.getEllipsoid();
    return globe.getWGSTransform(globe.toWorld(EYE)) * at;
}

template <class T>
T* addAt(PictureScene& scene, T* node, const dvec3& at) {
    scene.world().addChild(node);
    node->setWorldPosition(placeAt(scene.engine, at));
    node->setWgsHPR({});
    return node;
}

struct Pixel {
    int x, y;
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
    double sum = 0.0;
    for (int y = middle.y - reach; y <= middle.y + reach; ++y) {
        for (int x = middle.x - reach; x <= middle.x + reach; ++x) {
            sum += luminanceAt(with, x, y) - luminanceAt(without, x, y);
        }
    }
    return sum;
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
    void open(float hour, const PictureSettings& settings = PictureScene::small()) {
        scene.world().getEnvironment().time_of_day = hour;
        scene.look(EYE, {});
        ASSERT_NO_FATAL_FAILURE(scene.open(settings));
        scene.draw(2);
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

TEST_F(EffectsPicture, LampsShineWhereTheyStandInTheirConesAndBehindNothing) {
    for (const int height : {180, 360}) {
        SCOPED_TRACE(height);
        PictureScene fresh;
        fresh.world().getEnvironment().time_of_day = 0.0f;
        fresh.look(EYE, {});
        PictureSettings settings;
        settings.width = 16 * height / 9;
        settings.height = height;
        ASSERT_NO_FATAL_FAILURE(fresh.open(settings));
        fresh.draw(2);
        const Snapshot dark = fresh.capture();
        const dvec3 at(30.0, 150.0, 12.0), other(-30.0, 150.0, 12.0), far_off(-450.0, 3000.0, 600.0);
        NodeLight* const lamp = addAt(fresh, makeLamp(200.0f), at);
        addAt(fresh, makeLamp(200.0f), far_off);
        NodeLight* const spot = addAt(fresh, makeLamp(200.0f, LightSettings::SPOT), other);
        const auto shown = [&](const dvec3& place) {
            fresh.picture->draw();
            return gain(fresh.capture(), dark, place);
        };
        EXPECT_GT(shown(at), 2.0);
        EXPECT_GT(shown(far_off), 0.5);
        const double aside = shown(other);  // the spot points north, away from the eye
        spot->setWgsHPR({180.0, 0.0, 0.0});
        EXPECT_GT(shown(other), 2.0 * aside);
        lamp->setEnabled(false);
        EXPECT_LT(std::fabs(shown(at)), 0.05);
        lamp->setEnabled(true);
        EXPECT_GT(shown(at), 2.0);
        lamp->setParameter("brightness", 0.0f);
        EXPECT_LT(std::fabs(shown(at)), 0.05);
        lamp->setParameter("brightness", 1.0f);
        lamp->setWorldPosition(placeAt(fresh.engine, {0.0, 150.0, 40.0}));
        EXPECT_LT(std::fabs(shown(at)), 0.05);
        EXPECT_GT(shown({0.0, 150.0, 40.0}), 2.0);
    }
}

TEST_F(EffectsPicture, WallsHideLampsAndLampsLightWalls) {
    ASSERT_NO_FATAL_FAILURE(open(0.0f));
    MeshSurface wall;
    wall.positions = {{-20.0f, 0.0f, -20.0f}, {20.0f, 0.0f, -20.0f}, {20.0f, 0.0f, 20.0f}, {-20.0f, 0.0f, 20.0f}};
    wall.normals.assign(4, {0.0f, -1.0f, 0.0f});
    wall.indices = {0, 1, 2, 0, 2, 3};
    wall.material = std::make_shared<Material>();
    addAt(scene, new ObjectMeshStatic(std::make_shared<MeshData>(std::vector<MeshSurface>{wall})), {0.0, 60.0, 0.0});
    const Snapshot dark = drawNow();
    const dvec3 middle(0.0, 60.0, 0.0);
    NodeLight* const lamp = addAt(scene, makeLamp(200.0f), {0.0, 70.0, 0.0});
    EXPECT_NEAR(gain(drawNow(), dark, middle), 0.0, 0.1);
    lamp->setWorldPosition(placeAt(scene.engine, {6.0, 57.0, 0.0}));
    EXPECT_GT(gain(drawNow(), dark, middle), 2.0);
    scene.world().getEnvironment().time_of_day = 12.0f;
    scene.draw(60);
    const Snapshot lit = drawNow();
    lamp->setEnabled(false);
    EXPECT_NEAR(gain(lit, drawNow(), middle), 0.0, 0.05) << "by day a lamp lights nothing";
}

TEST_F(EffectsPicture, ParticlesShowWhereTheEngineHasThem) {
    for (const bool additive : {false, true}) {
        SCOPED_TRACE(additive);
        ASSERT_NO_FATAL_FAILURE(open(12.0f));
        ParticleSettings settings;
        settings.spawn_rate = 4.0f;
        settings.life = 5.0f;
        settings.velocity = {0.0f, 0.0f, 0.01f};
        settings.size = 6.0f;
        settings.color = settings.end_color = additive ? vec4(1.0f, 0.4f, 0.1f, 1.0f) : vec4(0.02f, 0.02f, 0.02f, 1.0f);
        settings.additive = additive;
        const dvec3 at(-15.0, 80.0, 8.0);
        const Snapshot before = drawNow();
        auto* const smoke = addAt(scene, new ObjectParticles(settings), at);
        EXPECT_TRUE(differences(before, drawNow()).empty()) << "nothing lives yet";
        scene.draw(120);
        const Snapshot with = drawNow();
        smoke->clear();
        const Snapshot without = drawNow();
        const std::vector<Pixel> pixels = differences(with, without);
        ASSERT_GT(pixels.size(), 20u);
        const Pixel middle = pixelOf(with, at);
        const double reach = 0.5 * with.height / std::tan(22.5 * jMath::DEG2RAD) * 0.75 * settings.size / at.y;
        for (const Pixel& p : pixels) EXPECT_LT(std::hypot(p.x - middle.x, p.y - middle.y), reach);
        const double change = luminanceAt(with, middle.x, middle.y) - luminanceAt(without, middle.x, middle.y);
        EXPECT_GT(additive ? change : -change, 0.05);
        scene.world().removeNode(smoke);
        scene.picture.reset();
    }
}

TEST_F(EffectsPicture, FewerParticlesStandForAllOfThem) {
    std::map<Quality, double> cover;
    for (const Quality quality : {Quality::LOW, Quality::HIGH}) {
        PictureScene fresh;
        fresh.world().getEnvironment().time_of_day = 12.0f;
        fresh.look(EYE, {});
        PictureSettings settings = PictureScene::small();
        settings.quality = quality;
        ASSERT_NO_FATAL_FAILURE(fresh.open(settings));
        ParticleSettings smoke;
        smoke.spawn_rate = 60.0f;
        smoke.life = 4.0f;
        smoke.velocity_spread = {2.0f, 2.0f, 2.0f};
        smoke.emitter_size = {20.0f, 20.0f, 20.0f};
        smoke.size = 15.0f;
        smoke.color = {0.02f, 0.02f, 0.02f, 0.12f};
        smoke.end_color = {0.02f, 0.02f, 0.02f, 0.0f};
        auto* const system = addAt(fresh, new ObjectParticles(smoke), {0.0, 60.0, 0.0});
        for (int i = 0; i < 300; ++i) {
            fresh.engine.beginFrame(1.0 / 60.0);
            fresh.engine.step();
            fresh.engine.endFrame();
        }
        fresh.draw(2);
        const Snapshot with = fresh.capture();
        system->clear();
        fresh.picture->draw();
        const Snapshot without = fresh.capture();
        for (int y = 0; y < with.height; ++y) {
            for (int x = 0; x < with.width; ++x) {
                cover[quality] += (luminanceAt(without, x, y) - luminanceAt(with, x, y)) / (with.width * with.height);
            }
        }
    }
    EXPECT_GT(cover[Quality::HIGH], 0.05);
    EXPECT_NEAR(cover[Quality::LOW], cover[Quality::HIGH], 0.3 * cover[Quality::HIGH]);
}

/// Which pixels hold ink, relative to the ink's own corner.
struct Ink {
    std::set<std::pair<int, int>> pixels;
    int width = 0, height = 0;
};

TEST_F(EffectsPicture, TextsReadFromTheFrontWithTheirOwnLetters) {
    ASSERT_NO_FATAL_FAILURE(open(0.0f));
    const Snapshot empty = drawNow();
    const auto inkOf = [&](const char* text, double heading) {
        auto* const node = addAt(scene, new NodeText(text, 10.0f, {1.0f, 1.0f, 1.0f, 1.0f}), {0.0, 50.0, -4.0});
        node->setWgsHPR({heading, 0.0, 0.0});
        const std::vector<Pixel> pixels = differences(empty, drawNow());
        scene.world().removeNode(node);
        Ink ink;
        int left = 10000, top = 10000;
        for (const Pixel& p : pixels) left = std::min(left, p.x), top = std::min(top, p.y);
        for (const Pixel& p : pixels) {
            ink.pixels.insert({p.x - left, p.y - top});
            ink.width = std::max(ink.width, p.x - left + 1);
            ink.height = std::max(ink.height, p.y - top + 1);
        }
        return ink;
    };
    const Ink neng = inkOf("能", 0.0), jian = inkOf("见", 0.0),
              box = inkOf("\xee\x80\x80", 0.0);  // U+E000 has no glyph
    EXPECT_GT(neng.pixels.size(), 200u);
    EXPECT_GT(jian.pixels.size(), 150u);
    EXPECT_NE(neng.pixels, jian.pixels);
    EXPECT_NE(neng.pixels, box.pixels);
    EXPECT_NE(jian.pixels, box.pixels);
    EXPECT_EQ(inkOf("能", 0.0).pixels, neng.pixels);

    const Ink capital = inkOf("H", 0.0);
    EXPECT_NEAR(capital.height, 0.5 * empty.height / std::tan(22.5 * jMath::DEG2RAD) * 10.0 / 50.0, 2.5);
    // The upright of an L stands on the left, from behind on the right.
    const Ink front = inkOf("L", 0.0), back = inkOf("L", 180.0);
    const auto topmost = [](const Ink& ink) { return ink.pixels.lower_bound({0, 0})->first; };
    const auto columnOfUpright = [&](const Ink& ink) {
        double sum = topmost(ink), count = 1.0;
        for (const auto& [x, y] : ink.pixels) {
            if (y < ink.height / 2) sum += x, count += 1.0;
        }
        return sum / count / ink.width;
    };
    EXPECT_LT(columnOfUpright(front), 0.4);
    EXPECT_GT(columnOfUpright(back), 0.6);
}

TEST_F(EffectsPicture, ItRainsHailsAndSnowsOnlyWhileSwitchedOn) {
    ASSERT_NO_FATAL_FAILURE(open(12.0f));
    scene.world().getEnvironment().cloudiness = 1.0f;
    scene.look(EYE, {0.0, -20.0, 0.0});
    ParticleSettings settings;
    settings.emitting = false;
    settings.spawn_rate = 1000.0f;
    settings.velocity = {0.0f, 0.0f, -8.0f};
    settings.size = 0.08f;
    settings.color = settings.end_color = {0.9f, 0.9f, 0.9f, 0.8f};
    scene.draw(60);
    const Snapshot dry = drawNow();
    for (const char* name : {"rain", "hail", "snow"}) {
        SCOPED_TRACE(name);
        auto* const node = addAt(scene, new ObjectParticles(settings), {0.0, 20.0, 0.0});
        node->setName(name);
        const std::size_t full = differences(dry, drawNow()).size();
        EXPECT_GT(full, 30u);
        node->setSpawnRate(100.0f);
        const std::size_t sparse = differences(dry, drawNow()).size();
        EXPECT_GT(sparse, 0u);
        EXPECT_LT(sparse, full / 3);
        node->setSpawnRate(0.0f);
        EXPECT_TRUE(differences(dry, drawNow()).empty());
        node->setSpawnRate(2000.0f);
        node->setEnabled(false);
        EXPECT_TRUE(differences(dry, drawNow()).empty());
        scene.world().removeNode(node);
    }
}

TEST_F(EffectsPicture, TheStatusLineStandsInTheUpperLeftCorner) {
    for (const int height : {180, 720}) {
        SCOPED_TRACE(height);
        PictureSettings settings;
        settings.width = 2 * height;
        settings.height = height;
        ASSERT_NO_FATAL_FAILURE(open(12.0f, settings));
        const Snapshot plain = drawNow();
        scene.picture->setStatusLine("帧率 60");
        const std::vector<Pixel> pixels = differences(plain, drawNow());
        EXPECT_GT(pixels.size(), 100u);
        for (const Pixel& p : pixels) {
            EXPECT_LT(p.x, height / 2);
            EXPECT_LT(p.y, height / 8);
        }
        scene.picture->setStatusLine("");
        EXPECT_TRUE(differences(plain, drawNow()).empty());
        scene.picture.reset();
    }
}

TEST(VisibleIlluminance, AgreesWithTheTableForRunwayVisualRange) {
    // ICAO Annex 3, attachment D: values for night, in between, day and bright day.
    const double steps[][2] = {{4.0, 8e-7}, {200.0, 1e-5}, {4000.0, 1e-4}, {25000.0, 1e-3}};
    for (const auto& [background, lux] : steps) {
        EXPECT_GT(getVisibleIlluminance(background), lux / 2.0);
        EXPECT_LT(getVisibleIlluminance(background), lux * 2.0);
    }
    EXPECT_EQ(getVisibleIlluminance(0.0), getVisibleIlluminance(1e-9));
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
        EXPECT_GT(chosen[0].share, 0.0);
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
    ASSERT_EQ(lights.choose({}, chosen), 2);
    EXPECT_EQ(chosen[0].share, 1.0) << "without rivals";
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
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_GE(motion.getOffset()[axis], 0.0);
            EXPECT_LT(motion.getOffset()[axis], BOX);
        }
    }
    const dvec3 moved = motion.getOffset() - start, expected = (fall - flight) * (120.0 * DT);
    for (int axis = 0; axis < 3; ++axis) EXPECT_NEAR(std::remainder(moved[axis] - expected[axis], BOX), 0.0, 0.05);
    EXPECT_LT(length(motion.getVelocity() - (fall - flight)), 0.1);
    local = globe.getWGSTransform(globe.toWorld({0.0, 0.0, 100.0}));
    motion.update(DT, local, fall);
    EXPECT_LT(length(motion.getVelocity()), 200.0) << "a leap is no flight";
    motion.update(0.0, local, fall);
    EXPECT_TRUE(isFinite(motion.getOffset()) && isFinite(motion.getVelocity()));
}

class EffectsNodes : public SceneTest {
protected:
    static int count(const osg::Node& node) {
        int sum = 1;
        if (const osg::Group* const group = node.asGroup()) {
            for (unsigned i = 0; i < group->getNumChildren(); ++i) sum += count(*group->getChild(i));
        }
        return sum;
    }
};

TEST_F(EffectsNodes, LivingParticlesAndMovingLampsLeaveNothingBehind) {
    osg::ref_ptr<osg::Group> root = new osg::Group;
    ShaderLibrary shaders;
    EffectsLayer effects(*root, shaders);
    FrameView view;
    view.width = 320, view.height = 180;
    effects.update(view, world());
    const int before = count(*root);
    ParticleSettings settings;
    settings.spawn_rate = 600.0f;
    LightSettings light;
    light.size = 0.5f;
    for (int round = 0; round < 20; ++round) {
        std::vector<Node*> nodes;
        for (int i = 0; i < 50; ++i) {
            settings.additive = i % 2 == 0;
            nodes.push_back(world().addChild(new ObjectParticles(settings)));
            effects.updateParticles(*static_cast<ObjectParticles*>(nodes.back()));
            nodes.push_back(world().addChild(new NodeLight(light)));
            effects.updateLight(*static_cast<NodeLight*>(nodes.back()));
        }
        run(3);
        effects.update(view, world());
        EXPECT_GT(count(*root), before + 50);
        for (std::size_t i = 1; i < nodes.size(); i += 2) {
            nodes[i]->setWorldPosition({500.0 * static_cast<double>(i), 0.0, 0.0});
            effects.updateLight(*static_cast<NodeLight*>(nodes[i]));
        }
        effects.update(view, world());
        for (Node* node : nodes) {
            effects.remove(node->getId());
            world().removeNode(node);
        }
        effects.update(view, world());
        EXPECT_EQ(count(*root), before);
    }
}

}  // namespace
