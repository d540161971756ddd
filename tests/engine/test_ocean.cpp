// The sea: its waves against the tables of the Beaufort scale and against what physics allows, and its place on the
// globe.
#include <cstring>

#include "engine/scene/ObjectOcean.h"
#include "scene/WaveSpectrum.h"
#include "support/TestScene.h"

namespace {

constexpr double PI = jMath::PI;

/// WMO-No. 306: probable wave height on the open sea, metres. The mean period (first moment) that goes with it is
/// 3.86 s times the root of the height (ITTC 1978), the mean zero-crossing period 0.92 of that.
constexpr double HEIGHTS[] = {0.0, 0.1, 0.2, 0.6, 1.0, 2.0, 3.0, 4.0, 5.5, 7.0};
double crossingPeriod(int beaufort) {
    return 0.92 * 3.86 * std::sqrt(HEIGHTS[beaufort]);
}

struct Field : WaveField {
    explicit Field(double beaufort, double time = 0.0, std::uint64_t seed = 1, double direction = 30.0)
        : WaveField(seed) {
        setWind(getBeaufortSpeed(beaufort), std::cos(direction * jMath::DEG2RAD), std::sin(direction * jMath::DEG2RAD));
        update(time);
    }
};

struct Moments {
    double mean = 0.0, variance = 0.0;

    double getHeight() const { return 4.0 * std::sqrt(variance); }  ///< significant
};

Moments momentsOf(const std::vector<double>& values) {
    Moments m;
    const double part = 1.0 / static_cast<double>(values.size());
    for (const double v : values) m.mean += v * part;
    for (const double v : values) m.variance += (v - m.mean) * (v - m.mean) * part;
    return m;
}

/// Heights above places spread over some tiles.
std::vector<double> heightsOf(const WaveField& field, int count = 20000) {
    Random random(7);
    std::vector<double> heights;
    for (int i = 0; i < count; ++i) {
        const double east = random.getDouble(-4000.0, 4000.0), north = random.getDouble(-4000.0, 4000.0);
        heights.push_back(static_cast<double>(field.getHeight(east, north)));
    }
    return heights;
}

double largestDifference(const std::vector<double>& a, const std::vector<double>& b) {
    double largest = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

bool same(const WaveField& a, const WaveField& b) {
    const auto equal = [&](int i) {
        const auto &x = a.getCascade(i).samples, &y = b.getCascade(i).samples;
        return std::memcmp(x.data(), y.data(), x.size() * sizeof x[0]) == 0;
    };
    return equal(0) && equal(1);
}

TEST(WaveField, WavesAreAsHighAsTheTableHasThem) {
    for (int beaufort = 1; beaufort <= 9; ++beaufort) {
        for (const auto& [seed, time] : {std::pair(1ULL, 0.0), {2ULL, 77.7}, {3ULL, 4.0e5}}) {
            const Field field(beaufort, time, seed);
            const Moments surface = momentsOf(heightsOf(field));
            EXPECT_NEAR(surface.getHeight(), HEIGHTS[beaufort], 0.1 * HEIGHTS[beaufort]) << beaufort << " " << seed;
            EXPECT_NEAR(surface.mean, 0.0, 0.02 * HEIGHTS[beaufort]) << beaufort;
        }
    }
}

TEST(WaveField, CrestsAreNarrowAndRunWithTheWind) {
    for (const double direction : {0.0, 100.0, -135.0}) {
        Field field(6, 50.0, 1, direction);
        const WaveCascade before = field.getCascade(0);
        field.update(50.1);
        double east = 0.0, north = 0.0, spread = 0.0;
        for (std::size_t i = 0; i + WaveCascade::SIZE < before.samples.size(); ++i) {
            const auto at = [&](std::size_t k, int what) { return static_cast<double>(before.samples[k][what]); };
            const std::size_t next_east = i + 1, next_north = i + WaveCascade::SIZE;
            const double height = at(i, 2), rise = static_cast<double>(field.getCascade(0).samples[i][2]) - height;
            east -= rise * (at(next_east, 2) - height);
            north -= rise * (at(next_north, 2) - height);
            spread += height * (at(next_east, 0) - at(i, 0) + at(next_north, 1) - at(i, 1));
        }
        EXPECT_LT(spread, 0.0) << "the water of crests is drawn together";
        const double off = std::atan2(north, east) * jMath::RAD2DEG - direction;
        EXPECT_NEAR(std::remainder(off, 360.0), 0.0, 15.0) << direction;
    }
}

// A point at rest is displaced by the waves; the height at the displaced place must be that of the point.
TEST(WaveField, HeightsAreThoseOfTheDisplacedWater) {
    for (const int beaufort : {1, 4, 7, 9, 12}) {
        const Field field(beaufort, 10.0 * beaufort);
        Random random(3);
        double worst = 0.0;
        for (int i = 0; i < 20000; ++i) {
            const double east = random.getDouble(-3e3, 3e3), north = random.getDouble(-3e3, 3e3);
            const vec3 d = field.getDisplacement(east, north);
            const float height = field.getHeight(east + static_cast<double>(d.x), north + static_cast<double>(d.y));
            worst = std::max(worst, static_cast<double>(std::abs(height - d.z)));
        }
        EXPECT_LT(worst, beaufort < 8 ? 0.01 : 0.02) << beaufort;
    }
}

TEST(WaveField, PeriodsAreTheTablesAlsoAfterAHundredHours) {
    constexpr double DT = 1.0 / 60.0, REPEAT = 88 * 4096.0;
    for (const double start : {20.0, 360000.0}) {
        for (const int beaufort : {3, 5, 7, 9}) {
            Field field(beaufort, start);
            const std::vector<double> before = heightsOf(field);
            field.update(start + DT);
            std::vector<double> speeds = heightsOf(field);
            for (std::size_t i = 0; i < speeds.size(); ++i) speeds[i] = (speeds[i] - before[i]) / DT;
            // Rice 1944: 2 pi times the ratio of the standard deviations of height and vertical speed.
            const double period = 2.0 * PI * std::sqrt(momentsOf(before).variance / momentsOf(speeds).variance);
            EXPECT_NEAR(period, crossingPeriod(beaufort), 0.1 * crossingPeriod(beaufort)) << beaufort << " " << start;
            field.update(start + REPEAT);
            EXPECT_LT(largestDifference(before, heightsOf(field)), 1e-4 * HEIGHTS[beaufort]);
        }
    }
}

TEST(WaveField, DependsOnSeedTimeAndWindAlone) {
    const Field straight(5, 33.25);
    Field wandering(9, 1000.0, 1, -70.0);
    wandering.setWind(0.0, 0.0, 0.0);
    for (double time = 0.0; time < 33.0; time += 1.7) wandering.update(time);
    const std::uint32_t revision = wandering.getRevision();
    wandering.setWind(getBeaufortSpeed(5), std::cos(30.0 * jMath::DEG2RAD), std::sin(30.0 * jMath::DEG2RAD));
    wandering.update(33.25);
    EXPECT_TRUE(same(straight, wandering));
    EXPECT_EQ(wandering.getRevision(), revision + 1);
    wandering.update(33.25);
    EXPECT_EQ(wandering.getRevision(), revision + 1) << "nothing to compute";
    wandering.setWind(1.002 * getBeaufortSpeed(5), std::cos(0.53), std::sin(0.53));
    wandering.update(33.25);
    EXPECT_LT(largestDifference(heightsOf(straight), heightsOf(wandering)), 0.1) << "slightly other wind and waves";
    EXPECT_FALSE(same(straight, Field(5, 33.25, 2)));
    EXPECT_FALSE(same(straight, Field(5, 33.26)));
}

TEST(WaveField, FoamIsOnCrestsAndCoversWhatTheWindGives) {
    for (const int beaufort : {4, 6, 8}) {
        double cover = 0.0, height = 0.0;
        for (const double time : {0.0, 13.0, 26.0, 39.0}) {
            const Field field(beaufort, time);
            for (int c = 0; c < WaveField::NUM_CASCADES; ++c) {
                for (const auto& s : field.getCascade(c).samples) {
                    ASSERT_TRUE(s[3] >= 0.0f && s[3] <= 1.0f);
                    cover += static_cast<double>(s[3]) / (4.0 * WaveCascade::SIZE * WaveCascade::SIZE);
                    height += static_cast<double>(s[3] * s[2]);
                }
            }
        }
        // Monahan and O'Muircheartaigh 1980.
        const double expected = 3.84e-6 * std::pow(getBeaufortSpeed(beaufort), 3.41);
        EXPECT_NEAR(cover, expected, 0.5 * expected) << beaufort;
        EXPECT_GT(height, 0.0);
    }
}

TEST(WaveField, BadNumbersChangeNothing) {
    Field field(4, 3.0);
    const Field good(4, 3.0);
    field.setWind(NAN, 1.0, 0.0);
    field.setWind(5.0, HUGE_VAL, 0.0);
    field.update(NAN);
    EXPECT_TRUE(same(field, good));
    for (const double far : {double(NAN), double(HUGE_VAL), -1e300, 1e17}) {
        EXPECT_TRUE(std::abs(field.getHeight(far, 0.0)) < 10.0f && std::abs(field.getDisplacement(0.0, far).z) < 10.0f);
    }
    field.setWind(-3.0, 1.0, 0.0);
    field.update(4.0);
    EXPECT_EQ(field.getHeight(1.0, 2.0), 0.0f) << "no wind is less than none";
}

struct OceanTest : SceneTest {
    ObjectOcean& makeOcean(const std::string& text) {
        return *static_cast<ObjectOcean*>(world().addChild(makeNode(text)));
    }
    static double heightOf(const ObjectOcean& ocean) { return momentsOf(heightsOf(ocean.getField())).getHeight(); }

    EllipsoidModel globe;
};

TEST_F(OceanTest, SurfacePointsAreOnTheVerticalAtTheFieldsHeight) {
    ObjectOcean& ocean = makeOcean(
        R"({ "type": "ocean", "geodetic": [112.35, 16.84, 0], "ocean": { "beaufort": 6, "global_wind": false } })");
    run(100);
    const dmat4 origin = globe.getWGSTransform(globe.toWorld({112.35, 16.84, 0.0}));
    Random random(4);
    for (int i = 0; i < 500; ++i) {
        const dvec3 local(random.getDouble(-3000, 3000), random.getDouble(-3000, 3000), random.getDouble(-500, 5000));
        const dvec3 place = origin * local, from = globe.toWGS(place), at = globe.toWGS(ocean.getWorldPoint(place));
        EXPECT_NEAR(at.x, from.x, 1e-10);
        EXPECT_NEAR(at.y, from.y, 1e-10);
        double east, north;
        ocean.getFieldPlace(from.x, from.y, east, north);
        EXPECT_NEAR(at.z, static_cast<double>(ocean.getField().getHeight(east, north)), 1e-6);
    }
    const double wave = globe.toWGS(ocean.getWorldPoint(origin.t)).z;
    run(60);
    EXPECT_GT(std::abs(globe.toWGS(ocean.getWorldPoint(origin.t)).z - wave), 1e-3) << "it moves";
    EXPECT_FALSE(isFinite(ocean.getWorldPoint(dvec3(NAN, 0.0, 0.0))));
}

TEST_F(OceanTest, TheFieldsOriginIsTheNodesPosition) {
    ObjectOcean& ocean = makeOcean(R"({ "type": "ocean" })");
    const double degree = jMath::DEG2RAD * EllipsoidModel::SEMI_MAJOR;
    ocean.setWgsPosition({179.5, 60.0, 20.0});
    for (const auto& [lon, lat, wanted_east, wanted_north] :
         {std::tuple(179.5, 60.0, 0.0, 0.0), {-179.5, 61.0, 0.5, 1.0}, {178.5, 59.0, -0.5, -1.0}}) {
        double east, north;
        ocean.getFieldPlace(lon, lat, east, north);
        EXPECT_NEAR(east, wanted_east * degree, 1e-3) << lon;
        EXPECT_NEAR(north, wanted_north * degree, 1e-3) << lon;
    }
}

TEST_F(OceanTest, FollowsTheWorldsWindOrItsOwnState) {
    world().getEnvironment().wind = {0.0f, static_cast<float>(-getBeaufortSpeed(7)), 3.0f};
    ObjectOcean& ocean = makeOcean(R"({ "type": "ocean", "ocean": { "beaufort": 4 } })");
    EXPECT_EQ(ocean.getBeaufort(), 7);
    EXPECT_NEAR(heightOf(ocean), HEIGHTS[7], 0.1 * HEIGHTS[7]);
    ocean.setUseGlobalWind(false);
    EXPECT_EQ(ocean.getBeaufort(), 4);
    EXPECT_NEAR(heightOf(ocean), HEIGHTS[4], 0.1 * HEIGHTS[4]);
    const Field own(4, 0.0, 0x5EA, -90.0);
    EXPECT_LT(largestDifference(heightsOf(ocean.getField()), heightsOf(own)), 1e-3) << "running with that wind";
    world().getEnvironment().wind = {};
    EXPECT_LT(largestDifference(heightsOf(ocean.getField()), heightsOf(Field(4, 0.0, 0x5EA, 0.0))), 1e-3) << "or east";
    ocean.setUseGlobalWind(true);
    for (const vec3& wind : {vec3(), vec3(NAN, 3, 0), vec3(1, HUGE_VALF, 0)}) {
        world().getEnvironment().wind = wind;
        EXPECT_EQ(ocean.getBeaufort(), 0);
        EXPECT_EQ(heightOf(ocean), 0.0) << "calm";
    }
    ocean.setUseGlobalWind(false);
    for (const auto& [value, wanted] : {std::pair(6.4f, 6), {-3.0f, 0}, {99.0f, 12}}) {
        EXPECT_TRUE(ocean.setParameter("beaufort", value));
        EXPECT_EQ(ocean.getBeaufort(), wanted);
    }
}

}  // namespace
