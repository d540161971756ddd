// Carries scene commands out.
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

/// The one place that changes the scene for front ends. Works on the logic through what it exports. Frame thread; lives
/// no longer than the engine and the logic.
class SceneController {
public:
    /// `fly` is the logic as the flight-test logic, `query` reads it; both null with another logic, which can only be
    /// given a date.
    SceneController(Engine& engine, LogicBase& logic, Logic_Test_Fly* fly, const SceneQuery* query)
        : m_engine(engine), m_logic(logic), m_fly(fly), m_query(query) {}
    SceneController(const SceneController&) = delete;
    SceneController& operator=(const SceneController&) = delete;

    /// False, with `error` saying why and nothing changed, when it cannot be done. REQUIRES values in range.
    bool apply(const SceneCommand& command, std::string& error);
    /// Once a frame, before the logic's update: retires spent missiles and moves torpedoes by the frame's time.
    void update();

private:
    struct Operations;  ///< what each command does
    struct Torpedo {
        Node* node;   ///< the world's
        double left;  ///< seconds of its run; below 0 its wake fades
    };

    void runTorpedoes(double dt);

    Engine& m_engine;
    LogicBase& m_logic;
    Logic_Test_Fly* m_fly;
    const SceneQuery* m_query;
    std::vector<Torpedo> m_torpedoes;
};
