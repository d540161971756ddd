// The slopes and foam of the waves as textures.
#pragma once

#include <osg/Image>
#include <osg/Texture2D>

#include <array>
#include <cstdint>
#include <vector>

class WaveField;
struct WaveCascade;

/// One texture per cascade with mipmap levels. Texels contain the slopes east and north of the displaced surface (value
/// = ZERO + slope / scale), its foam and its height.
class SeaSlopes {
public:
    using Texel = std::array<float, 4>;  ///< slopes east and north, foam, height in texture units

    static constexpr int NUM_LEVELS = 8;
    static constexpr float ZERO = 128.0f / 255.0f;  ///< value of a level surface

    SeaSlopes();

    /// Recomputes the textures when the field has changed.
    void update(const WaveField& field);

    osg::Texture2D* getTexture(int cascade) const { return m_layers[cascade].texture; }
    float getScale(int cascade) const { return m_layers[cascade].scale; }
    /// Mean square slope visible at this level: the rest of level 0's value is part of the surface's roughness.
    float getMeanSquare(int cascade, int level) const { return m_layers[cascade].mean_square[level]; }
    /// The large cascade's texels at its samples, not quantised.
    const std::vector<Texel>& getLarge() const { return m_large; }
    /// maximum horizontal displacement of water from its position at rest, metres
    float getReachSideways() const { return m_reach_sideways; }
    float getReachUpward() const { return m_reach_upward; }

private:
    struct Layer {
        osg::ref_ptr<osg::Image> image;
        osg::ref_ptr<osg::Texture2D> texture;
        float scale = 1.0f;
        std::array<float, NUM_LEVELS> mean_square{};
    };

    /// Standard deviation of the heights, metres.
    float measure(const WaveCascade& cascade);
    void differentiate(const WaveCascade& cascade, float per_height);
    void write(Layer& layer, int level);
    void halve(int side);

    std::array<Layer, 2> m_layers;
    std::vector<Texel> m_texels;  ///< of the current level
    std::vector<Texel> m_large;
    std::uint32_t m_revision = 0;
    bool m_taken = false;
    float m_reach_sideways = 0.0f, m_reach_upward = 0.0f;
};
