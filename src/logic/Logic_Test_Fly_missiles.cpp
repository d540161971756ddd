// Missiles: fired by a button, moved by actions in the frame, exploded by contacts reported in the physics step,
// removed by a call of the host application.
#include <engine/globe/EllipsoidModel.h>
#include <engine/memory/Allocator.h>
#include <engine/physics/Body.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/World.h>

#include "src/aircraft/PlaneBase.h"
#include "src/kit/LogicActions.h"
#include "src/logic/Logic_Test_Fly.h"
#include "src/logic/WeaponFiles.h"

namespace {

constexpr float SPEED = 300.0f;               ///< m/s
constexpr float LIFE = 20.0f;                 ///< seconds
constexpr dvec3 LAUNCH_POINT{0.0, 5.0, 0.0};  ///< in the aircraft's frame, metres
constexpr float EXPLOSION_TIME = 20.0f;       ///< seconds

}  // namespace

void Logic_Test_Fly::emit_missile() {
    auto* const missile =
        jNew<ObjectPrefab>({"src\\logic\\Logic_Test_Fly", "Logic_Test_Fly::emit_missile"}, weapons::MISSILE);
    if (!missile->isLoaded()) {
        jDelete(missile);  // the load has logged the reason
        return;
    }
    if (!m_aircraft || !m_aircraft_node) return;
    missile->moveBodyFromRoot();
    if (BodyRigid* const body = missile->getBodyRigid()) {
        body->setContactCallback(&m_missile_callback);
        body->setExcluded(m_aircraft_node);  // it starts inside the aircraft's collider
    }
    // Appended again for each missile. Harmless: the first call disables the body, further calls then ignore it.
    m_missile_callback.handlers.append([this](Body* body, int shape) { on_missile_hit(body, shape); });
    missile->setTransform(m_aircraft->getWorldTransform() * dmat4::translation(LAUNCH_POINT));
    auto* const flight = ActionEmitMissile::Create(missile, SPEED, LIFE);
    flight->done.append([this, missile](Action*) { end_flight(missile); });
    m_world->addChild(missile);
    fire(m_signal_5_prefab_created, missile, true);
    m_missiles.append({missile, flight});
    m_action_manager.addAction(flight);  // last: a handler may have reset the scene
}

/// The flight's action has ended by itself and must not be removed again.
void Logic_Test_Fly::end_flight(ObjectPrefab* missile) {
    for (Missile& m : m_missiles) {
        if (m.prefab == missile) m.flight = nullptr;
    }
}

void Logic_Test_Fly::remove_missile(const Missile& missile) {
    m_action_manager.removeAction(missile.flight);
    m_missile_callback.forget(missile.prefab->getBody());
    m_world->removeNode(missile.prefab);
}

void Logic_Test_Fly::update_missle() {
    if (m_retiring_missiles) return;
    m_retiring_missiles = true;
    for (int i = 0; i < m_missiles.size(); ++i) {
        if (m_missiles[i].prefab->isEnabled()) continue;
        fire(m_signal_4_missile_gone, m_missiles[i].prefab);
        const Missile missile = m_missiles[i];  // copied here: a handler may have ended its flight
        m_missiles.removeFast(i);
        remove_missile(missile);
    }
    m_retiring_missiles = false;
}

/// Hides all missiles, as at the end of a flight: their actions are removed next, so they would stop in the air.
void Logic_Test_Fly::end_missiles() {
    for (Missile& missile : m_missiles) {
        missile.flight = nullptr;
        missile.prefab->setEnabled(false);
    }
}

void Logic_Test_Fly::on_missile_hit(Body* body, int) {
    if (!body || !body->isEnabled()) return;
    const dvec3 place = body->getContactPosition();
    body->setEnabled(false);
    start_effect(weapons::EXPLOSION, EXPLOSION_TIME, EllipsoidModel().getWGSTransform(place));
}
