// Makes nodes from their descriptions in scene files.
#pragma once

#include <memory>

#include "engine/scene/Node.h"
#include "scene/DataReader.h"

class ObjectPrefab;
struct BodySettings;
struct LightSettings;
struct ParticleSettings;

/// The prefab files being loaded, each nested in the previous one, and their shared state.
struct PrefabChain {
    struct Shared {
        int nodes = 0;        ///< made so far
        bool broken = false;  ///< the outermost file fails completely; its log line is written
    };

    jString path;           ///< below the root
    jString absolute_path;  ///< identifies the file
    const PrefabChain* outer = nullptr;
    Shared* shared = nullptr;
};

/// The folder of a file below the root, "" for a file in the root itself.
jString folderOf(const jString& path);

/// Makes the nodes of one file.
class NodeLoader {
public:
    /// `file` names the origin in messages; paths in it are relative to `folder`. `chain` is null outside prefab files.
    NodeLoader(const jString& file, const jString& folder, const PrefabChain* chain = nullptr)
        : m_file(file), m_folder(folder), m_chain(chain) {}

    /// A node with its children; null, with one log line, when it cannot be made.
    std::unique_ptr<Node> load(const Package& package) const;
    /// Adds the content of a prefab file as children of the prefab.
    void loadContent(const Package& package, ObjectPrefab& prefab) const;

private:
    std::unique_ptr<Node> create(const DataReader& in) const;
    std::unique_ptr<Node> createTyped(const DataReader& in) const;
    std::unique_ptr<Node> createPrefab(const DataReader& in) const;
    std::unique_ptr<Node> createParticles(const DataReader& in) const;
    std::unique_ptr<Node> createDecal(const DataReader& in) const;
    std::unique_ptr<Node> createLight(const DataReader& in) const;
    std::unique_ptr<Node> createText(const DataReader& in) const;
    std::unique_ptr<Node> createTrigger(const DataReader& in) const;
    std::unique_ptr<Node> createTerrain(const DataReader& in) const;
    std::unique_ptr<Node> createOcean(const DataReader& in) const;

    void fill(const DataReader& in, Node& node) const;
    void fillIdentity(const DataReader& in, Node& node) const;
    static void clearColliders(Node& node);
    void fillContent(const DataReader& in, Node& node) const;
    void place(const DataReader& in, Node& node) const;
    void addBody(const DataReader& in, Node& node) const;
    bool isBroken() const { return m_chain && m_chain->shared->broken; }
    /// The value of a key as a path below the root; empty when it is missing or outside the root.
    jString getPath(const DataReader& in, const char* key) const;

    const jString m_file;
    const jString m_folder;
    const PrefabChain* const m_chain;
};

/// Reads the keys of a node type over their defaults.
void readParticles(const DataReader& in, ParticleSettings& settings);
void readLight(const DataReader& in, LightSettings& settings);
void readBody(const DataReader& in, BodySettings& settings);
