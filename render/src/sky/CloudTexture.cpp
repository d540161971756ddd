// Makes the cloud pattern once at the start, from cellular noise (Worley, 1996) and gradient noise (Perlin, 1985).
#include "sky/CloudTexture.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <vector>

namespace {

constexpr int SIZE = CLOUD_TEXELS;
constexpr int FINE_TILES = 4;  // repetitions of the fine lumps per side

/// A tiling square of values; its side is a power of two.
struct Field {
    int size;
    std::vector<float> values = std::vector<float>(static_cast<std::size_t>(size * size));

    float& at(int x, int y) { return values[static_cast<std::size_t>((y & (size - 1)) * size + (x & (size - 1)))]; }
    /// Bilinear interpolation; u and v from 0 to 1 per side.
    float between(float u, float v) {
        const float x = u * static_cast<float>(size) - 0.5f, y = v * static_cast<float>(size) - 0.5f;
        const int i = static_cast<int>(std::floor(x)), j = static_cast<int>(std::floor(y));
        const float s = x - static_cast<float>(i), t = y - static_cast<float>(j);
        return std::lerp(std::lerp(at(i, j), at(i + 1, j), s), std::lerp(at(i, j + 1), at(i + 1, j + 1), s), t);
    }
};

/// Two pseudo-random numbers in [0, 1) for a cell of a grid.
struct Pair {
    float x, y;
};
Pair cellNumbers(int x, int y, std::uint32_t seed) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x8DA6B343u ^ static_cast<std::uint32_t>(y) * 0xD8163841u ^ seed;
    h ^= h >> 15, h *= 0x2C1B3C6Du, h ^= h >> 12, h *= 0x297A2D39u, h ^= h >> 15;
    return {static_cast<float>(h & 0xFFFFu) / 65536.0f, static_cast<float>(h >> 16) / 65536.0f};
}

/// Round lumps: 1 in the centre of a cell, 0 between cells.
float lumps(float u, float v, int cells, std::uint32_t seed) {
    const float x = u * static_cast<float>(cells), y = v * static_cast<float>(cells);
    const int cx = static_cast<int>(x), cy = static_cast<int>(y);
    float nearest = 4.0f;
    for (int j = cy - 1; j <= cy + 1; ++j) {
        for (int i = cx - 1; i <= cx + 1; ++i) {
            const Pair p = cellNumbers((i + cells) % cells, (j + cells) % cells, seed);
            const float dx = static_cast<float>(i) + p.x - x, dy = static_cast<float>(j) + p.y - y;
            nearest = std::fmin(nearest, dx * dx + dy * dy);
        }
    }
    return std::fmax(1.0f - std::sqrt(nearest), 0.0f);
}

float slopeNoise(float u, float v, int cells, std::uint32_t seed) {
    const float x = u * static_cast<float>(cells), y = v * static_cast<float>(cells);
    const int cx = static_cast<int>(x), cy = static_cast<int>(y);
    const float fx = x - static_cast<float>(cx), fy = y - static_cast<float>(cy);
    const auto corner = [&](int i, int j) {
        const float angle = cellNumbers((cx + i) % cells, (cy + j) % cells, seed).x * 6.2831853f;
        return std::cos(angle) * (fx - static_cast<float>(i)) + std::sin(angle) * (fy - static_cast<float>(j));
    };
    const auto ease = [](float t) { return t * t * t * (t * (t * 6.0f - 15.0f) + 10.0f); };
    return std::lerp(std::lerp(corner(0, 0), corner(1, 0), ease(fx)), std::lerp(corner(0, 1), corner(1, 1), ease(fx)),
                     ease(fy));
}

/// Cumulus clouds in groups.
float heaps(float u, float v) {
    const float groups = slopeNoise(u, v, 2, 11u) + 0.6f * slopeNoise(u, v, 5, 12u);
    const float lump = 0.55f * lumps(u, v, 7, 21u) + 0.3f * lumps(u, v, 15, 22u) + 0.15f * lumps(u, v, 31, 23u);
    return lump + 0.55f * groups;
}

float fineLumps(float u, float v) {
    return 0.5f * lumps(u, v, 9, 31u) + 0.3f * lumps(u, v, 19, 32u) + 0.2f * lumps(u, v, 41, 33u);
}

template <class Function>
Field fill(int size, Function&& function) {
    Field field{size};
    const float step = 1.0f / static_cast<float>(size);
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            field.at(x, y) = function((static_cast<float>(x) + 0.5f) * step, (static_cast<float>(y) + 0.5f) * step);
        }
    }
    return field;
}

/// Replaces each value by the share of values below it.
void rank(std::vector<float>& values) {
    constexpr int BINS = 4096;
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    const float from = *lowest, scale = (BINS - 1) / (*highest - from);
    std::vector<float> below(BINS, 0.0f);
    const auto binOf = [&](float v) { return static_cast<std::size_t>((v - from) * scale); };
    for (const float v : values) below[binOf(v)] += 1.0f / static_cast<float>(values.size());
    std::exclusive_scan(below.begin(), below.end(), below.begin(), 0.0f);
    for (float& v : values) v = below[binOf(v)];
}

Field makeClouds() {
    Field coarse = fill(SIZE / 2, heaps), fine = fill(SIZE / FINE_TILES, fineLumps);
    Field cloud = fill(SIZE, [&](float u, float v) {
        return coarse.between(u, v) + 0.38f * fine.between(u * FINE_TILES, v * FINE_TILES);
    });
    rank(cloud.values);
    return cloud;
}

unsigned char toByte(float v) {
    return static_cast<unsigned char>(std::lround(std::clamp(v, 0.0f, 1.0f) * 255.0f));
}

}  // namespace

osg::ref_ptr<osg::Image> makeCloudPattern() {
    constexpr int STRIDE = 4;  // texels to each side for the slope's finite difference
    constexpr float STEEPNESS = 1.1f;
    Field cloud = makeClouds();
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(SIZE, SIZE, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    for (int y = 0; y < SIZE; ++y) {
        for (int x = 0; x < SIZE; ++x) {
            unsigned char* const texel = image->data(static_cast<unsigned>(x), static_cast<unsigned>(y));
            texel[0] = toByte(cloud.at(x, y));
            texel[1] = toByte(0.5f + STEEPNESS * (cloud.at(x + STRIDE, y) - cloud.at(x - STRIDE, y)));
            texel[2] = toByte(0.5f + STEEPNESS * (cloud.at(x, y + STRIDE) - cloud.at(x, y - STRIDE)));
            texel[3] = 255;
        }
    }
    return image;
}
