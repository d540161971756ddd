// Triangles with paints, in the builders' frame: metres, +Y ahead, +X right, +Z up.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/math/Transform.h"

/// The bytes of a PNG file and its planar projection onto a model: u = dot(p, across) + offset[0], v likewise. p is in
/// the model's frame; v is measured from the image's top.
struct Texture {
    std::vector<unsigned char> png;
    dvec3 across{}, down{};  ///< 1/metres
    std::array<double, 2> offset{0.0, 0.0};
    /// Replaces the planar projection when set: (u, v) of a point on a face with this unit normal.
    std::function<std::array<double, 2>(const dvec3& point, const dvec3& normal)> project{};
};

/// A material. Colours are linear.
struct Paint {
    std::string name;
    std::array<double, 4> color{0.5, 0.5, 0.5, 1.0};  ///< alpha below 1: transparent
    double metallic = 0.0;
    double roughness = 0.8;
    std::array<double, 3> emission{0.0, 0.0, 0.0};
    bool double_sided = false;
    std::shared_ptr<const Texture> texture;
    double cutoff = 0.0;             ///< above 0: texels with a lower opacity are not drawn
    bool textured_emission = false;  ///< the texture also colours the emission
    /// The shared paint with which this one is drawn, so that several are one draw call. The colour is then that of
    /// `swatch` (u, v) in the shared paint's texture; all other fields are ignored.
    std::shared_ptr<const Paint> drawn_as;
    std::array<float, 2> swatch{0.0f, 0.0f};
};

using PaintRef = std::shared_ptr<const Paint>;

/// Creates a paint; `color` with three values is opaque.
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

    /// Ignores triangles without area.
    void triangle(const PaintRef& paint, const dvec3& a, const dvec3& b, const dvec3& c);
    void quad(const PaintRef& paint, const dvec3& a, const dvec3& b, const dvec3& c, const dvec3& d);
    Mesh& add(const Mesh& other, const dmat4& transform = {});
    /// Adds the other mesh and its mirror image.
    Mesh& addPair(const Mesh& other);

    Mesh transformed(const dmat4& transform) const;
    Mesh moved(const dvec3& by) const { return transformed(dmat4::translation(by)); }
    Mesh mirrored() const;                        ///< left and right exchanged, faces still outward
    Mesh repainted(const PaintRef& paint) const;  ///< all of it with one paint
    /// Reverses all triangles when the enclosed volume is negative.
    Mesh facingOutward() const;

    bool empty() const { return m_surfaces.empty(); }
    const std::vector<Surface>& surfaces() const { return m_surfaces; }
    std::size_t countTriangles() const;

private:
    Surface& surface(const PaintRef& paint);

    std::vector<Surface> m_surfaces;
};
