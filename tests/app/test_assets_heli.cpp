// The demonstration's helicopter: its named nodes, that its rotors, wipers and discs are set up for the logic that
// moves them, and that the pilot sees out.
#include "app/DemoScene.h"

namespace {

class DemoHelicopter : public DemoScene {
protected:
    DemoHelicopter() {
        auto prefab = std::make_unique<ObjectPrefab>("data/assets/Targets/MODELS/HELICOPTER/HELICOPTER.prefab");
        heli = static_cast<ObjectPrefab*>(world().addChild(std::unique_ptr<Node>(std::move(prefab))));
    }

    Node* part(const char* name) { return heli->getNodeByName(name); }
    BoundBox boxOf(const char* name) { return boxIn(*heli, *part(name)); }
    std::vector<dvec3> verticesOf(const char* name) {
        std::vector<dvec3> result;
        const auto& object = static_cast<const ObjectMeshStatic&>(*part(name));
        const dmat4 frame = inverse(heli->getWorldTransform()) * object.getWorldTransform();
        for (const MeshSurface& surface : object.getMesh().surfaces) {
            for (const auto& p : surface.positions) result.push_back(frame * dvec3(p[0], p[1], p[2]));
        }
        return result;
    }
    /// Whether anything but glass stands in the way.
    bool isBlocked(Node& node, const dvec3& from, const dvec3& to) {
        if (node.getType() == Node::MESH_STATIC) {
            auto& object = static_cast<ObjectMeshStatic&>(node);
            dvec3 hit;
            for (int s = 0; s < object.getNumSurfaces(); ++s) {
                if (object.getSurfaceMaterial(s)->alpha == Material::BLEND) continue;
                const dmat4 local = inverse(object.getWorldTransform()) * heli->getWorldTransform();
                if (object.getIntersection(local * from, local * to, s, hit)) return true;
            }
        }
        for (int i = 0; i < node.getNumChildren(); ++i) {
            if (isBlocked(*node.getChild(i), from, to)) return true;
        }
        return false;
    }

    ObjectPrefab* heli;
};

}  // namespace

TEST_F(DemoHelicopter, HasEveryNodeThatIsLookedForAndStandsOnItsWheels) {
    ASSERT_TRUE(heli->isLoaded());
    for (const char* name : {"wing", "tail", "wing_mesh", "wing_plane", "tail_mesh", "tail_plane", "wiper_left",
                             "wiper_right", "sonar", "winch", "dl_0", "dl_1", "dl_2", "dr_0", "dr_1", "dr_2"}) {
        ASSERT_NE(part(name), nullptr) << name;
        EXPECT_EQ(part(name)->getType(), Node::MESH_STATIC) << name;
    }
    ASSERT_NE(part("anticollision_tail_light"), nullptr);
    ASSERT_EQ(part("anticollision_tail_light")->getType(), Node::MESH_STATIC);
    EXPECT_GT(part("anticollision_tail_light")->asObject()->getSurfaceMaterial(0)->emission.x, 1.0f);
    for (const char* disc : {"wing_plane", "tail_plane"}) {
        const Material& material = *part(disc)->asObject()->getSurfaceMaterial(0);
        EXPECT_EQ(material.alpha, Material::BLEND) << disc;
        EXPECT_TRUE(material.double_sided) << disc;
    }
    const BoundBox body = boxOf("fuselage");
    EXPECT_NEAR(body.min.z, -STANDING, 0.02);
    EXPECT_NEAR(body.getSize().y, 18.0, 1.0);
    EXPECT_NEAR(body.min.x, -body.max.x, 0.3) << "but for the tail's stabilizer";
    for (int i = 0; i < 3; ++i) {
        const BoundBox left = boxOf(("dl_" + std::to_string(i)).c_str()),
                       right = boxOf(("dr_" + std::to_string(i)).c_str());
        EXPECT_NEAR(left.min.x, -right.max.x, 1e-5);
        EXPECT_GT(right.max.x, 1.0);
    }
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(DemoHelicopter, RotorsTurnAboutTheirHubs) {
    const struct {
        const char *node, *blades, *disc;
        dvec3 axis, hub;
        double radius;
    } rotors[] = {{"wing", "wing_mesh", "wing_plane", {0, 0, -1}, {0, 0, 3.3}, 9.45},
                  {"tail", "tail_mesh", "tail_plane", {1, 0, 0}, {0.45, -10.0, 2.4}, 1.6}};
    for (const auto& rotor : rotors) {
        for (const double angle : {0.0, 37.0, 90.0}) {
            part(rotor.node)->setRotation(dquat(rotor.axis, angle));
            for (const char* name : {rotor.blades, rotor.disc}) {
                double reach = 0.0;
                for (const dvec3& p : verticesOf(name)) {
                    // Blades hang below their hub; the tail's do not bend.
                    const dvec3 off = p - rotor.hub;
                    const double along = rotor.axis.x > 0.0 ? off.x : off.z;
                    reach = std::max(reach, std::sqrt(length2(off) - along * along));
                    ASSERT_LT(along, 0.3) << name;
                    ASSERT_GT(along, -1.0) << name << " at " << angle;
                }
                EXPECT_NEAR(reach, rotor.radius, 0.12) << name << " at " << angle;
            }
        }
    }
    // Seen from above the main rotor goes counter-clockwise as the angle grows: a blade tip that lay ahead goes left.
    const dmat4 frame = inverse(heli->getWorldTransform());
    part("wing")->setRotation(dquat(dvec3(0, 0, -1), 0.0));
    const dvec3 ahead = inverse(frame * part("wing")->getWorldTransform()) * dvec3(0, 9, 3.3);
    part("wing")->setRotation(dquat(dvec3(0, 0, -1), 20.0));
    EXPECT_LT((frame * part("wing")->getWorldTransform() * ahead).x, -2.0);
}

TEST_F(DemoHelicopter, WipersLieOnTheGlassParkedAndUpright) {
    const dvec3 foot{0.0, 6.05, 0.25}, head{0.0, 5.2, 1.25};
    const dvec3 out = normalize(dvec3(0.0, head.z - foot.z, foot.y - head.y));
    for (const double side : {-1.0, 1.0}) {
        Node& wiper = *part(side < 0.0 ? "wiper_left" : "wiper_right");
        const dvec3 authored = wiper.getRotation().toEulerZXY();
        EXPECT_NEAR(authored.z, side * 23.1, 0.1);
        for (const double roll : {23.1, 57.0, 90.7}) {
            wiper.setRotation(dquat::fromEulerZXY({authored.x, authored.y, side * roll}));
            for (const dvec3& p : verticesOf(wiper.getName().c_str())) {
                EXPECT_NEAR(dot(p - foot, out), 0.04, 0.06) << side << ", " << roll;
                EXPECT_LT(side * p.x, 0.95);
                EXPECT_GT(side * p.x, -0.05) << "over its own pane";
            }
        }
    }
}

TEST_F(DemoHelicopter, ThePilotSeesOut) {
    const dvec3 eye = (inverse(heli->getWorldTransform()) * part("cam_first_player")->getWorldTransform()).t;
    for (const dvec3& way : {dvec3(0, 1, 0), dvec3(-0.25, 1, -0.1), dvec3(0.1, 1, -0.2), dvec3(1, 0.1, -0.2)}) {
        EXPECT_FALSE(isBlocked(*heli, eye, eye + way * 30.0)) << way.x << ", " << way.z;
    }
    EXPECT_TRUE(isBlocked(*heli, eye, eye + dvec3(0, -30, 0))) << "the cabin's wall is behind";
}
