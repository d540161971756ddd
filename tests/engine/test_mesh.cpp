// Picks on meshes, and what becomes of unusable triangles.
#include <cmath>

#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "scene/SurfaceTree.h"
#include "support/TestScene.h"

namespace {

using Triangle = std::array<dvec3, 3>;

MeshSurface makeSurface(const std::vector<Triangle>& triangles) {
    MeshSurface surface;
    for (const Triangle& triangle : triangles) {
        for (const dvec3& p : triangle) {
            surface.indices.push_back(static_cast<std::uint32_t>(surface.positions.size()));
            surface.positions.push_back({float(p.x), float(p.y), float(p.z)});
        }
    }
    return surface;
}

std::shared_ptr<MeshData> makeMesh(const std::vector<Triangle>& triangles) {
    std::vector<MeshSurface> surfaces;
    surfaces.push_back(makeSurface(triangles));
    return std::make_shared<MeshData>(std::move(surfaces));
}

/// Both triangles of a rectangle round the origin at a height.
std::vector<Triangle> makeDeck(double length, double width, double z) {
    const dvec3 a(-width / 2, -length / 2, z), b(width / 2, -length / 2, z), c(width / 2, length / 2, z),
        d(-width / 2, length / 2, z);
    return {{a, b, c}, {a, c, d}};
}

/// Every triangle one by one (Moeller and Trumbore, J. Graphics Tools 2, 1997). Sets `doubtful` where the answer
/// depends on rounding: at a triangle's edge, along it, or at an end of the segment.
double bruteForce(const MeshSurface& surface, const dvec3& from, const dvec3& to, bool& doubtful) {
    double first = 2.0;
    const dvec3 step = to - from;
    for (std::size_t i = 0; i < surface.indices.size(); i += 3) {
        const auto corner = [&](std::size_t k) {
            const auto& p = surface.positions[surface.indices[i + k]];
            return dvec3(p[0], p[1], p[2]);
        };
        const dvec3 a = corner(0), ab = corner(1) - a, ac = corner(2) - a, p = cross(step, ac), s = from - a,
                    q = cross(s, ab);
        const double det = dot(ab, p), u = dot(s, p) / det, v = dot(step, q) / det, t = dot(ac, q) / det;
        const double inside = std::min({u, v, 1.0 - u - v}), within = std::min(t, 1.0 - t);
        if (inside > -1e-4 && within > -1e-6 && (inside < 1e-4 || within < 1e-6)) doubtful = true;
        if (inside >= 0.0 && within >= 0.0) first = std::min(first, t);
    }
    return first;
}

dvec3 randomPoint(Random& r, double reach) {
    const double x = r.getDouble(-reach, reach), y = r.getDouble(-reach, reach);
    return {x, y, r.getDouble(-reach, reach)};
}

class MeshTest : public SceneTest {};

TEST_F(MeshTest, PicksAgreeWithEveryTriangleTriedAtGeocentricPlaces) {
    Random r(1);
    const EllipsoidModel globe;
    int hits = 0, checked = 0;
    for (int round = 0; round < 20; ++round) {
        std::vector<Triangle> triangles;
        for (int i = 0; i < 150; ++i) {
            const dvec3 at = randomPoint(r, 40.0);
            triangles.push_back({at + randomPoint(r, 8.0), at + randomPoint(r, 8.0), at + randomPoint(r, 8.0)});
        }
        ObjectMeshStatic object(makeMesh(triangles));
        const dvec3 place = globe.toWorld({r.getDouble(-180, 180), r.getDouble(-90, 90), r.getDouble(0, 500)});
        object.setTransform(
            dmat4(dquat::fromEulerZXY(r.getDouble(0, 360), r.getDouble(-90, 90), r.getDouble(0, 360)), place));
        for (int i = 0; i < 1000; ++i) {
            const double reach = i % 4 == 0 ? 10.0 : i % 4 == 1 ? 60.0 : i % 4 == 2 ? 1000.0 : 100e3;
            const dvec3 middle = randomPoint(r, 40.0), away = randomPoint(r, reach);
            const dvec3 from = object.toWorld(middle + away),
                        to = object.toWorld(middle - away * r.getDouble(0.0, 1.0));
            const dvec3 a = object.toLocal(from), b = object.toLocal(to);
            bool doubtful = false;
            const double expected = bruteForce(object.getMesh().surfaces[0], a, b, doubtful);
            if (doubtful) continue;
            ++checked;
            dvec3 hit;
            const bool met = object.getIntersection(a, b, 0, hit);
            ASSERT_EQ(met, expected <= 1.0) << round << " " << i;
            if (!met) continue;
            ++hits;
            EXPECT_LT(length(object.toWorld(hit) - (from + (to - from) * expected)), 1e-5) << round << " " << i;
        }
    }
    EXPECT_GT(checked, 18000);
    EXPECT_GT(hits, 4000);
}

TEST_F(MeshTest, EndsAndEdgesOfASegmentBetweenCloseLayers) {
    std::vector<Triangle> layers = makeDeck(300.0, 70.0, 20.0);
    for (const Triangle& t : makeDeck(300.0, 70.0, 19.9995)) layers.push_back(t);
    const auto mesh = makeMesh(layers);
    constexpr double NONE = std::numeric_limits<double>::quiet_NaN(), MISS = 9.0;
    const struct {
        const char* what;
        dvec3 from, to;
        double hit;  ///< its height
    } cases[] = {{"from above", {1, 1, 25}, {1, 1, 0}, 20.0},
                 {"from below", {1, 1, 0}, {1, 1, 25}, 19.9995},
                 {"from between", {3, 4, 19.9998}, {3, 4, 0}, 19.9995},
                 {"up from between", {3, 4, 19.9998}, {3, 4, 40}, 20.0},
                 {"across the diagonal", {7, 30, 25}, {7, 30, 0}, 20.0},
                 {"at the rim", {35, 0, 25}, {35, 0, 0}, 20.0},
                 {"ends on it", {1, 1, 25}, {1, 1, 20}, 20.0},
                 {"starts on it", {1, 1, 20}, {1, 1, 0}, 20.0},
                 {"no length", {1, 1, 20}, {1, 1, 20}, MISS},
                 {"not a number", {1, 1, NONE}, {1, 1, 0}, MISS},
                 {"endless", {1, 1, HUGE_VAL}, {1, 1, 0}, MISS}};
    for (const auto& c : cases) {
        dvec3 hit(9, 9, MISS);
        EXPECT_EQ(mesh->trees[0]->intersect(c.from, c.to, hit), c.hit != MISS) << c.what;
        EXPECT_NEAR(hit.z, c.hit, 1e-5) << c.what;
    }
}

TEST_F(MeshTest, UnusableTrianglesAreLeftOut) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    std::vector<Triangle> triangles = makeDeck(2.0, 2.0, 1.0);
    triangles.push_back({dvec3(1, 1, 1), dvec3(1, 1, 1), dvec3(2, 1, 1)});
    triangles.push_back({dvec3(0, 0, 0), dvec3(1, 1, 1), dvec3(2, 2, 2)});
    triangles.push_back({dvec3(0, 0, nan), dvec3(1, 0, 0), dvec3(0, 1, 0)});
    triangles.push_back({dvec3(0, 0, HUGE_VAL), dvec3(1, 0, 0), dvec3(0, 1, 0)});
    std::vector<MeshSurface> surfaces;
    surfaces.push_back(makeSurface(triangles));
    surfaces[0].indices.insert(surfaces[0].indices.end(), {0, 1, 4000000000u});
    surfaces.push_back(makeSurface({triangles[2]}));
    const MeshData mesh(std::move(surfaces));
    EXPECT_EQ(mesh.surfaces[0].indices.size(), 6u);
    EXPECT_EQ(mesh.bounds.max, dvec3(1, 1, 1));
    dvec3 hit;
    EXPECT_FALSE(mesh.trees[1]->intersect({0.5, 0.2, 5}, {0.5, 0.2, -5}, hit));
}

}  // namespace
