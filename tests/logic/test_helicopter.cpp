// The helicopter: what its keys do, what turns and flashes, its limits, and a flight from lift-off to landing.
#include "HelicopterWorld.h"

namespace {

constexpr auto X = dvec3(1, 0, 0), Y = dvec3(0, 1, 0), Z = dvec3(0, 0, 1);

TEST_F(HelicopterTest, KeysMoveTheInputsAndEachIsLetGoInItsOwnWay) {
    make();
    const struct {
        const char* held;
        int frames;  ///< of 0.1 s
        bool flight;
        float decay, collective, pitch, roll, yaw;
    } rows[] = {{"rwaq", 2, true, 1.0f, 0.006f, 0.3f, 0.3f, 0.03f},
                {"", 1, true, 1.0f, 0.006f, 0.015f, 0.0015f, 0.00015f},
                {"", 1, true, 0.5f, 0.003f, 0.00075f, 7.5e-6f, 7.5e-7f},
                {"", 1, false, -1.0f, -0.003f, 3.75e-5f, 0.0f, 0.0f},
                {"r", 1, false, 1.0f, 0.003f, 0.0f, 0.0f, 0.0f},
                {"f", 2, false, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f},
                {"rfwsadqe", 1, true, 1.0f, 0.003f, 0.15f, 0.15f, 0.015f},
                {"sde", 2, true, 1.0f, 0.003f, -0.15f, -0.15f, -0.015f},
                {"wrqa", 400, true, 1.0f, 1.0f, 1.0f, 7.0f, 1.0f},
                {"sfed", 700, true, 1.0f, 0.0f, -1.0f, -7.0f, -1.0f}};
    for (const auto& row : rows) {
        hold(row.held);
        heli->setCollectiveDecay(row.decay);
        for (int i = 0; i < row.frames; ++i) step(0.1, row.flight);
        const float tolerance = row.frames > 2 ? 1e-5f : 1e-7f;
        EXPECT_NEAR(heli->getCollective(), row.collective, tolerance) << row.held;
        EXPECT_NEAR(heli->getPitchInput(), row.pitch, 3e-6f) << row.held;
        EXPECT_NEAR(heli->getRollInput(), row.roll, 1e-6f) << row.held;
        EXPECT_NEAR(heli->getYawInput(), row.yaw, tolerance) << row.held;
    }
}

TEST_F(HelicopterTest, RotorsTurnTiltAndBlur) {
    make();
    for (const float speed : {49.99f, 50.0f, 0.0f}) {
        heli->setRotorSpeed(speed);
        heli->updateFlight(0.01f);
        for (const char* name : {"wing_mesh", "tail_mesh", "wing_plane", "tail_plane"}) {
            const bool disc = std::strstr(name, "plane") != nullptr;
            EXPECT_EQ(part(name)->isEnabled(), disc == (speed >= 50.0f)) << name << " " << speed;
        }
    }
    const auto in_model = [this](const char* name) {
        return inverse(heli->getModel()->getWorldTransform()) * part(name)->getWorldTransform();
    };
    const dmat4 main = in_model("wing_mesh"), tail = in_model("tail");
    heli->setRotorSpeed(30.0f);
    heli->updateFlight(0.01f);
    const dmat4 turned = inverse(main) * in_model("wing_mesh");
    EXPECT_LT(length(turned.x - dquat(Z, 30.0) * X), 1e-6) << "anticlockwise from above";
    EXPECT_LT(length(rotate(inverse(tail), in_model("tail").y) - dquat(X, 30.0) * Y), 1e-6);

    hold("wa");
    for (int i = 0; i < 7; ++i) step(0.1);
    heli->updateFlight(0.1f);
    const dvec3 disc = in_model("wing_mesh").z;
    EXPECT_NEAR(std::asin(disc.y) * jMath::RAD2DEG, 5.0, 0.1) << "ahead with a full stick";
    EXPECT_NEAR(std::asin(disc.x) * jMath::RAD2DEG, -5.25, 0.1) << "left with a roll input of 1.05";

    hold("r");
    while (heli->getCollective() < 0.02f) step(0.1);
    heli->updateFlight(1.0f / 60.0f);
    EXPECT_NEAR(heli->getRotorSpeed(), 600.0f * heli->getCollective(), 1e-3f);
}

TEST_F(HelicopterTest, TheLampFlashesAndTheWipersSweep) {
    make();
    auto* const lamp = part("anticollision_tail_light")->asObject();
    const auto glow = [](Object* object) {
        const vec4* const value = object->getSurfaceMaterial(0)->getParameter("density");
        return value ? value->x : -1.0f;
    };
    const struct {
        float dt, glow;
    } flash[] = {{0.5f, 0.001f}, {0.35f, 0.001f}, {0.075f, 0.5f}, {0.06f, 0.1f}, {0.03f, 0.001f}, {0.91f, 0.5f}};
    for (const auto& row : flash) {
        heli->updateFlight(row.dt);
        EXPECT_NEAR(glow(lamp), row.glow, 1e-5f) << row.dt;
    }
    EXPECT_EQ(glow(part("lens")->asObject()), -1.0f) << "its material is its own";
    heli->toggleLight();
    EXPECT_FALSE(part("front_proj")->isEnabled());

    const auto third = [this](const char* name) { return part(name)->getHPR().z; };
    EXPECT_NEAR(third("wiper_left"), 67.56119 - 90.70399, 1e-6) << "parked";
    heli->setWipersOn(true);
    for (int i = 1; i <= 22; ++i) {
        step(0.1);
        const double outward = i <= 10 ? 0.1 * i : i <= 20 ? 2.0 - 0.1 * i : 0.1 * i - 2.0;  // to and fro in 2 s
        EXPECT_NEAR(third("wiper_left"), outward * 67.56119 - 90.70399, 1e-4) << i;
        EXPECT_NEAR(third("wiper_right"), 90.70399 - outward * 67.56119, 1e-4) << i;
    }
    EXPECT_LT(length(part("wiper_left")->getHPR() - dvec3(5, 35, third("wiper_left"))), 1e-6);
}

TEST_F(HelicopterTest, TiltsAreLimitedInTheLocalFrameAndLevelledWhenTheStickIsFree) {
    make();
    const struct {
        const char* held;
        double x, y, then_x, then_y;  ///< degrees: nose down, left side down
    } rows[] = {{"", 40, 0, 24.5, 0},  {"", -40, -30, -24.5, -16.66}, {"", 10, 5, 9.8, 4.9},       {"w", 10, 5, 9.8, 5},
                {"a", 10, 5, 10, 4.9}, {"aw", 30, 30, 25, 17},        {"d", -24, -16, -24, -15.68}};
    const dmat4 local = engine().getEllipsoid().getWGSTransform(engine().getEllipsoid().toWorld(PLACE));
    for (const double heading : {0.0, 77.0, -160.0}) {
        for (const auto& row : rows) {
            const auto at = [&](double x, double y) {
                return dmat4((dquat(Z, heading) * dquat(Y, -y) * dquat(X, -x)).getMat3(), dvec3());
            };
            hold("");
            for (int i = 0; i < 10; ++i) step();
            hold(row.held);
            engine().beginFrame(0.1);
            heli->updateKeys(0.1f);
            heli->getModel()->setWorldTransform(local * at(row.x, row.y));
            heli->getBody()->setLinearVelocity({0.0f, 30.0f, 0.0f});
            heli->updateFlight(0.1f);
            EXPECT_LT(difference(inverse(local) * heli->getBody()->getTransform(), at(row.then_x, row.then_y)), 1e-6)
                << row.held << row.x << " " << row.y << " at " << heading;
            EXPECT_GT(length(heli->getBody()->getLinearVelocity()), 10.0f) << "it goes on";
            engine().endFrame();
        }
    }
}

TEST_F(HelicopterTest, VelocityTowardATiltFadesNearItsLimit) {
    make();
    const dmat4 local = engine().getEllipsoid().getWGSTransform(engine().getEllipsoid().toWorld(PLACE));
    const struct {
        double x, y;
        vec3 velocity;  ///< of the model
        float kept_x, kept_y;
    } rows[] = {{20, 0, {-8, 1, 3}, 0.875f, 1}, {20, 0, {8, 1, 3}, 1, 1},       {-20, 0, {8, 1, 3}, 0.875f, 1},
                {15, 0, {-8, 1, 3}, 1, 1},      {90, 0, {-8, 1, 3}, 0, 1},      {0, 12, {1, -8, 3}, 1, 0.875f},
                {0, 12, {1, 8, 3}, 1, 1},       {0, -12, {1, 8, 3}, 1, 0.875f}, {0, 30, {1, -8, 3}, 1, 0}};
    hold("wa");
    step();
    for (const auto& row : rows) {
        const dmat4 place = local * dmat4((dquat(Y, -row.y) * dquat(X, -row.x)).getMat3(), dvec3());
        heli->getModel()->setWorldTransform(place);
        heli->getBody()->setLinearVelocity(narrow(rotate(place, dvec3(row.velocity))));
        heli->updateFlight(0.01f);
        const dvec3 now = rotate(inverse(place), dvec3(heli->getBody()->getLinearVelocity()));
        const dvec3 wanted(row.velocity.x * row.kept_x, row.velocity.y * row.kept_y, row.velocity.z);
        EXPECT_LT(length(now - wanted), 1e-4) << row.x << " " << row.y << " " << row.velocity.x;
    }
}

TEST_F(HelicopterTest, AModelMayLackPartsAndAFileItsModel) {
    const int nodes = world().getNumNodes();
    hold("rwaq");
    for (const auto& [body, parts] : {std::pair("", ""), {BODY, R"("children": [ { "name": "wing_mesh" } ])"}}) {
        make(body, parts);
        heli->setWorldTransform(dmat4(dquat(X, 20.0), engine().getEllipsoid().toWorld(PLACE)));
        heli->toggleLight();
        for (int i = 0; i < 30; ++i) step();
        EXPECT_TRUE(isFinite(heli->getModel()->getWorldTransform()));
        heli.reset();
        EXPECT_EQ(world().getNumNodes(), nodes);
    }
    heli = std::make_unique<Helicopter>(&world(), "data/none.prefab");
    EXPECT_EQ(countLines("Helicopter::Helicopter: \"data/none.prefab\" can not be loaded"), 1);
    EXPECT_EQ(world().getNumNodes(), nodes);
    heli->toggleLight();
    step();
    EXPECT_EQ(heli->getBody(), nullptr);
}

/// From a level plate at 48 m, wheels 0.2 m above it.
class HelicopterFlightTest : public HelicopterTest {
protected:
    void begin() {
        writePrefab(BODY, PARTS);
        Node* const start_node = addStart();
        start_node->setWgsHPR({});
        start_node->setWgsPosition({PLACE.x, PLACE.y, 50.2});
        addPlate("deck", {PLACE.x, PLACE.y, 48.0}, 1000.0);
        start();
        fly("", 3.0);
    }
    Helicopter& craft() { return *logic().getHelicopter(); }
    Node& model() { return *craft().getModel(); }
    double height() { return model().getWgsPosition().z - 50.0; }
    /// Velocity to the east, to the north, upward.
    dvec3 velocity() {
        return rotate(inverse(model().getWGSTransform()), dvec3(craft().getBody()->getLinearVelocity()));
    }
    void fly(const std::string& held, double seconds) {
        hold(held);
        for (int i = 0; i < std::lround(60.0 * seconds); ++i) {
            frame();
            const dmat3 local = engine().getEllipsoid().getWGSTransform(model().getWorldPosition()).getMat3();
            const dvec3 tilt = toEulerXYZ(transpose(model().getWorldTransform().getMat3()) * local);
            ASSERT_TRUE(isFinite(model().getWorldTransform()));
            ASSERT_LT(std::abs(tilt.x), 27.0) << "the limit and a frame's turn";
            ASSERT_LT(std::abs(tilt.y), 19.0);
        }
    }
};

TEST_F(HelicopterFlightTest, FromLiftOffToLanding) {
    begin();
    EXPECT_NEAR(height(), 0.0, 0.02);
    EXPECT_TRUE(craft().getBody()->isFrozen());
    fly("r", 18.0);
    EXPECT_NEAR(height(), 0.0, 0.03) << "not enough lift yet";
    EXPECT_FALSE(craft().getBody()->isFrozen());
    fly("r", 3.0);
    fly("", 3.0);
    EXPECT_GT(height(), 1.5);
    fly("f", 1.0);
    fly("", 2.0);
    fly("w", 6.0);
    EXPECT_GT(velocity().y, 25.0);
    EXPECT_NEAR(model().getWgsHPR().y, -9.0, 1.0) << "nose down";
    fly("", 3.0);
    EXPECT_NEAR(model().getWgsHPR().y, 0.0, 0.5) << "levelled";
    fly("s", 4.5);
    EXPECT_LT(velocity().y, 2.0);
    fly("q", 4.0);
    EXPECT_NEAR(model().getWgsHPR().x, 349.9, 2.0) << "nose to the left";
    fly("", 2.0);
    fly("a", 1.5);
    EXPECT_LT(velocity().x, -2.0) << "to the left";
    fly("d", 1.5);
    for (const char* hard : {"a", "", "d", "", "ds", "", "aw", ""}) fly(hard, 4.0);
    EXPECT_NEAR(model().getWgsHPR().y, 0.0, 0.5) << "still in hand";

    fly("f", 1.0);
    for (int i = 0; i < 40 && height() > 0.05; ++i) fly("", 1.0);
    EXPECT_NEAR(height(), 0.0, 0.05);
    fly("f", 21.0);
    EXPECT_EQ(craft().getCollective(), 0.0f);
    EXPECT_TRUE(craft().getBody()->isFrozen()) << "it stands";
    EXPECT_NEAR(height(), 0.0, 0.02);
}

TEST_F(HelicopterFlightTest, LiftsOffAndHoversAlikeWithFramesOfAnyLength) {
    for (std::size_t i = 0; i < 4; ++i) {
        begin();
        for (const auto& [held, seconds] : {std::pair("r", 21.5), {"", 4.0}, {"f", 1.0}, {"", 4.0}}) {
            hold(held);
            const std::vector<double> series = makeFrameSeries(seconds)[i];
            for (const double dt : series) frame(dt);
        }
        EXPECT_NEAR(height(), 22.0, 0.3) << i;
        EXPECT_NEAR(velocity().z, 2.845, 0.01) << i;
        EXPECT_NEAR(craft().getCollective(), 0.615, 1e-3f) << i;
        end();
        for (const char* name : {"start_deck", "deck"}) world().removeNode(world().getNodeByName(name));
    }
}

}  // namespace
