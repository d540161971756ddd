// The logic's world: files, start, frames.
#include "LogicWorld.h"

#include <algorithm>
#include <sstream>

#include "common/LogicFrame.h"
#include "engine/gui/UIRoot.h"
#include "engine/input/InputRouter.h"
#include "engine/memory/Allocator.h"
#include "engine/scene/MeshData.h"
#include "engine/scene/ObjectMeshStatic.h"
#include "engine/scene/ObjectTerrain.h"

namespace {

jString nodeName(int i) {
    return i == 20 ? jString("weigou001") : jString(std::string("part_").append(std::to_string(i)));
}

}  // namespace

std::string TestJet::prefab() const {
    std::ostringstream text;
    text << R"({ "node": { )" << (body.empty() ? "" : "\"body\": ") << body << (body.empty() ? "" : ", ")
         << R"("children": [ { "name": "cam_first_player", "position": [0, 5, 1] },
            { "name": "wheel_front", "position": [0, 5, -2], "hpr": [7, 2, 3] },
            { "name": "wheel_left", "position": [-3, -1, -2], "hpr": [-20, -6, 9] },
            { "name": "wheel_right", "position": [3, -1, -2], "hpr": [110, 15, -4] },
            { "name": "F_wheel_pos" }, { "name": "L_wheel_pos" }, { "name": "R_wheel_pos" }, { "name": "normal" },
            { "name": "destroyed", "enabled": false }, { "name": "body", "sensor": true },
            { "name": "fire", "enabled": false, "children": [
                { "name": "fire_spe", "type": "particles", "particles": { "emitting": false } } ] })";
    for (int i = 0; i < entries; ++i) {
        if (std::find(missing.begin(), missing.end(), i) != missing.end()) continue;
        text << R"(, { "name": ")" << nodeName(i) << R"(", "position": [)" << i << ", 0, 0]"
             << (i > 32 ? R"(, "type": "particles", "particles": { "spawn_rate": 80.7 } })" : " }");
    }
    text << " ] } }";
    return text.str();
}

std::string TestJet::config() const {
    std::ostringstream text;
    text << R"({ "path": ")" << PREFAB << R"(", "type": "PlaneJ15", "ctrl_nodes": { "none": 0)";
    for (int i = 0; i < entries; ++i) {
        text << R"(, "n)" << i << R"(": { "id": )" << i << R"(, "node_name": ")" << nodeName(i) << R"(", "open_rot": [)"
             << i << R"(, 10, 0], "close_rot": [0, 0, )" << i << R"(], "axis": [0, 0, 1], "type": )" << (i > 20)
             << " }";
    }
    text << " } }";
    return text.str();
}

std::vector<std::vector<double>> makeFrameSeries(double seconds) {
    std::vector<std::vector<double>> all;
    Random random(6);
    for (const double length : {1.0 / 240.0, 1.0 / 60.0, 0.1, 0.0}) {
        std::vector<double>& series = all.emplace_back();
        for (double left = seconds; left > 1e-6; left -= series.back()) {
            series.push_back(std::min(left, length > 0.0 ? length : random.getDouble(1.0 / 240.0, 0.1)));
        }
    }
    return all;
}

LogicTest::LogicTest() {
    writeConfig();
}

LogicTest::~LogicTest() {
    end();
}

void LogicTest::writeJet(const TestJet& jet) {
    write(TestJet::PREFAB, jet.prefab());
    write(TestJet::CONFIG, jet.config());
}

void LogicTest::writeConfig(const std::string& more) {
    std::ostringstream text;
    text << R"({ "recv_from_flightSimulation_port": )" << ports().send << R"(, "local_port": )" << ports().viewer
         << R"(, "send_to_flightSimulation_port": )" << ports().feedback << more << " }";
    write("config/Logic_Test_Fly.cfg", text.str());
}

FakeHost& LogicTest::host() {
    const Ports& own = ports();
    if (!m_host) m_host = std::make_unique<FakeHost>(own.viewer, own.send, own.feedback);
    return *m_host;
}

const LogicTest::Ports& LogicTest::ports() {
    static const Ports ports{findFreePort(), findFreePort(), findFreePort()};
    return ports;
}

Node* LogicTest::addStart(const jString& name) {
    Node* const start = addNode(name);
    start->setWgsPosition(PLACE);
    start->setWgsHPR({30.0, 5.0, -4.0});
    return start;
}

Object* LogicTest::addPlate(const jString& name, const dvec3& geo, double size) {
    const auto half = static_cast<float>(size / 2.0);
    MeshSurface surface;
    surface.positions = {{-half, -half, 0.0f}, {half, -half, 0.0f}, {half, half, 0.0f}, {-half, half, 0.0f}};
    surface.indices = {0, 1, 2, 0, 2, 3};
    surface.material = std::make_shared<Material>();
    auto* const plate = add(std::make_unique<ObjectMeshStatic>(std::make_shared<MeshData>(std::vector{surface})));
    plate->setName(name);
    plate->setWgsPosition(geo);
    plate->setWgsHPR({});
    return plate;
}

void LogicTest::addTerrain(double height, double slope) {
    std::string text = "ncols 21\nnrows 21\nxllcorner 112.3395\nyllcorner 16.8295\ncellsize 0.001\n";
    for (int i = 0; i < 441; ++i) {
        text += std::to_string(height + 0.001 * slope * (i % 21 - 10)) + (i % 21 == 20 ? "\n" : " ");
    }
    write("data/ground.asc", text);
    write("data/ground.prj", R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
                             R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])");
    add(std::make_unique<ObjectTerrain>("data/ground.asc", ""))->setName("terrain");
}

void LogicTest::start(const jString& carrier) {
    m_logic = static_cast<Logic_Test_Fly*>(CreateLogic(&world(), engine().getCameraControl()));
    m_logic->set_airport_node("start_deck");
    m_logic->set_carrier_node(carrier);
    m_logic->set_aircraft_path(TestJet::CONFIG);
    printed = printedBy([this] { m_logic->init(); });
}

void LogicTest::end() {
    engine().getInput()->clearBindings();
    engine().getUIRoot()->clear();
    jDelete(static_cast<LogicBase*>(m_logic));
    m_logic = nullptr;
}

void LogicTest::frame(LogicBase& logic, double dt) {
    runFrame(engine(), logic, dt);
}

void LogicTest::apply(std::initializer_list<int> orders) {
    jVector<UdpRecvData> records;
    for (const int order : orders) {
        records.append({});
        records.last().nSimOrder = order;
    }
    m_logic->use_recv_data(records);
}

void LogicTest::deliver(const packets::Bytes& datagram, int records) {
    const std::uint64_t wanted = m_logic->getLinkCounts().records + static_cast<std::uint64_t>(records);
    ASSERT_TRUE(host().send(datagram));
    for (int i = 0; i < 100000 && m_logic->getLinkCounts().records < wanted; ++i) frame();
    ASSERT_EQ(m_logic->getLinkCounts().records, wanted);
}
