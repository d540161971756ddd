// From loose triangles to shared vertices with normals.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "geometry/Mesh.h"

/// Vertices and triangles as a graphics card takes them, in the mesh's own frame.
struct IndexedSurface {
    std::vector<std::array<float, 3>> positions, normals;
    std::vector<std::array<float, 2>> uvs;  ///< empty without a texture
    std::vector<std::uint32_t> indices;
};

/// Smooths across edges flatter than `crease` degrees, within each surface.
IndexedSurface indexSurface(const Mesh::Surface& surface, double crease);
