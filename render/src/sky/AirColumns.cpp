// The table of columns is parametrised as in Bruneton and Neyret (2008): by the distances to the horizon and to the
// top.
#include "sky/AirColumns.h"

#include <algorithm>
#include <cmath>

#include "base/FrameView.h"

namespace {

/// Scale height, metres: a sky over haze with the scale height HAZE_HEIGHT would be white; that value holds for lines
/// of sight through the air below.
constexpr float HAZE_SCALE = 800.0f;
constexpr float MOLECULE_HEIGHT = 8000.0f;
constexpr float OZONE_CENTRE = 25000.0f, OZONE_HALF_WIDTH = 15000.0f;
constexpr float TOP_RADIUS = GLOBE_RADIUS + AIR_TOP;
constexpr int STEPS = 80;

float square(float v) {
    return v * v;
}

/// Distance from a height to the globe's horizon, metres.
float horizonDistance(float height) {
    return std::sqrt(height * (height + 2.0f * GLOBE_RADIUS));
}

float topDistance(float height, float sine) {
    // The difference of squares keeps the digits that the radii alone would lose.
    const float r = GLOBE_RADIUS + height;
    const float rise = (AIR_TOP - height) * (TOP_RADIUS + r);
    const float along = r * sine;
    return along > 0.0f ? rise / (along + std::sqrt(along * along + rise)) : std::sqrt(along * along + rise) - along;
}

vec3 integrate(float height, float sine) {
    const float length = topDistance(height, sine);
    const float r = GLOBE_RADIUS + height;
    vec3 sum;
    for (int i = 0; i < STEPS; ++i) {
        // Steps grow with the distance: the air is dense at the start of the line or where it touches the globe.
        const float from = length * square(static_cast<float>(i) / STEPS);
        const float to = length * square(static_cast<float>(i + 1) / STEPS);
        const float s = 0.5f * (from + to);
        const float up = (2.0f * r * sine * s + s * s) / (r + std::sqrt(r * r + 2.0f * r * sine * s + s * s));
        sum = sum + airDensity(height + up) * (to - from);
    }
    return sum;
}

}  // namespace

vec3 airDensity(float height) {
    const float h = std::fmax(height, 0.0f);
    return {std::exp(-h / MOLECULE_HEIGHT), std::exp(-h / HAZE_SCALE),
            std::fmax(1.0f - std::fabs(h - OZONE_CENTRE) / OZONE_HALF_WIDTH, 0.0f)};
}

float horizonSine(float height) {
    return -horizonDistance(std::fmax(height, 0.0f)) / (GLOBE_RADIUS + std::fmax(height, 0.0f));
}

AirColumns::AirColumns() : m_columns(static_cast<std::size_t>(HEIGHTS * SINES)) {
    const float farthest = horizonDistance(AIR_TOP);
    for (int i = 0; i < HEIGHTS; ++i) {
        const float horizon = farthest * static_cast<float>(i) / (HEIGHTS - 1);
        const float r = std::sqrt(horizon * horizon + GLOBE_RADIUS * GLOBE_RADIUS);
        const float height = horizon * horizon / (r + GLOBE_RADIUS);
        const float nearest = AIR_TOP - height, range = horizon + farthest - nearest;
        for (int j = 0; j < SINES; ++j) {
            const float d = std::fmax(nearest + range * static_cast<float>(j) / (SINES - 1), 1e-3f);
            const float sine = ((AIR_TOP - height) * (TOP_RADIUS + r) - d * d) / (2.0f * r * d);
            m_columns[static_cast<std::size_t>(i * SINES + j)] = integrate(height, std::clamp(sine, -1.0f, 1.0f));
        }
    }
}

vec3 AirColumns::getColumn(float height, float sine) const {
    const float h = std::clamp(height, 0.0f, AIR_TOP - 1.0f);
    const float farthest = horizonDistance(AIR_TOP), horizon = horizonDistance(h), nearest = AIR_TOP - h;
    const float d = topDistance(h, std::fmax(sine, horizonSine(h)));
    const float x = std::clamp((d - nearest) / (horizon + farthest - nearest), 0.0f, 1.0f) * (SINES - 1);
    const float y = horizon / farthest * (HEIGHTS - 1);
    const int i = std::min(static_cast<int>(y), HEIGHTS - 2), j = std::min(static_cast<int>(x), SINES - 2);
    const vec3* const at = &m_columns[static_cast<std::size_t>(i * SINES + j)];
    const float u = x - static_cast<float>(j), v = y - static_cast<float>(i);
    const vec3 low = at[0] + (at[1] - at[0]) * u, high = at[SINES] + (at[SINES + 1] - at[SINES]) * u;
    return low + (high - low) * v;
}
