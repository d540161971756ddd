// The world: names and tags, queries against brute force, loading, the state hash.
#include "engine/net/SocketUDP.h"
#include "engine/physics/Body.h"
#include "scene/WorldState.h"
#include "support/TestScene.h"

namespace {

class WorldTest : public SceneTest {
protected:
    int below(int n) { return static_cast<int>(m_random.getDouble(0.0, n)); }

    Random m_random{3};
};

const BoundBox UNIT_BOX({-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5});

}  // namespace

TEST_F(WorldTest, NamesAndTagsGiveTheFirstToJoin) {
    Node *const a = addNode("n"), *const b = addNode("n"), *const c = addNode("other");
    const auto expectFirst = [&](Node* node) {
        EXPECT_EQ(world().getNodeByName("n"), node);
        EXPECT_EQ(world().getNodeByTag("t"), node);
    };
    for (Node* const node : {b, a}) node->addTag("t");
    expectFirst(a);
    a->setName("m");
    EXPECT_EQ(world().getNodeByName("n"), b);
    a->setName("n");
    expectFirst(a);
    world().addChild(a);  // the last to join now
    c->setName("n");
    c->addTag("t");
    expectFirst(b);
    world().removeNode(b);
    expectFirst(c);
    world().removeNode(c);
    expectFirst(a);
    a->setName("");
    EXPECT_EQ(world().getNodeByName(""), nullptr) << "no name is no name";
}

TEST_F(WorldTest, QueriesAgreeWithBruteForceWhileObjectsMove) {
    const dvec3 pad(0.001, 0.001, 0.001), reach(5, 5, 5);
    std::vector<BoxObject*> objects;
    for (int step = 0; step < 6000; ++step) {
        const int action = objects.size() < 12 ? 0 : below(5);
        if (action == 0) {
            objects.push_back(add(std::make_unique<BoxObject>(UNIT_BOX)));
            objects.back()->setTransform(randomTransform(m_random, 20.0));
        } else {
            const int i = below(static_cast<int>(objects.size()));
            BoxObject* const object = objects[static_cast<std::size_t>(i)];
            if (action == 1) object->setTransform(randomTransform(m_random, 20.0));
            if (action == 2)
                object->setBox(below(5) == 0 ? BoundBox() : BoundBox({-1, -1, -1}, {2, below(4) + 1.0, 1}));
            if (action == 3) world().removeNode(object);
            if (action == 3) objects.erase(objects.begin() + i);
        }
        if (below(6) != 0) continue;  // changes gather between two queries
        const dvec3 from = randomTransform(m_random, 30.0).t, to = randomTransform(m_random, 30.0).t;
        const BoundBox wanted(from - reach, from + reach);
        jVector<Node*> expected, found;
        jVector<Object*> expected_in_box, found_in_box;
        for (BoxObject* const object : objects) {
            BoundBox box = object->getTransform() * object->getBoundBox();
            if (box.isEmpty()) continue;
            box = BoundBox(box.min - pad, box.max + pad);
            if (intersects(box, from, to)) expected.append(object);
            const dvec3 lo = box.min - wanted.max, hi = wanted.min - box.max;
            if (std::max({lo.x, lo.y, lo.z, hi.x, hi.y, hi.z}) <= 0.0) expected_in_box.append(object);
        }
        found.append(world().getRoot());  // a query clears the list
        ASSERT_EQ(world().getIntersection(from, to, found), !expected.empty());
        ASSERT_TRUE(std::ranges::equal(found, expected)) << "step " << step;
        world().getState().spatial.query(wanted, found_in_box);
        ASSERT_TRUE(std::ranges::equal(found_in_box, expected_in_box)) << "step " << step;
    }
    jVector<Node*> found;
    EXPECT_FALSE(world().getIntersection({0, 0, std::nan("")}, {0, 0, 1}, found));
}

TEST_F(WorldTest, AWorldFileIsReadWhole) {
    write("data/w/a.world", R"({
        // The sea comes first.
        "environment": { "date": [2025, 12, 24], "time_of_day": 18.5, "wind": [1, 2, 3],
                         "cloudiness": 1.5, "wetness": -1, "snow_cover": 0.5,
                         "camera": { "geodetic": [10, 20, 30], "wgs_hpr": [40, 0, 0] } },
        "nodes": [ { "type": "ocean" },
                   { "type": "balloon", "name": "left_out" },
                   17,
                   { "name": "start", "geodetic": [112, 17, 5], "wgs_hpr": [90, 0, 0],
                     "children": [ { "name": "child", "position": [0, 10, 0] } ] } ] })");
    ASSERT_TRUE(world().load("data/w/a.world"));
    const Environment& environment = world().getEnvironment();
    EXPECT_EQ(environment.year * 10000 + environment.month * 100 + environment.day, 20251224);
    EXPECT_EQ(environment.time_of_day, 18.5f);
    EXPECT_EQ(environment.wind.z, 3.0f);
    EXPECT_EQ(environment.cloudiness, 1.0f);
    EXPECT_EQ(environment.wetness, 0.0f);
    EXPECT_EQ(environment.snow, 0.5f);
    const dvec3 child = world().getNodeByName("child")->getWgsPosition();
    EXPECT_GT(child.x, 112.00009) << "10 m ahead of a node that looks east";
    EXPECT_NEAR(child.y, 17.0, 1e-7);
    EXPECT_EQ(world().getNodeByName("left_out"), nullptr);
    EXPECT_EQ(countLines("data/w/a.world:7: unknown node type \"balloon\""), 1);
    EXPECT_EQ(countLines("data/w/a.world:8: a node must be"), 1);
}

TEST_F(WorldTest, ABrokenWorldFileChangesNothing) {
    const int before = world().getNumNodes();
    write("data/cut.world", R"({ "environment": { "wind": [9, 9, 9] }, "nodes": [ { "name": "a" }, { "na)");
    for (const char* path : {"data/cut.world", "data/missing.world", "../outside.world", ""}) {
        clearLines();
        EXPECT_FALSE(world().load(path)) << path;
        EXPECT_EQ(lines().size(), 1u) << path;
    }
    EXPECT_EQ(world().getNumNodes(), before);
    EXPECT_NE(world().getEnvironment().wind.x, 9.0f);
}

TEST_F(WorldTest, WrongValuesCostALineAndLeaveTheDefault) {
    const struct {
        const char* text;
        int lines;
        bool made;
    } cases[] = {
        {R"({ "position": [1e200, 0, 0], "name": 4 })", 2, true},
        {R"({ "enabled": 1, "tags": [ 1, "good" ], "sensor": "yes" })", 3, true},
        {R"({ "type": "light", "light": { "kind": "laser", "intensity": 1e300, "color": [1, "a", 1] } })", 3, true},
        {R"({ "type": "particles", "particles": { "max_particles": 1e12, "texture": "../../../x.png" } })", 2, true},
        {R"({ "body": { "mass": 4 } })", 1, true},
        {R"({ "type": "prefab" })", 1, false},
        {R"({ "type": "terrain", "terrain": { } })", 1, false}};
    for (const auto& c : cases) {
        clearLines();
        const std::unique_ptr<Node> node = makeNode(c.text);
        EXPECT_EQ(node != nullptr, c.made) << c.text;
        EXPECT_EQ(static_cast<int>(lines().size()), c.lines) << c.text;
        EXPECT_EQ(countLines("test:1: "), c.lines) << c.text;
        EXPECT_TRUE(!node || node->getPosition() == dvec3()) << c.text;
    }
}

TEST_F(WorldTest, TheStateHashSeesEveryKindOfChange) {
    Node* const a = addNode("a", {1, 2, 3});
    Node* const b = addNode("b", {}, a);
    BodySettings settings;
    settings.shapes.append(Shape());
    Object* const craft = add(std::make_unique<Object>());
    ASSERT_TRUE(craft->setBody(settings));
    SocketUDP socket;
    std::vector<std::uint64_t> seen{engine().getStateHash()};
    const auto expectChanged = [&](const char* what, bool changed = true) {
        const std::uint64_t hash = engine().getStateHash();
        EXPECT_EQ(std::count(seen.begin(), seen.end(), hash), changed ? 0 : 1) << what;
        if (changed) seen.push_back(hash);
    };
    expectChanged("nothing", false);
    b->setPosition({0, 0, 1e-12});
    expectChanged("a tiny move");
    b->setEnabled(false);
    expectChanged("enabled");
    craft->getBodyRigid()->setLinearVelocity({0, 0, 1});
    expectChanged("a velocity");
    socket.write("x", 1, 1);
    expectChanged("a byte handed to a socket, open or not");
    Node* const c = addNode("d");
    expectChanged("a node more");
    world().removeNode(c);
    expectChanged("and gone again", false);
}

TEST_F(WorldTest, AnUnknownKeyIsToldOnceWithTheNearestKnownOne) {
    write("data/a.prefab", R"({ "nodes": 1,
        "node": { "tag": [ "x" ], "body": { "mas": 1, "shapes": [ { "names": "hull" } ] },
            "children": [ { "type": "light", "colider": false,
                "light": { "colour": [1, 1, 1] } },
                { "type": "particles", "particles": { "life_spred": 1, "max_particles": 5 } } ] } })");
    write("data/a.world", R"({ "enviroment": { },
        "environment": { "cloudyness": 1, "camera": { "geodetik": [0, 0, 0] } },
        "nodes": [ { "prefab": "a.prefab", "postion": [1, 2, 3] }, { "prefab": "a.prefab" } ] })");
    ASSERT_TRUE(world().load("data/a.world"));
    const std::pair<const char*, const char*> unknown[] = {
        {"data/a.prefab:1: unknown key \"nodes\"", "\"node\""},
        {"data/a.prefab:2: unknown key \"tag\"", "\"tags\""},
        {"data/a.prefab:2: unknown key \"mas\"", "\"mass\""},
        {"data/a.prefab:2: unknown key \"names\"", "\"name\""},
        {"data/a.prefab:3: unknown key \"colider\"", "\"collider\""},
        {"data/a.prefab:4: unknown key \"colour\"", "\"color\""},
        {"data/a.prefab:5: unknown key \"life_spred\"", "\"life_spread\""},
        {"data/a.world:1: unknown key \"enviroment\"", "\"environment\""},
        {"data/a.world:2: unknown key \"cloudyness\"", "\"cloudiness\""},
        {"data/a.world:2: unknown key \"geodetik\"", "\"geodetic\""},
        {"data/a.world:3: unknown key \"postion\"", "\"position\""}};
    for (const auto& [key, nearest] : unknown) {
        EXPECT_EQ(countLines(key + std::string(" is ignored; the nearest known one is ") + nearest), 1) << key;
    }
    EXPECT_EQ(lines().size(), std::size(unknown));
}
