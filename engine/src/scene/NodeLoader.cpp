// Makes nodes from scene files: worlds, prefabs and single descriptions.
#include "scene/NodeLoader.h"

#include <filesystem>

#include "engine/globe/EllipsoidModel.h"
#include "engine/physics/Body.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/ObjectParticles.h"
#include "engine/scene/ObjectPrefab.h"
#include "engine/scene/ObjectTerrain.h"
#include "engine/scene/SceneNodes.h"
#include "text/RuntimeRoot.h"

namespace {

constexpr int MAX_PREFAB_NODES = 100000;  // per outermost file: far more than any ship has, far below the memory limit

/// The part of the description for its type; empty when it is missing.
const Package& typePart(const DataReader& in, const char* key) {
    static const Package empty;
    const Package* const part = in.getPackage(key);
    return part ? *part : empty;
}

jString typeOf(const DataReader& in) {
    jString type = in.has("prefab") ? "prefab" : "node";
    in.read("type", type);
    return type;
}

}  // namespace

jString folderOf(const jString& path) {
    return std::filesystem::path(std::string(path)).parent_path().string();
}

jString NodeLoader::getPath(const DataReader& in, const char* key) const {
    jString text;
    if (!in.read(key, text) || text.empty()) return {};
    const std::filesystem::path given{std::string(text)};
    const bool from_root = text.starts_with("data/") || given.is_absolute();
    const jString path = (from_root ? given : std::string(m_folder) / given).lexically_normal().string();
    if (!resolvePath(path).empty()) return path;
    in.complain(*in.getItem(key), "\"" + text + "\" leads out of the runtime root");
    return {};
}

std::unique_ptr<Node> NodeLoader::load(const Package& package) const {
    const DataReader in(package, m_file);
    std::unique_ptr<Node> node = create(in);
    if (!node) return nullptr;
    fill(in, *node);
    if (in.has("body")) addBody(in, *node);
    in.warnUnknownKeys();
    return isBroken() ? nullptr : std::move(node);
}

void NodeLoader::loadContent(const Package& package, ObjectPrefab& prefab) const {
    const DataReader in(package, m_file);
    if (typeOf(in) == "node") {
        fillIdentity(in, prefab);
        fillContent(in, prefab);
    } else if (std::unique_ptr<Node> top = create(in)) {
        fill(in, *prefab.addChild(std::move(top)));
    }
    if (in.has("body") && !isBroken()) addBody(in, prefab);
    in.warnUnknownKeys();
}

std::unique_ptr<Node> NodeLoader::create(const DataReader& in) const {
    if (isBroken()) return nullptr;
    if (m_chain && ++m_chain->shared->nodes > MAX_PREFAB_NODES) {
        m_chain->shared->broken = true;
        in.complain(Item(), "more than " + ToString(MAX_PREFAB_NODES) + " nodes in one prefab");
        return nullptr;
    }
    return createTyped(in);
}

std::unique_ptr<Node> NodeLoader::createTyped(const DataReader& in) const {
    using Maker = std::unique_ptr<Node> (NodeLoader::*)(const DataReader&) const;
    static constexpr std::pair<const char*, Maker> MAKERS[] = {
        {"prefab", &NodeLoader::createPrefab},   {"particles", &NodeLoader::createParticles},
        {"decal", &NodeLoader::createDecal},     {"light", &NodeLoader::createLight},
        {"text", &NodeLoader::createText},       {"trigger", &NodeLoader::createTrigger},
        {"terrain", &NodeLoader::createTerrain}, {"ocean", &NodeLoader::createOcean}};
    const jString type = typeOf(in);
    if (type == "node") return std::make_unique<Node>();
    for (const auto& [name, maker] : MAKERS) {
        if (type == name) return (this->*maker)(in);
    }
    in.complain(*in.getItem("type"), "unknown node type \"" + type + "\"; the node is left out");
    return nullptr;
}

std::unique_ptr<Node> NodeLoader::createPrefab(const DataReader& in) const {
    const jString path = getPath(in, "prefab");
    if (path.empty()) {
        if (!in.has("prefab")) in.complain(*in.getItem("type"), "a prefab node needs \"prefab\", its file");
        return nullptr;
    }
    PrefabChain::Shared own;
    const PrefabChain chain{path, resolvePath(path), m_chain, m_chain ? m_chain->shared : &own};
    auto prefab = std::make_unique<ObjectPrefab>();
    prefab->load(chain);
    if (!prefab->isLoaded()) return nullptr;
    return prefab;
}

std::unique_ptr<Node> NodeLoader::createParticles(const DataReader& in) const {
    const DataReader part(typePart(in, "particles"), m_file);
    ParticleSettings settings;
    readParticles(part, settings);
    settings.texture = getPath(part, "texture");
    auto particles = std::make_unique<ObjectParticles>(settings);
    for (const Item& item : part.getArray("deflectors")) {
        const Package* const deflector = part.asPackage(item, "a deflector");
        if (!deflector) continue;
        dvec3 position, hpr;
        const DataReader deflector_in(*deflector, m_file);
        deflector_in.read("position", position);
        deflector_in.read("hpr", hpr);
        deflector_in.warnUnknownKeys();
        particles->addDeflector(dmat4(dquat::fromEulerZXY(hpr), position));
    }
    part.warnUnknownKeys();
    return particles;
}

std::unique_ptr<Node> NodeLoader::createDecal(const DataReader& in) const {
    const DataReader part(typePart(in, "decal"), m_file);
    float width = 1.0f, height = 1.0f, depth = 10.0f;
    part.read("width", width);
    part.read("height", height);
    part.read("depth", depth);
    const jString texture = getPath(part, "texture");
    part.warnUnknownKeys();
    return std::make_unique<DecalOrtho>(width, height, depth, texture);
}

std::unique_ptr<Node> NodeLoader::createLight(const DataReader& in) const {
    LightSettings settings;
    readLight(DataReader(typePart(in, "light"), m_file), settings);
    return std::make_unique<NodeLight>(settings);
}

std::unique_ptr<Node> NodeLoader::createText(const DataReader& in) const {
    const DataReader part(typePart(in, "text"), m_file);
    jString text;
    float height = 1.0f;
    vec4 color{1.0f, 1.0f, 1.0f, 1.0f};
    part.read("text", text);
    part.read("height", height);
    part.read("color", color);
    part.warnUnknownKeys();
    return std::make_unique<NodeText>(text, height, color);
}

std::unique_ptr<Node> NodeLoader::createTrigger(const DataReader& in) const {
    vec3 size{1.0f, 1.0f, 1.0f};
    const DataReader part(typePart(in, "trigger"), m_file);
    part.read("size", size);
    part.warnUnknownKeys();
    return std::make_unique<NodeTrigger>(size);
}

std::unique_ptr<Node> NodeLoader::createTerrain(const DataReader& in) const {
    const DataReader part(typePart(in, "terrain"), m_file);
    const jString elevation = getPath(part, "elevation");
    if (elevation.empty()) {
        in.complain(*in.getItem("type"), "a terrain needs \"elevation\", a raster");
        return nullptr;
    }
    const jString imagery = getPath(part, "imagery");
    part.warnUnknownKeys();
    auto terrain = std::make_unique<ObjectTerrain>(elevation, imagery);
    if (!terrain->isLoaded()) return nullptr;
    return terrain;
}

std::unique_ptr<Node> NodeLoader::createOcean(const DataReader& in) const {
    const DataReader part(typePart(in, "ocean"), m_file);
    auto ocean = std::make_unique<ObjectOcean>();
    int beaufort = ocean->getBeaufort();
    bool global_wind = ocean->isUseGlobalWind();
    part.read("beaufort", beaufort);
    part.read("global_wind", global_wind);
    part.warnUnknownKeys();
    ocean->setBeaufort(std::clamp(beaufort, 0, 12));
    ocean->setUseGlobalWind(global_wind);
    return ocean;
}

void NodeLoader::fill(const DataReader& in, Node& node) const {
    fillIdentity(in, node);
    place(in, node);
    fillContent(in, node);
}

void NodeLoader::fillIdentity(const DataReader& in, Node& node) const {
    jString name;
    if (in.read("name", name)) node.setName(name);
    for (const Item& tag : in.getArray("tags")) {
        if (tag.getType() == Item::STRING)
            node.addTag(tag.getString());
        else
            in.complain(tag, "a tag must be a text");
    }
    bool flag = true;
    if (in.read("enabled", flag)) node.setEnabled(flag);
    if (in.read("collider", flag)) node.setCollider(flag);
    vec3 size;
    const Item* const sensor = in.getItem("sensor");
    if (sensor && sensor->getType() == Item::ARRAY && in.read("sensor", size)) node.setSensor(true, size);
    if (sensor && sensor->getType() != Item::ARRAY && in.read("sensor", flag)) node.setSensor(flag);
}

void NodeLoader::place(const DataReader& in, Node& node) const {
    dvec3 position, hpr, scale(1.0, 1.0, 1.0), geodetic, wgs_hpr;
    in.read("position", position);
    in.read("hpr", hpr);
    in.read("scale", scale);
    node.setTransform(composeTransform(position, dquat::fromEulerZXY(hpr), scale));
    const bool has_attitude = in.read("wgs_hpr", wgs_hpr);
    if (in.read("geodetic", geodetic)) {
        const EllipsoidModel globe;
        const dvec3 world = globe.toWorld(geodetic);
        node.setWorldTransform(composeTransform(world, globe.fromWgsHPR(world, wgs_hpr), scale));
    } else if (has_attitude) {
        node.setWgsHPR(wgs_hpr);
    }
}

/// The nodes of a model have no description of their own: they take the flag of the node that names the model.
void NodeLoader::clearColliders(Node& node) {
    for (int i = 0; i < node.getNumChildren(); ++i) {
        node.getChild(i)->setCollider(false);
        clearColliders(*node.getChild(i));
    }
}

void NodeLoader::fillContent(const DataReader& in, Node& node) const {
    const jString mesh = getPath(in, "mesh");
    const std::shared_ptr<const Model> model = mesh.empty() ? nullptr : loadModel(mesh);
    if (model) instantiateModel(*model, node);
    if (!node.isCollider()) clearColliders(node);
    for (const Item& item : in.getArray("children")) {
        const Package* const package = in.asPackage(item, "a node");
        if (!package) continue;
        const DataReader child_in(*package, m_file);
        std::unique_ptr<Node> made = create(child_in);
        if (!made) continue;
        // Added first: a child's geodetic position depends on its parent's transform.
        Node& child = *node.addChild(std::move(made));
        fill(child_in, child);
        if (child_in.has("body")) addBody(child_in, child);
        child_in.warnUnknownKeys();
    }
}

void NodeLoader::addBody(const DataReader& in, Node& node) const {
    const Package* const package = in.getPackage("body");
    if (!package) return;
    if (node.getType() != Node::PREFAB) {
        in.complain(*in.getItem("body"), "only a prefab can have a body");
        return;
    }
    BodySettings settings;
    readBody(DataReader(*package, m_file), settings);
    node.asObject()->setBody(settings);
}
