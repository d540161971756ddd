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
    TargetInfo info = record("001", north(0), "");
    info.pose[4] = 135.2639;
    EXPECT_TRUE(logic().apply_target(info));
    EXPECT_TRUE(logic().apply_target(record("002", north(0), "data/other.prefab")));
    const Target* const target = logic().get_target("001");
    EXPECT_EQ(created, (std::vector{target->getPrefab(), logic().get_target("002")->getPrefab()}));
    EXPECT_EQ(target->getPrefab()->getPath(), TARGET);
    EXPECT_EQ(logic().get_target("002")->getPrefab()->getPath(), "data/other.prefab");
    EXPECT_EQ(world().getNodeByTag("001"), target->getNode());
    EXPECT_NEAR(target->getNode()->getWgsHPR().x, 135.2639, 1e-9);
    EXPECT_LT(distanceTo("001", north(0)), 1e-6);
    EXPECT_TRUE(logic().remove_target("002"));
    EXPECT_FALSE(logic().remove_target("002"));
    EXPECT_EQ(world().getNodeByTag("002"), nullptr);
}

TEST_F(TargetTest, GlidesBeyondOneMetreFromWhereItsLastGlideLeads) {
    begin();
    logic().apply_target(record("a", north(0)));
    const struct {
        double to;
        double end;  // of the glide
    } cases[] = {{0.9, 0.0}, {-0.9, 0.0}, {40.0, 40.0}, {40.6, 40.0}, {41.2, 41.2}};
    double before = 0.0;
    for (const auto& c : cases) {
        EXPECT_TRUE(logic().apply_target(record("a", north(c.to))));
        EXPECT_EQ(logic().get_target("a")->isGliding(), c.end != before) << c.to;
        frames(61);
        EXPECT_FALSE(logic().get_target("a")->isGliding()) << c.to;
        EXPECT_LT(distanceTo("a", north(c.end)), 1e-6) << c.to;
        EXPECT_EQ(logic().get_target("a")->getInfo().pose[1], north(c.to).y) << "the record is taken";
        before = c.end;
    }
}

TEST_F(TargetTest, ANewGlideTakesOverFromTheRunningOne) {
    begin();
    for (const double to : {0.0, 100.0}) logic().apply_target(record("a", north(to)));
    frames(31);
    logic().apply_target(record("a", north(200)));
    frames(1);
    EXPECT_LT(distanceTo("a", north(100)), 1e-3) << "from the end of the last one";
    frames(30);
    EXPECT_LT(distanceTo("a", north(150)), 0.1);
    logic().reset();
    EXPECT_LT(distanceTo("a", north(200)), 1e-3) << "a reset ends the glide at its end";
    logic().apply_target(record("a", north(300)));
    frames(10);
    EXPECT_TRUE(logic().remove_target("a")) << "in the middle of a glide";
    frames(61);
}

TEST_F(TargetTest, GlidesTheShortWayRound) {
    begin();
    const struct {
        double from, to, middle;  // longitudes
    } cases[] = {{179.999, -179.999, 180.0}, {179.999, 180.001, 180.0}, {-359.999, 359.999, 0.0}};
    for (const auto& c : cases) {
        logic().apply_target(record("a", {c.from, 0.0, 0.0}));
        logic().apply_target(record("a", {c.to, 0.0, 0.0}));
        frames(31);
        EXPECT_LT(distanceTo("a", {c.middle, 0.0, 0.0}), 1.0) << c.from << " to " << c.to;
        logic().remove_target("a");
    }
}

TEST_F(TargetTest, AHandlerMayChangeTheTargetsBeforeTheNewOneIsAmongThem) {
    begin();
    int calls = 0;
    logic().m_signal_5_prefab_created.append([&](ObjectPrefab*, bool) {
        EXPECT_EQ(logic().get_target("a"), nullptr);
        if (++calls == 1) logic().release();
        if (calls == 1) logic().apply_target(record("a", north(0)));
    });
    EXPECT_TRUE(logic().apply_target(record("a", north(0))));
    EXPECT_EQ(logic().getNumTargets(), 1);
    EXPECT_EQ(world().getNodeByTag("a"), logic().get_target("a")->getNode());
    logic().release();
    EXPECT_EQ(world().getNodeByTag("a"), nullptr);
}

TEST_F(TargetTest, WhatCannotBeMadeLeavesOneLineAndNothingElse) {
    write("data/broken.prefab", "{ \"node\": ");
    begin();
    logic().apply_target(record("here", north(0)));
    const int nodes = world().getNumNodes();
    const std::size_t blocks = memGetInfos().size();
    const TargetInfo bad[] = {record("", north(10)), record("x", north(10), ""),
                              record("x", north(10), "data/broken.prefab"), record("x", {NAN, 0, 0}),
                              record("x", {112, 91, 0})};
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
    other.type = 9;
    for (int i = 0; i < 2; ++i) EXPECT_TRUE(logic().apply_target(other));
    EXPECT_EQ(countLines("keeps the model of type 1001, not that of 9"), 1);

    logic().get_target("here")->getPrefab()->release();
    EXPECT_TRUE(logic().apply_target(record("here", north(5)))) << "made anew";
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
    const auto find = [&] {
        const Node* const nearest = logic().get_min_distance_target();
        return nearest ? nearest->getName() : "none";
    };
    put("far", 100000.0);
    EXPECT_EQ(find(), "none") << "at the limit";
    put("far", 99999.0);
    EXPECT_EQ(find(), "far");
    EXPECT_EQ(logic().get_min_distance_target_dis(), 99999.0f);
    for (const char* name : {"c", "a", "b"}) put(name, 500.0);
    EXPECT_EQ(find(), "a") << "of equals the first by name";
    logic().remove_target("a");
    EXPECT_EQ(find(), "b");
}

}  // namespace
