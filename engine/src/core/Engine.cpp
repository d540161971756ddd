// The engine: lifetime, frame and clock.
#include "engine/core/Engine.h"

#include <cmath>

#include "core/EngineState.h"
#include "engine/core/Clock.h"
#include "engine/net/SocketUDP.h"
#include "engine/text/Log.h"
#include "scene/ModelLoader.h"
#include "scene/StateHash.h"
#include "scene/WorldState.h"
#include "text/RuntimeRoot.h"

namespace {

constexpr double MAX_FRAME = 0.1;  // seconds

Engine* g_engine = nullptr;

}  // namespace

Engine::Engine(const EngineSettings& settings) : m_state(std::make_unique<EngineState>(settings)) {
    g_engine = this;
    setRuntimeRoot(settings.root.empty() ? "." : settings.root);
    m_state->world = std::make_unique<World>();
    WorldState::running = &m_state->world->getState();
    m_state->camera.m_node = m_state->world->addChild(std::make_unique<Node>());
    m_state->camera.m_node->setName("camera");
}

Engine::~Engine() {
    m_state->camera.m_node = nullptr;
    WorldState::running = nullptr;
    m_state->world.reset();
    clearModelCache();
    setRuntimeRoot({});
    g_engine = nullptr;
}

Engine* Engine::get() {
    return g_engine;
}
const EllipsoidModel& Engine::getEllipsoid() const {
    return m_state->ellipsoid;
}
World* Engine::getWorld() {
    return m_state->world.get();
}
CameraControl* Engine::getCameraControl() {
    return &m_state->camera;
}
IApp* Engine::getApp() {
    return &m_state->app;
}
InputRouter* Engine::getInput() {
    return &m_state->input;
}
UIRoot* Engine::getUIRoot() {
    return &m_state->panels;
}
Random& Engine::getRandom() {
    return m_state->random;
}
float Engine::getFrameTime() const {
    return static_cast<float>(m_state->frame_time);
}
int Engine::getFrame() const {
    return m_state->frame;
}
double Engine::getTime() const {
    return m_state->time;
}
int Engine::getClampCount() const {
    return m_state->clamps;
}

void Engine::beginFrame(double dt) {
    if (!(dt > 0.0)) dt = 0.0;
    if (dt > MAX_FRAME) {
        dt = MAX_FRAME;
        ++m_state->clamps;
    }
    m_state->frame_time = dt;
    m_state->time += dt;
    m_state->world->getState().time = m_state->time;
    ++m_state->frame;
    m_state->input.dispatch();
}

void Engine::step() {
    m_state->world->step(m_state->frame_time);
}

void Engine::updateGui() {
    m_state->panels.update();
}

void Engine::endFrame() {
    m_state->control.endFrame();
}

jString Engine::resolvePath(const jString& path) const {
    return ::resolvePath(path);
}

std::uint64_t Engine::getStateHash() const {
    return hashWorld(*m_state->world) * 1099511628211ULL ^ SocketUDP::getStats().sentHash;
}

void Stopwatch::start() {
    m_running = true;
    m_start = jTimer::getTimeSecond();
}

void Stopwatch::stop() {
    m_elapsed = getElapsedMilliseconds();
    m_running = false;
}

void Stopwatch::reset() {
    m_running = false;
    m_elapsed = 0.0;
}

double Stopwatch::getElapsedMilliseconds() const {
    return m_running ? (jTimer::getTimeSecond() - m_start) * 1000.0 : m_elapsed;
}

double jTimer::getTimeSecond() {
    return g_engine ? g_engine->getTime() : 0.0;
}
