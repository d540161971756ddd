// The light of one distant source at all heights in the air.
#pragma once

#include <vector>

#include "sky/AirColumns.h"
#include "sky/AirOptics.h"

/// Sun or moon.
struct LightSource {
    float sine = 1.0f;  ///< sine of its elevation at the eye
    vec3 illuminance;   ///< illuminance of a facing surface outside the air, klx
};

/// Light at a position: direct light, and light scattered before. The scattered radiance toward a direction is mean +
/// slope * sine of the direction's elevation, kcd/m^2.
struct LightThere {
    vec3 beam;  ///< illuminance of a surface facing the source, klx
    vec3 mean;
    vec3 slope;
};

/// Direct light is traced through the spherical air, with the globe's shadow. Scattered light of all orders follows
/// Eddington's approximation in flat layers, separately for each elevation of the source along a line of sight.
class LightField {
public:
    static constexpr int LAYERS = 64;

    void compute(const AirColumns& columns, const AirOptics& optics, const LightSource& source);

    /// Fractional layer index of a height in metres, for `at`.
    static float layerOf(float height);
    /// The light where the source's elevation has this sine.
    LightThere at(float layer, float sine) const;

private:
    static constexpr int SINES = 33;
    /// Flat layers exclude the lit air beside them, which is the only source of light inside the globe's shadow.
    void spreadIntoShadow();

    std::vector<LightThere> m_field;
    float m_lowest = 0.0f, m_step = 1.0f;
};

/// Mean reflectance of sea and ground.
constexpr float GROUND_ALBEDO = 0.07f;

/// The direct light at a height (metres) from a source at this elevation, klx.
vec3 beamAt(const AirColumns& columns, const AirOptics& optics, const LightSource& source, float height, float sine);
