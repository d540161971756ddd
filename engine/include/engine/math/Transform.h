// Affine transforms in double precision for nodes, bodies and cameras.
#pragma once

#include "engine/Api.h"
#include "engine/math/Quat.h"

/// Four columns X, Y, Z and translation, applied to column vectors; the last row is (0, 0, 0, 1).
struct ENGINE_API dmat4 {
    dvec3 x{1.0, 0.0, 0.0};
    dvec3 y{0.0, 1.0, 0.0};
    dvec3 z{0.0, 0.0, 1.0};
    dvec3 t;

    constexpr dmat4() = default;
    constexpr dmat4(const dvec3& cx, const dvec3& cy, const dvec3& cz, const dvec3& ct) : x(cx), y(cy), z(cz), t(ct) {}
    constexpr dmat4(const dmat3& r, const dvec3& ct) : x(r.x), y(r.y), z(r.z), t(ct) {}
    dmat4(const dquat& r, const dvec3& ct) : dmat4(r.getMat3(), ct) {}

    static constexpr dmat4 translation(const dvec3& t) {
        dmat4 m;
        m.t = t;
        return m;
    }

    constexpr const dvec3& getX() const { return x; }
    constexpr const dvec3& getY() const { return y; }
    constexpr const dvec3& getZ() const { return z; }
    constexpr const dvec3& getTranslation() const { return t; }
    constexpr dmat3 getMat3() const { return {x, y, z}; }
    constexpr bool operator==(const dmat4&) const = default;
};

/// Transforms a point.
constexpr dvec3 operator*(const dmat4& m, const dvec3& p) {
    return m.x * p.x + m.y * p.y + m.z * p.z + m.t;
}
/// Transforms a direction: without translation.
constexpr dvec3 rotate(const dmat4& m, const dvec3& v) {
    return m.x * v.x + m.y * v.y + m.z * v.z;
}
constexpr dmat4 operator*(const dmat4& a, const dmat4& b) {
    return {rotate(a, b.x), rotate(a, b.y), rotate(a, b.z), a * b.t};
}
/// The inverse; a singular matrix gives the identity.
ENGINE_API dmat4 inverse(const dmat4& m);
/// True when no element is NaN or infinite.
ENGINE_API bool isFinite(const dmat4& m);

/// Splits m into translation, rotation and scale (m = T * R * S). A mirrored matrix has a negative X scale; a zero
/// column gives scale 0 on that axis and the rotation of the other two.
ENGINE_API void decomposeTransform(const dmat4& m, dvec3& translation, dquat& rotation, dvec3& scale);
/// The inverse of the split: T * R * S.
ENGINE_API dmat4 composeTransform(const dvec3& translation, const dquat& rotation,
                                  const dvec3& scale = {1.0, 1.0, 1.0});
