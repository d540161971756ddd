// The logic from the factory to the end: start, camera, messages, reset, what is left in memory, the built library.
#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <set>
#include <string_view>

#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/gui/UIRoot.h"
#include "engine/gui/UIWidgets.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/ObjectPrefab.h"
#include "support/Paths.h"

namespace {

class LifeTest : public LogicTest {
protected:
    void begin(const TestJet& spec = {}) {
        writeJet(spec);
        addStart();
        start();
    }
};

TEST_F(LifeTest, TheJetStartsAtItsNodeAndTheFirstViewSitsInItAfterItMoved) {
    TestJet spec;
    spec.body.clear();
    begin(spec);
    const dmat4 at = world().getNodeByName("start_deck")->getWorldTransform();
    EXPECT_LT(length(jet().getWorldTransform().getTranslation() - at.getTranslation()), 1e-6);
    EXPECT_LT(length(jet().getBaseTransform().getY() - at.getY()), 1e-9);
    logic().set_player_mode(FIRST_VIEW);
    logic().getAircraftNode()->setWgsPosition({112.4, 16.9, 900.0});
    frame();
    const Node& camera = *engine().getCameraControl()->getNode();
    const dmat4& place = jet().getWorldTransform();
    EXPECT_LT(length(camera.getWorldPosition() - place * dvec3(0, 5, 1)), 1e-6);
    EXPECT_LT(length(camera.getWorldTransform().getX() - place.getX()), 1e-9);
}

TEST_F(LifeTest, WithoutAnAircraftTheRestRuns) {
    const struct {
        const char* start;
        std::string config;
    } cases[] = {{"nowhere", TestJet().config()},
                 {"start_deck", "{"},
                 {"start_deck", R"({ "type": "Balloon" })"},
                 {"start_deck", R"({ "type": "PlaneJ15", "path": "data/none.prefab" })"}};
    for (const auto& c : cases) {
        end();
        world().removeNode(world().getNodeByName("start_deck"));
        writeConfig(R"(, "ignore_order": true)");
        addStart(c.start);
        write(TestJet::CONFIG, c.config);
        start();
        EXPECT_EQ(logic().getAircraftNode(), nullptr);
        for (const FLY_MODE mode : {DATA_FLY, MANUAL_FLY, AUTO_FLY}) {
            logic().set_fly_mode(mode);
            frame();
        }
        logic().on_plane_destory(nullptr);
        EXPECT_FALSE(logic().plan_explosion());
        logic().emit_missile();
        EXPECT_EQ(logic().getNumMissiles(), 0);
        logic().on_close_undercarriage({}, nullptr);
        UISlider control;
        logic().set_node_deflection({1.0}, &control);
        EXPECT_EQ(logic().getLinkCounts().feedback, 0u) << "without an aircraft, though orders are ignored";
    }
}

TEST_F(LifeTest, OneMessageLevelsTheCameraAndOnlyUntilTheEnd) {
    start();
    CameraControl& camera = *engine().getCameraControl();
    const auto tilted = [&](int id) {
        camera.getPosition() = engine().getEllipsoid().toWorld(PLACE);
        camera.getRotation() = dquat(dvec3(1, 2, 3), 50.0);
        camera.apply();
        UiMsg msg{id, 0.0};
        MsgNode::send(&msg);
        return length(camera.getNode()->getWorldTransform().getY() - normalize(camera.getPosition())) > 1e-6;
    };
    EXPECT_TRUE(tilted(1));
    EXPECT_FALSE(tilted(654321));
    end();
    EXPECT_TRUE(tilted(654321));
}

TEST_F(LifeTest, ResetPutsTheJetBackWhereTheStartIsNow) {
    begin();
    frame();
    jet().showDestroyed();
    jet().setUndercarriage(false, true);
    world().getNodeByName("start_deck")->setWgsPosition({112.36, 16.85, 70.0});
    logic().reset();
    const dvec3 place = engine().getEllipsoid().toWorld({112.36, 16.85, 70.0});
    EXPECT_LT(length(jet().getWorldTransform().getTranslation() - place), 1e-6);
    EXPECT_EQ(jet().getNumActions(), 0);
    logic().on_close_undercarriage({}, nullptr);
    EXPECT_FALSE(jet().isUndercarriageOpen());
    logic().on_open_undercarriage({}, nullptr);
    EXPECT_TRUE(jet().isUndercarriageOpen());
}

TEST_F(LifeTest, OnlyTheMulticastSenderAndReplacedKitsOutliveTheLogic) {
    writeJet();
    addStart();
    const jVector<MemInfo> before = memGetInfos();
    {
        const LoopbackSocket other(ports().viewer);
        start();
        logic().set_fly_mode(DATA_FLY);  // the kits are made again
    }
    jet().setUndercarriage(false, true);
    frame();
    end();
    std::map<std::string, int> left;
    for (const MemInfo& info : memGetInfos()) {
        const auto same = [&](const MemInfo& old) { return old.block == info.block; };
        if (std::none_of(before.begin(), before.end(), same)) ++left[info.source + " " + info.function];
    }
    EXPECT_EQ(left, (std::map<std::string, int>{{"src\\kit\\UdpDataKit Logic_Test_Fly::init_udp", 7},
                                                {"src\\kit\\UdpDataKit UdpSendKit::init", 5}}));
}

const std::string LIBRARY = DECKVIEW_LIB "/libLogic_Test_Fly.so";

/// Whether a symbol is the factory, its version, or a member or a table of one of the classes that cross.
bool mayBeExported(std::string_view name) {
    if (name == "CreateLogic" || name == "LogicInterfaceVersion") return true;
    for (const std::string_view what :
         {"vtable for ", "typeinfo for ", "typeinfo name for ", "non-virtual thunk to "}) {
        if (name.starts_with(what)) name.remove_prefix(what.size());
    }
    for (const std::string_view owner : {"AppData", "LogicBase", "Logic_Test_Fly", "Ship", "Buoyancy", "Wakes",
                                         "FresnelLight", "Target", "FlagOper", "HandOper"}) {
        if (name == owner || (name.starts_with(owner) && name.substr(owner.size()).starts_with("::"))) return true;
    }
    return false;
}

TEST(PluginFile, ExportsWhatAProgramCanReachAndNothingElse) {
    std::unique_ptr<FILE, int (*)(FILE*)> nm(popen(("nm -D --defined-only -C " + LIBRARY).c_str(), "r"), pclose);
    ASSERT_NE(nm, nullptr);
    std::set<std::string, std::less<>> names;
    std::array<char, 4096> line;
    while (std::fgets(line.data(), line.size(), nm.get())) {
        std::string_view name(line.data());
        name = name.substr(0, name.find('\n')).substr(std::string_view("0123456789abcdef T ").size());
        EXPECT_TRUE(mayBeExported(name)) << name;
        names.emplace(name);
    }
    for (const char* name :
         {"CreateLogic", "Logic_Test_Fly::update(float)", "Logic_Test_Fly::setNaviLight(unsigned short)",
          "Logic_Test_Fly::getNaviLight() const", "Logic_Test_Fly::getFogVisibility() const",
          "Logic_Test_Fly::set_wipers(bool)", "Ship::getVelocity() const", "Buoyancy::update()",
          "Wakes::clearParticles()", "FresnelLight::getGlideAngle() const", "Target::getNode() const",
          "FlagOper::update(float)", "HandOper::update(float)"}) {
        EXPECT_TRUE(names.contains(name)) << name;
    }
}

TEST_F(LifeTest, TheLibraryLoadsAndUnloadsAgainAndAgain) {
    writeJet();
    addStart();
    addNode("group")->addTag("all_triggers");
    addPlate("ground", {PLACE.x, PLACE.y, PLACE.z - 1.0});  // the jet's body touches it
    for (int i = 0; i < 2; ++i) {
        void* const library = dlopen(LIBRARY.c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        const auto create = reinterpret_cast<LogicBase* (*)(World*, CameraControl*)>(dlsym(library, "CreateLogic"));
        ASSERT_NE(create, nullptr);
        LogicBase* const loaded = create(&world(), engine().getCameraControl());
        loaded->set_airport_node("start_deck");
        loaded->set_aircraft_path(TestJet::CONFIG);
        printedBy([&] { EXPECT_TRUE(loaded->init()); });
        for (int k = 0; k < 3; ++k) frame(*loaded);
        loaded->release();
        engine().getUIRoot()->clear();
        jDelete(loaded);
        dlclose(library);
        EXPECT_EQ(dlopen(LIBRARY.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "it is still in the process";
        EXPECT_EQ(world().getNodeByName("plane_j15"), nullptr) << "its code is gone";
        run(3);
    }
}

}  // namespace
