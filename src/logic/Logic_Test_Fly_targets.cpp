// Targets: made and moved by records from the host application; their glides are stepped in the frame.
#include <engine/scene/ObjectPrefab.h>
#include <engine/text/Log.h>

#include <cstdio>

#include "src/logic/AppData.h"
#include "src/logic/Logic_Test_Fly.h"
#include "src/logic/Target.h"

namespace {

constexpr float MAX_DISTANCE = 100000.0f;  ///< metres; targets at this distance or beyond are ignored

}  // namespace

bool Logic_Test_Fly::apply_target(TargetInfo info) {
    const auto known = m_targets.find(info.name);
    if (known != m_targets.end() && known->second->getStatus() == ObjectPrefab::LOADED) {
        known->second->update(info);
        return true;
    }
    const jString path = info.path.empty() ? AppData::get().getTargetPath(info.type) : info.path;
    Target::Ptr target = Target::Create(m_world, &m_action_manager, info, path);
    if (!target) return false;
    fire(m_signal_5_prefab_created, target->getPrefab(), true);  // a handler may change the map
    m_target_nodes_stale = true;
    const Node& node = *target->getNode();
    m_targets[info.name] = std::move(target);
    const dvec3 place = node.getWgsPosition();
    jLog::message("---apply_target start \n");
    jLog::message("apply_target create:%s \n", node.getName().c_str());
    jLog::message("wgs pos:%f,%f,%f \n", place.x, place.y, place.z);
    jLog::message("path:%s \n", path.c_str());
    jLog::message("type:%d \n", info.type);
    jLog::message("---apply_target end \n");
    return true;
}

bool Logic_Test_Fly::remove_target(const jString& name) {
    m_target_nodes_stale = true;
    return m_targets.erase(name) > 0;
}

Target* Logic_Test_Fly::get_target(const jString& name) const {
    const auto known = m_targets.find(name);
    return known == m_targets.end() ? nullptr : known->second.get();
}

void Logic_Test_Fly::end_glides() {
    for (const auto& [name, target] : m_targets) target->endGlide();
}

const jVector<Node*>& Logic_Test_Fly::list_targets() const {
    if (m_target_nodes_stale) {
        m_target_nodes.clear();
        for (const auto& [name, target] : m_targets) m_target_nodes.append(target->getNode());
        m_target_nodes_stale = false;
    }
    return m_target_nodes;
}

Node* Logic_Test_Fly::find_nearest_target(float& distance) const {
    distance = MAX_DISTANCE;
    Node* nearest = nullptr;
    if (!m_aircraft_node) return nullptr;
    const dvec3 place = m_aircraft_node->getWorldPosition();
    for (Node* node : list_targets()) {
        const auto d = static_cast<float>(length(place - node->getWorldTransform().t));
        if (!(distance > d)) continue;
        distance = d;
        nearest = node;
    }
    return nearest;
}

Node* Logic_Test_Fly::get_min_distance_target() const {
    float distance;
    Node* const nearest = find_nearest_target(distance);
    if (!nearest) std::printf("no target!\n");
    return nearest;
}

float Logic_Test_Fly::get_min_distance_target_dis() const {
    float distance;
    find_nearest_target(distance);
    return distance;
}
