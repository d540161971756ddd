// The base class of every scene logic: environment tracks, notifications, test mode, levelling the camera. The engine
// calls `init` at the start, and the virtual functions that the derived class does not override at events.
#include "common/LogicBase.h"

#include <engine/camera/CameraControl.h>
#include <engine/memory/Allocator.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>
#include <engine/track/Track.h>

#include <cstdio>

namespace {

const jString TRACKS = LogicBase::TRACK_FOLDER;
constexpr const char* TIME_OF_DAY = "TOD.anim";
constexpr const char* LIGHT_ENABLE = "airport_light_enable.anim";
constexpr const char* LIGHT_BRIGHTNESS = "airport_light_brightness.anim";

/// An upright frame for the vertical `up` that keeps the direction of `view` as far as the vertical allows.
dmat3 levelFrame(const dmat4& view, const dvec3& up) {
    dvec3 z = view.getZ();
    dvec3 x = cross(up, z);
    if (length2(x) > static_cast<double>(1e-6f)) {
        z = cross(x, up);
    } else {
        z = cross(up, view.getX());
        x = cross(up, z);
    }
    return {normalize(x), up, normalize(z)};
}

}  // namespace

LogicBase::LogicBase(World* world, CameraControl* camera) : m_camera(camera), m_world(world) {}
LogicBase::LogicBase(const LogicBase& other) = default;
LogicBase& LogicBase::operator=(const LogicBase& other) = default;
LogicBase::~LogicBase() = default;

bool LogicBase::init() {
    for (const char* file : {"runway_wet.anim", "snow.anim", "autumn.anim", TIME_OF_DAY, "road_light.anim",
                             LIGHT_ENABLE, LIGHT_BRIGHTNESS}) {
        load_track(TRACKS + file);
    }
    return true;
}

void LogicBase::destroy_track(Track* track) {
    track->release();
    jDelete(track);
}

void LogicBase::load_track(const jString& path) {
    if (path.empty()) return;
    constexpr MemTag TAG{"..\\common\\LogicBase", "LogicBase::load_track"};
    const std::shared_ptr<Track> track(jNew<Track>(TAG), destroy_track, jTagAllocator<Track>(TAG));
    if (!track->load(path, m_world)) {
        jLog::error("%s:\"%s\" load failed", "LogicBase::load_track", path.c_str());
        return;
    }
    m_tracks.append(track);
    fire(m_signal_13_track_loaded, track.get());
}

Track* LogicBase::get_track(const jString& path) {
    for (const auto& track : m_tracks) {
        if (track->getName() == path) return track.get();
    }
    return nullptr;
}

void LogicBase::set_track(const char* file, float position) {
    if (Track* const track = get_track(TRACKS + file)) track->set(position);
}

void LogicBase::setTod(float time) {
    set_track(TIME_OF_DAY, time);
}
void LogicBase::setAirportLightEnable(bool enable) {
    set_track(LIGHT_ENABLE, enable ? 1.0f : 0.0f);
}
void LogicBase::setAirportLightBrightness(float brightness) {
    set_track(LIGHT_BRIGHTNESS, brightness);
}

void LogicBase::apply_date(int year, int month, int day) {
    fire(m_signal_24_date, year, month, day);
}

void LogicBase::onKeyRelease(const GUIEventKey& event, IApp*) {
    if (event.key != 't' || event.modifier == 0) return;
    set_test_mode(!m_test_mode);
}

void LogicBase::set_test_mode(bool on) {
    m_test_mode = on;
    std::printf(m_test_mode ? "test mode open \n" : "test mode close \n");
}

void LogicBase::adjust_geo_rotation_forward() {
    if (!m_camera || !m_camera->getNode()) return;
    const dmat4 view = m_camera->getNode()->getWorldTransform();
    m_camera->getRotation() = dquat(levelFrame(view, normalize(view.getTranslation()))).normalize();
    m_camera->apply();
}

Node* LogicBase::find_node(const jString& name) const {
    return m_world ? m_world->getNodeByName(name) : nullptr;
}

jString LogicBase::getWorldPath() const {
    return {};
}
void LogicBase::set_aircraft_path(jString path) {
    m_aircraft_path = std::move(path);
}
void LogicBase::set_airport_node(jString name) {
    m_airport_node = std::move(name);
}
void LogicBase::set_carrier_node(jString name) {
    m_carrier_node = std::move(name);
}

void LogicBase::setRain(float) {}
void LogicBase::setSnow(float) {}
void LogicBase::update(float) {}
void LogicBase::render() {}
void LogicBase::swap() {}
void LogicBase::release() {}
void LogicBase::onMouseDown(const GUIEventMouse&, IApp*) {}
void LogicBase::onMouseUp(const GUIEventMouse&, IApp*) {}
void LogicBase::onMouseMove(const GUIEventMouse&, IApp*) {}
void LogicBase::onMouseWheel(const GUIEventWheel&, IApp*) {}
void LogicBase::onKeyPress(const GUIEventKey&, IApp*) {}
