// Lines, rings and numbers with soft edges, and encoding as a PNG file.
#include "geometry/Canvas.h"

#include <cpl_vsi.h>
#include <gdal_priv.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "engine/math/jMath.h"
#include "plan/Noise.h"

namespace {

/// Distance from (x, y) to the segment with flat ends: beyond an end the distance along the segment counts, too.
double segmentDistance(double x, double y, double x0, double y0, double x1, double y1, double half_width) {
    const double dx = x1 - x0, dy = y1 - y0;
    const double length = std::hypot(dx, dy);
    const double along = ((x - x0) * dx + (y - y0) * dy) / length;
    const double across = std::abs((x - x0) * dy - (y - y0) * dx) / length;
    return std::max({across - half_width, -along, along - length});
}

/// Distance to the closed outline, negative inside.
double polygonDistance(const std::vector<std::array<double, 2>>& points, double x, double y) {
    double nearest = std::numeric_limits<double>::max();
    bool inside = false;
    for (std::size_t i = 0, j = points.size() - 1; i < points.size(); j = i++) {
        const auto& a = points[i];
        const auto& b = points[j];
        const double dx = b[0] - a[0], dy = b[1] - a[1];
        const double t = std::clamp(((x - a[0]) * dx + (y - a[1]) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
        nearest = std::min(nearest, std::hypot(x - a[0] - t * dx, y - a[1] - t * dy));
        if ((a[1] > y) != (b[1] > y) && x < a[0] + dx * (y - a[1]) / dy) inside = !inside;
    }
    return inside ? -nearest : nearest;
}

/// Strokes of the digits on a grid of 2 x 4, from the lower left corner: pairs of points.
struct Stroke {
    int x0, y0, x1, y1;
};
const std::vector<Stroke>& strokesOf(char digit) {
    static const std::vector<Stroke> NONE{};
    static const Stroke TOP{0, 4, 2, 4}, MIDDLE{0, 2, 2, 2}, FOOT{0, 0, 2, 0}, LEFT_UP{0, 2, 0, 4},
        LEFT_LOW{0, 0, 0, 2}, RIGHT_UP{2, 2, 2, 4}, RIGHT_LOW{2, 0, 2, 2};
    static const std::array<std::vector<Stroke>, 10> DIGITS{{
        {TOP, FOOT, LEFT_UP, LEFT_LOW, RIGHT_UP, RIGHT_LOW},
        {{1, 0, 1, 4}},
        {TOP, MIDDLE, FOOT, RIGHT_UP, LEFT_LOW},
        {TOP, MIDDLE, FOOT, RIGHT_UP, RIGHT_LOW},
        {MIDDLE, LEFT_UP, RIGHT_UP, RIGHT_LOW},
        {TOP, MIDDLE, FOOT, LEFT_UP, RIGHT_LOW},
        {TOP, MIDDLE, FOOT, LEFT_UP, LEFT_LOW, RIGHT_LOW},
        {TOP, RIGHT_UP, RIGHT_LOW},
        {TOP, MIDDLE, FOOT, LEFT_UP, LEFT_LOW, RIGHT_UP, RIGHT_LOW},
        {TOP, MIDDLE, FOOT, LEFT_UP, RIGHT_UP, RIGHT_LOW},
    }};
    return digit >= '0' && digit <= '9' ? DIGITS[static_cast<std::size_t>(digit - '0')] : NONE;
}

}  // namespace

Canvas::Canvas(int width, int height, double left, double bottom, double right, double top, const Color& ground)
    : m_width(width),
      m_height(height),
      m_left(left),
      m_top(top),
      m_scale_x(width / (right - left)),
      m_scale_y(height / (top - bottom)),
      m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), ground) {}

void Canvas::blend(int px, int py, const Color& color, double coverage) {
    Color& pixel =
        m_pixels[static_cast<std::size_t>(py) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(px)];
    const double opacity = coverage * color[3] / 255.0;
    for (std::size_t i = 0; i < 3; ++i) {
        pixel[i] = static_cast<std::uint8_t>(std::lround(pixel[i] + (color[i] - pixel[i]) * opacity));
    }
    pixel[3] = static_cast<std::uint8_t>(std::max<long>(pixel[3], std::lround(opacity * 255.0)));
}

template <class Distance>
void Canvas::fill(double x0, double y0, double x1, double y1, const Color& color, Distance distance) {
    const int left = std::max(0, static_cast<int>(std::floor(pixelX(std::min(x0, x1)))) - 1);
    const int right = std::min(m_width - 1, static_cast<int>(std::ceil(pixelX(std::max(x0, x1)))) + 1);
    const int top = std::max(0, static_cast<int>(std::floor(pixelY(std::max(y0, y1)))) - 1);
    const int bottom = std::min(m_height - 1, static_cast<int>(std::ceil(pixelY(std::min(y0, y1)))) + 1);
    const double wide = 1.0 / m_scale_x, high = 1.0 / m_scale_y, far = wide + high;
    for (int py = top; py <= bottom; ++py) {
        for (int px = left; px <= right; ++px) {
            const double x = worldX(px), y = worldY(py), d = distance(x, y);
            if (d > far) continue;
            // The soft edge is one pixel wide.
            const double soft = std::hypot(distance(x + wide, y) - d, distance(x, y + high) - d);
            const double coverage = std::clamp(0.5 - d / std::max(soft, 1e-9), 0.0, 1.0);
            if (coverage > 0.0) blend(px, py, color, coverage);
        }
    }
}

void Canvas::line(double x0, double y0, double x1, double y1, double width, const Color& color) {
    const double half = width / 2.0;
    fill(std::min(x0, x1) - half, std::min(y0, y1) - half, std::max(x0, x1) + half, std::max(y0, y1) + half, color,
         [=](double x, double y) { return segmentDistance(x, y, x0, y0, x1, y1, half); });
}

void Canvas::dashes(double x0, double y0, double x1, double y1, double width, double piece, double gap,
                    const Color& color) {
    const double length = std::hypot(x1 - x0, y1 - y0);
    const double ux = (x1 - x0) / length, uy = (y1 - y0) / length;
    for (double at = 0.0; at < length; at += piece + gap) {
        const double end = std::min(length, at + piece);
        line(x0 + ux * at, y0 + uy * at, x0 + ux * end, y0 + uy * end, width, color);
    }
}

void Canvas::circle(double x, double y, double radius, double width, const Color& color) {
    const double reach = radius + width;
    fill(x - reach, y - reach, x + reach, y + reach, color,
         [=](double px, double py) { return std::abs(std::hypot(px - x, py - y) - radius) - width / 2.0; });
}

void Canvas::rectangle(double x0, double y0, double x1, double y1, const Color& color) {
    fill(x0, y0, x1, y1, color, [=](double x, double y) { return std::max({x0 - x, x - x1, y0 - y, y - y1}); });
}

void Canvas::shade(double x0, double y0, double x1, double y1, const Color& color,
                   const std::function<double(double, double)>& strength) {
    const int left = std::max(0, static_cast<int>(std::floor(pixelX(std::min(x0, x1)))));
    const int right = std::min(m_width - 1, static_cast<int>(std::ceil(pixelX(std::max(x0, x1)))));
    const int top = std::max(0, static_cast<int>(std::floor(pixelY(std::max(y0, y1)))));
    const int bottom = std::min(m_height - 1, static_cast<int>(std::ceil(pixelY(std::min(y0, y1)))));
    for (int py = top; py <= bottom; ++py) {
        for (int px = left; px <= right; ++px) {
            const double s = strength(worldX(px), worldY(py));
            if (s > 0.0) blend(px, py, color, std::min(1.0, s));
        }
    }
}

void Canvas::paste(const Canvas& other, int px, int py) {
    const int columns = std::min(other.m_width, m_width - px);
    for (int row = 0; row < other.m_height && py + row < m_height; ++row) {
        const auto from = other.m_pixels.begin() + static_cast<std::ptrdiff_t>(row) * other.m_width;
        std::copy(from, from + columns, m_pixels.begin() + static_cast<std::ptrdiff_t>(py + row) * m_width + px);
    }
}

void Canvas::polygon(const std::vector<std::array<double, 2>>& points, const Color& color) {
    double x0 = points[0][0], x1 = x0, y0 = points[0][1], y1 = y0;
    for (const auto& p : points) {
        x0 = std::min(x0, p[0]), x1 = std::max(x1, p[0]);
        y0 = std::min(y0, p[1]), y1 = std::max(y1, p[1]);
    }
    fill(x0, y0, x1, y1, color, [&points](double x, double y) { return polygonDistance(points, x, y); });
}

void Canvas::number(const std::string& digits, double x, double y, double height, double heading, const Color& color) {
    const double unit = height / 4.0;
    const double c = std::cos(heading * jMath::DEG2RAD), s = std::sin(heading * jMath::DEG2RAD);
    double left = -(static_cast<double>(digits.size()) * 3.0 - 1.0) / 2.0 * unit;
    const double width = 0.6 * unit;
    for (const char digit : digits) {
        for (const Stroke& k : strokesOf(digit)) {
            // Strokes meet in full corners: each is extended by half its width at both ends.
            const double ox = k.x1 > k.x0 ? width / 2.0 : 0.0, oy = k.y1 > k.y0 ? width / 2.0 : 0.0;
            const double ax = left + k.x0 * unit - ox, ay = k.y0 * unit - oy;
            const double bx = left + k.x1 * unit + ox, by = k.y1 * unit + oy;
            line(x + ax * c + ay * s, y - ax * s + ay * c, x + bx * c + by * s, y - bx * s + by * c, width, color);
        }
        left += 3.0 * unit;
    }
}

void Canvas::weather(int amount, double patch, std::uint32_t seed) {
    const Noise noise(seed);
    for (int py = 0; py < m_height; ++py) {
        for (int px = 0; px < m_width; ++px) {
            const double fine = noise.at(px * 0.5, py * 0.5);
            const double broad = noise.at(worldX(px) / patch, worldY(py) / patch);
            const long change = std::lround((0.4 * fine + 0.6 * broad) * amount);
            Color& pixel = m_pixels[static_cast<std::size_t>(py) * static_cast<std::size_t>(m_width) +
                                    static_cast<std::size_t>(px)];
            for (std::size_t i = 0; i < 3; ++i) {
                pixel[i] = static_cast<std::uint8_t>(std::clamp<long>(pixel[i] + change, 0, 255));
            }
        }
    }
}

void Canvas::repaint(const std::function<Color(double, double, const Color&)>& made) {
    for (int py = 0; py < m_height; ++py) {
        for (int px = 0; px < m_width; ++px) {
            Color& pixel = m_pixels[static_cast<std::size_t>(py) * static_cast<std::size_t>(m_width) +
                                    static_cast<std::size_t>(px)];
            pixel = made(worldX(px), worldY(py), pixel);
        }
    }
}

std::vector<unsigned char> Canvas::toPng() const {
    GDALDriver* memory = GetGDALDriverManager()->GetDriverByName("MEM");
    GDALDriver* png = GetGDALDriverManager()->GetDriverByName("PNG");
    if (memory == nullptr || png == nullptr) throw std::runtime_error("GDAL has no PNG driver");
    const bool opaque = std::all_of(m_pixels.begin(), m_pixels.end(), [](const Color& c) { return c[3] == 255; });
    const int bands = opaque ? 3 : 4;
    GDALDataset* pixels = memory->Create("", m_width, m_height, bands, GDT_Byte, nullptr);
    auto* bytes = const_cast<Color*>(m_pixels.data());
    const CPLErr done = pixels->RasterIO(GF_Write, 0, 0, m_width, m_height, bytes, m_width, m_height, GDT_Byte, bands,
                                         nullptr, 4, 4LL * m_width, 1, nullptr);
    const char* const name = "/vsimem/canvas.png";
    GDALDataset* written = done == CE_None ? png->CreateCopy(name, pixels, FALSE, nullptr, nullptr, nullptr) : nullptr;
    GDALClose(pixels);
    if (written == nullptr) throw std::runtime_error("cannot encode a PNG image");
    GDALClose(written);
    vsi_l_offset size = 0;
    GByte* file = VSIGetMemFileBuffer(name, &size, TRUE);
    std::vector<unsigned char> result(file, file + size);
    VSIFree(file);
    return result;
}
