// Missile flights and torpedo runs; stepped by the logic's action manager.
#include "src/kit/LogicActions.h"

#include <engine/globe/EllipsoidModel.h>
#include <engine/memory/Allocator.h>
#include <engine/scene/Object.h>

namespace {

constexpr const char* SOURCE = "src\\kit\\LogicActions";

}  // namespace

ActionEmitMissile* ActionEmitMissile::Create(Node* node, float speed, float life) {
    auto* const action = jNew<ActionEmitMissile>({SOURCE, "ActionEmitMissile::Create"});
    if (action->setup(node, speed, life)) return action;
    destroyAction(action);
    return nullptr;
}

bool ActionEmitMissile::setup(Node* node, float speed, float life) {
    if (!node) return false;
    m_node = node;
    m_speed = speed;
    m_life = life;
    m_launch_transform = node->getWorldTransform();
    m_heading = m_launch_transform.getY();
    return true;
}

bool ActionEmitMissile::start() {
    m_finished = false;
    m_elapsed = 0.0f;
    m_node->setWorldTransform(m_launch_transform);
    return true;
}

bool ActionEmitMissile::step(float dt) {
    if (isPause()) return true;
    m_elapsed += dt;
    advance(dt);
    if (m_elapsed < m_life) return true;
    if (!m_finished) m_node->setEnabled(false);
    m_finished = true;
    return true;
}

void ActionEmitMissile::advance(float dt) {
    if (!m_node->isEnabled()) return;
    m_node->setPosition(m_node->getPosition() + m_heading * static_cast<double>(dt * m_speed));
}

void ActionEmitMissile::release() {}

ActionEmitTorpedo* ActionEmitTorpedo::Create(TorpedoRun* run, float delay) {
    auto* const action = jNew<ActionEmitTorpedo>({SOURCE, "ActionEmitTorpedo::Create"});
    if (action->setup(run, delay)) return action;
    destroyAction(action);
    return nullptr;
}

bool ActionEmitTorpedo::setup(TorpedoRun* run, float delay) {
    if (!run || !run->effect || !run->body) return false;
    m_run = run;
    m_run->effect->setEnabled(false);
    m_delay = delay;
    m_life = run->life;
    return true;
}

/// Does not reset `m_shown`: the effect is shown only once.
bool ActionEmitTorpedo::start() {
    m_finished = false;
    m_elapsed = 0.0f;
    return true;
}

void ActionEmitTorpedo::finish() {
    if (!m_finished) m_run->effect->setEnabled(false);
    m_finished = true;
}

bool ActionEmitTorpedo::step(float dt) {
    if (isPause()) return false;
    m_elapsed += dt;
    advance(dt);
    if (m_elapsed >= m_life) finish();
    if (EllipsoidModel().toWGS(m_run->body->getWorldPosition()).z <= 0.0) finish();
    if (m_shown || m_finished || !(m_elapsed > m_delay)) return true;
    m_run->effect->setWorldTransform(m_run->body->getWorldTransform());
    m_run->effect->setEnabled(true);
    m_shown = true;
    return true;
}

void ActionEmitTorpedo::advance(float) {}

bool ActionEmitTorpedo::forceDone() {
    m_finished = true;
    return true;
}

void ActionEmitTorpedo::release() {}
