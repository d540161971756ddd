// The light of the whole sky: sun, moon, airglow, clouds and haze together.
#pragma once

#include "base/FrameView.h"
#include "sky/Astronomy.h"
#include "sky/Atmosphere.h"

/// What the sky depends on.
struct SkyConditions {
    Heavens heavens;
    double extinction = 3.912 / 20000.0;  ///< of the air at sea level, a metre
    float cloudiness = 0.0f;              ///< 0..1
    float eye_height = 10.0f;             ///< metres
};

enum class LightBody { NONE, SUN, MOON };

/// The sky as it is drawn, besides the light that FrameView carries.
struct SkyPicture {
    /// By SkyGrid: radiance without the sun's near glow, and that glow's strength. Below the horizon that of the haze.
    std::vector<vec4> table;
    vec3 glow_color;                   ///< radiance of the near glow for strength 1 and glowShape() = 1
    vec3 sun_radiance;                 ///< of the disc
    vec3 moon_radiance;                ///< of a patch of the disc that the sun lights squarely
    vec3 star_depth;                   ///< optical depth toward the zenith
    vec3 galaxy_light;                 ///< radiance of the Milky Way where it is brightest, outside the air
    vec3 cloud_light;                  ///< straight light at the clouds, klx
    vec3 cloud_ambient;                ///< light of the sky on the clouds, klx
    LightBody body = LightBody::NONE;  ///< that gives the most light
    float adaptation = 1.0f;           ///< luminance that an eye looking about adapts to, kcd/m^2
};

/// Clouds lie at this height, metres.
constexpr float CLOUD_HEIGHT = 1900.0f;

class SkyModel {
public:
    /// Fills `light` except its directions and its exposure.
    void compute(const SkyConditions& conditions, SkyLight& light, SkyPicture& picture);

private:
    struct Cover {
        float straight;  // share of the straight light that comes through the clouds
        float gray;      // how far the sky is that of an overcast day
        float broken;    // how much of the sky single clouds fill
    };
    static Cover coverOf(const SkyConditions& conditions);
    void gather(const SkyConditions& conditions, const AirOptics& optics);
    void addAirglow();
    void addOvercast(const AirOptics& optics, float gray);
    /// Lays the sea below, and leaves in the table what haze without end would look like there.
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

/// Points the light at where the bodies stand now; from the zenith when neither shines.
void aimLight(const Heavens& heavens, LightBody body, SkyLight& light);
/// Illuminance of the moon outside the air, klx, by its phase angle in degrees.
float moonIlluminance(double phase);
/// Display value of 1 kcd/m^2 for an eye adapted to a luminance: nights stay darker than days, though far less than
/// they are.
float exposureFor(float adaptation);
