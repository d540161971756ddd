// Prefab files: content, nesting, files that cannot be loaded, and the boxes and lists of what was.
#include "engine/physics/Body.h"
#include "engine/scene/ObjectPrefab.h"
#include "support/TestScene.h"

namespace {

class PrefabTest : public SceneTest {
protected:
    static std::unique_ptr<ObjectPrefab> load(const jString& path) { return std::make_unique<ObjectPrefab>(path); }
    /// With one log line that holds the text.
    void expectRefused(const jString& path, const jString& text) {
        clearLines();
        const auto prefab = load(path);
        EXPECT_FALSE(prefab->isLoaded()) << path;
        EXPECT_EQ(prefab->getNumChildren(), 0) << path;
        ASSERT_EQ(lines().size(), 1u) << path;
        EXPECT_NE(lines()[0].find(text), std::string::npos) << lines()[0];
    }
    static std::string namesOf(const ObjectPrefab& prefab) {
        std::string names;
        for (const Node* node : prefab.getNodes()) names += node->getName() + " ";
        return names;
    }
};

constexpr const char* BODY = R"("body": { "kind": "driven", "mass": 800, "center_of_mass": [0, 1, 0],
    "shapes": [ { "name": "hull", "type": "sphere", "size": [2, 2, 2] }, { "type": "box", "position": [0, 0, 3] } ] })";

}  // namespace

TEST_F(PrefabTest, ContentIsAChildOfThePrefab) {
    write("data/a/ship.prefab",
          std::string(R"({ "node": { "name": "ship", "tags": [ "hull" ], )") + BODY + R"(, "children": [
        { "name": "mast", "children": [ { "type": "light", "name": "lamp" } ] },
        { "name": "boat", "prefab": "sub/boat.prefab", "position": [0, 5, 0], "children": [ { "name": "flag" } ] },
        { "name": "same", "prefab": "data/a/sub/boat.prefab" } ] } })");
    write("data/a/sub/boat.prefab",
          R"({ "node": { "name": "unseen", "children": [ { "type": "particles", "name": "wake",
        "particles": { "texture": "foam.png" } } ] } })");
    auto ship = load("data/a/ship.prefab");
    ASSERT_EQ(ship->getStatus(), ObjectPrefab::LOADED);
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(namesOf(*ship), "ship mast lamp boat wake flag same wake ");
    EXPECT_EQ(ship->getObjects().size(), 4) << "both boats and their wakes";
    EXPECT_TRUE(ship->hasTag("hull"));
    EXPECT_EQ(ship->getBody()->getNumShapes(), 2);
    EXPECT_EQ(ship->getBodyRigid()->getMass(), 800.0f);
    EXPECT_EQ(ship->getChildByName("flag", true)->getPrefabNode()->getName(), "boat");

    // The lists follow the tree, and the prefab works the same in the world.
    ObjectPrefab* const prefab = add(std::move(ship));
    world().removeNode(prefab->getChildByName("boat"));
    EXPECT_EQ(namesOf(*prefab), "ship mast lamp same wake ");
    prefab->release();
    EXPECT_EQ(namesOf(*prefab), "ship ");
    EXPECT_FALSE(prefab->isLoaded());
    EXPECT_EQ(prefab->getBody(), nullptr);
    EXPECT_EQ(world().getNodeByName("wake"), nullptr);
}

TEST_F(PrefabTest, WhatCannotBeLoadedSaysSoAndHasNoContent) {
    write("data/empty.prefab", "{ }");
    write("data/number.prefab", R"({ "node": 4 })");
    write("data/cut.prefab", R"({ "node": { "name": "n", "children": [ { "name": "child" })");
    for (const char* path : {"data/missing.prefab", "data/empty.prefab", "data/number.prefab", "data/cut.prefab",
                             "../x.prefab", "", "data"}) {
        expectRefused(path, path);
    }
}

TEST_F(PrefabTest, AnIncludeThatEndsInItselfFailsAsAWhole) {
    write("data/a.prefab", R"({ "node": { "name": "a", "children": [ { "name": "x" }, { "prefab": "b.prefab" } ] } })");
    write("data/b.prefab", R"({ "node": { "children": [ { "name": "y" }, { "prefab": "sub/../c.prefab" } ] } })");
    write("data/c.prefab", R"({ "node": { "children": [ { "prefab": "data/a.prefab" }, { "name": "z" } ] } })");
    write("data/self.prefab", R"({ "node": { "prefab": "self.prefab" } })");
    for (const char* path : {"data/b.prefab", "data/self.prefab", "data/a.prefab"}) expectRefused(path, path);
    EXPECT_EQ(countLines("data/a.prefab -> data/b.prefab -> data/c.prefab -> data/a.prefab"), 1);

    // Where the cycle is one node of a world, the rest of the world is loaded.
    write("data/w.world",
          R"({ "nodes": [ { "prefab": "a.prefab" }, { "prefab": "gone.prefab" }, { "name": "rest" } ] })");
    ASSERT_TRUE(world().load("data/w.world"));
    EXPECT_EQ(countLines("data/gone.prefab"), 1);
    EXPECT_NE(world().getNodeByName("rest"), nullptr);
    EXPECT_EQ(world().getNodeByName("x"), nullptr);
}

TEST_F(PrefabTest, NestingAndNumbersAreBounded) {
    /// A chain of files, each of which includes the next one `copies` times.
    const auto writeChain = [&](const std::string& name, int files, int copies) {
        for (int i = 0; i < files; ++i) {
            std::string children;
            for (int c = 0; c < copies && i + 1 < files; ++c) {
                children += (c ? "," : "") + ("{ \"prefab\": \"" + name + std::to_string(i + 1)) + ".prefab\" }";
            }
            write("data/" + name + std::to_string(i) + ".prefab", R"({ "node": { "children": [ )" + children + "] } }");
        }
    };
    writeChain("fits", 32, 1);
    writeChain("deep", 33, 1);
    writeChain("wide", 24, 4);  // 4^23 nodes
    EXPECT_TRUE(load("data/fits0.prefab")->isLoaded());
    expectRefused("data/deep0.prefab", "data/deep");
    expectRefused("data/wide0.prefab", "data/wide");
}

TEST_F(PrefabTest, SegmentQueriesFindThePrefabWhereItsContentIs) {
    Random random(11);
    ObjectPrefab* const outer = add(std::make_unique<ObjectPrefab>());
    Node* const inner = outer->addChild(std::make_unique<Node>())->addChild(std::make_unique<ObjectPrefab>());
    Node* boxes[4];
    for (int i = 0; i < 4; ++i) {
        boxes[i] = (i % 2 ? inner : outer)->addChild(std::make_unique<BoxObject>(BoundBox({-1, -1, -1}, {1, 1, 1})));
    }
    jVector<Node*> found;
    for (int step = 0; step < 300; ++step) {
        Node* const moved[] = {outer, inner, outer->getChild(0), boxes[0], boxes[1]};
        moved[step % 5]->setTransform(randomTransform(random, 50.0));
        if (step % 3 == 0) continue;  // changes gather between two queries
        for (const Node* box : boxes) {
            const dvec3 at = box->getWorldPosition();
            ASSERT_TRUE(world().getIntersection(at - dvec3(0, 0, 1), at + dvec3(0, 0, 1), found)) << "step " << step;
            ASSERT_EQ(found.size(), 1) << "content is the prefab's affair";
            ASSERT_EQ(found[0], outer);
        }
    }
    // Outside the prefab the inner one is found itself.
    world().addChild(inner->getParent()->takeChild(inner))->setTransform(dmat4::translation({5000, 0, 0}));
    const dvec3 at = boxes[1]->getWorldPosition();
    ASSERT_TRUE(world().getIntersection(at, at + dvec3(0, 0, 1), found));
    EXPECT_EQ(found[0], inner);
}
