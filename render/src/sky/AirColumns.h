// How much air lies along a line of sight.
#pragma once

#include <vector>

#include "engine/math/Vec.h"

/// The round globe as the light sees it, metres.
constexpr float GLOBE_RADIUS = 6371000.0f;
constexpr float AIR_TOP = 100000.0f;

/// Densities at a height, of what scatters and absorbs: x molecules and y haze, 1 at sea level, z ozone, 1 in the
/// middle of its layer.
vec3 airDensity(float height);

/// Columns from a place out to space: density times length, metres. Made once, since what the haze weighs and what the
/// light's colour is comes in later as factors.
class AirColumns {
public:
    AirColumns();
    /// `sine` is that of the elevation. Below the horizon it gives the horizon's column.
    vec3 getColumn(float height, float sine) const;

private:
    static constexpr int HEIGHTS = 64;
    static constexpr int SINES = 128;
    std::vector<vec3> m_columns;
};

/// The sine of the elevation at which the globe's edge is seen from that height.
float horizonSine(float height);
