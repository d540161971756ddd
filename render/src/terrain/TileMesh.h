// Triangles of one tile of the ground, from the raster's posts.
#pragma once

#include <osg/Geometry>

#include <vector>

#include "engine/math/Transform.h"
#include "engine/scene/ElevationRaster.h"
#include "terrain/TileTriangles.h"

/// The vertex attribute with the imagery coordinates and the height above the ellipsoid.
constexpr unsigned GROUND_ATTRIBUTE = 6;

/// A square of 32 x 32 cells, each `stride` posts wide, from the post (column, row) to the north-east. Parts outside
/// the raster are cut off.
struct TileArea {
    int column = 0, row = 0;
    int stride = 1;
};

/// The extent of the imagery, degrees.
struct ImageryPlace {
    double west = 0.0, south = 0.0, east = 1.0, north = 1.0;
};

/// Position, size and roughness of a tile.
struct TileMeasures {
    dmat4 frame;                               ///< east, north, up and the centre at height 0, geocentric
    double half_east = 0.0, half_north = 0.0;  ///< extents in that frame, metres
    HeightRange heights;                       ///< of its posts; empty when all are holes
    double error = 0.0;                        ///< maximum distance of the omitted posts from its surface, metres
};

/// Makes tiles. Frame thread only, like the raster.
class TileBuilder {
public:
    TileBuilder(const ElevationRaster& raster, const ImageryPlace& imagery);
    /// Without heights: the height range is unlimited.
    TileMeasures place(const TileArea& area) const;
    TileMeasures measure(const TileArea& area);
    /// Triangles in the frame of the tile's measures, null when there are none. Tolerance 0 gives all triangles of its
    /// posts, otherwise few triangles that follow the posts to about the tolerance. `skirt`: height of the rim that
    /// covers the cracks between tiles. Metres.
    osg::ref_ptr<osg::Geometry> build(const TileArea& area, const dmat4& frame, double tolerance, double skirt);
    /// Normal of the ground at a post, in east, north and up at that post. REQUIRES a post of the raster.
    vec3 normalAt(int column, int row) const;

private:
    /// The columns or the rows of a tile: `count` posts of its own, one before and one after.
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
    double m_column_width, m_row_height;  ///< metres between posts in the raster's centre
    // Of the tile that is being made.
    Line m_columns, m_rows;
    float m_heights[TILE_POSTS + 2][TILE_POSTS + 2];  ///< with a margin of one post
    TilePosts m_posts;
    TileCorners m_corners;
    int m_vertices[TILE_POSTS * TILE_POSTS];  ///< by post: its vertex, -1 for none
};
