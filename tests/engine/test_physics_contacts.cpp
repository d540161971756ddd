// What meets what, and who is told.
#include <optional>

#include "test_physics_scene.h"

namespace {

class PhysicsContacts : public PhysicsTest {
protected:
    /// Whether a cube dropped onto what is there stays up.
    bool holdsUp(const BodySettings& s) {
        Object* const cube = addBody("cube", at(0, 0, 0.7), s);
        runSeconds(1.0);
        const bool held = heightOf(*cube) > 0.4;
        world().removeNode(cube);
        return held;
    }
    static BodySettings cube(int group = 1, int mask = -1) {
        BodySettings s = settings({box({1, 1, 1})});
        s.group = group;
        s.mask = mask;
        return s;
    }
    /// Moves an object's node northward at 300 m/s for half a second through the site.
    void fly(Object* object, double dt, const Function<void(double t)>& meanwhile = {}) {
        object->setTransform(at(0, -75, 5));
        run(1, dt);
        for (double t = dt; t < 0.5; t += dt) {
            object->setTransform(at(0, -75 + 300.0 * t, 5));
            if (meanwhile) meanwhile(t);
            run(1, dt);
        }
    }
};

TEST_F(PhysicsContacts, GroupsMasksAndFlagsDecideWhatIsMet) {
    ObjectMeshStatic* const deck = addMesh("deck", at(0, 0, 0), makeSheet(20, 4));
    EXPECT_TRUE(holdsUp(cube()));
    EXPECT_FALSE(holdsUp(cube(1, 2))) << "colliders are group 1";
    deck->setCollider(false);
    EXPECT_FALSE(holdsUp(cube()));

    BodySettings plate = settings({box({20, 20, 1}, {0, 0, -0.5})}, BodySettings::STATIC);
    plate.group = 2;
    Object* const ground = addBody("ground", at(0, 0, 0), plate);
    EXPECT_TRUE(holdsUp(cube(1, 2)));
    EXPECT_FALSE(holdsUp(cube(1, 1)));
    plate.mask = 4;
    ground->setBody(plate);
    EXPECT_FALSE(holdsUp(cube(1, 2))) << "both masks must allow it";
    ground->getBodyRigid()->setMask(1);
    EXPECT_TRUE(holdsUp(cube(1, 2)));
    Object* const late = addBody("late", at(0, 0, 0.7), cube(1, 2));
    runSeconds(1.5);
    late->getBodyRigid()->setMask(8);
    runSeconds(1.0);
    EXPECT_LT(heightOf(*late), -1.0) << "a mask set at rest counts at once";
}

TEST_F(PhysicsContacts, ABodyIgnoresItsOwnColliders) {
    auto prefab = std::make_unique<ObjectPrefab>();
    prefab->setName("cart");
    prefab->setTransform(at(0, 0, 20));
    prefab->setBody(cube());
    addMesh("floor", dmat4::translation({0, 0, -1}), makeSheet(10), prefab.get());
    Object* const cart = add(std::move(prefab));
    Object* const rider = addBody("rider", at(3, 0, 20));
    ContactLog log(cart->getBody());
    runSeconds(1.0);
    EXPECT_NEAR(heightOf(*cart), 20.0 - 0.5 * 9.80665, 0.1);
    EXPECT_TRUE(log.shapes.empty());
    EXPECT_GT(heightOf(*rider), heightOf(*cart) - 0.6) << "others do meet them";
}

TEST_F(PhysicsContacts, WhatIsExcludedIsNotMetAndNorIsWhatHangsBelow) {
    BodySettings driven = settings({box({1, 4, 1})}, BodySettings::DRIVEN);
    for (const bool excludes : {false, true}) {
        Object* const ship = addBody("ship", at(0, 0, 5), settings({box({4, 4, 4})}, BodySettings::STATIC));
        addMesh("mast", dmat4(dquat(dvec3(0, 90, 0)), dvec3(0, 30, 0)), makeSheet(20), ship);
        Object* const missile = addBody("missile", at(0, -75, 5), driven);
        if (excludes) missile->getBodyRigid()->setExcluded(ship);
        ContactLog log(missile->getBody());
        fly(missile, 1.0 / 60.0);
        EXPECT_EQ(log.shapes.size(), excludes ? 0u : 2u);
        world().removeNode(ship);
        fly(missile, 1.0 / 60.0);
        EXPECT_EQ(log.shapes.size(), excludes ? 0u : 2u) << "it may go before the body";
        world().removeNode(missile);
    }
}

TEST_F(PhysicsContacts, ScaledAndMirroredMeshesHold) {
    for (const dvec3 factors : {dvec3(4, 4, 1), dvec3(-4, 2, 1), dvec3(4, 4, -3)}) {
        ObjectMeshStatic* const deck =
            addMesh("deck", composeTransform(site().t, dquat(site().getMat3()), factors), makeSheet(2));
        addBody("cube", at(1.8, 0, 0.7));
        EXPECT_TRUE(holdsUp(cube())) << factors.x << " " << factors.z;
        EXPECT_GT(heightOf(*world().getNodeByName("cube")), 0.4) << factors.x << " " << factors.z;
        world().removeNode(world().getNodeByName("cube"));
        world().removeNode(deck);
    }
}

TEST_F(PhysicsContacts, ToldOnceForEachShapeThatBeginsToTouch) {
    addMesh("deck", at(0, 0, 0), makeSheet(20, 4));
    const jVector<Shape> legs{box({0.2f, 0.2f, 0.2f}, {-1, 0, -0.5}, "left"), box({2.4f, 1, 0.6f}, {}, "top"),
                              box({0.2f, 0.2f, 0.2f}, {1, 0, -0.5}, "right")};
    Object* const table = addBody("table", at(0, 0, 0.8), settings(legs));
    ContactLog log(table->getBody());
    runSeconds(3.0);
    std::sort(log.shapes.begin(), log.shapes.end());
    EXPECT_EQ(log.shapes, (std::vector<int>{0, 2})) << "not while it goes on touching";
    log.shapes.clear();
    table->getBodyRigid()->setLinearVelocity(toWorld({0, 0, 3}));
    runSeconds(2.0);
    std::sort(log.shapes.begin(), log.shapes.end());
    EXPECT_EQ(log.shapes, (std::vector<int>{0, 2})) << "again after a jump";
}

TEST_F(PhysicsContacts, AFastBodyDoesNotPassThrough) {
    struct Case {
        const char* what;
        Function<Object*()> make;
    };
    const vec3 thin(40.0f, 0.05f, 40.0f);
    const Case cases[] = {
        {"mesh",
         [&] {
             return addMesh("wall", at(0, 20, 0, {0, 90, 0}), makeSheet(40, 10));
         }},
        {"driven", [&] { return addBody("wall", at(0, 20, 0), settings({box(thin)}, BodySettings::DRIVEN)); }},
        {"heavy", [&] { return addBody("wall", at(0, 20, 0), settings({box(thin)}, BodySettings::DYNAMIC, 1e7f)); }},
    };
    for (const Case& c : cases) {
        for (const double dt : {1.0 / 60.0, 0.1}) {
            Object* const wall = c.make();
            const jVector<Shape> shapes{box({1, 4, 1}), box({6, 1, 0.4f})};
            Object* const jet = addBody("jet", at(0, -20, 0), settings(shapes));
            ContactLog log(jet->getBody());
            jet->getBodyRigid()->setLinearVelocity(toWorld({0, 300, 0}));
            runSeconds(0.5, dt);
            EXPECT_LT((inverse(site()) * jet->getWorldPosition()).y, 20.0) << c.what << dt;
            EXPECT_FALSE(log.shapes.empty()) << c.what << dt;
            world().removeNode(jet);
            world().removeNode(wall);
        }
    }
}

TEST_F(PhysicsContacts, WhatItsNodeMovesMeetsAllOnItsWay) {
    world().getPhysics()->setGravity({});
    const BodySettings driven = settings({box({2, 2, 2})}, BodySettings::DRIVEN);
    const auto still = [](double) {};
    struct Case {
        const char* what;
        Function<Object*()> make;
        Function<void(double t)> move;
        int meetings;
    };
    Object* target = nullptr;
    const Case cases[] = {
        {"mesh",
         [&] {
             return addMesh("target", at(0, 3, 0, {0, 90, 0}), makeSheet(40, 10));
         },
         still, 1},
        {"mesh that lets through",
         [&] {
             Object* const mesh = addMesh("target", at(0, 3, 0, {0, 90, 0}), makeSheet(40, 10));
             mesh->setCollider(false);
             return mesh;
         },
         still, 0},
        {"dynamic", [&] { return addBody("target", at(0, 3, 5)); }, still, 1},
        // Glides from the side; they meet at a quarter of a second.
        {"driven target", [&] { return addBody("target", at(-25, 0, 5), driven); },
         [&](double t) { target->setTransform(at(-25 + 100.0 * t, 0, 5)); }, 1},
        {"driven target that is elsewhere by then", [&] { return addBody("target", at(-25, 0, 5), driven); },
         [&](double t) { target->setTransform(at(-25 + 60.0 * t, 0, 5)); }, 0},
    };
    for (const Case& c : cases) {
        for (const double dt : {1.0 / 60.0, 0.1}) {
            for (const auto kind : {BodySettings::DRIVEN, BodySettings::DYNAMIC}) {
                target = c.make();
                Object* const missile = addBody("missile", at(0, -75, 5), settings({box({0.3f, 2, 0.3f})}, kind));
                ContactLog log(missile->getBody());
                std::optional<ContactLog> hit;
                if (target->getBody()) hit.emplace(target->getBody());
                fly(missile, dt, c.move);
                EXPECT_EQ(static_cast<int>(log.shapes.size()), c.meetings) << c.what << " " << dt << " " << kind;
                EXPECT_TRUE(!hit || hit->shapes.size() == log.shapes.size()) << c.what << ": the one hit is told";
                log.shapes.clear();
                missile->setTransform(at(0, -3000, 5));
                run(1);
                missile->setTransform(at(0, 3000, 5));
                run(1);
                EXPECT_TRUE(log.shapes.empty()) << c.what << ": a teleport meets nothing on its way";
                world().removeNode(missile);
                world().removeNode(target);
            }
        }
    }
}

TEST_F(PhysicsContacts, InnerEdgesDoNotStopWhatSlides) {
    const jVector<Shape> jet{box({1.5f, 15, 1.5f}, {0, 0, 1.6}), box({0.3f, 0.3f, 0.6f}, {0, 5, 0.3}),
                             box({0.3f, 0.3f, 0.6f}, {-2, -1, 0.3}), box({0.3f, 0.3f, 0.6f}, {2, -1, 0.3})};
    struct Case {
        const char* what;
        jVector<Shape> shapes;
        float center;  // of mass, metres up
        double fall;   // m/s
    };
    const Case cases[] = {{"box", {box({1, 2, 0.6f}, {0, 0, 0.3})}, 0.3f, 0.0}, {"landing jet", jet, 1.0f, 6.0}};
    addMesh("runway", at(0, 0, 0), makeSheet(1000, 200));
    for (const Case& c : cases) {
        BodySettings s = settings(c.shapes);
        s.friction = 0.0f;
        s.center_of_mass = vec3(0.0f, 0.0f, c.center);
        Object* const slider = addBody("slider", at(0.3, -450.1, c.fall * 0.2 + 0.001), s);
        slider->getBodyRigid()->setLinearVelocity(toWorld({0, 70, -c.fall}));
        double highest = 0.0;
        for (int i = 0; i < 600; ++i) {
            run(1);
            highest = std::fmax(highest, i > 60 ? heightOf(*slider) : 0.0);
        }
        const vec3 velocity = slider->getBodyRigid()->getLinearVelocity();
        EXPECT_NEAR(toLocal(velocity).y, 70.0, 0.05) << c.what;
        EXPECT_LT(highest, c.fall > 0.0 ? 0.15 : 0.01) << c.what;
        world().removeNode(slider);
    }
}

TEST_F(PhysicsContacts, CallbacksMaySwitchOffAndRemove) {
    addMesh("deck", at(0, 0, 0), makeSheet(20, 4));
    const jVector<Shape> legs{box({1, 1, 1}, {-2, 0, 0}), box({1, 1, 1}, {2, 0, 0})};
    for (int act = 0; act < 3; ++act) {
        Object* const first = addBody("first", at(0, 0, 0.6), settings(legs));
        Object* const second = addBody("second", at(0, 5, 0.6), settings(legs));
        ContactLog a(first->getBody()), b(second->getBody());
        a.then = [&] {
            if (act == 0) first->getBody()->setEnabled(false);
            if (act == 1) world().removeNode(world().getNodeByName("first"));
            if (act == 2) world().removeNode(world().getNodeByName("second"));
        };
        runSeconds(1.0);
        EXPECT_EQ(a.shapes.size(), act == 2 ? 2u : 1u) << act;
        EXPECT_EQ(b.shapes.size(), act == 2 ? 0u : 2u) << act;
        EXPECT_TRUE(act != 0 || !first->getBody()->isEnabled());
        world().removeNode(world().getNodeByName("first"));
        world().removeNode(world().getNodeByName("second"));
    }
}

}  // namespace
