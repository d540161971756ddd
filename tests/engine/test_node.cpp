// Nodes: the tree, places and activity against independent models.
#include <cmath>

#include "support/TestScene.h"

namespace {

class NodeTest : public SceneTest {};

dmat4 productOfLocals(const Node* node) {
    dmat4 m;
    for (; node; node = node->getParent()) m = node->getTransform() * m;
    return m;
}

bool enabledToTheTop(const Node* node) {
    for (; node; node = node->getParent()) {
        if (!node->isEnabled()) return false;
    }
    return true;
}

/// Of two (heading, pitch, roll); headings that differ by whole turns are the same.
double attitudeError(const dvec3& a, const dvec3& b) {
    return length(dvec3(std::remainder(a.x - b.x, 360.0), a.y - b.y, a.z - b.z));
}

bool isBelow(const Node* node, const Node* above) {
    while (node && node != above) node = node->getParent();
    return node != nullptr;
}

}  // namespace

TEST_F(NodeTest, PlacesAndActivityOfARandomTreeFollowItsAncestors) {
    Random random(7);
    const auto below = [&](int n) { return static_cast<int>(random.getDouble(0.0, n)); };
    std::vector<Node*> nodes;
    for (int i = 0; i < 60; ++i) {
        Node* const parent = i == 0 ? nullptr : nodes[static_cast<std::size_t>(below(i))];
        nodes.push_back(addNode("n", dvec3(i, 0, 0), parent));
    }
    std::unique_ptr<Node> away;  // one subtree is outside the world now and then
    for (int step = 0; step < 4000; ++step) {
        Node* const node = nodes[static_cast<std::size_t>(below(60))];
        Node* const other = nodes[static_cast<std::size_t>(below(60))];
        const int action = below(6);  // at 5 a place is read in between, which must not matter
        if (action == 0) node->setTransform(randomTransform(random, 100.0));
        if (action == 1) node->setWorldTransform(randomTransform(random, 100.0));
        if (action == 2) node->setEnabled(random.getDouble(0.0, 1.0) < 0.8);
        if (action == 3 && !away && node->getParent()) away = node->getParent()->takeChild(node);
        if (action == 4 && away) (isBelow(other, away.get()) ? world().getRoot() : other)->addChild(std::move(away));
        if (action == 5) other->getWorldTransform();
        if (step % 7 != 0) continue;
        for (const Node* n : nodes) {
            ASSERT_LT(difference(n->getWorldTransform(), productOfLocals(n)), 1e-6) << "step " << step;
            ASSERT_EQ(n->isActive(), enabledToTheTop(n)) << "step " << step;
            ASSERT_EQ(n->getWorld() == nullptr, away && isBelow(n, away.get())) << "step " << step;
        }
    }
}

TEST_F(NodeTest, GeodeticPlacesAndAttitudesComeBack) {
    Node* const parent = addNode("parent", {1000, 2000, 3000});
    parent->setHPR({10, 20, 30});
    Node* const node = addNode("node", {}, parent);
    for (const dvec3& geo : {dvec3(112.35, 16.84, 25.0), dvec3(-179.9, -89.0, 9000.0), dvec3(0.0, 45.0, -20.0)}) {
        for (const dvec3& hpr : {dvec3(0, 0, 0), dvec3(350, -12, 40), dvec3(181, 88, -170)}) {
            node->setWgsPosition(geo);
            node->setWgsHPR(hpr);
            EXPECT_LT(length(node->getWgsPosition() - geo), 1e-6);
            EXPECT_LT(attitudeError(node->getWgsHPR(), hpr), 1e-6);
            node->setWgsPosition({-60.0, 30.0, 5.0});
            EXPECT_LT(attitudeError(node->getWgsHPR(), hpr), 1e-6) << "a geodetic move keeps the attitude";
        }
    }
}

TEST_F(NodeTest, ATransformThatIsNoPlaceIsRefused) {
    Node* const node = addNode("buoy", {1, 2, 3});
    const dmat4 before = node->getTransform();
    const std::function<void()> setters[] = {
        [&] { node->setPosition({NAN, 0, 0}); },    [&] { node->setWorldPosition({0, INFINITY, 0}); },
        [&] { node->setHPR({0, NAN, 0}); },         [&] { node->setScale({1, INFINITY, 1}); },
        [&] { node->setRotation({NAN, 0, 0, 1}); }, [&] { node->setWgsPosition({0, NAN, 0}); },
        [&] { node->setWgsHPR({INFINITY, 0, 0}); }, [&] { node->setTransform(dmat4::translation({0, 0, NAN})); }};
    for (const auto& set : setters) {
        clearLines();
        set();
        EXPECT_EQ(node->getTransform(), before);
        EXPECT_EQ(countLines("buoy"), 1);
    }
}
