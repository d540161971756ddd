// Nodes with surfaces, materials or a physics body.
#pragma once

#include <memory>

#include "engine/Api.h"
#include "engine/physics/Body.h"
#include "engine/scene/Material.h"
#include "engine/scene/Node.h"

class Body;
class BodyRigid;
class PhysicsWorld;
struct BodySettings;
struct MeshCollider;

/// A node that can have surfaces and a body. Owns its body.
class ENGINE_API Object : public Node {
public:
    Object();
    ~Object() override;
    Object* asObject() override { return this; }

    /// The first node with this name in the subtree that begins at this node, depth first; null when there is none.
    Node* getNodeByName(const jString& name);

    virtual int getNumSurfaces() const { return 0; }
    /// The first intersection of a segment with a surface, both in this object's frame, metres. False without a hit;
    /// `hit` is then unchanged. REQUIRES 0 <= surface < getNumSurfaces().
    virtual bool getIntersection(const dvec3& from, const dvec3& to, int surface, dvec3& hit) const;
    dvec3 toLocal(const dvec3& world) const;
    dvec3 toWorld(const dvec3& local) const;

    /// The material of a surface; null for an invalid index. Owned by the object or shared by its model.
    virtual Material* getSurfaceMaterial(int surface);
    /// True gives the surface its own material, so that later changes do not affect other objects of the same model.
    virtual void setSurfaceMaterialInherit(int surface, bool inherit);

    Body* getBody() const { return m_body.get(); }
    BodyRigid* getBodyRigid() const { return m_body.get(); }
    /// Replaces the body; settings without usable shapes are refused with one log line, and the object then has no
    /// body.
    bool setBody(const BodySettings& settings);

protected:
    void placeChanged(bool by_physics) override;
    void worldChanged() override;
    void activityChanged() override;

private:
    friend class ObjectPrefab;
    friend class PhysicsWorld;

    PhysicsWorld* m_physics = nullptr;  ///< the world's, while it contains this body or collider
    std::unique_ptr<BodyRigid> m_body;
    std::unique_ptr<MeshCollider> m_mesh_collider;  ///< made when a body first comes close
};
