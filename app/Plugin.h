// The scene's logic: its library and its object.
#pragma once

#include <string>

class CameraControl;
class LogicBase;
class Logic_Test_Fly;
class World;

/// Whether a loaded library was built for the interface that this program has: it exports its number as `symbol` beside
/// its factory. False, with `error` naming the file and what to do, when it is another one or none.
bool checkInterface(void* library, void* factory, const char* symbol, int wanted, const std::string& file,
                    std::string& error);

/// A loaded logic. Destroying this destroys the logic, then closes its library.
class Plugin {
public:
    Plugin() = default;
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    /// Opens the library and creates the logic with its factory. False on failure, with the reason in `error`.
    bool load(const std::string& file, World* world, CameraControl* camera, std::string& error);
    /// Destroys the logic and keeps the library loaded: blocks that the logic leaked can still be reported.
    void destroyLogic();

    LogicBase* getLogic() const { return m_logic; }
    /// The logic as the flight-test logic; null when the library contains another logic.
    Logic_Test_Fly* getFlyLogic() const { return m_fly_logic; }

private:
    void* m_library = nullptr;
    LogicBase* m_logic = nullptr;
    Logic_Test_Fly* m_fly_logic = nullptr;
};
