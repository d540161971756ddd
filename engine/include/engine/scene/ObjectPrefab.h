// A piece of scene in a file of its own.
#pragma once

#include "engine/Api.h"
#include "engine/scene/Object.h"

struct PrefabChain;

/// A node whose content comes from a `.prefab` file and hangs directly under it:
///
///     { "node": { "mesh": "ship.glb", "body": { "kind": "static", "shapes": [ … ] }, "children": [ … ] } }
///
/// Files are read once for each engine and kept. A file that includes itself, at whatever depth, fails as a whole.
class ENGINE_API ObjectPrefab final : public Object {
public:
    static constexpr int LOADED = 100;

    ObjectPrefab() = default;
    /// Loads the file; `isLoaded` tells whether that went well. A failed prefab has no content.
    explicit ObjectPrefab(const jString& path);
    ~ObjectPrefab() override;
    /// The content of a file under the runtime root, from the same store. The engine owns it; null, with one log line,
    /// when it cannot be read.
    static const Package* openFile(const jString& path);

    int getType() const override { return PREFAB; }
    const jString& getPath() const { return m_path; }
    bool isLoaded() const { return m_status == LOADED; }
    int getStatus() const { return m_status; }
    /// The node that the content hangs under: this one.
    Node* getRoot() { return this; }
    /// This node and everything below, depth first. Rebuilt after the tree below changed.
    const jVector<Node*>& getNodes() const;
    /// The objects below (not this one), nested prefabs' included, depth first.
    const jVector<Object*>& getObjects() const;
    /// Gives the prefab the body that its root had. Content hangs under the prefab itself, so the body is there
    /// already.
    void moveBodyFromRoot() {}
    /// Drops content and body; the prefab is then not loaded.
    void release();

    /// Box of all content with surfaces, in this prefab's frame.
    BoundBox getBoundBox() const override;

private:
    friend class Node;
    friend class NodeLoader;

    /// Loads the content as the file at the end of the chain.
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
