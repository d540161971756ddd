// Automatic flight: the recorded flight of "data/www.dat", played from the start node in a loop. Loaded with the
// configuration; the frame calls `local_data_update_fly` before the timed actions.
#include <engine/core/Engine.h>
#include <engine/scene/Node.h>

#include <cmath>
#include <cstdio>

#include "src/aircraft/PlaneBase.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr const char* PATH_FILE = "data/www.dat";
constexpr float PLAY_FROM = 23.0f;       ///< seconds on the file's timeline
constexpr double LOWERED = 0.2;          ///< metres from the authored start node down to the start position
constexpr double START_HEADING = 67.25;  ///< degrees

}  // namespace

void Logic_Test_Fly::local_data_init() {
    Node* const start = find_node(m_airport_node);
    if (!start) return;
    m_fly_kit.init(PATH_FILE);
    const dvec3 authored = start->getWorldPosition();
    const dvec3 place = authored - Engine::get()->getEllipsoid().getWGSTransform(authored).getZ() * LOWERED;
    start->setWorldPosition(place);
    m_fly_kit.setStartPose(place, {START_HEADING, 0.0, 0.0});
    std::printf("void Logic_Harbor_Town::init_fly_data() \n");
}

void Logic_Test_Fly::local_data_start_fly() {
    std::printf("------%s\n", "Logic_Test_Fly::local_data_start_fly");
    m_play_time = PLAY_FROM;
    if (m_aircraft) {
        m_aircraft->standPose();
        m_aircraft->setUndercarriage(true, false);
    }
    m_fly_stopwatch.reset();
    m_fly_stopwatch.start();
    m_fly_kit.moveCursorToFirst();
    place_at_start();
    apply_fly_frame(m_fly_kit.frame(0.0f));
}

/// Each frame adds the whole time since the start, so the playback accelerates; recordings are made for this.
void Logic_Test_Fly::local_data_update_fly() {
    if (!m_fly_stopwatch.isRunning()) return;
    const auto elapsed = static_cast<float>(m_fly_stopwatch.getElapsedMilliseconds());
    m_play_time = m_play_time + elapsed / 1000.0f * m_play_rate;
    if (const FlyFrame* const frame = m_fly_kit.frame(m_play_time)) {
        apply_fly_frame(frame);
        return;
    }
    m_fly_stopwatch.stop();
    m_play_time = 0.0f;
    local_data_start_fly();
}

void Logic_Test_Fly::local_data_stop_fly() {
    m_fly_stopwatch.stop();
    local_data_reset_fly();
}

void Logic_Test_Fly::local_data_reset_fly() {
    if (!m_aircraft) return;
    std::printf("%s\n", "Logic_Test_Fly::local_data_reset_fly");
    if (const FlyFrame* const first = m_fly_kit.getFirstFrame()) m_aircraft->setFlightState(first);
    m_aircraft->stopPose();
}

void Logic_Test_Fly::apply_fly_frame(const FlyFrame* frame) {
    if (!frame || !m_aircraft) return;
    m_aircraft->setUndercarriage(std::trunc(frame->undercarriage) != 0.0f, true);
    m_aircraft->setFlightState(frame);
}

void Logic_Test_Fly::place_at_start() {
    const Node* const start = find_node(m_airport_node);
    if (!start || !m_aircraft) return;
    m_aircraft->setBaseTransform(start->getWorldTransform());
    m_aircraft->setWorldTransform(start->getWorldTransform());
}
