// The sea: its waves against the tables of the Beaufort scale and against what physics allows, and its place on the
// globe.
#include <complex>
#include <cstring>

#include "engine/scene/ObjectOcean.h"
#include "scene/WaveSpectrum.h"
#include "support/TestScene.h"

namespace {

constexpr double PI = jMath::PI;

/// WMO-No. 306: probable wave height on the open sea, metres. The mean period (first moment) that goes with it is
/// 3.86 s, the peak's 5.00 s, times the root of the height (ITTC 1978).
constexpr double HEIGHTS[] = {0.0, 0.1, 0.2, 0.6, 1.0, 2.0, 3.0, 4.0, 5.5, 7.0};
double meanPeriod(int beaufort) {
    return 3.86 * std::sqrt(HEIGHTS[beaufort]);
}

struct Field : WaveField {
    explicit Field(double beaufort, double time = 0.0, std::uint64_t seed = 1, double direction = 30.0)
        : WaveField(seed) {
        setWind(getBeaufortSpeed(beaufort), std::cos(direction * jMath::DEG2RAD), std::sin(direction * jMath::DEG2RAD));
        update(time);
    }
    const std::array<float, 4>& sample(int cascade, int i) const {
        return getCascade(cascade).samples[static_cast<std::size_t>(i)];
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

/// As a wave buoy's record gives it: the first moment of the frequency spectrum, here mean over a number of buoys.
double measureMeanPeriod(int beaufort) {
    constexpr int STEPS = 256, BUOYS = 61;
    const double dt = 5.0 * std::sqrt(HEIGHTS[beaufort]) / 10.0;
    Field field(beaufort);
    std::vector<std::array<double, BUOYS>> record(STEPS);
    for (int t = 0; t < STEPS; ++t) {
        field.update(100.0 + t * dt);
        const double window = 0.5 - 0.5 * std::cos(2.0 * PI * t / STEPS);
        for (int b = 0; b < BUOYS; ++b) {
            const double height =
                static_cast<double>(field.sample(0, b * 263)[2]) + static_cast<double>(field.sample(1, b * 263)[2]);
            record[static_cast<std::size_t>(t)][static_cast<std::size_t>(b)] = window * height;
        }
    }
    double m0 = 0.0, m1 = 0.0;
    for (int f = 3; f < STEPS / 2; ++f) {
        std::array<std::complex<double>, BUOYS> sums{};
        for (int t = 0; t < STEPS; ++t) {
            const auto turn = std::polar(1.0, 2.0 * PI * f * t / STEPS);
            for (std::size_t b = 0; b < BUOYS; ++b) sums[b] += turn * record[static_cast<std::size_t>(t)][b];
        }
        for (const auto& sum : sums) {
            m0 += std::norm(sum);
            m1 += std::norm(sum) * f / (STEPS * dt);
        }
    }
    return m0 / m1;
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

TEST(WaveField, WavesComeAsOftenAsTheTableHasThem) {
    for (const int beaufort : {1, 2, 3, 5, 7, 9}) {
        EXPECT_NEAR(measureMeanPeriod(beaufort), meanPeriod(beaufort), 0.1 * meanPeriod(beaufort)) << beaufort;
    }
}

TEST(WaveField, CrestsAreNarrowAndRunWithTheWind) {
    for (const double direction : {0.0, 100.0, -135.0}) {
        Field field(6, 50.0, 1, direction);
        const WaveCascade before = field.getCascade(0);
        field.update(50.1);
        double east = 0.0, north = 0.0, spread_east = 0.0, spread_north = 0.0;
        for (std::size_t i = 0; i + WaveCascade::SIZE < before.samples.size(); ++i) {
            const auto at = [&](std::size_t k, int what) { return static_cast<double>(before.samples[k][what]); };
            const std::size_t next_east = i + 1, next_north = i + WaveCascade::SIZE;
            const double height = at(i, 2), rise = static_cast<double>(field.getCascade(0).samples[i][2]) - height;
            east -= rise * (at(next_east, 2) - height);
            north -= rise * (at(next_north, 2) - height);
            spread_east += (height + at(next_east, 2)) * (at(next_east, 0) - at(i, 0));
            spread_north += (height + at(next_north, 2)) * (at(next_north, 1) - at(i, 1));
        }
        EXPECT_LT(spread_east, 0.0) << "water is drawn together on crests";
        EXPECT_LT(spread_north, 0.0);
        const double off = std::atan2(north, east) * jMath::RAD2DEG - direction;
        EXPECT_NEAR(std::remainder(off, 360.0), 0.0, 15.0) << direction;
    }
}

// What the water at a place at rest was moved to is the way back that heights have to find.
TEST(WaveField, HeightsAreThoseOfTheWaterThatIsThere) {
    for (int beaufort = 1; beaufort <= 12; ++beaufort) {
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

TEST(WaveField, IsFlatWithoutWind) {
    Field field(8);
    Field calm(0);
    EXPECT_GT(largestDifference(heightsOf(field), std::vector<double>(20000)), 1.0);
    field.setWind(0.0, 1.0, 0.0);
    field.update(5.0);
    for (const Field* const flat : {&field, &calm}) {
        EXPECT_EQ(largestDifference(heightsOf(*flat), std::vector<double>(20000)), 0.0);
        for (int c = 0; c < WaveField::NUM_CASCADES; ++c) {
            for (const auto& s : flat->getCascade(c).samples) ASSERT_EQ(s, (std::array<float, 4>{}));
        }
    }
}

TEST(WaveField, IsAsGoodAfterAHundredHours) {
    constexpr double HOURS_100 = 360000.0, DT = 1.0 / 60.0, PERIODS = 88 * 4096.0;
    for (const int beaufort : {3, 7}) {
        // The surface's vertical speed: a mean over waves, of which the steepest crest passes several.
        const double typical = HEIGHTS[beaufort] / 4.0 * 2.0 * PI / (0.92 * meanPeriod(beaufort));
        Field field(beaufort, HOURS_100);
        std::vector<double> before = heightsOf(field, 5000);
        for (int i = 1; i <= 20; ++i) {
            field.update(HOURS_100 + i * DT);
            const std::vector<double> now = heightsOf(field, 5000);
            const double moved = largestDifference(before, now) / DT;
            EXPECT_LT(moved, 8.0 * typical) << beaufort;
            EXPECT_GT(moved, 2.0 * typical) << beaufort;
            before = now;
        }
        field.update(12.345);
        before = heightsOf(field);
        field.update(12.345 + PERIODS);
        EXPECT_LT(largestDifference(before, heightsOf(field)), 1e-4 * HEIGHTS[beaufort]);
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
    EXPECT_FALSE(same(straight, Field(5, 33.25, 2)));
    EXPECT_FALSE(same(straight, Field(5, 33.26)));
}

TEST(WaveField, FollowsASmallChangeOfWindSmoothly) {
    Field field(5, 20.0, 1, 0.0);
    const double speed = getBeaufortSpeed(5);
    const std::vector<double> before = heightsOf(field);
    for (const auto& [to, east, north] : {std::tuple(speed * 1.002, 1.0, 0.0), {speed, 1.0, 0.005}}) {
        field.setWind(to, east, north);
        field.update(20.0);
        const double changed = largestDifference(before, heightsOf(field));
        EXPECT_GT(changed, 1e-4);
        EXPECT_LT(changed, 0.03);
    }
}

TEST(WaveField, FoamCoversAsMuchAsTheWindBlows) {
    for (const int beaufort : {2, 4, 6, 8}) {
        double cover = 0.0, height_at_foam = 0.0;
        for (int i = 0; i < 8; ++i) {
            const Field field(beaufort, 13.0 * i);
            for (int c = 0; c < WaveField::NUM_CASCADES; ++c) {
                for (const auto& s : field.getCascade(c).samples) {
                    ASSERT_TRUE(s[3] >= 0.0f && s[3] <= 1.0f);
                    cover += static_cast<double>(s[3]) / (8.0 * WaveCascade::SIZE * WaveCascade::SIZE);
                    height_at_foam += static_cast<double>(s[3] * s[2]);
                }
            }
        }
        // Monahan and O'Muircheartaigh 1980.
        const double expected = 3.84e-6 * std::pow(getBeaufortSpeed(beaufort), 3.41);
        EXPECT_GT(cover, expected * (beaufort > 2 ? 0.6 : 0.0)) << beaufort;
        EXPECT_LT(cover, expected * 1.5 + 1e-4) << beaufort;
        EXPECT_GE(height_at_foam, 0.0) << "foam lies on crests";
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

TEST_F(OceanTest, TheSurfacePointLiesPlumbWithTheWavesOfItsPlace) {
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
        const double flat = 1.0 - local.z / EllipsoidModel::SEMI_MAJOR;  // plumb lines draw together downward
        EXPECT_NEAR(east, local.x * flat, 0.01 * std::abs(local.x) + 1.0) << "true to scale";
        EXPECT_NEAR(north, local.y * flat, 0.01 * std::abs(local.y) + 1.0);
    }
    const double wave = globe.toWGS(ocean.getWorldPoint(origin.t)).z;
    run(60);
    EXPECT_GT(std::abs(globe.toWGS(ocean.getWorldPoint(origin.t)).z - wave), 1e-3) << "it moves";
    const dvec3 nowhere = ocean.getWorldPoint(dvec3(NAN, 0.0, 0.0));
    EXPECT_FALSE(isFinite(nowhere));
}

TEST_F(OceanTest, TheFieldBeginsAtTheNodesPlace) {
    ObjectOcean& ocean = makeOcean(R"({ "type": "ocean" })");
    const double degree = jMath::DEG2RAD * EllipsoidModel::SEMI_MAJOR;
    const auto expectAt = [&](double lon, double lat, double wanted_east, double wanted_north) {
        double east, north;
        ocean.getFieldPlace(lon, lat, east, north);
        EXPECT_NEAR(east, wanted_east, 1e-3) << lon << " " << lat;
        EXPECT_NEAR(north, wanted_north, 1e-3) << lon << " " << lat;
    };
    expectAt(1.0, -2.0, degree, -2.0 * degree);
    ocean.setWgsPosition({179.5, 60.0, 20.0});
    expectAt(179.5, 60.0, 0.0, 0.0);
    expectAt(-179.5, 61.0, degree * 0.5, degree);
    expectAt(178.5, 60.0, -degree * 0.5, 0.0);
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
    EXPECT_EQ(ocean.getBeaufort(), 0);
    EXPECT_EQ(heightOf(ocean), 0.0);
    for (const vec3& wind : {vec3(NAN, 3, 0), vec3(1, HUGE_VALF, 0)}) {
        world().getEnvironment().wind = wind;
        EXPECT_EQ(ocean.getBeaufort(), 0);
        EXPECT_EQ(heightOf(ocean), 0.0) << "taken for a calm";
    }
    ocean.setUseGlobalWind(false);
    EXPECT_NEAR(heightOf(ocean), HEIGHTS[4], 0.1 * HEIGHTS[4]) << "its own sea needs no wind";
    for (const auto& [value, wanted] : {std::pair(6.4f, 6), {-3.0f, 0}, {99.0f, 12}}) {
        EXPECT_TRUE(ocean.setParameter("beaufort", value));
        EXPECT_EQ(ocean.getBeaufort(), wanted);
    }
}

TEST_F(OceanTest, ComputesItsWavesOnceAFrameAndOnlyWhenAsked) {
    ObjectOcean& ocean = makeOcean(R"({ "type": "ocean" })");
    const std::uint32_t revision = ocean.getField().getRevision();
    run(3);
    for (int i = 0; i < 5; ++i) ocean.getWorldPoint(globe.toWorld({1.0, 2.0, 3.0}));
    EXPECT_EQ(ocean.getField().getRevision(), revision + 1);
}

}  // namespace
