// Draws the world's meshes. Nodes of one model share geometry, surfaces of one material share states.
#pragma once

#include <osg/MatrixTransform>

#include <memory>
#include <unordered_map>
#include <vector>

#include "mirror/Casters.h"
#include "mirror/LevelTop.h"
#include "mirror/MaterialStates.h"
#include "mirror/SurfaceDetail.h"

class ObjectMeshStatic;
class ShaderLibrary;
struct MeshData;
struct MeshSurface;

/// Node masks; 0 is not drawn.
enum MeshMasks : unsigned { MASK_DRAWN = 1, MASK_CASTS_SHADOW = 2 };

class MeshMirror {
public:
    MeshMirror(osg::Group& root, ShaderLibrary& shaders);
    void update(ObjectMeshStatic& mesh);
    void remove(int id);
    /// Updates materials whose parameters changed.
    void updateMaterials() { m_materials.update(); }
    void setVisible(bool visible);

    osg::Group* getGroup() const { return m_group; }
    /// Metres to the bounds of the nearest drawn mesh, 0 inside; infinite without one.
    double getDistance(const osg::Vec3d& place) const;
    /// The best occluder for an eye in the world, also the surface that the eye may move with: the nearest level top
    /// below it, none when all are far away. Valid until the next change.
    Cover findCover(const dvec3& eye) const;
    int getNumNodes() const { return static_cast<int>(m_nodes.size()); }
    int getNumModels() const { return static_cast<int>(m_meshes.size()); }  ///< models with loaded geometry
    int getNumMaterials() const { return m_materials.getNumMaterials(); }   ///< materials with loaded states
    Casters& getCasters() { return m_casters; }

private:
    struct SharedSurface {
        std::vector<DetailLevel> levels;
        std::unique_ptr<LevelTop> top;  ///< null for most meshes
    };
    struct SharedMesh {
        std::vector<SharedSurface> surfaces;
        int users = 0;
    };
    struct MeshNode {
        const MeshData* mesh;
        const SharedMesh* shared;
        osg::ref_ptr<osg::MatrixTransform> place;
        std::vector<osg::ref_ptr<osg::Node>> surfaces;
        std::vector<std::shared_ptr<const Material>> materials;  ///< materials of the surfaces' states
    };

    /// A node with level tops.
    struct ToppedNode {
        const MeshNode* node = nullptr;
        dmat4 place;  ///< pose in the world
    };

    MeshNode& add(const ObjectMeshStatic& mesh);
    /// Whether the surface's material differs from the previous one.
    bool dress(MeshNode& node, std::size_t surface, const std::shared_ptr<const Material>& material);
    const SharedMesh& acquire(const MeshData& mesh);

    osg::ref_ptr<osg::Group> m_group;
    osg::ref_ptr<osg::StateSet> m_small;  ///< state of small meshes
    MaterialStates m_materials;
    std::unordered_map<const MeshData*, SharedMesh> m_meshes;
    std::unordered_map<int, MeshNode> m_nodes;     ///< by node id
    std::unordered_map<int, ToppedNode> m_topped;  ///< by node id
    Casters m_casters;
};
