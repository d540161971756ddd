// Meshes of the scene graph beside the world's: made when a node joins, moved when it moved.
#include "mirror/MeshMirror.h"

#include <algorithm>
#include <limits>

#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "frame/Convert.h"
#include "frame/Place.h"

namespace {

SurfaceShape shapeOf(const MeshSurface& surface) {
    return {!surface.normals.empty(), !surface.uvs.empty(), !surface.tangents.empty()};
}

}  // namespace

MeshMirror::MeshMirror(osg::Group& root, ShaderLibrary& shaders) : m_group(new osg::Group), m_materials(shaders) {
    root.addChild(m_group);
}

const MeshMirror::SharedMesh& MeshMirror::acquire(const MeshData& mesh) {
    SharedMesh& shared = m_meshes[&mesh];
    if (shared.users++ == 0) {
        for (const MeshSurface& surface : mesh.surfaces) {
            shared.surfaces.push_back({makeLevels(surface), LevelTop::find(surface)});
        }
    }
    return shared;
}

MeshMirror::MeshNode& MeshMirror::add(const ObjectMeshStatic& mesh) {
    MeshNode& node = m_nodes[mesh.getId()];
    node.mesh = &mesh.getMesh();
    node.shared = &acquire(*node.mesh);
    node.place = new Place;
    for (const SharedSurface& shared : node.shared->surfaces) {
        osg::ref_ptr<osg::Node> surface = new SurfaceDetail(shared.levels);
        node.place->addChild(surface);
        node.surfaces.push_back(surface);
    }
    const auto hasTop = [](const SharedSurface& surface) { return surface.top != nullptr; };
    if (std::any_of(node.shared->surfaces.begin(), node.shared->surfaces.end(), hasTop)) {
        m_topped[mesh.getId()].node = &node;
    }
    node.materials.resize(node.surfaces.size());
    m_group->addChild(node.place);
    return node;
}

void MeshMirror::disturb(const MeshNode& node) {
    if (node.place->getNodeMask() != 0) m_disturbed.push_back(node.place->getBound());
}

void MeshMirror::takeDisturbed(std::vector<osg::BoundingSphere>& bounds) {
    bounds.clear();
    bounds.swap(m_disturbed);
}

void MeshMirror::update(ObjectMeshStatic& mesh) {
    const auto found = m_nodes.find(mesh.getId());
    if (found != m_nodes.end()) disturb(found->second);
    MeshNode& node = found != m_nodes.end() ? found->second : add(mesh);
    for (int i = 0; i < mesh.getNumSurfaces(); ++i) {
        dress(node, static_cast<std::size_t>(i), mesh.getMaterials()[i]);
    }
    node.place->setMatrix(toOsg(mesh.getWorldTransform()));
    node.place->setNodeMask(mesh.isActive() ? ~0u : 0u);
    disturb(node);
    const auto topped = m_topped.find(mesh.getId());
    if (topped != m_topped.end()) topped->second.place = mesh.getWorldTransform();
}

Cover MeshMirror::findCover(const dvec3& eye) const {
    Cover nearest;
    if (m_group->getNodeMask() == 0) return nearest;
    double least = std::numeric_limits<double>::infinity();
    for (const auto& [id, topped] : m_topped) {
        if (topped.node->place->getNodeMask() == 0) continue;
        const dvec3 place = inverse(topped.place) * eye;
        for (std::size_t i = 0; i < topped.node->surfaces.size(); ++i) {
            const LevelTop* const top = topped.node->shared->surfaces[i].top.get();
            if (!top || topped.node->materials[i]->alpha != Material::OPAQUE) continue;
            const double distance = top->getDistance(place);
            if (distance >= least) continue;
            nearest = {top, topped.place};
            least = distance;
        }
    }
    return nearest;
}

void MeshMirror::dress(MeshNode& node, std::size_t surface, const std::shared_ptr<const Material>& material) {
    std::shared_ptr<const Material>& worn = node.materials[surface];
    if (worn == material) return;
    osg::Node& drawn = *node.surfaces[surface];
    drawn.setNodeMask(material->alpha == Material::BLEND ? MASK_DRAWN : MASK_DRAWN | MASK_CASTS_SHADOW);
    drawn.setStateSet(m_materials.acquire(*material, shapeOf(node.mesh->surfaces[surface])));
    if (worn) m_materials.release(worn.get());
    worn = material;
}

void MeshMirror::remove(int id) {
    const auto found = m_nodes.find(id);
    if (found == m_nodes.end()) return;
    disturb(found->second);
    m_topped.erase(id);
    for (const auto& material : found->second.materials) m_materials.release(material.get());
    m_group->removeChild(found->second.place);
    const auto shared = m_meshes.find(found->second.mesh);
    if (--shared->second.users == 0) m_meshes.erase(shared);
    m_nodes.erase(found);
}

double MeshMirror::getDistance(const osg::Vec3d& place) const {
    double nearest = std::numeric_limits<double>::infinity();
    for (const auto& [id, node] : m_nodes) {
        if (node.place->getNodeMask() == 0) continue;
        const osg::BoundingSphere& bound = node.place->getBound();
        nearest = std::min(nearest, (osg::Vec3d(bound.center()) - place).length() - bound.radius());
    }
    return std::max(nearest, 0.0);
}

void MeshMirror::setVisible(bool visible) {
    m_group->setNodeMask(visible ? ~0u : 0u);
}
