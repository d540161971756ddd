// Triangulation of a tile's posts.
#pragma once

#include <cstdint>
#include <vector>

/// Cells per side of a tile, whatever their size; a power of two.
constexpr int TILE_CELLS = 32;
constexpr int TILE_POSTS = TILE_CELLS + 1;

/// The posts of a tile, south row first; NaN for holes. A tile that extends beyond its raster has fewer columns and
/// rows.
struct TilePosts {
    int columns = TILE_POSTS, rows = TILE_POSTS;
    float heights[TILE_POSTS * TILE_POSTS];  ///< TILE_POSTS per row

    float at(int x, int y) const { return heights[y * TILE_POSTS + x]; }
    bool isWhole() const;  ///< neither cut off nor with holes
};

/// Corners as indices into TilePosts::heights, three per triangle, counter-clockwise from above.
using TileCorners = std::vector<std::uint16_t>;

/// Ground below this height is hidden by the sea, metres.
constexpr float MIN_SEEN_HEIGHT = -30.0f;

/// Two triangles per cell, split from south-west to north-east like the raster's own; none with a hole at a corner and
/// none in deep water.
void joinAll(const TilePosts& posts, TileCorners& out);
/// A height weighted by the visibility of errors: near the shore, where errors move the water's edge, they count
/// several times; in deep water they do not count.
float seenHeight(float height);
/// Few right-angled triangles without cracks: a triangle is halved while the post at the midpoint of its long side has
/// an error of more than `tolerance` metres of `seenHeight`. REQUIRES whole posts.
void joinFew(const TilePosts& posts, float tolerance, TileCorners& out);
