// Triangulation of posts; the adaptive one follows Evans, Kirkpatrick and Townsend, "Right-triangulated irregular
// networks" (Algorithmica 30, 2001): a triangle is halved at the midpoint of its longest side while the error of the
// post there is too large.
#include "terrain/TileTriangles.h"

#include <algorithm>
#include <cmath>

namespace {

/// The ends of a triangle's longest side; they determine the right-angled corner.
struct Side {
    std::int8_t ax, ay, bx, by;

    int middleX() const { return (ax + bx) / 2; }
    int middleY() const { return (ay + by) / 2; }
    int middle() const { return middleY() * TILE_POSTS + middleX(); }
    // The corner: an end rotated by a quarter turn about the midpoint. The two ends and the corner are
    // counter-clockwise.
    int cornerX() const { return middleX() + ay - middleY(); }
    int cornerY() const { return middleY() + middleX() - ax; }
    int corner() const { return cornerY() * TILE_POSTS + cornerX(); }
};

/// All triangles of a tile, each before its two halves; level by level.
std::vector<Side> makeSides() {
    constexpr std::int8_t END = TILE_CELLS;
    std::vector<Side> sides{{0, 0, END, END}, {END, END, 0, 0}};
    for (std::size_t i = 0; sides.size() < 2 * TILE_CELLS * TILE_CELLS - 2; ++i) {
        const Side s = sides[i];
        const auto x = static_cast<std::int8_t>(s.cornerX()), y = static_cast<std::int8_t>(s.cornerY());
        sides.push_back({x, y, s.ax, s.ay});
        sides.push_back({s.bx, s.by, x, y});
    }
    return sides;
}

const std::vector<Side>& getSides() {
    static const std::vector<Side> sides = makeSides();
    return sides;
}

void add(const TilePosts& posts, int a, int b, int c, TileCorners& out) {
    if (std::max({posts.heights[a], posts.heights[b], posts.heights[c]}) < MIN_SEEN_HEIGHT) return;
    for (const int i : {a, b, c}) out.push_back(static_cast<std::uint16_t>(i));
}

}  // namespace

bool TilePosts::isWhole() const {
    if (columns < TILE_POSTS || rows < TILE_POSTS) return false;
    return std::none_of(std::begin(heights), std::end(heights), [](float h) { return std::isnan(h); });
}

float seenHeight(float height) {
    constexpr float SHORE_LOW = -3.0f, SHORE_HIGH = 4.0f, SHORE_GAIN = 14.0f, BED_SHARE = 0.3f;
    const float shore = SHORE_GAIN * std::clamp(height, SHORE_LOW, SHORE_HIGH);
    return shore + (height >= 0.0f ? height : BED_SHARE * std::max(height, MIN_SEEN_HEIGHT));
}

void joinAll(const TilePosts& posts, TileCorners& out) {
    const auto isHole = [&](int i) { return std::isnan(posts.heights[i]); };
    for (int y = 0; y + 1 < posts.rows; ++y) {
        for (int x = 0; x + 1 < posts.columns; ++x) {
            const int south_west = y * TILE_POSTS + x, north_west = south_west + TILE_POSTS;
            if (isHole(south_west) || isHole(north_west + 1)) continue;
            if (!isHole(south_west + 1)) add(posts, south_west, south_west + 1, north_west + 1, out);
            if (!isHole(north_west)) add(posts, south_west, north_west + 1, north_west, out);
        }
    }
}

void joinFew(const TilePosts& posts, float tolerance, TileCorners& out) {
    const std::vector<Side>& sides = getSides();
    float heights[TILE_POSTS * TILE_POSTS];
    std::transform(std::begin(posts.heights), std::end(posts.heights), heights, seenHeight);
    // By post at the midpoint of a side: its error, or a larger one of a post that becomes a vertex only after it. Two
    // triangles share a side, so that both are halved or none.
    float errors[TILE_POSTS * TILE_POSTS] = {};
    const std::size_t num_inner = sides.size() / 2 - 1;
    for (std::size_t i = sides.size(); i-- > 0;) {
        const Side& s = sides[i];
        const int middle = s.middle();
        const float between = 0.5f * (heights[s.ay * TILE_POSTS + s.ax] + heights[s.by * TILE_POSTS + s.bx]);
        float error = std::max(errors[middle], std::fabs(between - heights[middle]));
        if (i < num_inner)
            error = std::max({error, errors[sides[2 * i + 2].middle()], errors[sides[2 * i + 3].middle()]});
        errors[middle] = error;
    }
    // The halves of triangle i are 2 i + 2 and 2 i + 3.
    const auto descend = [&](const auto& self, std::size_t i) -> void {
        const Side& s = sides[i];
        const int a = s.ay * TILE_POSTS + s.ax, b = s.by * TILE_POSTS + s.bx;
        if (errors[s.middle()] <= tolerance) return add(posts, a, b, s.corner(), out);
        if (i < num_inner) {
            self(self, 2 * i + 2);
            self(self, 2 * i + 3);
        } else {
            add(posts, a, s.middle(), s.corner(), out);
            add(posts, s.middle(), b, s.corner(), out);
        }
    };
    descend(descend, 0);
    descend(descend, 1);
}
