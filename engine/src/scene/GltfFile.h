// A glTF file read into tinygltf's structures, and its accessors read safely. Everything here throws std::runtime_error
// with what is wrong when the file is not sound; the model loader makes the one log line of it.
#pragma once

#include <tiny_gltf.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "engine/text/Containers.h"

namespace gltf {

/// Reads a .glb or .gltf file (by its content, not its name) and the buffers and images beside or below it. Images keep
/// their encoded bytes; one that is missing stays empty. References that leave the file's folder, extensions that this
/// engine lacks and files above 64 MiB are refused. Gives where in the file the first buffer begins, 0 when that is a
/// file of its own.
std::size_t readFile(const jString& path, tinygltf::Model& model);

/// The elements of an accessor, every byte of which lies in its buffer.
struct Elements {
    const unsigned char* data = nullptr;
    std::size_t count = 0;
    std::size_t stride = 0;  ///< bytes from element to element
    int component = 0;       ///< TINYGLTF_COMPONENT_TYPE_*
    int width = 0;           ///< components an element
    bool normalized = false;
};
Elements getElements(const tinygltf::Model& model, int accessor);

/// One component as glTF 2.0 section 3.6.2.2 turns it into a float.
float toFloat(const unsigned char* bytes, int component, bool normalized);

/// An accessor of N components an element, of any component type.
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

/// An accessor of whole numbers, each below `limit`.
std::vector<std::uint32_t> readIndices(const tinygltf::Model& model, int accessor, std::size_t limit);

/// A buffer view, which lies in its buffer.
const tinygltf::BufferView& getView(const tinygltf::Model& model, int view);
/// Its bytes.
std::vector<unsigned char> readView(const tinygltf::Model& model, int view);

/// The element of an array of the file; throws for an index outside it. `what` names it in the message.
template <class T>
const T& at(const std::vector<T>& items, int index, const char* what) {
    if (index < 0 || static_cast<std::size_t>(index) >= items.size()) {
        throw std::runtime_error(std::string("no such ") + what + ": " + std::to_string(index));
    }
    return items[static_cast<std::size_t>(index)];
}

}  // namespace gltf
