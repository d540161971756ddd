// Weather, time of day and visibility: the scene's own nodes, found once in `init`, the tracks that this logic loads
// and owns, and the fog's value. The setters are for the host application; call them between frames.
#include <engine/memory/Allocator.h>
#include <engine/scene/ObjectOcean.h>
#include <engine/scene/ObjectTerrain.h>
#include <engine/text/Log.h>
#include <engine/track/Track.h>

#include <cmath>
#include <limits>

#include "src/logic/Logic_Test_Fly.h"

namespace {

const jString TRACKS = LogicBase::TRACK_FOLDER;
const jString RUNWAY_WET = TRACKS + "runway_wet.anim";
const jString SNOW = TRACKS + "snow.anim";
const jString TIME_OF_DAY = TRACKS + "TOD.anim";
const jString LIGHT_BRIGHTNESS = TRACKS + "airport_light_brightness.anim";

constexpr int MAX_STEPS = std::numeric_limits<std::int32_t>::max() / Logic_Test_Fly::VISIBILITY_STEP;

template <class T>
T* asType(Node* node, Node::Type type) {
    return node && node->getType() == type ? static_cast<T*>(node) : nullptr;
}

void setTrack(Track* track, float position) {
    if (track) track->set(position);
}

float getPosition(const Track* track) {
    return track ? track->get() : 0.0f;
}

/// The fog's density, in hundredths, at which half the light is lost over `metres`. Thin fog is reduced by two
/// hundredths: the fog is calibrated so.
int densityOfVisibility(int metres) {
    for (int k = 0; k < 100; ++k) {
        if (Logic_Test_Fly::calFog(metres, k * 0.00001) > 0.5) return k < 15 ? k - 2 : k;
    }
    return 0;
}

}  // namespace

void Logic_Test_Fly::init_environment() {
    m_rain = find_node("rain");
    if (m_rain) m_raining = m_rain->isEnabled();
    m_hail = find_node("hail");
    m_snow = find_node("snow");
    m_terrain = asType<ObjectTerrain>(find_node("terrain"), Node::TERRAIN);
    m_ocean = asType<ObjectOcean>(find_node("ocean"), Node::OCEAN);
    if (m_ocean) m_ocean->setUseGlobalWind(false);
}

/// The base class has loaded them already: each track is loaded twice, and the setters use the first copy.
void Logic_Test_Fly::load_tracks() {
    for (const jString& path : {RUNWAY_WET, SNOW, LIGHT_BRIGHTNESS}) load_track(path);
}

void Logic_Test_Fly::load_track(const jString& path) {
    if (path.empty()) return;
    auto* const track = jNew<Track>({"src\\logic\\Logic_Test_Fly", "Logic_Test_Fly::load_track"});
    if (!track->load(path, m_world)) {
        jLog::error("%s:\"%s\" load failed", "Logic_Test_Fly::load_track", path.c_str());
        destroy_track(track);
        return;
    }
    m_own_tracks.append(track);
    fire(m_signal_13_track_loaded, track);
}

Track* Logic_Test_Fly::get_track(const jString& path) {
    return find_own_track(path);
}

Track* Logic_Test_Fly::find_own_track(const jString& path) const {
    for (Track* track : m_own_tracks) {
        if (track->getName() == path) return track;
    }
    return nullptr;
}

void Logic_Test_Fly::release_tracks() {
    for (Track* track : m_own_tracks) destroy_track(track);
    m_own_tracks.clear();
}

void Logic_Test_Fly::setRain(float amount) {
    setTrack(get_track(RUNWAY_WET), amount);
    m_raining = amount > 0.0f;
}

void Logic_Test_Fly::setSnow(float amount) {
    setTrack(get_track(SNOW), amount);
}

void Logic_Test_Fly::setTod(float time) {
    setTrack(get_track(TIME_OF_DAY), time);
}

void Logic_Test_Fly::set_anim(jString path, float percent) {
    setTrack(get_track(path), static_cast<float>(std::clamp(static_cast<double>(percent) * 0.01, 0.0, 1.0)));
}

float Logic_Test_Fly::getRain() const {
    return getPosition(find_own_track(RUNWAY_WET));
}

float Logic_Test_Fly::getSnow() const {
    return getPosition(find_own_track(SNOW));
}

void Logic_Test_Fly::setVisibilityDistance(int steps) {
    m_visibility = std::clamp(steps, -MAX_STEPS, MAX_STEPS) * VISIBILITY_STEP;
    show_visibility("能见度：" + ToString(m_visibility));
    use_visibility_set_fog(m_visibility);
}

int Logic_Test_Fly::getVisibilityDistance() const {
    return m_visibility / VISIBILITY_STEP;
}

double Logic_Test_Fly::calFog(double base, double density) {
    constexpr double MINUS_LN_2 = -0.6931471824645996;  // rounded in single precision
    return 1.0 - std::exp(std::pow(base, 500.0 * density + 1.0) * density * MINUS_LN_2);
}

void Logic_Test_Fly::use_visibility_set_fog(int metres) {
    m_fog_visibility = std::max(metres, 300);
    const double density = densityOfVisibility(m_fog_visibility) / 100.0;
    fire(m_signal_20_fog, static_cast<float>(1.0 - density));
}

int Logic_Test_Fly::getFogVisibility() const {
    return m_fog_visibility;
}

void Logic_Test_Fly::setNaviLight(unsigned short value) {
    m_navi_light = value;
}

int Logic_Test_Fly::getNaviLight() const {
    return m_navi_light;
}
