// Collects, transforms and mirrors triangles.
#include "geometry/Mesh.h"

#include <utility>

PaintRef paint(const std::string& name, const std::array<double, 3>& color, double roughness, double metallic) {
    Paint made;
    made.name = name;
    made.color = {color[0], color[1], color[2], 1.0};
    made.roughness = roughness;
    made.metallic = metallic;
    return std::make_shared<const Paint>(made);
}

Mesh::Surface& Mesh::surface(const PaintRef& paint) {
    for (Surface& s : m_surfaces) {
        if (s.paint == paint) return s;
    }
    return m_surfaces.emplace_back(Surface{paint, {}});
}

void Mesh::triangle(const PaintRef& paint, const dvec3& a, const dvec3& b, const dvec3& c) {
    constexpr double MIN_AREA = 1e-8;  // square metres
    if (length(cross(b - a, c - a)) > MIN_AREA) surface(paint).triangles.push_back({a, b, c});
}

void Mesh::quad(const PaintRef& paint, const dvec3& a, const dvec3& b, const dvec3& c, const dvec3& d) {
    triangle(paint, a, b, c);
    triangle(paint, a, c, d);
}

Mesh& Mesh::add(const Mesh& other, const dmat4& transform) {
    for (const Surface& from : other.m_surfaces) {
        std::vector<Triangle>& to = surface(from.paint).triangles;
        for (const Triangle& t : from.triangles) to.push_back({transform * t[0], transform * t[1], transform * t[2]});
    }
    return *this;
}

Mesh& Mesh::addPair(const Mesh& other) {
    return add(other).add(other.mirrored());
}

Mesh Mesh::transformed(const dmat4& transform) const {
    Mesh result;
    result.add(*this, transform);
    return result;
}

Mesh Mesh::mirrored() const {
    Mesh result = transformed(dmat4({-1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {}));
    for (Surface& s : result.m_surfaces) {
        for (Triangle& t : s.triangles) std::swap(t[1], t[2]);
    }
    return result;
}

Mesh Mesh::repainted(const PaintRef& paint) const {
    Mesh result;
    for (const Surface& s : m_surfaces) {
        for (const Triangle& t : s.triangles) result.triangle(paint, t[0], t[1], t[2]);
    }
    return result;
}

Mesh Mesh::facingOutward() const {
    dvec3 middle;
    double volume = 0.0;
    for (const Surface& s : m_surfaces) {
        for (const Triangle& t : s.triangles) middle += (t[0] + t[1] + t[2]) / 3.0;
    }
    middle *= 1.0 / static_cast<double>(std::max<std::size_t>(1, countTriangles()));
    for (const Surface& s : m_surfaces) {
        for (const Triangle& t : s.triangles) volume += dot(t[0] - middle, cross(t[1] - middle, t[2] - middle));
    }
    Mesh result = *this;
    if (volume < 0.0) {
        for (Surface& s : result.m_surfaces) {
            for (Triangle& t : s.triangles) std::swap(t[1], t[2]);
        }
    }
    return result;
}

std::size_t Mesh::countTriangles() const {
    std::size_t n = 0;
    for (const Surface& s : m_surfaces) n += s.triangles.size();
    return n;
}
