// The effects of weapons: what a timed one emits has burnt out before it is taken away.
#include "DemoScene.h"
#include "engine/scene/ObjectParticles.h"

namespace {

TEST_F(DemoScene, TimedEffectsAreOverBeforeTheyAreTakenAway) {
    const struct {
        const char* path;
        int seconds;  // that the logic plays it
    } effects[] = {{"data/art/prefab/vfx/explosion/explosion.prefab", 20},
                   {"data/art/prefab/vfx/explosion_1/explosion_1.prefab", 6},
                   {"data/HARBOR_PROJECT/prefabs/vfx/water_explosion/water_explosion.prefab", 20},
                   {"data/HARBOR_PROJECT/prefabs/vfx/water_drop/water_drop.prefab", 20}};
    for (const auto& effect : effects) {
        auto* const prefab = new ObjectPrefab(effect.path);
        world().addChild(prefab);
        std::size_t most = 0, left = 0;
        for (int i = 0; i < effect.seconds * 60 - 6; ++i) {  // it starts 0.1 s late
            run(1);
            left = 0;
            for (Node* node : prefab->getNodes()) {
                if (node->getType() != Node::PARTICLES) continue;
                left += static_cast<ObjectParticles*>(node)->getParticles().size();
            }
            most = std::max(most, left);
        }
        EXPECT_GT(most, 50u) << effect.path;
        EXPECT_EQ(left, 0u) << effect.path;
        world().removeNode(prefab);
    }
    EXPECT_TRUE(complaints().empty());
}

}  // namespace
