// The world's records of its nodes: indexes and lists, updated when nodes join, leave and change; particles and
// triggers of a frame.
#include "scene/WorldState.h"

#include <algorithm>

#include "engine/globe/EllipsoidModel.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/SceneNodes.h"

namespace {

template <class T>
void removeFrom(jVector<T*>& list, T* item) {
    const int i = list.find(item);
    if (i >= 0) list.removeAt(i);
}

}  // namespace

void WorldState::nodeJoined(Node& node) {
    node.m_join_order = joined++;
    ++num_nodes;
    if (!node.m_name.empty()) names.add(node.m_name, node.m_join_order, &node);
    for (const jString& tag : node.m_tags) tags.add(tag, node.m_join_order, &node);
    spatial.add(node);
    if (node.getType() == Node::PARTICLES) particles.append(static_cast<ObjectParticles*>(&node));
    if (node.getType() == Node::TRIGGER) {
        triggers.append(static_cast<NodeTrigger*>(&node));
        node.m_trigger_part = true;
        triggers_stale = true;
    }
    if (node.m_sensor) addSensor(node);
    touch(node);
}

void WorldState::nodeLeft(Node& node) {
    if (node.m_change_slot >= 0) {
        changes.changed.last()->m_change_slot = node.m_change_slot;
        changes.changed.removeFast(node.m_change_slot);
        node.m_change_slot = -1;
    }
    if (watched && !closing) changes.left.append(node.getId());
    for (std::vector<Departure>* report : m_reports) {
        for (Departure& departure : *report) {
            if (departure.sensor == &node) departure.sensor = nullptr;
        }
    }
    --num_nodes;
    if (!node.m_name.empty()) names.remove(node.m_name, node.m_join_order);
    for (const jString& tag : node.m_tags) tags.remove(tag, node.m_join_order);
    spatial.remove(node);
    if (node.getType() == Node::PARTICLES) removeFrom(particles, static_cast<ObjectParticles*>(&node));
    if (node.getType() == Node::TRIGGER) {
        removeFrom(triggers, static_cast<NodeTrigger*>(&node));
        static_cast<NodeTrigger&>(node).m_inside.clear();
    }
    if (node.m_sensor) removeSensor(node);
    node.m_trigger_part = false;
}

void WorldState::placeChanged(Node& node) {
    spatial.moved(node);
    if (node.m_trigger_part) triggers_stale = true;
    touch(node);
}

void WorldState::activityChanged(Node& node) {
    if (node.m_trigger_part) triggers_stale = true;
    touch(node);
}

void WorldState::contentChanged(Node& node) {
    spatial.moved(node);
    touch(node);
}

void WorldState::touch(Node& node) {
    if (!watched || node.m_change_slot >= 0) return;
    node.m_change_slot = changes.changed.size();
    changes.changed.append(&node);
}

void WorldState::nameChanged(Node& node, const jString& old_name) {
    if (!old_name.empty()) names.remove(old_name, node.m_join_order);
    if (!node.m_name.empty()) names.add(node.m_name, node.m_join_order, &node);
}

void WorldState::tagAdded(Node& node, const jString& tag) {
    tags.add(tag, node.m_join_order, &node);
}

void WorldState::sensorChanged(Node& node) {
    const bool listed = sensors.find(&node) >= 0;
    if (node.m_sensor && !listed) addSensor(node);
    if (!node.m_sensor && listed) removeSensor(node);
    triggers_stale = true;
    reportDepartures();
}

void WorldState::addSensor(Node& node) {
    int i = sensors.size();
    sensors.append(&node);
    for (; i > 0 && sensors[i - 1]->getId() > node.getId(); --i) std::swap(sensors[i], sensors[i - 1]);
    node.m_trigger_part = true;
    triggers_stale = true;
}

void WorldState::removeSensor(Node& node) {
    removeFrom(sensors, &node);
    node.m_trigger_part = node.getType() == Node::TRIGGER;
    for (NodeTrigger* trigger : triggers) {
        const int i = trigger->m_inside.find(&node);
        if (i < 0) continue;
        trigger->m_inside.removeAt(i);
        m_departures.push_back({trigger, trigger->getId(), &node});
    }
}

void WorldState::reportDepartures() {
    std::vector<Departure> departures = std::move(m_departures);
    m_departures.clear();
    if (closing || departures.empty()) return;
    // A callback may remove triggers and sensors, including this one, and so report further departures.
    m_reports.push_back(&departures);
    for (const Departure& departure : departures) {
        if (!isAlive(departure.trigger, departure.trigger_id)) continue;
        const jVector<Function<void(Node*)>> callbacks = departure.trigger->leave;
        for (const auto& callback : callbacks) {
            if (departure.sensor) callback(departure.sensor);
        }
    }
    m_reports.pop_back();
}

bool WorldState::isAlive(const NodeTrigger* trigger, int id) const {
    return std::any_of(triggers.begin(), triggers.end(),
                       [&](const NodeTrigger* t) { return t == trigger && t->getId() == id; });
}

bool WorldState::isAlive(const Node* sensor, int id) const {
    return std::any_of(sensors.begin(), sensors.end(), [&](const Node* s) { return s == sensor && s->getId() == id; });
}

void WorldState::stepParticles(float dt) {
    const EllipsoidModel globe;
    const dvec3 wind(environment.wind);
    for (ObjectParticles* system : particles) {
        const bool is_at_rest = system->getParticles().empty() && !(system->isEmitterEnabled() && system->isActive());
        const vec3 wind_there =
            is_at_rest ? vec3() : narrow(rotate(globe.getWGSTransform(system->getWorldPosition()), wind));
        system->simulate(dt, wind_there);
    }
}

void WorldState::stepTriggers() {
    if (!triggers_stale) return;
    triggers_stale = false;
    m_trigger_walk.clear();
    for (NodeTrigger* trigger : triggers) m_trigger_walk.emplace_back(trigger, trigger->getId());
    for (const auto& [trigger, id] : m_trigger_walk) {
        if (isAlive(trigger, id)) trigger->update(sensors);
    }
}
