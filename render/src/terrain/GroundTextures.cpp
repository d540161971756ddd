// Reads the imagery and makes the detail texture when the terrain is set.
#include "terrain/GroundTextures.h"

#include <osg/Image>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/TextureStore.h"
#include "engine/core/Engine.h"
#include "engine/scene/RasterSource.h"
#include "engine/text/Log.h"
#include "terrain/Chance.h"

namespace {

constexpr int IMAGERY_LIMIT = 4096;  // pixels
constexpr int DETAIL_SIZE = 512;

void setUp(osg::Texture2D& texture, osg::Texture::WrapMode wrap, GLint format) {
    texture.setInternalFormat(format);
    texture.setWrap(osg::Texture::WRAP_S, wrap);
    texture.setWrap(osg::Texture::WRAP_T, wrap);
    texture.setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_NEAREST);
    texture.setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
    texture.setResizeNonPowerOfTwoHint(false);
    keepOnDeviceOnly(texture);
}

/// A field over the tiling square of the texture.
using Field = std::vector<float>;

/// Adds to `out` random values at `cells` x `cells` lattice points with cubic interpolation.
void addNoise(Field& out, int cells, float strength, std::uint32_t seed) {
    const auto value = [&](int x, int y) {
        const auto at = static_cast<std::uint32_t>((y % cells) * cells + x % cells);
        return static_cast<float>(scramble(at + scramble(seed))) * (2.0f / 4294967296.0f) - 1.0f;
    };
    const int step = DETAIL_SIZE / cells;
    std::vector<float> fade(static_cast<std::size_t>(step));
    for (int i = 0; i < step; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(step);
        fade[static_cast<std::size_t>(i)] = t * t * (3.0f - 2.0f * t);
    }
    for (int y = 0; y < DETAIL_SIZE; ++y) {
        const float v = fade[static_cast<std::size_t>(y % step)];
        for (int cx = 0; cx < cells; ++cx) {
            const int cy = y / step;
            const float west = value(cx, cy) * (1.0f - v) + value(cx, cy + 1) * v;
            const float east = value(cx + 1, cy) * (1.0f - v) + value(cx + 1, cy + 1) * v;
            float* const line = &out[static_cast<std::size_t>(y * DETAIL_SIZE + cx * step)];
            for (int i = 0; i < step; ++i) {
                line[i] += strength * (west + (east - west) * fade[static_cast<std::size_t>(i)]);
            }
        }
    }
}

/// Octaves from `coarsest` to `finest` cells; each has `gain` times the strength of the previous one.
Field makeNoise(int coarsest, int finest, float gain, std::uint32_t seed) {
    Field field(static_cast<std::size_t>(DETAIL_SIZE) * DETAIL_SIZE);
    float strength = 1.0f;
    for (int cells = coarsest; cells <= finest; cells *= 2, strength *= gain) addNoise(field, cells, strength, seed++);
    return field;
}

/// Shifts and scales to mean 0 and standard deviation 1.
void normalise(Field& field) {
    double sum = 0.0, squares = 0.0;
    for (const float v : field) sum += v, squares += static_cast<double>(v) * v;
    const double mean = sum / static_cast<double>(field.size());
    const double deviation = std::sqrt(std::max(squares / static_cast<double>(field.size()) - mean * mean, 1e-12));
    for (float& v : field) v = static_cast<float>((v - mean) / deviation);
}

unsigned char toByte(float v) {
    return static_cast<unsigned char>(std::clamp(std::lround(127.5f + v * 127.5f), 0L, 255L));
}

}  // namespace

osg::ref_ptr<osg::Image> loadImagery(const std::string& path, ImageryPlace& place) {
    if (path.empty()) return nullptr;
    const std::unique_ptr<RasterSource> source = RasterSource::open(Engine::get()->resolvePath(path), "imagery");
    if (!source) return nullptr;
    const int width = std::min(source->getNumColumns(), IMAGERY_LIMIT);
    const int height = std::min(source->getNumRows(), IMAGERY_LIMIT);
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(width, height, 1, GL_RGB, GL_UNSIGNED_BYTE, 1);
    if (!source->readColors(width, height, image->data())) return nullptr;
    // Pixels are areas centred on their posts.
    place.west = source->getWest() - 0.5 * source->getLonStep();
    place.south = source->getSouth() - 0.5 * source->getLatStep();
    place.east = place.west + source->getNumColumns() * source->getLonStep();
    place.north = place.south + source->getNumRows() * source->getLatStep();
    return image;
}

osg::ref_ptr<osg::Texture2D> makeImageryTexture(const osg::Image& imagery) {
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(pack(imagery));
    setUp(*texture, osg::Texture::CLAMP_TO_EDGE, GL_RGB565);
    return texture;
}

osg::ref_ptr<osg::Image> makeOverview(const osg::Image& imagery) {
    constexpr int MAX_SIDE = 512;
    const int width = std::min(imagery.s(), MAX_SIDE), height = std::min(imagery.t(), MAX_SIDE);
    osg::ref_ptr<osg::Image> overview = new osg::Image;
    overview->allocateImage(width, height, 1, GL_RGB, GL_UNSIGNED_BYTE, 1);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const unsigned char* const from = imagery.data(static_cast<unsigned>(x * imagery.s() / width),
                                                           static_cast<unsigned>(y * imagery.t() / height));
            std::copy_n(from, 3, overview->data(static_cast<unsigned>(x), static_cast<unsigned>(y)));
        }
    }
    return overview;
}

osg::ref_ptr<osg::Texture2D> makeGroundDetail() {
    constexpr float STRENGTH = 0.30f;
    Field grown = makeNoise(4, 256, 0.95f, 1), bare = makeNoise(8, 256, 0.85f, 21);
    for (float& v : bare) v = -std::fabs(v);  // creases
    normalise(grown);
    normalise(bare);
    osg::ref_ptr<osg::Image> image = new osg::Image;
    // Two of the channels are used; four are faster in software drivers.
    image->allocateImage(DETAIL_SIZE, DETAIL_SIZE, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    std::fill_n(image->data(), image->getTotalSizeInBytes(), static_cast<unsigned char>(0));
    for (std::size_t i = 0; i < grown.size(); ++i) {
        image->data()[4 * i] = toByte(grown[i] * STRENGTH);
        image->data()[4 * i + 1] = toByte(bare[i] * STRENGTH);
    }
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
    setUp(*texture, osg::Texture::REPEAT, GL_RGBA8);
    // Sharper than correct: without this bias it would blur at oblique angles.
    texture->setLODBias(-0.8f);
    return texture;
}
