// The demonstration's jet: its wheels, its named places, and that each control drives a part that can do it.
#include "engine/physics/Body.h"
#include "engine/scene/ObjectParticles.h"
#include "support/DemoScene.h"

namespace {

constexpr int FIRST_SWITCH = 31, HOOK = 20, GLOW = 32;

struct Control {
    jString node;
    dvec3 open, close, axis;
    int type = -1;
};

dvec3 readTriple(const Package& entry, const char* key) {
    double v[3] = {};
    EXPECT_TRUE(entry.getDoubles(key, v, 3)) << key;
    return {v[0], v[1], v[2]};
}

std::vector<Control> readControls() {
    Package file;
    EXPECT_TRUE(mjl::open(jString(JET_FOLDER) + "FJ_CN_J15.cfg", file, true));
    EXPECT_EQ(file.getString("type"), "PlaneJ15");
    EXPECT_EQ(file.getString("path"), jString(JET_FOLDER) + "FJ_CN_J15.prefab");
    std::vector<Control> controls;
    const Package* const entries = file.getPackage("ctrl_nodes");
    if (!entries) return controls;
    for (const Item& item : *entries) {
        const Package& e = *item.getPackage();
        EXPECT_EQ(e.getInt("id"), static_cast<int>(controls.size()));
        controls.push_back({e.getString("node_name"), readTriple(e, "open_rot"), readTriple(e, "close_rot"),
                            readTriple(e, "axis"), e.getInt("type")});
    }
    return controls;
}

class DemoJet : public DemoScene {
protected:
    DemoJet() : jet(addJet()), controls(readControls()) {}

    Node* part(const char* name) { return jet->getNodeByName(name); }
    BoundBox boxOf(const char* name) { return boxIn(*jet, *part(name)); }

    ObjectPrefab* jet;
    std::vector<Control> controls;
};

}  // namespace

TEST_F(DemoJet, StandsOnItsWheels) {
    ASSERT_TRUE(jet->isLoaded());
    const struct {
        const char *leg, *contact, *middle, *shape;
    } wheels[] = {{"nose_leg", "wheel_front", "F_wheel_pos", "f_wheel"},
                  {"main_leg_left", "wheel_left", "L_wheel_pos", "l_wheel"},
                  {"main_leg_right", "wheel_right", "R_wheel_pos", "r_wheel"}};
    for (const auto& wheel : wheels) {
        const dvec3 contact = part(wheel.contact)->getPosition(), middle = part(wheel.middle)->getPosition();
        EXPECT_EQ(part(wheel.contact)->getParent(), jet) << "retracting must not move it";
        EXPECT_NEAR(contact.z, -STANDING, 1e-9);
        EXPECT_NEAR(boxOf(wheel.leg).min.z, contact.z, 0.01) << wheel.leg;
        const int shape = jet->getBody()->findShape(wheel.shape);
        ASSERT_GE(shape, 0);
        const Shape& round = *jet->getBody()->getShape(shape);
        EXPECT_NEAR(round.getTransform().t.z - round.getSize().x / 2.0, contact.z, 1e-6);
        EXPECT_LT(length(round.getTransform().t - middle), 1e-6);
    }
    EXPECT_LT(part("wheel_left")->getPosition().x, 0.0);
    EXPECT_GE(jet->getBody()->findShape("body_box"), 0);
}

TEST_F(DemoJet, ControlsNamePartsThatExistInTheirRolesAndStandingPose) {
    ASSERT_EQ(controls.size(), 35u);
    for (int i = 0; i < 35; ++i) {
        const Control& c = controls[static_cast<std::size_t>(i)];
        ASSERT_NE(jet->getNodeByName(c.node), nullptr) << c.node;
        EXPECT_EQ(c.type, i < FIRST_SWITCH ? 0 : 1) << c.node;
        EXPECT_GT(length(c.axis), 0.9) << c.node;
        if (i >= FIRST_SWITCH) continue;
        const dmat4 wanted(dquat::fromEulerZXY(i == HOOK ? c.close : c.open), {});
        const dmat4 is = jet->getNodeByName(c.node)->getTransform();
        EXPECT_LT(degreesBetween(wanted.y, is.y) + degreesBetween(wanted.z, is.z), 1e-3) << c.node;
    }
    EXPECT_EQ(controls[HOOK].node, "weigou001");
    EXPECT_EQ(jet->getNodeByName(controls[GLOW].node)->getType(), Node::MESH_STATIC);
    for (const std::size_t emitter : {33u, 34u}) {
        EXPECT_EQ(jet->getNodeByName(controls[emitter].node)->getType(), Node::PARTICLES);
    }
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

// No picture shows a deflection to the wrong side as such.
TEST_F(DemoJet, SurfacesDeflectToTheirSide) {
    const dvec3 down{0, 0, -1}, right{1, 0, 0};
    const struct {
        int position;
        double angle;
        dvec3 way;  ///< where its free edge moves
    } surfaces[] = {{5, 10, down},  {6, 10, down},  {7, 10, down},  {8, 10, down},  {9, 10, down},   {10, 10, down},
                    {11, 10, down}, {12, 10, down}, {13, 10, down}, {14, 10, down}, {15, 10, right}, {16, -10, right}};
    for (const auto& surface : surfaces) {
        const Control& c = controls[static_cast<std::size_t>(surface.position)];
        const auto reach = [&] {
            const BoundBox box = boxOf(c.node.c_str());
            return std::max(dot(box.min, surface.way), dot(box.max, surface.way));
        };
        const double before = reach();
        jet->getNodeByName(c.node)->setRotation(dquat::fromEulerZXY(c.close) * dquat(c.axis, surface.angle));
        EXPECT_GT(reach(), before + 0.01) << c.node;
    }
}

TEST_F(DemoJet, NamedPlacesServeTheScene) {
    const dmat4 eye = part("cam_first_player")->getTransform();
    EXPECT_LT(degreesBetween(-eye.z, {0, 1, 0}), 1e-6) << "a camera looks along its -Z";
    EXPECT_LT(degreesBetween(eye.y, {0, 0, 1}), 1e-6);
    EXPECT_EQ(part("cam_first_player")->getParent(), jet);
    EXPECT_GT(eye.t.z, 1.0);
    EXPECT_TRUE(part("body")->isSensor());
    EXPECT_TRUE(part("normal")->isEnabled());
    EXPECT_FALSE(part("destroyed")->isEnabled());
    EXPECT_FALSE(part("fire")->isEnabled());
    EXPECT_GT(boxOf("destroyed").getSize().y, 15.0);
    ASSERT_EQ(part("fire_spe")->getType(), Node::PARTICLES);
    EXPECT_FALSE(static_cast<ObjectParticles*>(part("fire_spe"))->isEmitterEnabled());
    const auto& exhaust = *static_cast<ObjectParticles*>(part("exhaust_right"));
    EXPECT_GE(exhaust.getSpawnRate(), 1.0f) << "it is remembered as a whole number";
    EXPECT_LT(exhaust.getLinearVelocity().y, 0.0f);
}

TEST_F(DemoJet, StandsStillOnDeckAndRunway) {
    loadWorld();
    for (Node* n : jet->getNodes()) n->setCollider(false);
    for (const char* start : {"start_deck", "start_runway", "start_deck"}) {
        const dmat4 place = node(start)->getWorldTransform();
        jet->setWorldTransform(place);
        run(180);
        const dmat4 rest = inverse(place) * jet->getWorldTransform();
        EXPECT_NEAR(rest.t.z, STANDING - START, 0.03) << start;
        EXPECT_LT(length(dvec3(rest.t.x, rest.t.y, 0.0)), 0.05) << start;
        EXPECT_LT(degreesBetween(rest.z, {0, 0, 1}), 0.5) << start;
    }
}
