// How bodies move by forces, how they are placed, and what is refused.
#include <cmath>
#include <cstring>

#include "test_physics_scene.h"

namespace {

constexpr double G = 9.80665;
constexpr float NONE = NAN;

class PhysicsMotion : public PhysicsTest {
protected:
    /// A cube that keeps its height: its weight is taken off.
    Object* addFloating(const jString& name, const dmat4& place) {
        world().getPhysics()->setGravity({});
        return addBody(name, place);
    }
};

TEST_F(PhysicsMotion, FallsAlongTheLocalVertical) {
    const EllipsoidModel globe;
    for (const dvec3 geo : {dvec3(112.35, 16.84, 1000.0), dvec3(-60.0, -75.0, 1000.0), dvec3(10.0, 45.0, 9000.0)}) {
        Object* const stone = addBody("stone", globe.getWGSTransform(globe.toWorld(geo)));
        const dvec3 start = stone->getWorldPosition();
        const double dt = 1.0 / 60.0, seconds = 4.0;
        runSeconds(seconds, dt);
        const dvec3 fall = start - stone->getWorldPosition();
        EXPECT_NEAR(length(fall), 0.5 * G * seconds * seconds, 0.5 * G * seconds * dt + 1e-4);
        EXPECT_LT(length(fall - globe.getUp(start) * length(fall)), 1e-3);
        EXPECT_NEAR(dot(globe.getUp(start), dvec3(stone->getBodyRigid()->getLinearVelocity())), -G * seconds, 1e-3);
        world().removeNode(stone);
    }
}

TEST_F(PhysicsMotion, DampingDecaysAndLetsTorqueTurn) {
    for (const double dt : {1.0 / 240.0, 1.0 / 60.0, 0.1}) {
        Object* const cube = addFloating("cube", at(0, 0, 10));
        BodyRigid& body = *cube->getBodyRigid();
        body.setLinearDamping(3.5f);
        body.setAngularDamping(3.5f);
        body.setLinearVelocity(toWorld({8.0, 0.0, 0.0}));
        const double inertia = 1000.0 / 6.0, torque = 500.0;
        const int frames = static_cast<int>(std::lround(4.0 / dt));
        for (int i = 0; i < frames; ++i) {
            body.addTorque(toWorld({0.0, 0.0, torque}));
            run(1, dt);
            if (i + 1 != frames / 4) continue;
            EXPECT_NEAR(toLocal(body.getLinearVelocity()).x, 8.0 * std::exp(-3.5), 1e-5) << dt;
        }
        EXPECT_NEAR(toLocal(body.getAngularVelocity()).z, torque / (inertia * 3.5), 1e-5) << dt;
        world().removeNode(cube);
    }
}

TEST_F(PhysicsMotion, TurnsAboutItsCentreOfMassWhileAForceLasts) {
    world().getPhysics()->setGravity({});
    BodySettings s = settings({box({1, 1, 1})});
    s.center_of_mass = vec3(2.0f, 0.0f, 0.0f);
    Object* const object = addBody("body", at(3, 4, 50, {30, 20, 10}), s);
    run(1);
    EXPECT_LT(distance(object->getWorldTransform(), at(3, 4, 50, {30, 20, 10})), 1e-8) << "the pose comes back";
    // Lifted at the object's origin, it turns about +Y, and its centre of mass rises straight.
    object->setTransform(at(0, 0, 50));
    const BodyRigid& body = *object->getBodyRigid();
    object->getBodyRigid()->addWorldForce(object->getWorldPosition(), toWorld({0.0, 0.0, 6000.0}));
    run(30);
    EXPECT_GT(toLocal(body.getAngularVelocity()).y, 0.01);
    EXPECT_NEAR(toLocal(body.getLinearVelocity()).z, 0.1, 1e-6) << "it lasts one frame";
    const dvec3 lever = rotate(object->getWorldTransform(), dvec3(-2.0, 0.0, 0.0));
    const dvec3 expected = dvec3(body.getLinearVelocity()) + cross(dvec3(body.getAngularVelocity()), lever);
    EXPECT_LT(length(dvec3(body.getWorldVelocity(object->getWorldPosition())) - expected), 1e-6);
}

TEST_F(PhysicsMotion, TeleportsStopAndPreservingMovesDoNot) {
    Object* const cube = addFloating("cube", at(0, 0, 10));
    BodyRigid& body = *cube->getBodyRigid();
    const auto start = [&] {
        body.setLinearVelocity(toWorld({5.0, 0.0, 0.0}));
        body.setAngularVelocity(toWorld({0.0, 0.0, 1.0}));
    };
    start();
    body.setPreserveTransform(at(0, 100, 10));
    EXPECT_LT(distance(body.getTransform(), at(0, 100, 10)), 1e-8);
    run(1);
    EXPECT_NEAR((inverse(site()) * cube->getWorldPosition()).x, 5.0 / 60.0, 1e-5);
    start();
    body.setTransform(at(0, 0, 20));
    EXPECT_EQ(length(body.getLinearVelocity()) + length(body.getAngularVelocity()), 0.0f);
    // A body whose node is set every frame stays there; afterwards it falls.
    world().getPhysics()->setGravity({0, 0, -9.8f});
    for (int i = 0; i < 30; ++i) {
        cube->setTransform(at(0.1 * i, 0, 20));
        run(1);
        EXPECT_EQ(cube->getWorldTransform(), at(0.1 * i, 0, 20));
        EXPECT_EQ(length(body.getLinearVelocity()), 0.0f);
    }
    run(60);
    EXPECT_NEAR(heightOf(*cube), 20.0 - 4.9, 0.2);
}

TEST_F(PhysicsMotion, ABodyBelowAMovingNodeFollowsIt) {
    Node* const group = addNode("group");
    group->setTransform(at(0, 0, 50));
    Object* const carrier = addBody("carrier", at(0, 0, 100), settings({box({1, 1, 1})}, BodySettings::DRIVEN));
    Object* const grouped = addBody("grouped", dmat4::translation({0, 0, 5}), settings({box({1, 1, 1})}), group);
    Object* const nested = addBody("nested", dmat4::translation({0, 0, 5}), settings({box({1, 1, 1})}), carrier);
    for (int i = 1; i <= 60; ++i) {
        group->setTransform(at(0.5 * i, 0, 50));
        carrier->setTransform(at(0.5 * i, 0, 100));
        run(1);
    }
    EXPECT_LT(distance(grouped->getWorldTransform(), at(30, 0, 55)), 1e-6);
    EXPECT_LT(distance(nested->getWorldTransform(), at(30, 0, 105)), 1e-6);
    EXPECT_NEAR(toLocal(nested->getBodyRigid()->getLinearVelocity()).x, 30.0, 1e-4);
    runSeconds(1.0);
    EXPECT_LT(heightOf(*grouped), 51.0) << "falls once its group is at rest";
    EXPECT_NEAR(heightOf(*nested), 105.0, 1e-6);
}

TEST_F(PhysicsMotion, DisabledAndHiddenBodiesDoNotMove) {
    Object* const objects[] = {addBody("disabled", at(0, 0, 50)), addBody("hidden", at(10, 0, 50))};
    objects[0]->getBody()->setEnabled(false);
    objects[1]->setEnabled(false);
    run(30);
    for (int i = 0; i < 2; ++i) EXPECT_LT(distance(objects[i]->getWorldTransform(), at(10 * i, 0, 50)), 1e-8) << i;
}

TEST_F(PhysicsMotion, RefusesWhatCannotBe) {
    const std::pair<const char*, Function<void(BodySettings&)>> cases[] = {
        {"no shape", [](BodySettings& s) { s.shapes.clear(); }},
        {"no mass", [](BodySettings& s) { s.mass = 0.0f; }},
        {"flat box", [](BodySettings& s) { s.shapes[0].size = vec3(1, 0, 1); }},
        {"unknown shape", [](BodySettings& s) { s.shapes[0].type = static_cast<Shape::Type>(7); }},
        {"position is no number", [](BodySettings& s) { s.shapes[0].transform.t.x = NAN; }},
        {"centre is no number", [](BodySettings& s) { s.center_of_mass.x = NONE; }},
        {"negative inertia", [](BodySettings& s) { s.inertia.x = -1.0f; }},
    };
    Object* const object = addFloating("fragile", at(0, 0, 10));
    for (const auto& [what, spoil] : cases) {
        ASSERT_TRUE(object->setBody(settings({box({1, 1, 1})})));
        BodySettings s = settings({box({1, 1, 1})});
        spoil(s);
        clearLines();
        EXPECT_FALSE(object->setBody(s)) << what;
        EXPECT_EQ(object->getBody(), nullptr) << what;
        EXPECT_EQ(countLines("fragile"), 1) << what;
        run(1);
    }
    ASSERT_TRUE(object->setBody(settings({box({1, 1, 1})})));
    BodyRigid& body = *object->getBodyRigid();
    const vec3 bad(NONE, 0, 0), good(1, 0, 0);
    clearLines();
    body.addForce(bad);
    body.addForce(good, vec3(0, INFINITY, 0));
    body.addWorldForce(dvec3(NAN, 0, 0), good);
    body.addTorque(bad);
    body.setLinearVelocity(bad);
    body.setAngularVelocity(bad);
    body.setPreserveTransform(dmat4::translation({NAN, 0, 0}));
    EXPECT_EQ(countLines("fragile"), 7);
    run(2);
    EXPECT_LT(distance(object->getWorldTransform(), at(0, 0, 10)), 1e-9);
}

TEST_F(PhysicsMotion, SurvivesForcesBeyondAllMeasure) {
    addMesh("deck", at(0, 0, 0), makeSheet(40, 4));
    Object* const cube = addBody("cube", at(0, 0, 0.6));
    for (const float force : {1e13f, 1e30f, 3e38f}) {
        for (int i = 0; i < 3; ++i) {
            cube->getBodyRigid()->addForce({force, force, -force});
            cube->getBodyRigid()->addTorque({force, -force, force});
            run(1);
        }
        EXPECT_LT(length(cube->getWorldPosition() - site().t), 1e4) << force;
        EXPECT_GT(countLines("cube"), 0) << force;
    }
    cube->setTransform(at(0, 0, 0.6));
    runSeconds(2.0);
    EXPECT_NEAR(heightOf(*cube), 0.5, 0.002);
}

/// A heap of bodies on a deck that moves under them.
TEST_F(PhysicsMotion, SameSequenceGivesSameBits) {
    const auto runOnce = [this] {
        ObjectMeshStatic* const deck = addMesh("deck", at(0, 0, 0), makeSheet(40, 8));
        std::vector<Object*> heap;
        for (int i = 0; i < 12; ++i) {
            heap.push_back(addBody("heap", at(0.3 * (i % 3), 0.2 * (i % 4), 1.0 + 1.1 * i, {7.0 * i, 3.0 * i, 0})));
        }
        std::vector<dmat4> places;
        for (int i = 0; i < 400; ++i) {
            deck->setTransform(at(0.05 * i, 0, 0.3 * std::sin(0.05 * i)));
            heap[static_cast<std::size_t>(i % 12)]->getBodyRigid()->addForce(toWorld({500.0, 0.0, 0.0}));
            run(1, i % 7 == 0 ? 0.05 : 1.0 / 60.0);
        }
        for (Object* object : heap) places.push_back(object->getWorldTransform());
        for (Object* object : heap) world().removeNode(object);
        world().removeNode(deck);
        return places;
    };
    const std::vector<dmat4> first = runOnce(), second = runOnce();
    EXPECT_EQ(std::memcmp(first.data(), second.data(), first.size() * sizeof first[0]), 0);
}

}  // namespace
