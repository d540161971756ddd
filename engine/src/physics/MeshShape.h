// Triangle meshes as Bullet takes them.
#pragma once

#include <btBulletCollisionCommon.h>

#include <memory>
#include <unordered_map>

struct MeshData;

/// All triangles of a mesh in its own frame. Reads the mesh's arrays in place: whoever holds this keeps the mesh alive.
struct MeshShape {
    /// REQUIRES a mesh with triangles.
    explicit MeshShape(const MeshData& mesh);

    btTriangleIndexVertexArray triangles;
    std::unique_ptr<btBvhTriangleMeshShape> shape;
};

/// One shape a mesh, built when first asked for and shared while somebody holds it.
class MeshShapes {
public:
    /// Null for a mesh without triangles.
    std::shared_ptr<MeshShape> get(const MeshData& mesh);

private:
    std::unordered_map<const MeshData*, std::weak_ptr<MeshShape>> m_shapes;  ///< looked up only, never walked
};
