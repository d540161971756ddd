// The jet's control nodes: what each position of its aircraft file drives, and how far.
#pragma once

#include <string>
#include <vector>

#include "engine/math/Transform.h"

namespace jet {

/// One entry of "ctrl_nodes".
struct Control {
    std::string label;  ///< as the panel shows it
    std::string node;
    dvec3 open, close;  ///< (heading, pitch, roll), degrees: standing and flying pose
    dvec3 axis;         ///< of a deflection, in the part's own frame
    int type = 0;       ///< 0 turns, 1 is switched on and off
};

/// In the order of their positions. Turning parts come first.
const std::vector<Control>& controls();
/// The pose of a part on an aircraft that stands: its open rotation, save for the hook, which is up. Zero for a node
/// without a control.
dvec3 standingRotation(const std::string& node);

}  // namespace jet
