// Mirrors the world: hands every added, changed or removed node to the part that draws it.
#pragma once

#include <osg/Group>

#include <unordered_map>

#include "engine/scene/World.h"
#include "mirror/MeshMirror.h"

class EffectsLayer;
class SeaLayer;
class TerrainLayer;

class WorldMirror {
public:
    /// Draws the meshes below `root`; the parts must outlive this object.
    WorldMirror(World& world, osg::Group& root, ShaderLibrary& shaders, TerrainLayer& terrain, SeaLayer& sea,
                EffectsLayer& effects);
    /// Applies the changes since the last call; unchanged nodes cost nothing.
    void update();
    MeshMirror& getMeshes() { return m_meshes; }

private:
    void forget(int id);
    /// Draws the last node of this type, if there is one; called when the drawn node was removed.
    void takeLast(int type);
    void take(Node& node);

    World& m_world;
    MeshMirror m_meshes;
    TerrainLayer& m_terrain;
    SeaLayer& m_sea;
    EffectsLayer& m_effects;
    std::unordered_map<int, int> m_types;    ///< node type by id, of the nodes that a part draws
    int m_terrain_id = -1, m_ocean_id = -1;  ///< ids of the drawn nodes: the last one that changed
    WorldChanges m_changes;
};
