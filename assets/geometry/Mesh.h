// Triangles with paints, in the builders' frame: metres, +Y ahead, +X right, +Z up.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/math/Transform.h"

/// A PNG file's bytes and the flat projection that lays it on a model: u = dot(p, across) + offset[0], v likewise; p in
/// the model's frame, v counts from the image's top.
struct Texture {
    std::vector<unsigned char> png;
    dvec3 across{}, down{};  ///< 1/metres
    std::array<double, 2> offset{0.0, 0.0};
    /// In place of the flat projection, when given: (u, v) of a point of a face with that unit normal.
    std::function<std::array<double, 2>(const dvec3& point, const dvec3& normal)> project{};
};

/// A material. Colours are linear.
struct Paint {
    std::string name;
    std::array<double, 4> color{0.5, 0.5, 0.5, 1.0};  ///< alpha below 1 is drawn see-through
    double metallic = 0.0;
    double roughness = 0.8;
    std::array<double, 3> emission{0.0, 0.0, 0.0};
    bool double_sided = false;
    std::shared_ptr<const Texture> texture;
    double cutoff = 0.0;             ///< above 0, nothing is drawn where the texture's opacity is below it
    bool textured_emission = false;  ///< the texture colours the emission too
    /// The paint that it is drawn with, when several share one so as to be drawn at once: its own colour is then that
    /// of `swatch` (u, v) on the shared paint's texture, and nothing else here counts.
    std::shared_ptr<const Paint> drawn_as;
    std::array<float, 2> swatch{0.0f, 0.0f};
};

using PaintRef = std::shared_ptr<const Paint>;

/// Makes a paint; `color` with three values is solid.
PaintRef paint(const std::string& name, const std::array<double, 3>& color, double roughness = 0.8,
               double metallic = 0.0);

/// Triangles grouped by paint, counter-clockwise from outside.
class Mesh {
public:
    using Triangle = std::array<dvec3, 3>;
    struct Surface {
        PaintRef paint;
        std::vector<Triangle> triangles;
    };

    /// Triangles without area are left out.
    void triangle(const PaintRef& paint, const dvec3& a, const dvec3& b, const dvec3& c);
    void quad(const PaintRef& paint, const dvec3& a, const dvec3& b, const dvec3& c, const dvec3& d);
    Mesh& add(const Mesh& other, const dmat4& transform = {});
    /// Adds the other and its mirror image.
    Mesh& addPair(const Mesh& other);

    Mesh transformed(const dmat4& transform) const;
    Mesh moved(const dvec3& by) const { return transformed(dmat4::translation(by)); }
    Mesh mirrored() const;                        ///< left for right, still facing outward
    Mesh repainted(const PaintRef& paint) const;  ///< all of it in one paint
    /// Turns all triangles round when the volume that they enclose comes out negative.
    Mesh facingOutward() const;

    bool empty() const { return m_surfaces.empty(); }
    const std::vector<Surface>& surfaces() const { return m_surfaces; }
    std::size_t countTriangles() const;

private:
    Surface& surface(const PaintRef& paint);

    std::vector<Surface> m_surfaces;
};
