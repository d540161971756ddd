// Reads a glTF file into tinygltf's structures, and its accessors safely. For an invalid file all functions throw
// std::runtime_error with the reason; the model loader writes the one log line.
#pragma once

#include <tiny_gltf.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/text/Containers.h"

namespace gltf {

/// Reads a .glb or .gltf file (by its content, not its name) and the buffers and images in its folder or below. Images
/// keep their encoded bytes; a missing one is empty. References outside the file's folder, unsupported extensions and
/// files above 64 MiB are refused. Returns the file offset of the first buffer, 0 when that buffer is a separate file.
std::size_t readFile(const jString& path, tinygltf::Model& model);

/// The elements of an accessor; all bytes are inside its buffer.
struct Elements {
    const unsigned char* data = nullptr;
    std::size_t count = 0;
    std::size_t stride = 0;  ///< bytes between elements
    int component = 0;       ///< TINYGLTF_COMPONENT_TYPE_*
    int width = 0;           ///< components per element
    bool normalized = false;
};
Elements getElements(const tinygltf::Model& model, int accessor);

/// Converts one component to a float as in glTF 2.0 section 3.6.2.2.
float toFloat(const unsigned char* bytes, int component, bool normalized);

/// An accessor with N components per element, of any component type.
template <std::size_t N>
std::vector<std::array<float, N>> readVectors(const tinygltf::Model& model, int accessor) {
    const Elements elements = getElements(model, accessor);
    if (elements.width != static_cast<int>(N)) throw std::runtime_error("an attribute of the wrong type");
    const std::size_t size = static_cast<std::size_t>(tinygltf::GetComponentSizeInBytes(elements.component));
    std::vector<std::array<float, N>> out(elements.count);
    for (std::size_t i = 0; i < elements.count; ++i) {
        const unsigned char* const element = elements.data + i * elements.stride;
        for (std::size_t c = 0; c < N; ++c) {
            out[i][c] = toFloat(element + c * size, elements.component, elements.normalized);
        }
    }
    return out;
}

/// An accessor of integers, all below `limit`.
std::vector<std::uint32_t> readIndices(const tinygltf::Model& model, int accessor, std::size_t limit);

/// A buffer view inside its buffer.
const tinygltf::BufferView& getView(const tinygltf::Model& model, int view);
/// Its bytes.
std::vector<unsigned char> readView(const tinygltf::Model& model, int view);

/// An element of an array of the file; throws for an invalid index. `what` names it in the message.
template <class T>
const T& at(const std::vector<T>& items, int index, const char* what) {
    if (index < 0 || static_cast<std::size_t>(index) >= items.size()) {
        throw std::runtime_error(std::string("no such ") + what + ": " + std::to_string(index));
    }
    return items[static_cast<std::size_t>(index)];
}

}  // namespace gltf
