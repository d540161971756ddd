// Colours as fields of one small image.
#include "geometry/Palette.h"

#include <algorithm>
#include <cmath>

#include "geometry/Canvas.h"

namespace {

/// Encodes a linear value as a byte of an image (IEC 61966-2-1).
std::uint8_t encoded(double linear) {
    const double share = linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
    return static_cast<std::uint8_t>(std::lround(255.0 * std::clamp(share, 0.0, 1.0)));
}

}  // namespace

std::vector<PaintRef> palette(const std::string& name, const std::vector<std::array<double, 3>>& colors,
                              double roughness) {
    constexpr int FIELD = 4;  // pixels
    const int count = static_cast<int>(colors.size());
    Canvas canvas(FIELD * count, FIELD, 0.0, 0.0, count, 1.0, {0, 0, 0, 255});
    for (int i = 0; i < count; ++i) {
        const auto& c = colors[static_cast<std::size_t>(i)];
        canvas.rectangle(i - 0.1, -1.0, i + 1.1, 2.0, {encoded(c[0]), encoded(c[1]), encoded(c[2]), 255});
    }
    Texture texture;
    texture.png = canvas.toPng();
    Paint shared = *paint(name, {1.0, 1.0, 1.0}, roughness);
    shared.texture = std::make_shared<const Texture>(texture);
    const PaintRef material = std::make_shared<const Paint>(shared);
    std::vector<PaintRef> paints;
    for (int i = 0; i < count; ++i) {
        Paint field = *paint(name, colors[static_cast<std::size_t>(i)], roughness);
        field.drawn_as = material;
        field.swatch = {(static_cast<float>(i) + 0.5f) / static_cast<float>(count), 0.5f};
        paints.push_back(std::make_shared<const Paint>(field));
    }
    return paints;
}
