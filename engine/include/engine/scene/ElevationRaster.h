// The posts of an elevation raster, read tile by tile, and the triangles between them. Terrain queries, terrain
// colliders and the picture share these heights. Frame thread only: reading changes a cache.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "engine/Api.h"
#include "engine/text/Containers.h"

class RasterSource;

/// A position relative to the posts: integers are posts, fractions are between posts.
struct PostPlace {
    double column = 0.0;  ///< increases eastward from 0 at the westernmost posts
    double row = 0.0;     ///< increases northward from 0 at the southernmost posts
};

/// Minimum and maximum post of an area, metres above the ellipsoid; min > max where all posts are holes.
struct HeightRange {
    float min = 1e30f;
    float max = -1e30f;

    bool isEmpty() const { return min > max; }
    void expand(float height) {
        if (height < min) min = height;
        if (height > max) max = height;
    }
    void expand(const HeightRange& other) {
        min = other.min < min ? other.min : min;
        max = other.max > max ? other.max : max;
    }
};

/// The four posts of a cell, metres above the ellipsoid; NaN for a hole.
struct CellHeights {
    float south_west, south_east, north_west, north_east;
};

/// The ground of one triangle: height = base + east * u + north * v, metres, at the fractions u and v of its cell's
/// extent from the south-western post. All NaN when a corner is a hole.
struct GroundPlane {
    double base, east, north;

    double at(double u, double v) const { return base + east * u + north * v; }
};

/// The triangle of a cell with its south-eastern corner, or the other one.
inline GroundPlane planeOf(const CellHeights& cell, bool south_east) {
    const double diagonal = static_cast<double>(cell.north_east) - cell.south_west;
    const double side = static_cast<double>(south_east ? cell.south_east : cell.north_west) - cell.south_west;
    const double base = cell.south_west + 0.0 * (diagonal + side);  // NaN if any of the three is
    return south_east ? GroundPlane{base, side, diagonal - side} : GroundPlane{base, diagonal - side, side};
}

/// A height field on a regular grid of longitude and latitude (WGS84). Cell (c, r) is between the posts (c, r) and (c +
/// 1, r + 1). The ground of a cell is two triangles, flat in longitude, latitude and height, split by the line from its
/// south-west to its north-east post: (SW, SE, NE) and (SW, NE, NW), both counter-clockwise from above. A triangle with
/// a hole at a corner is not ground. A triangle drawn straight between the geocentric positions of posts s metres apart
/// is at most s^2 / (4 R) below that ground, R the earth's radius: 0.04 mm for posts 30 m apart.
class ENGINE_API ElevationRaster {
public:
    static constexpr int TILE_CELLS = 256;  ///< cells per side of a tile; a tile has one more post per side
    static constexpr int BLOCK_CELLS = 16;  ///< cells per side of a block, the finest area with stored bounds
    static constexpr int MAX_TILES = 512;   ///< tiles in memory; the least recently used one is replaced
    /// A post with a larger distance from the ellipsoid, metres, is invalid and counts as a hole.
    static constexpr float HEIGHT_LIMIT = 15000.0f;

    /// Opens any raster that GDAL reads, by its absolute path; projected, rotated and other geographic systems are
    /// resampled to WGS84. Null, with one log line, when it cannot be read, has fewer than 2 x 2 posts or no
    /// georeference. A raster of up to 64 tiles is read at once.
    static std::unique_ptr<ElevationRaster> open(const jString& path);
    ~ElevationRaster();

    int getNumColumns() const { return m_columns; }   ///< posts from west to east, at least 2
    int getNumRows() const { return m_rows; }         ///< posts from south to north, at least 2
    double getWest() const { return m_west; }         ///< longitude of column 0, degrees
    double getSouth() const { return m_south; }       ///< latitude of row 0, degrees
    double getLonStep() const { return m_lon_step; }  ///< degrees between columns, positive
    double getLatStep() const { return m_lat_step; }  ///< degrees between rows, positive

    double getLongitude(double column) const { return m_west + column * m_lon_step; }  ///< degrees, not wrapped
    double getLatitude(double row) const { return m_south + row * m_lat_step; }        ///< degrees
    /// Post coordinates of a position in degrees, also outside the raster. Longitudes wrap around the raster's centre.
    PostPlace toPosts(double lon, double lat) const;
    bool isInside(const PostPlace& place) const;  ///< the edge posts are inside

    /// Height of a post in metres; NaN for a hole. REQUIRES a post of the raster.
    float getPost(int column, int row) const;
    /// REQUIRES 0 <= column < getNumColumns() - 1, 0 <= row < getNumRows() - 1.
    CellHeights getCell(int column, int row) const;

    /// Height of the ground in metres. False outside the raster and on a triangle with a hole; `altitude` is then
    /// unchanged.
    bool getAltitude(double lon, double lat, double& altitude) const;

    /// Bounds of all posts: exact for a raster read at once, otherwise the limits of valid posts.
    const HeightRange& getRange() const { return m_range; }
    /// Bounds of the posts of the cells (first_column, first_row) to (last_column, last_row), inclusive. The area is
    /// rounded outward: to blocks, to tiles when it is wide, and to the whole raster when it is wider still. REQUIRES
    /// valid cells.
    HeightRange getRange(int first_column, int first_row, int last_column, int last_row) const;
    /// Reads the posts of these cells that are not in memory, at most `budget` tiles; decreases `budget` by the number
    /// read. True when all are in memory. REQUIRES valid cells of at most MAX_TILES tiles.
    bool prepare(int first_column, int first_row, int last_column, int last_row, int& budget) const;

private:
    static constexpr int TILE_POSTS = TILE_CELLS + 1;
    static constexpr int TILE_BLOCKS = TILE_CELLS / BLOCK_CELLS;

    struct Tile {
        std::vector<float> posts;  ///< TILE_POSTS per row, from the south-west; NaN for holes and outside the raster
        std::vector<HeightRange> blocks;  ///< TILE_BLOCKS per row
        std::uint64_t used = 0;           ///< m_uses at its last use
        int index = -1;                   ///< in m_slots
    };

    explicit ElevationRaster(std::unique_ptr<RasterSource> source);

    bool readAll();
    const Tile& getTile(int index) const;
    const Tile& load(int index) const;
    Tile& takeSlot() const;
    HeightRange measure(Tile& tile) const;
    HeightRange getTileRange(int index) const;
    const HeightRange& getBlockRange(int block_column, int block_row) const;
    int tileAt(int column, int row) const { return row / TILE_CELLS * m_tile_columns + column / TILE_CELLS; }

    std::unique_ptr<RasterSource> m_source;
    int m_columns = 0, m_rows = 0;
    int m_tile_columns = 0, m_tile_rows = 0;
    double m_west = 0.0, m_south = 0.0;
    double m_lon_step = 1.0, m_lat_step = 1.0;
    double m_middle = 0.0;  ///< longitude of the raster's centre
    HeightRange m_range;
    mutable bool m_failed = false;  ///< a part of the file could not be read: its posts are holes
    mutable std::uint64_t m_uses = 0;
    mutable std::vector<Tile> m_tiles;
    mutable std::vector<std::int16_t> m_slots;       ///< by tile: its index in m_tiles, -1 while not in memory
    mutable std::vector<HeightRange> m_tile_ranges;  ///< by tile; kept when the tile is dropped
    mutable std::vector<bool> m_measured;            ///< by tile: whether its range is valid
};
