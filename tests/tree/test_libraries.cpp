// What the shared libraries show of themselves, and that a plug-in's own copies of libraries stay its own.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "common/LogicBase.h"
#include "engine/core/Engine.h"
#include "engine/scene/SceneNodes.h"
#include "engine/scene/World.h"
#include "support/Paths.h"

namespace {

namespace fs = std::filesystem;

/// Demangled names of what a library exports, tables and thunks by the names of their classes; without the linker's
/// own.
std::set<std::string> exportsOf(const std::string& library) {
    const std::string command = "nm -D --defined-only -C " + std::string(DECKVIEW_LIB) + "/" + library;
    const std::unique_ptr<FILE, int (*)(FILE*)> nm(popen(command.c_str(), "r"), pclose);
    static const std::regex entry("[0-9a-f]* . (?:[a-z -]* (?:for|to) )?([^_\n].*)\n");
    std::set<std::string> names;
    std::array<char, 4096> line;
    std::cmatch found;
    while (nm && std::fgets(line.data(), line.size(), nm.get())) {
        if (std::regex_match(line.data(), found, entry)) names.insert(found[1]);
    }
    return names;
}

/// The classes and functions that the contract's headers mark for export.
std::set<std::string> contractNames() {
    static const std::regex mark("(?:class|struct) ENGINE_API (\\w+).*|ENGINE_API [^(]*\\b(operator\\*|\\w+)\\(.*");
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(DECKVIEW_SOURCE "/engine/include")) {
        if (!entry.is_regular_file()) continue;
        std::ifstream in(entry.path());
        std::smatch found;
        for (std::string line; std::getline(in, line);) {
            if (std::regex_match(line, found, mark)) names.insert(found[1].matched ? found[1] : found[2]);
        }
    }
    return names;
}

TEST(Libraries, TheEngineExportsItsContractAlone) {
    static const std::regex owner("(?:jMath::|mjl::)?(operator\\*|\\w+).*");
    const std::set<std::string> contract = contractNames(), exported = exportsOf("libengine.so");
    for (const std::string& name : exported) {
        std::smatch found;
        EXPECT_TRUE(std::regex_match(name, found, owner) && contract.contains(found[1]))
            << name << " is not marked with ENGINE_API (engine/Api.h)";
    }
    EXPECT_GT(exported.size(), 400U);
}

TEST(Libraries, ThePictureExportsItsFactoryAlone) {
    EXPECT_EQ(exportsOf("libengine_render.so"), (std::set<std::string>{"PictureInterfaceVersion", "createPicture"}));
}

TEST(Libraries, APluginKeepsItsOwnCopiesAndSharesTheContractsTypes) {
    Engine engine;
    World& world = *engine.getWorld();
    auto lens = std::make_unique<NodeLight>(LightSettings());
    lens->setName("lens");
    world.addChild(std::move(lens));
    void* const library = dlopen(DECKVIEW_LIB "/libforeign_plugin.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto create = reinterpret_cast<LogicBase* (*)(World*, CameraControl*)>(dlsym(library, "CreateLogic"));
    ASSERT_NE(create, nullptr);
    LogicBase* const logic = create(&world, engine.getCameraControl());
    EXPECT_EQ(logic->getWorldPath(), "own own own");
    EXPECT_TRUE(logic->init());
    EXPECT_NE(dynamic_cast<NodeLight*>(world.getNodeByName("lamp")), nullptr);
    world.removeNode(world.getNodeByName("lamp"));
    delete logic;
    dlclose(library);
}

}  // namespace
