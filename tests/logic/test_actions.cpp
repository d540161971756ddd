// The timed actions of weapons and effects, stepped by a manager of their own.
#include "WeaponWorld.h"
#include "common/actions/ActionAttack.h"
#include "common/actions/ActionMoveAndLookAt.h"
#include "engine/scene/SceneNodes.h"
#include "src/kit/LogicActions.h"

namespace {

constexpr float DT = 1.0f / 64.0f;  // exact in binary

class ActionsTest : public WeaponTest {
protected:
    ActionsTest() : m_blocks(memGetInfos().size()) {}

    void step(int steps, float dt = DT) {
        for (int i = 0; i < steps; ++i) manager.update(dt);
    }
    std::size_t blocksTaken() const { return memGetInfos().size() - m_blocks; }
    static dvec3 place() { return EllipsoidModel().toWorld({112.0, 17.0, 100.0}); }

    ActionManager manager;

private:
    std::size_t m_blocks;
};

TEST_F(ActionsTest, AnEffectStartsATenthOfASecondLateAndGoesWithItsAction) {
    ObjectPrefab(EXPLOSION).release();  // as weapons are read ahead
    write(EXPLOSION, "a file is read once");
    ActionPlaySpe* const play = ActionPlaySpe::Create(world().getRoot(), EXPLOSION, 0.5f, place());
    ASSERT_NE(play, nullptr);
    manager.addAction(play);
    auto* const effect = static_cast<ObjectParticles*>(world().getNodeByName("effect"));
    auto* const smoke = static_cast<ObjectParticles*>(world().getNodeByName("smoke"));
    ASSERT_TRUE(effect && smoke);
    EXPECT_EQ(effect->getWorldTransform(), EllipsoidModel().getWGSTransform(place()));
    for (int i = 0; i < 32; ++i) {
        EXPECT_EQ(effect->isEmitterEnabled(), i > 7) << i;  // the eighth step begins at 7/64 s, the first above 0.1
        EXPECT_EQ(smoke->isEmitterEnabled(), i > 7) << i;
        step(1);
        run(1, DT);
    }
    EXPECT_EQ(world().getNodeByName("effect"), nullptr);
    EXPECT_EQ(blocksTaken(), 0u);
}

TEST_F(ActionsTest, AnEffectsLightFlashesOnceWhateverTheFrameLength) {
    write("data/flash.prefab",
          R"({ "node": { "type": "particles", "children": [ { "type": "light", "name": "glow" } ] } })");
    for (const std::vector<float>& pattern : {std::vector{1.0f / 60.0f}, {0.11f, 0.65f, 0.001f}, {0.79f, 0.1f}}) {
        manager.addAction(ActionPlaySpe::Create(world().getRoot(), "data/flash.prefab", 2.0f, place()));
        const auto* const glow = static_cast<NodeLight*>(world().getNodeByName("glow"));
        float brightest = glow->getIntensity();
        EXPECT_EQ(brightest, 0.0f) << "before its start";
        float time = 0.0f;
        for (std::size_t i = 0; time < 1.3f; time += pattern[i++ % pattern.size()]) {
            step(1, pattern[i % pattern.size()]);
            brightest = std::max(brightest, glow->getIntensity());
        }
        EXPECT_GT(brightest, 0.0f) << pattern[0];
        EXPECT_EQ(glow->getIntensity(), 0.0f) << pattern[0];
        manager.removeAllActions();
    }
}

TEST_F(ActionsTest, BadFilesLeaveNothingAndBadDurationsEndWithTheFirstStep) {
    const int nodes = world().getNumNodes();
    write("data/light.prefab", R"({ "node": { "type": "light" } })");
    for (const char* path : {"data/none.prefab", "data/light.prefab"}) {
        EXPECT_EQ(ActionPlaySpe::Create(world().getRoot(), path, 1.0f, place()), nullptr) << path;
        EXPECT_GE(countLines(path), 1) << path;
    }
    EXPECT_EQ(world().getNumNodes(), nodes);
    EXPECT_EQ(blocksTaken(), 0u);
    Node* const node = addNode("target");
    for (const float duration : {0.0f, NAN}) {
        manager.addAction(ActionPlaySpe::Create(world().getRoot(), EXPLOSION, duration, place()));
        manager.addAction(ActionMoveAndLookAt::Create(node, duration, {112, 17, 0}, {112, 17, 9}));
        step(1);
        EXPECT_EQ(manager.getNumActions(), 0) << duration;
    }
}

TEST_F(ActionsTest, AGlideFacesItsTravelBeforeItMoves) {
    const EllipsoidModel globe;
    Node* const node = addNode("target");
    const dvec3 here{112.0, 17.0, 50.0};
    const struct {
        const char* what;
        dvec3 to;
        double heading, pitch;
    } cases[] = {{"east", {112.01, 17.0, 50.0}, 90.0, 0.0},
                 {"west and up", {111.999, 17.0, 156.44}, 270.0, 45.0},
                 {"nowhere", here, 30.0, 5.0}};
    for (const auto& c : cases) {
        node->setWgsPosition(here);
        node->setWgsHPR({30.0, 5.0, 0.0});
        destroyAction(ActionMoveAndLookAt::Create(node, 1.0f, here, c.to));
        EXPECT_LT(length(node->getWorldPosition() - globe.toWorld(here)), 1e-6) << c.what;
        const dvec3 hpr = node->getWgsHPR();
        // The vertical is that from the globe's centre, up to 0.2 degrees off the ellipsoid's.
        EXPECT_NEAR(std::remainder(hpr.x - c.heading, 360.0), 0.0, 0.2) << c.what;
        EXPECT_NEAR(hpr.y, c.pitch, 0.2) << c.what;
        EXPECT_NEAR(hpr.z, 0.0, 0.2) << c.what;
    }
    node->setWgsHPR({30.0, 0.0, 0.0});
    const dvec3 x = node->getWorldTransform().x;
    destroyAction(ActionMoveAndLookAt::Create(node, 1.0f, here, here + dvec3(0, 0, 100)));
    EXPECT_LT(length(node->getWorldTransform().x - x), 1e-2) << "straight up keeps the X axis";
}

}  // namespace
