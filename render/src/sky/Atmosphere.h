// The radiance of the clear sky around an eye.
#pragma once

#include <vector>

#include "sky/LightField.h"

/// Coordinates of the table that common.glsl's skyRadiance() reads. Columns run from the light source's azimuth to the
/// opposite one, rows from straight down to straight up; the horizon is between the two middle rows.
struct SkyGrid {
    static constexpr int COLUMNS = 32;
    static constexpr int ROWS = 64;
    /// Cosine of the azimuth difference between a column and the light source.
    static float cosineOf(int column);
    /// Sine of a row's elevation. The outermost rows are vertical.
    static float sineOf(int row);
    static std::size_t indexOf(int column, int row) { return static_cast<std::size_t>(row * COLUMNS + column); }
    /// Solid angle of a table entry, both sides of the source's azimuth together, steradians.
    static float solidAngle(int column, int row);
};

/// The clear sky lit by one source.
struct ClearSky {
    std::vector<vec3> radiance;   ///< by SkyGrid, kcd/m^2
    std::vector<vec3> glow;       ///< by SkyGrid: radiance of the glow around the source, for glowShape() = 1
    std::vector<vec3> through;    ///< by row: transmittance of the air
    vec3 from_above, from_below;  ///< illuminance of an upward and a downward surface by scattered light, klx
    vec3 beam;                    ///< direct illuminance at the eye of a surface facing the source, klx
    vec3 ground;                  ///< illuminance of the ground, direct and scattered, klx
};

/// Sine of the elevation at which a row's line of sight is computed for an eye height in metres. Distant objects take
/// the colour of the sky slightly above the horizon (see common.glsl), so from low heights the sky is constant from
/// there to the horizon.
float sightSine(int row, float eye_height);

/// Cosine of the angle between two directions, given the sines of their elevations and the cosine of their azimuth
/// difference.
float cosineBetween(float sine_a, float sine_b, float cosine_round);

/// Shape of the glow by the cosine of the angle from the source; identical in sky.vert.glsl.
float glowShape(float cosine);

/// Single scattering is integrated along each line of sight through the spherical air; light scattered before is added
/// from a `LightField`. Below the horizon the table has the light of the air in front of the ground.
class Atmosphere {
public:
    void compute(const AirOptics& optics, const LightSource& source, float eye_height, ClearSky& sky);
    /// The same for a second source, whose azimuth differs from the table's: without glow, independent of azimuth.
    void computeRound(const AirOptics& optics, const LightSource& source, float eye_height, ClearSky& sky);
    const AirColumns& getColumns() const { return m_columns; }

private:
    struct Step {
        float height, layer, distance;
        vec3 molecules, haze, haze_aside, scattering;  // shares that reach the eye, per unit of light
    };
    struct Sight {
        vec3 radiance, glow;  // as in ClearSky
        vec3 spread;          // radiance, with the glow counted as direct light
    };
    void computeField(const AirOptics& optics, const LightSource& source, float eye, ClearSky& sky);
    /// Splits a line of sight into steps. Returns the transmittance of all of them.
    vec3 prepare(const AirOptics& optics, float eye, float sine);
    Sight look(float sine, float cosine_round, const LightSource& source, float eye) const;

    AirColumns m_columns;
    LightField m_field;
    std::vector<Step> m_steps;
};
