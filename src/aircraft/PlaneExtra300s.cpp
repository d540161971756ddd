// The aerobatic aircraft: its control nodes, moved one by one when the panel's values change.
#include "src/aircraft/PlaneExtra300s.h"

#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/SceneNodes.h>

#include <algorithm>
#include <cstdio>

#include "src/aircraft/ActionRotateSurfaceTo.h"
#include "src/kit/FlyFrame.h"

bool PlaneExtra300s::init(World* world, const jString& path) {
    const ObjectPrefab* const before = m_model;
    if (!PlaneParts::init(world, path)) {
        std::printf("PlaneExtra300s init error path:%s\n", path.c_str());
        return false;
    }
    if (m_model != before) ownMovedMaterials();
    std::printf("PlaneExtra300s init success :%s\n", "PlaneExtra300s::init");
    return true;
}

/// Instruments usually share one material; each needs its own texture offset.
void PlaneExtra300s::ownMovedMaterials() {
    for (int i = 0; i < m_info.parts.size(); ++i) {
        Node* const node = m_info.parts[i].type == PART_UV_OFFSET ? getNode(i) : nullptr;
        if (node && node->isObject()) node->asObject()->setSurfaceMaterialInherit(0, true);
    }
}

void PlaneExtra300s::flyPose() {
    poseNodes(m_close_rots);
    m_undercarriage_open = false;
}

void PlaneExtra300s::standPose() {
    poseNodes(m_open_rots);
    m_thrust = 0.0f;
    std::printf("%s\n", "PlaneExtra300s::standPose");
}

void PlaneExtra300s::setFlightState(const FlyFrame* state) {
    placeAt(*state);
}

void PlaneExtra300s::stopPose() {
    std::printf("%s \n", "PlaneExtra300s::stopPose");
}

Node* PlaneExtra300s::findNode(int position, const char* operation) const {
    // Axes and transforms are from the configuration; a later configuration may have fewer entries than the first.
    const bool known = position < std::min(m_axes.size(), m_initial_transforms.size());
    Node* const node = known ? getNode(position) : nullptr;
    if (!node) std::printf("not find id is %d node in PlaneExtra300s::%s\n", position, operation);
    return node;
}

void PlaneExtra300s::setWingDirect(int position, float value) {
    if (Node* const node = findNode(position, "setWingDirect")) node->setHPR(dvec3(m_axes[position] * value));
}

void PlaneExtra300s::setNodeOffsetDirect(int position, const vec3& offset) {
    if (Node* const node = findNode(position, "setNodeOffsetDirect")) {
        node->setPosition(m_initial_transforms[position].getTranslation() + dvec3(offset));
    }
}

void PlaneExtra300s::setNodeOffset(int position, float value) {
    if (Node* const node = findNode(position, "setNodeOffset")) {
        node->setPosition(m_initial_transforms[position].getTranslation() + dvec3(m_axes[position] * value));
    }
}

bool PlaneExtra300s::getNodeEnable(int position) const {
    const Node* const node = findNode(position, "getNodeEnable");
    return node && node->isEnabled();
}

void PlaneExtra300s::setNodeEnable(int position, bool enabled) {
    if (Node* const node = findNode(position, "setNodeEnable")) node->setEnabled(enabled);
}

void PlaneExtra300s::setUVOffset(int position, float value) {
    Node* const node = findNode(position, "setUVOffset");
    Material* const material = node && node->isObject() ? node->asObject()->getSurfaceMaterial(0) : nullptr;
    const vec3 offset = node ? m_axes[position] * value : vec3();
    if (material) material->setParameter("ui_offset", {offset.x, offset.y, offset.z, 0.0f});
}

void PlaneExtra300s::setUIText(int position, int number) {
    Node* const node = findNode(position, "setUIText");
    if (node && node->getType() == Node::TEXT) static_cast<NodeText*>(node)->setText(ToString(number));
}

void PlaneExtra300s::partAnimRot(int position, float part) {
    if (!findNode(position, "partAnimRot") || position >= m_open_rots.size()) return;
    poseNode(position, m_open_rots[position] + (m_close_rots[position] - m_open_rots[position]) * part);
}
