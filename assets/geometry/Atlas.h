// One image with several views of a model.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "geometry/Canvas.h"
#include "geometry/Mesh.h"

/// A side of a model, projected flat: the canvas coordinates of a point p are (dot(p, right), dot(p, up)), in metres.
struct Chart {
    dvec3 facing;                         ///< outward; a face uses the chart with the most similar direction
    dvec3 right, up;                      ///< unit vectors
    double left, bottom, right_end, top;  ///< metres
    bool folded = false;                  ///< both halves of a symmetrical model share the chart: |x| is used
};

/// Charts placed in a square image, all at the same scale.
class Atlas {
public:
    Atlas(int size, double pixels_per_metre, const Color& ground);

    /// Places a chart to the right of the previous ones, or in a new row when the row is full. Throws
    /// std::runtime_error when the image is full. The canvas is valid as long as the atlas.
    Canvas& add(const Chart& chart);
    /// The finished image with its projection. Draw the charts first.
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
    int m_x = 0, m_y = 0, m_row = 0;  ///< position of the next page, and height of the row
    std::list<Page> m_pages;
};

/// A paint with a texture for its colour, and also for its emission when `emission` (kcd/m^2) is above 0.
PaintRef texturedPaint(const std::string& name, const std::shared_ptr<const Texture>& texture, double roughness,
                       double emission = 0.0);
