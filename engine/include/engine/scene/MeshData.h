// The geometry that meshes share, and the files it comes from.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "engine/Api.h"
#include "engine/math/Bounds.h"
#include "engine/scene/Material.h"

/// Triangles of one material in the mesh's own frame, metres. Attribute arrays are as long as `positions` or empty.
struct MeshSurface {
    std::vector<std::array<float, 3>> positions;
    std::vector<std::array<float, 3>> normals;
    std::vector<std::array<float, 4>> tangents;
    std::vector<std::array<float, 2>> uvs;
    std::vector<std::uint32_t> indices;  ///< three a triangle, counter-clockwise from outside
    std::shared_ptr<Material> material;  ///< never null
};

/// A triangle tree over one surface, hidden behind the engine's pick library.
class SurfaceTree;

/// Immutable once built. Building takes unusable triangles out of the surfaces' indices and gives a surface without a
/// material a plain one.
struct ENGINE_API MeshData {
    explicit MeshData(std::vector<MeshSurface> surfaces);
    ~MeshData();

    std::vector<MeshSurface> surfaces;
    BoundBox bounds;
    std::vector<std::unique_ptr<SurfaceTree>> trees;  ///< one a surface
    int dropped = 0;  ///< triangles left out when it was built: without area, not finite or with wrong indices
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

/// Reads a glTF 2.0 file (.glb or .gltf), Y up in the file, Z up here: (x, y, z) becomes (x, -z, y). Loaded once
/// while an engine runs and kept; the runtime root's path. Null, with one log line, when it cannot be read whole.
ENGINE_API std::shared_ptr<const Model> loadModel(const jString& path);
/// Hangs the model's nodes under `parent`.
ENGINE_API void instantiateModel(const Model& model, Node& parent);
