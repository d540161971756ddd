// The carrier jet on its own: nodes and poses, undercarriage, surfaces, exhaust, body, damage looks.
#include <cmath>

#include "LogicWorld.h"
#include "engine/math/jMath.h"
#include "engine/physics/Body.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"
#include "src/aircraft/AppData_AirCraft.h"
#include "src/kit/FlyFrame.h"

namespace {

class JetTest : public LogicTest {
protected:
    /// Loads the jet, placed far from the globe's centre.
    bool load(const TestJet& spec = {}) {
        writeJet(spec);
        AppData_AirCraft::get().setConfigPath(TestJet::CONFIG);
        EXPECT_TRUE(AppData_AirCraft::get().open());
        plane.setAircraftInfo(AppData_AirCraft::get().getAircraftInfo());
        bool loaded = false;
        printed = printedBy([&] { loaded = plane.init(&world()); });
        plane.setWgsPosition(PLACE);
        return loaded;
    }

    Node* part(int i) {
        return plane.getModel()->getNodeByName(i == 20 ? "weigou001" : jString("part_" + std::to_string(i)));
    }

    /// How far a part is from its open (0) to its closed pose (1); -1 when it is in neither nor between.
    double closed(int i) {
        const dmat4& now = part(i)->getTransform();
        if (length(now.getTranslation() - dvec3(i, 0, 0)) > 1e-9) return -1.0;
        double best = 1e-3, found = -1.0;
        for (int k = 0; k <= 800; ++k) {
            const double u = k / 800.0;
            const dquat pose = dquat::fromEulerZXY(i * (1.0 - u), 10.0 * (1.0 - u), i * u);
            const double off = length(now.getX() - pose * dvec3(1, 0, 0)) + length(now.getY() - pose * dvec3(0, 1, 0));
            if (off < best) best = off, found = u;
        }
        return found;
    }

    void fly(double seconds) {
        for (int i = 0; i < static_cast<int>(std::lround(seconds * 64.0)); ++i) plane.update(1.0f / 64.0f);
    }

    PlaneJ15 plane;
};

TEST_F(JetTest, AMissingNodeMovesLaterOnesDown) {
    TestJet spec;
    spec.missing = {3};
    ASSERT_TRUE(load(spec));
    EXPECT_NE(printed.find("part_3 no find\n"), std::string::npos);
    EXPECT_EQ(plane.getNode(3), part(4));
    EXPECT_EQ(plane.getNode(34), nullptr);
    plane.flyPose();
    const dmat4 third(dquat::fromEulerZXY(0, 0, 3), dvec3());
    EXPECT_LT(length(part(4)->getTransform().getX() - third.getX()), 1e-9) << "rotations stay in the file's order";
    EXPECT_LT(length(part(5)->getTransform().getTranslation() - dvec3(4, 0, 0)), 1e-9);
}

TEST_F(JetTest, PosesTurnTheRotatingPartsAlone) {
    ASSERT_TRUE(load());
    plane.setThrust(1.0f);
    plane.flyPose();
    for (const int i : {0, 5, 20}) EXPECT_EQ(closed(i), 1.0);
    EXPECT_EQ(part(21)->getHPR(), dvec3());
    EXPECT_FALSE(plane.isStanding());
    plane.standPose();
    for (const int i : {0, 5, 19}) EXPECT_EQ(closed(i), 0.0);
    EXPECT_EQ(closed(20), 1.0) << "the hook is up on the ground";
    EXPECT_EQ(plane.getThrust(), 0.0f);
    EXPECT_TRUE(plane.isStanding());
    plane.openHook();
    EXPECT_EQ(closed(20), 0.0);
    plane.closeHook();
    EXPECT_EQ(closed(20), 1.0);
}

TEST_F(JetTest, TheGearMovesGroupByGroup) {
    ASSERT_TRUE(load());
    plane.openUndercarriage();
    EXPECT_EQ(plane.getNumActions(), 0) << "it is open";
    const struct {
        bool open;
        double seconds, doors, legs;  ///< since the last row; doors 17 to 19 and legs 0 to 4, as `closed`
    } moments[] = {{false, 2, 0.25, 0}, {false, 6, 1, 0}, {false, 4, 1, 0.5}, {false, 4, 1, 1},
                   {true, 2, 1, 0.75},  {true, 6, 1, 0},  {true, 2, 0.75, 0}, {true, 6, 0, 0}};
    bool open = true;
    for (const auto& m : moments) {
        if (m.open != open) {
            EXPECT_EQ(plane.getNumActions(), 0);
            EXPECT_EQ(plane.isUndercarriageOpen(), open);
            EXPECT_EQ(plane.setUndercarriage(m.open, true), m.open);
            open = m.open;
        }
        fly(m.seconds);
        for (const int i : {17, 19}) EXPECT_NEAR(closed(i), m.doors, 2e-3) << i << " " << open << m.seconds;
        for (const int i : {1, 4}) EXPECT_NEAR(closed(i), m.legs, 2e-3) << i << " " << open << m.seconds;
    }
    EXPECT_EQ(plane.getNumActions(), 0);

    plane.closeUndercarriage();
    fly(4.0);
    plane.closeUndercarriage();
    EXPECT_EQ(plane.getNumActions(), 1);
    EXPECT_NEAR(closed(17), 0.5, 2e-3) << "the same command again changes nothing";
    plane.openUndercarriage();
    EXPECT_EQ(closed(17), 1.0) << "the new movement starts from the pose in flight";
    fly(16.0);
    EXPECT_FALSE(plane.setUndercarriage(false, false));
    EXPECT_FALSE(plane.isUndercarriageOpen());
    EXPECT_EQ(closed(17), 0.0) << "the flag alone";
}

TEST_F(JetTest, TheGearSnapsWithAPartMissing) {
    TestJet spec;
    spec.missing = {2, 18};
    ASSERT_TRUE(load(spec));
    EXPECT_EQ(printedBy([&] { plane.closeUndercarriageNow(); }),
              "can not close undercarriage because no part_18 node\n");
    for (const int i : {0, 1, 3, 4, 17, 19}) EXPECT_EQ(closed(i), 1.0) << i;
    EXPECT_TRUE(plane.isUndercarriageOpen()) << "the flag is the caller's";
    plane.setThrust(0.5f);
    plane.stopPose();
    for (const int i : {0, 1, 3, 4, 17, 19}) EXPECT_EQ(closed(i), 0.0) << i;
    EXPECT_EQ(plane.getThrust(), 0.0f);
}

TEST_F(JetTest, AFlightStateTurnsTheGroupsAndPlacesTheModel) {
    ASSERT_TRUE(load());
    plane.flyPose();
    dmat4 base(dquat::fromEulerZXY(20, 0, 0), engine().getEllipsoid().toWorld(PLACE));
    plane.setBaseTransform(base);
    FlyFrame state;
    state.pivot = dvec3(100, 200, 30);
    state.pitch = 12.0f, state.roll = 25.0f, state.heading = 70.0f;
    state.wing1 = 8.0f, state.wing2 = -15.0f;
    printedBy([&] { plane.setFlightState(&state); });

    // The nose points where heading and pitch say, the right wing is up by the roll.
    const double h = 70.0 * jMath::DEG2RAD, p = 12.0 * jMath::DEG2RAD, r = 25.0 * jMath::DEG2RAD;
    const dvec3 nose(std::cos(h) * std::cos(p), std::sin(h) * std::cos(p), std::sin(p));
    const dvec3 level(std::sin(h), -std::cos(h), 0.0);
    const dvec3 wing = level * std::cos(r) + cross(level, nose) * std::sin(r);
    const dmat4& placed = plane.getModel()->getTransform();
    EXPECT_LT(length(placed.getY() - rotate(base, nose)), 1e-7);
    EXPECT_LT(length(placed.getX() - rotate(base, wing)), 1e-7);
    EXPECT_LT(length(placed.getTranslation() - base * dvec3(100, 200, 30)), 1e-6);

    for (int i = 4; i <= 17; ++i) {
        const double angle = i < 5 || i > 16 ? 0.0 : i % 2 ? -8.0 : 15.0;
        const dmat4 expected(dquat(dvec3(0, 1, 0), i) * dquat(dvec3(0, 0, 1), angle), {static_cast<double>(i), 0, 0});
        EXPECT_LT(difference(part(i)->getTransform(), expected), 1e-6) << i;
    }
}

TEST_F(JetTest, TheExhaustFollowsTheThrust) {
    ASSERT_TRUE(load());
    for (const auto& [thrust, rate] :
         {std::pair(0.0f, 0.0f), {0.05f, 40.0f}, {0.1f, 80.0f}, {1.0f, 80.0f}, {0.0f, 0.0f}}) {
        plane.setThrust(thrust);
        plane.update(0.01f);
        for (const int i : {33, 34}) {
            EXPECT_NEAR(static_cast<ObjectParticles*>(part(i))->getSpawnRate(), rate, 1e-4) << thrust;
        }
    }
}

TEST_F(JetTest, AShortFileLeavesTheRolesEmpty) {
    TestJet spec;
    spec.entries = 3;
    spec.body.clear();
    ASSERT_TRUE(load(spec));
    plane.setControlInput({1.0f, 1.0f, 1.0f});
    plane.setUndercarriage(false, true);
    fly(17.0);
    EXPECT_EQ(closed(2), 1.0);
    plane.openHook();
    plane.standPose();
    plane.toggleLight();
    EXPECT_TRUE(plane.getWheels().empty());
    plane.catchFire();
}

TEST_F(JetTest, WheelsAreFoundByNodeAndShapeAndNothingOfItCollides) {
    ASSERT_TRUE(load());
    const auto node = [&](const char* name) { return plane.getModel()->getNodeByName(name); };
    EXPECT_EQ(plane.getWheels(), (jMap<Node*, int>{{node("F_wheel_pos"), 1}, {node("L_wheel_pos"), 2}}));
    for (const Node* n : plane.getModel()->getNodes()) EXPECT_FALSE(n->isCollider()) << n->getName();
}

TEST_F(JetTest, DamageShowsKicksTheBodyAndAResetUndoesIt) {
    ASSERT_TRUE(load());
    const auto looks = [&] {
        std::string on;
        for (const char* name : {"normal", "destroyed", "fire"}) {
            on += plane.getModel()->getNodeByName(name)->isEnabled() ? '1' : '0';
        }
        return on + std::to_string(plane.getDamageState());
    };
    EXPECT_EQ(looks(), "1000");
    plane.showDestroyed();
    EXPECT_EQ(looks(), "0101");
    plane.setThrust(1.0f);
    EXPECT_TRUE(plane.catchFire());
    EXPECT_EQ(looks(), "0111");
    EXPECT_TRUE(static_cast<ObjectParticles*>(plane.getModel()->getNodeByName("fire_spe"))->isEmitterEnabled());
    EXPECT_EQ(plane.getThrust(), 0.0f);
    const dmat4 axes = plane.getModel()->getWorldTransform();
    run(1);
    // 300 kNm about the vertical and the wing, of either sign, for 1/60 s.
    const dvec3 turn = rotate(inverse(axes), dvec3(plane.getModel()->getBodyRigid()->getAngularVelocity()));
    EXPECT_NEAR(std::abs(turn.x), 5000.0 / 100000.0, 1e-3);
    EXPECT_NEAR(turn.y, 0.0, 1e-3);
    EXPECT_NEAR(std::abs(turn.z), 5000.0 / 125000.0, 1e-3);

    plane.getModel()->getBody()->setEnabled(false);
    plane.resetToBase();
    EXPECT_EQ(looks(), "1000");
    EXPECT_TRUE(plane.isStanding());
    EXPECT_TRUE(plane.getModel()->getBody()->isEnabled());
}

TEST_F(JetTest, TheBodyAnswersTheControlsWithinItsLimits) {
    ASSERT_TRUE(load());
    BodyRigid& body = *plane.getModel()->getBodyRigid();
    // Angular velocity in the body's axes after one frame at 100 m/s along the nose.
    const auto answer = [&](const vec3& input) {
        plane.setWgsPosition(PLACE);
        body.setAngularVelocity({});
        const dmat4 place = body.getTransform();
        body.setLinearVelocity(narrow(place.getY()) * 100.0f);
        plane.setControlInput(input);
        plane.update(1.0f / 60.0f);
        run(1);
        return rotate(inverse(place), dvec3(body.getAngularVelocity()));
    };
    EXPECT_LT(length(answer({0.1f, -0.1f, 0.1f})), 1e-9) << "inside the dead zone";
    const dvec3 full = answer({1.0f, 1.0f, -1.0f});
    EXPECT_GT(full.x, 0.0);
    EXPECT_GT(full.y, 0.0);
    EXPECT_LT(full.z, 0.0);
    EXPECT_LT(length(answer({5.0f, 5.0f, -5.0f}) - full), 1e-3 * length(full));
}

}  // namespace
