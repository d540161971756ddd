// The radiance of the clear sky round an eye.
#pragma once

#include <vector>

#include "sky/LightField.h"

/// A direction's place in the table that common.glsl's skyRadiance() reads. Columns go from the source's side round to
/// the other, rows from straight down to straight up; the horizon lies between the two middle rows.
struct SkyGrid {
    static constexpr int COLUMNS = 32;
    static constexpr int ROWS = 64;
    /// Cosine of the angle round the vertical between a column and the source's side.
    static float cosineOf(int column);
    /// Sine of a row's elevation. The outermost row stands for the vertical.
    static float sineOf(int row);
    static std::size_t indexOf(int column, int row) { return static_cast<std::size_t>(row * COLUMNS + column); }
    /// Solid angle that a place of the grid stands for, both sides together, steradians.
    static float solidAngle(int column, int row);
};

/// What one source makes of the sky.
struct ClearSky {
    std::vector<vec3> radiance;   ///< by SkyGrid, kcd/m^2
    std::vector<vec3> glow;       ///< by SkyGrid: radiance of the glow round the source, for glowShape() = 1
    std::vector<vec3> through;    ///< by row: how much of what lies behind the air gets through
    vec3 from_above, from_below;  ///< illuminance of an upward and a downward surface by scattered light, klx
    vec3 beam;                    ///< straight light at the eye, facing the source, klx
    vec3 ground;                  ///< illuminance of the ground, straight and scattered, klx
};

/// The elevation, as its sine, at which a row's line of sight is followed from that height. Everything seen far off
/// through the air takes the colour of the sky a little above the horizon (see common.glsl), so from low down the sky
/// is the same from there to the horizon.
float sightSine(int row, float eye_height);

/// Cosine of the angle between directions of two elevations, given their sines and the cosine of the angle between the
/// directions round the vertical.
float cosineBetween(float sine_a, float sine_b, float cosine_round);

/// How the glow round a source falls off with the cosine of the angle from it; sky.vert.glsl has the same.
float glowShape(float cosine);

/// Light scattered once is integrated along each line of sight through the round air, with what had been scattered
/// before added from a `LightField`. Below the horizon there is the light of the air in front of the ground.
class Atmosphere {
public:
    void compute(const AirOptics& optics, const LightSource& source, float eye_height, ClearSky& sky);
    /// The same for a source whose side the table does not follow: without a glow, alike all round.
    void computeRound(const AirOptics& optics, const LightSource& source, float eye_height, ClearSky& sky);
    const AirColumns& getColumns() const { return m_columns; }

private:
    struct Step {
        float height, layer, distance;
        vec3 molecules, haze, haze_aside, scattering;  // shares that reach the eye, a unit of light
    };
    struct Sight {
        vec3 radiance, glow;  // as in ClearSky
        vec3 spread;          // radiance with the glow counted to the straight light
    };
    void computeField(const AirOptics& optics, const LightSource& source, float eye, ClearSky& sky);
    /// Splits a line of sight into steps. Returns what gets through all of them.
    vec3 prepare(const AirOptics& optics, float eye, float sine);
    Sight look(float sine, float cosine_round, const LightSource& source, float eye) const;

    AirColumns m_columns;
    LightField m_field;
    std::vector<Step> m_steps;
};
