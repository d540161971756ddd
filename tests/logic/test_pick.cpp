// Picking along a segment.
#include "LogicWorld.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectPrefab.h"

namespace {

class PickTest : public LogicTest {
protected:
    void SetUp() override { start(); }

    dvec3 at(double height) { return engine().getEllipsoid().toWorld({PLACE.x, PLACE.y, height}); }

    /// What a probe from one height to another meets; "" for nothing.
    std::string pick(double from, double to) {
        hit = dvec3(1, 2, 3);
        const Object* const object = logic().select_object(at(from), at(to), &hit);
        if (object) return object->getName();
        EXPECT_EQ(hit, dvec3(1, 2, 3));
        return {};
    }

    dvec3 hit;
};

TEST_F(PickTest, TheNearestHitWinsWhateverItHangsIn) {
    addPlate("low", {PLACE.x, PLACE.y, 10.0});
    addPlate("high", {PLACE.x, PLACE.y, 30.0}, 5000.0);
    write("data/a.prefab", R"({ "node": { "children": [ { "name": "frame" } ] } })");
    auto* const prefab = add(std::make_unique<ObjectPrefab>("data/a.prefab"));
    Object* const middle = addPlate("middle", {PLACE.x, PLACE.y, 20.0});
    prefab->getNodeByName("frame")->addChild(world().getRoot()->takeChild(middle));
    middle->setWgsPosition({PLACE.x, PLACE.y, 20.0});

    EXPECT_EQ(pick(100, 0), "high");
    EXPECT_NEAR(engine().getEllipsoid().toWGS(hit).z, 30.0, 1e-3);
    EXPECT_EQ(pick(25, 0), "middle");
    EXPECT_EQ(pick(0, 100), "low");
    EXPECT_EQ(pick(100, 40), "");
    EXPECT_EQ(logic().select_object(at(100), at(0)), world().getNodeByName("high"));
}

TEST_F(PickTest, NodesThatAreOffAreNotMet) {
    addPlate("under", {PLACE.x, PLACE.y, 10.0});
    write("data/a.prefab", R"({ "node": { "children": [ { "name": "frame" } ] } })");
    auto* const prefab = add(std::make_unique<ObjectPrefab>("data/a.prefab"));
    Node* const parent = prefab->getNodeByName("frame");
    Object* const top = addPlate("top", {PLACE.x, PLACE.y, 20.0});
    parent->addChild(world().getRoot()->takeChild(top));
    top->setWgsPosition({PLACE.x, PLACE.y, 20.0});

    EXPECT_EQ(pick(100, 0), "top");
    for (Node* node : {static_cast<Node*>(top), parent, static_cast<Node*>(prefab)}) {
        node->setEnabled(false);
        EXPECT_EQ(pick(100, 0), "under") << node->getName();
        node->setEnabled(true);
        EXPECT_EQ(pick(100, 0), "top") << node->getName();
    }
    for (Node* node : {static_cast<Node*>(top), static_cast<Node*>(prefab)}) {
        node->setCollider(false);
        EXPECT_EQ(pick(100, 0), "under") << node->getName();
        node->setCollider(true);
    }
    parent->setCollider(false);
    EXPECT_EQ(pick(100, 0), "top") << "the flag is each node's own";
    top->setEnabled(false);
    EXPECT_EQ(pick(100, 15), "");
}

TEST_F(PickTest, OfEqualDistancesTheFirstFoundStays) {
    for (const char* name : {"a", "b", "c"}) addPlate(name, {PLACE.x, PLACE.y, 10.0});
    jVector<Node*> found;
    ASSERT_TRUE(world().getIntersection(at(100), at(0), found));
    ASSERT_EQ(found.size(), 3);
    EXPECT_EQ(pick(100, 0), found[0]->getName());
}

TEST_F(PickTest, WithoutAWorldItSaysSo) {
    auto* const lonely = static_cast<Logic_Test_Fly*>(CreateLogic(nullptr, nullptr));
    EXPECT_EQ(lonely->select_object(at(100), at(0)), nullptr);
    EXPECT_EQ(countLines("Logic_Test_Fly::select_object:world"), 1);
    lonely->swap();
    jDelete(static_cast<LogicBase*>(lonely));
}

}  // namespace
