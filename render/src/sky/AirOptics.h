// What the air does to light, per metre.
#pragma once

#include "sky/Rgb.h"

/// Coefficients where the density is 1, a metre, for red, green and blue.
///
/// The haze scatters mostly ahead. The share that it throws into the very direction of the light counts as if it had
/// not been scattered at all, wherever light is weakened or spread (the delta-Eddington approximation of Joseph,
/// Wiscombe and Weinman, 1976); so fog of many optical depths keeps its glow.
struct AirOptics {
    /// `extinction` of haze and molecules together at sea level, a metre.
    explicit AirOptics(double extinction);

    vec3 molecules;              ///< scattering, which is all they do
    vec3 ozone;                  ///< absorption
    vec3 haze_scattering;        ///< in all directions
    vec3 haze_scattering_aside;  ///< without the share straight ahead
    vec3 haze_extinction;        ///< all of it: what blurs a sharp picture
    vec3 haze_weakening;         ///< without the share straight ahead: what is lost to the light as a whole
    float fogginess = 0.0f;      ///< 0 haze of small particles, 1 fog of drops

    /// Optical depth of a column for the light as a whole.
    vec3 depth(const vec3& column) const { return molecules * column.x + haze_weakening * column.y + ozone * column.z; }
    /// Optical depth for the picture of a disc.
    vec3 sharpDepth(const vec3& column) const {
        return molecules * column.x + haze_extinction * column.y + ozone * column.z;
    }
};

constexpr float HAZE_AHEAD = 0.70f;                             ///< mean cosine of the haze's scattering angle
constexpr float HAZE_PEAK = HAZE_AHEAD * HAZE_AHEAD;            ///< share that counts as unscattered
constexpr float HAZE_ASIDE = HAZE_AHEAD / (1.0f + HAZE_AHEAD);  ///< mean cosine of the rest

/// Shares of light scattered into a direction, per steradian.
float moleculePhase(float cosine);
/// After Henyey and Greenstein (1941).
float hazePhase(float cosine, float mean_cosine);
