// The jet's control nodes: the part and the range of each position of its aircraft file.
#pragma once

#include <string>
#include <vector>

#include "engine/math/Transform.h"

namespace jet {

/// One entry of "ctrl_nodes".
struct Control {
    std::string label;  ///< as shown in the panel
    std::string node;
    dvec3 open, close;  ///< (heading, pitch, roll), degrees: poses on the ground and in flight
    dvec3 axis;         ///< of a deflection, in the part's own frame
    int type = 0;       ///< 0 rotates, 1 is switched on and off
};

/// In the order of their positions. Rotating parts come first.
const std::vector<Control>& controls();
/// The pose of a part on a standing aircraft: its open rotation, except for the hook, which is up. Zero for a node
/// without a control.
dvec3 standingRotation(const std::string& node);

}  // namespace jet
