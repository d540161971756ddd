// Rotations: double quaternion and 3x3 matrix.
#pragma once

#include "engine/Api.h"
#include "engine/math/Vec.h"

/// Three columns X, Y, Z, applied to column vectors.
struct ENGINE_API dmat3 {
    dvec3 x{1.0, 0.0, 0.0};
    dvec3 y{0.0, 1.0, 0.0};
    dvec3 z{0.0, 0.0, 1.0};

    constexpr dmat3() = default;
    constexpr dmat3(const dvec3& cx, const dvec3& cy, const dvec3& cz) : x(cx), y(cy), z(cz) {}

    constexpr const dvec3& getX() const { return x; }
    constexpr const dvec3& getY() const { return y; }
    constexpr const dvec3& getZ() const { return z; }
    constexpr const dvec3& getColumn(int i) const { return i == 0 ? x : i == 1 ? y : z; }
};

constexpr dvec3 operator*(const dmat3& m, const dvec3& v) {
    return m.x * v.x + m.y * v.y + m.z * v.z;
}
constexpr dmat3 operator*(const dmat3& a, const dmat3& b) {
    return {a * b.x, a * b.y, a * b.z};
}
constexpr dmat3 transpose(const dmat3& m) {
    return {{m.x.x, m.y.x, m.z.x}, {m.x.y, m.y.y, m.z.y}, {m.x.z, m.y.z, m.z.z}};
}

/// A unit quaternion in double precision. Every angle is in degrees.
struct ENGINE_API dquat {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;

    constexpr dquat() = default;
    constexpr dquat(double px, double py, double pz, double pw) : x(px), y(py), z(pz), w(pw) {}
    /// Rotation by `angle` degrees about `axis` (normalised here; a zero axis gives no rotation).
    dquat(const dvec3& axis, double angle);
    /// Rotation of an orthonormal matrix (columns normalised by the caller).
    explicit dquat(const dmat3& m);
    /// Euler triple (heading, pitch, roll) about (Z, X, Y): Qz * Qx * Qy.
    explicit dquat(const dvec3& hpr) : dquat(fromEulerZXY(hpr)) {}

    /// Qz(heading) * Qx(pitch) * Qy(roll), degrees.
    static dquat fromEulerZXY(double heading, double pitch, double roll);
    static dquat fromEulerZXY(const dvec3& hpr) { return fromEulerZXY(hpr.x, hpr.y, hpr.z); }
    /// (heading, pitch, roll) in degrees with pitch in [-90, 90]; at the poles the roll is 0.
    dvec3 toEulerZXY() const;

    dmat3 getMat3() const;
    constexpr dquat inverse() const { return {-x, -y, -z, w}; }
    /// Scales to unit length; a zero quaternion becomes the identity. Returns *this.
    dquat& normalize();
};

ENGINE_API dquat operator*(const dquat& a, const dquat& b);
ENGINE_API dvec3 operator*(const dquat& q, const dvec3& v);

/// X-Y-Z Euler angles in degrees of M = Rx * Ry * Rz, with Y in [-90, 90].
ENGINE_API dvec3 toEulerXYZ(const dmat3& m);
/// The matrix Rx(a.x) * Ry(a.y) * Rz(a.z), degrees.
ENGINE_API dmat3 fromEulerXYZ(const dvec3& a);

/// Rotates q so that column 0 of the result is q's own Z axis: the direction from a target to an eye that looks along
/// -Z.
ENGINE_API dquat convertFromZUpCoordinateSystem(const dquat& q);
