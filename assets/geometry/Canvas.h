// Images drawn by code.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Red, green, blue, opacity, 0..255, with the encoding of the image file (sRGB).
using Color = std::array<std::uint8_t, 4>;

/// A picture of `width` x `height` pixels that represents a rectangle in metres: x from left to right, y from bottom to
/// top. Shapes have soft edges and are clipped to the rectangle.
class Canvas {
public:
    Canvas(int width, int height, double left, double bottom, double right, double top, const Color& ground);

    void line(double x0, double y0, double x1, double y1, double width, const Color& color);
    /// A line of dashes `piece` metres long with gaps of `gap` metres.
    void dashes(double x0, double y0, double x1, double y1, double width, double piece, double gap, const Color& color);
    void circle(double x, double y, double radius, double width, const Color& color);
    void rectangle(double x0, double y0, double x1, double y1, const Color& color);
    /// Fills a closed polygon.
    void polygon(const std::vector<std::array<double, 2>>& points, const Color& color);
    /// Digits upright along `heading` (degrees clockwise from up), `height` metres tall, with the middle of their foot
    /// at (x, y).
    void number(const std::string& digits, double x, double y, double height, double heading, const Color& color);
    /// Blends a colour with a strength from 0 to 1 that depends on the position, within a rectangle in metres.
    void shade(double x0, double y0, double x1, double y1, const Color& color,
               const std::function<double(double x, double y)>& strength);
    /// Copies another picture, with its upper left corner at the given pixel.
    void paste(const Canvas& other, int px, int py);
    /// Changes the brightness of every pixel by up to `amount` levels, in patches of two pixels and of `patch` metres.
    void weather(int amount, double patch, std::uint32_t seed);

    /// Sets every pixel to the colour `made`(x, y, its colour).
    void repaint(const std::function<Color(double x, double y, const Color& color)>& made);

    /// PNG file; without an opacity channel when the whole picture is opaque.
    std::vector<unsigned char> toPng() const;
    const std::vector<Color>& getPixels() const { return m_pixels; }  ///< rows from the top

private:
    void blend(int px, int py, const Color& color, double coverage);
    double pixelX(double x) const { return (x - m_left) * m_scale_x; }
    double pixelY(double y) const { return (m_top - y) * m_scale_y; }
    double worldX(int px) const { return m_left + (px + 0.5) / m_scale_x; }
    double worldY(int py) const { return m_top - (py + 0.5) / m_scale_y; }
    /// Fills the area where `distance`(x, y) is negative, with soft edges, within the given box in metres.
    template <class Distance>
    void fill(double x0, double y0, double x1, double y1, const Color& color, Distance distance);

    int m_width, m_height;
    double m_left, m_top, m_scale_x, m_scale_y;  ///< scales in pixels per metre
    std::vector<Color> m_pixels;
};
