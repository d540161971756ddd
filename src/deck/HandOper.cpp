// The deck hand's step, called once a frame by the owner of the deck hand.
#include "src/deck/HandOper.h"

#include <engine/scene/ObjectPrefab.h>

#include "src/deck/Swing.h"

double HandOper::s_running_time = 0.0;

bool HandOper::init(ObjectPrefab* root) {
    m_root = root;
    m_left = root ? root->getNodeByName("left_hand") : nullptr;
    m_right = root ? root->getNodeByName("right_hand") : nullptr;
    m_left_rest = m_left ? m_left->getTransform() : dmat4();
    return root != nullptr;
}

void HandOper::update(float dt) {
    if (!m_root) return;
    s_running_time += static_cast<double>(dt);
    swing(m_angle, m_direction, m_speed, m_limit, dt);
    const dquat turn(dvec3(static_cast<double>(m_angle), 0.0, 0.0));
    for (Node* arm : {m_left, m_right}) {
        if (arm) arm->setRotation(turn);
    }
}
