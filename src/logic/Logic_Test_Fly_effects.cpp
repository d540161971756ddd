// Explosions, the prefab cache, prefabs created on demand, and the removal of all particles on a reset.
#include <engine/globe/EllipsoidModel.h>
#include <engine/memory/Allocator.h>
#include <engine/scene/ObjectParticles.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include "common/actions/ActionAttack.h"
#include "src/aircraft/PlaneBase.h"
#include "src/logic/Logic_Test_Fly.h"
#include "src/logic/WeaponFiles.h"

namespace {

constexpr float EXPLOSION_TIME = 6.0f;   ///< seconds
constexpr float DESTROYED_AFTER = 0.2f;  ///< seconds from the explosion until the aircraft looks destroyed

constexpr const char* CACHED[] = {
    weapons::TORPEDO, weapons::EXPLOSION, weapons::AIRCRAFT_EXPLOSION, weapons::WATER_EXPLOSION, weapons::WATER_DROP,
    weapons::MISSILE, weapons::DECOY};

void clearParticles(Node* node) {
    if (node->getType() == Node::PARTICLES) static_cast<ObjectParticles*>(node)->clear();
}

}  // namespace

void Logic_Test_Fly::start_effect(const jString& path, float duration, const dmat4& place) {
    m_action_manager.addAction(ActionPlaySpe::Create(m_world->getRoot(), path, duration, place.t));
    tell_effect(path, duration, place);
}

void Logic_Test_Fly::tell_effect(const jString& path, float duration, const dmat4& place) {
    SynCoder::CMDPlaySpeOnceInfo info{path, duration, place};
    fire(m_signal_8_effect_started, &info);
}

bool Logic_Test_Fly::plan_explosion() {
    if (!m_aircraft || !m_aircraft_node) return false;
    dvec3 place;
    m_aircraft->getWorldPosition(place);
    ActionMulti* const group = ActionMulti::Create();
    group->addAction(ActionPlaySpe::Create(m_world->getRoot(), weapons::AIRCRAFT_EXPLOSION, EXPLOSION_TIME, place));
    ActionInterval* const destruction = ActionInterval::Create(DESTROYED_AFTER);
    destruction->done.append([this](Action* action) { on_plane_destory(action); });
    group->addAction(destruction);
    m_action_manager.addAction(group);
    m_aircraft->catchFire();
    tell_effect(weapons::AIRCRAFT_EXPLOSION, EXPLOSION_TIME, EllipsoidModel().getWGSTransform(place));
    m_exploded = true;
    return true;
}

void Logic_Test_Fly::prefab_cache() {
    for (const char* path : CACHED) {
        ObjectPrefab(path).release();
        fire(m_signal_12_prefab_preloaded, path);
    }
}

ObjectPrefab* Logic_Test_Fly::create_objectPrefab(jString path, jString name) {
    auto* const prefab =
        jNew<ObjectPrefab>({"src\\logic\\Logic_Test_Fly", "Logic_Test_Fly::create_objectPrefab"}, path);
    if (!prefab->isLoaded()) {
        jLog::error("%s: \"%s\" can not be loaded", "Logic_Test_Fly::create_objectPrefab", path.c_str());
        return nullptr;
    }
    m_world->addChild(prefab);
    prefab->setName(name);
    prefab->moveBodyFromRoot();
    fire(m_signal_5_prefab_created, prefab, true);
    return prefab;
}

/// The world's nodes include the nodes inside its prefabs.
void Logic_Test_Fly::clear_all_particles() {
    for (Node* node : m_world->getNodes()) clearParticles(node);
}
