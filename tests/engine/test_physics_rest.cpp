// Bodies at rest: creep, attachment to what moves, waking.
#include <cmath>

#include "engine/scene/ObjectTerrain.h"
#include "test_physics_scene.h"

namespace {

class PhysicsRest : public PhysicsTest {
protected:
    /// Runs until it is at rest.
    void settle(Object* object) {
        for (int i = 0; i < 600 && !object->getBodyRigid()->isFrozen(); ++i) run(1);
        ASSERT_TRUE(object->getBodyRigid()->isFrozen()) << object->getName();
    }
    /// Ground with posts about 30 m apart that rises to the east by 0.6 m a post.
    ObjectTerrain* addTerrain() {
        std::string text = "ncols 61\nnrows 61\nxllcenter 112.342\nyllcenter 16.832\ncellsize 0.0002666666667\n";
        for (int i = 0; i < 61; ++i) {
            for (int k = 0; k < 61; ++k) text += std::to_string(20.0 + 0.6 * (k - 30)) + (k == 60 ? "\n" : " ");
        }
        write("data/ground.asc", text);
        write(
            "data/ground.prj",
            "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],PRIMEM[\"Greenwich\",0],"
            "UNIT[\"degree\",0.0174532925199433]]");
        auto terrain = std::make_unique<ObjectTerrain>("data/ground.asc", "");
        EXPECT_TRUE(terrain->isLoaded());
        return add(std::move(terrain));
    }
};

TEST_F(PhysicsRest, DoesNotCreep) {
    addMesh("deck", at(0, 0, 0), makeSheet(400, 50));
    ObjectTerrain* const terrain = addTerrain();
    Object* const objects[] = {
        addBody("light", at(10, 5, 0.6)),
        addBody("ship", at(60, 5, 5.1), settings({box({20, 100, 10})}, BodySettings::DYNAMIC, 6e7f)),
        addBody("on a slope", at(-200.5, -300.2, 30.0)),
    };
    // The one on the slope lands first.
    runSeconds(4.0);
    dvec3 places[3];
    for (int i = 0; i < 3; ++i) places[i] = objects[i]->getWorldPosition();
    runSeconds(600.0);
    for (int i = 0; i < 3; ++i) EXPECT_LT(length(objects[i]->getWorldPosition() - places[i]), 1e-3) << i;
    EXPECT_NEAR(heightOf(*objects[0]), 0.5, 0.002);
    EXPECT_NEAR(heightOf(*objects[1]), 5.0, 0.002);
    const dvec3 geo = objects[2]->getWgsPosition();
    double altitude = 0.0;
    ASSERT_TRUE(terrain->getAltitudeByLonLat(geo.x, geo.y, altitude));
    EXPECT_NEAR(geo.z, altitude + 0.5, 0.003);
}

TEST_F(PhysicsRest, AParkedBodyMovesWithItsDeckAtAnyFrameLength) {
    const BodySettings plate = settings({box({60, 60, 2}, {0, 0, -1})}, BodySettings::DRIVEN);
    const BodySettings hull = settings({box({60, 60, 4}, {0, 0, -5})}, BodySettings::DYNAMIC, 1e7f);
    for (const bool driven : {true, false}) {
        for (const double frame_length : {1.0 / 240.0, 1.0 / 60.0, 0.1, 0.0}) {  // 0: of any length between
            SCOPED_TRACE((driven ? "driven " : "dynamic ") + std::to_string(frame_length));
            Object* const deck = addBody("deck", site(), driven ? plate : hull);
            if (!driven) addMesh("plates", dmat4(), makeSheet(60, 10), deck);
            deck->getBodyRigid()->setFreezable(false);
            deck->getBodyRigid()->setLinearVelocity(toWorld({15, 0, 1}));
            Object* const parked = addBody("parked", at(7, 12, 0.51));
            parked->getBodyRigid()->setLinearVelocity(toWorld({15, 0, 1}));
            const auto inDeck = [&] { return inverse(deck->getWorldTransform()) * parked->getWorldTransform(); };
            Random random(5);
            double t = 0.0, dt = 0.0;
            const auto runFrame = [&] {
                dt = frame_length > 0.0 ? frame_length : random.getDouble(1.0 / 240.0, 0.1);
                t += dt;
                const dvec3 hpr(20.0 * std::sin(0.02 * t), 2.0 * std::sin(0.4 * t), 4.0 * std::sin(0.3 * t));
                if (driven) deck->setTransform(at(15.0 * t, 0.0, 2.0 * std::sin(0.5 * t), hpr));
                if (!driven) deck->getBodyRigid()->addForce(toWorld({0, 5e6, 9.80665e7}));
                run(1, dt);
            };
            const auto sail = [&](double seconds) {
                for (const double end = t + seconds; t < end;) runFrame();
            };
            const dmat4 start = inDeck();
            sail(3.0);
            EXPECT_LT(distance(inDeck(), start), 0.1) << "carried by friction";
            ASSERT_TRUE(parked->getBodyRigid()->isFrozen());
            const dmat4 rest = inDeck();
            sail(60.0);
            EXPECT_LT(distance(inDeck(), rest), 1e-6) << "attached";
            const dvec3 before = parked->getWorldPosition();
            runFrame();
            const dvec3 velocity = (parked->getWorldPosition() - before) / dt;
            EXPECT_LT(length(dvec3(parked->getBodyRigid()->getLinearVelocity()) - velocity), 0.5);
            world().removeNode(parked);
            world().removeNode(deck);
        }
    }
}

TEST_F(PhysicsRest, WakesWhenItMust) {
    const dvec3 EAST(1, 0, 0);
    ObjectMeshStatic* deck = nullptr;
    Object* parked = nullptr;
    BodyRigid* body = nullptr;
    const struct {
        const char* what;
        Function<void()> act;
        bool wakes;
    } cases[] = {
        {"a small force", [&] { body->addForce(toWorld(EAST)); }, false},
        {"a force", [&] { body->addForce(toWorld(EAST * 5000.0)); }, true},
        {"a torque", [&] { body->addTorque(toWorld(EAST * 3000.0)); }, true},
        {"the velocity it has", [&] { body->setLinearVelocity(body->getLinearVelocity()); }, false},
        {"a velocity", [&] { body->setLinearVelocity(toWorld(EAST)); }, true},
        {"the transform it has", [&] { body->setPreserveTransform(parked->getWorldTransform()); }, false},
        {"a transform", [&] { body->setPreserveTransform(at(0, 0, 1)); }, true},
        {"a teleport", [&] { parked->setTransform(at(0, 0, 0.5)); }, true},
        {"no longer freezable", [&] { body->setFreezable(false); }, true},
        {"a mask", [&] { body->setMask(1); }, true},
        {"the deck is removed", [&] { world().removeNode(deck); }, true},
        {"the deck is no collider", [&] { deck->setCollider(false); }, true},
        {"something runs into it",
         [&] { addBody("runner", at(-2, 0, 0.52))->getBodyRigid()->setLinearVelocity(toWorld(EAST * 30.0)); }, true},
        {"something passes close by", [&] { addBody("runner", at(1.3, 0, 5)); }, false},
    };
    for (const auto& c : cases) {
        deck = addMesh("deck", at(0, 0, 0), makeSheet(40, 10));
        parked = addBody("parked", at(0, 0, 0.55));
        body = parked->getBodyRigid();
        settle(parked);
        c.act();
        bool woke = false;
        for (int i = 0; i < 6; ++i) {
            run(1);
            woke = woke || !body->isFrozen();
        }
        EXPECT_EQ(woke, c.wakes) << c.what;
        for (const char* name : {"parked", "deck", "runner"}) {
            world().removeNode(world().getNodeByName(name));
        }
    }
}

TEST_F(PhysicsRest, StacksComeToRestAndFallWithTheirBase) {
    ObjectMeshStatic* const deck = addMesh("deck", at(0, 0, 0), makeSheet(40, 10));
    Object* boxes[3];
    for (int i = 2; i >= 0; --i) boxes[i] = addBody("box", at(0, 0, 0.51 + 1.01 * i));
    for (Object* object : boxes) settle(object);
    EXPECT_NEAR(heightOf(*boxes[2]), 2.5, 0.01);
    for (int i = 1; i <= 30; ++i) {
        deck->setTransform(at(0.2 * i, 0, 0));
        run(1);
        const double east = (inverse(site()) * boxes[2]->getWorldPosition()).x;
        ASSERT_NEAR(east, 0.2 * i, 0.02) << "in the very frame in which the deck moves";
    }
    run(1);
    world().removeNode(boxes[0]);
    runSeconds(2.0);
    EXPECT_NEAR(heightOf(*boxes[2]), 1.5, 0.01);
}

}  // namespace
