// The logic's choice of the aircraft, its placement and reset, and what the panel's handlers do to each type.
#include <engine/gui/UIWidgets.h>
#include <engine/input/ControlApp.h>

#include <fstream>

#include "AerobaticModel.h"
#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/physics/Body.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/SceneNodes.h"
#include "src/aircraft/Helicopter.h"
#include "src/aircraft/PlaneExtra300s.h"
#include "support/Paths.h"

namespace {

using Handler = void (Logic_Test_Fly::*)(const GUIEventChange&, UIElement*);
constexpr Handler HANDLERS[] = {&Logic_Test_Fly::set_node_deflection, &Logic_Test_Fly::set_node_offset,
                                &Logic_Test_Fly::set_node_uv_offset, &Logic_Test_Fly::set_node_digit,
                                &Logic_Test_Fly::set_node_onoff};

class HandlerTest : public LogicTest {
protected:
    void startAerobatic(const AerobaticModel& model = {}) {
        write(AerobaticModel::PREFAB, model.prefab());
        write(AerobaticModel::MODEL, AerobaticModel::instruments());
        write(TestJet::CONFIG, model.config());
        start();
    }

    void startHelicopter(const std::string& children) {
        write("data/heli.prefab", R"({ "node": { "body": { "kind": "dynamic", "mass": 200, "shapes": [
            { "name": "hull", "type": "box", "size": [1, 4, 1] } ] }, "children": [ )" +
                                      children + " ] } }");
        write(TestJet::CONFIG, R"({ "path": "data/heli.prefab", "type": "Helicopter", "src_pos_offset": [1, 2, 3],
            "ctrl_nodes": { "0": { "node_name": "dl_0", "axis": [1, 1, 1], "type": 0 } } })");
        start();
    }

    /// The user sets the control at a position.
    std::string use(Handler handler, int position, double value) {
        UISlider control;
        control.setId(position);
        return printedBy([&] { (logic().*handler)({value}, &control); });
    }

    std::uint64_t state() { return engine().getStateHash(); }

    Node* part(int i) { return world().getNodeByName(jString("part_" + std::to_string(i))); }
};

TEST_F(HandlerTest, TheAerobaticAircraftStartsOffsetAndTurnedFromTheStartNode) {
    const Node* const start_node = addStart();
    AerobaticModel model;
    model.start = R"("src_pos_offset": [1, 2, -3], "src_rot_deflection": [40, 10, -20], )";
    startAerobatic(model);
    auto& plane = static_cast<PlaneExtra300s&>(*logic().getAircraft());
    const dmat4 expected =
        start_node->getWorldTransform() * dmat4::translation({1, 2, -3}) *
        dmat4(dquat(dvec3(0, 0, 1), 40.0) * dquat(dvec3(1, 0, 0), 10.0) * dquat(dvec3(0, 1, 0), -20.0), dvec3());
    EXPECT_LT(difference(plane.getWorldTransform(), expected), 1e-6);
    EXPECT_LT(difference(plane.getBaseTransform(), expected), 1e-6);
    EXPECT_EQ(world().getNodeByName("extra300s"), logic().getAircraftNode());
    EXPECT_EQ(logic().getControlCount(), AerobaticModel::COUNT);

    logic().set_player_mode(FIRST_VIEW);
    logic().swap();
    EXPECT_LT(length(engine().getCameraControl()->getPosition() - expected * dvec3(0, -1, 0.8)), 1e-6);

    // Both have moved meanwhile: the pose at the start counts.
    world().getNodeByName("start_deck")->setWgsPosition({112.4, 16.9, 10.0});
    plane.setWgsPosition({112.5, 17.0, 900.0});
    logic().on_plane_destory(nullptr);
    EXPECT_EQ(plane.getDamageState(), DAMAGE_DESTROYED);
    logic().reset();
    EXPECT_EQ(plane.getDamageState(), DAMAGE_NONE);
    EXPECT_LT(difference(plane.getWorldTransform(), expected), 1e-6);
}

TEST_F(HandlerTest, TheAerobaticAircraftTakesEveryControl) {
    addStart();
    startAerobatic();
    const struct {
        int position;
        double value;
        dvec3 hpr;  ///< afterwards
    } turns[] = {{0, 45, {30, 0, 0}},  {0, -45, {-30, 0, 0}}, {0, 29.5, {29.5, 0, 0}}, {3, 10, {10, 20, 30}},
                 {5, 45, {-60, 0, 0}}, {6, 45, {0, 45, 0}}};  // past the surfaces nothing is limited
    for (const auto& t : turns) {
        use(HANDLERS[0], t.position, t.value);
        EXPECT_LT(length(part(t.position)->getHPR() - t.hpr), 1e-4) << t.position << " " << t.value;
    }
    for (const double value : {3.0, 10.0}) use(HANDLERS[1], 7, value);
    EXPECT_EQ(part(7)->getPosition(), dvec3(12, -10, 0)) << "half of it, by its digit, from the place at the start";
    use(HANDLERS[1], 12, 10.0);
    EXPECT_EQ(part(12)->getPosition(), dvec3(12, 0, 30)) << "no digit";
    use(HANDLERS[2], 8, -10.0);
    EXPECT_EQ(*part(8)->asObject()->getSurfaceMaterial(0)->getParameter("ui_offset"), vec4(0, -2.5f, -10, 0));
    EXPECT_EQ(part(9)->asObject()->getSurfaceMaterial(0)->getParameter("ui_offset"), nullptr)
        << "the other instrument shares the model's material";
    for (const auto& [value, text] : {std::pair(42.9, "42"), {-0.9, "0"}, {1e300, "2147483647"}}) {
        use(HANDLERS[3], 10, value);
        EXPECT_EQ(static_cast<NodeText*>(part(10))->getText(), text);
    }
    use(HANDLERS[4], 11, 0.0);
    EXPECT_FALSE(part(11)->isEnabled());
    const std::uint64_t before = state();
    EXPECT_EQ(use(HANDLERS[4], 13, 0.0), "not find id is 13 node in PlaneExtra300s::setNodeEnable\n");
    EXPECT_EQ(use(HANDLERS[1], -1, 1.0), "not find id is -1 node in PlaneExtra300s::setNodeOffset\n");
    logic().on_close_undercarriage({}, nullptr);
    EXPECT_TRUE(logic().getAircraft()->isUndercarriageOpen()) << "the jet's alone";
    EXPECT_EQ(state(), before);
}

TEST_F(HandlerTest, TheJetTakesDeflectionsAlone) {
    addStart();
    writeJet();
    start();
    const std::uint64_t before = state();
    for (int i = 1; i < 5; ++i) EXPECT_EQ(use(HANDLERS[i], 3, 1.0), "") << i;
    use(HANDLERS[0], 99, 1.0);
    EXPECT_EQ(state(), before);
    use(HANDLERS[0], 3, 45.0);
    const dquat expected = dquat(dvec3(0, 1, 0), 3.0) * dquat(dvec3(0, 0, 1), 45.0);
    EXPECT_LT(difference(part(3)->getTransform(), dmat4(expected, {3, 0, 0})), 1e-6) << "unlimited";
}

TEST_F(HandlerTest, TheHelicopterIsPlacedWithItsPartsAndTakesNoControls) {
    const Node* const start_node = addStart();
    startHelicopter(R"({ "name": "dl_0", "position": [1, 0, 0] }, { "name": "sonar", "position": [4, 0, 0] })");
    Helicopter* const helicopter = logic().getHelicopter();
    ASSERT_TRUE(helicopter && helicopter->getModel());
    EXPECT_EQ(logic().getAircraft(), nullptr);
    EXPECT_EQ(logic().getAircraftNode(), nullptr);
    EXPECT_LT(difference(helicopter->getModel()->getWorldTransform(), start_node->getWorldTransform()), 1e-6)
        << "without an offset";
    EXPECT_EQ(logic().getHelicopterPlaces().left[0], dmat4::translation({1, 0, 0}));
    EXPECT_EQ(logic().getHelicopterPlaces().sonar, dmat4::translation({4, 0, 0}));
    EXPECT_EQ(logic().getHelicopterPlaces().winch, dmat4());

    for (const Handler handler : HANDLERS) EXPECT_EQ(use(handler, 0, 1.0), "");
    logic().on_open_undercarriage({}, nullptr);
    EXPECT_EQ(world().getNodeByName("dl_0")->getHPR(), dvec3());

    const dmat4 moved(dquat(), engine().getEllipsoid().toWorld({112.4, 16.9, 500.0}));
    helicopter->setWorldTransform(moved);
    BodyRigid& body = *helicopter->getBody();
    body.setLinearVelocity({1, 2, 3});
    body.setAngularVelocity({1, 2, 3});
    helicopter->setCollectiveDecay(0.5f);
    logic().reset();
    EXPECT_EQ(length(body.getLinearVelocity()) + length(body.getAngularVelocity()), 0.0f);
    EXPECT_EQ(helicopter->getCollectiveDecay(), 1.0f);
    EXPECT_EQ(difference(helicopter->getModel()->getWorldTransform(), moved), 0.0) << "it stops where it is";
}

TEST_F(HandlerTest, TheDeflectorFollowsAnEffectsHeightInTheHelicoptersFrame) {
    const char* const EFFECT = R"({ "type": "particles", "name": "dust", "position": [7, 8, -9],
        "particles": { "velocity": [0, 0, 1], "buoyancy": -10, "life": 5, "deflectors": [ {} ] } })";
    addStart();
    startHelicopter(R"({ "name": "deflector", "position": [1, 2, 3], "hpr": [30, 0, 0] })");
    std::unique_ptr<Node> made = makeNode(EFFECT);
    auto* const dust = static_cast<ObjectParticles*>(logic().getHelicopter()->getModel()->addChild(std::move(made)));
    auto* const bare = static_cast<ObjectParticles*>(add(std::make_unique<ObjectParticles>(ParticleSettings())));
    logic().update_deflector(dust);
    const dmat4 expected(dquat(dvec3(0, 0, 1), 30.0), {1, 2, -9});
    EXPECT_LT(difference(logic().getHelicopterPlaces().deflector, expected), 1e-6);
    logic().getHelicopter()->getBody()->setEnabled(false);
    run(120);
    ASSERT_FALSE(dust->getParticles().empty());
    const dmat4 to_model = inverse(logic().getHelicopter()->getModel()->getWorldTransform());
    for (const Particle& p : dust->getParticles()) EXPECT_GT((to_model * p.position).z, -9.01) << "fell through";
    logic().update_deflector(nullptr);
    logic().update_deflector(addNode("no particles"));
    EXPECT_LT(difference(logic().getHelicopterPlaces().deflector, expected), 1e-6);
    logic().update_deflector(bare);
    EXPECT_EQ(bare->getNumDeflectors(), 0);
}

/// The n-th example, from 0, of a chapter of the description of the data formats.
std::string readExample(const std::string& chapter, int n) {
    std::ifstream file(DECKVIEW_SOURCE "/docs/data_formats.md");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    std::size_t begin = text.find(chapter);
    for (int i = 0; i <= n && begin != std::string::npos; ++i) begin = text.find("```json", begin + 1);
    if (begin == std::string::npos) return {};
    return text.substr(begin + 7, text.find("```", begin + 7) - begin - 7);
}

TEST_F(HandlerTest, TheDescribedGliderLoads) {
    write("data/glider/glider.prefab", readExample("An aircraft of your own", 0));
    write(TestJet::CONFIG, readExample("An aircraft of your own", 1));
    write("data/glider/glider.glb",
          AerobaticModel::instruments({"aileron_left", "aileron_right", "rudder", "canopy", "compass"}));
    addStart();
    start();
    ASSERT_NE(logic().getAircraft(), nullptr) << printed;
    EXPECT_EQ(static_cast<PlaneExtra300s&>(*logic().getAircraft()).getNumNodes(), 7) << printed;
    EXPECT_EQ(countLines("glider"), 0);
}

}  // namespace
