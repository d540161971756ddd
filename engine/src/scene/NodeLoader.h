// From the description of a node in a scene file to the node.
#pragma once

#include <memory>

#include "engine/scene/Node.h"
#include "scene/DataReader.h"

class ObjectPrefab;
struct BodySettings;
struct LightSettings;
struct ParticleSettings;

/// The prefab files that are being loaded, each within the one before, and what they share.
struct PrefabChain {
    struct Shared {
        int nodes = 0;        ///< made so far
        bool broken = false;  ///< the outermost file fails as a whole; its line is logged
    };

    jString path;           ///< under the root
    jString absolute_path;  ///< what tells one file from another
    const PrefabChain* outer = nullptr;
    Shared* shared = nullptr;
};

/// The folder of a file under the root, "" for one without.
jString folderOf(const jString& path);

/// Makes nodes of one file.
class NodeLoader {
public:
    /// `file` names the origin in messages; paths in it are relative to `folder`. `chain` is null outside prefab files.
    NodeLoader(const jString& file, const jString& folder, const PrefabChain* chain = nullptr)
        : m_file(file), m_folder(folder), m_chain(chain) {}

    /// A node with its children; null, with one log line, when it cannot be made.
    std::unique_ptr<Node> load(const Package& package) const;
    /// Hangs the content that a prefab file describes under the prefab.
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
    /// The value of that key as a path under the root; empty when it is missing or leads out of the root.
    jString getPath(const DataReader& in, const char* key) const;

    const jString m_file;
    const jString m_folder;
    const PrefabChain* const m_chain;
};

// What the types' own keys say, each over its defaults.
void readParticles(const DataReader& in, ParticleSettings& settings);
void readLight(const DataReader& in, LightSettings& settings);
void readBody(const DataReader& in, BodySettings& settings);
