// The feedback record: deck and terrain height under the gears, attitude, collisions and its place in the frame.
#include <GeographicLib/Geocentric.hpp>

#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/physics/Body.h"
#include "engine/physics/Physics.h"
#include "engine/scene/SceneNodes.h"

namespace {

constexpr const char* DECK = "LiaoNingJian_zhuTi001";
constexpr const char* GEARS[] = {"wheel_front", "wheel_left", "wheel_right"};

class FeedbackTest : public LogicTest {
protected:
    /// Starts with order 2 in effect. A jet without a body keeps its pose.
    void begin(const std::string& body = {}) {
        TestJet spec;
        spec.body = body;
        writeJet(spec);
        addStart();
        start();
        host();
        apply({2});
    }

    void addSlope(double height, double slope) {
        m_ground = height;
        m_slope = slope;
        addTerrain(height, slope);
    }

    /// Of the terrain below a place; geocentric metres.
    double groundBelow(const dvec3& place) const {
        return m_ground + m_slope * (measure({dquat(), place}).longitude - PLACE.x);
    }

    packets::Feedback next(double dt = 1.0 / 60.0) {
        frame(dt);
        const auto datagrams = host().waitFeedback(1);
        const bool whole = datagrams.size() == 1 && datagrams[0].bytes.size() == packets::FEEDBACK_SIZE;
        EXPECT_TRUE(whole) << datagrams.size() << " datagrams";
        return whole ? packets::get<packets::Feedback>(datagrams[0].bytes, 0) : packets::Feedback();
    }

    Object& aircraft() { return *logic().getAircraftNode(); }
    Node* gear(const char* name) { return aircraft().getNodeByName(name); }

    /// Where a frame is on the globe and how it is turned, by another library: degrees, clockwise from north, nose up,
    /// right side down. Y points ahead, X to the right.
    struct Geodetic {
        double longitude, heading, pitch, roll;
    };
    static Geodetic measure(const dmat4& frame) {
        double latitude, longitude, height;
        std::vector<double> enu(9);  // columns: east, north, up
        GeographicLib::Geocentric::WGS84().Reverse(frame.t.x, frame.t.y, frame.t.z, latitude, longitude, height, enu);
        const auto along = [&](const dvec3& v, std::size_t column) {
            return v.x * enu[column] + v.y * enu[column + 3] + v.z * enu[column + 6];
        };
        return {longitude, std::atan2(along(frame.y, 0), along(frame.y, 1)) * jMath::RAD2DEG,
                std::asin(along(frame.y, 2)) * jMath::RAD2DEG,
                std::atan2(-along(frame.x, 2), along(frame.z, 2)) * jMath::RAD2DEG};
    }
    /// Turns the aircraft at random, at a geodetic place; not so steeply that a heading means nothing.
    void place(const dvec3& geo, Random& random) {
        const dvec3 hpr(random.getDouble(0, 360), random.getDouble(-70, 70), random.getDouble(-180, 180));
        double x, y, z;
        GeographicLib::Geocentric::WGS84().Forward(geo.y, geo.x, geo.z, x, y, z);
        const dmat3 level = engine().getEllipsoid().getWGSTransform(dvec3(x, y, z)).getMat3();
        aircraft().setWorldTransform({dquat(level) * dquat::fromEulerZXY(hpr), {x, y, z}});
    }
    void expectAttitudes(const packets::Feedback& got) {
        const auto off = [](double a, double b) { return std::abs(std::remainder(a - b, 360.0)); };
        const double heading = measure(aircraft().getWorldTransform()).heading;
        for (int i = 0; i < 3; ++i) {
            const Geodetic wheel = measure(gear(GEARS[i])->getWorldTransform());
            const double tolerance = 1e-4 / std::cos(wheel.pitch * jMath::DEG2RAD);
            EXPECT_LT(off(got.heading[i], heading), 2e-4) << "the aircraft's";
            EXPECT_LT(off(got.pitch[i], wheel.pitch), tolerance);
            EXPECT_LT(off(got.roll[i], wheel.roll), tolerance);
        }
    }

private:
    double m_ground = 0.0;
    double m_slope = 0.0;
};

TEST_F(FeedbackTest, OverTheDeckAllGearsHaveItsHeightAnywhereOnTheGlobe) {
    Object* const deck = addPlate(DECK, PLACE, 1.0);  // narrower than the gears are apart
    Object* const shelter = addPlate("shelter", PLACE);
    begin();
    std::int32_t counter = next().counter;
    Random random(7);
    for (int round = 0; round < 300; ++round) {
        const dvec3 geo(random.getDouble(-180, 180), random.getDouble(-89, 89), random.getDouble(-50, 100));
        deck->setWgsPosition(geo);
        shelter->setWgsPosition(geo - dvec3(0, 0, 15));
        for (Object* const plate : {deck, shelter}) plate->setWgsHPR({});
        place(geo + dvec3(0, 0, random.getDouble(0.1, 5000)), random);
        const packets::Feedback got = next();
        ASSERT_EQ(got.counter, ++counter);
        expectAttitudes(got);
        for (const float height : got.heights) ASSERT_NEAR(height, geo.z, 2e-3) << round;
        ASSERT_EQ(got.heightCg, -100.0f);
        ASSERT_EQ(got.collision, 0);
        ASSERT_FALSE(HasFailure()) << round;

        // The globe looks the same from every longitude.
        const dmat4 turn(dquat(dvec3(0, 0, 1), random.getDouble(-180, 180)), {});
        for (Object* const moved : {deck, shelter, &aircraft()})
            moved->setWorldTransform(turn * moved->getWorldTransform());
        const packets::Feedback turned = next();
        ++counter;
        for (int i = 0; i < 3; ++i) {
            ASSERT_NEAR(turned.heights[i], got.heights[i], 2e-3) << round;
            ASSERT_NEAR(std::remainder(turned.heading[i] - got.heading[i], 360.0f), 0.0, 1e-3) << round;
            ASSERT_NEAR(std::remainder(turned.pitch[i] - got.pitch[i], 360.0f), 0.0, 1e-3) << round;
            ASSERT_NEAR(std::remainder(turned.roll[i] - got.roll[i], 360.0f), 0.0, 1e-3) << round;
        }
    }
}

TEST_F(FeedbackTest, ElsewhereEachGearHasTheTerrainUnderItself) {
    addSlope(7.0, 1000.0);
    addPlate(DECK, {PLACE.x, PLACE.y + 0.002, 20.0}, 10.0);
    Object* const roof = addPlate("roof", {PLACE.x, PLACE.y, 30.0});
    begin();
    Random random(8);
    for (int round = 0; round < 100; ++round) {
        roof->setEnabled(round % 2 == 0);
        const double x = random.getDouble(-0.0005, 0.0005), y = random.getDouble(-0.008, 0.001);
        place(PLACE + dvec3(round % 2 ? 16.0 * x : x, y, random.getDouble(0, 5000)), random);
        const packets::Feedback got = next();
        expectAttitudes(got);
        for (int i = 0; i < 3; ++i) {
            ASSERT_NEAR(got.heights[i], groundBelow(gear(GEARS[i])->getWorldPosition()), 1e-3) << round;
        }
        ASSERT_NEAR(got.heightCg, groundBelow(aircraft().getWorldPosition()), 1e-3) << round;
    }
    aircraft().setWgsPosition(PLACE);
    addPlate(DECK, {PLACE.x, PLACE.y, 60.0});
    EXPECT_NEAR(next().heights[0], 7.0, 0.1) << "a deck above the jet is not under it";

    gear("wheel_left")->setName("gone");
    const packets::Feedback got = next();
    for (const float value : {got.heights[1], got.pitch[1], got.roll[1], got.heading[1]}) EXPECT_EQ(value, 0.0f);
    EXPECT_GT(got.heights[2], 0.0f);
}

TEST_F(FeedbackTest, IsMeasuredAfterThePushAndBeforeThePhysicsWhichTheCameraFollows) {
    addSlope(7.0, 100000.0);
    begin(TestJet().body);
    world().getPhysics()->setGravity({});
    logic().set_player_mode(FIRST_VIEW);
    for (const bool pushed : {true, false}) {
        logic().on_move_foward({}, nullptr);
        const dmat4 before = aircraft().getWorldTransform();
        aircraft().getBodyRigid()->setLinearVelocity(pushed ? vec3() : narrow(before.x * 60.0));
        const packets::Feedback got = next(0.1);
        EXPECT_NEAR(got.heightCg, groundBelow(before * dvec3(0, pushed ? 3 : 0, 0)), 0.01);
        const dmat4 after = aircraft().getWorldTransform();
        EXPECT_GT(std::abs(groundBelow(after.t) - groundBelow(before.t)), 1.0);
        EXPECT_LT(length(engine().getCameraControl()->getNode()->getWorldPosition() - after * dvec3(0, 5, 1)), 1e-6);
    }
}

TEST_F(FeedbackTest, IsMeasuredAfterTheRecordedPathAndTheGlides) {
    write("data/www.dat", "0.0 0.0 0.0 0.0 1.0 0.0 0.0 0.0 0.0 0.0\n99.0 990.0 0.0 0.0 1.0 0.0 0.0 0.0 0.0 0.0\n");
    addSlope(7.0, 100000.0);
    begin();
    printedBy([&] {
        logic().set_fly_mode(AUTO_FLY);
        for (int i = 0; i < 3; ++i) {
            const dvec3 before = aircraft().getWorldPosition();
            const packets::Feedback got = next(0.1);
            EXPECT_GT(std::abs(groundBelow(aircraft().getWorldPosition()) - groundBelow(before)), 0.5);
            EXPECT_NEAR(got.heightCg, groundBelow(aircraft().getWorldPosition()), 0.01);
        }
    });
    logic().local_data_stop_fly();
    write("data/raft.prefab", R"({ "node": { } })");
    TargetInfo raft;
    raft.name = "raft";
    raft.path = "data/raft.prefab";
    for (const double height : {20.0, 40.0}) {
        const dvec3 geo = aircraft().getWgsPosition();
        raft.pose[0] = geo.x, raft.pose[1] = geo.y, raft.pose[2] = height;
        logic().apply_target(raft);
    }
    Object* const deck = addPlate(DECK, {});
    world().getNodeByTag("raft")->addChild(world().getRoot()->takeChild(deck));
    deck->setTransform({});
    deck->setWgsHPR({});  // the raft's nose points along its glide
    next(0.1);
    const packets::Feedback got = next(0.1);
    EXPECT_NEAR(got.heights[0], 22.0, 0.1) << "after the first tenth of the glide";
}

TEST_F(FeedbackTest, WithoutGroundHeightsAreTheFloor) {
    begin();
    EXPECT_EQ(next().heights[0], -100.0f);
    end();
    addTerrain(-300.0);
    begin();
    const packets::Feedback got = next();
    EXPECT_EQ(got.heights[1], -100.0f);
    EXPECT_EQ(got.heightCg, -100.0f);
    EXPECT_EQ(logic().calc_height({10.0, 10.0, 0.0}), -100.0f) << "outside the raster";
}

TEST_F(FeedbackTest, TriggersSetOneFlagWithoutCounting) {
    Node* const group = addNode("group");
    group->addTag("all_triggers");
    addNode("no trigger", {}, group);
    NodeTrigger* triggers[2];
    for (NodeTrigger*& trigger : triggers) {
        auto made = std::make_unique<NodeTrigger>(vec3(20.0f, 20.0f, 20.0f));
        trigger = made.get();
        group->addChild(std::move(made));
        trigger->setWgsPosition(PLACE);
    }
    int others = 0;
    triggers[0]->enter.append([&](Node*) { ++others; });
    begin();
    EXPECT_EQ(next().collision, 0) << "the triggers are looked at after the feedback";
    EXPECT_EQ(next().collision, 1);
    triggers[0]->setEnabled(false);
    next();
    EXPECT_EQ(next().collision, 0) << "still inside the other one";
    logic().on_enter_trigger(gear("wheel_left"));
    EXPECT_EQ(next().collision, 0) << "no sensor";
    end();
    EXPECT_EQ(others, 1);
    EXPECT_EQ(triggers[0]->enter.size(), 1) << "the others' handlers stay";
    EXPECT_EQ(triggers[0]->leave.size() + triggers[1]->enter.size() + triggers[1]->leave.size(), 0);
}

}  // namespace
