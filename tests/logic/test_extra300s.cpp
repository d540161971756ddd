// The aerobatic aircraft on its own: loading, control nodes, poses, damage; the timed turn of a part.
#include <fstream>
#include <set>

#include "AerobaticModel.h"
#include "LogicWorld.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/SceneNodes.h"
#include "src/aircraft/ActionRotateSurfaceTo.h"
#include "src/aircraft/AppData_AirCraft.h"
#include "src/aircraft/PlaneExtra300s.h"
#include "src/kit/FlyFrame.h"
#include "support/Paths.h"

namespace {

AirCraftInfo readInfo(const jString& config) {
    AppData_AirCraft::get().setConfigPath(config);
    EXPECT_TRUE(AppData_AirCraft::get().open());
    return AppData_AirCraft::get().getAircraftInfo();
}

class AerobaticTest : public SceneTest {
protected:
    bool load(const AerobaticModel& model = {}) {
        model.writeFiles([this](const char* file, const std::string& text) { write(file, text); });
        bool loaded = false;
        printed = printedBy([&] {
            plane.setAircraftInfo(readInfo(AerobaticModel::CONFIG));
            loaded = plane.init(&world());
        });
        plane.setWgsPosition({112.35, 16.84, 50.0});
        return loaded;
    }

    Node* part(int i) { return plane.getModel()->getNodeByName(jString("part_" + std::to_string(i))); }

    static vec4 uvOffset(Node* node) {
        const vec4* const value = node->asObject()->getSurfaceMaterial(0)->getParameter("ui_offset");
        return value ? *value : vec4(-1, -1, -1, -1);
    }

    /// Whether a part stands at its place, turned by hpr.
    static bool isPosed(const Node* node, const dvec3& place, const dvec3& hpr) {
        return difference(node->getTransform(), dmat4(dquat::fromEulerZXY(hpr), place)) < 1e-6;
    }

    PlaneExtra300s plane;
    std::string printed;
};

TEST_F(AerobaticTest, TellsHowLoadingWent) {
    AerobaticModel absent;
    absent.path = "data/plane/none.prefab";
    EXPECT_FALSE(load(absent));
    EXPECT_NE(printed.find("PlaneExtra300s init error path:data/plane/none.prefab\n"), std::string::npos);
    plane.resetAt(dmat4());
    plane.flyPose();

    ASSERT_TRUE(load());
    EXPECT_NE(printed.find("PlaneExtra300s::setAircraftInfo\nm_rot_node_num:7\n"), std::string::npos) << printed;
    EXPECT_NE(printed.find("PlaneExtra300s init success :PlaneExtra300s::init\n"), std::string::npos);
    EXPECT_EQ(plane.getWheels(), (jMap<Node*, int>{{plane.getModel()->getNodeByName("L_wheel_pos"), 1}}));
    const int nodes = world().getNumNodes();
    EXPECT_TRUE(plane.init(&world()));
    EXPECT_EQ(world().getNumNodes(), nodes);
}

TEST_F(AerobaticTest, AMissingNodeMovesLaterOnesDownButNotTheirAxesAndPlaces) {
    AerobaticModel model;
    model.missing = "part_5";
    ASSERT_TRUE(load(model));
    EXPECT_NE(printed.find("part_5 no find\n"), std::string::npos);
    EXPECT_EQ(plane.getNode(5), part(6));
    plane.setWingDirect(5, 4.0f);
    EXPECT_TRUE(isPosed(part(6), {6, 0, 0}, {-8, 0, 0})) << "with the axis at position 5";
    plane.setNodeOffset(11, 2.0f);
    EXPECT_EQ(part(12)->getPosition(), dvec3(11, 0, 2)) << "from the place at position 11";
    EXPECT_EQ(printedBy([&] { plane.setNodeOffset(12, 2.0f); }),
              "not find id is 12 node in PlaneExtra300s::setNodeOffset\n");
}

TEST_F(AerobaticTest, EachControlMovesItsNodeAlone) {
    ASSERT_TRUE(load());
    const auto turn = [&](int i, float value) {
        plane.setWingDirect(i, value);
        return part(i)->getHPR();
    };
    EXPECT_LT(length(turn(3, 10.0f) - dvec3(10, 20, 30)), 1e-6);
    EXPECT_LT(length(turn(3, -1.0f) - dvec3(-1, -2, -3)), 1e-6) << "the value alone counts, not where it was";
    EXPECT_LT(length(turn(5, 12.5f) - dvec3(-25, 0, 0)), 1e-6);
    EXPECT_EQ(part(3)->getPosition(), dvec3(3, 0, 0));

    plane.setNodeOffset(7, 3.0f);
    plane.setNodeOffset(7, 0.25f);
    EXPECT_TRUE(isPosed(part(7), {7.25, -0.5, 0}, {0, 0, 5})) << "from the place at the start";
    plane.setNodeOffsetDirect(7, {0.0f, 1.0f, 2.0f});
    EXPECT_EQ(part(7)->getPosition(), dvec3(7, 1, 2));

    plane.setUVOffset(8, 3.0f);
    EXPECT_EQ(uvOffset(part(8)), vec4(0, 1.5f, 6, 0));
    EXPECT_EQ(uvOffset(part(9)), vec4(-1, -1, -1, -1)) << "the other instrument shares the model's material";
    plane.setUVOffset(9, 0.0f);
    EXPECT_EQ(uvOffset(part(9)), vec4(0, 0, 0, 0));

    const auto* const text = static_cast<NodeText*>(part(10));
    for (const auto& [number, shown] : {std::pair(42, "42"), {-7, "-7"}, {0, "0"}}) {
        plane.setUIText(10, number);
        EXPECT_EQ(text->getText(), shown);
    }

    EXPECT_TRUE(plane.getNodeEnable(11));
    plane.setNodeEnable(11, false);
    EXPECT_FALSE(plane.getNodeEnable(11));
    EXPECT_FALSE(part(11)->isEnabled());

    plane.partAnimRot(2, 0.25f);
    EXPECT_TRUE(isPosed(part(2), {2, 0, 0}, {0, 7.5, 5}));
}

TEST_F(AerobaticTest, PositionsWithoutANodeOrWithAnotherKindChangeNothing) {
    ASSERT_TRUE(load());
    const std::uint64_t before = engine().getStateHash();
    const struct {
        const char* name;
        std::function<void(int)> call;
    } operations[] = {{"setWingDirect", [&](int i) { plane.setWingDirect(i, 1.0f); }},
                      {"setNodeOffsetDirect",
                       [&](int i) {
                           plane.setNodeOffsetDirect(i, {1, 1, 1});
                       }},
                      {"setNodeOffset", [&](int i) { plane.setNodeOffset(i, 1.0f); }},
                      {"getNodeEnable", [&](int i) { EXPECT_FALSE(plane.getNodeEnable(i)); }},
                      {"setNodeEnable", [&](int i) { plane.setNodeEnable(i, false); }},
                      {"setUVOffset", [&](int i) { plane.setUVOffset(i, 1.0f); }},
                      {"setUIText", [&](int i) { plane.setUIText(i, 1); }},
                      {"partAnimRot", [&](int i) { plane.partAnimRot(i, 1.0f); }}};
    for (const auto& operation : operations) {
        for (const int i : {-1, AerobaticModel::COUNT, 1000000}) {
            EXPECT_EQ(printedBy([&] { operation.call(i); }),
                      "not find id is " + std::to_string(i) + " node in PlaneExtra300s::" + operation.name + "\n");
        }
    }
    plane.setUVOffset(0, 1.0f);
    plane.setUVOffset(10, 1.0f);
    plane.setUIText(8, 1);
    EXPECT_EQ(engine().getStateHash(), before);
}

TEST_F(AerobaticTest, PosesTurnTheRotatingPartsAndTheGearFlagFollowsTheFlight) {
    ASSERT_TRUE(load());
    plane.setThrust(1.0f);
    EXPECT_TRUE(plane.isUndercarriageOpen());
    plane.flyPose();
    EXPECT_FALSE(plane.isUndercarriageOpen());
    for (const int i : {0, 6}) EXPECT_TRUE(isPosed(part(i), dvec3(i, 0, 0), {0, 0, 20})) << i;
    EXPECT_TRUE(isPosed(part(7), {7, 0, 0}, {0, 0, 5})) << "does not turn";
    EXPECT_EQ(plane.getThrust(), 1.0f);
    EXPECT_EQ(printedBy([&] { plane.standPose(); }), "PlaneExtra300s::standPose\n");
    for (const int i : {0, 6}) EXPECT_TRUE(isPosed(part(i), dvec3(i, 0, 0), {0, 10, 0})) << i;
    EXPECT_EQ(plane.getThrust(), 0.0f);
    EXPECT_FALSE(plane.isUndercarriageOpen()) << "the pose alone";
    EXPECT_EQ(printedBy([&] { plane.stopPose(); }), "PlaneExtra300s::stopPose \n");
}

TEST_F(AerobaticTest, AFlightStatePlacesTheModelAndTurnsNoSurface) {
    ASSERT_TRUE(load());
    const dmat4 base(dquat::fromEulerZXY(20, 0, 0), engine().getEllipsoid().toWorld({112.35, 16.84, 50.0}));
    plane.setBaseTransform(base);
    FlyFrame state;
    state.pivot = dvec3(100, 200, 30);
    state.heading = 90.0f, state.roll = 30.0f, state.wing1 = 8.0f, state.wing2 = -15.0f;
    plane.setFlightState(&state);
    const dmat4 expected = base * dmat4(dquat(dvec3(0, 1, 0), -30.0), state.pivot);
    EXPECT_LT(difference(plane.getModel()->getTransform(), expected), 1e-6) << "level along the base's +Y, left down";
    for (int i = 0; i <= 7; ++i) EXPECT_TRUE(isPosed(part(i), dvec3(i, 0, 0), {0, 0, 5})) << i;
}

TEST_F(AerobaticTest, DamageShowsAndAResetUndoesIt) {
    ASSERT_TRUE(load());
    const auto looks = [&] {
        std::string on;
        for (const char* name : {"normal", "destroyed", "fire"}) {
            on += plane.getModel()->getNodeByName(name)->isEnabled() ? '1' : '0';
        }
        return on + std::to_string(plane.getDamageState());
    };
    plane.showDestroyed();
    EXPECT_TRUE(plane.catchFire());
    EXPECT_EQ(looks(), "0111");
    EXPECT_TRUE(static_cast<ObjectParticles*>(plane.getModel()->getNodeByName("fire_spe"))->isEmitterEnabled());
    const dmat4 place = dmat4(dquat(), engine().getEllipsoid().toWorld({112.4, 16.9, 100.0}));
    plane.resetAt(place);
    EXPECT_EQ(looks(), "1000");
    EXPECT_LT(difference(plane.getWorldTransform(), place), 1e-6);
    EXPECT_TRUE(isPosed(part(0), {0, 0, 0}, {0, 10, 0}));
}

TEST_F(AerobaticTest, ATimedTurnEndsWhereItIsToWhateverItsDuration) {
    ASSERT_TRUE(load());
    const dmat4 initial = part(1)->getTransform();
    const auto create = [&](const char* name, float duration) {
        return ActionRotateSurfaceTo::Create(plane.getModel(), name, initial, duration, {0, 10, 0}, {0, 50, 20});
    };
    plane.getModel()->setName("plane");
    EXPECT_EQ(create("part_99", 1.0f), nullptr);
    EXPECT_EQ(countLines("ActionRotateSurfaceTo::initWithDuration:can not find surface \"part_99\" in Object "
                         "\"plane\""),
              1);
    const struct {
        float duration;
        jVector<float> steps;
        dvec3 hpr;
    } turns[] = {{2.0f, {0.5f}, {0, 20, 5}},
                 {2.0f, {0.5f, 1.0f}, {0, 40, 15}},
                 {2.0f, {5.0f}, {0, 50, 20}},
                 {0.0f, {0.01f}, {0, 50, 20}},
                 {-3.0f, {0.01f}, {0, 50, 20}}};
    for (const auto& turn : turns) {
        clearLines();
        ActionManager actions;
        actions.addAction(create("part_1", turn.duration));
        for (const float dt : turn.steps) actions.update(dt);
        EXPECT_TRUE(isPosed(part(1), {1, 0, 0}, turn.hpr)) << turn.duration << " " << turn.steps.size();
        EXPECT_EQ(countLines("ActionRotateSurfaceTo::initWithDuration:dt <=0 ,make dt = 0.001f"),
                  turn.duration > 0.0f ? 0 : 1);
    }
}

/// A binary glTF file around its JSON.
std::string packGlb(std::string json) {
    json.resize((json.size() + 3) / 4 * 4, ' ');
    const auto number = [](std::size_t n) {
        std::string bytes;
        for (int i = 0; i < 4; ++i) bytes += static_cast<char>(n >> (8 * i) & 255);
        return bytes;
    };
    return "glTF" + number(2) + number(20 + json.size()) + number(json.size()) + "JSON" + json;
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

TEST_F(AerobaticTest, TheDescribedGliderFliesAsDescribed) {
    std::string model = AerobaticModel::instruments(), nodes = "\"nodes\": [", scene = "\"nodes\": [0";
    int count = 0;
    for (const char* name : {"aileron_left", "aileron_right", "rudder", "canopy", "compass"}) {
        nodes += std::string(count ? ", " : "") + R"({ "mesh": 0, "name": ")" + name + "\" }";
        if (count++) scene += ", " + std::to_string(count - 1);
    }
    const std::size_t list = model.find("\"nodes\": [ {");
    model.replace(list, model.find(']', list) - list, nodes);
    model.replace(model.find("\"nodes\": [0, 1"), 14, scene);
    write("data/glider/glider.glb", packGlb(model));
    write("data/glider/glider.prefab", readExample("An aircraft of your own", 0));
    write("data/glider/glider.cfg", readExample("An aircraft of your own", 1));

    const std::string console = printedBy([&] {
        plane.setAircraftInfo(readInfo("data/glider/glider.cfg"));
        EXPECT_TRUE(plane.init(&world()));
    });
    EXPECT_EQ(console.find("no find"), std::string::npos) << console;
    EXPECT_TRUE(lines().empty()) << lines().front();
    ASSERT_EQ(plane.getNumNodes(), 7);
    plane.setWingDirect(1, 20.0f);
    EXPECT_LT(length(plane.getNode(1)->getHPR() - dvec3(0, -20, 0)), 1e-6);
    plane.setNodeOffset(3, 100.0f * plane.getAircraftInfo().parts[3].digit);
    EXPECT_LT(length(plane.getNode(3)->getPosition() - dvec3(0, -0.5, 0)), 1e-6);
    plane.setUVOffset(4, 50.0f * plane.getAircraftInfo().parts[4].digit);
    EXPECT_EQ(uvOffset(plane.getNode(4)), vec4(0.25f, 0, 0, 0));
    plane.setUIText(5, 88);
    EXPECT_EQ(static_cast<NodeText*>(plane.getNode(5))->getText(), "88");
}

/// The aerobatic aircraft that comes with the demonstration: its file and its model must fit each other.
TEST(AerobaticDemo, EveryControlFindsANodeOfItsKind) {
    EngineSettings settings;
    settings.root = DECKVIEW_ROOT;
    Engine engine(settings);
    PlaneExtra300s plane;
    const AirCraftInfo info = readInfo("data/assets/Targets/MODELS/EXTRA300S/EXTRA300S.cfg");
    ASSERT_EQ(info.type, "extra300s");
    std::string printed = printedBy([&] {
        plane.setAircraftInfo(info);
        EXPECT_TRUE(plane.init(engine.getWorld()));
    });
    EXPECT_EQ(printed.find("no find"), std::string::npos) << printed;
    EXPECT_TRUE(plane.getModel()->getNodeByName("cam_first_player"));
    std::set<jString> names;
    std::set<int> kinds;
    int turning = 0;
    for (int i = 0; i < info.parts.size(); ++i) {
        const AirCraftPartInfo& part = info.parts[i];
        EXPECT_EQ(part.id, i);
        EXPECT_TRUE(names.insert(part.node_name).second) << part.node_name;
        kinds.insert(part.type);
        Node* const node = plane.getNode(i);
        ASSERT_TRUE(node) << part.node_name;
        EXPECT_EQ(node->getType() == Node::TEXT, part.type == PART_DIGIT) << part.node_name;
        if (part.type == PART_UV_OFFSET) {
            ASSERT_TRUE(node->isObject() && node->asObject()->getSurfaceMaterial(0)) << part.node_name;
            EXPECT_TRUE(node->asObject()->getSurfaceMaterial(0)->base_texture) << part.node_name;
        }
        if (part.type == PART_ROTATION) {
            EXPECT_EQ(turning++, i) << part.node_name << ": turning parts come first";
            EXPECT_LT(length(node->getHPR()), 1e-6) << part.node_name << " would jump on its first deflection";
        }
    }
    EXPECT_EQ(kinds.size(), 5u);
    EXPECT_GE(turning, 6);
}

}  // namespace
