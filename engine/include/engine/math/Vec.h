// Vectors of the contract. Single precision for directions, angles and sizes; double for geocentric values.
#pragma once

#include <cmath>

/// Three floats and a padding fourth (0), 16-byte aligned: the layout shared by records and materials.
struct alignas(16) vec3 {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    float w = 0.0f;

    constexpr vec3() = default;
    constexpr vec3(float px, float py, float pz) : x(px), y(py), z(pz) {}
};

/// Four floats, 16-byte aligned: colours (red, green, blue, alpha, linear) and material parameters.
struct alignas(16) vec4 {
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    float w = 0.0f;

    constexpr vec4() = default;
    constexpr vec4(float px, float py, float pz, float pw) : x(px), y(py), z(pz), w(pw) {}
    constexpr bool operator==(const vec4&) const = default;
};

/// Three doubles and a padding fourth (0), 16-byte aligned. World positions are geocentric metres; geodetic ones are
/// (longitude in degrees, latitude in degrees, height above the ellipsoid in metres).
struct alignas(16) dvec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 0.0;

    constexpr dvec3() = default;
    constexpr dvec3(double px, double py, double pz) : x(px), y(py), z(pz) {}
    constexpr explicit dvec3(const vec3& v) : x(v.x), y(v.y), z(v.z) {}

    constexpr dvec3& operator+=(const dvec3& b) { return *this = dvec3(x + b.x, y + b.y, z + b.z); }
    constexpr dvec3& operator-=(const dvec3& b) { return *this = dvec3(x - b.x, y - b.y, z - b.z); }
    constexpr dvec3& operator*=(double s) { return *this = dvec3(x * s, y * s, z * s); }
    constexpr double operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }
    constexpr bool operator==(const dvec3&) const = default;

    /// Scales this vector to length 1; a zero vector stays zero. Returns *this.
    dvec3& normalize();
};

constexpr vec3 operator+(const vec3& a, const vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr vec3 operator-(const vec3& a, const vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr vec3 operator-(const vec3& a) {
    return {-a.x, -a.y, -a.z};
}
constexpr vec3 operator*(const vec3& a, float s) {
    return {a.x * s, a.y * s, a.z * s};
}
constexpr vec3 operator/(const vec3& a, float s) {
    return {a.x / s, a.y / s, a.z / s};
}
constexpr float dot(const vec3& a, const vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr vec3 cross(const vec3& a, const vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(const vec3& a) {
    return std::sqrt(dot(a, a));
}
/// A copy of length 1; zero for a zero vector.
inline vec3 normalize(const vec3& a) {
    const float l = length(a);
    return l > 0.0f ? a / l : vec3();
}
constexpr vec3 narrow(const dvec3& v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

constexpr dvec3 operator+(const dvec3& a, const dvec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr dvec3 operator-(const dvec3& a, const dvec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr dvec3 operator-(const dvec3& a) {
    return {-a.x, -a.y, -a.z};
}
constexpr dvec3 operator*(const dvec3& a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
constexpr dvec3 operator*(double s, const dvec3& a) {
    return a * s;
}
constexpr dvec3 operator/(const dvec3& a, double s) {
    return {a.x / s, a.y / s, a.z / s};
}
constexpr double dot(const dvec3& a, const dvec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr dvec3 cross(const dvec3& a, const dvec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
/// Componentwise product.
constexpr dvec3 scale(const dvec3& a, const dvec3& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
constexpr double length2(const dvec3& a) {
    return dot(a, a);
}
inline double length(const dvec3& a) {
    return std::sqrt(dot(a, a));
}
/// A copy of length 1; zero for a zero vector.
inline dvec3 normalize(const dvec3& a) {
    const double l = length(a);
    return l > 0.0 ? a / l : dvec3();
}
inline dvec3& dvec3::normalize() {
    return *this = ::normalize(*this);
}
inline bool isFinite(const dvec3& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}
