// The sky: the places of its bodies, what light they give through air, haze and clouds, and what is drawn of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "PictureScene.h"
#include "base/ShaderLibrary.h"
#include "engine/math/jMath.h"
#include "sky/Rgb.h"
#include "sky/SkyLayer.h"
#include "sky/StarCatalogue.h"

namespace {

constexpr double LONGITUDE = 112.4;

double degreesBetween(const dvec3& a, const dvec3& b) {
    return std::acos(std::clamp(dot(a, b), -1.0, 1.0)) * jMath::RAD2DEG;
}

dvec3 fromAngles(double longitude, double latitude) {
    const double a = longitude * jMath::DEG2RAD, b = latitude * jMath::DEG2RAD;
    return {std::cos(b) * std::cos(a), std::cos(b) * std::sin(a), std::sin(b)};
}

Heavens heavensAt(int month, int day, double hours, double latitude) {
    return computeHeavens(julianDateOfSolarTime(2024, month, day, hours, LONGITUDE), LONGITUDE, latitude);
}

/// A sky with the sun in the north and the moon, full when it is up, in the south.
struct Sky {
    explicit Sky(double sun, double visibility = 20000.0, float cloudiness = 0.0f, float height = 20.0f,
                 double moon = -60.0) {
        conditions.heavens.sun = fromAngles(90.0, sun);
        conditions.heavens.moon = fromAngles(-90.0, moon);
        conditions.extinction = 3.912 / visibility;
        conditions.cloudiness = cloudiness;
        conditions.eye_height = height;
        static SkyModel model;
        model.compute(conditions, light, picture);
        aimLight(conditions.heavens, picture.body, light);
    }

    /// The table's nearest sample: by degrees round from the sun's side and the sine of the elevation.
    vec3 at(double degrees_round, double sine) const {
        const double u = std::sin(0.5 * degrees_round * jMath::DEG2RAD);
        const double v = 0.5 + std::copysign(0.5 * std::sqrt(std::fabs(sine)), sine);
        const int column = std::min(static_cast<int>(u * SkyGrid::COLUMNS), SkyGrid::COLUMNS - 1);
        const int row = std::min(static_cast<int>(v * SkyGrid::ROWS), SkyGrid::ROWS - 1);
        const vec4& sample = picture.table[SkyGrid::indexOf(column, row)];
        return {sample.x, sample.y, sample.z};
    }
    double total() const {
        return static_cast<double>(luminance(light.ambient_above) +
                                   luminance(light.light_color) * std::fmax(light.light_direction.z, 0.0f));
    }

    SkyConditions conditions;
    SkyLight light;
    SkyPicture picture;
};

float blueness(const vec3& color) {
    return color.z / color.x;
}

}  // namespace

TEST(Astronomy, SunAtNoon) {
    const struct {
        int month, day;
        double latitude, elevation;
        bool north;
    } cases[] = {{6, 21, 16.82, 83.39, true}, {6, 21, 52.0, 61.43, false}, {6, 21, -35.0, 31.56, true},
                 {3, 20, 45.0, 45.0, false},  {12, 21, 60.0, 6.56, false}, {11, 3, 0.0, 74.9, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message() << "month " << c.month << ", latitude " << c.latitude);
        const dvec3 sun = heavensAt(c.month, c.day, 12.0, c.latitude).sun;
        EXPECT_NEAR(std::asin(sun.z) * jMath::RAD2DEG, c.elevation, 0.25);
        EXPECT_NEAR(sun.x, 0.0, 5e-4) << "on the meridian by the sundial";
        EXPECT_EQ(sun.y > 0.0, c.north);
        EXPECT_GT(heavensAt(c.month, c.day, 9.0, c.latitude).sun.x, 0.0) << "in the east in the morning";
    }
}

TEST(Astronomy, AgreesWithPublishedPlaces) {
    // Meeus, Astronomical Algorithms, examples 12.a, 25.a and 47.a.
    EXPECT_EQ(julianDay(1987, 4, 10), 2446895.5);
    EXPECT_EQ(julianDay(2000, 1, 1), 2451544.5);
    const Heavens sidereal = computeHeavens(2446895.5, 0.0, 0.0);
    EXPECT_LT(degreesBetween(sidereal.stars * fromAngles(197.693195, 0.0), dvec3(0, 0, 1)), 0.01);

    const Heavens sun = computeHeavens(2448908.5, 0.0, 90.0);
    EXPECT_LT(degreesBetween(transpose(sun.stars) * sun.sun, fromAngles(198.38083, -7.78507)), 0.03);

    // Seen from where it is overhead, the moon has no parallax.
    const dvec3 moon = fromAngles(134.688470, 13.768368);
    const Heavens greenwich = computeHeavens(2448724.5, 0.0, 0.0);
    const dvec3 from_greenwich = greenwich.stars * moon;
    const double west = std::atan2(-from_greenwich.x, from_greenwich.z) * jMath::RAD2DEG;
    const Heavens below = computeHeavens(2448724.5, -west, 13.768);
    EXPECT_LT(degreesBetween(below.moon, dvec3(0, 0, 1)), 0.5);
    // Elsewhere it has up to a degree.
    EXPECT_NEAR(degreesBetween(transpose(greenwich.stars) * greenwich.moon, moon), 0.9, 0.4);
}

TEST(Astronomy, MoonPhases) {
    const auto at = [](int month, int day, double hours) {
        return computeHeavens(julianDay(2024, month, day) + hours / 24.0, LONGITUDE, 0.0);
    };
    EXPECT_GT(at(6, 22, 1.13).moon_lit, 0.997);
    EXPECT_LT(at(6, 6, 12.63).moon_lit, 0.004);
    EXPECT_NEAR(at(6, 14, 5.3).moon_lit, 0.5, 0.02);
}

TEST(SkyModel, ClearDay) {
    const Sky noon(80.0), high(80.0, 20000.0, 0.0f, 10000.0f);
    EXPECT_NEAR(noon.total(), 110.0, 20.0);
    EXPECT_GT(luminance(noon.at(180.0, 0.01)), luminance(noon.at(180.0, 0.9))) << "the horizon is brighter";
    EXPECT_LT(luminance(high.at(180.0, 0.9)), 0.5f * luminance(noon.at(180.0, 0.9)));
    EXPECT_GT(luminance(high.light.light_color), luminance(noon.light.light_color));
}

TEST(SkyModel, EveningReddensAndFades) {
    const Sky low(2.0);
    EXPECT_GT(low.light.light_color.x, 3.0f * low.light.light_color.z);
    EXPECT_GT(blueness(low.at(180.0, 0.9)), 1.5f * blueness(low.at(0.0, 0.05)));
    EXPECT_GT(luminance(low.at(0.0, 0.05)), 2.0f * luminance(low.at(180.0, 0.05)));
    const vec3 zenith = Sky(-5.0).at(90.0, 0.99);
    EXPECT_TRUE(zenith.z > 1.3f * zenith.y && zenith.y > zenith.x) << "ozone keeps it blue, not purple";

    double brighter = Sky(6.0).total();
    for (double elevation = 5.0; elevation > -16.5; elevation -= 1.0) {
        const Sky sky(elevation);
        EXPECT_LT(sky.total(), brighter) << elevation;
        EXPECT_GT(sky.total(), 0.2 * brighter) << "no step in the light at " << elevation;
        brighter = sky.total();
    }
}

TEST(SkyModel, NightsByMoonAndWithout) {
    const Sky moonlit(-40.0, 20000.0, 0.0f, 20.0f, 45.0), dark(-40.0);
    EXPECT_NEAR(std::log10(moonlit.total()), -3.6, 0.6);
    EXPECT_EQ(moonlit.picture.body, LightBody::MOON);
    EXPECT_LT(moonlit.light.light_direction.y, 0.0f);
    EXPECT_LT(dark.total(), 0.02 * moonlit.total());
    EXPECT_GT(dark.total(), 1e-7);
    EXPECT_EQ(dark.picture.body, LightBody::NONE);
}

TEST(SkyModel, OvercastAndFogAreGrayAndBright) {
    const Sky clear(50.0), overcast(50.0, 20000.0, 1.0f), fog(50.0, 300.0), above(50.0, 20000.0, 1.0f, 4000.0f);
    for (const Sky* const sky : {&overcast, &fog}) {
        EXPECT_LT(luminance(sky->light.light_color), 0.03f * luminance(clear.light.light_color));
        EXPECT_NEAR(blueness(sky->at(90.0, 0.5)), 1.0f, 0.25f);
        EXPECT_GT(sky->total(), 8.0) << "daylight all the same";
    }
    EXPECT_GT(luminance(overcast.at(90.0, 0.95)), 1.5f * luminance(overcast.at(90.0, 0.05)));
    EXPECT_GT(luminance(above.light.light_color), 0.9f * luminance(clear.light.light_color)) << "above the clouds";
}

TEST(SkyModel, NoSeamAtTheHorizon) {
    for (const double visibility : {300.0, 5000.0, 20000.0, 80000.0}) {
        for (const double sun : {70.0, 10.0, -4.0}) {
            const Sky sky(sun, visibility, 0.2f, visibility < 10000.0 ? 1.5f : 300.0f);
            for (const double round : {0.0, 90.0, 180.0}) {
                const float above = luminance(sky.at(round, 1e-9)), below = luminance(sky.at(round, -1e-9));
                EXPECT_NEAR(below / above, 1.0f, 0.03f) << visibility << ' ' << sun << ' ' << round;
            }
        }
    }
}

TEST(SkyModel, StaysFiniteAtTheEdges) {
    for (int edges = 0; edges < 16; ++edges) {
        const double sun = edges & 1 ? 90.0 : -90.0, visibility = edges & 2 ? 1.0 : 1e6;
        const Sky sky(sun, visibility, edges & 4 ? 0.0f : 7.0f, edges & 8 ? 0.0f : 4e5f, 90.0);
        bool sound = std::isfinite(sky.total()) && sky.picture.adaptation >= 0.0f;
        for (const vec4& t : sky.picture.table) {
            for (const float v : {t.x, t.y, t.z, t.w}) sound &= std::isfinite(v) && v >= 0.0f && v < 1e4f;
        }
        EXPECT_TRUE(sound) << edges;
    }
}

// The layer's arithmetic needs no display.
TEST(SkyLayer, ExposureFollowsInASecondAndTheLightAtOnce) {
    ShaderLibrary shaders;
    osg::ref_ptr<osg::Group> root = new osg::Group;
    FrameView view;
    view.width = 320, view.height = 180;
    view.geodetic = {LONGITUDE, 16.82, 20.0};
    Environment day, dusk;
    day.time_of_day = 12.0f, dusk.time_of_day = 19.0f;
    SkyLayer fresh(*root, shaders), layer(*root, shaders);
    const float adapted = fresh.update(view, dusk).exposure;
    const float before = layer.update(view, day).exposure;
    view.dt = 1.0 / 60.0;
    EXPECT_LT(layer.update(view, dusk).exposure, 2.0f * before) << "the first frame after the switch is still dark";
    float last = before;
    for (int frame = 0; frame < 120; ++frame) {
        const float exposure = layer.update(view, dusk).exposure;
        EXPECT_GE(exposure, last);
        last = exposure;
    }
    EXPECT_NEAR(last / adapted, 1.0f, 0.05f);
    for (float east = 1.0f; day.time_of_day < 12.01f; day.time_of_day += 0.002f) {  // 0.03 degrees
        const vec3 light = layer.update(view, day).light_direction;
        EXPECT_NE(light.x, east);
        east = light.x;
    }
}

TEST(SkyPicture, SunMoonAndStarsAreAtTheirPlaces) {
    PictureScene scene;
    Environment& environment = scene.world().getEnvironment();
    environment.cloudiness = 0.0f;
    // How far from the middle, in degrees, the brightest spot within 2.5 degrees is; infinite without one.
    const auto offsetOfSpot = [&](double visibility) {
        scene.picture->setVisibility(visibility);
        scene.draw(2);
        const Snapshot shot = scene.capture();
        double brightest = 0.0, weight = 0.0;
        dvec3 sum;
        for (const bool is_sought : {false, true}) {
            for (int i = 0; i < 20 * 20; ++i) {
                const double value = luminanceAt(shot, 150 + i % 20, 80 + i / 20);
                brightest = std::max(brightest, value);
                if (!is_sought || value < 0.9 * brightest) continue;
                weight += 1.0;
                sum += dvec3(i % 20 - 9.5, i / 20 - 9.5, 0.0);
            }
        }
        const bool is_spot = brightest > 0.1 + luminanceAt(shot, 120, 90);
        return is_spot ? length(sum) / weight * 0.25 : std::numeric_limits<double>::infinity();
    };
    const std::vector<Star> stars = makeStars();
    const dvec3 eye(LONGITUDE, -30.0, 30.0);
    const struct {
        const char* body;
        int month, day;
        float hour;
        const Star* star = nullptr;
    } cases[] = {{"sun", 6, 21, 14.0f},
                 {"moon", 6, 22, 0.0f},
                 {"first star", 2, 10, 0.5f, &stars[0]},  // of a night without a moon
                 {"second star", 2, 10, 0.5f, &stars[1]}};
    for (const auto& c : cases) {
        environment.month = c.month, environment.day = c.day, environment.time_of_day = c.hour;
        const Heavens heavens = heavensAt(c.month, c.day, static_cast<double>(c.hour), eye.y);
        const dvec3 wanted = c.star ? heavens.stars * c.star->direction : c.hour > 12.0f ? heavens.sun : heavens.moon;
        scene.open();  // adapted from the first frame on
        scene.look(eye, {std::atan2(wanted.x, wanted.y) * jMath::RAD2DEG, std::asin(wanted.z) * jMath::RAD2DEG, 20.0});
        EXPECT_LT(offsetOfSpot(40000.0), 1.0) << c.body;
    }
    EXPECT_GT(offsetOfSpot(300.0), 1.0) << "no star through fog";
}

TEST(SkyPicture, CloudsCoverTheirShareOfTheSky) {
    PictureScene scene;
    scene.open();
    scene.look({LONGITUDE, 16.82, 30.0}, {180.0, 35.0, 0.0});
    const auto cover = [&](float cloudiness) {
        scene.world().getEnvironment().cloudiness = cloudiness;
        scene.draw(2);
        const Snapshot shot = scene.capture();
        int gray = 0;
        for (int i = 0; i < shot.width * shot.height; ++i) {
            const Color pixel = pixelAt(shot, i % shot.width, i / shot.width);
            gray += pixel[0] > 0.9 * pixel[2];
        }
        return static_cast<double>(gray) / (shot.width * shot.height);
    };
    EXPECT_EQ(cover(0.0f), 0.0);
    const double few = cover(0.2f);
    EXPECT_NEAR(few, 0.3, 0.2);
    EXPECT_GT(cover(0.6f), few + 0.2);
}
