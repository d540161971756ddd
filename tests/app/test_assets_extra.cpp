// The demonstration's aerobatic aircraft: its proportions, how it stands, and that each control drives its part.
#include <cmath>

#include "app/DemoScene.h"
#include "engine/physics/Body.h"

namespace {

constexpr const char* FOLDER = "data/assets/Targets/MODELS/EXTRA300S/";
constexpr double PITCH = 10.0, HEIGHT = 1.25;  // as its configuration says that it stands

struct Control {
    jString node;
    dvec3 axis;
    int type = -1;
    int id = -1;
};

dvec3 readTriple(const Package& entry, const char* key) {
    double v[3] = {};
    EXPECT_TRUE(entry.getDoubles(key, v, 3)) << key;
    return {v[0], v[1], v[2]};
}

class DemoExtra : public DemoScene {
protected:
    DemoExtra() {
        auto made = std::make_unique<ObjectPrefab>(jString(FOLDER) + "EXTRA300S.prefab");
        plane = static_cast<ObjectPrefab*>(world().addChild(std::unique_ptr<Node>(std::move(made))));
        EXPECT_TRUE(mjl::open(jString(FOLDER) + "EXTRA300S.cfg", m_file, true));
        for (const Item& item : *m_file.getPackage("ctrl_nodes")) {
            const Package& e = *item.getPackage();
            controls.push_back({e.getString("node_name"), readTriple(e, "axis"), e.getInt("type"), e.getInt("id")});
        }
    }

    Node* part(const jString& name) { return plane->getNodeByName(name); }
    BoundBox boxOf(const jString& name) { return boxIn(*plane, *part(name)); }
    const Control& control(const char* node) {
        const auto is = [&](const Control& c) { return c.node == node; };
        return *std::find_if(controls.begin(), controls.end(), is);
    }
    void turn(const char* node, double value) { part(node)->setHPR(control(node).axis * value); }
    /// Height above the ground on which it stands on its wheels.
    static double above(const dvec3& p) {
        return p.y * std::sin(PITCH * jMath::DEG2RAD) + p.z * std::cos(PITCH * jMath::DEG2RAD) + HEIGHT;
    }

    ObjectPrefab* plane;
    std::vector<Control> controls;

private:
    Package m_file;
};

}  // namespace

TEST_F(DemoExtra, HasTheSizeOfItsClassAndStandsOnThreeWheels) {
    ASSERT_TRUE(plane->isLoaded());
    const BoundBox box = boxOf("normal");
    EXPECT_NEAR(box.getSize().y, 6.65, 0.1);
    EXPECT_NEAR(box.getSize().x, 7.5, 0.1);
    const struct {
        const char *wheel, *contact, *middle, *shape;
    } wheels[] = {{"tail_wheel_steer", "wheel_front", "F_wheel_pos", "f_wheel"},
                  {"main_wheel_left", "wheel_left", "L_wheel_pos", "l_wheel"},
                  {"main_wheel_right", "wheel_right", "R_wheel_pos", "r_wheel"}};
    for (const auto& wheel : wheels) {
        EXPECT_NEAR(above(part(wheel.contact)->getPosition()), 0.0, 1e-6) << wheel.contact;
        const Shape& round = *plane->getBody()->getShape(plane->getBody()->findShape(wheel.shape));
        const dvec3 middle = part(wheel.middle)->getPosition();
        EXPECT_LT(length(round.getTransform().t - middle), 1e-6);
        EXPECT_NEAR(above(middle), round.getSize().x / 2.0, 1e-6) << wheel.middle;
        const BoundBox drawn = boxOf(wheel.wheel);
        EXPECT_NEAR(drawn.min.z, middle.z - round.getSize().x / 2.0, 0.01) << wheel.wheel;
    }
    EXPECT_LT(part("wheel_left")->getPosition().x, 0.0);
}

TEST_F(DemoExtra, ControlsOfEveryKindNamePartsThatCanDoIt) {
    int kinds[5] = {};
    for (const Control& c : controls) {
        Node* const node = part(c.node);
        ASSERT_NE(node, nullptr) << c.node;
        ASSERT_TRUE(c.type >= 0 && c.type <= 4) << c.node;
        ++kinds[c.type];
        EXPECT_EQ(c.id, &c - controls.data()) << c.node;
        EXPECT_TRUE(c.type != 0 || kinds[0] == c.id + 1) << c.node << ": turning parts come first";
        EXPECT_GT(length(c.axis), 0.9) << c.node;
        EXPECT_TRUE(c.type != 0 || length(node->getHPR()) < 1e-6) << c.node << " rests turned";
        EXPECT_EQ(node->getType() == Node::TEXT, c.type == 4) << c.node;
        if (c.type != 3) continue;
        auto& mesh = *static_cast<ObjectMeshStatic*>(node);
        EXPECT_TRUE(mesh.getMesh().surfaces.at(0).material->base_texture) << c.node;
        for (const Control& other : controls) {
            if (other.type != 3 || &other == &c) continue;
            EXPECT_NE(static_cast<ObjectMeshStatic*>(part(other.node))->getSurfaceMaterial(0),
                      mesh.getSurfaceMaterial(0))
                << "one would move the other's picture";
        }
    }
    for (const int count : kinds) EXPECT_GT(count, 0);
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

TEST_F(DemoExtra, SurfacesTurnAboutTheirHinges) {
    for (const char* name : {"aileron_left", "aileron_right", "elevator_left", "elevator_right"}) {
        const BoundBox before = boxOf(name);
        turn(name, 20.0);
        const dvec3 behind = part(name)->getTransform() * dvec3(0.0, -0.3, 0.0);
        EXPECT_NEAR(behind.z, part(name)->getPosition().z - 0.3 * std::sin(20.0 * jMath::DEG2RAD), 0.003) << name;
        const BoundBox after = boxOf(name);
        EXPECT_NEAR(after.max.x, before.max.x, 0.02) << name;
        EXPECT_NEAR(after.min.x, before.min.x, 0.02) << name;
    }
    const BoundBox tab = boxOf("elevator_trim");
    EXPECT_GT(boxOf("elevator_right").max.x, tab.max.x) << "the tab is a part of the right elevator";
    const BoundBox rudder = boxOf("rudder");
    turn("rudder", 20.0);
    EXPECT_GT(boxOf("rudder").max.x, rudder.max.x + 0.1) << "a positive angle takes the trailing edge to the right";
    EXPECT_NEAR(boxOf("rudder").max.z, rudder.max.z, 1e-4);
    const BoundBox disc = boxOf("propeller");
    turn("propeller", 90.0);
    EXPECT_NEAR(boxOf("propeller").min.y, disc.min.y, 0.01) << "it turns in its own plane";
    turn("stick_pitch", 15.0);
    EXPECT_LT(length(part("stick_roll")->getWorldPosition() - part("stick_pitch")->getWorldPosition()), 1e-6);
}

TEST_F(DemoExtra, ThePilotSeesTheInstrumentsAndTheWorld) {
    const dmat4 eye = part("cam_first_player")->getTransform();
    EXPECT_LT(degreesBetween(-eye.z, {0, 1, 0}), 1e-6);
    EXPECT_LT(degreesBetween(eye.y, {0, 0, 1}), 1e-6);
    for (const char* name : {"needle_airspeed", "needle_load", "horizon_ball", "compass_tape", "text_fuel"}) {
        const dvec3 to = inverse(plane->getWorldTransform()) * part(name)->getWorldPosition() - eye.t;
        EXPECT_GT(to.y, 0.3) << name;
        EXPECT_LT(degreesBetween(to, {0, 1, 0}), 45.0) << name;
        EXPECT_LT(degreesBetween(to, {0, 1, 0}), degreesBetween(to, {0, 0, 1})) << name;
    }
    EXPECT_LT(boxOf("horizon_ball").max.z, eye.t.z - 0.1) << "the view ahead is free";
    EXPECT_GT(boxOf("canopy").max.z, eye.t.z + 0.15);
    EXPECT_TRUE(part("normal")->isEnabled());
    EXPECT_FALSE(part("destroyed")->isEnabled());
    EXPECT_FALSE(part("fire")->isEnabled());
    EXPECT_EQ(part("fire_spe")->getType(), Node::PARTICLES);
}
