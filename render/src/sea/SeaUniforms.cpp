// The sea's shader values: waves by position and distance; phases are exact far from the field's origin.
#include "sea/SeaUniforms.h"

#include <algorithm>
#include <cmath>

#include "base/Uniforms.h"
#include "engine/math/jMath.h"
#include "engine/scene/ObjectOcean.h"
#include "engine/scene/World.h"
#include "sea/SeaSlopes.h"

namespace {

constexpr double FOAM_TILE = 4.0, FOAM_STRETCH = 1.5;  // metres across the wind; ratio of the length along the wind
// metres in both directions: a ship's foam is not stretched by the wind
constexpr double WAKE_TILE = 7.0;
constexpr double FOAM_TURNS = 16.0;  // number of distinct wind directions of the foam pattern
constexpr double SAMPLES = WaveCascade::SIZE;
constexpr double STRETCH = 0.6;   // in flat views textures are read somewhat finer than a pixel is long
constexpr double LAP_TIME = 7.0;  // seconds between waves running up a shore

float fraction(double value) {
    return static_cast<float>(value - std::floor(value));
}

/// Frequencies of slow waves per metre, east and north; their sum gives the gusts. None is a multiple of another.
constexpr double GUSTS[4][2] = {
    {1.0 / 4100, 1.0 / 7300}, {-1.0 / 2900, 1.0 / 3700}, {1.0 / 5900, -1.0 / 1900}, {1.0 / 1300, 1.0 / 2300}};

/// A linear map from metres in the field to tiling texture coordinates.
struct TextureMap {
    TextureMap(double degrees, double per_u, double per_v) {
        const double c = std::cos(degrees * jMath::DEG2RAD), s = std::sin(degrees * jMath::DEG2RAD);
        east_u = c * per_u, north_u = s * per_u, east_v = -s * per_v, north_v = c * per_v;
    }
    osg::Matrix2 getMatrix() const {
        const auto f = [](double v) { return static_cast<float>(v); };
        return {f(east_u), f(east_v), f(north_u), f(north_v)};
    }
    osg::Vec2f getPlace(const SeaMeshView& eye) const {
        return {fraction(east_u * eye.east + north_u * eye.north), fraction(east_v * eye.east + north_v * eye.north)};
    }

    double east_u, east_v, north_u, north_v;
};

const TextureMap WAKE_MAP(20.0, 1.0 / WAKE_TILE, 1.0 / WAKE_TILE);

}  // namespace

SeaUniforms::LayerUniforms::LayerUniforms(osg::StateSet& state, const std::string& name, const Layer& values)
    : layer(values),
      map(addUniform(state, (name + "_map").c_str(), osg::Matrix2())),
      place(addUniform(state, (name + "_place").c_str(), osg::Vec2f())),
      turn(addUniform(state, (name + "_turn").c_str(), osg::Matrix2())) {
    state.addUniform(new osg::Uniform((name + "_kind").c_str(),
                                      osg::Vec2f(static_cast<float>(std::log2(layer.shrink)), layer.strength)));
}

void SeaUniforms::LayerUniforms::update(double length, float scale, const SeaMeshView& eye) {
    const TextureMap to_texture(layer.turn, layer.shrink / length, layer.shrink / length);
    const double back = static_cast<double>(layer.strength * scale);
    map->set(to_texture.getMatrix());
    place->set(to_texture.getPlace(eye));
    turn->set(TextureMap(-layer.turn, back, back).getMatrix());  // slopes rotate in the opposite direction
}

SeaUniforms::SeaUniforms(osg::StateSet& state)
    : m_per_metre(addUniform(state, "u_per_metre", osg::Vec2f())),
      m_place(addUniform(state, "u_place", osg::Vec4f())),
      m_slope_scale(addUniform(state, "u_slope_scale", osg::Vec2f())),
      m_pixel(addUniform(state, "u_pixel", 0.0f)),
      m_foam_map(addUniform(state, "u_foam_map", osg::Matrix2())),
      m_foam_place(addUniform(state, "u_foam_place", osg::Vec2f())),
      m_wake_place(addUniform(state, "u_wake_place", osg::Vec2f())),
      m_gusts_place(addUniform(state, "u_gusts_place", osg::Vec4f())),
      m_lap(addUniform(state, "u_lap", 0.0f)),
      m_mean_square(addUniform(state, osg::Uniform::FLOAT, "u_mean_square", 2 * SeaSlopes::NUM_LEVELS)),
      m_ripples(state, "u_ripples", {23.0, 7.3, 0.8f}),
      m_swell(state, "u_swell", {-31.0, 2.7, 0.8f}) {
    const auto range = [](int bands) { return static_cast<float>(SeaMesh::BAND_RANGES[std::size_t(bands) - 1]); };
    state.addUniform(new osg::Uniform(
        "u_ranges", osg::Vec3f(range(SeaMesh::FINE_BANDS), range(SeaMesh::NEAR_BANDS), range(SeaMesh::MIDDLE_BANDS))));
    osg::Vec4f gusts_east, gusts_north;
    for (int i = 0; i < 4; ++i) {
        gusts_east[i] = static_cast<float>(GUSTS[i][0]);
        gusts_north[i] = static_cast<float>(GUSTS[i][1]);
    }
    state.addUniform(new osg::Uniform("u_gusts_east", gusts_east));
    state.addUniform(new osg::Uniform("u_gusts_north", gusts_north));
    state.addUniform(new osg::Uniform("u_wake_map", WAKE_MAP.getMatrix()));
    for (auto& levels : m_levels) levels = makeUniform("u_levels", osg::Vec3f());
}

void SeaUniforms::addBand(int band, osg::StateSet& state) {
    state.addUniform(m_levels[static_cast<std::size_t>(band)]);
}

/// All textures of a band are read at one level, that of its nearest pixels: selecting the level per pixel doubles the
/// cost on a CPU.
void SeaUniforms::updateLevels(const SeaMeshView& eye, double pixel, double large, double small) {
    for (std::size_t band = 0; band < m_levels.size(); ++band) {
        const double distance = std::hypot(band > 0 ? SeaMesh::BAND_RANGES[band - 1] : 0.0, eye.height);
        const double rise = std::max(std::abs(eye.height) / std::max(distance, 0.1), 0.01);
        const double finest = std::log2(pixel * distance * SAMPLES + 1e-9) - STRETCH * std::log2(rise);
        const auto level = [&](double length) {
            return static_cast<float>(std::clamp(std::floor(finest - std::log2(length) + 0.4), 0.0, 6.0));
        };
        m_levels[band]->set(osg::Vec3f(level(large), level(small), level(large / m_swell.layer.shrink)));
    }
}

void SeaUniforms::update(const FrameView& view, const SeaMeshView& eye, const ObjectOcean& ocean,
                         const SeaSlopes& slopes) {
    const double large = ocean.getField().getCascade(0).length, small = ocean.getField().getCascade(1).length;
    m_per_metre->set(osg::Vec2f(static_cast<float>(1.0 / large), static_cast<float>(1.0 / small)));
    m_place->set(osg::Vec4f(fraction(eye.east / large), fraction(eye.north / large), fraction(eye.east / small),
                            fraction(eye.north / small)));
    m_slope_scale->set(osg::Vec2f(slopes.getScale(0), slopes.getScale(1)));
    const double pixel = 1.0 / view.focal;
    m_pixel->set(static_cast<float>(pixel));
    updateLevels(eye, pixel, large, small);
    osg::Vec4f gusts;
    for (int i = 0; i < 4; ++i) gusts[i] = fraction(eye.east * GUSTS[i][0] + eye.north * GUSTS[i][1]);
    m_gusts_place->set(gusts);
    m_lap->set(fraction(view.time / LAP_TIME));
    for (int i = 0; i < 2 * SeaSlopes::NUM_LEVELS; ++i) {
        m_mean_square->setElement(static_cast<unsigned>(i),
                                  slopes.getMeanSquare(i / SeaSlopes::NUM_LEVELS, i % SeaSlopes::NUM_LEVELS));
    }
    m_ripples.update(small, slopes.getScale(1), eye);
    m_swell.update(large, slopes.getScale(0), eye);
    updateFoam(eye, ocean);
}

void SeaUniforms::updateFoam(const SeaMeshView& eye, const ObjectOcean& ocean) {
    World* const world = ocean.getWorld();
    const vec3 wind = world ? world->getEnvironment().wind : vec3();
    // Far from the origin a small change of direction would move the pattern far.
    const double step = 360.0 / FOAM_TURNS;
    const double direction = std::round(std::atan2(wind.y, wind.x) * jMath::RAD2DEG / step) * step;
    const TextureMap to_texture(direction, 1.0 / (FOAM_TILE * FOAM_STRETCH), 1.0 / FOAM_TILE);
    m_wake_place->set(WAKE_MAP.getPlace(eye));
    m_foam_map->set(to_texture.getMatrix());
    m_foam_place->set(to_texture.getPlace(eye));
}
