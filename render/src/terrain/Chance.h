// Deterministic pseudo-random numbers from integers.
#pragma once

#include <cstdint>

/// An integer hash with low bias (Wellons 2018, "lowbias32").
constexpr std::uint32_t scramble(std::uint32_t x) {
    x = (x ^ (x >> 16)) * 0x7feb352dU;
    x = (x ^ (x >> 15)) * 0x846ca68bU;
    return x ^ (x >> 16);
}
/// Maps a hash to [0, 1).
constexpr float toUnit(std::uint32_t x) {
    return static_cast<float>(x >> 8) * (1.0f / 16777216.0f);
}
