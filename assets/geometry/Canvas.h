// Images drawn in code.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
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
    /// The inside of a closed line of points.
    void polygon(const std::vector<std::array<double, 2>>& points, const Color& color);
    /// Digits standing upright along `heading` (degrees clockwise from up), `height` metres tall, their foot's middle
    /// at (x, y).
    void number(const std::string& digits, double x, double y, double height, double heading, const Color& color);
    /// Lays a colour on with a strength from 0 to 1 that varies by place, within a rectangle of metres.
    void shade(double x0, double y0, double x1, double y1, const Color& color,
               const std::function<double(double x, double y)>& strength);
    /// Copies another picture in, its upper left corner at the given pixel.
    void paste(const Canvas& other, int px, int py);
    /// Darkens and lightens every pixel by up to `amount` levels, in patches of two pixels' and of `patch` metres'
    /// size.
    void weather(int amount, double patch, std::uint32_t seed);

    /// Gives every pixel the colour `made`(x, y, its colour).
    void repaint(const std::function<Color(double x, double y, const Color& color)>& made);

    /// Without the opacity where the whole picture is opaque.
    std::vector<unsigned char> toPng() const;
    const std::vector<Color>& getPixels() const { return m_pixels; }  ///< rows from the top

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
