// The world: lifetime, lookups, world files and the step of a frame.
#include "engine/scene/World.h"

#include "engine/text/Log.h"
#include "scene/DataReader.h"
#include "scene/NodeLoader.h"
#include "scene/WorldState.h"

World::World() : m_state(std::make_unique<WorldState>()) {
    m_state->root.m_world = this;
    m_state->physics = std::make_unique<PhysicsWorld>(m_state->spatial);
}

World::~World() {
    m_state->closing = true;
    Node& root = m_state->root;
    while (root.getNumChildren() > 0) root.takeChild(root.getChild(root.getNumChildren() - 1));
}

Node* World::getRoot() const {
    return &m_state->root;
}

Node* World::addChild(Node* node) {
    if (!node) return nullptr;
    if (node->getParent()) return addChild(node->getParent()->takeChild(node));
    return addChild(std::unique_ptr<Node>(node));
}

Node* World::addChild(std::unique_ptr<Node> node) {
    return m_state->root.addChild(std::move(node));
}

void World::removeNode(Node* node) {
    if (node && node->getWorld() == this && node->getParent()) node->getParent()->takeChild(node);
}

Node* World::getNodeByName(const jString& name) const {
    return m_state->names.getFirst(name);
}
Node* World::getNodeByTag(const jString& tag) const {
    return m_state->tags.getFirst(tag);
}
int World::getNumNodes() const {
    return m_state->num_nodes;
}

namespace {

void listBelow(const Node& node, jVector<Node*>& nodes) {
    for (int i = 0; i < node.getNumChildren(); ++i) {
        nodes.append(node.getChild(i));
        listBelow(*node.getChild(i), nodes);
    }
}

void readShare(const DataReader& in, const char* key, float& share) {
    if (in.read(key, share)) share = std::clamp(share, 0.0f, 1.0f);
}

void readEnvironment(const DataReader& in, Environment& environment) {
    dvec3 date;
    if (in.read("date", date)) {
        environment.year = static_cast<int>(std::clamp(date.x, 1.0, 9999.0));
        environment.month = static_cast<int>(std::clamp(date.y, 1.0, 12.0));
        environment.day = static_cast<int>(std::clamp(date.z, 1.0, 31.0));
    }
    if (in.read("time_of_day", environment.time_of_day)) {
        environment.time_of_day = std::clamp(environment.time_of_day, 0.0f, 24.0f);
    }
    in.read("wind", environment.wind);
    readShare(in, "wetness", environment.wetness);
    readShare(in, "snow_cover", environment.snow);
    readShare(in, "cloudiness", environment.cloudiness);
    if (const Package* camera = in.getPackage("camera")) {
        const DataReader camera_in(*camera, in.getFile());
        camera_in.read("geodetic", environment.camera_geodetic);
        camera_in.read("wgs_hpr", environment.camera_wgs_hpr);
        camera_in.warnUnknownKeys();
    }
    in.warnUnknownKeys();
}

}  // namespace

jVector<Node*> World::getNodes() const {
    jVector<Node*> nodes;
    nodes.reserve(getNumNodes());
    listBelow(m_state->root, nodes);
    return nodes;
}

bool World::getIntersection(const dvec3& from, const dvec3& to, jVector<Node*>& nodes) const {
    nodes.clear();
    m_state->spatial.query(from, to, nodes);
    return !nodes.empty();
}

Physics* World::getPhysics() const {
    return m_state->physics.get();
}
const Environment& World::getEnvironment() const {
    return m_state->environment;
}
Environment& World::getEnvironment() {
    return m_state->environment;
}
bool World::isEnabled() const {
    return m_state->enabled;
}
void World::setEnabled(bool enabled) {
    m_state->enabled = enabled;
}

bool World::load(const jString& path) {
    Package package;
    if (!mjl::open(path, package, true)) return false;
    const DataReader in(package, path);
    std::vector<std::unique_ptr<Node>> nodes;
    for (const Item& item : in.getArray("nodes")) {
        const Package* const node = in.asPackage(item, "a node");
        if (!node) continue;
        if (auto made = NodeLoader(path, folderOf(path)).load(*node)) nodes.push_back(std::move(made));
    }
    if (const Package* environment = in.getPackage("environment")) {
        readEnvironment(DataReader(*environment, path), m_state->environment);
    }
    in.warnUnknownKeys();
    for (auto& node : nodes) addChild(std::move(node));
    return true;
}

std::unique_ptr<Node> World::LoadNode(const Package& node, const jString& base) {
    return NodeLoader(node.getPath().empty() ? base : node.getPath(), base).load(node);
}

void World::watchChanges() {
    m_state->watched = true;
    for (Node* node : getNodes()) m_state->touch(*node);
}

void World::takeChanges(WorldChanges& changes) {
    changes.changed.clear();
    changes.left.clear();
    std::swap(changes, m_state->changes);
    for (Node* node : changes.changed) node->m_change_slot = -1;
}

void World::step(double dt) {
    vec3& wind = getEnvironment().wind;
    if (!isFinite(dvec3(wind))) {
        jLog::error("environment: a wind that is not finite is taken for a calm");
        wind = {};
    }
    m_state->physics->step(dt);
    m_state->stepParticles(static_cast<float>(dt));
    m_state->stepTriggers();
}
