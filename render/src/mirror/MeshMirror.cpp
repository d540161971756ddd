// Scene graph meshes for the world's meshes: created when a node is added, moved when it moved.
#include "mirror/MeshMirror.h"

#include <algorithm>
#include <limits>

#include "base/Convert.h"
#include "base/FrameView.h"
#include "base/GlobeTransform.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"

namespace {

constexpr double SMALL = 25.0;                // metres: size of an aircraft
constexpr double MAX_COVER_DISTANCE = 150.0;  // metres from the eye

Reach reachOf(const MeshData& mesh) {
    return {mesh.bounds.getCenter(), length(mesh.bounds.getSize()) * 0.5};
}

SurfaceShape shapeOf(const MeshSurface& surface) {
    return {!surface.normals.empty(), !surface.uvs.empty(), !surface.tangents.empty()};
}

}  // namespace

MeshMirror::MeshMirror(osg::Group& root, ShaderLibrary& shaders)
    : m_group(new osg::Group), m_small(new osg::StateSet), m_materials(shaders) {
    m_small->setRenderBinDetails(DRAW_SMALL, "SORT_FRONT_TO_BACK");
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
    node.place = new GlobeTransform;
    if (reachOf(*node.mesh).radius < SMALL) node.place->setStateSet(m_small);
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

void MeshMirror::update(ObjectMeshStatic& mesh) {
    const int id = mesh.getId();
    const dmat4 place = mesh.getWorldTransform();
    const auto found = m_nodes.find(id);
    MeshNode& node = found != m_nodes.end() ? found->second : add(mesh);
    bool is_changed = false;
    for (int i = 0; i < mesh.getNumSurfaces(); ++i) {
        is_changed |= dress(node, static_cast<std::size_t>(i), mesh.getMaterials()[i]);
    }
    node.place->setMatrix(toOsg(place));
    node.place->setNodeMask(mesh.isActive() ? ~0u : 0u);
    if (mesh.isActive()) {
        m_casters.place(id, reachOf(*node.mesh), place, is_changed);
    } else {
        m_casters.remove(id);
    }
    const auto topped = m_topped.find(id);
    if (topped != m_topped.end()) topped->second.place = place;
}

Cover MeshMirror::findCover(const dvec3& eye) const {
    Cover nearest;
    if (m_group->getNodeMask() == 0) return nearest;
    double least = MAX_COVER_DISTANCE;
    for (const auto& [id, topped] : m_topped) {
        const dmat4& at = topped.place;
        const bool is_mirrored = dot(at.x, cross(at.y, at.z)) <= 0.0;  // visible from below only
        if (topped.node->place->getNodeMask() == 0 || is_mirrored) continue;
        const dvec3 place = inverse(topped.place) * eye;
        for (std::size_t i = 0; i < topped.node->surfaces.size(); ++i) {
            const LevelTop* const top = topped.node->shared->surfaces[i].top.get();
            if (!top || topped.node->materials[i]->alpha != Material::OPAQUE) continue;
            const double distance = top->getDistance(place);
            if (!(distance < least)) continue;
            nearest = {top, topped.place};
            least = distance;
        }
    }
    return nearest;
}

bool MeshMirror::dress(MeshNode& node, std::size_t surface, const std::shared_ptr<const Material>& material) {
    std::shared_ptr<const Material>& worn = node.materials[surface];
    if (worn == material) return false;
    osg::Node& drawn = *node.surfaces[surface];
    drawn.setNodeMask(material->alpha == Material::BLEND ? MASK_DRAWN : MASK_DRAWN | MASK_CASTS_SHADOW);
    drawn.setStateSet(m_materials.acquire(*material, shapeOf(node.mesh->surfaces[surface])));
    if (worn) m_materials.release(worn.get());
    worn = material;
    return true;
}

void MeshMirror::remove(int id) {
    const auto found = m_nodes.find(id);
    if (found == m_nodes.end()) return;
    m_casters.remove(id);
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
