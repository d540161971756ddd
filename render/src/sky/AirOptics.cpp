// Molecules after Bruneton and Neyret (2008) at 640, 550 and 450 nm; ozone after Serdyuchenko et al. (2014) for a layer
// of 300 Dobson units, for red at 610 nm, the maximum of its absorption.
#include "sky/AirOptics.h"

namespace {

constexpr float FOUR_PI = 12.5663706f;

}  // namespace

AirOptics::AirOptics(double extinction) {
    molecules = {7.39e-6f, 13.56e-6f, 30.3e-6f};
    ozone = {2.60e-6f, 1.88e-6f, 0.10e-6f};
    const float haze = std::fmax(static_cast<float>(extinction) - molecules.y, 2e-6f);
    fogginess = smoothStep(std::log(4e-4f), std::log(2.6e-3f), std::log(haze));
    // Small particles scatter blue more than red (Angstrom exponent 1.3) and absorb a little; drops do neither.
    haze_extinction = mix(vec3(0.82f, 1.0f, 1.30f), gray(1.0f), fogginess) * haze;
    haze_scattering = haze_extinction * (0.965f + 0.0348f * fogginess);
    haze_scattering_aside = haze_scattering * (1.0f - HAZE_PEAK);
    haze_weakening = haze_extinction - haze_scattering * HAZE_PEAK;
}

float moleculePhase(float cosine) {
    return 0.75f / FOUR_PI * (1.0f + cosine * cosine);
}

float hazePhase(float cosine, float mean_cosine) {
    const float g2 = mean_cosine * mean_cosine;
    const float base = 1.0f + g2 - 2.0f * mean_cosine * cosine;
    return (1.0f - g2) / (FOUR_PI * base * std::sqrt(base));
}
