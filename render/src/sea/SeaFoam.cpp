// The foam's pattern: made once at the start.
#include "sea/SeaFoam.h"

#include <osg/Image>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

#include "engine/math/jMath.h"

namespace {

constexpr int SIDE = 256;

/// Points distributed over a tiling square, one per cell; after S. Worley, A Cellular Texture Basis Function (1996).
class Bubbles {
public:
    Bubbles(int cells, Random& random) : m_cells(cells), m_points(static_cast<std::size_t>(cells * cells)) {
        for (auto& point : m_points) point = {random.getFloat(0.0f, 1.0f), random.getFloat(0.0f, 1.0f)};
    }

    /// Difference of the distances to the nearest and the second nearest point, in cells: 0 on the walls between
    /// bubbles.
    float getWall(float x, float y) const {
        const float u = x * static_cast<float>(m_cells), v = y * static_cast<float>(m_cells);
        const int column = static_cast<int>(u), row = static_cast<int>(v);
        float nearest = 9.0f, next = 9.0f;
        for (int j = row - 1; j <= row + 1; ++j) {
            for (int i = column - 1; i <= column + 1; ++i) {
                const auto& point = m_points[static_cast<std::size_t>(wrap(j) * m_cells + wrap(i))];
                const float d = std::hypot(static_cast<float>(i) + point[0] - u, static_cast<float>(j) + point[1] - v);
                next = std::min(next, std::max(nearest, d));
                nearest = std::min(nearest, d);
            }
        }
        return next - nearest;
    }

private:
    int wrap(int i) const { return (i + m_cells) % m_cells; }

    int m_cells;
    std::vector<std::array<float, 2>> m_points;
};

/// Replaces each value by its rank, 0..1.
std::vector<float> spreadEvenly(const std::vector<float>& values) {
    std::vector<std::size_t> order(values.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return values[a] < values[b]; });
    std::vector<float> ranks(values.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        ranks[order[i]] = static_cast<float>(i) / static_cast<float>(order.size());
    }
    return ranks;
}

std::vector<float> makePattern() {
    Random random(71);
    const Bubbles wide(5, random), middle(13, random), fine(34, random);
    std::vector<float> values(std::size_t(SIDE) * SIDE);
    for (int row = 0; row < SIDE; ++row) {
        for (int column = 0; column < SIDE; ++column) {
            const float x = (static_cast<float>(column) + 0.5f) / SIDE, y = (static_cast<float>(row) + 0.5f) / SIDE;
            const float wall = 1.0f * wide.getWall(x, y) + 0.7f * middle.getWall(x, y) + 0.4f * fine.getWall(x, y);
            values[static_cast<std::size_t>(row * SIDE + column)] = -wall;
        }
    }
    return spreadEvenly(values);
}

}  // namespace

osg::Texture2D* makeFoamTexture() {
    const std::vector<float> pattern = makePattern();
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(SIDE, SIDE, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        std::fill_n(image->data() + 4 * i, 4, static_cast<unsigned char>(pattern[i] * 255.0f));
    }
    auto* const texture = new osg::Texture2D(image);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_NEAREST);
    return texture;
}
