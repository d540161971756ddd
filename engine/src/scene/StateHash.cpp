// The state hash: computed once per frame when a run is recorded or compared.
#include "scene/StateHash.h"

#include "engine/physics/Body.h"
#include "engine/scene/Object.h"
#include "engine/scene/World.h"

namespace {

/// FNV-1a, 64 bits (Fowler, Noll, Vo; IETF draft-eastlake-fnv).
class Hash {
public:
    void add(const void* bytes, std::size_t size) {
        const auto* at = static_cast<const unsigned char*>(bytes);
        for (std::size_t i = 0; i < size; ++i) m_value = (m_value ^ at[i]) * 0x100000001B3ULL;
    }
    void add(double x, double y, double z) {
        const double values[] = {x, y, z};
        add(values, sizeof values);
    }
    void add(const dvec3& v) { add(v.x, v.y, v.z); }
    void add(const vec3& v) { add(v.x, v.y, v.z); }
    void add(const dmat4& m) {
        for (const dvec3& column : {m.x, m.y, m.z, m.t}) add(column);
    }
    std::uint64_t getValue() const { return m_value; }

private:
    std::uint64_t m_value = 0xCBF29CE484222325ULL;
};

void addNode(Node& node, Hash& hash) {
    const unsigned char flags[] = {node.isEnabled(), node.isObject()};
    hash.add(node.getName().c_str(), node.getName().size() + 1);
    hash.add(node.getTransform());
    hash.add(flags, sizeof flags);
    const Object* const object = node.asObject();
    if (const BodyRigid* const body = object ? object->getBodyRigid() : nullptr) {
        hash.add(body->getTransform());
        hash.add(body->getLinearVelocity());
        hash.add(body->getAngularVelocity());
    }
    for (int i = 0; i < node.getNumChildren(); ++i) addNode(*node.getChild(i), hash);
}

}  // namespace

std::uint64_t hashWorld(const World& world) {
    Hash hash;
    addNode(*world.getRoot(), hash);
    return hash.getValue();
}
