// Builds one side of a symmetrical model and mirrors it.
#pragma once

#include <string>

#include "geometry/Mesh.h"

/// The given vector for side +1, mirrored for -1.
inline dvec3 onSide(const dvec3& right, int side) {
    return {right.x * side, right.y, right.z};
}
inline Mesh onSide(const Mesh& right, int side) {
    return side > 0 ? right : right.mirrored();
}
/// "_right" or "_left".
inline std::string withSide(const std::string& name, int side) {
    return name + (side < 0 ? "_left" : "_right");
}
