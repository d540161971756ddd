// Targets: made from a record, moved by later records.
#include "src/logic/Target.h"

#include <engine/globe/EllipsoidModel.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include <cmath>
#include <cstdio>

namespace {

constexpr double SMALL_MOVE = 1.0;        ///< metres; up to this distance a target does not glide
constexpr float GLIDE_TIME = 1.0f;        ///< seconds
constexpr double MAX_HEIGHT = 1000000.0;  ///< metres above or below the ellipsoid
constexpr MemTag TAG{"src\\logic\\Target", "Target::Create"};
constexpr int HEADING = 4;  ///< index in the record's pose

dvec3 placeOf(const TargetInfo& info) {
    return {info.pose[0], info.pose[1], info.pose[2]};
}

/// Longitudes are valid up to 360: a glide over the date line needs values above 180.
bool isOnGlobe(const TargetInfo& info) {
    const dvec3 place = placeOf(info);
    if (std::fabs(place.x) <= 360.0 && std::fabs(place.y) <= 90.0 && std::fabs(place.z) <= MAX_HEIGHT) return true;
    jLog::error("target \"%s\": no place on the globe: %f,%f,%f", info.name.c_str(), place.x, place.y, place.z);
    return false;
}

}  // namespace

Target::Ptr Target::Create(World* world, ActionManager* actions, const TargetInfo& info, const jString& path) {
    if (info.name.empty()) {
        jLog::error("target of type %d: it has no name", info.type);
        return nullptr;
    }
    if (!isOnGlobe(info)) return nullptr;
    if (path.empty()) {
        jLog::error("target \"%s\": no model for type %d", info.name.c_str(), info.type);
        return nullptr;
    }
    auto* const prefab = jNew<ObjectPrefab>(TAG, path);
    if (!prefab->isLoaded()) {
        jDelete(prefab);
        return nullptr;  // the load has logged the reason
    }
    prefab->setName(info.name);
    prefab->addTag(info.name);
    prefab->setWgsPosition(placeOf(info));
    prefab->setWgsHPR({std::isfinite(info.pose[HEADING]) ? info.pose[HEADING] : 0.0, 0.0, 0.0});
    world->addChild(prefab);
    return Ptr(jNew<Target>(TAG, actions, prefab, info));
}

Target::Target(ActionManager* actions, ObjectPrefab* prefab, const TargetInfo& info)
    : m_actions(actions), m_prefab(prefab), m_position(placeOf(info)), m_type(info.type), m_info(info) {}

Target::~Target() {
    endGlide();
    if (World* const world = m_prefab->getWorld()) world->removeNode(m_prefab);
}

int Target::getStatus() const {
    return m_prefab->getStatus();
}

Node* Target::getNode() const {
    return m_prefab;
}

dvec3 Target::getVelocity() const {
    return m_glide ? m_glide->getTravel() / static_cast<double>(GLIDE_TIME) : dvec3();
}

void Target::update(const TargetInfo& info) {
    if (!m_prefab->isLoaded()) {
        std::printf("%s prefab is error \n", m_info.name.c_str());
        return;
    }
    if (!isOnGlobe(info)) return;
    if (info.type != m_type && !m_type_reported) {
        jLog::warning("target \"%s\": keeps the model of type %d, not that of %d", info.name.c_str(), m_type,
                      info.type);
        m_type_reported = true;
    }
    const EllipsoidModel globe;
    if (length(globe.toWorld(placeOf(info)) - globe.toWorld(m_position)) > SMALL_MOVE) glide(placeOf(info));
    m_info = info;
}

/// Restarts a running glide. A glide starts at the end position of the previous one.
void Target::glide(const dvec3& place) {
    const dvec3 from = m_position;
    dvec3 to = place;
    to.x = from.x + std::remainder(to.x - from.x, 360.0);  // the shorter direction around the globe
    m_position = place;
    if (m_glide) {
        m_glide->initWithDuration(m_prefab, GLIDE_TIME, from, to);
        return;
    }
    m_glide = ActionMoveAndLookAt::Create(m_prefab, GLIDE_TIME, from, to);
    m_glide->done.append([this](Action*) { endGlide(); });
    m_actions->addAction(m_glide);
}

/// Called by `done`, the manager has already released the action.
void Target::endGlide() {
    if (!m_glide) return;
    m_actions->removeAction(m_glide);
    m_glide = nullptr;
    m_prefab->setWgsPosition(m_position);
}
