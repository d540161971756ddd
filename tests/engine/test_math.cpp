// Rotations, transforms, boxes and the globe, against independent computations.
#include <gtest/gtest.h>

#include <GeographicLib/Geocentric.hpp>

#include "engine/globe/EllipsoidModel.h"
#include "engine/math/Bounds.h"
#include "engine/math/Transform.h"
#include "engine/math/jMath.h"

namespace {

void expectNear(const dvec3& a, const dvec3& b, double tolerance) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

dvec3 randomVector(Random& random, double reach) {
    return {random.getDouble(-reach, reach), random.getDouble(-reach, reach), random.getDouble(-reach, reach)};
}

dmat3 turn(int axis, double degrees) {
    const double a = degrees * jMath::DEG2RAD, s = std::sin(a), c = std::cos(a);
    if (axis == 0) return {{1, 0, 0}, {0, c, s}, {0, -s, c}};
    if (axis == 1) return {{c, 0, -s}, {0, 1, 0}, {s, 0, c}};
    return {{c, s, 0}, {-s, c, 0}, {0, 0, 1}};
}

}  // namespace

TEST(Math, EulerAnglesComposeAndComeBack) {
    Random random(7);
    for (int i = 0; i < 200; ++i) {
        const dvec3 a(random.getDouble(-180, 180), random.getDouble(-89, 89), random.getDouble(-180, 180));
        const dvec3 v = randomVector(random, 10.0);
        const dvec3 zxy = turn(2, a.x) * (turn(0, a.y) * (turn(1, a.z) * v));
        expectNear(dquat::fromEulerZXY(a) * v, zxy, 1e-12);
        expectNear(dquat::fromEulerZXY(a).getMat3() * v, zxy, 1e-12);
        expectNear(dquat::fromEulerZXY(a).toEulerZXY(), a, 1e-9);
        expectNear(fromEulerXYZ(a) * v, turn(0, a.x) * (turn(1, a.y) * (turn(2, a.z) * v)), 1e-12);
        expectNear(toEulerXYZ(fromEulerXYZ(a)), a, 1e-9);
    }
    for (const double pitch : {90.0, -90.0}) {  // straight up the angles are ambiguous, the rotation is not
        const dquat q = dquat::fromEulerZXY(30, pitch, 20);
        expectNear(dquat::fromEulerZXY(q.toEulerZXY()) * dvec3(1, 2, 3), q * dvec3(1, 2, 3), 1e-9);
    }
}

TEST(Math, TransformsSplitAndCompose) {
    Random random(9);
    for (int i = 0; i < 100; ++i) {
        const dvec3 t = randomVector(random, 7e6);
        const dquat r = dquat(randomVector(random, 1), random.getDouble(-180, 180));
        const dvec3 s(random.getDouble(0.1, 5), random.getDouble(0.1, 5), random.getDouble(-5, -0.1));
        const dmat4 m = composeTransform(t, r, s);
        dvec3 t2, s2;
        dquat r2;
        decomposeTransform(m, t2, r2, s2);
        const dmat4 back = composeTransform(t2, r2, s2);
        const dvec3 p = randomVector(random, 10);
        expectNear(back * p, m * p, 1e-8);
        expectNear(inverse(m) * (m * p), p, 1e-8);
    }
}

TEST(Math, ZeroAndFlatInputsGiveNoNaN) {
    EXPECT_EQ(normalize(dvec3()), dvec3());
    dvec3 t, s;
    dquat r;
    decomposeTransform(dmat4({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, {}), t, r, s);
    EXPECT_TRUE(isFinite(dmat4(r, t)));
    EXPECT_EQ(s.x, 0.0);
    EXPECT_TRUE(isFinite(inverse(dmat4({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, {}))));
}

TEST(Math, SegmentsMeetBoxes) {
    const BoundBox box({-1, -1, -1}, {1, 1, 1});
    const struct {
        dvec3 a, b;
        bool hit;
    } cases[] = {{{-5, 0, 0}, {5, 0, 0}, true}, {{-5, 0, 0}, {-2, 0, 0}, false},      {{0, 0, 0}, {0, 0, 0}, true},
                 {{-5, 1, 0}, {5, 1, 0}, true}, {{-5, 1.01, 0}, {5, 1.01, 0}, false}, {{-3, 0, 0}, {0, 3, 0}, false},
                 {{5, 0, 0}, {-5, 0, 0}, true}};
    for (const auto& c : cases) EXPECT_EQ(intersects(box, c.a, c.b), c.hit) << c.a.x << ' ' << c.a.y << " to " << c.b.x;
}

TEST(Globe, AgreesWithGeographicLib) {
    const EllipsoidModel ellipsoid;
    const GeographicLib::Geocentric& oracle = GeographicLib::Geocentric::WGS84();
    Random random(10);
    for (int i = 0; i < 20000; ++i) {
        const dvec3 geo(random.getDouble(-180, 180), random.getDouble(-90, 90), random.getDouble(-10e3, 400e3));
        dvec3 world;
        oracle.Forward(geo.y, geo.x, geo.z, world.x, world.y, world.z);
        expectNear(ellipsoid.toWorld(geo), world, 2e-8);
        const dvec3 back = ellipsoid.toWorld(ellipsoid.toWGS(world));
        expectNear(back, world, 2e-8);
        EXPECT_NEAR(ellipsoid.toWGS(world).z, geo.z, 2e-8);
        if (HasFailure()) FAIL() << geo.x << ' ' << geo.y << ' ' << geo.z;
    }
}

TEST(Globe, PolesEquatorAndCentreAreSound) {
    const EllipsoidModel ellipsoid;
    const dvec3 places[] = {{0, 0, EllipsoidModel::SEMI_MINOR + 10},
                            {0, 0, -EllipsoidModel::SEMI_MINOR - 10},
                            {EllipsoidModel::SEMI_MAJOR + 10, 0, 0},
                            {0, -EllipsoidModel::SEMI_MAJOR - 10, 0}};
    for (const dvec3& p : places) {
        EXPECT_NEAR(ellipsoid.toWGS(p).z, 10.0, 1e-8);
        const dmat4 frame = ellipsoid.getWGSTransform(p);
        expectNear(frame.z, normalize(p), 1e-12);
        expectNear(cross(frame.x, frame.y), frame.z, 1e-12);
    }
    EXPECT_TRUE(isFinite(ellipsoid.toWGS({})));
    EXPECT_TRUE(isFinite(ellipsoid.getWGSTransform({})));
}
