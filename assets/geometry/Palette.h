// Plain colours that are drawn together.
#pragma once

#include "geometry/Mesh.h"

/// Paints of the given linear colours, in their order, which share one material: whatever is painted with them is one
/// surface of the written model.
std::vector<PaintRef> palette(const std::string& name, const std::vector<std::array<double, 3>>& colors,
                              double roughness = 0.7);
