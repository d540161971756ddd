// The rotor wash: model parts that it requires, stages by height, density, and the surface below.
#include "HelicopterWorld.h"
#include "engine/gui/UIRoot.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "src/aircraft/HeliEffectsKit.h"

namespace {

constexpr const char* LAND = R"({ "name": "downwash_spe", "type": "particles", "particles": { "spawn_rate": 100.9 },
    "children": [ { "name": "leaf_1", "type": "particles", "particles": { "spawn_rate": 40.5 } } ] })";
constexpr const char* WATER = R"({ "name": "downwash_spe_water", "type": "particles", "particles": { "spawn_rate": 7 },
    "children": [ { "name": "leaf_water", "type": "particles", "particles": { "spawn_rate": 20 } } ] })";

std::string wash(const std::string& children) {
    return R"("children": [ { "name": "downwash", "children": [ )" + children +
           R"( ] }, { "name": "field_anim", "scale": [3, 4, 5] } ])";
}

class HeliEffectsTest : public HelicopterTest {
protected:
    void begin(const std::string& parts) {
        make(BODY, parts);
        ASSERT_TRUE(kit.init(heli.get()));
    }
    /// At so many metres above a surface at 12 m.
    void placeAt(double height) {
        heli->getModel()->setWgsPosition({PLACE.x, PLACE.y, 12.0 + height});
        heli->setSurfaceHeight(12.0f);
        kit.updatePlacement();
    }
    float rate(const char* name) { return static_cast<ObjectParticles*>(part(name))->getSpawnRate(); }
    /// Which of these are on, in order: downwash, land, its leaves, water, its leaves.
    std::string lit() {
        std::string on;
        for (const char* name : {"downwash", "downwash_spe", "leaf_1", "downwash_spe_water", "leaf_water"}) {
            on += part(name)->isEnabled() ? '1' : '0';
        }
        return on;
    }
    HeliEffectsKit kit;
};

TEST_F(HeliEffectsTest, MissingPartsAreLoggedAndEffectsAreRegisteredInOrder) {
    const struct {
        std::string parts;
        const char* line;
    } models[] = {
        {R"("children": [])", "HeliEffectsKit::init:can not find \"downwash\" node"},
        {wash(R"({ "name": "smoke" })"), "HeliEffectsKit::init:can not find \"downwash_spe\" node"},
        {wash(R"({ "name": "downwash_spe" })"), "HeliEffectsKit::init:\"downwash_spe\" node is not a particle"}};
    for (const auto& model : models) {
        make(BODY, model.parts);
        EXPECT_FALSE(kit.init(heli.get()));
        EXPECT_EQ(countLines(model.line), 1) << model.line;
        kit.updatePlacement();
    }
    begin(wash(std::string(LAND) + ", " + WATER));
    std::string names;
    kit.registerEffects({[&](Node* node, bool) { names += node ? node->getName() + " " : ""; }});
    EXPECT_EQ(names, "downwash_spe leaf_1 leaf_water downwash_spe_water ");
    EXPECT_EQ(lit(), "11000");
    EXPECT_EQ(kit.getFieldParameters().y, 4.0f);
}

TEST_F(HeliEffectsTest, StagesByHeightAndByWhatIsBelow) {
    begin(wash(std::string(LAND) + ", " + WATER));
    const struct {
        double height;
        bool water;
        const char* lit;
    } rows[] = {{4.9, false, "11101"},  {5.1, false, "11000"},  {60.0, false, "01000"}, {4.9, true, "10111"},
                {12.0, true, "10011"},  {18.1, true, "10011"},  {9.9, true, "10010"},   {-2.0, false, "11101"},
                {30.0, false, "11101"}, {39.9, false, "11101"}, {40.1, false, "01101"}, {40.1, true, "00111"},
                {17.9, false, "11001"}};
    for (const auto& row : rows) {
        heli->setOverWater(row.water);
        placeAt(row.height);
        EXPECT_EQ(lit(), row.lit) << row.height << row.water;
        EXPECT_NEAR(kit.getLastHeight(), row.height, 1e-4);
    }
    heli->getModel()->setWgsHPR({50.0, 20.0, 10.0});
    placeAt(20.0);
    const EllipsoidModel& globe = engine().getEllipsoid();
    const dmat4 level = globe.getWGSTransform(globe.toWorld({PLACE.x, PLACE.y, 12.0}));
    EXPECT_LT(difference(part("downwash")->getWorldTransform(), level), 1e-6);
}

TEST_F(HeliEffectsTest, DensityFollowsHeightAndPower) {
    begin(wash(std::string(LAND) + ", " + WATER));
    const struct {
        double height;
        float power, scale;
    } rows[] = {{10, 7.0f, 1.0f}, {10, 0.25f, 0.25f}, {22, 1.0f, 1.0f}, {31, 0.5f, 0.25f}, {45, 1.0f, 0.0f}};
    for (const auto& row : rows) {
        placeAt(row.height);
        kit.updateIntensity(row.power);
        EXPECT_NEAR(rate("downwash_spe"), 100.0f * row.scale, 1e-3f) << row.height << " " << row.power;
        EXPECT_NEAR(rate("leaf_1"), 40.0f * row.scale, 1e-3f);
        EXPECT_NEAR(rate("leaf_water"), 20.0f * row.scale, 1e-3f);
        EXPECT_EQ(rate("downwash_spe_water"), 7.0f);
    }
}

/// In the logic's frame, over ground that `ground` gives (metres; none without) and a calm sea.
class HeliSurfaceTest : public HelicopterTest {
protected:
    void begin(const double* ground, bool sea) {
        writePrefab(BODY, wash(std::string(LAND) + ", " + WATER));
        addStart()->setWgsPosition({PLACE.x, PLACE.y, 104.0});
        if (ground) addTerrain(*ground);
        if (sea) {
            auto* const ocean = add(std::make_unique<ObjectOcean>());
            ocean->setName("ocean");
            ocean->setBeaufort(0);
        }
        start();
        logic().getHelicopter()->getBody()->setEnabled(false);
        logic().getHelicopter()->setOverWater(true);
        hold("r");
        for (int i = 0; i < 10; ++i) frame(0.1);
    }
};

TEST_F(HeliSurfaceTest, TheHigherOfGroundAndSeaIsBelow) {
    const double hill = 100.0, bed = -20.0;
    const struct {
        const double* ground;
        float surface;
        bool water;
        float power;  ///< of the downwash over land, which fades above the sea
    } rows[] = {{&hill, 100.0f, false, 6.0f * 0.03f}, {&bed, 0.0f, true, 0.0f}, {nullptr, -1e9f, false, 0.0f}};
    for (const auto& row : rows) {
        begin(row.ground, row.ground != nullptr);
        const Helicopter& craft = *logic().getHelicopter();
        EXPECT_NEAR(craft.getSurfaceHeight(), row.surface, 0.05f);
        EXPECT_EQ(craft.isOverWater(), row.water);
        Node* const land = craft.getModel()->getNodeByName("downwash_spe");
        EXPECT_NEAR(static_cast<ObjectParticles*>(land)->getSpawnRate(), 100.0f * row.power, 0.1f);
        for (const Node* node : craft.getModel()->getNodes()) EXPECT_TRUE(isFinite(node->getWorldTransform()));
        end();
        for (const char* name : {"start_deck", "terrain", "ocean"}) world().removeNode(world().getNodeByName(name));
    }
}

TEST_F(HeliEffectsTest, TheLogicNotifiesOfTheEffectsThatExist) {
    writePrefab(BODY, wash(LAND));
    addStart();
    LogicBase* const made = CreateLogic(&world(), nullptr);
    made->set_airport_node("start_deck");
    made->set_aircraft_path(TestJet::CONFIG);
    std::string names;
    made->m_signal_6_rotor_wash.append([&](Node* node, bool) { names += (node ? node->getName() : "null") + " "; });
    printedBy([&] { made->init(); });
    EXPECT_EQ(names, "downwash_spe leaf_1 ");
    engine().getUIRoot()->clear();
    jDelete(made);
}

}  // namespace
