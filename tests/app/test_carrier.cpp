// The demonstration's carrier in the application: at rest, driven, its wake, and the objects carried on its deck.
#include "InstructorScene.h"
#include "app/Carrier.h"
#include "engine/camera/CameraControl.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "src/ship/Ship.h"
#include "support/TestScene.h"

namespace {

constexpr double STEADY_SPEED = 14.75;  ///< from the ship's motion law, m/s

class CarrierScene : public InstructorScene {
protected:
    explicit CarrierScene(const std::string& aircraft = Options().aircraft) : InstructorScene(aircraft) {
        logic().getOcean()->setBeaufort(0);
    }

    void begin(std::optional<int> mode) {
        Options options;
        options.drive_ship = mode;
        carrier = std::make_unique<Carrier>(options, world(), &logic());
    }
    struct Steps : FrameSteps {
        explicit Steps(Carrier& of) : carrier(of) {}
        void moved(float dt) { carrier.update(dt); }
        Carrier& carrier;
    };
    void sail(int count) {
        for (int i = 0; i < count; ++i) runFrame(engine(), logic(), 1.0 / 60.0, Steps(*carrier));
    }
    Object& ship() { return *logic().getShip()->getObject(); }
    const dmat4& frame() { return ship().getWorldTransform(); }
    dmat4 aboard(const Node& node) { return inverse(frame()) * node.getWorldTransform(); }
    double speed() { return dot(dvec3(ship().getBodyRigid()->getLinearVelocity()), frame().getY()); }

    void expectThatTheDeckCarries(bool has_feedback);

    std::unique_ptr<Carrier> carrier;
};

struct CarrierWithHelicopter : CarrierScene {
    CarrierWithHelicopter() : CarrierScene("data/assets/Targets/MODELS/HELICOPTER/HELICOPTER.cfg") {}
};

TEST_F(CarrierScene, IsMooredForTwoSecondsThenMakesWayAndFoam) {
    auto& foam = static_cast<ObjectParticles&>(*node("foam_stern"));
    const dmat4 start = frame();
    begin(Ship::STEADY);
    sail(119);
    EXPECT_EQ(frame(), start);
    EXPECT_FALSE(ship().getBody()->isEnabled());
    EXPECT_FALSE(foam.isEmitterEnabled());
    sail(3);
    EXPECT_TRUE(ship().getBody()->isEnabled());
    EXPECT_TRUE(foam.isEmitterEnabled());
    EXPECT_LT(speed(), 1.5);
    EXPECT_EQ(foam.getSpawnRate(), 0.0f);
    while (speed() < 6.75) sail(1);
    EXPECT_NEAR(foam.getSpawnRate(), 0.5f * foam.getAuthoredSpawnRate(), 0.03f * foam.getAuthoredSpawnRate());
    sail(300);
    EXPECT_EQ(foam.getSpawnRate(), foam.getAuthoredSpawnRate());
    EXPECT_GT(foam.getParticles().size(), 50u);
}

TEST_F(CarrierScene, WaitsForTheKeyboard) {
    begin(Ship::KEYBOARD);
    sail(300);
    EXPECT_NEAR(speed(), 0.0, 0.01);
    engine().getApp()->getControl()->setKey(ControlApp::KEY_DOWN, true);
    sail(120);
    EXPECT_LT(speed(), -5.0);
    EXPECT_EQ(static_cast<ObjectParticles&>(*node("foam_stern")).getSpawnRate(), 0.0f) << "none astern";
    engine().getApp()->getControl()->setKey(ControlApp::KEY_DOWN, false);
    engine().getApp()->getControl()->setKey(ControlApp::KEY_UP, true);
    sail(300);
    EXPECT_GT(speed(), 10.0);
}

// Starts one metre too high. The heave's period without damping is 2 pi sqrt(f0 H / 2g); damping per second: 7.2 f0^2
// by the points, 0.1 f0 by the water.
TEST_F(CarrierScene, HeavesAndRunsAsItsHullSays) {
    begin(Ship::STEADY);
    sail(122);
    ship().setWgsPosition(ship().getWgsPosition() + dvec3(0.0, 0.0, 1.0));
    std::vector<int> crossings;
    double last = 1.0;
    for (int i = 0; i < 3478; ++i) {
        sail(1);
        const double height = ship().getWgsPosition().z;
        if (height * last < 0.0 && crossings.size() < 3) crossings.push_back(i);
        last = height;
    }
    ASSERT_EQ(crossings.size(), 3u);
    const double damping = 0.5 * (7.2 * 0.09 + 0.03), free_turn = std::sqrt(2.0 * 9.80665 / (0.3 * 130.0));
    const double period = 2.0 * jMath::PI / std::sqrt(free_turn * free_turn - damping * damping);
    EXPECT_NEAR((crossings[2] - crossings[0]) / 60.0, period, 0.03 * period);
    EXPECT_NEAR(last, 0.0, 0.002) << "at its drawn waterline";
    EXPECT_NEAR(speed(), STEADY_SPEED, 0.005 * STEADY_SPEED);
    EXPECT_NEAR(ship().getWgsHPR().y, 0.0, 0.02) << "trim";
}

/// With the sea abeam, so that the ship rolls.
void CarrierScene::expectThatTheDeckCarries(bool has_feedback) {
    world().getEnvironment().wind = {-6.0f, 14.0f, 0.0f};
    logic().getOcean()->setBeaufort(7);
    jVector<UdpRecvData> run;
    run.append({});
    run[0].nSimOrder = 2;
    logic().use_recv_data(run);
    logic().set_player_mode(FREE_VIEW);
    begin(Ship::STEADY);
    sail(130);
    Node& aircraft = *logic().getModel();
    Node* const eye = engine().getCameraControl()->getNode();
    const dvec3 parked = aboard(aircraft).t, start = aboard(*node("start_deck")).t;
    const dvec3 lens = aboard(*node("Fresnel_light")).t, trigger = aboard(*node("trigger_carrier_island")).t;
    const double elevation = 4.0 * jMath::DEG2RAD;
    double rolled = 0.0;
    for (int i = 0; i < 600; ++i) {
        eye->setWorldPosition(frame() * (lens + dvec3(0.0, -std::cos(elevation), std::sin(elevation)) * 3000.0));
        const double under = EllipsoidModel().toWGS(frame() * dvec3(parked.x, parked.y, 20.0)).z;
        sail(1);
        ASSERT_LT(length(aboard(aircraft).t - parked), 0.05) << i;
        ASSERT_EQ(logic().getFresnelLight().getState(), FresnelLight::ON_PATH) << i;
        for (const float height : logic().getLastFeedback().fTerrainHeightLG) {
            ASSERT_NEAR(height, has_feedback ? under : 0.0, 0.002) << i;
        }
        rolled = std::max(rolled, std::abs(ship().getWgsHPR().z));
    }
    EXPECT_GT(rolled, 0.05);
    EXPECT_GT(speed(), 14.0);
    EXPECT_LT(length(aboard(*node("start_deck")).t - start), 1e-6);
    EXPECT_LT(length(aboard(*node("trigger_carrier_island")).t - trigger), 0.3) << "a frame behind";
}

TEST_F(CarrierScene, TheJetsDeckIsTheMovingOne) {
    expectThatTheDeckCarries(true);
    const dvec3 parked = aboard(*logic().getAircraftNode()).t;
    logic().getAircraftNode()->setWorldPosition(frame() * dvec3(0.0, 0.0, 400.0));
    logic().reset_plane();
    EXPECT_LT(length(aboard(*logic().getAircraftNode()).t - parked), 0.5) << "the start is where the ship is now";
}

TEST_F(CarrierWithHelicopter, TheHelicopterStandsOnIt) {
    expectThatTheDeckCarries(false);
}

TEST_F(CarrierScene, FlagAndDeckHandMoveAndAMissingShipIsTold) {
    begin({});
    const Node& arm = *node("left_hand");
    const Node& flag = *node("deck_flag");
    const dmat4 arm_before = arm.getWorldTransform(), flag_before = flag.getWorldTransform();
    sail(30);
    EXPECT_GT(difference(arm.getWorldTransform(), arm_before), 0.1);
    EXPECT_GT(difference(flag.getWorldTransform(), flag_before), 0.01);
    EXPECT_TRUE(complaints().empty()) << complaints().front();

    Options options;
    options.drive_ship = Ship::STEADY;
    const std::size_t count = complaints().size();
    Carrier none(options, world(), nullptr);
    none.update(1.0f);
    EXPECT_EQ(complaints().size(), count + 1);
    logic().set_carrier_node("mast");
    logic().init_ships();
    ASSERT_NE(logic().getShip(), nullptr);
    Carrier standing(options, world(), &logic());
    for (int i = 0; i < 5; ++i) standing.update(1.0f);
    EXPECT_EQ(complaints().size(), count + 2) << "a ship without a body";
}

}  // namespace
