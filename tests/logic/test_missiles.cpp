// Missiles from the jet to what they hit, explosions, and what is left of all that.
#include "WeaponWorld.h"
#include "engine/physics/Body.h"
#include "engine/physics/Physics.h"

namespace {

class MissileTest : public WeaponTest {
protected:
    void fireOne() { logic().emit_missile(); }
    /// A box with a body of that kind, turned as the jet is.
    ObjectPrefab* addObstacle(const std::string& kind, const std::string& size, const dvec3& place) {
        const jString path = "data/obstacle_" + ToString(++m_obstacles) + ".prefab";  // files are read once
        write(path, R"({ "node": { "body": { "kind": ")" + kind + R"(", "shapes": [ { "size": )" + size + " } ] } } }");
        auto* const thing = new ObjectPrefab(path);
        world().addChild(thing);
        dmat4 pose = jet().getWorldTransform();
        pose.t = place;
        thing->setWorldTransform(pose);
        return thing;
    }
    /// An upright plate across the way ahead, of triangles alone.
    Object* addWall(double metres) {
        Object* const plate = addPlate("wall", PLACE, 40.0);
        dmat4 pose = jet().getWorldTransform() * dmat4(dquat(dvec3(0, 90, 0)), {});
        pose.t = ahead(metres);
        plate->setWorldTransform(pose);
        return plate;
    }

private:
    int m_obstacles = 0;
};

TEST_F(MissileTest, StartsAheadOfTheJetAndPassesItsOwnOutline) {
    begin();
    std::vector<ObjectPrefab*> created;
    logic().m_signal_5_prefab_created.append([&](ObjectPrefab* prefab, bool) { created.push_back(prefab); });
    fireOne();
    ASSERT_EQ(logic().getNumMissiles(), 1);
    ObjectPrefab* const missile = logic().getMissile(0);
    EXPECT_EQ(created, std::vector{missile});
    EXPECT_LT(length(missile->getWorldPosition() - ahead(0)), 1e-6);
    EXPECT_LT(length(missile->getWorldTransform().y - jet().getWorldTransform().y), 1e-12);
    for (int i = 0; i < 30; ++i) frame();
    EXPECT_LT(length(missile->getWorldPosition() - ahead(150)), 1e-3);
    EXPECT_TRUE(bursts.empty());
}

TEST_F(MissileTest, BurstsOnceWhereItFirstMeetsWhateverItMeets) {
    begin();
    world().getPhysics()->setGravity({});
    struct Case {
        const char* what;
        Function<Object*()> make;
        dvec3 velocity;  // in the jet's frame, m/s
        double centre;   // of the missile when it touches, metres ahead
    };
    const char* const thin = "[40, 0.1, 40]";
    const Case cases[] = {
        {"static", [&] { return addObstacle("static", thin, ahead(100)); }, {}, 98.45},
        // These are where the missile is at the time.
        {"from the side",
         [&] { return addObstacle("driven", "[14, 6, 6]", ahead(100, 100.0 / 3.0)); },
         {-100, 0, 0},
         95.5},
        {"oncoming mesh, which would pass within a frame", [&] { return addWall(283); }, {0, -250, 0}, 153.5}};
    for (const Case& c : cases) {
        for (const double dt : {1.0 / 60.0, 0.1}) {
            Object* const thing = c.make();
            fireOne();
            const dvec3 velocity = rotate(jet().getWorldTransform(), c.velocity), start = thing->getWorldPosition();
            double time = 0.0;
            for (; time < 1.0; time += dt) {
                if (length(velocity) > 0.0) thing->setWorldPosition(start + velocity * (time + dt));
                frame(dt);
            }
            ASSERT_EQ(bursts.size(), 1u) << c.what << " " << dt;
            const dmat4& at = bursts[0].transform;
            EXPECT_NEAR(dot(at.t - ahead(0), jet().getWorldTransform().y), c.centre, 0.3) << c.what << " " << dt;
            EXPECT_LT(difference(at, EllipsoidModel().getWGSTransform(at.t)), 1e-9);
            EXPECT_EQ(bursts[0].path, EXPLOSION);
            Node* const effect = world().getNodeByName("effect");
            ASSERT_NE(effect, nullptr);
            EXPECT_LT(length(effect->getWorldPosition() - at.t), 1e-6);
            ObjectPrefab* const missile = logic().getMissile(logic().getNumMissiles() - 1);
            EXPECT_FALSE(missile->getBody()->isEnabled());
            EXPECT_GT(dot(missile->getWorldPosition() - ahead(0), jet().getWorldTransform().y), 250.0) << "flies on";
            logic().reset();
            logic().update_missle();
            world().removeNode(thing);
            bursts.clear();
        }
    }
}

TEST_F(MissileTest, BurstsOnTheGround) {
    addTerrain(0.0);
    begin();
    jet().setWorldTransform(jet().getWorldTransform() * dmat4(dquat(dvec3(1, 0, 0), -50.0), {}));
    fireOne();
    for (int i = 0; i < 5; ++i) frame(0.1);
    ASSERT_EQ(bursts.size(), 1u);
    EXPECT_NEAR(EllipsoidModel().toWGS(bursts[0].transform.t).z, 1.1, 0.5) << "its nose is below its middle";
}

TEST_F(MissileTest, TwoFiredTogetherBurstOnceEach) {
    begin();
    addObstacle("static", "[40, 1, 40]", ahead(100));
    for (int i = 0; i < 2; ++i) fireOne();
    for (int i = 0; i < 60; ++i) frame();
    EXPECT_EQ(bursts.size(), 2u);
    EXPECT_EQ(countNodes("effect"), 2);
    logic().on_missile_hit(nullptr, 0);
    logic().on_missile_hit(logic().getMissile(0)->getBody(), 0);
    EXPECT_EQ(bursts.size(), 2u) << "one that is switched off hits nothing";
    for (int i = 0; i < 200; ++i) frame(0.1);
    EXPECT_EQ(countNodes("effect"), 0) << "20 s later";
}

TEST_F(MissileTest, RetiredOnesGiveTheirPlaceToTheLast) {
    begin();
    jVector<Node*> gone, order;
    logic().m_signal_4_missile_gone.append([&](Node* node) { gone.append(node); });
    for (int i = 0; i < 5; ++i) fireOne();
    for (int i = 0; i < 5; ++i) order.append(logic().getMissile(i));
    for (const int i : {0, 1, 4}) order[i]->setEnabled(false);
    logic().update_missle();
    // 4 moves to 0 and waits there; 3 moves to 1.
    ASSERT_EQ(logic().getNumMissiles(), 3);
    EXPECT_TRUE(gone.size() == 2 && gone[0] == order[0] && gone[1] == order[1]);
    EXPECT_TRUE(logic().getMissile(0) == order[4] && logic().getMissile(1) == order[3] &&
                logic().getMissile(2) == order[2]);
    logic().update_missle();
    EXPECT_EQ(gone.size(), 3);
    for (int i = 0; i < 199; ++i) frame(0.1);
    EXPECT_TRUE(logic().getMissile(0)->isEnabled());
    for (int i = 0; i < 2; ++i) frame(0.1);
    EXPECT_FALSE(logic().getMissile(0)->isEnabled());
}

TEST_F(MissileTest, AHandlerMayRetireMissilesWhileTheyAreRetired) {
    begin();
    jVector<Node*> gone;
    logic().m_signal_4_missile_gone.append([&](Node* node) {
        gone.append(node);
        logic().update_missle();
    });
    for (int i = 0; i < 3; ++i) fireOne();
    Node* const flying = logic().getMissile(0);
    for (const int i : {1, 2}) logic().getMissile(i)->setEnabled(false);
    for (int i = 0; i < 2; ++i) logic().update_missle();
    EXPECT_EQ(gone.size(), 2);
    ASSERT_EQ(logic().getNumMissiles(), 1);
    EXPECT_EQ(logic().getMissile(0), flying);
}

TEST_F(MissileTest, HandlersMayTakeMissilesAway) {
    begin();
    addObstacle("static", "[40, 1, 40]", ahead(100));
    const auto clear = [&] {
        logic().reset();
        for (int i = 0; i < 9; ++i) logic().update_missle();
    };
    for (int i = 0; i < 2; ++i) fireOne();
    logic().m_signal_5_prefab_created.append([&](ObjectPrefab*, bool) { clear(); });
    fireOne();
    EXPECT_EQ(logic().getNumMissiles(), 1) << "it was not among them yet";
    logic().m_signal_8_effect_started.append([&](SynCoder::CMDPlaySpeOnceInfo*) { clear(); });
    for (int i = 0; i < 60; ++i) frame();
    EXPECT_EQ(bursts.size(), 1u);
    EXPECT_EQ(logic().getNumMissiles(), 0);
}

TEST_F(MissileTest, ResetLeavesNothingInTheAir) {
    begin();
    addObstacle("static", "[40, 1, 40]", ahead(100));
    fireOne();
    for (int i = 0; i < 40; ++i) frame();
    fireOne();
    write("data/burning.prefab", R"({ "node": { "children": [ { "type": "particles" } ] } })");
    auto* const wreck = new ObjectPrefab("data/burning.prefab");
    world().addChild(wreck);
    const auto* const fire = static_cast<ObjectParticles*>(wreck->getChild(0));
    for (int i = 0; i < 11; ++i) frame(0.1);
    ASSERT_FALSE(fire->getParticles().empty());
    ASSERT_EQ(countNodes("effect"), 2);
    logic().reset();
    EXPECT_TRUE(fire->getParticles().empty());
    EXPECT_EQ(countNodes("effect"), 0);
    for (int i = 0; i < logic().getNumMissiles(); ++i) EXPECT_FALSE(logic().getMissile(i)->isEnabled());
}

TEST_F(MissileTest, AnExplosionShowsTheWreckAFifthOfASecondLater) {
    begin();
    ASSERT_TRUE(logic().plan_explosion());
    ASSERT_EQ(bursts.size(), 1u);
    EXPECT_EQ(bursts[0].path, EXPLOSION_1);
    EXPECT_LT(length(bursts[0].transform.t - jet().getWorldTransform().t), 1e-6);
    const Node* const wreck = world().getNodeByName("destroyed");
    for (int i = 0; i < 11; ++i) frame();
    EXPECT_FALSE(wreck->isEnabled());
    for (int i = 0; i < 2; ++i) frame();
    EXPECT_TRUE(wreck->isEnabled());
    logic().reset();
    ASSERT_TRUE(logic().plan_explosion());
    logic().reset();
    for (int i = 0; i < 30; ++i) frame();
    EXPECT_FALSE(wreck->isEnabled()) << "put back before it was destroyed";
}

TEST_F(MissileTest, ManyFiringsLeaveTheBooksLevel) {
    begin();
    addObstacle("static", "[40, 1, 40]", ahead(500));
    const auto fly = [&](int firings) {
        for (int i = 0; i < firings; ++i) {
            fireOne();
            if (i % 20 < 19) continue;
            for (int k = 0; k < 225; ++k) frame(0.1);  // what bursts last burns for 20 s
            for (int k = 0; k < 20; ++k) logic().update_missle();
        }
    };
    fly(20);
    const std::size_t blocks = jAllocator::get()->getBlockCount(), infos = memGetInfos().size();
    const int nodes = world().getNumNodes();
    fly(200);
    EXPECT_EQ(jAllocator::get()->getBlockCount(), blocks);
    EXPECT_EQ(memGetInfos().size(), infos);
    EXPECT_EQ(world().getNumNodes(), nodes);
    EXPECT_EQ(bursts.size(), 220u);
}

}  // namespace
