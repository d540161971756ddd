// Triangle meshes as Bullet shapes.
#pragma once

#include <btBulletCollisionCommon.h>

#include <memory>
#include <unordered_map>

struct MeshData;

/// All triangles of a mesh in its own frame. Refers to the mesh's arrays, which must outlive it.
struct MeshShape {
    /// REQUIRES a mesh with triangles.
    explicit MeshShape(const MeshData& mesh);

    btTriangleIndexVertexArray triangles;
    std::unique_ptr<btBvhTriangleMeshShape> shape;
};

/// One shape for each mesh, built at its first use and shared while in use.
class MeshShapes {
public:
    /// Null for a mesh without triangles.
    std::shared_ptr<MeshShape> get(const MeshData& mesh);

private:
    std::unordered_map<const MeshData*, std::weak_ptr<MeshShape>>
        m_shapes;  ///< not iterated: its order is not deterministic
};
