// Nodes with substance: surfaces, materials, a physics body.
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

/// A node that can have surfaces to hit and a body. Owns its body.
class ENGINE_API Object : public Node {
public:
    Object();
    ~Object() override;
    Object* asObject() override { return this; }

    /// The first node of that name among this node and its subtree, depth first; null when there is none.
    Node* getNodeByName(const jString& name);

    virtual int getNumSurfaces() const { return 0; }
    /// Where the segment first meets that surface, both in this object's frame, metres. False without a hit; `hit` is
    /// then left alone. REQUIRES 0 <= surface < getNumSurfaces().
    virtual bool getIntersection(const dvec3& from, const dvec3& to, int surface, dvec3& hit) const;
    dvec3 toLocal(const dvec3& world) const;
    dvec3 toWorld(const dvec3& local) const;

    /// The material of a surface; null for a surface that does not exist. Owned by the object or shared by its model.
    virtual Material* getSurfaceMaterial(int surface);
    /// With true the surface gets a material of its own, which later changes do not share with others of its model.
    virtual void setSurfaceMaterialInherit(int surface, bool inherit);

    Body* getBody() const { return m_body.get(); }
    BodyRigid* getBodyRigid() const { return m_body.get(); }
    /// Replaces the body; a body without usable shapes is refused with one log line and leaves none.
    bool setBody(const BodySettings& settings);

protected:
    void placeChanged(bool by_physics) override;
    void worldChanged() override;
    void activityChanged() override;

private:
    friend class ObjectPrefab;
    friend class PhysicsWorld;

    PhysicsWorld* m_physics = nullptr;  ///< the world's, while it knows this body or collider
    std::unique_ptr<BodyRigid> m_body;
    std::unique_ptr<MeshCollider> m_mesh_collider;  ///< made when a body first comes near
};
