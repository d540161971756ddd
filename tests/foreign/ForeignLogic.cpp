// A scene logic with copies of its own of libraries that the engine uses: each of its calls must reach its own copy.
#include <engine/scene/SceneNodes.h>
#include <engine/scene/World.h>

#include "common/LogicBase.h"

namespace ImGui {
const char* GetVersion() {
    return "own";
}
}  // namespace ImGui

namespace tinygltf {
std::string ExpandFilePath(const std::string&, void*) {
    return "own";
}
}  // namespace tinygltf

extern "C" const char* stbi_failure_reason() {
    return "own";
}

namespace {

class ForeignLogic final : public LogicBase {
public:
    using LogicBase::LogicBase;

    /// The answers of the three copies.
    jString getWorldPath() const override {
        const char* const reason = stbi_failure_reason();
        return jString(ImGui::GetVersion()) + " " + tinygltf::ExpandFilePath("", nullptr) + " " +
               (reason ? reason : "");
    }
    /// Adds "lamp", a light; true when the engine's "lens" is one in this library, too.
    bool init() override {
        auto lamp = std::make_unique<NodeLight>(LightSettings());
        lamp->setName("lamp");
        getWorld()->addChild(std::move(lamp));
        return dynamic_cast<NodeLight*>(getWorld()->getNodeByName("lens")) != nullptr;
    }
};

}  // namespace

extern "C" LOGIC_API LogicBase* CreateLogic(World* world, CameraControl* camera) {
    return new ForeignLogic(world, camera);
}
