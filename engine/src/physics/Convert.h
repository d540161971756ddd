// Between the contract's vectors and Bullet's.
#pragma once

#include <LinearMath/btTransform.h>

#include "engine/math/Transform.h"

static_assert(sizeof(btScalar) == 8, "geocentric coordinates addOnDemand Bullet in double precision");

inline btVector3 toBullet(const dvec3& v) {
    return {v.x, v.y, v.z};
}
inline btVector3 toBullet(const vec3& v) {
    return {v.x, v.y, v.z};
}
inline dvec3 fromBullet(const btVector3& v) {
    return {v.x(), v.y(), v.z()};
}
inline vec3 narrow(const btVector3& v) {
    return narrow(fromBullet(v));
}

/// A transform without scale; `scale` (may be null) gets what was taken out.
inline btTransform toBullet(const dmat4& m, dvec3* scale = nullptr) {
    dvec3 translation, factors;
    dquat rotation;
    decomposeTransform(m, translation, rotation, factors);
    if (scale) *scale = factors;
    return btTransform(btQuaternion(rotation.x, rotation.y, rotation.z, rotation.w), toBullet(translation));
}

/// The columns of the rotation stretched by `scale`.
inline dmat4 fromBullet(const btTransform& t, const dvec3& scale = {1.0, 1.0, 1.0}) {
    const btMatrix3x3& r = t.getBasis();
    return {fromBullet(r.getColumn(0)) * scale.x, fromBullet(r.getColumn(1)) * scale.y,
            fromBullet(r.getColumn(2)) * scale.z, fromBullet(t.getOrigin())};
}
