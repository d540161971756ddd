// Optical coefficients of the air.
#pragma once

#include "sky/Rgb.h"

/// Coefficients for density 1, in 1/m, for red, green and blue.
///
/// The haze scatters mostly forward. The share scattered into the exact direction of the light is treated as not
/// scattered, both in the extinction and in the spread of light (the delta-Eddington approximation of Joseph, Wiscombe
/// and Weinman, 1976). In this way fog of many optical depths keeps its glow.
struct AirOptics {
    /// `extinction` of haze and molecules together at sea level, 1/m.
    explicit AirOptics(double extinction);

    vec3 molecules;              ///< scattering; molecules do not absorb
    vec3 ozone;                  ///< absorption
    vec3 haze_scattering;        ///< into all directions
    vec3 haze_scattering_aside;  ///< without the forward share
    vec3 haze_extinction;        ///< total: loss of contrast of a sharp image
    vec3 haze_weakening;         ///< without the forward share: loss of the light as a whole
    float fogginess = 0.0f;      ///< 0 haze of small particles, 1 fog of drops

    /// Optical depth of a column for the total light.
    vec3 depth(const vec3& column) const { return molecules * column.x + haze_weakening * column.y + ozone * column.z; }
    /// Optical depth of a column for the image of a disc.
    vec3 sharpDepth(const vec3& column) const {
        return molecules * column.x + haze_extinction * column.y + ozone * column.z;
    }
};

constexpr float HAZE_AHEAD = 0.70f;                             ///< mean cosine of the haze's scattering angle
constexpr float HAZE_PEAK = HAZE_AHEAD * HAZE_AHEAD;            ///< share treated as not scattered
constexpr float HAZE_ASIDE = HAZE_AHEAD / (1.0f + HAZE_AHEAD);  ///< mean cosine of the rest

/// Phase functions: share of the scattered light per steradian.
float moleculePhase(float cosine);
/// Henyey and Greenstein (1941).
float hazePhase(float cosine, float mean_cosine);
