// Geometry shared by meshes, and its files.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/Api.h"
#include "engine/math/Bounds.h"
#include "engine/scene/Material.h"

/// Triangles of one material in the mesh's own frame, metres. Attribute arrays have the length of `positions` or are
/// empty.
struct MeshSurface {
    std::vector<std::array<float, 3>> positions;
    std::vector<std::array<float, 3>> normals;
    std::vector<std::array<float, 4>> tangents;
    std::vector<std::array<float, 2>> uvs;
    std::vector<std::uint32_t> indices;  ///< three per triangle, counter-clockwise seen from outside
    std::shared_ptr<Material> material;  ///< never null
};

/// A triangle tree over one surface for segment queries.
class SurfaceTree;

/// Immutable once built. The constructor removes unusable triangles from the surfaces' indices and adds a plain
/// material where one is missing.
struct ENGINE_API MeshData {
    explicit MeshData(std::vector<MeshSurface> surfaces);
    ~MeshData();

    std::vector<MeshSurface> surfaces;
    BoundBox bounds;
    std::vector<std::unique_ptr<SurfaceTree>> trees;  ///< one per surface
    int dropped = 0;  ///< unusable triangles: without area, not finite or with invalid indices
};

/// One node of a model file, with its children.
struct ModelNode {
    jString name;
    dmat4 transform;                       ///< relative to its parent
    std::shared_ptr<const MeshData> mesh;  ///< null for a plain node
    std::vector<ModelNode> children;
};

/// A model file: its nodes in the file's order.
struct Model {
    std::vector<ModelNode> nodes;
};

class Node;

/// Reads a glTF 2.0 file (.glb or .gltf) below the runtime root. Y is up in the file and Z here: (x, y, z) becomes (x,
/// -z, y). Each file is loaded once per engine run. Null, with one log line, when it cannot be read completely.
ENGINE_API std::shared_ptr<const Model> loadModel(const jString& path);
/// Adds the model's nodes as children of `parent`.
ENGINE_API void instantiateModel(const Model& model, Node& parent);
