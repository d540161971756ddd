// What the picture keeps of the world's nodes; without a graphics context.
#include <gtest/gtest.h>

#include "effects/EffectsLayer.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/SceneNodes.h"
#include "frame/ShaderLibrary.h"
#include "mirror/WorldMirror.h"
#include "sea/SeaLayer.h"
#include "support/TestScene.h"
#include "terrain/TerrainLayer.h"

namespace {

std::shared_ptr<const MeshData> makeTriangle() {
    MeshSurface surface;
    surface.positions = {{0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}};
    surface.indices = {0, 1, 2};
    surface.material = std::make_shared<Material>();
    return std::make_shared<MeshData>(std::vector<MeshSurface>{surface});
}

class MirrorTest : public SceneTest {
protected:
    MirrorTest()
        : terrain(*root, shaders),
          sea(*root, shaders),
          effects(*root, shaders),
          mirror(world(), *root, shaders, terrain, sea, effects) {}

    /// Nodes below `node`, itself included.
    static int count(const osg::Node& node) {
        int sum = 1;
        if (const osg::Group* const group = node.asGroup()) {
            for (unsigned i = 0; i < group->getNumChildren(); ++i) sum += count(*group->getChild(i));
        }
        return sum;
    }

    osg::ref_ptr<osg::Group> root = new osg::Group;
    ShaderLibrary shaders;
    TerrainLayer terrain;
    SeaLayer sea;
    EffectsLayer effects;
    WorldMirror mirror;
};

TEST_F(MirrorTest, TenThousandNodesLeaveNothingBehind) {
    mirror.update();
    const int before = count(*root);
    for (int round = 0; round < 100; ++round) {
        const auto mesh = makeTriangle();
        std::vector<Node*> nodes;
        for (int i = 0; i < 25; ++i) {
            auto* const object = new ObjectMeshStatic(mesh);
            object->setSurfaceMaterialInherit(0, i % 3 == 0);
            nodes.push_back(world().addChild(object));
            nodes.push_back(world().addChild(new ObjectParticles(ParticleSettings{})));
            LightSettings light;
            light.size = 0.5f;
            nodes.push_back(world().addChild(new NodeLight(light)));
            nodes.push_back(world().addChild(new NodeText("12", 1.0f, {1.0f, 1.0f, 1.0f, 1.0f})));
        }
        mirror.update();
        EXPECT_EQ(mirror.getMeshes().getNumNodes(), 25);
        for (Node* node : nodes) world().removeNode(node);
        if (round % 2 == 0) mirror.update();  // else new ones come before the old are forgotten
    }
    mirror.update();
    EXPECT_EQ(mirror.getMeshes().getNumNodes(), 0);
    EXPECT_EQ(count(*root), before);
}

TEST_F(MirrorTest, OnlyWhatChangedIsWritten) {
    const auto mesh = makeTriangle();
    std::vector<Node*> nodes;
    for (int i = 0; i < 10; ++i) nodes.push_back(world().addChild(new ObjectMeshStatic(mesh)));
    mirror.update();
    std::vector<osg::BoundingSphere> disturbed;
    mirror.getMeshes().takeDisturbed(disturbed);
    EXPECT_EQ(disturbed.size(), 10u);
    mirror.update();
    mirror.getMeshes().takeDisturbed(disturbed);
    EXPECT_TRUE(disturbed.empty());
    nodes[3]->setPosition({1.0, 2.0, 3.0});
    nodes[3]->setPosition({1.0, 2.0, 4.0});
    nodes[7]->setEnabled(false);
    mirror.update();
    mirror.getMeshes().takeDisturbed(disturbed);
    EXPECT_EQ(disturbed.size(), 3u) << "one where it was and where it is, one where it was";
}

}  // namespace
