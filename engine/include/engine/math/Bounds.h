// Axis-aligned boxes, in the frame that the owner specifies.
#pragma once

#include <limits>

#include "engine/Api.h"
#include "engine/math/Transform.h"

/// A box in metres. A new box is empty; an empty box has no extent and does not change unions.
struct ENGINE_API BoundBox {
    dvec3 min{std::numeric_limits<double>::max(), std::numeric_limits<double>::max(),
              std::numeric_limits<double>::max()};
    dvec3 max{std::numeric_limits<double>::lowest(), std::numeric_limits<double>::lowest(),
              std::numeric_limits<double>::lowest()};

    BoundBox() = default;
    BoundBox(const dvec3& lo, const dvec3& hi) : min(lo), max(hi) {}

    bool isEmpty() const { return min.x > max.x; }
    void expand(const dvec3& p) {
        min = dvec3(std::fmin(min.x, p.x), std::fmin(min.y, p.y), std::fmin(min.z, p.z));
        max = dvec3(std::fmax(max.x, p.x), std::fmax(max.y, p.y), std::fmax(max.z, p.z));
    }
    void expand(const BoundBox& b) {
        if (!b.isEmpty()) {
            expand(b.min);
            expand(b.max);
        }
    }
    dvec3 getCenter() const { return (min + max) * 0.5; }
    dvec3 getSize() const { return isEmpty() ? dvec3() : max - min; }
};

/// The bounding box of a transformed box.
ENGINE_API BoundBox operator*(const dmat4& m, const BoundBox& b);
/// Whether the segment from a to b touches the box (both in the box's frame).
ENGINE_API bool intersects(const BoundBox& box, const dvec3& a, const dvec3& b);
