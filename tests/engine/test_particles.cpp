// Particle systems: numbers, lives, flight, and the same run twice.
#include "engine/scene/ObjectParticles.h"
#include "support/TestScene.h"

namespace {

class ParticlesTest : public SceneTest {
protected:
    ParticlesTest() { world().getEnvironment().wind = {}; }

    ObjectParticles* addSystem(const ParticleSettings& settings) {
        ObjectParticles* const system = add(std::make_unique<ObjectParticles>(settings));
        system->setTransform(EllipsoidModel().getWGSTransform(ORIGIN));
        return system;
    }
    /// In the local east-north-up frame at the systems' position.
    static dvec3 toLocal(const dvec3& world) { return inverse(EllipsoidModel().getWGSTransform(ORIGIN)) * world; }
    static int count(const ObjectParticles* system) { return static_cast<int>(system->getParticles().size()); }

    static inline const dvec3 ORIGIN = EllipsoidModel().toWorld({112.0, 17.0, 100.0});
};

ParticleSettings steady(float rate, float life) {
    ParticleSettings s;
    s.spawn_rate = rate;
    s.life = life;
    return s;
}

}  // namespace

TEST_F(ParticlesTest, RateTimesLifeAreAlive) {
    const struct {
        float rate, life;
        int max, frames;
        double dt;
        int expected;
    } cases[] = {{100, 2, 1000, 60, 0.1, 200},    {100, 2, 50, 60, 0.1, 50},        {0.5f, 100, 10, 100, 0.05, 2},
                 {NAN, 5, 100, 10, 0.1, 0},       {INFINITY, 5, 100, 10, 0.1, 100}, {100, 2, -4, 10, 0.1, 0},
                 {1000, 0.001f, 1000, 10, 0.1, 1}};
    for (const auto& c : cases) {
        ParticleSettings settings = steady(c.rate, c.life);
        settings.max_particles = c.max;
        ObjectParticles* const system = addSystem(settings);
        run(c.frames, c.dt);
        EXPECT_NEAR(count(system), c.expected, 1) << c.rate << " " << c.life << " " << c.max;
        EXPECT_LE(count(system), std::max(0, c.max));
        world().removeNode(system);
    }
}

TEST_F(ParticlesTest, ABurstComesOnceEachTimeItPlays) {
    ParticleSettings settings = steady(100, 100);
    settings.delay = 0.2f;
    settings.duration = 0.3f;
    ObjectParticles* const system = addSystem(settings);
    const auto countAfter = [&](int frames) {
        run(frames, 0.05);
        return count(system);
    };
    EXPECT_EQ(countAfter(4), 0);
    EXPECT_NEAR(countAfter(10), 30, 5);
    const int burst = count(system);
    system->play();
    EXPECT_EQ(countAfter(10), burst) << "it still plays";
    system->stop();
    system->play();
    EXPECT_NEAR(countAfter(20), 2 * burst, 5);
}

TEST_F(ParticlesTest, LivingParticlesGoOnWhenTheEmitterStops) {
    ObjectParticles* const system = addSystem(steady(100, 1));
    const std::function<void(bool)> switches[] = {[&](bool on) { on ? system->play() : system->stop(); },
                                                  [&](bool on) { system->setEnabled(on); },
                                                  [&](bool on) { system->setParameter("emitting", on ? 1.0f : 0.0f); }};
    for (const auto& set : switches) {
        for (const auto& on : switches) on(true);
        run(20, 0.1);
        EXPECT_NEAR(count(system), 100, 1);
        set(false);
        run(5, 0.1);
        EXPECT_NEAR(count(system), 50, 1);
        run(6, 0.1);
        EXPECT_EQ(count(system), 0);
        EXPECT_TRUE(system->getWorldParticleBox().isEmpty());
    }
}

TEST_F(ParticlesTest, FlightFollowsVelocityBuoyancyDragAndWind) {
    const auto flyOne = [&](const ParticleSettings& settings, double dt = 0.01) {
        ObjectParticles* const system = addSystem(settings);
        run(1, 0.1);
        system->stop();
        run(static_cast<int>(std::lround(2.0 / dt)), dt);
        const Particle p = system->getParticles().at(0);
        world().removeNode(system);
        return p;
    };
    ParticleSettings s = steady(10, 10);
    s.velocity = {1, 2, 3};
    EXPECT_LT(length(toLocal(flyOne(s).position) - dvec3(2, 4, 6)), 0.02) << "from the end of the first frame";
    s.size = 0.5f;
    s.growth = 0.25f;
    EXPECT_NEAR(flyOne(s).size, 0.5 + 2.0 * 0.25, 0.01);
    s.growth = -1.0f;
    EXPECT_EQ(flyOne(s).size, 0.0f) << "no particle has a size below 0";
    s.buoyancy = -9.0f;
    EXPECT_NEAR(toLocal(flyOne(s).position).z, 6.0 - 18.0, 0.1);
    s.buoyancy = 0.0f;
    s.drag = 50.0f;
    for (const double dt : {1.0 / 240.0, 0.01, 0.1}) {
        EXPECT_LT(length(toLocal(flyOne(s, dt).position)), 0.2) << "it stops almost at once " << dt;
    }
    s.wind = 0.5f;
    world().getEnvironment().wind = {4, 0, 0};
    EXPECT_NEAR(toLocal(flyOne(s).position).x, 4.0, 0.2) << "half the wind's 4 m/s for 2 s, to the east";
    world().getEnvironment().wind = {NAN, 2, 0};
    EXPECT_LT(length(toLocal(flyOne(s).position)), 0.2) << "taken for a calm";
    EXPECT_EQ(countLines("not finite"), 1);
}

TEST_F(ParticlesTest, AMovingEmitterLaysAnEvenTrail) {
    ParticleSettings s = steady(1000, 5);
    s.velocity = {};
    ObjectParticles* const system = addSystem(s);
    const dmat4 enu = EllipsoidModel().getWGSTransform(ORIGIN);
    for (int i = 0; i <= 10; ++i) {
        system->setTransform(enu * dmat4::translation({10.0 * i, 0, 0}));
        run(1, 0.05);
    }
    std::vector<double> along;
    for (const Particle& p : system->getParticles()) along.push_back(toLocal(p.position).x);
    std::sort(along.begin(), along.end());
    ASSERT_GT(along.size(), 500u);
    double widest = 0.0;
    for (std::size_t i = 51; i < along.size(); ++i) widest = std::max(widest, along[i] - along[i - 1]);
    EXPECT_LT(widest, 0.25) << "one every 0.2 m, also between two frames' places";
    // A jump: no particles along it.
    system->clear();
    system->setTransform(enu * dmat4::translation({90000, 0, 0}));
    run(1, 0.05);
    for (const Particle& p : system->getParticles()) EXPECT_GT(toLocal(p.position).x, 89000.0);
}

TEST_F(ParticlesTest, DeflectorsHoldWhatFalls) {
    ParticleSettings s = steady(200, 10);
    s.velocity = {3, 0, -10};
    s.velocity_spread = {1, 1, 5};
    s.buoyancy = -9.81f;
    ObjectParticles* const system = addSystem(s);
    system->addDeflector(EllipsoidModel().getWGSTransform(ORIGIN) * dmat4::translation({0, 0, -20}));
    run(40, 0.1);
    for (const Particle& p : system->getParticles()) EXPECT_GT(toLocal(p.position).z, -20.001);
}

TEST_F(ParticlesTest, TheSameSceneGivesTheSameParticles) {
    ParticleSettings s = steady(300, 2);
    s.velocity_spread = {5, 5, 5};
    s.emitter_size = {1, 2, 3};
    s.life_spread = 1;
    const auto runScene = [&] {
        World scene;
        for (int i = 0; i < 2; ++i) scene.addChild(std::make_unique<ObjectParticles>(s));
        for (int i = 0; i < 50; ++i) scene.step(0.02);
        std::vector<double> values;
        for (int i = 0; i < 2; ++i) {
            for (const Particle& p : static_cast<ObjectParticles*>(scene.getRoot()->getChild(i))->getParticles()) {
                const dvec3& at = p.position;
                values.insert(values.end(), {at.x, at.y, at.z, double(p.age), double(p.life), double(p.size)});
            }
        }
        return values;
    };
    const std::vector<double> first = runScene();
    ASSERT_GT(first.size(), 6u * 400u);
    EXPECT_EQ(first, runScene());
    EXPECT_NE(first.front(), first[first.size() / 2]) << "two systems are not copies";
}
