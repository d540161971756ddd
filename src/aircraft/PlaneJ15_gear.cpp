// The jet's undercarriage and tail hook: timed and immediate movements, started by the gear's flag or the panel.
#include <engine/scene/ObjectPrefab.h>

#include <algorithm>
#include <cstdio>

#include "src/aircraft/ActionRotateSurfaceTo.h"
#include "src/aircraft/PlaneJ15.h"

namespace {

constexpr int OUTER_FIRST = 0, OUTER_LAST = 4;    ///< doors: move first on opening, last on closing
constexpr int INNER_FIRST = 17, INNER_LAST = 19;  ///< legs: move last on opening, first on closing
constexpr int HOOK = 20;
const jString HOOK_NODE = "weigou001";
constexpr float GROUP_TIME = 8.0f;  ///< seconds
constexpr float SNAP_TIME = 0.01f;  ///< seconds

}  // namespace

void PlaneJ15::openUndercarriage() {
    if (m_undercarriage_open) return;
    runOpenUndercarriageActions();
    m_undercarriage_open = true;
}

void PlaneJ15::closeUndercarriage() {
    if (!m_undercarriage_open) return;
    runCloseUndercarriageActions();
    m_undercarriage_open = false;
}

void PlaneJ15::runOpenUndercarriageActions() {
    m_actions.removeAllActions();
    flyPose();
    ActionSequence* const sequence = ActionSequence::Create();
    sequence->addAction(makeRotations(OUTER_FIRST, OUTER_LAST, true));
    sequence->addAction(makeRotations(INNER_FIRST, INNER_LAST, true));
    m_actions.addAction(sequence);
}

void PlaneJ15::runCloseUndercarriageActions() {
    m_actions.removeAllActions();
    standPose();
    ActionSequence* const sequence = ActionSequence::Create();
    sequence->addAction(makeRotations(INNER_FIRST, INNER_LAST, false));
    sequence->addAction(makeRotations(OUTER_FIRST, OUTER_LAST, false));
    m_actions.addAction(sequence);
}

ActionMulti* PlaneJ15::makeRotations(int first, int last, bool opening) {
    ActionMulti* const group = ActionMulti::Create();
    for (int i = first; i <= last && i < countParts(); ++i) {
        group->addAction(ActionRotateSurfaceTo::Create(m_model, m_node_names[i], m_initial_transforms[i], GROUP_TIME,
                                                       rotation(i, !opening), rotation(i, opening)));
    }
    return group;
}

void PlaneJ15::openUndercarriageNow() {
    snapUndercarriage(true);
}
void PlaneJ15::closeUndercarriageNow() {
    snapUndercarriage(false);
}

void PlaneJ15::snapUndercarriage(bool opening) {
    for (int i = OUTER_FIRST; i <= OUTER_LAST && i < countParts(); ++i) {
        snapSurface(m_node_names[i], i, opening);
    }
    for (int i = INNER_FIRST; i <= INNER_LAST && i < countParts(); ++i) {
        if (Node* const node = m_model->getNodeByName(m_node_names[i])) {
            node->setHPR(dvec3(rotation(i, opening)));
        } else {
            std::printf("can not %s undercarriage because no %s node\n", opening ? "open" : "close",
                        m_node_names[i].c_str());
        }
    }
}

void PlaneJ15::snapSurface(const jString& name, int position, bool opening) {
    if (position >= countParts()) return;
    ActionRotateSurfaceTo* const action =
        ActionRotateSurfaceTo::Create(m_model, name, m_initial_transforms[position], SNAP_TIME,
                                      rotation(position, !opening), rotation(position, opening));
    if (!action) return;
    action->forceDone();
    destroyAction(action);
}

/// Number of positions with an initial transform and both rotations. A later configuration may have fewer entries than
/// the first.
int PlaneJ15::countParts() const {
    return std::min(m_initial_transforms.size(), m_node_names.size());
}

void PlaneJ15::openHook() {
    snapSurface(HOOK_NODE, HOOK, true);
}
void PlaneJ15::closeHook() {
    snapSurface(HOOK_NODE, HOOK, false);
}
