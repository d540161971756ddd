// Triangles of one piece of the ground, from the raster's posts.
#pragma once

#include <osg/Geometry>

#include <vector>

#include "engine/math/Transform.h"
#include "engine/scene/ElevationRaster.h"
#include "terrain/TileTriangles.h"

/// The vertex attribute that carries the place in the imagery and the height above the ellipsoid.
constexpr unsigned GROUND_ATTRIBUTE = 6;

/// A square of 32 x 32 cells, each `stride` posts wide, from the post (column, row) to the north-east. What lies beyond
/// the raster is cut off.
struct TileArea {
    int column = 0, row = 0;
    int stride = 1;
};

/// The rectangle that the imagery covers, degrees.
struct ImageryPlace {
    double west = 0.0, south = 0.0, east = 1.0, north = 1.0;
};

/// Where a piece of the ground lies, and how rough it is.
struct TileMeasures {
    dmat4 frame;                               ///< east, north, up and the middle at height 0, geocentric
    double half_east = 0.0, half_north = 0.0;  ///< extents in that frame, metres
    HeightRange heights;                       ///< of its posts; empty where there are only holes
    double error = 0.0;                        ///< how far the posts between its own may lie from it, metres
};

/// Makes tiles. Frame thread only, like the raster.
class TileBuilder {
public:
    TileBuilder(const ElevationRaster& raster, const ImageryPlace& imagery);
    /// The place alone: any height is taken to be there.
    TileMeasures place(const TileArea& area) const;
    TileMeasures measure(const TileArea& area);
    /// Its triangles in the frame of its measures, null when there are none. With a tolerance of 0 they are all that
    /// its posts make, else few that follow them to about that. `skirt`: how far the rim hangs down over the cracks
    /// between tiles. Metres.
    osg::ref_ptr<osg::Geometry> build(const TileArea& area, const dmat4& frame, double tolerance, double skirt);
    /// Upward direction of the ground at a post, east, north and up there. REQUIRES a post of the raster.
    vec3 normalAt(int column, int row) const;

private:
    /// The columns or the rows of a tile: `count` of its own after one before, and one after.
    struct Line {
        int posts[TILE_POSTS + 2];
        int count;
    };
    struct Arrays;

    Line makeLine(int first, int stride, int last) const;
    void sample(const TileArea& area);
    float measureError() const;
    void addVertices(const dmat4& frame, Arrays& arrays);
    void addSkirt(double skirt, Arrays& arrays) const;
    vec3 slopeNormal(float west, float east, float south, float north, int columns, int rows) const;
    float heightAt(int x, int y) const { return m_heights[y + 1][x + 1]; }

    const ElevationRaster& m_raster;
    ImageryPlace m_imagery;
    double m_column_width, m_row_height;  ///< metres between posts in the raster's middle
    // Of the tile that is being made.
    Line m_columns, m_rows;
    float m_heights[TILE_POSTS + 2][TILE_POSTS + 2];  ///< with the margin
    TilePosts m_posts;
    TileCorners m_corners;
    int m_vertices[TILE_POSTS * TILE_POSTS];  ///< of each post: its vertex, -1 for none
};
