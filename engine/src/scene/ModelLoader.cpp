// Model files as trees of nodes: read once per engine run, instantiated any number of times. Called while worlds and
// prefabs are loaded.
#include "scene/ModelLoader.h"

#include <algorithm>
#include <map>

#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/text/Log.h"
#include "scene/GltfFile.h"
#include "scene/GltfMesh.h"
#include "text/RuntimeRoot.h"

namespace {

constexpr int DEPTH_LIMIT = 128;  // of a file's node tree

std::map<jString, std::shared_ptr<const Model>>& getCache() {
    static std::map<jString, std::shared_ptr<const Model>> cache;
    return cache;
}

/// A node's local transform, in the file's axes.
dmat4 readTransform(const tinygltf::Node& node) {
    const std::vector<double>&m = node.matrix, &t = node.translation, &r = node.rotation, &s = node.scale;
    if (m.size() == 16) return {{m[0], m[1], m[2]}, {m[4], m[5], m[6]}, {m[8], m[9], m[10]}, {m[12], m[13], m[14]}};
    const dvec3 translation = t.size() == 3 ? dvec3(t[0], t[1], t[2]) : dvec3();
    const dquat rotation = r.size() == 4 ? dquat(r[0], r[1], r[2], r[3]).normalize() : dquat();
    const dvec3 scaling = s.size() == 3 ? dvec3(s[0], s[1], s[2]) : dvec3(1.0, 1.0, 1.0);
    return composeTransform(translation, rotation, scaling);
}

dvec3 turned(const dvec3& v) {
    return {v.x, -v.z, v.y};
}

/// The same transform between Z-up frames: C M C^-1 with C the rotation of the axes.
dmat4 turned(const dmat4& m) {
    return {turned(m.x), -turned(m.z), turned(m.y), turned(m.t)};
}

/// Builds the node tree of one file. Every node may have only one parent, which excludes cycles.
class TreeBuilder {
public:
    TreeBuilder(const tinygltf::Model& file, gltf::MeshBuilder& meshes)
        : m_file(file), m_meshes(meshes), m_used(file.nodes.size()) {}

    std::vector<ModelNode> makeRoots() {
        std::vector<ModelNode> roots;
        for (const int index : findRoots()) roots.push_back(makeNode(index, 1));
        return roots;
    }

private:
    // The nodes of the file's scene; without scenes, the nodes without a parent.
    std::vector<int> findRoots() const {
        if (!m_file.scenes.empty()) return gltf::at(m_file.scenes, std::max(m_file.defaultScene, 0), "scene").nodes;
        std::vector<bool> child(m_file.nodes.size());
        for (const tinygltf::Node& node : m_file.nodes) {
            for (const int index : node.children) {
                gltf::at(m_file.nodes, index, "node");
                child[static_cast<std::size_t>(index)] = true;
            }
        }
        std::vector<int> roots;
        for (std::size_t i = 0; i < child.size(); ++i) {
            if (!child[i]) roots.push_back(static_cast<int>(i));
        }
        return roots;
    }

    ModelNode makeNode(int index, int depth) {
        const tinygltf::Node& from = gltf::at(m_file.nodes, index, "node");
        if (m_used[static_cast<std::size_t>(index)]) throw std::runtime_error("a node that hangs in two places");
        if (depth > DEPTH_LIMIT) throw std::runtime_error("nodes nested too deeply");
        m_used[static_cast<std::size_t>(index)] = true;
        ModelNode node;
        node.name = from.name;
        node.transform = turned(readTransform(from));
        if (!isFinite(node.transform)) throw std::runtime_error("a node with a transform that is not finite");
        if (from.mesh >= 0) node.mesh = m_meshes.getMesh(from.mesh);
        node.children.reserve(from.children.size());
        for (const int child : from.children) node.children.push_back(makeNode(child, depth + 1));
        return node;
    }

    const tinygltf::Model& m_file;
    gltf::MeshBuilder& m_meshes;
    std::vector<bool> m_used;
};

std::shared_ptr<const Model> readModel(const jString& file) {
    tinygltf::Model data;
    const std::size_t start = gltf::readFile(file, data);
    gltf::MeshBuilder meshes(data, file, start);
    auto model = std::make_shared<Model>();
    model->nodes = TreeBuilder(data, meshes).makeRoots();
    if (meshes.getSkipped() > 0) {
        jLog::warning("%s: %d primitives that are no triangles left out", file.c_str(), meshes.getSkipped());
    }
    if (meshes.getDropped() > 0) {
        jLog::warning("%s: %d triangles without an area left out", file.c_str(), meshes.getDropped());
    }
    return model;
}

void instantiateNode(const ModelNode& from, Node& parent) {
    std::unique_ptr<Node> node = from.mesh ? std::make_unique<ObjectMeshStatic>(from.mesh) : std::make_unique<Node>();
    node->setName(from.name);
    node->setTransform(from.transform);
    for (const ModelNode& child : from.children) instantiateNode(child, *node);
    parent.addChild(std::move(node));
}

/// Messages of the libraries may have several lines; a log entry has one.
jString oneLine(jString text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ';');
    return text;
}

}  // namespace

std::shared_ptr<const Model> loadModel(const jString& path) {
    const jString file = resolvePath(path);
    const auto known = getCache().find(file);
    if (known != getCache().end()) return known->second;
    try {
        if (file.empty()) throw std::runtime_error("lies outside the runtime root");
        return getCache()[file] = readModel(file);
    } catch (const std::exception& problem) {
        jLog::error("%s: model refused: %s", path.c_str(), oneLine(problem.what()).c_str());
        return nullptr;
    }
}

void instantiateModel(const Model& model, Node& parent) {
    for (const ModelNode& node : model.nodes) instantiateNode(node, parent);
}

void clearModelCache() {
    getCache().clear();
}
