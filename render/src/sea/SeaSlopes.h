// The waves' slopes and foam as textures.
#pragma once

#include <osg/Image>
#include <osg/Texture2D>

#include <array>
#include <cstdint>
#include <vector>

class WaveField;
struct WaveCascade;

/// One texture a cascade, each level half the one before. Texels hold the slopes east and north of the displaced
/// surface (value = ZERO + slope / scale), its foam and its height.
class SeaSlopes {
public:
    using Texel = std::array<float, 4>;  ///< slopes east and north, foam, height as in the texture

    static constexpr int NUM_LEVELS = 8;
    static constexpr float ZERO = 128.0f / 255.0f;  ///< value of a level surface

    SeaSlopes();

    /// Takes the field in when it has changed.
    void update(const WaveField& field);

    osg::Texture2D* getTexture(int cascade) const { return m_layers[cascade].texture; }
    float getScale(int cascade) const { return m_layers[cascade].scale; }
    /// Mean square slope that is left at that level: the rest of level 0's has gone into the surface's roughness.
    float getMeanSquare(int cascade, int level) const { return m_layers[cascade].mean_square[level]; }
    /// The large cascade's texels at its samples, unrounded.
    const std::vector<Texel>& getLarge() const { return m_large; }
    float getReachSideways() const { return m_reach_sideways; }  ///< no water is further from its place at rest, metres
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
    std::vector<Texel> m_texels;  ///< of the level at hand
    std::vector<Texel> m_large;
    std::uint32_t m_revision = 0;
    bool m_taken = false;
    float m_reach_sideways = 0.0f, m_reach_upward = 0.0f;
};
