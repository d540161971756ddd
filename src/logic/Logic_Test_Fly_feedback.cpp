// Terrain feedback: heights under the wheels, measured and sent to the host once a frame while the host runs; and the
// triggers that report collisions after the physics step.
#include <engine/core/Engine.h>
#include <engine/scene/ObjectPrefab.h>
#include <engine/scene/ObjectTerrain.h>
#include <engine/scene/SceneNodes.h>
#include <engine/scene/World.h>
#include <engine/text/Log.h>

#include <algorithm>
#include <cstdio>

#include "src/kit/UdpDataKit.h"
#include "src/logic/Logic_Test_Fly.h"

namespace {

constexpr std::int32_t ORDER_RUN = 2;
constexpr double PROBE_LENGTH = 100000.0;  ///< metres straight down
const jString GEARS[3] = {"wheel_front", "wheel_left", "wheel_right"};
constexpr const char* DECK = "LiaoNingJian_zhuTi001";
constexpr const char* AIRCRAFT_BODY = "body";
const jString TRIGGERS = "all_triggers";

/// Forwards a trigger's report to the logic. Its type identifies it when the logic disconnects.
struct TriggerHandler {
    Logic_Test_Fly* logic;
    bool enter;
    void operator()(Node* node) const { enter ? logic->on_enter_trigger(node) : logic->on_exit_trigger(node); }
};

NodeTrigger* asTrigger(Node* node) {
    return node->getType() == Node::TRIGGER ? static_cast<NodeTrigger*>(node) : nullptr;
}

void removeHandlers(jVector<Function<void(Node*)>>& handlers, const Logic_Test_Fly* logic) {
    for (int i = handlers.size() - 1; i >= 0; --i) {
        const auto* const handler = handlers[i].target<TriggerHandler>();
        if (handler && handler->logic == logic) handlers.removeAt(i);
    }
}

}  // namespace

float Logic_Test_Fly::calc_height(const dvec3& geo) const {
    double altitude = -1e9;
    float height = -1e9f;
    if (m_terrain && m_terrain->getAltitudeByLonLat(geo.x, geo.y, altitude)) {
        height = static_cast<float>(std::max(-1e9, altitude));
    }
    return std::max(height, -100.0f);
}

void Logic_Test_Fly::send_udp() {
    if (m_last_order != ORDER_RUN && !m_ignore_order) return;
    UdpSendData record;
    record.nCounter = Engine::get()->getFrame();
    if (m_aircraft_node) {
        measure_gears(record);
    } else {
        jLog::error("%s:%s", "Logic_Test_Fly::send_udp", "m_aircraft");
    }
    print_send_data(record);
    if (!m_aircraft_node) return;
    record.fTerrainHeightCG = calc_height(m_aircraft_node->getWgsPosition());
    record.nCollisionDetect = m_collision;
    m_last_feedback = record;
    if (!m_sender) return;
    ++(m_sender->write(&record, UDP_SEND_WIRE_SIZE) > 0 ? m_link_counts.feedback : m_link_counts.unsent);
}

/// Over the deck all gears get the deck's height under the aircraft, elsewhere each gets the terrain height below it.
void Logic_Test_Fly::measure_gears(UdpSendData& record) const {
    const dvec3 position = m_aircraft_node->getWorldPosition();
    const dvec3 up = m_aircraft_node->getWGSTransform().getZ();
    const auto heading = static_cast<float>(m_aircraft_node->getWgsHPR().x);
    dvec3 hit;
    const Object* const below = select_object(position, position - up * PROBE_LENGTH, &hit);
    const bool on_deck = below && below->getName() == DECK;
    const float deck = on_deck ? static_cast<float>(Engine::get()->getEllipsoid().toWGS(hit).z) : 0.0f;
    for (int i = 0; i < 3; ++i) {
        const Node* const gear = m_aircraft_node->getChildByName(GEARS[i], true);
        if (!gear) continue;
        const dvec3 hpr = gear->getWgsHPR();
        record.fTerrainHeightLG[i] = on_deck ? deck : calc_height(gear->getWgsPosition());
        record.fThetaLG[i] = static_cast<float>(hpr.y);
        record.fPhiLG[i] = static_cast<float>(hpr.z);
        record.fPsiLG[i] = heading;
    }
}

void Logic_Test_Fly::print_send_data(const UdpSendData& record) {
    if (!m_show_send) return;
    std::printf("---send start---\n");
    std::printf("nCounter:%d\n", static_cast<int>(record.nCounter));
    for (int i = 0; i < 3; ++i) {
        std::printf("%d fTerrainHeightLG:%f\n", i, static_cast<double>(record.fTerrainHeightLG[i]));
        std::printf("%d fThetaLG:%f\n", i, static_cast<double>(record.fThetaLG[i]));
        std::printf("%d fPhiLG:%f\n", i, static_cast<double>(record.fPhiLG[i]));
        std::printf("%d fPsiLG:%f\n", i, static_cast<double>(record.fPsiLG[i]));
    }
    std::printf("fTerrainHeightCG:%f\n", static_cast<double>(record.fTerrainHeightCG));
    std::printf("nCollisionDetect:%d\n", static_cast<int>(record.nCollisionDetect));
    std::printf("---send end---\n");
}

bool Logic_Test_Fly::init_triggers() {
    const Node* const group = m_world ? m_world->getNodeByTag(TRIGGERS) : nullptr;
    if (!group) return false;
    std::printf("triggers size:%d\n", group->getNumChildren());
    for (int i = 0; i < group->getNumChildren(); ++i) {
        NodeTrigger* const trigger = asTrigger(group->getChild(i));
        if (!trigger) continue;
        m_triggers.append(trigger);
        trigger->enter.append(TriggerHandler{this, true});
        trigger->leave.append(TriggerHandler{this, false});
    }
    return true;
}

void Logic_Test_Fly::disconnect_triggers() {
    for (NodeTrigger* trigger : m_triggers) {
        removeHandlers(trigger->enter, this);
        removeHandlers(trigger->leave, this);
    }
    m_triggers.clear();
}

void Logic_Test_Fly::on_enter_trigger(Node* node) {
    if (node->getName() != AIRCRAFT_BODY) return;
    m_collision = 1;
    std::printf("is_collision = 1 \n");
}

/// Entries are not counted: leaving one of two overlapping triggers clears the flag.
void Logic_Test_Fly::on_exit_trigger(Node* node) {
    if (node->getName() != AIRCRAFT_BODY) return;
    m_collision = 0;
    std::printf("is_collision = 0 \n");
}
