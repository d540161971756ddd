// Adds the light sources, covers them with clouds and adds the sea below; called when the conditions have changed
// visibly.
#include "sky/SkyModel.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float PI = 3.14159265f;
constexpr float DISC_SOLID_ANGLE = 6.8e-5f;  // of sun and moon, steradians
constexpr int HALF = SkyGrid::ROWS / 2;

/// Sunlight outside the air, klx; balanced so that sun and sky together are white.
const vec3 SUNLIGHT = vec3(0.930f, 1.000f, 1.075f) * 129.0f;
/// Moonlight looks blue to dark-adapted eyes (Purkinje effect); the moon itself is grey.
const vec3 MOON_TINT(0.62f, 1.02f, 1.92f);
/// Airglow and stars too faint to distinguish, at the zenith, kcd/m^2.
const vec3 NIGHT_GLOW = vec3(0.55f, 0.95f, 2.1f) * 2.4e-7f;
/// Reflectance of water, foam and glitter, without the sky's mirror image.
const vec3 WATER_ALBEDO(0.032f, 0.048f, 0.058f);
const vec3 OVERCAST_TINT(0.965f, 1.0f, 1.06f);

constexpr float GALAXY_BRIGHTNESS = 2.6f;  // relative to the airglow

constexpr float SUN_GONE = -0.35f;   // sine of the elevation below which sunlight is weaker than the airglow
constexpr float MOON_GONE = -0.14f;  // the same for moonlight

vec3 cloudGray(const vec3& color) {
    return mix(color, OVERCAST_TINT * luminance(color), 0.85f);
}

vec3 asSeen(const LightSource& source) {
    return source.illuminance * (1.0f / DISC_SOLID_ANGLE);
}

}  // namespace

void aimLight(const Heavens& heavens, LightBody body, SkyLight& light) {
    light.sun_direction = narrow(heavens.sun);
    light.moon_direction = narrow(heavens.moon);
    light.light_direction = body == LightBody::SUN    ? light.sun_direction
                            : body == LightBody::MOON ? light.moon_direction
                                                      : vec3(0.0f, 0.0f, 1.0f);
}

float moonIlluminance(double phase) {
    // Allen's Astrophysical Quantities: magnitude -12.73 + 0.026 a + 4e-9 a^4; the sun's is -26.74.
    const double dimmer = 26.74 - 12.73 + 0.026 * phase + 4e-9 * phase * phase * phase * phase;
    return luminance(SUNLIGHT) * static_cast<float>(std::pow(10.0, -0.4 * dimmer));
}

float exposureFor(float adaptation) {
    constexpr float BLACK = 3.5e-7f;  // lower limit of adaptation
    return 0.262f * std::pow(adaptation + BLACK, -0.83f);
}

SkyModel::Cover SkyModel::coverOf(const SkyConditions& conditions) {
    // Above the clouds the sky is clear.
    const float below = 1.0f - smoothStep(CLOUD_HEIGHT - 400.0f, CLOUD_HEIGHT + 400.0f, conditions.eye_height);
    const float cloudiness = std::clamp(conditions.cloudiness, 0.0f, 1.0f) * below;
    const float gray = smoothStep(0.3f, 1.0f, cloudiness);
    return {1.0f - 0.985f * smoothStep(0.4f, 0.97f, cloudiness), gray, cloudiness * (1.0f - gray)};
}

void SkyModel::gather(const SkyConditions& conditions, const AirOptics& optics) {
    const Heavens& heavens = conditions.heavens;
    m_sun = {static_cast<float>(heavens.sun.z), SUNLIGHT};
    m_moon = {static_cast<float>(heavens.moon.z), MOON_TINT * moonIlluminance(heavens.moon_phase)};
    // By day the moon's share is invisible; the airglow needs the transmittance of the air, which either source gives.
    const bool sun = m_sun.sine > SUN_GONE;
    const bool moon = m_sun.sine < 0.02f && m_moon.sine > MOON_GONE;
    if (sun || !moon) m_atmosphere.compute(optics, m_sun, conditions.eye_height, m_sun_sky);
    if (moon) m_atmosphere.computeRound(optics, m_moon, conditions.eye_height, m_moon_sky);
    m_sky = sun || !moon ? m_sun_sky : m_moon_sky;
    m_sun_beam = sun ? m_sun_sky.beam : vec3();
    m_moon_beam = moon ? m_moon_sky.beam : vec3();
    if (!(sun && moon)) return;
    for (std::size_t i = 0; i < m_sky.radiance.size(); ++i) {
        m_sky.radiance[i] = m_sky.radiance[i] + m_moon_sky.radiance[i];
    }
    m_sky.from_above = m_sky.from_above + m_moon_sky.from_above;
    m_sky.from_below = m_sky.from_below + m_moon_sky.from_below;
    m_sky.ground = m_sky.ground + m_moon_sky.ground;
}

void SkyModel::addAirglow() {
    for (int row = HALF; row < SkyGrid::ROWS; ++row) {
        const float sine = SkyGrid::sineOf(row);
        // The glowing layer at 90 km is seen edge on near the horizon (van Rhijn, 1921).
        const float slant = 1.0f / std::sqrt(1.0f - 0.972f * (1.0f - sine * sine));
        const vec3 through = m_sky.through[static_cast<std::size_t>(row)];
        const vec3 glow = product(NIGHT_GLOW * slant, mix(through, gray(1.0f), 0.25f));
        for (int column = 0; column < SkyGrid::COLUMNS; ++column) {
            vec3& radiance = m_sky.radiance[SkyGrid::indexOf(column, row)];
            radiance = radiance + glow;
            m_sky.from_above = m_sky.from_above + glow * (sine * SkyGrid::solidAngle(column, row));
        }
    }
    m_sky.ground = m_sky.ground + NIGHT_GLOW * PI;
}

void SkyModel::addOvercast(const AirOptics& optics, float gray_share) {
    if (gray_share <= 0.0f) return;
    // Thick cloud transmits two fifths of the light, distributed as in the CIE standard overcast sky: a third as bright
    // at the horizon as at the zenith (Moon and Spencer, 1942).
    const vec3 below_clouds = cloudGray(m_sky.ground) * 0.4f;
    const vec3 zenith = below_clouds * (9.0f / (7.0f * PI));
    const vec3 haze = below_clouds * (0.55f / PI);
    for (int row = 0; row < SkyGrid::ROWS; ++row) {
        const float sine = SkyGrid::sineOf(row);
        // Below the horizon the table has only haze.
        const float through =
            row >= HALF ? std::exp(-luminance(optics.haze_weakening) * 1000.0f / std::fmax(sine, 0.01f)) : 0.0f;
        const vec3 overcast = mix(haze, zenith * ((1.0f + 2.0f * sine) / 3.0f), through);
        for (int column = 0; column < SkyGrid::COLUMNS; ++column) {
            vec3& radiance = m_sky.radiance[SkyGrid::indexOf(column, row)];
            radiance = mix(radiance, overcast, gray_share);
            m_sky.glow[SkyGrid::indexOf(column, row)] = m_sky.glow[SkyGrid::indexOf(column, row)] * (1.0f - gray_share);
        }
    }
    m_sky.from_above = mix(m_sky.from_above, below_clouds, gray_share);
    m_sky.from_below = m_sky.from_below * (1.0f - 0.6f * gray_share);
    m_sky.ground = mix(m_sky.ground, below_clouds, gray_share);
}

void SkyModel::addSea(float eye_height) {
    // Near the ground, distant objects have the horizon's colour in all directions; see sightSine().
    const float high = smoothStep(500.0f, 3000.0f, eye_height);
    for (int row = 0; SkyGrid::sineOf(row) < horizonSine(eye_height); ++row) {
        const float sine = SkyGrid::sineOf(row), grazing = 1.0f + sine;
        const float mirror = 0.02f + 0.98f * std::pow(grazing, 5.0f);  // Schlick's approximation (1994)
        const vec3 own = product(WATER_ALBEDO, m_sky.ground) * ((1.0f - mirror) / PI);
        const vec3 through = m_sky.through[static_cast<std::size_t>(row)];
        const vec3 haze_share = gray(1.0f + 1e-6f) - through;
        for (int column = 0; column < SkyGrid::COLUMNS; ++column) {
            const std::size_t here = SkyGrid::indexOf(column, row), horizon = SkyGrid::indexOf(column, HALF);
            const vec3 above = m_sky.radiance[SkyGrid::indexOf(column, SkyGrid::ROWS - 1 - row)];
            const vec3 sea = product(through, above * mirror + own);
            m_sky.from_below = m_sky.from_below + sea * (-sine * SkyGrid::solidAngle(column, row));
            for (std::vector<vec3>* const part : {&m_sky.radiance, &m_sky.glow}) {
                (*part)[here] = mix((*part)[horizon], quotient((*part)[here], haze_share), high);
            }
        }
    }
}

void SkyModel::fillTable(float eye_height, SkyPicture& picture) const {
    const float high = smoothStep(0.5f, 0.8f, m_sun.sine);
    picture.table.resize(m_sky.radiance.size());
    float brightest = 1e-12f;
    picture.glow_color = gray(1.0f);
    for (const vec3& glow : m_sky.glow) {
        if (luminance(glow) <= brightest) continue;
        brightest = luminance(glow);
        picture.glow_color = glow / brightest;
    }
    for (int row = 0; row < SkyGrid::ROWS; ++row) {
        for (int column = 0; column < SkyGrid::COLUMNS; ++column) {
            const std::size_t i = SkyGrid::indexOf(column, row);
            const float cosine = cosineBetween(sightSine(row, eye_height), m_sun.sine, SkyGrid::cosineOf(column));
            const vec3 radiance = m_sky.radiance[i] + m_sky.glow[i] * (glowShape(cosine) * (1.0f - high));
            picture.table[i] = {radiance.x, radiance.y, radiance.z, luminance(m_sky.glow[i]) * high};
        }
    }
}

void SkyModel::fillLight(const Cover& cover, SkyLight& light, SkyPicture& picture) const {
    const float sun = luminance(m_sun_beam), moon = luminance(m_moon_beam);
    picture.body = sun <= 0.0f && moon <= 0.0f ? LightBody::NONE : sun >= moon ? LightBody::SUN : LightBody::MOON;
    light.light_color = (sun >= moon ? m_sun_beam : m_moon_beam) * cover.straight;
    // Separate clouds in a blue sky brighten the shadows with white light. An eighth of the beam is scattered downward
    // per steradian, as by a cloud of medium thickness.
    constexpr float DOWNWARD = 0.125f;
    light.ambient_above = m_sky.from_above + picture.cloud_light * (cover.broken * DOWNWARD * PI);
    light.ambient_below = m_sky.from_below;
    light.horizon = vec3();
    for (int column = 0; column < SkyGrid::COLUMNS; ++column) {
        const vec4& texel = picture.table[SkyGrid::indexOf(column, HALF)];
        light.horizon = light.horizon + vec3(texel.x, texel.y, texel.z) * (1.0f / SkyGrid::COLUMNS);
    }
    light.night = smoothStep(0.0f, 0.2f, -m_sun.sine);
}

void SkyModel::fillBodies(const SkyConditions& conditions, const AirOptics& optics, const Cover& cover,
                          SkyPicture& picture) const {
    const AirColumns& columns = m_atmosphere.getColumns();
    const float eye = conditions.eye_height;
    const auto through = [&](float sine) { return fade(optics.sharpDepth(columns.getColumn(eye, sine))); };
    const float veil = 1.0f - cover.gray;
    picture.sun_radiance = product(asSeen(m_sun), through(m_sun.sine)) * veil;
    const vec3 moon = SUNLIGHT * (moonIlluminance(0.0) / luminance(SUNLIGHT) / DISC_SOLID_ANGLE);
    picture.moon_radiance = product(moon, through(m_moon.sine)) * veil;
    picture.star_depth = optics.sharpDepth(columns.getColumn(eye, 1.0f)) + gray(9.0f * cover.gray);
    picture.galaxy_light = NIGHT_GLOW * GALAXY_BRIGHTNESS;
    const vec3 sun = beamAt(columns, optics, m_sun, CLOUD_HEIGHT, m_sun.sine);
    const vec3 moonlight = beamAt(columns, optics, m_moon, CLOUD_HEIGHT, m_moon.sine);
    picture.cloud_light = (luminance(sun) > luminance(moonlight) ? sun : moonlight) * cover.straight;
    picture.cloud_ambient = m_sky.from_above;
}

float SkyModel::adaptationOf(const SkyLight& light, LightBody body) const {
    // The view is nearly level; nearly half of it is sea, ground and deck. Square roots weight bright parts less than
    // linearly and more than logarithms would.
    constexpr float MIN_SINE = -0.1f, MAX_SINE = 0.6f, SURFACES = 0.4f, REFLECTANCE = 0.12f;
    float sum = 0.0f, weights = 0.0f;
    for (int row = 0; row < SkyGrid::ROWS; ++row) {
        const float sine = SkyGrid::sineOf(row);
        if (sine < MIN_SINE || sine > MAX_SINE) continue;
        for (int column = 0; column < SkyGrid::COLUMNS; ++column) {
            const float weight = SkyGrid::solidAngle(column, row);
            sum += weight * std::sqrt(luminance(m_sky.radiance[SkyGrid::indexOf(column, row)]));
            weights += weight;
        }
    }
    const float straight =
        luminance(light.light_color) * std::fmax(body == LightBody::SUN ? m_sun.sine : m_moon.sine, 0.0f);
    const float surfaces = (straight + luminance(light.ambient_above)) * REFLECTANCE / PI;
    const float root = (1.0f - SURFACES) * sum / weights + SURFACES * std::sqrt(surfaces);
    return root * root;
}

void SkyModel::compute(const SkyConditions& conditions, SkyLight& light, SkyPicture& picture) {
    const AirOptics optics(conditions.extinction);
    const Cover cover = coverOf(conditions);
    gather(conditions, optics);
    addAirglow();
    addSea(conditions.eye_height);
    addOvercast(optics, cover.gray);
    fillTable(conditions.eye_height, picture);
    fillBodies(conditions, optics, cover, picture);
    fillLight(cover, light, picture);
    picture.adaptation = adaptationOf(light, picture.body);
}
