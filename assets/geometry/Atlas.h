// One image that holds a model seen from several sides.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "geometry/Canvas.h"
#include "geometry/Mesh.h"

/// A side of a model laid flat: (dot(p, right), dot(p, up)) of a point are the metres of its canvas.
struct Chart {
    dvec3 facing;                         ///< outward; a face goes to the chart that it faces most
    dvec3 right, up;                      ///< unit vectors
    double left, bottom, right_end, top;  ///< metres
    bool folded = false;                  ///< both halves of a symmetrical model lie on it: |x| counts
};

/// Charts side by side in a square image, all to the same scale.
class Atlas {
public:
    Atlas(int size, double pixels_per_metre, const Color& ground);

    /// Places a chart right of those before it, or in a new row where the row is full. Throws std::runtime_error when
    /// the image is full. The canvas is valid as long as the atlas.
    Canvas& add(const Chart& chart);
    /// The finished image with its projection. Draw first.
    std::shared_ptr<const Texture> texture() const;

private:
    struct Page {
        Chart chart;
        int x, y, width, height;  ///< pixels in the image
        Canvas canvas;
    };

    int m_size;
    double m_scale;
    Color m_ground;
    int m_x = 0, m_y = 0, m_row = 0;  ///< where the next page goes, and how tall the row is
    std::list<Page> m_pages;
};

/// A paint that takes its colour from a texture, and its glow too when `emission` (kcd/m^2) is above 0.
PaintRef texturedPaint(const std::string& name, const std::shared_ptr<const Texture>& texture, double roughness,
                       double emission = 0.0);
