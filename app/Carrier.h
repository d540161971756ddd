// The carrier as the application runs it: driven when the command line asks for it, a flag and a deck hand on its deck.
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

/// Works on nodes of the world and on the logic, which must outlive this.
class Carrier {
public:
    /// After the logic was initialised. Tells, with one log line, when there is nothing to drive.
    Carrier(const Options& options, World& world, Logic_Test_Fly* logic);
    Carrier(const Carrier&) = delete;
    Carrier& operator=(const Carrier&) = delete;

    /// One frame of dt seconds, after the logic's update and before the physics step.
    void update(float dt);

private:
    struct Aboard {
        NodeTrigger* trigger;
        dmat4 place;  ///< in the ship's frame
    };

    void findDeckLife(World& world);
    void castOff(World& world, int mode);
    void drive(float dt);
    void foamAsFastAs(double speed);

    Logic_Test_Fly* m_logic;
    FlagOper m_flag;
    HandOper m_hand;
    bool m_has_flag = false;
    bool m_driven = false;
    float m_moored = 0.0f;                 ///< seconds until it gets under way
    std::vector<Aboard> m_aboard;          ///< triggers that stand on the ship and hang elsewhere in the tree
    std::vector<ObjectParticles*> m_foam;  ///< of the wake; it grows with the speed
};
