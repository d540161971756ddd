// Prepares mesh geometry: removes unusable triangles, adds bounds and triangle trees. Called when a mesh is loaded.
#include "engine/scene/MeshData.h"

#include <cmath>

#include "scene/SurfaceTree.h"

namespace {

/// Whether a triangle has an area: its vertices exist, are finite and not collinear.
bool isUsable(const MeshSurface& surface, const std::uint32_t* index) {
    dvec3 corner[3];
    for (int i = 0; i < 3; ++i) {
        if (index[i] >= surface.positions.size()) return false;
        const auto& p = surface.positions[index[i]];
        corner[i] = dvec3(p[0], p[1], p[2]);
    }
    const double area = length2(cross(corner[1] - corner[0], corner[2] - corner[0]));
    return area > 0.0 && std::isfinite(area);
}

/// Keeps the usable triangles, in order; returns the number removed.
int dropUnusable(MeshSurface& surface) {
    const std::size_t triangles = surface.indices.size() / 3;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < triangles; ++i) {
        const std::uint32_t* const index = &surface.indices[3 * i];
        if (!isUsable(surface, index)) continue;
        for (std::size_t j = 0; j < 3; ++j) surface.indices[3 * kept + j] = index[j];
        ++kept;
    }
    surface.indices.resize(3 * kept);
    return static_cast<int>(triangles - kept);
}

}  // namespace

MeshData::MeshData(std::vector<MeshSurface> made) : surfaces(std::move(made)) {
    trees.reserve(surfaces.size());
    for (MeshSurface& surface : surfaces) {
        dropped += dropUnusable(surface);
        if (!surface.material) surface.material = std::make_shared<Material>();
        trees.push_back(std::make_unique<SurfaceTree>(surface));
        bounds.expand(trees.back()->getBounds());
    }
}

MeshData::~MeshData() = default;
