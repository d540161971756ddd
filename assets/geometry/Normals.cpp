// Normals by crease angle: triangles that meet at a point share a normal when they are nearly coplanar.
#include "geometry/Normals.h"

#include <cmath>
#include <map>

#include "engine/math/jMath.h"

namespace {

using Key = std::array<std::int64_t, 3>;
using Vertex = std::array<float, 8>;  ///< position, normal, texture coordinates

Key keyOf(const dvec3& p) {
    constexpr double PER_METRE = 1e4;
    return {std::llround(p.x * PER_METRE), std::llround(p.y * PER_METRE), std::llround(p.z * PER_METRE)};
}

std::array<float, 2> project(const Texture& texture, const dvec3& p, const dvec3& face_normal) {
    if (texture.project) {
        const std::array<double, 2> uv = texture.project(p, face_normal);
        return {static_cast<float>(uv[0]), static_cast<float>(uv[1])};
    }
    return {static_cast<float>(dot(p, texture.across) + texture.offset[0]),
            static_cast<float>(dot(p, texture.down) + texture.offset[1])};
}

/// The faces' normals with twice the area as length, and the faces at each point.
struct Faces {
    std::vector<dvec3> normals;
    std::map<Key, std::vector<std::size_t>> at;
};

Faces collect(const std::vector<Mesh::Triangle>& triangles) {
    Faces faces;
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        const Mesh::Triangle& t = triangles[i];
        faces.normals.push_back(cross(t[1] - t[0], t[2] - t[0]));
        for (const dvec3& p : t) faces.at[keyOf(p)].push_back(i);
    }
    return faces;
}

dvec3 smoothNormal(const Faces& faces, std::size_t face, const dvec3& p, double min_cosine) {
    const dvec3 own = normalize(faces.normals[face]);
    dvec3 sum;
    for (const std::size_t other : faces.at.at(keyOf(p))) {
        if (dot(own, normalize(faces.normals[other])) >= min_cosine) sum += faces.normals[other];
    }
    return normalize(sum);
}

}  // namespace

IndexedSurface indexSurface(const Mesh::Surface& surface, double crease) {
    const Faces faces = collect(surface.triangles);
    const double min_cosine = std::cos(crease * jMath::DEG2RAD);
    std::map<Vertex, std::uint32_t> known;
    IndexedSurface result;
    for (std::size_t i = 0; i < surface.triangles.size(); ++i) {
        for (const dvec3& p : surface.triangles[i]) {
            const vec3 place = narrow(p);
            const vec3 n = narrow(smoothNormal(faces, i, p, min_cosine));
            std::array<float, 2> uv{};
            if (surface.paint->texture) uv = project(*surface.paint->texture, p, normalize(faces.normals[i]));
            const auto next = static_cast<std::uint32_t>(result.positions.size());
            const auto [entry, is_new] =
                known.try_emplace({place.x, place.y, place.z, n.x, n.y, n.z, uv[0], uv[1]}, next);
            result.indices.push_back(entry->second);
            if (!is_new) continue;
            result.positions.push_back({place.x, place.y, place.z});
            result.normals.push_back({n.x, n.y, n.z});
            if (surface.paint->texture) result.uvs.push_back(uv);
        }
    }
    return result;
}
