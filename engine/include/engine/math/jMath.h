// Interpolation functions and seeded random numbers for the scene's behaviour.
#pragma once

#include <cstdint>

#include "engine/Api.h"

namespace jMath {

constexpr double PI = 3.14159265358979323846;
constexpr double DEG2RAD = PI / 180.0;
constexpr double RAD2DEG = 180.0 / PI;

/// 1 below end - length, 0 above end, linear between: clamp((end - v) / length, 0, 1).
ENGINE_API double getFadeOut(double v, double end, double length);
/// 0 below from, 1 above to, linear between: clamp((v - from) / (to - from), 0, 1).
ENGINE_API double getFadeIn(double v, double from, double to);
/// A triangle wave in [0, 1] of period 2 s, 0 at t = 0.
ENGINE_API double linearToShock(double t);

}  // namespace jMath

/// A small reproducible generator (xorshift64*, Vigna 2016). The engine owns one, seeded at its start; code that must
/// not affect the sequence of others owns its own.
class ENGINE_API Random {
public:
    explicit Random(std::uint64_t seed = 1) { setSeed(seed); }

    void setSeed(std::uint64_t seed) { m_state = seed != 0 ? seed : 0x9E3779B97F4A7C15ULL; }
    std::uint64_t getState() const { return m_state; }
    std::uint32_t getInt();
    /// Uniform in [lo, hi).
    double getDouble(double lo, double hi);
    float getFloat(float lo, float hi) { return static_cast<float>(getDouble(lo, hi)); }

private:
    std::uint64_t m_state = 1;
};
