// Amount of air along a line of sight.
#pragma once

#include <vector>

#include "engine/math/Vec.h"

/// The spherical globe for the computation of light, metres.
constexpr float GLOBE_RADIUS = 6371000.0f;
constexpr float AIR_TOP = 100000.0f;

/// Relative densities at a height in metres: x molecules and y haze, 1 at sea level; z ozone, 1 in the middle of its
/// layer.
vec3 airDensity(float height);

/// Columns from a position to space: density times length, metres. Computed once: the haze coefficients and the colour
/// of the light are factors applied later.
class AirColumns {
public:
    AirColumns();
    /// `height` in metres; `sine` of the elevation. Below the horizon the result is the horizon's column.
    vec3 getColumn(float height, float sine) const;

private:
    static constexpr int HEIGHTS = 64;
    static constexpr int SINES = 128;
    std::vector<vec3> m_columns;
};

/// Sine of the elevation of the globe's horizon from this height in metres.
float horizonSine(float height);
