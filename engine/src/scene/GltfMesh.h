// Conversion of a glTF file's meshes and materials to the engine's format and axes.
#pragma once

#include <tiny_gltf.h>

#include <memory>
#include <vector>

#include "engine/scene/MeshData.h"

namespace gltf {

/// Converts the parts of one file; shared parts are converted once. Throws std::runtime_error when the file is invalid.
/// The model must outlive it.
class MeshBuilder {
public:
    /// `file`: path of the model; `start`: offset of its first buffer in it, 0 for none.
    MeshBuilder(const tinygltf::Model& model, const jString& file, std::size_t start)
        : m_model(model), m_file(file), m_start(start) {}

    /// Null for a mesh without triangles.
    std::shared_ptr<const MeshData> getMesh(int index);

    int getDropped() const { return m_dropped; }  ///< triangles without area so far
    int getSkipped() const { return m_skipped; }  ///< primitives other than triangles so far

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
