// The wake's step, called by the logic's `ships_auto_move` before the ship's step.
#include "common/ship/Wakes.h"

#include <engine/core/Engine.h>
#include <engine/scene/NodeWalk.h>
#include <engine/scene/ObjectOcean.h>
#include <engine/scene/ObjectParticles.h>
#include <engine/scene/SceneNodes.h>

#include <algorithm>

#include "common/ship/Ship.h"

namespace {

constexpr int START_FRAMES = 10;    ///< in these the ship may still be moved to another position
constexpr double MAX_FOAM = 512.0;  ///< metres
constexpr double FOAM_MARGIN = 1.1;
constexpr double NO_FOAM_BEAUFORT = 12.0;
constexpr float FOAM_LIFE = 30.0f;  ///< seconds

/// A node's transform in the frame of its ancestor `top`.
dmat4 placeIn(const Node* top, const Node* node) {
    dmat4 place = node->getTransform();
    for (node = node->getParent(); node && node != top; node = node->getParent()) place = node->getTransform() * place;
    return place;
}

}  // namespace

Wakes::Wakes(Node* node, Ship* ship, ObjectOcean* ocean)
    : m_ship(ship), m_wake_offset(placeIn(ship->getObject(), node)), m_ocean(ocean), m_node(node) {
    reset();
    forEachParticles(*node, [this](const ObjectParticles& particles) {
        m_authored[particles.getId()] = {particles.getLife(), particles.getLifeSpread(), particles.getLinearVelocity(),
                                         particles.getLinearVelocitySpread(), particles.getSpawnRate()};
    });
    Node* const foam = node->getChildByName("foam");
    if (!foam || foam->getType() != Node::DECAL_ORTHO) return;
    m_foam = static_cast<DecalOrtho*>(foam);
    forEachParticles(*foam, [this](ObjectParticles& particles) { m_foam_particles.append(&particles); });
}

void Wakes::reset() {
    m_tuning = {20.0f, 8.0f, 10.0f, 8.0f, 10.0f, 12.0f, 10.0f, 10.0f, 10.0f, 10.0f, 1.0f, 0.3f, 0.5f, 0.0f};
    m_tuning_end = 0;
    m_foam_life = FOAM_LIFE;
}

const AuthoredParticles* Wakes::getAuthored(int id) const {
    const auto found = m_authored.find(id);
    return found == m_authored.end() ? nullptr : &found->second;
}

void Wakes::clearParticles() {
    for (ObjectParticles* particles : m_foam_particles) particles->clear();
}

void Wakes::update() {
    if (Engine::get()->getFrame() < START_FRAMES) clearParticles();
    if (m_foam_particles.empty()) return;
    sizeFoam();
    level();
    shortenLife();
}

void Wakes::sizeFoam() {
    BoundBox box;
    for (const ObjectParticles* particles : m_foam_particles) box.expand(particles->getWorldParticleBox());
    const auto size = static_cast<float>(std::clamp(length(box.getSize()) * FOAM_MARGIN, 0.0, MAX_FOAM));
    m_foam->setWidth(size);
    m_foam->setHeight(size);
}

/// Sets the node upright whatever the ship's attitude, and along its course unless the ship is vertical.
void Wakes::level() {
    const dmat4& ship = m_ship->getObject()->getWorldTransform();
    const dvec3 up = m_ship->getObject()->getWGSTransform().getZ();
    const dvec3 ahead = normalize(ship.getY() - up * dot(ship.getY(), up));
    if (ahead == dvec3()) return;
    m_node->setWorldTransform(dmat4(cross(ahead, up), ahead, up, ship.getTranslation()) * m_wake_offset);
}

void Wakes::shortenLife() {
    const int beaufort = m_ocean ? m_ocean->getBeaufort() : -1;
    if (beaufort < 0) return;
    const auto left = static_cast<float>(jMath::getFadeOut(beaufort, NO_FOAM_BEAUFORT, NO_FOAM_BEAUFORT));
    for (ObjectParticles* particles : m_foam_particles) particles->setLife(left * getFoamLife());
}
