// The floating ship: its forces against their law, frames of any length, waves, its wake, and bad models.
#include "LogicWorld.h"
#include "common/ship/Buoyancy.h"
#include "common/ship/Ship.h"
#include "common/ship/Wakes.h"
#include "engine/camera/CameraControl.h"
#include "engine/input/ControlApp.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/SceneNodes.h"

namespace {

constexpr double LON = 112.4, LAT = 16.8, G = 9.80665, DT = 1.0 / 60.0;
constexpr vec3 HULL{10.0f, 80.0f, 12.0f};
constexpr double VOLUME = 10.0 * 80.0 * 12.0, MASS = 100.0 * VOLUME * 0.25;  ///< afloat at half its height

const char* const WAKES = R"({ "name": "ship", "children": [ { "position": [0, -30, 0], "children": [
  { "name": "wakes", "position": [0, -10, 0], "children": [
    { "name": "foam", "type": "decal", "decal": { "width": 5, "height": 5, "depth": 9 }, "children": [
        { "type": "particles", "particles": { "spawn_rate": 60, "life": 30, "velocity": [0, 0, 0] } },
        { "children": [ { "type": "particles", "particles": { "spawn_rate": 7, "emitter_size": [9, 9, 0] } } ] } ] },
    { "name": "spray", "type": "particles", "particles": { "life": 4, "spawn_rate": 3 } } ] } ] } ] })";

class ShipTest : public SceneTest {
protected:
    ShipTest() {
        ocean = add(std::make_unique<ObjectOcean>());
        ocean->setWgsPosition({112.35, 16.84, 0.0});
        ocean->setUseGlobalWind(false);
        ocean->setBeaufort(0);
        engine().getCameraControl()->getNode()->setWgsPosition({LON, LAT, 20.0});
    }
    ~ShipTest() override {
        for (Ship* s : ships) jDelete(s);
    }

    Ship& makeShip(Object* object, ObjectOcean* on) {
        ships.push_back(jNew<Ship>({"test", "test"}, object, on));
        return *ships.back();
    }
    Ship& makeHull(double height, Shape::Type type = Shape::BOX, float moment = 0.0f) {
        BodySettings settings;
        settings.inertia = {moment, moment, moment};
        settings.mass = static_cast<float>(MASS);
        settings.shapes.append({});
        settings.shapes[0].type = type;
        return makeHull(settings, height, ocean);
    }
    /// At rest at the sea's level with that share of its height immersed, heavier below.
    Ship& makeBallastedHull(double share, ObjectOcean* on) {
        BodySettings settings;
        settings.mass = static_cast<float>(100.0 * VOLUME * share * share);
        settings.shapes.append({});
        settings.shapes[0].transform.t.z = 12.0 * (0.5 - share);
        settings.center_of_mass = {0.0f, 0.0f, static_cast<float>(-12.0 * share)};
        return makeHull(settings, 0.0, on);
    }
    Ship& makeHull(BodySettings& settings, double height, ObjectOcean* on) {
        settings.shapes[0].size = HULL;
        Object* const hull = add(std::make_unique<ObjectPrefab>());
        hull->setBody(settings);
        hull->setWgsPosition({LON, LAT, height});
        hull->setWgsHPR({40.0, 0.0, 0.0});
        return makeShip(hull, on);
    }
    void frames(Ship& ship, int count, double dt = DT) {
        for (int i = 0; i < count; ++i) {
            engine().beginFrame(dt);
            ship.updateWakes();
            ship.update();
            engine().step();
            engine().endFrame();
        }
    }
    static double heightOf(const Ship& ship) { return ship.getObject()->getWgsPosition().z; }

    ObjectOcean* ocean;
    std::vector<Ship*> ships;
};

TEST_F(ShipTest, SamplesTheSeaUnderEightRowsOfThree) {
    const Ship& ship = makeHull(0.0);
    const jVector<dvec3>& points = ship.getBuoyancy()->getPoints();
    ASSERT_EQ(points.size(), 24);
    for (int n = 0; n < 24; ++n) {
        EXPECT_NEAR(points[n].x, -5.0 + 5.0 * (n % 3), 1e-9) << n;
        EXPECT_NEAR(points[n].y, -40.0 + 80.0 / 7.0 * (n / 3), 1e-9) << n;
        EXPECT_EQ(points[n].z, 0.0);
    }
    EXPECT_EQ(ship.getHullVolume(), 9600.0f);
}

// Accelerations over one short step, along the ship's axes, from 3 m/s to starboard and a vertical speed: the hull's
// drag acts level, that of the points every way. The keys steer a hull at rest that is light to turn.
TEST_F(ShipTest, PropulsionSteeringDragAndLiftFollowTheirLaw) {
    constexpr int UP = ControlApp::KEY_UP, DOWN = ControlApp::KEY_DOWN, RIGHT = ControlApp::KEY_RIGHT,
                  LEFT = ControlApp::KEY_LEFT;
    constexpr double MOMENT = 1000.0;
    const double half = std::sqrt(0.5);  // two keys share the control
    const struct {
        double height, immersed;
        int mode;
        std::vector<int> keys;
        double throttle, rudder;
        float drive_angle = 0.0f;
        double rise = 0.0;
    } cases[] = {{6.0, 0.0, Ship::STEADY, {}, 1, 0},
                 {-9.0, 1.0, Ship::STEADY, {}, 1, 0, 0.0f, -6.0},
                 {3.0, 0.25, Ship::STEADY, {}, 1, 0},
                 {-3.0, 0.75, Ship::STEADY, {}, 1, 0},
                 {0.0, 0.5, Ship::STEADY, {}, 1, 0, 0.0f, 6.0},
                 {0.0, 0.5, Ship::KEYBOARD, {UP}, 1, 0},
                 {0.0, 0.5, Ship::KEYBOARD, {DOWN}, -1, 0},
                 {0.0, 0.5, Ship::KEYBOARD, {UP, RIGHT}, half, half},
                 {0.0, 0.5, Ship::KEYBOARD, {UP, DOWN, LEFT}, 0, -1},
                 {0.0, 0.5, Ship::KEYBOARD, {}, 0, 0},
                 {0.0, 0.5, Ship::NO_INPUT, {UP}, 0, 0},
                 {0.0, 0.5, Ship::NO_INPUT, {}, 0, 0, 90.0f},
                 {6.0, 0.0, Ship::NO_INPUT, {}, 0, 0, -30.0f}};
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const bool steered = c.mode == Ship::KEYBOARD;
        Ship& ship = makeHull(c.height, Shape::BOX, steered ? static_cast<float>(MOMENT) : 0.0f);
        BodyRigid& body = *ship.getObject()->getBodyRigid();
        const dmat4 axes = body.getTransform();
        const double side = steered ? 0.0 : 3.0;
        const dvec3 velocity = axes.x * side + axes.z * c.rise;
        body.setLinearVelocity(narrow(velocity));
        ship.setControlMode(c.mode);
        ship.setDriveAngle(c.drive_angle);
        for (const int key : c.keys) engine().getApp()->getControl()->setKey(key, true);
        frames(ship, 1);
        for (const int key : c.keys) engine().getApp()->getControl()->setKey(key, false);
        const dvec3 gained = rotate(inverse(axes), dvec3(body.getLinearVelocity()) - velocity);
        const dvec3 turn = rotate(inverse(axes), dvec3(body.getAngularVelocity()));

        const double f = c.immersed, k = (0.5 - std::abs(0.5 - f)) * (0.5 - std::abs(0.5 - f));
        const double throttle = c.throttle * (c.throttle < 0.0 ? 2000.0 : 1000.0);
        const double angle = static_cast<double>(c.drive_angle) * jMath::DEG2RAD,
                     drive = angle != 0.0 ? 3e5 / MASS : 0.0;
        const double ahead = throttle * VOLUME * k / MASS + drive * std::sin(angle);
        const double water = 24.0 * 0.3 * f * f + 0.1 * f;
        const double starboard = drive * std::cos(angle) - (4000.0 * f * length(velocity) / MASS + water) * side;
        const double up = 100.0 * VOLUME * G * f * f / MASS - G - water * c.rise;
        EXPECT_NEAR(ship.getBuoyancy()->getSubmergedRatio(), f, 1e-4);
        EXPECT_NEAR(gained.y / DT, ahead, 0.01 * std::abs(ahead) + 0.02);
        EXPECT_NEAR(gained.x / DT, starboard, 0.01 * std::abs(starboard) + 0.02);
        EXPECT_NEAR(gained.z / DT, up, 0.01 * std::abs(up) + 0.02);
        const dvec3 torque = dvec3(2000.0 * c.throttle, -3000.0 * c.rudder, 5400.0 * c.rudder) * k;
        if (steered) {
            EXPECT_LT(length(turn - torque * (DT / MOMENT)), 5e-4);
        }
        EXPECT_NEAR(body.getAngularDamping(), 1.2 * f, 1e-4);
        EXPECT_NEAR(body.getLinearDamping(), 0.1 * f, 1e-4);
        body.setEnabled(false);
    }
}

TEST_F(ShipTest, FloatsAndSailsAlikeWithFramesOfAnyLength) {
    ocean->setBeaufort(5);
    const struct {
        ObjectOcean* on;
        double seconds, sailed;  ///< metres ahead
        double tolerance;        ///< of that and of the course
        double height;           ///< most from the sea's level, metres
    } seas[] = {{nullptr, 30.0, 155.8, 0.3, 0.01}, {ocean, 3.0, 13.0, 1.0, 1.0}};
    for (const auto& sea : seas) {
        for (const std::vector<double>& series : makeFrameSeries(sea.seconds)) {
            Ship& ship = makeBallastedHull(0.5, sea.on);
            const dmat4 start = ship.getObject()->getWorldTransform();
            ship.setControlMode(Ship::STEADY);
            for (const double dt : series) {
                frames(ship, 1, dt);
                ASSERT_NEAR(heightOf(ship), 0.0, sea.height) << series[0];
            }
            const dvec3 sailed = inverse(start) * ship.getObject()->getWorldPosition();
            EXPECT_NEAR(sailed.y, sea.sailed, sea.tolerance) << series[0];
            EXPECT_NEAR(sailed.x, 0.0, sea.tolerance) << series[0];
            ship.getObject()->getBody()->setEnabled(false);
        }
    }
}

TEST_F(ShipTest, FeelsTheWavesAsFarAsTheyAreDrawnFromTheViewsHeight) {
    ocean->setBeaufort(8);
    Ship& ship = makeHull(0.0);
    ship.getObject()->getBody()->setEnabled(false);
    ship.getObject()->setWgsHPR({40.0, 4.0, 7.0});
    const EllipsoidModel globe;
    const dmat4 hull = ship.getObject()->getWorldTransform();
    for (const auto& [view, rise] : {std::pair(-5.0, 1.0), {400.0, 0.6}, {9000.0, 0.0}}) {
        engine().getCameraControl()->getNode()->setWgsPosition({LON, LAT, view});
        frames(ship, 20);
        double sum = 0.0;
        for (const dvec3& point : ship.getBuoyancy()->getPoints()) {
            const dvec3 at = hull * (point - dvec3(0.0, 0.0, 6.0));
            const double wave = globe.toWGS(ocean->getWorldPoint(at)).z * rise;
            sum += std::clamp((wave - globe.toWGS(at).z) / 12.0, 0.0, 1.0);
        }
        EXPECT_NEAR(ship.getBuoyancy()->getSubmergedRatio(), sum / 24.0, 1e-5) << view;
    }
}

TEST_F(ShipTest, BadModelsAndMissingPartsHarmNothing) {
    Ship& round = makeHull(5.0, Shape::SPHERE);
    EXPECT_EQ(countLines("Buoyancy::Buoyancy:first shape must be box"), 1);
    round.setControlMode(Ship::STEADY);
    clearLines();
    frames(round, 60);
    EXPECT_TRUE(std::isnan(round.getBuoyancy()->getSubmergedRatio()));
    EXPECT_TRUE(isFinite(round.getObject()->getWorldTransform()));
    EXPECT_EQ(lines().size(), 0u);

    Ship& dry = makeShip(makeHull(0.0).getObject(), nullptr);
    frames(dry, 30);
    EXPECT_NEAR(heightOf(dry), 0.0, 0.05) << "without an ocean the sea is level";
}

struct WakeTest : ShipTest {
    WakeTest() {
        write("data/ship.prefab", std::string(R"({ "node": )") + WAKES + "}");
        object = add(std::make_unique<ObjectPrefab>("data/ship.prefab"));
        object->setWgsPosition({LON, LAT, 0.0});
        object->setWgsHPR({40.0, 0.0, 0.0});
        ship = &makeShip(object, ocean);
        node = object->getChildByName("wakes", true);
        foam = static_cast<DecalOrtho*>(node->getChildByName("foam"));
    }

    ObjectPrefab* object;
    Ship* ship;
    Node* node;
    DecalOrtho* foam;
};

TEST_F(WakeTest, StaysLevelOnTheCourseOfARollingShip) {
    for (const dvec3& hpr : {dvec3(130, 8, -25), dvec3(300, -12, 60), dvec3(10, 0, 180)}) {
        object->setWgsHPR(hpr);
        frames(*ship, 1);
        const dvec3 level = node->getWgsHPR();
        EXPECT_NEAR(level.y, 0.0, 1e-3);
        EXPECT_NEAR(level.z, 0.0, 1e-3);
        EXPECT_NEAR(std::remainder(level.x - hpr.x, 360.0), 0.0, 1e-3);
        const dvec3 astern = node->getWorldPosition() - object->getWorldPosition();
        EXPECT_NEAR(length(astern), 40.0, 1e-6);
        EXPECT_NEAR(dot(astern, object->getWGSTransform().getZ()), 0.0, 1e-5);
    }
    object->setWgsHPR({0.0, 90.0, 0.0});
    frames(*ship, 1);
    EXPECT_TRUE(isFinite(node->getWorldTransform()));
}

TEST_F(WakeTest, FoamIsAsWideAsItsParticlesReachAndBeginsClean) {
    const jVector<ObjectParticles*>& particles = ship->getWakes()->getFoamParticles();
    ASSERT_EQ(particles.size(), 2);
    EXPECT_EQ(ship->getWakes()->getAuthored(node->getChildByName("spray")->getId())->life, 4.0f);
    frames(*ship, 9);
    EXPECT_LE(particles[0]->getParticles().size(), 1u) << "cleared in each of the first frames";
    for (int i = 0; i < 600; ++i) {
        object->setWgsPosition(object->getWgsPosition() + dvec3(0.0, 1.5e-6, 0.0));
        BoundBox box = particles[0]->getWorldParticleBox();
        box.expand(particles[1]->getWorldParticleBox());
        frames(*ship, 1);
        const double wanted = std::min(1.1 * length(box.getSize()), 512.0);
        ASSERT_NEAR(foam->getWidth(), wanted, 1e-3 * wanted) << i;
        ASSERT_EQ(foam->getWidth(), foam->getHeight());
    }
    EXPECT_GT(foam->getWidth(), 50.0f);
    object->setWgsPosition({LON + 0.1, LAT, 0.0});
    frames(*ship, 60);
    EXPECT_EQ(foam->getWidth(), 512.0f);
    ship->clearWakes();
    EXPECT_TRUE(particles[0]->getParticles().empty());
}

TEST_F(WakeTest, FoamLivesShorterInHigherSeas) {
    const ObjectParticles& particles = *ship->getWakes()->getFoamParticles()[1];
    for (const auto& [beaufort, life] : {std::pair(0, 30.0f), {4, 20.0f}, {9, 7.5f}, {99, 0.0f}, {0, 30.0f}}) {
        ocean->setBeaufort(beaufort);
        frames(*ship, 1);
        EXPECT_NEAR(particles.getLife(), life, 1e-4) << beaufort;
    }
    ship->getWakes()->setFoamLife(6.0f);
    frames(*ship, 1);
    EXPECT_NEAR(particles.getLife(), 6.0f, 1e-5);
}

}  // namespace
