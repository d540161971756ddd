// Converts glTF meshes and materials to the engine's; called when a model is loaded.
#include "scene/GltfMesh.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "engine/text/Log.h"
#include "scene/GltfFile.h"

namespace gltf {
namespace {

constexpr std::size_t VERTEX_LIMIT = 1u << 25;  // per file: limits files that reference the same data many times
// cosine of 40 degrees: a face that deviates more from its vertex's normal has a hard edge
constexpr float CREASE = 0.766f;

using Vector = std::array<float, 3>;

vec3 toVec(const Vector& v) {
    return {v[0], v[1], v[2]};
}
Vector toArray(const vec3& v) {
    return {v.x, v.y, v.z};
}

/// Rotates from Y up to Z up.
template <std::size_t N>
void turn(std::vector<std::array<float, N>>& vectors) {
    for (auto& v : vectors) {
        const float y = v[1];
        v[1] = -v[2];
        v[2] = y;
    }
}

/// Converts strips and fans to separate triangles with the same winding.
std::vector<std::uint32_t> toTriangles(const std::vector<std::uint32_t>& in, int mode) {
    std::vector<std::uint32_t> out;
    if (mode == TINYGLTF_MODE_TRIANGLES) {
        out.assign(in.begin(), in.end() - static_cast<std::ptrdiff_t>(in.size() % 3));
        return out;
    }
    for (std::size_t i = 2; i < in.size(); ++i) {
        const bool fan = mode == TINYGLTF_MODE_TRIANGLE_FAN, odd = !fan && i % 2 == 1;
        const std::uint32_t first = fan ? in[0] : in[odd ? i - 1 : i - 2], second = in[odd ? i - 2 : i - 1];
        out.insert(out.end(), {first, second, in[i]});
    }
    return out;
}

vec3 faceNormal(const MeshSurface& surface, std::size_t triangle) {
    const std::uint32_t* const index = &surface.indices[3 * triangle];
    const vec3 a = toVec(surface.positions[index[0]]), b = toVec(surface.positions[index[1]]),
               c = toVec(surface.positions[index[2]]);
    return cross(b - a, c - a);
}

/// Adds a separate vertex for one triangle's corner, with that triangle's normal.
std::uint32_t splitVertex(MeshSurface& surface, std::uint32_t vertex, const vec3& normal) {
    surface.positions.push_back(surface.positions[vertex]);
    surface.normals.push_back(toArray(normal));
    if (!surface.tangents.empty()) surface.tangents.push_back(surface.tangents[vertex]);
    if (!surface.uvs.empty()) surface.uvs.push_back(surface.uvs[vertex]);
    return static_cast<std::uint32_t>(surface.positions.size() - 1);
}

/// Smooth normals, weighted by area, over the vertices that triangles share. A triangle at a large angle to them gets
/// separate vertices, so that boxes keep their edges.
void makeNormals(MeshSurface& surface) {
    std::vector<vec3> sums(surface.positions.size());
    const std::size_t triangles = surface.indices.size() / 3;
    for (std::size_t i = 0; i < triangles; ++i) {
        const vec3 normal = faceNormal(surface, i);
        for (std::size_t c = 0; c < 3; ++c) {
            vec3& sum = sums[surface.indices[3 * i + c]];
            sum = sum + normal;
        }
    }
    surface.normals.resize(sums.size());
    std::transform(sums.begin(), sums.end(), surface.normals.begin(),
                   [](const vec3& s) { return toArray(normalize(s)); });
    for (std::size_t i = 0; i < triangles; ++i) {
        const vec3 normal = normalize(faceNormal(surface, i));
        for (std::size_t c = 0; c < 3; ++c) {
            std::uint32_t& index = surface.indices[3 * i + c];
            if (dot(toVec(surface.normals[index]), normal) < CREASE) index = splitVertex(surface, index, normal);
        }
    }
}

float number(const std::vector<double>& values, std::size_t i, float otherwise) {
    return i < values.size() && std::isfinite(values[i]) ? static_cast<float>(values[i]) : otherwise;
}

float emissiveStrength(const tinygltf::Material& material) {
    const auto it = material.extensions.find("KHR_materials_emissive_strength");
    if (it == material.extensions.end() || !it->second.IsObject() || !it->second.Has("emissiveStrength")) return 1.0f;
    const tinygltf::Value& value = it->second.Get("emissiveStrength");
    return value.IsNumber() ? static_cast<float>(value.GetNumberAsDouble()) : 1.0f;
}

}  // namespace

std::shared_ptr<const MeshData> MeshBuilder::getMesh(int index) {
    const tinygltf::Mesh& mesh = at(m_model.meshes, index, "mesh");
    m_meshes.resize(m_model.meshes.size());
    m_made.resize(m_model.meshes.size());
    std::shared_ptr<const MeshData>& slot = m_meshes[static_cast<std::size_t>(index)];
    if (m_made[static_cast<std::size_t>(index)]) return slot;
    m_made[static_cast<std::size_t>(index)] = true;
    std::vector<MeshSurface> surfaces;
    for (const tinygltf::Primitive& primitive : mesh.primitives) {
        if (primitive.mode < TINYGLTF_MODE_TRIANGLES || primitive.mode > TINYGLTF_MODE_TRIANGLE_FAN) {
            ++m_skipped;
            continue;
        }
        surfaces.push_back(makeSurface(primitive));
    }
    if (surfaces.empty()) return nullptr;
    slot = std::make_shared<MeshData>(std::move(surfaces));
    m_dropped += slot->dropped;
    return slot;
}

MeshSurface MeshBuilder::makeSurface(const tinygltf::Primitive& primitive) {
    const auto attribute = [&](const char* name) {
        const auto it = primitive.attributes.find(name);
        return it == primitive.attributes.end() ? -1 : it->second;
    };
    MeshSurface surface;
    surface.positions = readVectors<3>(m_model, attribute("POSITION"));
    const std::size_t count = surface.positions.size();
    m_vertices += count;
    if (m_vertices > VERTEX_LIMIT) throw std::runtime_error("more than 33 million vertices");
    if (attribute("NORMAL") >= 0) surface.normals = readVectors<3>(m_model, attribute("NORMAL"));
    if (attribute("TANGENT") >= 0) surface.tangents = readVectors<4>(m_model, attribute("TANGENT"));
    if (attribute("TEXCOORD_0") >= 0) surface.uvs = readVectors<2>(m_model, attribute("TEXCOORD_0"));
    const auto fits = [&](std::size_t size) { return size == 0 || size == count; };
    if (!fits(surface.normals.size()) || !fits(surface.tangents.size()) || !fits(surface.uvs.size())) {
        throw std::runtime_error("attributes of unequal length");
    }
    std::vector<std::uint32_t> indices(count);
    std::iota(indices.begin(), indices.end(), 0u);
    if (primitive.indices >= 0) indices = readIndices(m_model, primitive.indices, count);
    surface.indices = toTriangles(indices, primitive.mode);
    turn(surface.positions);
    turn(surface.normals);
    turn(surface.tangents);
    if (surface.normals.empty()) makeNormals(surface);
    surface.material = getMaterial(primitive.material);
    return surface;
}

std::shared_ptr<Material> MeshBuilder::getMaterial(int index) {
    if (index < 0) {
        if (!m_plain) m_plain = std::make_shared<Material>();
        return m_plain;
    }
    const tinygltf::Material& from = at(m_model.materials, index, "material");
    m_materials.resize(m_model.materials.size());
    std::shared_ptr<Material>& slot = m_materials[static_cast<std::size_t>(index)];
    if (slot) return slot;
    slot = std::make_shared<Material>();
    const tinygltf::PbrMetallicRoughness& pbr = from.pbrMetallicRoughness;
    const std::vector<double>&base = pbr.baseColorFactor, &emission = from.emissiveFactor;
    slot->name = from.name;
    slot->base_color = vec4(number(base, 0, 1), number(base, 1, 1), number(base, 2, 1), number(base, 3, 1));
    slot->emission =
        vec3(number(emission, 0, 0), number(emission, 1, 0), number(emission, 2, 0)) * emissiveStrength(from);
    slot->metallic = static_cast<float>(pbr.metallicFactor);
    slot->roughness = static_cast<float>(pbr.roughnessFactor);
    slot->alpha_cutoff = static_cast<float>(from.alphaCutoff);
    slot->alpha = from.alphaMode == "MASK"    ? Material::MASK
                  : from.alphaMode == "BLEND" ? Material::BLEND
                                              : Material::OPAQUE;
    slot->double_sided = from.doubleSided;
    slot->base_texture = getTexture(pbr.baseColorTexture.index);
    slot->normal_texture = getTexture(from.normalTexture.index);
    slot->metal_rough_texture = getTexture(pbr.metallicRoughnessTexture.index);
    slot->emission_texture = getTexture(from.emissiveTexture.index);
    return slot;
}

std::shared_ptr<const ImageData> MeshBuilder::getTexture(int texture) {
    return texture < 0 ? nullptr : getImage(at(m_model.textures, texture, "texture").source);
}

std::shared_ptr<const ImageData> MeshBuilder::getImage(int index) {
    if (index < 0) return nullptr;
    at(m_model.images, index, "image");
    m_images.resize(m_model.images.size());
    std::shared_ptr<const ImageData>& slot = m_images[static_cast<std::size_t>(index)];
    if (!slot) slot = makeImage(index);
    return slot->size == 0 && slot->bytes.empty() ? nullptr : slot;
}

std::shared_ptr<const ImageData> MeshBuilder::makeImage(int index) const {
    const tinygltf::Image& from = m_model.images[static_cast<std::size_t>(index)];
    auto image = std::make_shared<ImageData>();
    image->name = m_file + "#" + std::to_string(index);
    if (from.bufferView < 0) {
        image->bytes = from.image;
        if (image->bytes.empty()) jLog::warning("%s: image missing: %s", m_file.c_str(), from.uri.c_str());
        return image;
    }
    const tinygltf::BufferView& view = getView(m_model, from.bufferView);
    if (m_start > 0 && view.buffer == 0) {
        image->file = m_file;
        image->offset = m_start + view.byteOffset;
        image->size = view.byteLength;
    } else {
        image->bytes = readView(m_model, from.bufferView);
    }
    return image;
}

}  // namespace gltf
