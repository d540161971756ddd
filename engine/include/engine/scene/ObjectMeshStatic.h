// Triangle meshes.
#pragma once

#include "engine/Api.h"
#include "engine/scene/Object.h"

struct MeshData;

/// A mesh that several objects may share: one surface per material, each with its own triangle tree.
class ENGINE_API ObjectMeshStatic final : public Object {
public:
    explicit ObjectMeshStatic(std::shared_ptr<const MeshData> mesh);
    ~ObjectMeshStatic() override;

    int getType() const override { return MESH_STATIC; }
    int getNumSurfaces() const override;
    bool getIntersection(const dvec3& from, const dvec3& to, int surface, dvec3& hit) const override;
    Material* getSurfaceMaterial(int surface) override;
    void setSurfaceMaterialInherit(int surface, bool inherit) override;
    BoundBox getBoundBox() const override;
    /// "emission" scales the authored emission of all surfaces.
    bool setParameter(const jString& parameter, float value) override;

    const MeshData& getMesh() const { return *m_mesh; }
    /// One per surface, never null; shared with the model until inherited.
    const jVector<std::shared_ptr<Material>>& getMaterials() const { return m_materials; }

private:
    std::shared_ptr<const MeshData> m_mesh;
    jVector<std::shared_ptr<Material>> m_materials;
};
