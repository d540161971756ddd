// Operations common to fixed-wing aircraft: loading, placing, the gear's flag, timed actions. The logic calls `update`
// each frame of manual flight.
#include "src/aircraft/PlaneBase.h"

#include <engine/memory/Allocator.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/World.h>

#include <cstdio>

PlaneBase::PlaneBase() = default;
PlaneBase::~PlaneBase() = default;

bool PlaneBase::init(World* world) {
    return init(world, m_info.path);
}

bool PlaneBase::init(World* world, const jString& path) {
    if (!path.empty() && m_prefab_path == path) return true;
    m_undercarriage_open = true;
    std::unique_ptr<ObjectPrefab> model(jNew<ObjectPrefab>({"src\\aircraft\\PlaneBase", "PlaneBase::init"}, path));
    m_model = model.get();
    if (!world || !model->isLoaded()) {
        m_failed_model = std::move(model);
        return false;
    }
    m_prefab_path = path;
    world->addChild(std::unique_ptr<Node>(std::move(model)));
    std::printf("PlaneBase init success :%s\n", path.c_str());
    return true;
}

bool PlaneBase::update(float dt) {
    m_elapsed += dt;
    m_actions.update(dt);
    return true;
}

bool PlaneBase::setUndercarriage(bool open, bool animate) {
    if (animate && open) openUndercarriage();
    if (animate && !open) closeUndercarriage();
    m_undercarriage_open = open;
    return open;
}

void PlaneBase::setWgsHPR(const dvec3& hpr) {
    if (m_model) m_model->setWgsHPR(hpr);
}

void PlaneBase::setWgsPosition(const dvec3& geo) {
    if (m_model) m_model->setWgsPosition(geo);
}

void PlaneBase::setWorldTransform(const dmat4& world) {
    if (m_model) m_model->setWorldTransform(world);
}

const dmat4& PlaneBase::getWorldTransform() const {
    static const dmat4 nowhere;
    return m_model ? m_model->getWorldTransform() : nowhere;
}

dvec3& PlaneBase::getWorldPosition(dvec3& position) const {
    return position = getWorldTransform().getTranslation();
}

void PlaneBase::addPositionOffset(const dvec3& offset) {
    if (!m_model) return;
    const dvec3 position = m_model->getPosition();
    std::printf("src_pos:%f,%f,%f\n", position.x, position.y, position.z);
    std::printf("offset:%f,%f,%f\n", offset.x, offset.y, offset.z);
    m_model->setPosition(position + offset);
}

void PlaneBase::addRotationDeflection(const dvec3& deflection) {
    if (!m_model) return;
    const dvec3 rotation = m_model->getHPR();
    std::printf("src_rot:%f,%f,%f\n", rotation.x, rotation.y, rotation.z);
    std::printf("deflection:%f,%f,%f\n", deflection.x, deflection.y, deflection.z);
    m_model->setHPR(rotation + deflection);
}

void PlaneBase::refresh() {}
void PlaneBase::flyPose() {}
void PlaneBase::standPose() {}
void PlaneBase::setFlightState(const FlyFrame*) {}
void PlaneBase::stopPose() {}
void PlaneBase::showDestroyed() {}
void PlaneBase::resetDamage() {}
void PlaneBase::resetToBase() {}
void PlaneBase::resetAt(const dmat4&) {}
