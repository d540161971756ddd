// Reading glTF files with every offset, count and path checked; called when a model is loaded.
#include "scene/GltfFile.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace gltf {
namespace {

constexpr std::uintmax_t SIZE_LIMIT = 64u << 20;  // bytes, of the file and of each referenced file
constexpr int DEPTH_LIMIT = 64;                   // nesting of the text

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what);
}

/// The folder that a model may read buffers and images from.
struct Folder {
    fs::path base;     // canonical
    std::string left;  // the first requested path outside the folder
};

/// tinygltf searches the base folder, then the working directory, which has no files of the model.
bool isInside(Folder& folder, const std::string& file) {
    const std::string prefix = folder.base.string() + "/";
    if (file.compare(0, prefix.size(), prefix) != 0) return false;
    std::error_code error;
    const fs::path real = fs::weakly_canonical(file, error);
    const fs::path below = real.lexically_relative(folder.base);
    if (!error && !below.empty() && *below.begin() != "..") return true;
    if (folder.left.empty()) folder.left = file.substr(prefix.size());
    return false;
}

bool readWhole(const fs::path& file, std::vector<unsigned char>& bytes, std::string& problem) {
    std::error_code error;
    const std::uintmax_t size = fs::is_regular_file(file, error) ? fs::file_size(file, error) : 0;
    if (error || size == 0) {
        problem = "no such file, or an empty one";
        return false;
    }
    if (size > SIZE_LIMIT) {
        problem = "larger than 64 MiB";
        return false;
    }
    bytes.resize(size);
    std::ifstream stream(file, std::ios::binary);
    if (stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size))) return true;
    problem = "cannot be read";
    return false;
}

tinygltf::FsCallbacks makeCallbacks(Folder& folder) {
    tinygltf::FsCallbacks calls;
    calls.FileExists = [](const std::string& file, void* user) {
        std::error_code error;
        return isInside(*static_cast<Folder*>(user), file) && fs::is_regular_file(file, error);
    };
    calls.ExpandFilePath = [](const std::string& file, void*) { return file; };
    calls.ReadWholeFile = [](std::vector<unsigned char>* bytes, std::string* problem, const std::string& file,
                             void* user) {
        return isInside(*static_cast<Folder*>(user), file) && readWhole(file, *bytes, *problem);
    };
    calls.WriteWholeFile = nullptr;
    calls.user_data = &folder;
    return calls;
}

/// Keeps the encoded bytes. Those in a buffer view are read later with bounds checks, which tinygltf lacks.
bool keepImage(tinygltf::Image* image, const int, std::string*, std::string*, int, int, const unsigned char* bytes,
               int size, void*) {
    if (image->bufferView < 0) image->image.assign(bytes, bytes + size);
    return true;
}

/// tinygltf parses nested values recursively: unlimited nesting would exhaust the stack.
void checkDepth(const unsigned char* text, std::size_t size) {
    int depth = 0;
    bool quoted = false;
    for (std::size_t i = 0; i < size; ++i) {
        const unsigned char c = text[i];
        if (quoted) {
            if (c == '\\') ++i;
            if (c == '"') quoted = false;
        } else if (c == '"') {
            quoted = true;
        } else if (c == '{' || c == '[') {
            if (++depth > DEPTH_LIMIT) fail("nested too deeply");
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
}

void checkExtensions(const tinygltf::Model& model) {
    static const char* const known[] = {"KHR_mesh_quantization", "KHR_materials_emissive_strength",
                                        "KHR_materials_unlit", "KHR_lights_punctual"};
    for (const std::string& name : model.extensionsRequired) {
        if (std::find(std::begin(known), std::end(known), name) == std::end(known)) fail("needs the extension " + name);
    }
}

const tinygltf::Buffer& bufferOf(const tinygltf::Model& model, const tinygltf::BufferView& view) {
    const tinygltf::Buffer& buffer = at(model.buffers, view.buffer, "buffer");
    const std::size_t size = buffer.data.size();
    if (view.byteOffset > size || view.byteLength > size - view.byteOffset) fail("a buffer view beyond its buffer");
    return buffer;
}

template <class T>
T load(const unsigned char* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

}  // namespace

std::size_t readFile(const jString& path, tinygltf::Model& model) {
    std::error_code error;
    Folder folder{fs::canonical(fs::path(std::string(path)).parent_path(), error), {}};
    std::vector<unsigned char> bytes;
    std::string problem, warnings;
    if (error || !readWhole(std::string(path), bytes, problem)) fail(error ? "no such folder" : problem);

    tinygltf::TinyGLTF reader;
    reader.SetFsCallbacks(makeCallbacks(folder));
    reader.SetImageLoader(keepImage, nullptr);
    const unsigned size = static_cast<unsigned>(bytes.size());
    const bool binary = size >= 20 && std::memcmp(bytes.data(), "glTF", 4) == 0;
    bool good;
    std::size_t text = 0;
    if (binary) {
        text = load<std::uint32_t>(bytes.data() + 12);
        checkDepth(bytes.data() + 20, std::min<std::size_t>(text, size - 20));
        good = reader.LoadBinaryFromMemory(&model, &problem, &warnings, bytes.data(), size, folder.base.string());
    } else {
        checkDepth(bytes.data(), size);
        good = reader.LoadASCIIFromString(&model, &problem, &warnings, reinterpret_cast<const char*>(bytes.data()),
                                          size, folder.base.string());
    }
    if (!folder.left.empty()) fail("refers to a file outside its folder: " + folder.left);
    if (!good) fail(problem.empty() ? "not a sound glTF file" : problem);
    checkExtensions(model);
    // The text is followed by a chunk's length and type, then by the first buffer, unless that buffer is a file.
    return binary && !model.buffers.empty() && model.buffers[0].uri.empty() ? 20 + text + 8 : 0;
}

Elements getElements(const tinygltf::Model& model, int index) {
    const tinygltf::Accessor& accessor = at(model.accessors, index, "accessor");
    if (accessor.sparse.isSparse) fail("sparse accessors are not supported");
    const tinygltf::BufferView& view = at(model.bufferViews, accessor.bufferView, "buffer view");
    const tinygltf::Buffer& buffer = bufferOf(model, view);

    Elements elements;
    elements.count = accessor.count;
    elements.component = accessor.componentType;
    elements.width = tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(accessor.type));
    elements.normalized = accessor.normalized;
    const int component = tinygltf::GetComponentSizeInBytes(static_cast<std::uint32_t>(accessor.componentType));
    if (component <= 0 || elements.width <= 0 || accessor.count == 0) fail("an accessor of no known type, or empty");
    const std::size_t element = static_cast<std::size_t>(component) * static_cast<std::size_t>(elements.width);
    elements.stride = view.byteStride != 0 ? view.byteStride : element;
    const std::size_t room = view.byteLength;
    if (accessor.byteOffset > room || element > room - accessor.byteOffset ||
        (accessor.count - 1) > (room - accessor.byteOffset - element) / elements.stride) {
        fail("an accessor beyond its buffer view");
    }
    elements.data = buffer.data.data() + view.byteOffset + accessor.byteOffset;
    return elements;
}

float toFloat(const unsigned char* bytes, int component, bool normalized) {
    switch (component) {
        case TINYGLTF_COMPONENT_TYPE_FLOAT:
            return load<float>(bytes);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return normalized ? bytes[0] / 255.0f : bytes[0];
        case TINYGLTF_COMPONENT_TYPE_BYTE: {
            const float value = load<std::int8_t>(bytes);
            return normalized ? std::max(value / 127.0f, -1.0f) : value;
        }
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: {
            const float value = load<std::uint16_t>(bytes);
            return normalized ? value / 65535.0f : value;
        }
        case TINYGLTF_COMPONENT_TYPE_SHORT: {
            const float value = load<std::int16_t>(bytes);
            return normalized ? std::max(value / 32767.0f, -1.0f) : value;
        }
        default:
            fail("an attribute of an unknown component type");
    }
}

std::vector<std::uint32_t> readIndices(const tinygltf::Model& model, int accessor, std::size_t limit) {
    const Elements elements = getElements(model, accessor);
    if (elements.width != 1) fail("indices of the wrong type");
    std::vector<std::uint32_t> out(elements.count);
    for (std::size_t i = 0; i < elements.count; ++i) {
        const unsigned char* const bytes = elements.data + i * elements.stride;
        switch (elements.component) {
            case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
                out[i] = bytes[0];
                break;
            case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
                out[i] = load<std::uint16_t>(bytes);
                break;
            case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
                out[i] = load<std::uint32_t>(bytes);
                break;
            default:
                fail("indices of an unknown component type");
        }
        if (out[i] >= limit) fail("an index beyond its vertices");
    }
    return out;
}

const tinygltf::BufferView& getView(const tinygltf::Model& model, int index) {
    const tinygltf::BufferView& view = at(model.bufferViews, index, "buffer view");
    bufferOf(model, view);
    return view;
}

std::vector<unsigned char> readView(const tinygltf::Model& model, int index) {
    const tinygltf::BufferView& view = getView(model, index);
    const unsigned char* const first = bufferOf(model, view).data.data() + view.byteOffset;
    return {first, first + view.byteLength};
}

}  // namespace gltf
