// Arithmetic of colours: linear, sRGB primaries, kept in vectors as x red, y green, z blue.
#pragma once

#include <cmath>

#include "engine/math/Vec.h"

inline vec3 product(const vec3& a, const vec3& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline vec3 quotient(const vec3& a, const vec3& b) {
    return {a.x / b.x, a.y / b.y, a.z / b.z};
}
/// exp(-x) of each component.
inline vec3 fade(const vec3& depth) {
    return {std::exp(-depth.x), std::exp(-depth.y), std::exp(-depth.z)};
}
inline vec3 mix(const vec3& a, const vec3& b, float share) {
    return a + (b - a) * share;
}
inline float luminance(const vec3& color) {
    return 0.2126f * color.x + 0.7152f * color.y + 0.0722f * color.z;
}
inline vec3 gray(float value) {
    return {value, value, value};
}
/// 0 below `from`, 1 above `to`, smooth transition between.
inline float smoothStep(float from, float to, float v) {
    const float t = std::fmin(std::fmax((v - from) / (to - from), 0.0f), 1.0f);
    return t * t * (3.0f - 2.0f * t);
}
