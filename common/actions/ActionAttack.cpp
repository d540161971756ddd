// Effects of hits and explosions; the logic's action manager steps them.
#include "common/actions/ActionAttack.h"

#include <engine/globe/EllipsoidModel.h>
#include <engine/memory/Allocator.h>
#include <engine/scene/NodeWalk.h>
#include <engine/scene/ObjectParticles.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>
#include <engine/text/Package.h>

#include <algorithm>

namespace {

constexpr float LAG = 0.1f;    ///< seconds from the action's start to the effect's start
constexpr float FLASH = 0.7f;  ///< seconds in which the effect's lights fade out

void setPlaying(Node& effect, bool plays) {
    forEachParticles(effect, [plays](ObjectParticles& particles) { plays ? particles.play() : particles.stop(); });
}

/// Loads the effect of a file; null, with one error logged, when the file contains none.
std::unique_ptr<Node> loadEffect(const jString& path) {
    const Package* const file = ObjectPrefab::openFile(path);
    if (!file) return nullptr;
    const Package* const node = file->getPackage("node");
    if (!node) {
        jLog::error("%s: no \"node\" in it", path.c_str());
        return nullptr;
    }
    std::unique_ptr<Node> effect = World::LoadNode(*node, path.substr(0, path.find_last_of('/')));
    if (!effect || effect->getType() == Node::PARTICLES) return effect;
    jLog::error("%s: its node is no particle system", path.c_str());
    return nullptr;
}

}  // namespace

ActionPlaySpe* ActionPlaySpe::Create(Node* parent, const jString& path, float duration, const dvec3& position) {
    auto* const action = jNew<ActionPlaySpe>({"common\\actions\\ActionAttack", "ActionPlaySpe::Create"});
    if (action->initWithDuration(parent, path, duration, position)) return action;
    destroyAction(action);
    return nullptr;
}

bool ActionPlaySpe::initWithDuration(Node* parent, const jString& path, float duration, const dvec3& position) {
    m_effect_duration = duration > 0.0f ? duration : 0.0f;
    std::unique_ptr<Node> effect = loadEffect(path);
    if (!effect) return false;
    m_effect = static_cast<ObjectParticles*>(effect.get());
    setPlaying(*m_effect, false);
    parent->addChild(std::move(effect));
    m_effect->setWorldTransform(EllipsoidModel().getWGSTransform(position));
    shine(0.0f);
    m_duration = m_effect_duration;
    m_elapsed = 0.0f;
    return true;
}

void ActionPlaySpe::shine(float brightness) {
    forEachNode(*m_effect, [brightness](Node& node) {
        if (node.getType() == Node::LIGHT) node.setParameter("brightness", brightness);
    });
}

/// The last call makes the lights dark, however long its frame was.
void ActionPlaySpe::flash() {
    const float left = std::max(0.0f, 1.0f - (m_elapsed - LAG) / FLASH);
    shine(left * left);
    m_flashing = left > 0.0f;
}

bool ActionPlaySpe::start() {
    m_elapsed = 0.0f;
    m_flashing = true;
    return true;
}

bool ActionPlaySpe::step(float dt) {
    if (m_elapsed > LAG && m_effect) {
        if (!m_effect->isEmitterEnabled()) setPlaying(*m_effect, true);
        if (m_flashing) flash();
    }
    return ActionInterval::step(dt);
}

bool ActionPlaySpe::forceDone() {
    return ActionInterval::forceDone();
}

void ActionPlaySpe::release() {
    if (m_effect && m_effect->getWorld()) m_effect->getWorld()->removeNode(m_effect);
    m_effect = nullptr;
    ActionInterval::release();
}
