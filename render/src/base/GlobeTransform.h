// Placement of scene graph nodes on the globe.
#pragma once

#include <osg/MatrixTransform>

#include <algorithm>

/// A transform with bounds that hold far from the origin. Bounds have single precision: on the globe the rounding is
/// half a metre, and the bounds of small objects would be empty.
class GlobeTransform : public osg::MatrixTransform {
public:
    osg::BoundingSphere computeBound() const override {
        constexpr double ROUNDING = 1.0;  // metres
        const osg::BoundingSphere inside = osg::Group::computeBound();
        if (!inside.valid()) return inside;
        const osg::Matrixd& m = getMatrix();
        const auto lengthOf = [&m](int row) { return osg::Vec3d(m(row, 0), m(row, 1), m(row, 2)).length(); };
        const double scale = std::max({lengthOf(0), lengthOf(1), lengthOf(2)});
        return {osg::Vec3(osg::Vec3d(inside.center()) * m), static_cast<float>(inside.radius() * scale + ROUNDING)};
    }
};
