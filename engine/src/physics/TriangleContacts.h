// Contacts and sweeps against single triangles of meshes and terrain.
#pragma once

#include <BulletCollision/CollisionShapes/btTriangleShape.h>
#include <btBulletCollisionCommon.h>

/// Bullet's hook for new contact points of what has CF_CUSTOM_MATERIAL_CALLBACK set. A shape that slides over a surface
/// of many triangles finds their inner edges in its way, since each triangle is met alone; here such contacts get the
/// normal of the face. Contacts with edges that a body has really run into are left alone.
bool turnToFace(btManifoldPoint& point, const btCollisionObjectWrapper* one, int, int,
                const btCollisionObjectWrapper* two, int, int);

/// Where and whether a shape on its way first meets another.
struct Meeting {
    double fraction = 1.0;  ///< of the way; 1 when nothing was met
    bool met = false;
};

/// Sweeps a convex shape from pose to pose against a shape that stands still. What the way closes in on by less than
/// `least` metres is left out.
Meeting sweep(const btConvexShape& shape, const btTransform& from, const btTransform& to, btCollisionObject& other,
              const btCollisionShape& other_shape, const btTransform& other_pose, double least);
