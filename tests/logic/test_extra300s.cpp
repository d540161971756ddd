// The aerobatic aircraft on its own: loading, control nodes, poses, damage; the timed turn of a part.
#include <fstream>

#include "AerobaticModel.h"
#include "LogicWorld.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/SceneNodes.h"
#include "src/aircraft/ActionRotateSurfaceTo.h"
#include "src/aircraft/AppData_AirCraft.h"
#include "src/aircraft/PlaneExtra300s.h"
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

    /// Whether a node has this local position and attitude.
    static bool isPosed(const Node* node, const dvec3& position, const dvec3& hpr) {
        return difference(node->getTransform(), dmat4(dquat::fromEulerZXY(hpr), position)) < 1e-6;
    }

    PlaneExtra300s plane;
    std::string printed;
};

TEST_F(AerobaticTest, PrintsHowLoadingWent) {
    AerobaticModel absent;
    absent.path = "data/plane/none.prefab";
    EXPECT_FALSE(load(absent));
    EXPECT_NE(printed.find("PlaneExtra300s init error path:data/plane/none.prefab\n"), std::string::npos);
    ASSERT_TRUE(load());
    EXPECT_NE(printed.find("PlaneExtra300s::setAircraftInfo\nm_rot_node_num:7\n"), std::string::npos) << printed;
    EXPECT_NE(printed.find("PlaneExtra300s init success :PlaneExtra300s::init\n"), std::string::npos);
}

TEST_F(AerobaticTest, OffsetsTexturesAndPosesOfSingleParts) {
    ASSERT_TRUE(load());
    plane.setNodeOffset(7, 3.0f);
    plane.setNodeOffset(7, 0.25f);
    EXPECT_TRUE(isPosed(part(7), {7.25, -0.5, 0}, {0, 0, 5})) << "from the position at the start";
    plane.setNodeOffsetDirect(7, {0.0f, 1.0f, 2.0f});
    EXPECT_EQ(part(7)->getPosition(), dvec3(7, 1, 2));
    plane.setUVOffset(8, 3.0f);
    EXPECT_EQ(uvOffset(part(8)), vec4(0, 1.5f, 6, 0));
    EXPECT_EQ(uvOffset(part(9)), vec4(-1, -1, -1, -1)) << "the other instrument shares the model's material";
    plane.setNodeEnable(11, false);
    EXPECT_FALSE(plane.getNodeEnable(11));
    plane.partAnimRot(2, 0.25f);
    EXPECT_TRUE(isPosed(part(2), {2, 0, 0}, {0, 7.5, 5}));
}

TEST_F(AerobaticTest, PositionsWithoutANodeAreNamed) {
    ASSERT_TRUE(load());
    for (const int i : {-1, AerobaticModel::COUNT}) {
        const std::string line = "not find id is " + std::to_string(i) + " node in PlaneExtra300s::";
        EXPECT_EQ(printedBy([&] { plane.setWingDirect(i, 1.0f); }), line + "setWingDirect\n");
        EXPECT_EQ(printedBy([&] { plane.partAnimRot(i, 1.0f); }), line + "partAnimRot\n");
    }
}

TEST_F(AerobaticTest, PosesSetThrustAndGearFlag) {
    ASSERT_TRUE(load());
    plane.setThrust(1.0f);
    plane.flyPose();
    EXPECT_FALSE(plane.isUndercarriageOpen());
    EXPECT_EQ(plane.getThrust(), 1.0f);
    EXPECT_TRUE(isPosed(part(6), {6, 0, 0}, {0, 0, 20}));
    EXPECT_TRUE(isPosed(part(7), {7, 0, 0}, {0, 0, 5})) << "does not turn";
    EXPECT_EQ(printedBy([&] { plane.standPose(); }), "PlaneExtra300s::standPose\n");
    EXPECT_TRUE(isPosed(part(6), {6, 0, 0}, {0, 10, 0}));
    EXPECT_EQ(plane.getThrust(), 0.0f);
    EXPECT_FALSE(plane.isUndercarriageOpen()) << "the pose alone";
}

TEST_F(AerobaticTest, OffsetsAndDeflectionsAddUp) {
    ASSERT_TRUE(load());
    plane.setWorldTransform({});
    printedBy([&] {
        plane.addPositionOffset({1, 2, 3}), plane.addPositionOffset({1, 0, 0});
        plane.addRotationDeflection({40, 0, 0}), plane.addRotationDeflection({0, 10, -20});
    });
    EXPECT_TRUE(isPosed(plane.getModel(), {2, 2, 3}, {40, 10, -20}));
}

TEST_F(AerobaticTest, ATimedTurnWithoutADurationEndsAtOnceAndWithoutAPartThereIsNone) {
    ASSERT_TRUE(load());
    plane.getModel()->setName("plane");
    const auto create = [&](const char* name, float duration) {
        const dmat4 initial = part(1)->getTransform();
        return ActionRotateSurfaceTo::Create(plane.getModel(), name, initial, duration, {0, 10, 0}, {0, 50, 20});
    };
    EXPECT_EQ(create("part_99", 1.0f), nullptr);
    EXPECT_EQ(countLines("ActionRotateSurfaceTo::initWithDuration:can not find surface \"part_99\" in Object "
                         "\"plane\""),
              1);
    for (const float duration : {0.0f, -3.0f}) {
        clearLines();
        ActionManager actions;
        actions.addAction(create("part_1", duration));
        EXPECT_EQ(countLines("ActionRotateSurfaceTo::initWithDuration:dt <=0 ,make dt = 0.001f"), 1);
        actions.update(0.01f);
        EXPECT_TRUE(isPosed(part(1), {1, 0, 0}, {0, 50, 20})) << duration;
    }
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

TEST_F(AerobaticTest, TheDescribedGliderLoads) {
    write("data/glider/glider.prefab", readExample("An aircraft of your own", 0));
    write("data/glider/glider.cfg", readExample("An aircraft of your own", 1));
    write("data/glider/glider.glb",
          AerobaticModel::instruments({"aileron_left", "aileron_right", "rudder", "canopy", "compass"}));
    const std::string console = printedBy([&] {
        plane.setAircraftInfo(readInfo("data/glider/glider.cfg"));
        EXPECT_TRUE(plane.init(&world()));
    });
    EXPECT_EQ(console.find("no find"), std::string::npos) << console;
    EXPECT_TRUE(lines().empty()) << lines().front();
    EXPECT_EQ(plane.getNumNodes(), 7);
}

}  // namespace
