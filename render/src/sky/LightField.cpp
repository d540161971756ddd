// Solves for the scattered light layer by layer when light source or air have changed.
#include "sky/LightField.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int LAYERS = LightField::LAYERS;
constexpr float PI = 3.14159265f;
constexpr double FOUR_PI = 12.566370614;
constexpr float LAYER_POWER = 2.5f;  // exponent of the layers' heights: layers are thin near the ground
constexpr float REACH = 0.21f;       // radians: central angle of the longest line of sight through the air
/// Beyond the edge of the globe's shadow scattered light decreases by e per this angle, radians: twilight falls from
/// 3.4 lux with the sun at -6 degrees to 0.008 lux at -12 (Bond and Henderson, 1963).
constexpr float SHADOW_FADE = 0.0173f;
constexpr float DISC_RADIUS = 0.0047f;  // angular radius of sun and moon, radians

float layerHeight(int layer) {
    return AIR_TOP * std::pow(static_cast<float>(layer) / (LAYERS - 1), LAYER_POWER);
}

float& component(vec3& v, int color) {
    return color == 0 ? v.x : color == 1 ? v.y : v.z;
}
double component(const vec3& v, int color) {
    return static_cast<double>(color == 0 ? v.x : color == 1 ? v.y : v.z);
}

/// Eddington's two equations for one colour, with k extinction, s scattering, g its mean cosine, B the direct light and
/// m the sine of the source's elevation:
///   slope' / 3 = (s - k) mean + s B / 4 pi,    mean' = -(k - g s) slope - 3 g s m B / 4 pi.
/// Discretised over the layers, with the slope defined on the faces between them, they are a tridiagonal system for the
/// mean.
class LayerBalance {
public:
    LayerBalance(const AirOptics& optics, int color);
    /// Computes mean and slope from the direct light.
    void solve(float sine, LightThere* layers);

private:
    using Values = std::array<double, LAYERS>;
    /// At the upper face: slope = m_conduct * (mean - mean above) + m_push.
    void pushFaces(float sine, const LightThere* layers);
    double slopeBelow(double lowest_mean) const { return m_push_below - m_conduct_below * lowest_mean; }

    int m_color;
    Values m_conduct{}, m_push{}, m_forward{};  // on the faces
    Values m_loss{}, m_gain{};                  // of the layers
    double m_conduct_below = 0.0, m_push_below = 0.0;
};

LayerBalance::LayerBalance(const AirOptics& optics, int color) : m_color(color) {
    const auto weakening = [&](const vec3& d) { return component(optics.depth(d), color); };
    const auto aside = [&](const vec3& d) { return component(optics.haze_scattering_aside, color) * d.y; };
    const auto scattering = [&](const vec3& d) { return component(optics.molecules, color) * d.x + aside(d); };
    for (int i = 0; i < LAYERS; ++i) {
        const auto n = static_cast<std::size_t>(i);
        const float height = layerHeight(i), next = layerHeight(std::min(i + 1, LAYERS - 1));
        const double thickness = 0.5 * static_cast<double>(next - layerHeight(std::max(i - 1, 0)));
        const vec3 here = airDensity(height), face = airDensity(0.5f * (height + next));
        m_loss[n] = 3.0 * thickness * (weakening(here) - scattering(here));
        m_gain[n] = 3.0 * thickness * scattering(here) / FOUR_PI;
        const double transport = weakening(face) - HAZE_ASIDE * aside(face);
        m_forward[n] = 3.0 * HAZE_ASIDE * aside(face) / (FOUR_PI * transport);
        m_conduct[n] = 1.0 / (transport * static_cast<double>(next - height));
    }
    m_conduct.back() = 1.5;  // no scattered light from space
    m_forward.back() = 0.0;
    m_conduct_below = 1.5 * (1.0 - GROUND_ALBEDO) / (1.0 + GROUND_ALBEDO);
}

void LayerBalance::pushFaces(float sine, const LightThere* layers) {
    for (std::size_t i = 0; i + 1 < LAYERS; ++i) {
        const double beam = 0.5 * (component(layers[i].beam, m_color) + component(layers[i + 1].beam, m_color));
        m_push[i] = -m_forward[i] * sine * beam;
    }
    // At the ground: upward flux = albedo * (downward flux + direct light).
    const double arriving = std::fmax(sine, 0.0f) * component(layers[0].beam, m_color);
    m_push_below = 6.0 * GROUND_ALBEDO / (FOUR_PI * (1.0 + GROUND_ALBEDO)) * arriving;
}

void LayerBalance::solve(float sine, LightThere* layers) {
    pushFaces(sine, layers);
    Values mean{}, above{};
    double conduct = 0.0, push = m_push_below, last_mean = 0.0, last_above = 0.0;  // values of the face below
    for (std::size_t i = 0; i < LAYERS; ++i) {
        const double own = i > 0 ? conduct : m_conduct_below;
        const double pivot = m_conduct[i] + own + m_loss[i] - conduct * last_above;
        const double source = m_gain[i] * component(layers[i].beam, m_color) + push - m_push[i];
        above[i] = last_above = m_conduct[i] / pivot;
        mean[i] = last_mean = (source + conduct * last_mean) / pivot;
        conduct = m_conduct[i];
        push = m_push[i];
    }
    for (std::size_t i = LAYERS - 1; i-- > 0;) mean[i] += above[i] * mean[i + 1];
    double below = slopeBelow(mean[0]);
    for (std::size_t i = 0; i < LAYERS; ++i) {
        const double slope = m_conduct[i] * (mean[i] - (i + 1 < LAYERS ? mean[i + 1] : 0.0)) + m_push[i];
        component(layers[i].mean, m_color) = static_cast<float>(mean[i]);
        component(layers[i].slope, m_color) = static_cast<float>(0.5 * (slope + below));
        below = slope;
    }
}

}  // namespace

vec3 beamAt(const AirColumns& columns, const AirOptics& optics, const LightSource& source, float height, float sine) {
    const float above = std::asin(std::clamp(sine, -1.0f, 1.0f)) - std::asin(horizonSine(height));
    const float seen = smoothStep(-DISC_RADIUS, DISC_RADIUS, above);
    if (seen <= 0.0f) return {};
    return product(source.illuminance, fade(optics.depth(columns.getColumn(height, sine)))) * seen;
}

void LightField::spreadIntoShadow() {
    for (int j = SINES - 2; j >= 0; --j) {
        LightThere* const here = &m_field[static_cast<std::size_t>(j * LAYERS)];
        const float angle = std::asin(m_lowest + m_step * static_cast<float>(j + 1)) -
                            std::asin(m_lowest + m_step * static_cast<float>(j));
        const float share = std::exp(-angle / SHADOW_FADE);
        for (int i = 0; i < LAYERS; ++i) {
            const vec3 lit = here[LAYERS + i].mean * share;
            if (luminance(lit) <= luminance(here[i].mean)) continue;
            here[i].mean = lit;
            here[i].slope = here[LAYERS + i].slope * share;
        }
    }
}

void LightField::compute(const AirColumns& columns, const AirOptics& optics, const LightSource& source) {
    m_field.resize(static_cast<std::size_t>(LAYERS * SINES));
    const float elevation = std::asin(std::clamp(source.sine, -1.0f, 1.0f));
    m_lowest = std::sin(std::fmax(elevation - REACH, -0.5f * PI));
    m_step = (std::sin(std::fmin(elevation + REACH, 0.5f * PI)) - m_lowest) / (SINES - 1);
    LayerBalance balances[3] = {{optics, 0}, {optics, 1}, {optics, 2}};
    for (int j = 0; j < SINES; ++j) {
        const float sine = m_lowest + m_step * static_cast<float>(j);
        LightThere* const layers = &m_field[static_cast<std::size_t>(j * LAYERS)];
        for (int i = 0; i < LAYERS; ++i) layers[i].beam = beamAt(columns, optics, source, layerHeight(i), sine);
        for (LayerBalance& balance : balances) balance.solve(sine, layers);
    }
    spreadIntoShadow();
}

float LightField::layerOf(float height) {
    return std::pow(std::clamp(height / AIR_TOP, 0.0f, 1.0f), 1.0f / LAYER_POWER) * (LAYERS - 1);
}

LightThere LightField::at(float layer, float sine) const {
    const float x = std::clamp((sine - m_lowest) / m_step, 0.0f, static_cast<float>(SINES - 1));
    const int i = std::min(static_cast<int>(layer), LAYERS - 2), j = std::min(static_cast<int>(x), SINES - 2);
    const LightThere* const low = &m_field[static_cast<std::size_t>(j * LAYERS + i)];
    const LightThere* const high = low + LAYERS;
    const float u = x - static_cast<float>(j), v = layer - static_cast<float>(i);
    const float w00 = (1.0f - u) * (1.0f - v), w01 = (1.0f - u) * v, w10 = u * (1.0f - v), w11 = u * v;
    const auto blend = [&](vec3 LightThere::*part) {
        return low[0].*part * w00 + low[1].*part * w01 + high[0].*part * w10 + high[1].*part * w11;
    };
    return {blend(&LightThere::beam), blend(&LightThere::mean), blend(&LightThere::slope)};
}
