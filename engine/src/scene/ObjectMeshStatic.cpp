// Meshes in the scene: intersections and materials of each surface. Changed by the logic during its update.
#include "engine/scene/ObjectMeshStatic.h"

#include <cmath>

#include "engine/scene/MeshData.h"
#include "scene/SurfaceTree.h"

ObjectMeshStatic::ObjectMeshStatic(std::shared_ptr<const MeshData> mesh) : m_mesh(std::move(mesh)) {
    for (const MeshSurface& surface : m_mesh->surfaces) m_materials.append(surface.material);
}

ObjectMeshStatic::~ObjectMeshStatic() = default;

int ObjectMeshStatic::getNumSurfaces() const {
    return m_materials.size();
}

bool ObjectMeshStatic::getIntersection(const dvec3& from, const dvec3& to, int surface, dvec3& hit) const {
    return m_mesh->trees[static_cast<std::size_t>(surface)]->intersect(from, to, hit);
}

Material* ObjectMeshStatic::getSurfaceMaterial(int surface) {
    return surface >= 0 && surface < m_materials.size() ? m_materials[surface].get() : nullptr;
}

void ObjectMeshStatic::setSurfaceMaterialInherit(int surface, bool inherit) {
    if (surface < 0 || surface >= m_materials.size()) return;
    const std::shared_ptr<Material>& shared = m_mesh->surfaces[static_cast<std::size_t>(surface)].material;
    if (inherit == (m_materials[surface] != shared)) return;
    m_materials[surface] = inherit ? std::make_shared<Material>(*shared) : shared;
    contentChanged();
}

BoundBox ObjectMeshStatic::getBoundBox() const {
    return m_mesh->bounds;
}

bool ObjectMeshStatic::setParameter(const jString& parameter, float value) {
    if (parameter != "emission") return Object::setParameter(parameter, value);
    if (!std::isfinite(value)) return true;
    for (int i = 0; i < m_materials.size(); ++i) {
        const vec3& authored = m_mesh->surfaces[static_cast<std::size_t>(i)].material->emission;
        if (dot(authored, authored) == 0.0f) continue;
        setSurfaceMaterialInherit(i, true);
        m_materials[i]->setEmission(authored * value);
    }
    return true;
}
