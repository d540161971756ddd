// The rotor wash: its nodes are found once in the helicopter's model, then placed on the surface below; their density
// depends on height and power. The logic calls it each frame after the helicopter's own steps.
#include "src/aircraft/HeliEffectsKit.h"

#include <engine/core/Engine.h>
#include <engine/math/jMath.h>
#include <engine/scene/ObjectParticles.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/text/Log.h>

#include <algorithm>
#include <cmath>

#include "src/aircraft/Helicopter.h"

namespace {

constexpr double WASH_BELOW = 40.0, LEAVES_BELOW = 18.0, WATER_LEAVES_BELOW = 10.0,
                 ALL_LEAVES_BELOW = 5.0;     ///< metres above the surface
constexpr double FADE_LENGTH = 18.0;         ///< metres below WASH_BELOW
constexpr float MAX_PARTICLES = 1000000.0f;  ///< per second

void logMissing(const char* name) {
    jLog::error("%s:can not find \"%s\" node", "HeliEffectsKit::init", name);
}

ObjectParticles* toParticles(Node* node) {
    return node && node->getType() == Node::PARTICLES ? static_cast<ObjectParticles*>(node) : nullptr;
}

void enable(Node* node, bool enabled) {
    if (node) node->setEnabled(enabled);
}

}  // namespace

bool HeliEffectsKit::init(Helicopter* helicopter) {
    *this = {};
    ObjectPrefab* const model = helicopter ? helicopter->getModel() : nullptr;
    if (!model) return false;
    Node* const downwash = model->getRoot()->getChildByName("downwash", true);
    if (!downwash) {
        logMissing("downwash");
        return false;
    }
    Node* const wash = model->getRoot()->getChildByName("downwash_spe", true);
    if (!wash) {
        logMissing("downwash_spe");
        return false;
    }
    if (!toParticles(wash)) {
        jLog::error("%s:\"%s\" node is not a particle", "HeliEffectsKit::init", "downwash_spe");
        return false;
    }
    m_helicopter = helicopter;
    m_downwash = downwash;
    m_downwash_spe = toParticles(wash);
    findParts(*model);
    return true;
}

void HeliEffectsKit::findParts(ObjectPrefab& model) {
    store(m_downwash_spe);
    m_leaf = toParticles(m_downwash_spe->getChildByName("leaf_1"));
    if (const Node* const field = model.getChildByName("field_anim", true)) m_field = narrow(field->getScale());
    m_downwash_water = toParticles(m_downwash->getChildByName("downwash_spe_water"));
    if (m_downwash_water) {
        m_downwash_water->setEnabled(false);
        m_leaf_water = toParticles(m_downwash_water->getChildByName("leaf_water"));
    }
    store(m_leaf);
    store(m_leaf_water);
    if (m_leaf_water) enableLeaves(false);
}

void HeliEffectsKit::store(ObjectParticles* particles) {
    if (particles)
        m_base_rates[particles] = static_cast<int>(std::clamp(particles->getSpawnRate(), 0.0f, MAX_PARTICLES));
}

void HeliEffectsKit::enableLeaves(bool enabled) {
    enable(m_leaf, enabled);
    enable(m_leaf_water, enabled);
}

void HeliEffectsKit::updatePlacement() {
    if (!m_helicopter) return;
    const EllipsoidModel& globe = Engine::get()->getEllipsoid();
    dvec3 geo = m_helicopter->getModel()->getWgsPosition();
    const auto surface = static_cast<double>(m_helicopter->getSurfaceHeight());
    const double height = geo.z - surface;
    m_last_height = static_cast<float>(height);
    geo.z = surface;
    m_downwash->setWorldTransform(globe.getWGSTransform(globe.toWorld(geo)));
    m_downwash->setEnabled(height < WASH_BELOW);
    if (height < ALL_LEAVES_BELOW)
        enableLeaves(true);
    else if (height < WATER_LEAVES_BELOW)
        enableLeaves(false);
    else if (height < LEAVES_BELOW)
        enable(m_leaf, false);
    enable(m_downwash_water, m_helicopter->isOverWater());
    m_downwash_spe->setEnabled(!m_helicopter->isOverWater());
}

void HeliEffectsKit::updateIntensity(float power) {
    if (!m_helicopter) return;
    const double share = std::clamp(static_cast<double>(power), 0.0, 1.0);
    const double scale = jMath::getFadeOut(static_cast<double>(m_last_height), WASH_BELOW, FADE_LENGTH) * share;
    for (ObjectParticles* const particles : {m_downwash_spe, m_leaf, m_leaf_water}) setIntensity(particles, scale);
}

void HeliEffectsKit::setIntensity(ObjectParticles* particles, double scale) {
    if (particles) particles->setSpawnRate(static_cast<float>(m_base_rates[particles] * scale));
}

void HeliEffectsKit::registerEffects(const jVector<Function<void(Node*, bool)>>& handlers) const {
    for (Node* const effect :
         {static_cast<Node*>(m_downwash_spe), m_stages[0], m_stages[1], m_stages[2], static_cast<Node*>(m_leaf),
          static_cast<Node*>(m_leaf_water), static_cast<Node*>(m_downwash_water)}) {
        for (const auto& handler : handlers) handler(effect, false);
    }
}
