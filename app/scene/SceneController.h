// Executes scene commands.
#pragma once

#include <string>
#include <vector>

#include "app/scene/SceneCommand.h"
#include "engine/math/Transform.h"

class Engine;
class LogicBase;
class Logic_Test_Fly;
class Node;
class SceneQuery;

/// The only class that changes the scene for front ends. Uses the exported functions of the logic. Frame thread. The
/// engine and the logic outlive it.
class SceneController {
public:
    /// `fly` is the logic as the flight-test logic, `query` reads it. Both are null with another logic, for which only
    /// the date can be set.
    SceneController(Engine& engine, LogicBase& logic, Logic_Test_Fly* fly, const SceneQuery* query);
    SceneController(const SceneController&) = delete;
    SceneController& operator=(const SceneController&) = delete;

    /// False, with the reason in `error` and nothing changed, when it cannot be executed. REQUIRES values in range.
    bool apply(const SceneCommand& command, std::string& error);
    /// Once a frame, before the logic's update: removes finished missiles and moves torpedoes by the frame's time.
    void update();

private:
    struct Operations;  ///< the effect of each command
    struct Torpedo {
        Node* node;   ///< owned by the world
        double left;  ///< remaining seconds of its run; below 0 the wake fades
    };

    void runTorpedoes(double dt);

    Engine& m_engine;
    LogicBase& m_logic;
    Logic_Test_Fly* m_fly;
    const SceneQuery* m_query;
    std::vector<Torpedo> m_torpedoes;
};
