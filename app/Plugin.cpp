// Opens the logic's library and creates the logic.
#include "Plugin.h"

#include <dlfcn.h>

#include "engine/memory/Allocator.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

using Factory = LogicBase* (*)(World*, CameraControl*);

}  // namespace

bool checkInterface(void* library, void* factory, const char* symbol, int wanted, const std::string& file,
                    std::string& error) {
    const auto* version = static_cast<const int*>(dlsym(library, symbol));
    Dl_info factory_info{}, version_info{};
    // A library that this one links to may export the symbol, too.
    if (!version || !dladdr(factory, &factory_info) || !dladdr(version, &version_info) ||
        factory_info.dli_fbase != version_info.dli_fbase) {
        version = nullptr;
    }
    if (version && *version == wanted) return true;
    error = file + " was built for " + (version ? "interface " + std::to_string(*version) : "an older interface") +
            ", this program has interface " + std::to_string(wanted) + ": build the library anew";
    return false;
}

Plugin::~Plugin() {
    destroyLogic();
    if (m_library) dlclose(m_library);
}

bool Plugin::load(const std::string& file, World* world, CameraControl* camera, std::string& error) {
    m_library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    const auto factory = m_library ? reinterpret_cast<Factory>(dlsym(m_library, "CreateLogic")) : nullptr;
    if (!factory) {
        const char* const why = dlerror();
        error = why ? why : file + " has no factory CreateLogic";
        return false;
    }
    if (!checkInterface(m_library, reinterpret_cast<void*>(factory), "LogicInterfaceVersion", LOGIC_INTERFACE_VERSION,
                        file, error)) {
        return false;
    }
    m_logic = factory(world, camera);
    if (!m_logic) {
        error = file + " made no logic";
        return false;
    }
    // This program links the flight-test logic, so CreateLogic here is the factory of that class.
    if (factory == &CreateLogic) m_fly_logic = static_cast<Logic_Test_Fly*>(m_logic);
    return true;
}

void Plugin::destroyLogic() {
    jDelete(m_logic);
    m_logic = nullptr;
    m_fly_logic = nullptr;
}
