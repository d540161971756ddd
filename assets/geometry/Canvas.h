// Images drawn in code.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// Red, green, blue, opacity, 0..255, as they stand in the image file (sRGB).
using Color = std::array<std::uint8_t, 4>;

/// A picture of `width` x `height` pixels that stands for a rectangle of metres: x from left to right, y from bottom to
/// top. Shapes are drawn with soft edges; what lies outside is left out.
class Canvas {
public:
    Canvas(int width, int height, double left, double bottom, double right, double top, const Color& ground);

    void line(double x0, double y0, double x1, double y1, double width, const Color& color);
    /// A line of pieces `piece` metres long with gaps of `gap`.
    void dashes(double x0, double y0, double x1, double y1, double width, double piece, double gap, const Color& color);
    void circle(double x, double y, double radius, double width, const Color& color);
    void rectangle(double x0, double y0, double x1, double y1, const Color& color);
    /// Digits standing upright along `heading` (degrees clockwise from up), `height` metres tall, their foot's middle
    /// at (x, y).
    void number(const std::string& digits, double x, double y, double height, double heading, const Color& color);
    /// Darkens and lightens every pixel by up to `amount` levels, in patches of two pixels' and of `patch` metres'
    /// size.
    void weather(int amount, double patch, std::uint32_t seed);

    std::vector<unsigned char> toPng() const;

private:
    void blend(int px, int py, const Color& color, double coverage);
    double pixelX(double x) const { return (x - m_left) * m_scale_x; }
    double pixelY(double y) const { return (m_top - y) * m_scale_y; }
    double worldX(int px) const { return m_left + (px + 0.5) / m_scale_x; }
    double worldY(int py) const { return m_top - (py + 0.5) / m_scale_y; }
    /// Draws what lies within `edge` metres of zero of `distance`(x, y), over the given box of metres.
    template <class Distance>
    void fill(double x0, double y0, double x1, double y1, const Color& color, Distance distance);

    int m_width, m_height;
    double m_left, m_top, m_scale_x, m_scale_y;  ///< scales in pixels a metre
    std::vector<Color> m_pixels;
};
