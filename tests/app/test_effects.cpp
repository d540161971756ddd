// The effects of weapons: all particles of a timed effect have ended before it is removed.
#include "InstructorScene.h"
#include "engine/scene/ObjectParticles.h"

namespace {

std::size_t countParticles(const ObjectPrefab& prefab) {
    std::size_t count = 0;
    for (Node* node : prefab.getNodes()) {
        if (node->getType() == Node::PARTICLES) count += static_cast<ObjectParticles*>(node)->getParticles().size();
    }
    return count;
}

TEST_F(InstructorScene, TimedEffectsAreOverBeforeTheyAreTakenAway) {
    std::vector<SynCoder::CMDPlaySpeOnceInfo> effects;
    logic().m_signal_8_effect_started.append([&](SynCoder::CMDPlaySpeOnceInfo* info) { effects.push_back(*info); });
    for (const std::string name : command::EFFECT_NAMES) ASSERT_TRUE(give("effect " + name + " 90 300")) << name;
    ASSERT_GE(effects.size(), 5u);
    for (const auto& effect : effects) {
        auto* const prefab = new ObjectPrefab(effect.path);
        world().addChild(prefab);
        std::size_t most = 0;
        for (int i = 0; i < static_cast<int>(effect.duration) * 60 - 6; ++i) {  // it starts 0.1 s late
            run(1);
            most = std::max(most, countParticles(*prefab));
        }
        EXPECT_GT(most, 50u) << effect.path;
        EXPECT_EQ(countParticles(*prefab), 0u) << effect.path;
        world().removeNode(prefab);
    }
    EXPECT_TRUE(complaints().empty());
}

}  // namespace
