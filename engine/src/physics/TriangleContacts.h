// Contacts and sweeps against single triangles of meshes and terrain.
#pragma once

#include <BulletCollision/CollisionShapes/btTriangleShape.h>
#include <btBulletCollisionCommon.h>

/// Bullet's callback for new contact points of objects with CF_CUSTOM_MATERIAL_CALLBACK. Since Bullet tests triangles
/// one by one, a shape that slides over a mesh collides with inner edges; such contacts get the normal of the face
/// here. Contacts with edges that obstruct the body are not changed.
bool useFaceNormal(btManifoldPoint& point, const btCollisionObjectWrapper* one, int, int,
                   const btCollisionObjectWrapper* two, int, int);

/// The first contact of a sweep.
struct SweepHit {
    double fraction = 1.0;  ///< of the sweep; 1 without a hit
    bool found = false;
};

/// Sweeps a convex shape from pose to pose against a static shape. Contacts whose normal component of the sweep is
/// below `min_closing` metres are ignored.
SweepHit sweep(const btConvexShape& shape, const btTransform& from, const btTransform& to, btCollisionObject& other,
               const btCollisionShape& other_shape, const btTransform& other_pose, double min_closing);
