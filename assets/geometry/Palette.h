// Plain colours in one material.
#pragma once

#include "geometry/Mesh.h"

/// Paints with the given linear colours, in their order, that share one material: all faces with these paints are one
/// surface of the written model.
std::vector<PaintRef> palette(const std::string& name, const std::vector<std::array<double, 3>>& colors,
                              double roughness = 0.7);
