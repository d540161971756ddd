// Writes the camera's pose to its node.
#include "engine/camera/CameraControl.h"

#include "engine/scene/Node.h"

void CameraControl::apply() {
    if (!m_node) return;
    const dquat rotation = m_rotation * dquat::fromEulerZXY(dvec3(m_angles));
    m_node->setWorldTransform(dmat4(rotation, m_position));
    const dvec3 offset(m_position_offset);
    if (length2(offset) > 1e-6) m_node->setWorldPosition(m_position + rotation * offset);
}
