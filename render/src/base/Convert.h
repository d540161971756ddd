// Conversions between the engine's mathematics and the scene graph's.
#pragma once

#include <osg/Matrixd>
#include <osg/Vec3d>
#include <osg/Vec3f>
#include <osg/Vec4f>

#include "engine/math/Transform.h"

/// The scene graph multiplies row vectors: its rows are the engine's columns.
inline osg::Matrixd toOsg(const dmat4& m) {
    return {m.x.x, m.x.y, m.x.z, 0.0, m.y.x, m.y.y, m.y.z, 0.0, m.z.x, m.z.y, m.z.z, 0.0, m.t.x, m.t.y, m.t.z, 1.0};
}
inline osg::Vec3f toOsg(const vec3& v) {
    return {v.x, v.y, v.z};
}
inline osg::Vec3d toOsg(const dvec3& v) {
    return {v.x, v.y, v.z};
}
inline osg::Vec4f toOsg(const vec4& v) {
    return {v.x, v.y, v.z, v.w};
}
