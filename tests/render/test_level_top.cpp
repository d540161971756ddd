// What a deck hides from above: never what can be seen past it or through a hole.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "engine/scene/MeshData.h"
#include "mirror/LevelTop.h"

namespace {

/// Upward squares of 10 m, 20 m above the ground; `keep` says which of 20 by 8 are there, by column and row.
template <class Keep>
MeshSurface makeDeck(Keep keep) {
    MeshSurface deck;
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 20; ++column) {
            if (!keep(column, row)) continue;
            const auto first = static_cast<unsigned>(deck.positions.size());
            const float x = static_cast<float>(column) * 10.0f, y = static_cast<float>(row) * 10.0f;
            for (const auto& [dx, dy] : {std::pair{0.0f, 0.0f}, {10.0f, 0.0f}, {10.0f, 10.0f}, {0.0f, 10.0f}}) {
                deck.positions.push_back({x + dx, y + dy, 20.0f});
            }
            for (const unsigned corner : {0u, 1u, 2u, 0u, 2u, 3u}) deck.indices.push_back(first + corner);
        }
    }
    return deck;
}

std::array<dvec3, 8> boxAt(const dvec3& low, const dvec3& high) {
    std::array<dvec3, 8> corners;
    for (unsigned i = 0; i < 8; ++i) {
        corners[i] = {(i & 1) ? high.x : low.x, (i & 2) ? high.y : low.y, (i & 4) ? high.z : low.z};
    }
    return corners;
}

struct Look {
    const char* what;
    dvec3 eye, low, high;
    bool hidden;
};

const Look LOOKS[] = {
    {"straight below the eye", {50, 40, 26}, {45, 35, -1}, {55, 45, 1}, true},
    {"far ahead, seen through the deck", {50, 40, 26}, {500, 20, -1}, {520, 60, 1}, true},
    {"beyond the bow", {50, 40, 26}, {900, 20, -1}, {920, 60, 1}, false},
    {"over the side", {50, 40, 26}, {50, 300, -1}, {60, 310, 1}, false},
    {"half past the side", {50, 40, 26}, {50, 150, -1}, {60, 320, 1}, false},
    {"partly above the deck", {50, 40, 26}, {45, 35, -1}, {55, 45, 21}, false},
    {"from within a metre", {50, 40, 20.5}, {45, 35, -1}, {55, 45, 1}, false},
    {"from below", {50, 40, 10}, {45, 35, -1}, {55, 45, 1}, false},
    {"from beside, under the deck", {-300, 40, 26}, {5, 20, -1}, {15, 60, 1}, false},
};

TEST(LevelTop, HidesWhatLiesBehindAll) {
    const auto top = LevelTop::find(makeDeck([](int, int) { return true; }));
    ASSERT_TRUE(top);
    for (const Look& look : LOOKS) {
        const bool above = std::isfinite(top->getDistance(look.eye));
        EXPECT_EQ(above && top->hides(look.eye, boxAt(look.low, look.high)), look.hidden) << look.what;
    }
}

TEST(LevelTop, AHoleLetsLookThrough) {
    const auto top = LevelTop::find(makeDeck([](int column, int row) { return column != 8 || row != 4; }));
    ASSERT_TRUE(top);
    const dvec3 eye(50.0, 40.0, 26.0);  // the hole lies 30 to 40 m ahead, and 130 to 180 m on the water
    EXPECT_FALSE(top->hides(eye, boxAt({190.0, 50.0, -1.0}, {200.0, 60.0, 1.0})));
    EXPECT_TRUE(top->hides(eye, boxAt({90.0, 30.0, -1.0}, {100.0, 40.0, 1.0})));
}

TEST(LevelTop, SmallOrSteepSurfacesHideNothing) {
    EXPECT_FALSE(LevelTop::find(makeDeck([](int column, int row) { return column < 4 && row < 4; })));
    MeshSurface ramp = makeDeck([](int, int) { return true; });
    for (auto& p : ramp.positions) p[2] += 0.2f * p[0];
    EXPECT_FALSE(LevelTop::find(ramp));
    EXPECT_FALSE(LevelTop::find(MeshSurface()));
}

}  // namespace
