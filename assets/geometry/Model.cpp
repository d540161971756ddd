// Writes part trees as binary glTF.
#include "geometry/Model.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <sstream>
#include <stdexcept>

#include "geometry/Normals.h"
#include "text/Files.h"

namespace {

/// (x, y, z) becomes (x, z, -y): models are Z up, the file is Y up.
std::array<float, 3> toFile(const std::array<float, 3>& v) {
    return {v[0], v[2], -v[1]};
}

void append(IndexedSurface& to, const IndexedSurface& from) {
    const auto first = static_cast<std::uint32_t>(to.positions.size());
    to.positions.insert(to.positions.end(), from.positions.begin(), from.positions.end());
    to.normals.insert(to.normals.end(), from.normals.begin(), from.normals.end());
    to.uvs.insert(to.uvs.end(), from.uvs.begin(), from.uvs.end());
    for (const std::uint32_t index : from.indices) to.indices.push_back(first + index);
}

class Writer {
public:
    explicit Writer(double crease) : m_crease(crease) {
        m_model.asset.version = "2.0";
        m_model.asset.generator = "build_assets";
        m_model.buffers.resize(1);
        m_model.scenes.resize(1);
        m_model.defaultScene = 0;
    }

    void addTop(const Part& part) { m_model.scenes[0].nodes.push_back(addNode(part, {})); }

    void write(const std::string& path) {
        // Written to memory first: the library's own file output does not detect a file that cannot be written.
        std::ostringstream bytes;
        if (!tinygltf::TinyGLTF().WriteGltfSceneToStream(&m_model, bytes, false, true)) {
            throw std::runtime_error("cannot make " + path);
        }
        writeFile(path, bytes.str());
    }

private:
    int addNode(const Part& part, const dvec3& parent_origin) {
        tinygltf::Node node;
        node.name = part.name;
        const dvec3 t = part.origin - parent_origin;
        const dquat r = dquat::fromEulerZXY(part.hpr);
        if (length2(t) > 0.0) node.translation = {t.x, t.z, -t.y};
        if (length2(part.hpr) > 0.0) node.rotation = {r.x, r.z, -r.y, r.w};
        if (!part.mesh.empty()) node.mesh = addMesh(part);
        for (const Part& child : part.children) node.children.push_back(addNode(child, part.origin));
        m_model.nodes.push_back(node);
        return static_cast<int>(m_model.nodes.size()) - 1;
    }

    int addMesh(const Part& part) {
        tinygltf::Mesh mesh;
        mesh.name = part.name;
        for (const auto& [paint, surface] : drawnTogether(part.mesh)) {
            mesh.primitives.push_back(addPrimitive(paint, surface, part.origin));
        }
        m_model.meshes.push_back(mesh);
        return static_cast<int>(m_model.meshes.size()) - 1;
    }

    /// Surfaces grouped by the paint with which they are drawn.
    std::vector<std::pair<PaintRef, IndexedSurface>> drawnTogether(const Mesh& mesh) const {
        std::vector<std::pair<PaintRef, IndexedSurface>> result;
        for (const Mesh::Surface& surface : mesh.surfaces()) {
            if (surface.triangles.empty()) continue;
            IndexedSurface indexed = indexSurface(surface, m_crease);
            const PaintRef& own = surface.paint;
            if (own->drawn_as) indexed.uvs.assign(indexed.positions.size(), own->swatch);
            const PaintRef& paint = own->drawn_as ? own->drawn_as : own;
            const auto known =
                std::find_if(result.begin(), result.end(), [&](const auto& r) { return r.first == paint; });
            if (known == result.end()) {
                result.emplace_back(paint, std::move(indexed));
            } else {
                append(known->second, indexed);
            }
        }
        return result;
    }

    tinygltf::Primitive addPrimitive(const PaintRef& paint, IndexedSurface s, const dvec3& origin) {
        for (auto& p : s.positions) {
            p = toFile({static_cast<float>(p[0] - origin.x), static_cast<float>(p[1] - origin.y),
                        static_cast<float>(p[2] - origin.z)});
        }
        for (auto& n : s.normals) n = toFile(n);
        tinygltf::Primitive primitive;
        primitive.mode = TINYGLTF_MODE_TRIANGLES;
        primitive.material = addMaterial(paint);
        primitive.attributes["POSITION"] = addAttribute(s.positions, TINYGLTF_TYPE_VEC3, true);
        primitive.attributes["NORMAL"] = addAttribute(s.normals, TINYGLTF_TYPE_VEC3, false);
        if (!s.uvs.empty()) primitive.attributes["TEXCOORD_0"] = addAttribute(s.uvs, TINYGLTF_TYPE_VEC2, false);
        primitive.indices = addIndices(s.indices);
        return primitive;
    }

    int addView(const void* data, std::size_t bytes, int target) {
        std::vector<unsigned char>& buffer = m_model.buffers[0].data;
        buffer.resize((buffer.size() + 3) / 4 * 4);
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = buffer.size();
        view.byteLength = bytes;
        view.target = target;
        const auto* first = static_cast<const unsigned char*>(data);
        buffer.insert(buffer.end(), first, first + bytes);
        m_model.bufferViews.push_back(view);
        return static_cast<int>(m_model.bufferViews.size()) - 1;
    }

    int addAccessor(int view, int component, int type, std::size_t count) {
        tinygltf::Accessor accessor;
        accessor.bufferView = view;
        accessor.componentType = component;
        accessor.type = type;
        accessor.count = count;
        m_model.accessors.push_back(accessor);
        return static_cast<int>(m_model.accessors.size()) - 1;
    }

    template <std::size_t N>
    int addAttribute(const std::vector<std::array<float, N>>& values, int type, bool with_bounds) {
        const int view = addView(values.data(), values.size() * sizeof values[0], TINYGLTF_TARGET_ARRAY_BUFFER);
        const int index = addAccessor(view, TINYGLTF_COMPONENT_TYPE_FLOAT, type, values.size());
        if (!with_bounds) return index;
        tinygltf::Accessor& accessor = m_model.accessors.back();
        accessor.minValues.assign(values[0].begin(), values[0].end());
        accessor.maxValues = accessor.minValues;
        for (const auto& v : values) {
            for (std::size_t i = 0; i < N; ++i) {
                accessor.minValues[i] = std::min<double>(accessor.minValues[i], v[i]);
                accessor.maxValues[i] = std::max<double>(accessor.maxValues[i], v[i]);
            }
        }
        return index;
    }

    int addIndices(const std::vector<std::uint32_t>& indices) {
        if (*std::max_element(indices.begin(), indices.end()) >= 0xFFFF) {
            const int view = addView(indices.data(), indices.size() * 4, TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
            return addAccessor(view, TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR, indices.size());
        }
        const std::vector<std::uint16_t> small(indices.begin(), indices.end());
        const int view = addView(small.data(), small.size() * 2, TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
        return addAccessor(view, TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT, TINYGLTF_TYPE_SCALAR, small.size());
    }

    int addMaterial(const PaintRef& paint) {
        const auto known = m_materials.find(paint.get());
        if (known != m_materials.end()) return known->second;
        tinygltf::Material material;
        material.name = paint->name;
        material.pbrMetallicRoughness.baseColorFactor.assign(paint->color.begin(), paint->color.end());
        material.pbrMetallicRoughness.metallicFactor = paint->metallic;
        material.pbrMetallicRoughness.roughnessFactor = paint->roughness;
        material.emissiveFactor.assign(paint->emission.begin(), paint->emission.end());
        material.doubleSided = paint->double_sided;
        if (paint->color[3] < 1.0) material.alphaMode = "BLEND";
        if (paint->cutoff > 0.0) {
            material.alphaMode = "MASK";
            material.alphaCutoff = paint->cutoff;
        }
        if (paint->texture) material.pbrMetallicRoughness.baseColorTexture.index = addTexture(paint->texture);
        if (paint->textured_emission) {
            material.emissiveTexture.index = material.pbrMetallicRoughness.baseColorTexture.index;
        }
        m_model.materials.push_back(material);
        const int index = static_cast<int>(m_model.materials.size()) - 1;
        m_materials.emplace(paint.get(), index);
        return index;
    }

    int addTexture(const std::shared_ptr<const Texture>& shared) {
        const auto known = m_textures.find(shared.get());
        if (known != m_textures.end()) return known->second;
        const Texture& texture = *shared;
        tinygltf::Image image;
        image.mimeType = "image/png";
        image.bufferView = addView(texture.png.data(), texture.png.size(), 0);
        m_model.images.push_back(image);
        tinygltf::Texture entry;
        entry.source = static_cast<int>(m_model.images.size()) - 1;
        m_model.textures.push_back(entry);
        const int index = static_cast<int>(m_model.textures.size()) - 1;
        m_textures.emplace(shared.get(), index);
        return index;
    }

    double m_crease;
    tinygltf::Model m_model;
    std::map<const Paint*, int> m_materials;
    std::map<const Texture*, int> m_textures;
};

}  // namespace

std::size_t countTriangles(const Part& part) {
    std::size_t n = part.mesh.countTriangles();
    for (const Part& child : part.children) n += countTriangles(child);
    return n;
}

void writeModel(const std::string& path, const std::vector<Part>& parts, double crease) {
    Writer writer(crease);
    for (const Part& part : parts) writer.addTop(part);
    writer.write(path);
}
