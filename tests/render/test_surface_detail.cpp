// Coarser levels of a surface: fewer triangles, no further off its shape than they say.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/scene/MeshData.h"
#include "mirror/SurfaceDetail.h"

namespace {

constexpr float RADIUS = 5.0f;

MeshSurface makeBall(unsigned rings, unsigned sectors) {
    MeshSurface ball;
    for (unsigned i = 0; i <= rings; ++i) {
        for (unsigned j = 0; j < sectors; ++j) {
            const double down = M_PI * i / rings, round = 2.0 * M_PI * j / sectors;
            const auto x = static_cast<float>(std::sin(down) * std::cos(round));
            const auto y = static_cast<float>(std::sin(down) * std::sin(round));
            const auto z = static_cast<float>(std::cos(down));
            ball.positions.push_back({RADIUS * x, RADIUS * y, RADIUS * z});
            ball.normals.push_back({x, y, z});
            if (i == rings) continue;
            const unsigned a = i * sectors + j, b = i * sectors + (j + 1) % sectors;
            for (const unsigned corner : {a, a + sectors, b, b, a + sectors, b + sectors})
                ball.indices.push_back(corner);
        }
    }
    return ball;
}

const osg::DrawElementsUInt& trianglesOf(const DetailLevel& level) {
    return static_cast<const osg::DrawElementsUInt&>(*level.geometry->getPrimitiveSet(0));
}

/// How far inside the ball the triangles' middles lie at most.
float depthOf(const DetailLevel& level, const MeshSurface& ball) {
    const osg::DrawElementsUInt& corners = trianglesOf(level);
    float deepest = 0.0f;
    for (std::size_t i = 0; i + 2 < corners.size(); i += 3) {
        osg::Vec3 middle;
        for (std::size_t k = 0; k < 3; ++k)
            middle += osg::Vec3(ball.positions[corners[i + k]].data()[0], ball.positions[corners[i + k]].data()[1],
                                ball.positions[corners[i + k]].data()[2]) /
                      3.0f;
        deepest = std::max(deepest, RADIUS - middle.length());
    }
    return deepest;
}

TEST(SurfaceDetail, EveryLevelHasFewerTrianglesAndKeepsToItsError) {
    const MeshSurface ball = makeBall(96, 128);
    const std::vector<DetailLevel> levels = makeLevels(ball);
    ASSERT_GE(levels.size(), 3u);
    EXPECT_EQ(trianglesOf(levels[0]).size(), ball.indices.size());
    const float own = depthOf(levels[0], ball);
    for (std::size_t i = 1; i < levels.size(); ++i) {
        EXPECT_LT(trianglesOf(levels[i]).size() * 4, trianglesOf(levels[i - 1]).size() * 3);
        EXPECT_GT(levels[i].error, levels[i - 1].error);
        EXPECT_LT(depthOf(levels[i], ball), own + 2.0f * levels[i].error);
        EXPECT_EQ(levels[i].geometry->getVertexArray(), levels[0].geometry->getVertexArray());
    }
}

/// How far a vertex lies from the nearest corner of a level at most.
float farthestFrom(const DetailLevel& level, const MeshSurface& surface) {
    float farthest = 0.0f;
    for (const auto& p : surface.positions) {
        float nearest = std::numeric_limits<float>::max();
        for (const unsigned corner : trianglesOf(level)) {
            const auto& q = surface.positions[corner];
            nearest = std::min(nearest, std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]));
        }
        farthest = std::max(farthest, nearest);
    }
    return farthest;
}

TEST(SurfaceDetail, LoosePiecesGrowTogetherFarAway) {
    MeshSurface chain;
    for (unsigned i = 0; i < 300; ++i) {
        const float x = 0.05f * static_cast<float>(i);
        for (const auto& [dx, dz] : {std::pair{0.0f, 0.0f}, {0.15f, 0.0f}, {0.15f, 0.15f}, {0.0f, 0.15f}}) {
            chain.positions.push_back({x + dx, std::sin(x), dz});
        }
        for (const unsigned corner : {0u, 1u, 2u, 0u, 2u, 3u}) chain.indices.push_back(4 * i + corner);
    }
    const std::vector<DetailLevel> levels = makeLevels(chain);
    EXPECT_LT(4 * trianglesOf(levels.back()).size(), chain.indices.size());
    for (const DetailLevel& level : levels) EXPECT_LE(farthestFrom(level, chain), level.error + 1e-4f);
}

TEST(SurfaceDetail, ASmallSurfaceStaysWhole) {
    EXPECT_EQ(makeLevels(makeBall(4, 6)).size(), 1u);
}

}  // namespace
