// Packs charts and finds a face's position on them.
#include "geometry/Atlas.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

/// The data of a page that the projection needs. The texture keeps a copy after the atlas is destroyed.
struct Placement {
    Chart chart;
    double x, y, height;
};

const Placement& findPlacement(const std::vector<Placement>& places, const dvec3& normal) {
    const auto facing = [&](const Placement& place) {
        dvec3 n = normal;
        if (place.chart.folded) n.x = std::abs(n.x);
        return dot(n, place.chart.facing);
    };
    return *std::max_element(places.begin(), places.end(),
                             [&](const Placement& a, const Placement& b) { return facing(a) < facing(b); });
}

}  // namespace

Atlas::Atlas(int size, double pixels_per_metre, const Color& ground)
    : m_size(size), m_scale(pixels_per_metre), m_ground(ground) {}

Canvas& Atlas::add(const Chart& chart) {
    const int width = static_cast<int>(std::ceil((chart.right_end - chart.left) * m_scale));
    const int height = static_cast<int>(std::ceil((chart.top - chart.bottom) * m_scale));
    if (m_x + width > m_size) {
        m_x = 0;
        m_y += m_row;
        m_row = 0;
    }
    if (width > m_size || m_y + height > m_size) throw std::runtime_error("charts larger than their image");
    const Canvas canvas(width, height, chart.left, chart.top - height / m_scale, chart.left + width / m_scale,
                        chart.top, m_ground);
    m_pages.push_back({chart, m_x, m_y, width, height, canvas});
    m_x += width;
    m_row = std::max(m_row, height);
    return m_pages.back().canvas;
}

std::shared_ptr<const Texture> Atlas::texture() const {
    Canvas image(m_size, m_size, 0.0, 0.0, 1.0, 1.0, m_ground);
    std::vector<Placement> places;
    for (const Page& page : m_pages) {
        image.paste(page.canvas, page.x, page.y);
        places.push_back(
            {page.chart, static_cast<double>(page.x), static_cast<double>(page.y), static_cast<double>(page.height)});
    }
    Texture texture;
    texture.png = image.toPng();
    const double size = m_size, scale = m_scale;
    texture.project = [places, size, scale](const dvec3& point, const dvec3& normal) {
        const Placement& place = findPlacement(places, normal);
        dvec3 p = point;
        if (place.chart.folded) p.x = std::abs(p.x);
        const double u = place.x + (dot(p, place.chart.right) - place.chart.left) * scale;
        const double v = place.y + (place.chart.top - dot(p, place.chart.up)) * scale;
        return std::array<double, 2>{u / size, v / size};
    };
    return std::make_shared<const Texture>(texture);
}

PaintRef texturedPaint(const std::string& name, const std::shared_ptr<const Texture>& texture, double roughness,
                       double emission) {
    Paint made = *paint(name, {1.0, 1.0, 1.0}, roughness);
    made.texture = texture;
    made.emission = {emission, emission, emission};
    made.textured_emission = emission > 0.0;
    return std::make_shared<const Paint>(made);
}
