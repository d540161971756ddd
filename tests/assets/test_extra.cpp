// The demonstration's aerobatic aircraft: its wheels, and that each control drives a part that can do it.
#include <set>

#include "engine/physics/Body.h"
#include "support/DemoScene.h"

namespace {

constexpr const char* FOLDER = "data/assets/Targets/MODELS/EXTRA300S/";
constexpr double PITCH = 10.0, HEIGHT = 1.25;  // attitude and height at rest, as in its configuration
enum Kind { ROTATION, TEXTURE_OFFSET = 3, DIGIT, KINDS };

struct Control {
    jString node;
    dvec3 axis;
    int type = -1;
};

class DemoExtra : public DemoScene {
protected:
    DemoExtra() {
        auto made = std::make_unique<ObjectPrefab>(jString(FOLDER) + "EXTRA300S.prefab");
        plane = static_cast<ObjectPrefab*>(world().addChild(std::unique_ptr<Node>(std::move(made))));
        EXPECT_TRUE(mjl::open(jString(FOLDER) + "EXTRA300S.cfg", m_file, true));
        for (const Item& item : *m_file.getPackage("ctrl_nodes")) {
            const Package& e = *item.getPackage();
            EXPECT_EQ(e.getInt("id"), static_cast<int>(controls.size())) << "the id is the position";
            double axis[3] = {};
            EXPECT_TRUE(e.getDoubles("axis", axis, 3));
            controls.push_back({e.getString("node_name"), {axis[0], axis[1], axis[2]}, e.getInt("type")});
        }
    }

    Node* part(const jString& name) { return plane->getNodeByName(name); }
    /// Height of the origin above the ground with the wheels on it.
    static double above(const dvec3& p) {
        return p.y * std::sin(PITCH * jMath::DEG2RAD) + p.z * std::cos(PITCH * jMath::DEG2RAD) + HEIGHT;
    }

    ObjectPrefab* plane;
    std::vector<Control> controls;

private:
    Package m_file;
};

}  // namespace

TEST_F(DemoExtra, StandsOnThreeWheels) {
    ASSERT_TRUE(plane->isLoaded());
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
        EXPECT_NEAR(boxIn(*plane, *part(wheel.wheel)).min.z, middle.z - round.getSize().x / 2.0, 0.01) << wheel.wheel;
    }
    EXPECT_LT(part("wheel_left")->getPosition().x, 0.0);
}

TEST_F(DemoExtra, ControlsOfEveryKindNamePartsThatCanDoIt) {
    std::set<jString> names;
    std::set<const Material*> moved;
    int kinds[KINDS] = {};
    for (const Control& c : controls) {
        Node* const found = part(c.node);
        ASSERT_NE(found, nullptr) << c.node;
        EXPECT_TRUE(names.insert(c.node).second) << c.node;
        ASSERT_TRUE(c.type >= 0 && c.type < KINDS) << c.node;
        ++kinds[c.type];
        EXPECT_GT(length(c.axis), 0.9) << c.node;
        EXPECT_EQ(found->getType() == Node::TEXT, c.type == DIGIT) << c.node;
        if (c.type == ROTATION) {
            EXPECT_EQ(kinds[ROTATION], static_cast<int>(names.size())) << c.node << ": turning parts come first";
            EXPECT_LT(length(found->getHPR()), 1e-6) << c.node << " would jump on its first deflection";
        } else if (c.type == TEXTURE_OFFSET) {
            const Material* const material = found->asObject()->getSurfaceMaterial(0);
            EXPECT_TRUE(material->base_texture) << c.node;
            EXPECT_TRUE(moved.insert(material).second) << c.node << " would move another part's texture too";
        }
    }
    for (const int count : kinds) EXPECT_GT(count, 0);
    EXPECT_TRUE(complaints().empty()) << complaints().front();
}

// No picture shows a deflection to the wrong side as such.
TEST_F(DemoExtra, SurfacesDeflectToTheirSide) {
    const struct {
        const char* node;
        dvec3 way;  ///< of the trailing edge at a positive angle
    } surfaces[] = {{"aileron_left", {0, 0, -1}},
                    {"aileron_right", {0, 0, -1}},
                    {"elevator_left", {0, 0, -1}},
                    {"elevator_right", {0, 0, -1}},
                    {"rudder", {1, 0, 0}}};
    for (const auto& surface : surfaces) {
        Node& node = *part(surface.node);
        const auto is = [&](const Control& c) { return c.node == surface.node; };
        const dvec3 axis = std::find_if(controls.begin(), controls.end(), is)->axis;
        const dvec3 edge{0.0, -0.3, 0.0};
        const dvec3 before = node.getTransform() * edge;
        node.setHPR(axis * 20.0);
        EXPECT_NEAR(dot(node.getTransform() * edge - before, surface.way), 0.3 * std::sin(20.0 * jMath::DEG2RAD), 0.003)
            << surface.node;
    }
}

TEST_F(DemoExtra, HasAnEyeAndItsLooks) {
    const dmat4 eye = part("cam_first_player")->getTransform();
    EXPECT_LT(degreesBetween(-eye.z, {0, 1, 0}), 1e-6) << "a camera looks along its -Z";
    EXPECT_LT(degreesBetween(eye.y, {0, 0, 1}), 1e-6);
    EXPECT_TRUE(part("normal")->isEnabled());
    EXPECT_FALSE(part("destroyed")->isEnabled());
    EXPECT_FALSE(part("fire")->isEnabled());
    EXPECT_EQ(part("fire_spe")->getType(), Node::PARTICLES);
}
