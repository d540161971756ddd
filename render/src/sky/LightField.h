// The light of one distant source at every height in the air.
#pragma once

#include <vector>

#include "sky/AirColumns.h"
#include "sky/AirOptics.h"

/// Sun or moon.
struct LightSource {
    float sine = 1.0f;  ///< of its elevation over the eye
    vec3 illuminance;   ///< of a surface that faces it outside the air, klx
};

/// What light there is at a place: straight from the source, and scattered before. The scattered radiance toward a
/// direction is mean + slope * sine of the direction's elevation, kcd/m^2.
struct LightThere {
    vec3 beam;  ///< illuminance of a surface that faces the source, klx
    vec3 mean;
    vec3 slope;
};

/// Straight light is traced through the round air, with the globe's shadow. Scattered light, of all orders, follows
/// Eddington's approximation in flat layers for each elevation of the source that a line of sight meets.
class LightField {
public:
    static constexpr int LAYERS = 64;

    void compute(const AirColumns& columns, const AirOptics& optics, const LightSource& source);

    /// Place of a height between the field's layers, as `at` takes it.
    static float layerOf(float height);
    /// The light where the source's elevation has that sine.
    LightThere at(float layer, float sine) const;

private:
    static constexpr int SINES = 33;
    /// Flat layers know nothing of the lit air next to them, which is all the light there is in the globe's shadow.
    void spreadIntoShadow();

    std::vector<LightThere> m_field;
    float m_lowest = 0.0f, m_step = 1.0f;
};

/// What sea and ground throw back, on average.
constexpr float GROUND_ALBEDO = 0.07f;

/// The straight light that arrives at a height from a source of that elevation.
vec3 beamAt(const AirColumns& columns, const AirOptics& optics, const LightSource& source, float height, float sine);
