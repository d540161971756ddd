// Rotations and transforms: functions that are not inline.
#include <algorithm>

#include "engine/math/Bounds.h"
#include "engine/math/Quat.h"
#include "engine/math/Transform.h"
#include "engine/math/jMath.h"

using jMath::DEG2RAD;
using jMath::RAD2DEG;

dquat::dquat(const dvec3& axis, double angle) {
    const dvec3 a = ::normalize(axis);
    if (length2(a) == 0.0) return;
    const double half = angle * DEG2RAD * 0.5;
    const double s = std::sin(half);
    *this = dquat(a.x * s, a.y * s, a.z * s, std::cos(half));
}

/// Shepperd, "Quaternion from rotation matrix", J. Guidance and Control 1 (1978): the largest term is the divisor.
dquat::dquat(const dmat3& m) {
    const double xx = m.x.x, yy = m.y.y, zz = m.z.z;
    if (xx + yy + zz > 0.0) {
        const double s = 2.0 * std::sqrt(1.0 + xx + yy + zz);
        *this = dquat((m.y.z - m.z.y) / s, (m.z.x - m.x.z) / s, (m.x.y - m.y.x) / s, 0.25 * s);
    } else if (xx >= yy && xx >= zz) {
        const double s = 2.0 * std::sqrt(1.0 + xx - yy - zz);
        *this = dquat(0.25 * s, (m.y.x + m.x.y) / s, (m.z.x + m.x.z) / s, (m.y.z - m.z.y) / s);
    } else if (yy >= zz) {
        const double s = 2.0 * std::sqrt(1.0 + yy - xx - zz);
        *this = dquat((m.y.x + m.x.y) / s, 0.25 * s, (m.z.y + m.y.z) / s, (m.z.x - m.x.z) / s);
    } else {
        const double s = 2.0 * std::sqrt(1.0 + zz - xx - yy);
        *this = dquat((m.z.x + m.x.z) / s, (m.z.y + m.y.z) / s, 0.25 * s, (m.x.y - m.y.x) / s);
    }
}

dquat dquat::fromEulerZXY(double heading, double pitch, double roll) {
    return dquat(dvec3(0, 0, 1), heading) * dquat(dvec3(1, 0, 0), pitch) * dquat(dvec3(0, 1, 0), roll);
}

dvec3 dquat::toEulerZXY() const {
    const dmat3 m = getMat3();
    const double sin_pitch = std::clamp(m.y.z, -1.0, 1.0);
    if (std::abs(sin_pitch) > 1.0 - 1e-12) {
        return {std::atan2(m.x.y, m.x.x) * RAD2DEG, std::copysign(90.0, sin_pitch), 0.0};
    }
    return {std::atan2(-m.y.x, m.y.y) * RAD2DEG, std::asin(sin_pitch) * RAD2DEG, std::atan2(-m.x.z, m.z.z) * RAD2DEG};
}

dmat3 dquat::getMat3() const {
    return {{1 - 2 * (y * y + z * z), 2 * (x * y + w * z), 2 * (x * z - w * y)},
            {2 * (x * y - w * z), 1 - 2 * (x * x + z * z), 2 * (y * z + w * x)},
            {2 * (x * z + w * y), 2 * (y * z - w * x), 1 - 2 * (x * x + y * y)}};
}

dquat& dquat::normalize() {
    const double l = std::sqrt(x * x + y * y + z * z + w * w);
    return *this = l > 0.0 ? dquat(x / l, y / l, z / l, w / l) : dquat();
}

dquat operator*(const dquat& a, const dquat& b) {
    return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y, a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
            a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w, a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
}

dvec3 operator*(const dquat& q, const dvec3& v) {
    const dvec3 u(q.x, q.y, q.z);
    const dvec3 t = 2.0 * cross(u, v);
    return v + q.w * t + cross(u, t);
}

/// M = Rx Ry Rz: row X is (cy cz, -cy sz, sy), column Z is (sy, -sx cy, cx cy).
dvec3 toEulerXYZ(const dmat3& m) {
    const double sin_y = std::clamp(m.z.x, -1.0, 1.0);
    if (std::abs(sin_y) > 1.0 - 1e-12) {
        return {std::atan2(m.y.z, m.y.y) * RAD2DEG, std::copysign(90.0, sin_y), 0.0};
    }
    return {std::atan2(-m.z.y, m.z.z) * RAD2DEG, std::asin(sin_y) * RAD2DEG, std::atan2(-m.y.x, m.x.x) * RAD2DEG};
}

dmat3 fromEulerXYZ(const dvec3& a) {
    return (dquat(dvec3(1, 0, 0), a.x) * dquat(dvec3(0, 1, 0), a.y) * dquat(dvec3(0, 0, 1), a.z)).getMat3();
}

/// (x, y, z) of the result's frame = (z, x, y) of q's: a proper rotation, handedness is kept.
dquat convertFromZUpCoordinateSystem(const dquat& q) {
    const dmat3 m = q.getMat3();
    return dquat(dmat3(m.z, m.x, m.y));
}

dmat4 inverse(const dmat4& m) {
    const dvec3 yz = cross(m.y, m.z);
    const double det = dot(m.x, yz);
    if (det == 0.0 || !std::isfinite(1.0 / det)) return {};
    // The rows of the inverse are the cross products of the columns divided by the determinant.
    const dmat3 r = transpose(dmat3(yz / det, cross(m.z, m.x) / det, cross(m.x, m.y) / det));
    return {r, -(r * m.t)};
}

bool isFinite(const dmat4& m) {
    return isFinite(m.x) && isFinite(m.y) && isFinite(m.z) && isFinite(m.t);
}

void decomposeTransform(const dmat4& m, dvec3& translation, dquat& rotation, dvec3& scale) {
    translation = m.t;
    scale = dvec3(length(m.x), length(m.y), length(m.z));
    dvec3 x = normalize(m.x), y = normalize(m.y), z = normalize(m.z);
    if (length2(x) == 0.0) x = normalize(cross(y, z));
    if (length2(y) == 0.0) y = normalize(cross(z, x));
    if (length2(z) == 0.0) z = normalize(cross(x, y));
    if (dot(cross(x, y), z) < 0.0) {
        x = -x;
        scale.x = -scale.x;
    }
    rotation = dquat(dmat3(x, y, z)).normalize();
}

dmat4 composeTransform(const dvec3& translation, const dquat& rotation, const dvec3& s) {
    const dmat3 r = rotation.getMat3();
    return {r.x * s.x, r.y * s.y, r.z * s.z, translation};
}

BoundBox operator*(const dmat4& m, const BoundBox& b) {
    if (b.isEmpty()) return b;
    const dvec3 center = m * b.getCenter();
    const dvec3 half = b.getSize() * 0.5;
    const dvec3 reach(std::abs(m.x.x) * half.x + std::abs(m.y.x) * half.y + std::abs(m.z.x) * half.z,
                      std::abs(m.x.y) * half.x + std::abs(m.y.y) * half.y + std::abs(m.z.y) * half.z,
                      std::abs(m.x.z) * half.x + std::abs(m.y.z) * half.y + std::abs(m.z.z) * half.z);
    return {center - reach, center + reach};
}

bool intersects(const BoundBox& box, const dvec3& a, const dvec3& b) {
    double enter = 0.0, leave = 1.0;
    for (int i = 0; i < 3; ++i) {
        const double d = b[i] - a[i];
        if (d == 0.0) {
            if (a[i] < box.min[i] || a[i] > box.max[i]) return false;
            continue;
        }
        const double u = (box.min[i] - a[i]) / d, v = (box.max[i] - a[i]) / d;
        enter = std::max(enter, std::min(u, v));
        leave = std::min(leave, std::max(u, v));
    }
    return enter <= leave;
}

double jMath::getFadeOut(double v, double end, double length) {
    return std::clamp((end - v) / length, 0.0, 1.0);
}

double jMath::getFadeIn(double v, double from, double to) {
    return std::clamp((v - from) / (to - from), 0.0, 1.0);
}

double jMath::linearToShock(double t) {
    const double phase = t - 2.0 * std::floor(t / 2.0);
    return phase < 1.0 ? phase : 2.0 - phase;
}

std::uint32_t Random::getInt() {
    m_state ^= m_state >> 12;
    m_state ^= m_state << 25;
    m_state ^= m_state >> 27;
    return static_cast<std::uint32_t>((m_state * 0x2545F4914F6CDD1DULL) >> 32);
}

double Random::getDouble(double lo, double hi) {
    return lo + (hi - lo) * (getInt() / 4294967296.0);
}
