// The carrier in the application: driven on request of the command line, with a flag and a deck hand on its deck.
#pragma once

#include <vector>

#include "engine/math/Transform.h"
#include "src/deck/FlagOper.h"
#include "src/deck/HandOper.h"

class Logic_Test_Fly;
class NodeTrigger;
class ObjectParticles;
class World;
struct Options;

/// Uses nodes of the world and the logic, which must outlive this object.
class Carrier {
public:
    /// Call it after the logic was initialised. One warning in the log when a ship is to be driven and there is none.
    Carrier(const Options& options, World& world, Logic_Test_Fly* logic);
    Carrier(const Carrier&) = delete;
    Carrier& operator=(const Carrier&) = delete;

    /// One frame of dt seconds. Call it after the logic's update and before the physics step.
    void update(float dt);

private:
    struct CarriedTrigger {
        NodeTrigger* trigger;
        dmat4 place;  ///< in the ship's frame
    };

    void findDeckNodes(World& world);
    void startDriving(World& world, int mode);
    void drive(float dt);
    void setFoamRate(double speed);

    Logic_Test_Fly* m_logic;
    FlagOper m_flag;
    HandOper m_hand;
    bool m_has_flag = false;
    bool m_driven = false;
    float m_start_delay = 0.0f;                      ///< seconds until the ship starts to move
    std::vector<CarriedTrigger> m_carried_triggers;  ///< triggers within the ship's bounds that are not its children
    std::vector<ObjectParticles*> m_foam;            ///< the wake's; their spawn rate grows with the speed
};
