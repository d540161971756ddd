// Trees near the eye where the imagery shows woods.
#pragma once

#include <osg/Geometry>
#include <osg/Image>
#include <osg/Texture2D>

#include "engine/math/Transform.h"
#include "terrain/TileMesh.h"

/// Trees face the eye: each is a textured square. Their positions are deterministic.
class GroundTrees {
public:
    /// `imagery` may be null: then there are no trees.
    GroundTrees(const ElevationRaster& raster, const osg::Image* imagery, const ImageryPlace& place);
    /// The trees of an area of the raster's posts, in the frame of its tile; null for none.
    osg::ref_ptr<osg::Geometry> plant(const TileArea& area, const dmat4& frame) const;

private:
    struct Tree;
    bool findTree(double column, double row, std::uint32_t chance, Tree& tree) const;
    float woodsAt(const osg::Vec2d& uv) const;

    const ElevationRaster& m_raster;
    const osg::ref_ptr<const osg::Image> m_imagery;
    const ImageryPlace m_place;
    double m_spots_per_column = 1.0, m_spots_per_row = 1.0;
};

/// Texture with the side view of a tree and, to its right, the top view. Red: lightness. Green: opacity.
osg::ref_ptr<osg::Texture2D> makeTreeTexture();
