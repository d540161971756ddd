// Collisions: filters, sweeps of fast bodies, contact callbacks.
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
}

TEST_F(PhysicsContacts, ABodyIgnoresItsOwnColliders) {
    auto prefab = std::make_unique<ObjectPrefab>();
    prefab->setName("cart");
    prefab->setTransform(at(0, 0, 20));
    prefab->setBody(cube());
    addMesh("floor", dmat4::translation({0, 0, -1}), makeSheet(10), prefab.get());
    Object* const cart = add(std::move(prefab));
    Object* const rider = addBody("rider", at(3, 0, 20));
    runSeconds(1.0);
    EXPECT_NEAR(heightOf(*cart), 20.0 - 0.5 * 9.80665, 0.1);
    EXPECT_GT(heightOf(*rider), heightOf(*cart) - 0.6) << "others do meet them";
}

TEST_F(PhysicsContacts, ScaledAndMirroredMeshesHold) {
    for (const dvec3 factors : {dvec3(4, 4, 1), dvec3(-4, 2, 1), dvec3(4, 4, -3)}) {
        ObjectMeshStatic* const deck =
            addMesh("deck", composeTransform(site().t, dquat(site().getMat3()), factors), makeSheet(2));
        Object* const edge_cube = addBody("edge", at(1.8, 0, 0.7));
        EXPECT_TRUE(holdsUp(cube())) << factors.x << " " << factors.z;
        EXPECT_GT(heightOf(*edge_cube), 0.4) << factors.x << " " << factors.z;
        world().removeNode(edge_cube);
        world().removeNode(deck);
    }
}

TEST_F(PhysicsContacts, ReportedOnceForEachShapeThatBeginsToTouch) {
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

TEST_F(PhysicsContacts, FastBodiesMeetWhatIsInTheirPath) {
    world().getPhysics()->setGravity({});
    const BodySettings driven = settings({box({2, 2, 2})}, BodySettings::DRIVEN);
    const auto addWall = [&](bool collider) {
        ObjectMeshStatic* const mesh = addMesh("target", at(0, 3, 0, {0, 90, 0}), makeSheet(40, 10));
        mesh->setCollider(collider);
        return mesh;
    };
    const struct {
        const char* what;
        Function<Object*()> make;
        double east;  ///< m/s with which its node moves it
        bool contact;
        bool excluded = false;
    } cases[] = {
        {"mesh", [&] { return addWall(true); }, 0, true},
        {"no collider", [&] { return addWall(false); }, 0, false},
        {"dynamic",
         [&] {
             return addBody("target", at(0, 3, 5), settings({box({9, 0.05f, 9})}, BodySettings::DYNAMIC, 1e7f));
         },
         0, true},
        {"excluded, with its child",
         [&] {
             Object* const ship = addBody("target", at(0, 3, 5), settings({box({4, 4, 4})}, BodySettings::STATIC));
             addMesh("mast", dmat4(dquat(dvec3(0, 90, 0)), dvec3(0, 30, 0)), makeSheet(20), ship);
             return ship;
         },
         0, false, true},
        // Both are at the site after a quarter of a second.
        {"crossing", [&] { return addBody("target", at(-25, 0, 5), driven); }, 100, true},
        {"crossing later", [&] { return addBody("target", at(-25, 0, 5), driven); }, 60, false},
    };
    enum Flyer { DRIVEN, DYNAMIC_BY_NODE, DYNAMIC };
    for (const auto& c : cases) {
        for (const double dt : {1.0 / 60.0, 0.1}) {
            for (const Flyer flyer : {DRIVEN, DYNAMIC_BY_NODE, DYNAMIC}) {
                if (flyer == DYNAMIC && c.east > 0.0) continue;  // paths are compared in time only if nodes move both
                Object* const target = c.make();
                const auto kind = flyer == DRIVEN ? BodySettings::DRIVEN : BodySettings::DYNAMIC;
                Object* const missile = addBody("missile", at(0, -75, 5), settings({box({0.3f, 2, 0.3f})}, kind));
                ContactLog log(missile->getBody());
                if (c.excluded) missile->getBodyRigid()->setExcluded(target);
                std::optional<ContactLog> hit;
                if (target->getBody()) hit.emplace(target->getBody());
                run(1, dt);
                if (flyer == DYNAMIC) missile->getBodyRigid()->setLinearVelocity(toWorld({0, 300, 0}));
                for (double t = dt; t < 0.5; t += dt) {
                    if (flyer != DYNAMIC) missile->setTransform(at(0, -75 + 300.0 * t, 5));
                    if (c.east > 0.0) target->setTransform(at(-25 + c.east * t, 0, 5));
                    run(1, dt);
                }
                EXPECT_EQ(log.shapes.empty(), !c.contact) << c.what << " " << dt << " " << flyer;
                EXPECT_TRUE(flyer == DYNAMIC || log.shapes.size() <= 1u) << c.what << ": reported once";
                EXPECT_TRUE(!hit || hit->shapes.size() == log.shapes.size()) << c.what << ": both bodies report it";
                if (flyer == DYNAMIC && c.contact) {
                    EXPECT_LT((inverse(site()) * missile->getWorldPosition()).y, 3.0) << c.what << dt;
                }
                log.shapes.clear();
                for (const double north : {-3000, 3000}) {
                    missile->setTransform(at(0, north, 5));
                    run(1);
                }
                EXPECT_TRUE(log.shapes.empty()) << c.what << ": a teleport sweeps nothing";
                world().removeNode(target);
                run(1);
                world().removeNode(missile);
            }
        }
    }
}

TEST_F(PhysicsContacts, InnerEdgesDoNotStopWhatSlides) {
    addMesh("runway", at(0, 0, 0), makeSheet(1000, 200));
    BodySettings s = settings({box({1.5f, 15, 1.5f}, {0, 0, 1.6}), box({0.3f, 0.3f, 0.6f}, {0, 5, 0.3}),
                               box({0.3f, 0.3f, 0.6f}, {-2, -1, 0.3}), box({0.3f, 0.3f, 0.6f}, {2, -1, 0.3})});
    s.friction = 0.0f;
    s.center_of_mass = vec3(0.0f, 0.0f, 1.0f);
    Object* const jet = addBody("jet", at(0.3, -450.1, 1.201), s);
    jet->getBodyRigid()->setLinearVelocity(toWorld({0, 70, -6}));
    double highest = 0.0;
    for (int i = 0; i < 600; ++i) {
        run(1);
        highest = std::fmax(highest, i > 60 ? heightOf(*jet) : 0.0);
    }
    EXPECT_NEAR(toLocal(jet->getBodyRigid()->getLinearVelocity()).y, 70.0, 0.05);
    EXPECT_LT(highest, 0.15);
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
