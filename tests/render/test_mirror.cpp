// What the picture keeps of the world's nodes; without a graphics context.
#include <gtest/gtest.h>

#include "base/ShaderLibrary.h"
#include "effects/EffectsLayer.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectTerrain.h"
#include "engine/scene/SceneNodes.h"
#include "frame/WorldMirror.h"
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

/// 5 x 5 posts, 30 m high.
std::string flatGround() {
    std::string text = "ncols 5\nnrows 5\nxllcenter 112\nyllcenter 16\ncellsize 0.001\n";
    for (int i = 0; i < 25; ++i) text += "30 ";
    return text;
}

class MirrorTest : public SceneTest {
protected:
    MirrorTest()
        : terrain(*root, shaders),
          sea(*root, shaders),
          effects(*root, shaders),
          mirror(world(), *root, shaders, terrain, sea, effects) {}

    /// Nodes below `node`, itself included, and textures on them.
    static int count(const osg::Node& node) {
        int sum = 1;
        if (const osg::StateSet* const state = node.getStateSet()) {
            for (const auto& unit : state->getTextureAttributeList()) sum += static_cast<int>(unit.size());
        }
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
    write("data/ground.asc", flatGround());
    write("data/ground.prj", R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
                             R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])");
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
        nodes.push_back(world().addChild(new ObjectTerrain("data/ground.asc", "data/ground.asc")));
        nodes.push_back(world().addChild(new DecalOrtho(300.0f, 300.0f, 50.0f, "data/none.png")));
        nodes.back()->setWgsPosition({112.002, 16.002, 20.0});
        mirror.update();
        EXPECT_EQ(mirror.getMeshes().getNumNodes(), 25);
        EXPECT_EQ(mirror.getMeshes().getNumModels(), 1);
        EXPECT_EQ(mirror.getMeshes().getNumMaterials(), 1 + 9);
        run(3);
        for (std::size_t i = 2; i < 100; i += 4) nodes[i]->setWorldPosition({500.0 * static_cast<double>(i), 0.0, 0.0});
        mirror.update();
        effects.update(FrameView(), world());
        EXPECT_GT(count(*root), before + 100);
        for (Node* node : nodes) world().removeNode(node);
        if (round % 2 == 0) mirror.update();  // else new ones come before the old are forgotten
    }
    mirror.update();
    EXPECT_EQ(mirror.getMeshes().getNumNodes(), 0);
    EXPECT_EQ(mirror.getMeshes().getNumModels(), 0);
    EXPECT_EQ(mirror.getMeshes().getNumMaterials(), 0);
    EXPECT_EQ(count(*root), before);
}

TEST_F(MirrorTest, EmissionFollowsItsParameter) {
    const auto mesh = makeTriangle();
    mesh->surfaces[0].material->emission = {1.0f, 2.0f, 3.0f};
    auto* const object = world().addChild(new ObjectMeshStatic(mesh));
    for (const float glow : {0.5f, 3.0f}) {
        object->setParameter("emission", glow);
        mirror.update();
        osg::Vec3f shown;
        const osg::Group* const drawn = mirror.getMeshes().getGroup()->getChild(0)->asGroup();
        drawn->getChild(0)->getStateSet()->getUniform("u_emission")->get(shown);
        EXPECT_EQ(shown, osg::Vec3f(1.0f, 2.0f, 3.0f) * glow);
    }
}

TEST_F(MirrorTest, ShadowsAreDrawnAnewWhereSomethingMoved) {
    const auto mesh = makeTriangle();
    std::vector<Node*> nodes;
    for (int i = 0; i < 10; ++i) nodes.push_back(world().addChild(new ObjectMeshStatic(mesh)));
    std::vector<Reach> disturbed;
    const auto countDisturbed = [&] {
        mirror.update();
        mirror.getMeshes().getCasters().takeDisturbed(dmat4(), disturbed);
        return disturbed.size();
    };
    EXPECT_EQ(countDisturbed(), 10u);
    EXPECT_EQ(countDisturbed(), 0u);
    nodes[3]->setPosition({1.0, 2.0, 4.0});
    nodes[7]->setEnabled(false);
    EXPECT_EQ(countDisturbed(), 3u) << "one where it was and where it is, one where it was";
    for (int i = 1; i <= 20; ++i) {
        nodes[4]->setPosition({0.0011 * i, 0.0, 0.0});
        EXPECT_EQ(countDisturbed(), i % 10 == 0 ? 2u : 0u) << "small moves add up, step " << i;
    }
}

}  // namespace
