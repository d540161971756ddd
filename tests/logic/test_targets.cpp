// The host's targets: made, moved, refused, and the nearest of them.
#include "WeaponWorld.h"
#include "src/logic/Target.h"

namespace {

class TargetTest : public WeaponTest {
protected:
    /// So many metres north of PLACE; up to some kilometres.
    static dvec3 north(double metres) {
        const EllipsoidModel globe;
        return globe.toWGS(globe.getWGSTransform(globe.toWorld(PLACE)) * dvec3(0.0, metres, 0.0));
    }
    void frames(int n, double dt = 1.0 / 60.0) {
        for (int i = 0; i < n; ++i) frame(dt);
    }
    double distanceTo(const jString& name, const dvec3& geo) {
        return length(logic().get_target(name)->getNode()->getWorldPosition() - EllipsoidModel().toWorld(geo));
    }
};

TEST_F(TargetTest, ARecordMakesATargetWithAModelByPathOrType) {
    writeConfig(R"(, "target_type": { "_1001": "data/target.prefab", "_7": "data/other.prefab" })");
    write("data/other.prefab", R"({ "node": { } })");
    begin();
    std::vector<ObjectPrefab*> created;
    logic().m_signal_5_prefab_created.append([&](ObjectPrefab* prefab, bool is_new) {
        EXPECT_TRUE(is_new);
        created.push_back(prefab);
    });
    TargetInfo info = record("001", {112.34947825220193, 16.83858673486975, 4.9471}, "");
    info.pose[4] = 135.2639;
    EXPECT_TRUE(logic().apply_target(info));
    for (const char* line :
         {"apply_target create:001", "wgs pos:112.349478,16.838587,4.947100", "path:data/target.prefab", "type:1001"}) {
        EXPECT_EQ(countLines(line), 1) << line;
    }
    info.name = "002";
    info.path = "data/other.prefab";
    EXPECT_TRUE(logic().apply_target(info));
    const Target* const target = logic().get_target("001");
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(created, (std::vector{target->getPrefab(), logic().get_target("002")->getPrefab()}));
    EXPECT_EQ(target->getPrefab()->getPath(), TARGET);
    EXPECT_EQ(logic().get_target("002")->getPrefab()->getPath(), "data/other.prefab");
    EXPECT_EQ(world().getNodeByTag("001"), target->getNode());
    EXPECT_NEAR(target->getNode()->getWgsHPR().x, 135.2639, 1e-9);
    EXPECT_LT(distanceTo("001", {112.34947825220193, 16.83858673486975, 4.9471}), 1e-6);
    EXPECT_TRUE(logic().remove_target("002"));
    EXPECT_FALSE(logic().remove_target("002"));
    EXPECT_EQ(world().getNodeByTag("002"), nullptr);
}

TEST_F(TargetTest, GlidesBeyondOneMetreFromWhereItsLastGlideLeads) {
    begin();
    logic().apply_target(record("a", north(0)));
    const struct {
        double to;
        bool glides;
        double stands;  // afterwards
    } cases[] = {{0.5, false, 0.0},  {0.9, false, 0.0},   {-0.9, false, 0.0},
                 {40.0, true, 40.0}, {40.6, false, 40.0}, {41.2, true, 41.2}};
    for (const auto& c : cases) {
        EXPECT_TRUE(logic().apply_target(record("a", north(c.to))));
        EXPECT_EQ(logic().get_target("a")->isGliding(), c.glides) << c.to;
        frames(61);
        EXPECT_FALSE(logic().get_target("a")->isGliding()) << c.to;
        EXPECT_LT(distanceTo("a", north(c.stands)), 1e-6) << c.to;
        EXPECT_EQ(logic().get_target("a")->getInfo().pose[1], north(c.to).y) << "the record is taken";
    }
}

TEST_F(TargetTest, ANewGlideTakesOverFromTheRunningOne) {
    begin();
    logic().apply_target(record("a", north(0)));
    logic().apply_target(record("a", north(100)));
    frames(31);
    EXPECT_LT(distanceTo("a", north(50)), 0.1);
    logic().apply_target(record("a", north(200)));
    frames(1);
    EXPECT_LT(distanceTo("a", north(100)), 1e-3) << "it begins where the last one leads";
    frames(30);
    EXPECT_LT(distanceTo("a", north(150)), 0.1);
    logic().reset();
    EXPECT_LT(distanceTo("a", north(200)), 1e-3) << "a reset ends the glide where it leads";
    logic().apply_target(record("a", north(300)));
    frames(10);
    EXPECT_TRUE(logic().remove_target("a")) << "in the middle of a glide";
    frames(61);
}

TEST_F(TargetTest, GlidesTheShortWayRound) {
    begin();
    const struct {
        double from, to, middle;  // longitudes
    } cases[] = {{179.999, -179.999, 180.0},
                 {-179.999, 179.999, 180.0},
                 {179.999, 180.001, 180.0},
                 {-359.999, 359.999, 0.0},
                 {359.999, 0.001, 0.0}};
    for (const auto& c : cases) {
        logic().apply_target(record("a", {c.from, 0.0, 0.0}));
        logic().apply_target(record("a", {c.to, 0.0, 0.0}));
        frames(31);
        EXPECT_LT(distanceTo("a", {c.middle, 0.0, 0.0}), 1.0) << c.from << " to " << c.to;
        frames(31);
        EXPECT_LT(distanceTo("a", {c.to, 0.0, 0.0}), 1e-6) << c.from << " to " << c.to;
        logic().remove_target("a");
    }
}

TEST_F(TargetTest, AHandlerMayChangeTheTargetsBeforeTheNewOneIsAmongThem) {
    begin();
    const auto apply = [&](const jString& name) { return logic().apply_target(record(name, north(0))); };
    const struct {
        const char* what;
        Function<void()> act;
        std::vector<jString> left;
    } cases[] = {{"removes all", [&] { logic().remove_target("old"), logic().remove_target("new"); }, {"new"}},
                 {"release", [&] { logic().release(); }, {"new"}},
                 {"another", [&] { apply("more"); }, {"more", "new", "old"}},
                 {"its namesake", [&] { apply("new"); }, {"new", "old"}}};
    Function<void()> act;
    logic().m_signal_5_prefab_created.append([&](ObjectPrefab* prefab, bool) {
        const Function<void()> once = std::exchange(act, nullptr);
        if (!once) return;
        EXPECT_EQ(prefab->getWorld(), &world());
        EXPECT_EQ(logic().get_target("new"), nullptr);
        once();
    });
    for (const auto& c : cases) {
        apply("old");
        act = c.act;
        EXPECT_TRUE(apply("new")) << c.what;
        EXPECT_EQ(logic().getNumTargets(), static_cast<int>(c.left.size())) << c.what;
        for (const jString& name : c.left) {
            EXPECT_EQ(world().getNodeByTag(name), logic().get_target(name)->getNode()) << c.what;
            logic().remove_target(name);
        }
        EXPECT_EQ(world().getNodeByTag("new"), nullptr) << c.what;
    }
}

TEST_F(TargetTest, WhatCannotBeMadeLeavesOneLineAndNothingElse) {
    write("data/broken.prefab", "{ \"node\": ");
    begin();
    logic().apply_target(record("here", north(0)));
    const int nodes = world().getNumNodes();
    const std::size_t blocks = memGetInfos().size();
    const dvec3 good = north(10);
    const TargetInfo bad[] = {record("", good),
                              record("x", good, ""),
                              record("x", good, "data/none.prefab"),
                              record("x", good, "data/broken.prefab"),
                              record("x", {NAN, 0, 0}),
                              record("x", {112, INFINITY, 0}),
                              record("x", {112, 91, 0}),
                              record("x", {400, 0, 0}),
                              record("x", {112, 16, 1e9})};
    for (const TargetInfo& info : bad) {
        clearLines();
        EXPECT_FALSE(logic().apply_target(info));
        EXPECT_EQ(lines().size(), 1u) << (lines().empty() ? "" : lines().back());
    }
    EXPECT_EQ(logic().getNumTargets(), 1);
    EXPECT_EQ(world().getNumNodes(), nodes);
    EXPECT_EQ(memGetInfos().size(), blocks);

    clearLines();
    EXPECT_TRUE(logic().apply_target(record("here", {NAN, 0, 0})));
    EXPECT_EQ(countLines("\"here\": no place on the globe"), 1);
    EXPECT_EQ(logic().get_target("here")->getInfo().pose[1], north(0).y) << "the old record stays";
    TargetInfo other = record("here", north(0), "");
    for (const int type : {9, 1001, 9, 1001, 10}) {  // two senders that do not agree
        other.type = static_cast<std::uint16_t>(type);
        EXPECT_TRUE(logic().apply_target(other));
    }
    EXPECT_EQ(countLines("keeps the model of type"), 1);
    EXPECT_EQ(countLines("keeps the model of type 1001, not that of 9"), 1);
    EXPECT_EQ(logic().get_target("here")->getPrefab()->getPath(), TARGET);

    logic().get_target("here")->getPrefab()->release();
    EXPECT_EQ(printedBy([&] { logic().get_target("here")->update(record("here", north(99))); }),
              "here prefab is error \n");
    EXPECT_TRUE(logic().apply_target(record("here", north(5)))) << "made anew";
    EXPECT_EQ(world().getNumNodes(), nodes);
    EXPECT_EQ(memGetInfos().size(), blocks);
}

TEST_F(TargetTest, ManyOfThemComeAndGo) {
    constexpr int COUNT = 100000;
    const char* const plain = "data/plain.prefab";
    write(plain, R"({ "node": { } })");
    begin();
    logic().release();  // so that the link's blocks are gone before the count
    const int nodes = world().getNumNodes();
    const std::size_t blocks = memGetInfos().size();
    for (int i = 0; i < COUNT; ++i)
        logic().apply_target(record(ToString(i), {112.0 + 1e-3 * (i % 300), 17.0 + 1e-3 * (i / 300), 0.0}, plain));
    EXPECT_EQ(logic().getNumTargets(), COUNT);
    EXPECT_LT(logic().get_min_distance_target_dis(), 100000.0f);
    for (int i = 0; i < COUNT; i += 10) EXPECT_TRUE(logic().remove_target(ToString(i)));
    EXPECT_EQ(world().getNumNodes(), nodes + COUNT - COUNT / 10);
    logic().release();
    EXPECT_EQ(world().getNumNodes(), nodes);
    EXPECT_EQ(memGetInfos().size(), blocks);
}

TEST_F(TargetTest, TheNearestByNameWithinAHundredKilometres) {
    begin();
    const dvec3 jet_place = jet().getWorldTransform().t;
    const auto put = [&](const jString& name, double metres) {
        if (!logic().get_target(name)) logic().apply_target(record(name, north(0)));
        logic().get_target(name)->getNode()->setWorldPosition(jet_place + dvec3(0, 0, metres));
    };
    Node* nearest = nullptr;
    const auto find = [&] { return printedBy([&] { nearest = logic().get_min_distance_target(); }); };
    EXPECT_EQ(find(), "no target!\n");
    EXPECT_EQ(logic().get_min_distance_target_dis(), 100000.0f);
    put("far", 100000.0);
    EXPECT_EQ(find(), "no target!\n") << "at the limit";
    EXPECT_EQ(nearest, nullptr);
    put("far", 99999.0);
    EXPECT_EQ(find(), "");
    EXPECT_EQ(nearest, logic().get_target("far")->getNode());
    EXPECT_EQ(logic().get_min_distance_target_dis(), 99999.0f);
    for (const char* name : {"c", "a", "b"}) put(name, 500.0);
    find();
    EXPECT_EQ(nearest, logic().get_target("a")->getNode()) << "of equals the first by name";
    put("b", 499.0);
    find();
    EXPECT_EQ(nearest, logic().get_target("b")->getNode());
    logic().remove_target("b");
    find();
    EXPECT_EQ(nearest, logic().get_target("a")->getNode());
    logic().release();
    EXPECT_EQ(logic().getNumTargets(), 0);
    EXPECT_EQ(find(), "no target!\n");
    EXPECT_EQ(world().getNodeByTag("a"), nullptr);
}

}  // namespace
