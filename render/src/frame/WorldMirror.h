// Follows the world: hands every node that is new, changed or gone to the part that draws it.
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
    /// Draws the meshes under `root`; the parts outlive this.
    WorldMirror(World& world, osg::Group& root, ShaderLibrary& shaders, TerrainLayer& terrain, SeaLayer& sea,
                EffectsLayer& effects);
    /// Takes in what changed since the last call; costs nothing for what did not.
    void update();
    MeshMirror& getMeshes() { return m_meshes; }

private:
    void forget(int id);
    /// Draws the last node of that type, if there is one: the one drawn is gone.
    void takeLast(int type);
    void take(Node& node);

    World& m_world;
    MeshMirror m_meshes;
    TerrainLayer& m_terrain;
    SeaLayer& m_sea;
    EffectsLayer& m_effects;
    std::unordered_map<int, int> m_types;    ///< node type by id, of the nodes that some part draws
    int m_terrain_id = -1, m_ocean_id = -1;  ///< those drawn: the last that changed
    WorldChanges m_changes;
};
