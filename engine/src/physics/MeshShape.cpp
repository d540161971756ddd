// Builds the triangle trees of mesh colliders at their first use.
#include "physics/MeshShape.h"

#include "engine/scene/MeshData.h"

namespace {

// Limits of Bullet's quantised tree.
constexpr int MAX_PARTS = 1 << 10;
constexpr int MAX_TRIANGLES = 1 << 21;

btIndexedMesh toBullet(const MeshSurface& surface) {
    btIndexedMesh part;
    part.m_numTriangles = static_cast<int>(surface.indices.size() / 3);
    part.m_triangleIndexBase = reinterpret_cast<const unsigned char*>(surface.indices.data());
    part.m_triangleIndexStride = 3 * sizeof surface.indices[0];
    part.m_numVertices = static_cast<int>(surface.positions.size());
    part.m_vertexBase = reinterpret_cast<const unsigned char*>(surface.positions.data());
    part.m_vertexStride = sizeof surface.positions[0];
    part.m_indexType = PHY_INTEGER;
    part.m_vertexType = PHY_FLOAT;
    return part;
}

bool hasTriangles(const MeshData& mesh) {
    for (const MeshSurface& surface : mesh.surfaces) {
        if (surface.indices.size() >= 3) return true;
    }
    return false;
}

}  // namespace

MeshShape::MeshShape(const MeshData& mesh) {
    bool quantised = true;
    for (const MeshSurface& surface : mesh.surfaces) {
        if (surface.indices.size() < 3) continue;
        const btIndexedMesh part = toBullet(surface);
        quantised = quantised && part.m_numTriangles < MAX_TRIANGLES;
        triangles.addIndexedMesh(part, PHY_INTEGER);
    }
    quantised = quantised && triangles.getNumSubParts() < MAX_PARTS;
    shape = std::make_unique<btBvhTriangleMeshShape>(&triangles, quantised);
    shape->setMargin(0.0);
}

std::shared_ptr<MeshShape> MeshShapes::get(const MeshData& mesh) {
    std::weak_ptr<MeshShape>& entry = m_shapes[&mesh];
    std::shared_ptr<MeshShape> shape = entry.lock();
    if (!shape && hasTriangles(mesh)) entry = shape = std::make_shared<MeshShape>(mesh);
    return shape;
}
