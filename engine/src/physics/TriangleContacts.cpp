// Face normals for contacts with triangles, and sweeps against single triangles.
#include "physics/TriangleContacts.h"

#include "physics/Collidable.h"
#include "physics/DynamicsWorld.h"

namespace {

constexpr double LEDGE = 0.02;  // metres: a lower ledge is no obstacle

class FirstHit final : public btCollisionWorld::ConvexResultCallback {
public:
    FirstHit(const btVector3& motion, double min_closing) : m_motion(motion), m_min_closing(min_closing) {}

    bool needsCollision(btBroadphaseProxy*) const override { return true; }
    /// Casts against convex shapes report the normal in the world.
    btScalar addSingleResult(btCollisionWorld::LocalConvexResult& result, bool) override {
        if (btFabs(result.m_hitNormalLocal.dot(m_motion)) < m_min_closing) return m_closestHitFraction;
        hit = {result.m_hitFraction, true};
        m_closestHitFraction = result.m_hitFraction;
        return m_closestHitFraction;
    }

    SweepHit hit;

private:
    btVector3 m_motion;
    double m_min_closing;
};

/// Sweeps against each triangle that the motion's box overlaps, in the frame of the triangles.
class TriangleSweep final : public btTriangleCallback {
public:
    TriangleSweep(const btConvexShape& shape, const btTransform& from, const btTransform& to, btCollisionObject& other,
                  double min_closing)
        : m_shape(shape),
          m_from(from),
          m_to(to),
          m_other(other),
          m_motion(to.getOrigin() - from.getOrigin()),
          m_min_closing(min_closing),
          first(m_motion, min_closing) {}

    void processTriangle(btVector3* corners, int, int) override {
        const btVector3 normal = (corners[1] - corners[0]).cross(corners[2] - corners[0]);
        if (btFabs(normal.dot(m_motion)) <= m_min_closing * normal.length()) return;
        btTriangleShape triangle(corners[0], corners[1], corners[2]);
        triangle.setMargin(0.0);
        btCollisionWorld::objectQuerySingle(&m_shape, m_from, m_to, &m_other, &triangle, btTransform::getIdentity(),
                                            first, 0.0);
    }

private:
    const btConvexShape& m_shape;
    const btTransform m_from, m_to;
    btCollisionObject& m_other;
    const btVector3 m_motion;
    const double m_min_closing;

public:
    FirstHit first;
};

SweepHit sweepTriangles(const btConvexShape& shape, const btTransform& from, const btTransform& to,
                        btCollisionObject& other, const btConcaveShape& surface, double min_closing) {
    btVector3 lo, hi, lo_to, hi_to;
    shape.getAabb(from, lo, hi);
    shape.getAabb(to, lo_to, hi_to);
    lo.setMin(lo_to);
    hi.setMax(hi_to);
    TriangleSweep sweep(shape, from, to, other, min_closing);
    surface.processAllTriangles(&sweep, lo, hi);
    return sweep.first.hit;
}

/// The depth below a face at which a contact still counts as one with the face: the present penetration and the
/// distance of a substep.
double getAllowance(const BodyState& body, const Collidable& ground, const btVector3& point, const btVector3& normal) {
    const double closing = -(body.getVelocityAt(point) - ground.getVelocityAt(point)).dot(normal);
    return LEDGE + body.penetration + 1.5 * body.substep * btMax(0.0, closing);
}

/// `on_body` is the place of the point on the body, in the world.
void useFaceNormal(btManifoldPoint& point, const btCollisionObjectWrapper& shape, const btCollisionObjectWrapper& face,
                   const btVector3& on_body, bool face_is_second) {
    const auto& triangle = static_cast<const btTriangleShape&>(*face.getCollisionShape());
    const btTransform& pose = face.getWorldTransform();
    btVector3 normal;
    triangle.calcNormal(normal);
    normal = pose.getBasis() * normal;
    const btVector3 corner = pose * triangle.m_vertices1[0];
    const btTransform& place = shape.getWorldTransform();
    if (normal.dot(place.getOrigin() - corner) < 0.0) normal = -normal;
    if (!(normal.length2() > 0.5)) return;  // no area

    BodyState* const body = collidableOf(*shape.getCollisionObject()).asBody();
    const auto& convex = static_cast<const btConvexShape&>(*shape.getCollisionShape());
    const btVector3 deepest = place * convex.localGetSupportingVertex(-normal * place.getBasis());
    const Collidable& ground = collidableOf(*face.getCollisionObject());
    if (!body || normal.dot(corner - deepest) > getAllowance(*body, ground, on_body, normal)) return;

    const double height = btMax(normal.dot(on_body - corner), point.m_distance1);
    const btVector3 local = ground.rigid->getWorldTransform().inverse() * (on_body - normal * height);
    point.m_distance1 = height;
    point.m_normalWorldOnB = face_is_second ? normal : -normal;
    (face_is_second ? point.m_localPointB : point.m_localPointA) = local;
    (face_is_second ? point.m_positionWorldOnB : point.m_positionWorldOnA) = on_body - normal * height;
}

bool isTriangle(const btCollisionObjectWrapper& wrap) {
    return wrap.getCollisionShape()->getShapeType() == TRIANGLE_SHAPE_PROXYTYPE;
}

}  // namespace

bool useFaceNormal(btManifoldPoint& point, const btCollisionObjectWrapper* one, int, int,
                   const btCollisionObjectWrapper* two, int, int) {
    if (isTriangle(*two))
        useFaceNormal(point, *one, *two, point.m_positionWorldOnA, true);
    else if (isTriangle(*one))
        useFaceNormal(point, *two, *one, point.m_positionWorldOnB, false);
    return false;
}

SweepHit sweep(const btConvexShape& shape, const btTransform& from, const btTransform& to, btCollisionObject& other,
               const btCollisionShape& other_shape, const btTransform& other_pose, double min_closing) {
    // In the other's frame, near its origin, where the fixed tolerances of the casts are valid.
    const btTransform local_from = other_pose.inverseTimes(from), local_to = other_pose.inverseTimes(to);
    if (other_shape.isConcave()) {
        return sweepTriangles(shape, local_from, local_to, other, static_cast<const btConcaveShape&>(other_shape),
                              min_closing);
    }
    FirstHit first(local_to.getOrigin() - local_from.getOrigin(), min_closing);
    btCollisionWorld::objectQuerySingle(&shape, local_from, local_to, &other, &other_shape, btTransform::getIdentity(),
                                        first, 0.0);
    return first.hit;
}
