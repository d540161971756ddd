// A part of a scene in its own file.
#pragma once

#include "engine/Api.h"
#include "engine/scene/Object.h"

struct PrefabChain;

/// A node whose content is read from a `.prefab` file; the content's nodes are its children:
///
///     { "node": { "mesh": "ship.glb", "body": { "kind": "static", "shapes": [ … ] }, "children": [ … ] } }
///
/// Files are read once per engine and kept. A file that includes itself, directly or indirectly, fails completely.
class ENGINE_API ObjectPrefab final : public Object {
public:
    static constexpr int LOADED = 100;

    ObjectPrefab() = default;
    /// Loads the file; `isLoaded` reports success. A failed prefab has no content.
    explicit ObjectPrefab(const jString& path);
    ~ObjectPrefab() override;
    /// The content of a file below the runtime root, from the same cache. The engine owns it; null, with one log line,
    /// when it cannot be read.
    static const Package* openFile(const jString& path);

    int getType() const override { return PREFAB; }
    const jString& getPath() const { return m_path; }
    bool isLoaded() const { return m_status == LOADED; }
    int getStatus() const { return m_status; }
    /// The parent of the content's nodes: this node.
    Node* getRoot() { return this; }
    /// This node and all its descendants, depth first. Rebuilt after a change of the subtree.
    const jVector<Node*>& getNodes() const;
    /// The objects among its descendants, including those of nested prefabs, depth first.
    const jVector<Object*>& getObjects() const;
    /// Transfers the root's body to the prefab. No effect: the prefab itself is the root and has the body.
    void moveBodyFromRoot() {}
    /// Removes content and body; the prefab is then not loaded.
    void release();

    /// Bounding box of all content with surfaces, in this prefab's frame.
    BoundBox getBoundBox() const override;

private:
    friend class Node;
    friend class NodeLoader;

    /// Loads the last file of the chain.
    void load(const PrefabChain& chain);
    void listBelow(const Node& node) const;

    jString m_path;
    int m_status = 0;
    mutable bool m_lists_dirty = true;
    mutable bool m_box_dirty = true;
    mutable BoundBox m_box;
    mutable jVector<Node*> m_nodes;
    mutable jVector<Object*> m_objects;
};
