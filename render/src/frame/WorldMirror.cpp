// Sorts the changes of the world by node type, once per frame before drawing.
#include "frame/WorldMirror.h"

#include "effects/EffectsLayer.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectTerrain.h"
#include "engine/scene/SceneNodes.h"
#include "sea/SeaLayer.h"
#include "terrain/TerrainLayer.h"

WorldMirror::WorldMirror(World& world, osg::Group& root, ShaderLibrary& shaders, TerrainLayer& terrain, SeaLayer& sea,
                         EffectsLayer& effects)
    : m_world(world), m_meshes(root, shaders), m_terrain(terrain), m_sea(sea), m_effects(effects) {
    m_world.watchChanges();
}

void WorldMirror::update() {
    m_world.takeChanges(m_changes);
    for (const int id : m_changes.left) forget(id);
    for (Node* node : m_changes.changed) take(*node);
    m_meshes.updateMaterials();
}

void WorldMirror::forget(int id) {
    const auto found = m_types.find(id);
    if (found == m_types.end()) return;
    const int type = found->second;
    m_types.erase(found);
    switch (type) {
        case Node::MESH_STATIC:
            m_meshes.remove(id);
            break;
        case Node::TERRAIN:
            if (id != m_terrain_id) break;
            m_terrain.setTerrain(nullptr);
            m_sea.setTerrain(nullptr);
            takeLast(type);
            break;
        case Node::OCEAN:
            if (id != m_ocean_id) break;
            m_sea.setOcean(nullptr);
            takeLast(type);
            break;
        case Node::DECAL_ORTHO:
            m_terrain.removeDecal(id);
            break;
        default:
            m_effects.remove(id);
            break;
    }
}

void WorldMirror::takeLast(int type) {
    Node* last = nullptr;
    for (Node* const node : m_world.getNodes()) {
        if (node->getType() == type) last = node;
    }
    if (last) take(*last);
}

void WorldMirror::take(Node& node) {
    switch (node.getType()) {
        case Node::MESH_STATIC:
            m_meshes.update(static_cast<ObjectMeshStatic&>(node));
            break;
        case Node::TERRAIN:
            m_terrain_id = node.getId();
            m_terrain.setTerrain(static_cast<ObjectTerrain*>(&node));
            m_sea.setTerrain(static_cast<ObjectTerrain*>(&node));
            break;
        case Node::OCEAN:
            m_ocean_id = node.getId();
            m_sea.setOcean(static_cast<ObjectOcean*>(&node));
            break;
        case Node::DECAL_ORTHO:
            m_terrain.updateDecal(static_cast<DecalOrtho&>(node));
            break;
        case Node::PARTICLES:
            m_effects.updateParticles(static_cast<ObjectParticles&>(node));
            break;
        case Node::LIGHT:
            m_effects.updateLight(static_cast<NodeLight&>(node));
            break;
        case Node::TEXT:
            m_effects.updateText(static_cast<NodeText&>(node));
            break;
        default:
            return;
    }
    node.getWorldTransform();
    m_types.try_emplace(node.getId(), node.getType());
}
