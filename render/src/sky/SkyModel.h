// The light of the whole sky: sun, moon, airglow, clouds and haze together.
#pragma once

#include "base/FrameView.h"
#include "sky/Astronomy.h"
#include "sky/Atmosphere.h"

/// Input of the sky model.
struct SkyConditions {
    Heavens heavens;
    double extinction = 3.912 / 20000.0;  ///< of the air at sea level, 1/m
    float cloudiness = 0.0f;              ///< 0..1
    float eye_height = 10.0f;             ///< metres
};

enum class LightBody { NONE, SUN, MOON };

/// Output of the sky model besides the light in FrameView.
struct SkyPicture {
    /// By SkyGrid: radiance without the sun's near glow, and the strength of that glow. Below the horizon: radiance of
    /// the haze.
    std::vector<vec4> table;
    vec3 glow_color;                   ///< radiance of the near glow for strength 1 and glowShape() = 1
    vec3 sun_radiance;                 ///< of the disc
    vec3 moon_radiance;                ///< of a part of the disc that the sun lights perpendicularly
    vec3 star_depth;                   ///< optical depth toward the zenith
    vec3 galaxy_light;                 ///< radiance of the Milky Way at its brightest, outside the air
    vec3 cloud_light;                  ///< direct light at the clouds, klx
    vec3 cloud_ambient;                ///< light of the sky on the clouds, klx
    LightBody body = LightBody::NONE;  ///< the brightest source
    float adaptation = 1.0f;           ///< adaptation luminance of an eye that looks around, kcd/m^2
};

/// Height of the clouds, metres.
constexpr float CLOUD_HEIGHT = 1900.0f;

class SkyModel {
public:
    /// Sets `light` except its directions and its exposure.
    void compute(const SkyConditions& conditions, SkyLight& light, SkyPicture& picture);

private:
    struct Cover {
        float straight;  // share of the direct light that passes the clouds
        float gray;      // weight of an overcast sky
        float broken;    // share of the sky with separate clouds
    };
    static Cover coverOf(const SkyConditions& conditions);
    void gather(const SkyConditions& conditions, const AirOptics& optics);
    void addAirglow();
    void addOvercast(const AirOptics& optics, float gray);
    /// Adds the sea below the horizon; the table itself gets the radiance of infinite haze there.
    void addSea(float eye_height);
    void fillTable(float eye_height, SkyPicture& picture) const;
    void fillLight(const Cover& cover, SkyLight& light, SkyPicture& picture) const;
    void fillBodies(const SkyConditions& conditions, const AirOptics& optics, const Cover& cover,
                    SkyPicture& picture) const;
    float adaptationOf(const SkyLight& light, LightBody body) const;

    Atmosphere m_atmosphere;
    ClearSky m_sun_sky, m_moon_sky, m_sky;
    LightSource m_sun, m_moon;
    vec3 m_sun_beam, m_moon_beam;
};

/// Sets the direction of the light from the current position of its body; from the zenith for NONE.
void aimLight(const Heavens& heavens, LightBody body, SkyLight& light);
/// Illuminance of the moon outside the air, klx, by its phase angle in degrees.
float moonIlluminance(double phase);
/// Display value of 1 kcd/m^2 for an eye adapted to a luminance (kcd/m^2): nights remain darker than days, though much
/// less than in reality.
float exposureFor(float adaptation);
