// Computes the table of the sky, one row of equal elevation at a time, when light source, air or eye have changed.
#include "sky/Atmosphere.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int STEPS = 24;
constexpr float PI = 3.14159265f;

/// Share of the glow that is used: forward scattering is so strong that much of it falls into the disc's glare.
constexpr float GLOW_SHARE = 0.6f;
constexpr float MIN_EYE = 1.0f, MAX_EYE = 60000.0f;

float square(float v) {
    return v * v;
}

/// Length of a line of sight to the ground or to the top of the air, metres.
float sightLength(float height, float sine) {
    const float r = GLOBE_RADIUS + height;
    const float along = r * sine;
    if (sine < horizonSine(height)) {
        const float fall = height * (2.0f * GLOBE_RADIUS + height);
        return fall / (-along + std::sqrt(std::fmax(along * along - fall, 0.0f)));
    }
    const float rise = (AIR_TOP - height) * (GLOBE_RADIUS + AIR_TOP + r);
    return std::sqrt(along * along + rise) - along;
}

float heightAlong(float height, float sine, float distance) {
    const float r = GLOBE_RADIUS + height;
    const float change = 2.0f * r * sine * distance + distance * distance;
    return height + change / (r + std::sqrt(r * r + change));
}

float rowPlace(float v) {
    return std::copysign(square(2.0f * v - 1.0f), v - 0.5f);
}

}  // namespace

float sightSine(int row, float eye) {
    constexpr float BAND = 0.029f;
    const float sine = SkyGrid::sineOf(row);
    if (sine > BAND || sine < horizonSine(eye)) return sine;
    return std::lerp(BAND, sine, smoothStep(500.0f, 3000.0f, eye));
}

float cosineBetween(float sine_a, float sine_b, float cosine_round) {
    const float level = std::sqrt(std::fmax((1.0f - sine_a * sine_a) * (1.0f - sine_b * sine_b), 0.0f));
    return std::clamp(sine_a * sine_b + level * cosine_round, -1.0f, 1.0f);
}

float glowShape(float cosine) {
    constexpr float EDGE = 0.3f;  // cosine of the angle where the glow ends
    static const float floor = hazePhase(EDGE, HAZE_AHEAD);
    return std::fmax(hazePhase(cosine, HAZE_AHEAD) - floor, 0.0f);
}

float SkyGrid::cosineOf(int column) {
    const float u = column == 0 ? 0.0f : column == COLUMNS - 1 ? 1.0f : (static_cast<float>(column) + 0.5f) / COLUMNS;
    return 1.0f - 2.0f * u * u;
}

float SkyGrid::sineOf(int row) {
    if (row == 0 || row == ROWS - 1) return row == 0 ? -1.0f : 1.0f;
    return rowPlace((static_cast<float>(row) + 0.5f) / ROWS);
}

float SkyGrid::solidAngle(int column, int row) {
    const auto around = [](int edge) { return 2.0f * std::asin(static_cast<float>(edge) / COLUMNS); };
    const auto above = [](int edge) { return rowPlace(static_cast<float>(edge) / ROWS); };
    return 2.0f * (around(column + 1) - around(column)) * (above(row + 1) - above(row));
}

vec3 Atmosphere::prepare(const AirOptics& optics, float eye, float sine) {
    const float length = sightLength(eye, sine);
    vec3 through = gray(1.0f);
    m_steps.resize(STEPS);
    for (int i = 0; i < STEPS; ++i) {
        // Steps are short close to the eye: in fog all scattering happens there.
        const auto at = [&](float k) { return length * k * square(k) / (STEPS * square(STEPS)); };
        const float from = at(static_cast<float>(i)), to = at(static_cast<float>(i + 1));
        Step& step = m_steps[static_cast<std::size_t>(i)];
        step.distance = 0.5f * (from + to);
        step.height = std::fmax(heightAlong(eye, sine, step.distance), 0.0f);
        step.layer = LightField::layerOf(step.height);
        const vec3 density = airDensity(step.height);
        const vec3 weakening = optics.depth(density);
        const vec3 passed = fade(weakening * (to - from));
        const vec3 share = product(through, quotient(gray(1.0f) - passed, weakening));
        step.molecules = product(share, optics.molecules) * density.x;
        step.haze = product(share, optics.haze_scattering) * density.y;
        step.haze_aside = product(share, optics.haze_scattering_aside) * density.y;
        step.scattering = step.molecules + step.haze_aside;
        through = product(through, passed);
    }
    return through;
}

Atmosphere::Sight Atmosphere::look(float sine, float cosine_round, const LightSource& source, float eye) const {
    const float cosine = cosineBetween(sine, source.sine, cosine_round);
    const float molecules = moleculePhase(cosine), haze_aside = hazePhase(cosine, HAZE_ASIDE);
    const float dim_haze = hazePhase(cosine, HAZE_AHEAD) - glowShape(cosine);
    const float r = GLOBE_RADIUS + eye;
    Sight sight;
    vec3 ahead, aside;
    for (const Step& step : m_steps) {
        const float radius = GLOBE_RADIUS + step.height;
        const LightThere light = m_field.at(step.layer, (r * source.sine + step.distance * cosine) / radius);
        const float upward = (r * sine + step.distance) / radius;
        sight.radiance = sight.radiance + product(step.molecules * molecules, light.beam) +
                         product(step.scattering, light.mean) +
                         product(step.haze_aside, light.slope) * (HAZE_ASIDE * upward);
        ahead = ahead + product(step.haze, light.beam);
        aside = aside + product(step.haze_aside, light.beam);
    }
    sight.spread = sight.radiance + aside * haze_aside;
    sight.radiance = sight.radiance + ahead * dim_haze;
    sight.glow = ahead * GLOW_SHARE;
    return sight;
}

void Atmosphere::computeField(const AirOptics& optics, const LightSource& source, float eye, ClearSky& sky) {
    constexpr auto SIZE = static_cast<std::size_t>(SkyGrid::COLUMNS * SkyGrid::ROWS);
    m_field.compute(m_columns, optics, source);
    sky.radiance.assign(SIZE, vec3());
    sky.glow.assign(SIZE, vec3());
    sky.through.assign(SkyGrid::ROWS, vec3());
    sky.from_above = sky.from_below = vec3();
    sky.beam = beamAt(m_columns, optics, source, eye, source.sine);
    const LightThere low = m_field.at(0.0f, source.sine);
    sky.ground = low.beam * std::fmax(source.sine, 0.0f) + (low.mean - low.slope * (2.0f / 3.0f)) * PI;
}

void Atmosphere::compute(const AirOptics& optics, const LightSource& source, float eye_height, ClearSky& sky) {
    const float eye = std::clamp(eye_height, MIN_EYE, MAX_EYE);
    computeField(optics, source, eye, sky);
    for (int row = SkyGrid::ROWS - 1; row >= 0; --row) {
        const float sine = SkyGrid::sineOf(row);
        const float sight_sine = sightSine(row, eye);
        sky.through[static_cast<std::size_t>(row)] = prepare(optics, eye, sight_sine);
        vec3 sum;
        for (int column = 0; column < SkyGrid::COLUMNS; ++column) {
            const Sight sight = look(sight_sine, SkyGrid::cosineOf(column), source, eye);
            sky.radiance[SkyGrid::indexOf(column, row)] = sight.radiance;
            sky.glow[SkyGrid::indexOf(column, row)] = sight.glow;
            sum = sum + sight.spread * (SkyGrid::solidAngle(column, row) * std::fabs(sine));
        }
        vec3& side = sine > 0.0f ? sky.from_above : sky.from_below;
        side = side + sum;
    }
}

void Atmosphere::computeRound(const AirOptics& optics, const LightSource& source, float eye_height, ClearSky& sky) {
    constexpr int SIDES = 6;
    const float eye = std::clamp(eye_height, MIN_EYE, MAX_EYE);
    computeField(optics, source, eye, sky);
    for (int row = SkyGrid::ROWS - 1; row >= 0; --row) {
        const float sine = SkyGrid::sineOf(row);
        const float sight_sine = sightSine(row, eye);
        sky.through[static_cast<std::size_t>(row)] = prepare(optics, eye, sight_sine);
        vec3 mean;
        for (int side = 0; side < SIDES; ++side) {
            const float around = (static_cast<float>(side) + 0.5f) / SIDES * PI;
            mean = mean + look(sight_sine, std::cos(around), source, eye).spread * (1.0f / SIDES);
        }
        vec3& side = sine > 0.0f ? sky.from_above : sky.from_below;
        for (int column = 0; column < SkyGrid::COLUMNS; ++column) {
            sky.radiance[SkyGrid::indexOf(column, row)] = mean;
            side = side + mean * (SkyGrid::solidAngle(column, row) * std::fabs(sine));
        }
    }
}
