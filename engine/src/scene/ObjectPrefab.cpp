// Prefabs: loading of their files; lists and bounding box of their content, computed on demand after a change.
#include "engine/scene/ObjectPrefab.h"

#include "engine/physics/Body.h"
#include "engine/text/Log.h"
#include "scene/NodeLoader.h"
#include "scene/WorldState.h"
#include "text/RuntimeRoot.h"

namespace {

constexpr int MAX_DEPTH = 32;  // nesting of files

/// The path that identifies a file; empty, with one log line, when it does not exist.
jString findFile(const jString& path) {
    if (!WorldState::running) {
        jLog::error("%s: no engine to load it", path.c_str());
        return {};
    }
    const jString absolute_path = path.empty() ? jString() : resolvePath(path);
    if (absolute_path.empty()) jLog::error("\"%s\": not a file under the runtime root", path.c_str());
    return absolute_path;
}

const Package* readFile(const jString& path, const jString& absolute_path) {
    auto& files = WorldState::running->prefab_files;
    const auto known = files.find(absolute_path);
    if (known != files.end()) return &known->second;
    Package package;
    if (!mjl::open(path, package, true)) return nullptr;
    return &files.emplace(absolute_path, std::move(package)).first->second;
}

jString describe(const PrefabChain& chain) {
    if (!chain.outer) return chain.path;
    return describe(*chain.outer) + " -> " + chain.path;
}

/// Whether the file can be loaded in this chain. Otherwise false, with one log line, and the outermost file is broken.
bool checkChain(const PrefabChain& chain) {
    int depth = 1;
    const PrefabChain* outermost = &chain;
    bool repeats = false;
    for (const PrefabChain* at = chain.outer; at; at = at->outer) {
        repeats = repeats || at->absolute_path == chain.absolute_path;
        outermost = at;
        ++depth;
    }
    if (!repeats && depth <= MAX_DEPTH) return true;
    chain.shared->broken = true;
    jLog::error("%s: %s: %s", outermost->path.c_str(), repeats ? "a prefab includes itself" : "prefabs nested too deep",
                describe(chain).c_str());
    return false;
}

}  // namespace

ObjectPrefab::ObjectPrefab(const jString& path) : m_path(path) {
    const jString absolute_path = findFile(path);
    if (absolute_path.empty()) return;
    PrefabChain::Shared shared;
    load(PrefabChain{path, absolute_path, nullptr, &shared});
}

const Package* ObjectPrefab::openFile(const jString& path) {
    const jString absolute_path = findFile(path);
    return absolute_path.empty() ? nullptr : readFile(path, absolute_path);
}

ObjectPrefab::~ObjectPrefab() = default;

void ObjectPrefab::load(const PrefabChain& chain) {
    m_path = chain.path;
    if (!checkChain(chain)) return;
    const Package* const file = readFile(chain.path, chain.absolute_path);
    if (!file) return;
    static constexpr const char* KEYS[] = {"node"};
    file->warnUnknownKeys(KEYS);
    const Item* const item = file->getItem(KEYS[0]);
    const Package* const node = item ? item->getPackage() : nullptr;
    if (!node) {
        jLog::error("%s: no \"node\" in it", m_path.c_str());
        return;
    }
    NodeLoader(m_path, folderOf(m_path), &chain).loadContent(*node, *this);
    if (chain.shared->broken)
        release();
    else
        m_status = LOADED;
}

void ObjectPrefab::release() {
    while (getNumChildren() > 0) takeChild(getChild(getNumChildren() - 1));
    PhysicsWorld::objectLeft(*this);
    m_body.reset();
    m_status = 0;
}

void ObjectPrefab::listBelow(const Node& node) const {
    for (int i = 0; i < node.getNumChildren(); ++i) {
        Node* const child = node.getChild(i);
        m_nodes.append(child);
        if (Object* const object = child->asObject()) m_objects.append(object);
        listBelow(*child);
    }
}

const jVector<Node*>& ObjectPrefab::getNodes() const {
    if (m_lists_dirty) {
        m_nodes.clear();
        m_objects.clear();
        m_nodes.append(const_cast<ObjectPrefab*>(this));
        listBelow(*this);
        m_lists_dirty = false;
    }
    return m_nodes;
}

const jVector<Object*>& ObjectPrefab::getObjects() const {
    getNodes();
    return m_objects;
}

namespace {

/// Expands the box by the content of the descendants; `frame` maps the node's own frame to the box's.
void addContent(const Node& node, const dmat4& frame, BoundBox& box) {
    for (int i = 0; i < node.getNumChildren(); ++i) {
        Node& child = *node.getChild(i);
        const dmat4 child_frame = frame * child.getTransform();
        const Object* const object = child.asObject();
        const bool is_prefab = child.getType() == Node::PREFAB;
        if (is_prefab || (object && object->getNumSurfaces() > 0)) box.expand(child_frame * child.getBoundBox());
        if (!is_prefab) addContent(child, child_frame, box);
    }
}

}  // namespace

BoundBox ObjectPrefab::getBoundBox() const {
    if (m_box_dirty) {
        m_box = {};
        addContent(*this, dmat4(), m_box);
        m_box_dirty = false;
    }
    return m_box;
}
