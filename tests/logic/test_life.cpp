// The logic from the factory to the end: start, camera, messages, reset, what is left in memory, the built library.
#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <string_view>

#include "LogicWorld.h"
#include "engine/camera/CameraControl.h"
#include "engine/memory/Allocator.h"
#include "engine/physics/Body.h"
#include "engine/scene/ObjectPrefab.h"

namespace {

class LifeTest : public LogicTest {
protected:
    void begin(const TestJet& spec = {}) {
        writeJet(spec);
        addStart();
        start();
    }

    /// "function" of every block registered now beyond the first `before`.
    static std::vector<std::string> blocksSince(const jVector<MemInfo>& before) {
        std::vector<std::string> functions;
        for (const MemInfo& info : memGetInfos()) {
            const bool known =
                std::any_of(before.begin(), before.end(), [&](const MemInfo& old) { return old.block == info.block; });
            if (!known) functions.push_back(info.source + " " + info.function);
        }
        std::sort(functions.begin(), functions.end());
        return functions;
    }
};

TEST_F(LifeTest, TheJetStartsAtItsNode) {
    begin();
    const dmat4 start_place = world().getNodeByName("start_deck")->getWorldTransform();
    EXPECT_NE(printed.find("start node is start_deck\nm_aircraft_type is PlaneJ15:\nPlaneJ15::setAircraftInfo\n"
                           "m_rot_node_num:21\nPlaneBase init success :data/jet/jet.prefab\naircraft name:plane_j15\n"),
              std::string::npos)
        << printed;
    EXPECT_EQ(logic().getAircraftNode(), world().getNodeByName("plane_j15"));
    EXPECT_LT(length(jet().getWorldTransform().getTranslation() - start_place.getTranslation()), 1e-6);
    EXPECT_LT(length(jet().getBaseTransform().getY() - start_place.getY()), 1e-9);
    EXPECT_EQ(logic().getWorldPath(), "data/DEMO_PROJECT/DEMO_PROJECT.world");
}

TEST_F(LifeTest, WhatIsMissingLeavesTheRestRunning) {
    struct Case {
        const char* start;
        std::string config;
        const char* print;
    };
    const TestJet spec;
    const std::string good = spec.config();
    const Case cases[] = {{"nowhere", good, "can not find start_deck\n"},
                          {"start_deck", "{", "m_aircraft_type is :\n"},
                          {"start_deck", R"({ "type": "Balloon" })", "m_aircraft_type is Balloon:\n"},
                          {"start_deck", R"({ "type": "PlaneJ15", "path": "data/none.prefab" })", "m_rot_node_num:0\n"},
                          {"start_deck", R"({ "type": "PlaneJ15" })", "m_rot_node_num:0\n"}};
    for (const Case& c : cases) {
        end();
        world().removeNode(world().getNodeByName("start_deck"));
        writeConfig(R"(, "ignore_order": true)");
        addStart(c.start);
        write(TestJet::CONFIG, c.config);
        start();
        EXPECT_NE(printed.find(c.print), std::string::npos) << printed;
        EXPECT_EQ(logic().getAircraftNode(), nullptr);
        apply({1, 2});
        for (const FLY_MODE mode : {DATA_FLY, MANUAL_FLY, AUTO_FLY}) {
            logic().set_fly_mode(mode);
            frame();
        }
        logic().on_open_undercarriage({}, nullptr);
        logic().on_close_undercarriage({}, nullptr);
        EXPECT_EQ(logic().getLinkCounts().feedback, 0u);
    }
}

TEST_F(LifeTest, TheFirstViewSitsInTheJetAfterItMoved) {
    TestJet spec;
    spec.body.clear();
    begin(spec);
    logic().getAircraftNode()->setWgsPosition({112.4, 16.9, 900.0});
    frame();
    const Node& camera = *engine().getCameraControl()->getNode();
    const dmat4& place = jet().getWorldTransform();
    EXPECT_LT(length(camera.getWorldPosition() - place * dvec3(0, 5, 1)), 1e-6);
    EXPECT_LT(length(camera.getWorldTransform().getX() - place.getX()), 1e-9);
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
    EXPECT_LT(
        length(jet().getWorldTransform().getTranslation() - engine().getEllipsoid().toWorld({112.36, 16.85, 70.0})),
        1e-6);
    EXPECT_EQ(jet().getDamageState(), DAMAGE_NONE);
    EXPECT_EQ(jet().getNumActions(), 0);
    logic().on_close_undercarriage({}, nullptr);
    EXPECT_FALSE(jet().isUndercarriageOpen());
    EXPECT_EQ(jet().getNode(0)->getTransform().getX(), dmat4(dquat::fromEulerZXY(0, 0, 0), {}).getX());
    logic().on_open_undercarriage({}, nullptr);
    EXPECT_TRUE(jet().isUndercarriageOpen());
}

TEST_F(LifeTest, OnlyTheMulticastSenderAndReplacedKitsOutliveTheLogic) {
    const std::string kit = "src\\kit\\UdpDataKit Logic_Test_Fly::init_udp";
    const std::string socket = "src\\kit\\UdpDataKit UdpSendKit::init";
    jVector<MemInfo> before = memGetInfos();
    begin();
    jet().setUndercarriage(false, true);
    frame();
    logic().release();
    frame();
    EXPECT_FALSE(logic().isReceiverReady());
    end();
    EXPECT_EQ(blocksSince(before), (std::vector<std::string>{kit, socket}));

    before = memGetInfos();
    start();
    end();
    EXPECT_EQ(blocksSince(before), (std::vector<std::string>{kit, socket})) << "without a release before";

    before = memGetInfos();
    {
        const LoopbackSocket other(host().getViewerPort());
        start();
        logic().set_fly_mode(DATA_FLY);
    }
    end();
    EXPECT_EQ(blocksSince(before),
              (std::vector<std::string>{kit, kit, kit, kit, kit, kit, kit, socket, socket, socket, socket, socket}))
        << "three kits of init and of the default setting each were replaced, of the last three one stays";
}

const std::string LIBRARY = DECKVIEW_LIB "/libLogic_Test_Fly.so";

/// Whether a symbol is the factory, or one of the two classes' members or tables.
bool mayBeExported(std::string_view name) {
    if (name == "CreateLogic") return true;
    for (const std::string_view what :
         {"vtable for ", "typeinfo for ", "typeinfo name for ", "non-virtual thunk to "}) {
        if (name.starts_with(what)) name.remove_prefix(what.size());
    }
    for (const std::string_view owner : {"LogicBase", "Logic_Test_Fly"}) {
        if (name == owner || (name.starts_with(owner) && name.substr(owner.size()).starts_with("::"))) return true;
    }
    return false;
}

TEST(PluginFile, ExportsNothingElse) {
    std::unique_ptr<FILE, int (*)(FILE*)> nm(popen(("nm -D --defined-only -C " + LIBRARY).c_str(), "r"), pclose);
    ASSERT_NE(nm, nullptr);
    int factories = 0, members = 0;
    std::array<char, 4096> line;
    while (std::fgets(line.data(), line.size(), nm.get())) {
        std::string_view name(line.data());
        name = name.substr(0, name.find('\n')).substr(std::string_view("0123456789abcdef T ").size());
        EXPECT_TRUE(mayBeExported(name)) << name;
        factories += name == "CreateLogic";
        members += name.starts_with("Logic_Test_Fly::");
    }
    EXPECT_EQ(factories, 1);
    EXPECT_GT(members, 30);
}

TEST_F(LifeTest, TheLibraryLoadsAndUnloadsAgainAndAgain) {
    writeJet();
    addStart();
    Node* const group = addNode("group");
    group->addTag("all_triggers");
    for (int i = 0; i < 2; ++i) {
        void* const library = dlopen(LIBRARY.c_str(), RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(library, nullptr) << dlerror();
        const auto create = reinterpret_cast<LogicBase* (*)(World*, CameraControl*)>(dlsym(library, "CreateLogic"));
        ASSERT_NE(create, nullptr);
        LogicBase* const loaded = create(&world(), engine().getCameraControl());
        loaded->set_airport_node("start_deck");
        loaded->set_aircraft_path(TestJet::CONFIG);
        printedBy([&] { EXPECT_TRUE(loaded->init()); });
        for (int k = 0; k < 3; ++k) {
            engine().beginFrame(0.02);
            loaded->update(0.02f);
            engine().step();
            loaded->swap();
            engine().endFrame();
        }
        loaded->release();
        jDelete(loaded);
        dlclose(library);
        EXPECT_EQ(dlopen(LIBRARY.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "it is still in the process";
        run(3);
    }
}

}  // namespace
