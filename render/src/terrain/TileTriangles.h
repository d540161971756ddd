// How the posts of a tile are joined to triangles.
#pragma once

#include <cstdint>
#include <vector>

/// Cells along a tile's edge, whatever their size; a power of two.
constexpr int TILE_CELLS = 32;
constexpr int TILE_POSTS = TILE_CELLS + 1;

/// The posts that a tile is made of, south row first; NaN for holes. Where the tile reaches beyond its raster there are
/// fewer columns and rows.
struct TilePosts {
    int columns = TILE_POSTS, rows = TILE_POSTS;
    float heights[TILE_POSTS * TILE_POSTS];  ///< TILE_POSTS a row

    float at(int x, int y) const { return heights[y * TILE_POSTS + x]; }
    bool isWhole() const;  ///< neither cut off nor with a hole
};

/// Corners as indices into TilePosts::heights, three to a triangle, counter-clockwise from above.
using TileCorners = std::vector<std::uint16_t>;

/// Below this the sea hides the ground, metres.
constexpr float DEEPEST_SEEN = -30.0f;

/// Every cell's two triangles, split from south-west to north-east as the raster's own; none with a hole at a corner
/// and none in the deep.
void joinAll(const TilePosts& posts, TileCorners& out);
/// A height as errors in it are seen: along the shore, where they move the water's edge, they count several times; what
/// lies in the deep counts not at all.
float seenHeight(float height);
/// Few right-angled triangles without cracks among them: one is halved while the post at the middle of its long side is
/// further than `tolerance` metres of `seenHeight` away. REQUIRES whole posts.
void joinFew(const TilePosts& posts, float tolerance, TileCorners& out);
