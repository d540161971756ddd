// Drives the carrier and animates the flag and the deck hand.
#include "Carrier.h"

#include <algorithm>

#include "Options.h"
#include "common/ship/Ship.h"
#include "engine/scene/NodeWalk.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/SceneNodes.h"
#include "engine/scene/World.h"
#include "engine/text/Log.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

/// Seconds until objects parked on the deck are at rest. From then on they move with the ship at any acceleration.
constexpr float START_DELAY = 2.0f;
constexpr double STILL = 1.5, FAST = 12.0;  ///< m/s ahead: first foam, full foam

bool isInside(const BoundBox& box, const dvec3& p) {
    return p.x > box.min.x && p.x < box.max.x && p.y > box.min.y && p.y < box.max.y && p.z > box.min.z &&
           p.z < box.max.z;
}

}  // namespace

Carrier::Carrier(const Options& options, World& world, Logic_Test_Fly* logic) : m_logic(logic) {
    findDeckNodes(world);
    if (!options.drive_ship) return;
    if (logic && logic->getShip() && logic->getShip()->getObject()->getBodyRigid())
        startDriving(world, *options.drive_ship);
    else
        jLog::warning("there is no ship with a body to drive");
}

void Carrier::findDeckNodes(World& world) {
    m_has_flag = m_flag.init(world.getNodeByName("deck_flag"));
    Node* const hand = world.getNodeByName("deck_hand");
    if (hand && hand->getType() == Node::PREFAB) m_hand.init(static_cast<ObjectPrefab*>(hand));
}

/// The logic finds triggers as children of their group. Triggers on the ship can therefore not be its children.
void Carrier::startDriving(World& world, int mode) {
    Ship& ship = *m_logic->getShip();
    const dmat4 to_ship = inverse(ship.getObject()->getWorldTransform());
    const BoundBox box = ship.getObject()->getBoundBox();
    const Node* const group = world.getNodeByTag("all_triggers");
    for (int i = 0; group && i < group->getNumChildren(); ++i) {
        Node* const node = group->getChild(i);
        if (node->getType() != Node::TRIGGER || !isInside(box, to_ship * node->getWorldPosition())) continue;
        m_carried_triggers.push_back({static_cast<NodeTrigger*>(node), to_ship * node->getWorldTransform()});
    }
    if (Node* const wakes = ship.getObject()->getChildByName("wakes", true)) {
        forEachParticles(*wakes, [this](ObjectParticles& foam) { m_foam.push_back(&foam); });
    }
    ship.setControlMode(mode);
    m_start_delay = START_DELAY;
    m_driven = true;
}

void Carrier::update(float dt) {
    if (m_has_flag) m_flag.update(dt);
    m_hand.update(dt);
    if (m_driven) drive(dt);
}

void Carrier::drive(float dt) {
    Ship& ship = *m_logic->getShip();
    if (m_start_delay > 0.0f) {
        m_start_delay -= dt;
        if (m_start_delay > 0.0f) return;
        ship.getObject()->getBody()->setEnabled(true);
        m_logic->setShipsAutoMove(true);
        for (ObjectParticles* foam : m_foam) foam->play();
    }
    m_logic->ships_auto_move();
    const Object& hull = *ship.getObject();
    setFoamRate(dot(dvec3(hull.getBodyRigid()->getLinearVelocity()), hull.getWorldTransform().getY()));
    for (const CarriedTrigger& a : m_carried_triggers)
        a.trigger->setWorldTransform(ship.getObject()->getWorldTransform() * a.place);
}

void Carrier::setFoamRate(double speed) {
    const auto share = static_cast<float>(std::clamp((speed - STILL) / (FAST - STILL), 0.0, 1.0));
    for (ObjectParticles* foam : m_foam) foam->setSpawnRate(foam->getAuthoredSpawnRate() * share);
}
