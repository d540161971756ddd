// Converts separate triangles to shared vertices with normals.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "geometry/Mesh.h"

/// Vertices and triangles in the layout for graphics hardware, in the mesh's own frame.
struct IndexedSurface {
    std::vector<std::array<float, 3>> positions, normals;
    std::vector<std::array<float, 2>> uvs;  ///< empty when there is no texture
    std::vector<std::uint32_t> indices;
};

/// Smooth across edges with an angle below `crease` degrees, within each surface.
IndexedSurface indexSurface(const Mesh::Surface& surface, double crease);
