// Coarser levels of a surface: fewer triangles, no further off its shape than they say.
#include <gtest/gtest.h>

#include <cmath>

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

TEST(SurfaceDetail, ASmallSurfaceStaysWhole) {
    EXPECT_EQ(makeLevels(makeBall(4, 6)).size(), 1u);
}

}  // namespace
