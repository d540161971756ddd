// Meshes and materials of a glTF file in the engine's form and axes.
#pragma once

#include <tiny_gltf.h>

#include <memory>
#include <vector>

#include "engine/scene/MeshData.h"

namespace gltf {

/// Turns the parts of one file; what several meshes or materials of it use is made once. Throws std::runtime_error when
/// the file is not sound. The model must outlive it.
class MeshBuilder {
public:
    /// `file`: the model's; its first buffer begins at `start`, 0 for nowhere.
    MeshBuilder(const tinygltf::Model& model, const jString& file, std::size_t start)
        : m_model(model), m_file(file), m_start(start) {}

    /// Null for a mesh without triangles.
    std::shared_ptr<const MeshData> getMesh(int index);

    int getDropped() const { return m_dropped; }  ///< triangles without an area so far
    int getSkipped() const { return m_skipped; }  ///< primitives that are no triangles so far

private:
    MeshSurface makeSurface(const tinygltf::Primitive& primitive);
    std::shared_ptr<Material> getMaterial(int index);
    std::shared_ptr<const ImageData> getTexture(int texture);
    std::shared_ptr<const ImageData> getImage(int index);
    std::shared_ptr<const ImageData> makeImage(int index) const;

    const tinygltf::Model& m_model;
    const jString m_file;
    const std::size_t m_start;
    std::vector<std::shared_ptr<const MeshData>> m_meshes;
    std::vector<bool> m_made;
    std::vector<std::shared_ptr<Material>> m_materials;
    std::vector<std::shared_ptr<const ImageData>> m_images;
    std::shared_ptr<Material> m_plain;
    std::size_t m_vertices = 0;
    int m_dropped = 0;
    int m_skipped = 0;
};

}  // namespace gltf
