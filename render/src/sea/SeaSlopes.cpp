// Converts the field's samples to textures: computed once per frame when the waves have moved.
#include "sea/SeaSlopes.h"

#include <algorithm>
#include <cmath>

#include "engine/scene/WaveField.h"

namespace {

constexpr int SIZE = WaveCascade::SIZE;

unsigned char toByte(float value) {
    return static_cast<unsigned char>(std::clamp(value, 0.0f, 255.0f) + 0.5f);
}

osg::Image* makeImage(int levels) {
    auto* const image = new osg::Image;
    osg::Image::MipmapDataType offsets;
    unsigned size = 0;
    for (int level = 0; level < levels; ++level) {
        if (level > 0) offsets.push_back(size);
        size += static_cast<unsigned>((SIZE >> level) * (SIZE >> level) * 4);
    }
    auto* const data = new unsigned char[size]();
    image->setImage(SIZE, SIZE, 1, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE, data, osg::Image::USE_NEW_DELETE);
    image->setMipmapLevels(offsets);
    image->setDataVariance(osg::Object::DYNAMIC);
    return image;
}

}  // namespace

SeaSlopes::SeaSlopes() : m_texels(std::size_t(SIZE) * SIZE), m_large(m_texels) {
    for (Layer& layer : m_layers) {
        layer.image = makeImage(NUM_LEVELS);
        layer.texture = new osg::Texture2D(layer.image);
        layer.texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
        layer.texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
        layer.texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_NEAREST);
        layer.texture->setUseHardwareMipMapGeneration(false);
        layer.texture->setUnRefImageDataAfterApply(false);
        layer.texture->setDataVariance(osg::Object::DYNAMIC);
    }
}

void SeaSlopes::update(const WaveField& field) {
    if (m_taken && m_revision == field.getRevision()) return;
    m_taken = true;
    m_revision = field.getRevision();
    m_reach_sideways = m_reach_upward = 0.0f;
    for (int i = 0; i < WaveField::NUM_CASCADES; ++i) {
        Layer& layer = m_layers[i];
        const float deviation = measure(field.getCascade(i));
        differentiate(field.getCascade(i), 0.125f / std::max(deviation, 1e-3f));
        if (i == 0) m_large = m_texels;
        for (int level = 0; level < NUM_LEVELS; ++level) {
            if (level > 0) halve(SIZE >> level);
            write(layer, level);
        }
        layer.image->dirty();
    }
}

float SeaSlopes::measure(const WaveCascade& cascade) {
    float sideways = 0.0f, upward = 0.0f, sum = 0.0f;
    for (const auto& sample : cascade.samples) {
        sideways = std::max({sideways, std::abs(sample[0]), std::abs(sample[1])});
        upward = std::max(upward, std::abs(sample[2]));
        sum += sample[2] * sample[2];
    }
    m_reach_sideways += sideways;
    m_reach_upward += upward;
    return std::sqrt(sum / static_cast<float>(cascade.samples.size()));
}

/// The slopes at the displaced positions: slopes over positions at rest, times the inverse Jacobian of the
/// displacement.
void SeaSlopes::differentiate(const WaveCascade& cascade, float per_height) {
    const auto half = static_cast<float>(0.5 * SIZE / cascade.length);
    for (int row = 0; row < SIZE; ++row) {
        const auto* const here = &cascade.samples[static_cast<std::size_t>(row * SIZE)];
        const auto* const south = &cascade.samples[static_cast<std::size_t>(((row - 1) & (SIZE - 1)) * SIZE)];
        const auto* const north = &cascade.samples[static_cast<std::size_t>(((row + 1) & (SIZE - 1)) * SIZE)];
        for (int column = 0; column < SIZE; ++column) {
            const auto &west = here[(column - 1) & (SIZE - 1)], &east = here[(column + 1) & (SIZE - 1)];
            const float ee = 1.0f + (east[0] - west[0]) * half, ne = (east[1] - west[1]) * half;
            const float en = (north[column][0] - south[column][0]) * half;
            const float nn = 1.0f + (north[column][1] - south[column][1]) * half;
            const float ue = (east[2] - west[2]) * half, un = (north[column][2] - south[column][2]) * half;
            // Where the surface nearly folds the slope is unbounded.
            const float per_area = 1.0f / std::max(ee * nn - en * ne, 0.3f);
            m_texels[static_cast<std::size_t>(row * SIZE + column)] = {(ue * nn - un * ne) * per_area,
                                                                       (un * ee - ue * en) * per_area, here[column][3],
                                                                       0.5f + here[column][2] * per_height};
        }
    }
}

/// Quantises the texels of a level into its image; the first level sets the scale.
void SeaSlopes::write(Layer& layer, int level) {
    const auto count = static_cast<std::size_t>((SIZE >> level) * (SIZE >> level));
    float sum = 0.0f;
    for (std::size_t i = 0; i < count; ++i) sum += m_texels[i][0] * m_texels[i][0] + m_texels[i][1] * m_texels[i][1];
    layer.mean_square[static_cast<std::size_t>(level)] = sum / static_cast<float>(count);
    // A range of eight standard deviations, in steps so that the quantisation stays the same from frame to frame.
    if (level == 0)
        layer.scale = std::exp2(std::ceil(std::log2(8.0f * std::sqrt(0.5f * layer.mean_square[0]) + 0.01f)));
    const float scale = 255.0f / layer.scale;
    unsigned char* out = layer.image->getMipmapData(static_cast<unsigned>(level));
    for (std::size_t i = 0; i < count; ++i, out += 4) {
        out[0] = toByte(255.0f * ZERO + m_texels[i][0] * scale);
        out[1] = toByte(255.0f * ZERO + m_texels[i][1] * scale);
        out[2] = toByte(255.0f * m_texels[i][2]);
        out[3] = toByte(255.0f * m_texels[i][3]);
    }
}

/// Averages blocks of four texels, down to `side` texels per side.
void SeaSlopes::halve(int side) {
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            const Texel* const south = &m_texels[static_cast<std::size_t>(4 * row * side + 2 * column)];
            const Texel* const north = south + 2 * side;
            Texel mean;
            for (std::size_t k = 0; k < 4; ++k)
                mean[k] = 0.25f * (south[0][k] + south[1][k] + north[0][k] + north[1][k]);
            m_texels[static_cast<std::size_t>(row * side + column)] = mean;
        }
    }
}
