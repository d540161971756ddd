// Picking along a segment.
#include "LogicWorld.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectPrefab.h"

namespace {

class PickTest : public LogicTest {
protected:
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

TEST_F(PickTest, TheNearestHitThatIsOnWinsWhateverItHangsIn) {
    start();
    addPlate("low", {PLACE.x, PLACE.y, 10.0});
    addPlate("high", {PLACE.x, PLACE.y, 30.0}, 5000.0);
    write("data/a.prefab", R"({ "node": { "children": [ { "name": "frame" } ] } })");
    auto* const prefab = add(std::make_unique<ObjectPrefab>("data/a.prefab"));
    Node* const parent = prefab->getNodeByName("frame");
    Object* const middle = addPlate("middle", {PLACE.x, PLACE.y, 20.0});
    parent->addChild(world().getRoot()->takeChild(middle));
    middle->setWgsPosition({PLACE.x, PLACE.y, 20.0});

    EXPECT_EQ(pick(100, 0), "high");
    EXPECT_NEAR(engine().getEllipsoid().toWGS(hit).z, 30.0, 1e-3);
    EXPECT_EQ(pick(0, 100), "low");
    EXPECT_EQ(pick(100, 40), "");
    EXPECT_EQ(logic().select_object(at(100), at(0)), world().getNodeByName("high"));

    for (const char* twin : {"twin 1", "twin 2", "twin 3"}) addPlate(twin, {PLACE.x, PLACE.y, 50.0});
    jVector<Node*> found;
    world().getIntersection(at(60), at(45), found);
    const auto first = std::find_if(found.begin(), found.end(),
                                    [](const Node* node) { return node->getName().find("twin") != jString::npos; });
    ASSERT_NE(first, found.end());
    EXPECT_EQ(pick(60, 45), (*first)->getName()) << "of equally near ones the first that the world finds";

    EXPECT_EQ(pick(25, 0), "middle");
    for (Node* node : {static_cast<Node*>(middle), parent, static_cast<Node*>(prefab)}) {
        node->setEnabled(false);
        EXPECT_EQ(pick(25, 0), "low") << node->getName();
        node->setEnabled(true);
        node->setCollider(false);
        EXPECT_EQ(pick(25, 0), node == parent ? "middle" : "low") << node->getName() << ": the flag is each one's own";
        node->setCollider(true);
        EXPECT_EQ(pick(25, 0), "middle") << node->getName();
    }
}

}  // namespace
