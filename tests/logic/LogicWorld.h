// The plug-in's logic over a small world of its own: the runtime root, a flight-simulation host, a jet written as text.
#pragma once

#include <string>
#include <vector>

#include "src/aircraft/PlaneJ15.h"
#include "src/logic/Logic_Test_Fly.h"
#include "support/FakeHost.h"
#include "support/TestScene.h"

/// The jet of the tests: 35 control nodes "part_0" … "part_34", "weigou001" at position 20 and the emitters at 33
/// and 34. Part i is at (i, 0, 0), open at hpr (i, 10, 0) and closed at (0, 0, i), and turns about Z. Its gears are
/// turned against it in heading, pitch and roll.
struct TestJet {
    int entries = 35;
    std::vector<int> missing;                           ///< positions whose node is not in the model
    std::string body = R"({ "kind": "dynamic", "mass": 20000, "inertia": [100000, 50000, 125000], "shapes": [
        { "name": "body_box", "type": "box", "size": [4, 16, 3] }, { "name": "f_wheel", "type": "sphere" },
        { "name": "l_wheel", "type": "sphere" } ] })";  ///< empty for none

    std::string prefab() const;
    std::string config() const;
    static constexpr const char* PREFAB = "data/jet/jet.prefab";
    static constexpr const char* CONFIG = "config/jet.cfg";
};

/// `TEST_F(LogicTest, …)`: no logic until `start`.
class LogicTest : public SceneTest {
protected:
    LogicTest();
    ~LogicTest() override;

    static constexpr dvec3 PLACE{112.35, 16.84, 50.0};  ///< of the start node, geodetic

    Logic_Test_Fly& logic() { return *m_logic; }
    /// Opened on the first call. Until then nobody listens at the ports of the configuration.
    FakeHost& host();
    void closeHost() { m_host.reset(); }
    PlaneJ15& jet() { return static_cast<PlaneJ15&>(*m_logic->getAircraft()); }

    void writeJet(const TestJet& jet = {});
    /// The configuration for this process's ports, with further keys, each with a comma before it.
    void writeConfig(const std::string& more = {});
    /// A node at PLACE with a turned attitude.
    Node* addStart(const jString& name = "start_deck");
    /// A flat square of `size` metres, level at a geodetic place; its top faces up.
    Object* addPlate(const jString& name, const dvec3& geo, double size = 200.0);
    /// The world's terrain: posts 0.001 degrees apart for 0.01 degrees round PLACE, `height` metres at PLACE, rising
    /// eastward by `slope` metres a degree.
    void addTerrain(double height, double slope = 0.0);
    /// Makes the logic and initialises it, with the start node "start_deck" and that carrier. What it printed is in
    /// `printed`.
    void start(const jString& carrier = {});
    void end();  ///< destroys the logic

    /// One frame as the host application runs it.
    void frame(double dt = 1.0 / 60.0) { frame(*m_logic, dt); }
    void frame(LogicBase& logic, double dt = 1.0 / 60.0);
    /// Hands records of these orders to the logic as one frame's.
    void apply(std::initializer_list<int> orders);
    /// Sends a datagram and runs frames until its records were applied.
    void deliver(const packets::Bytes& datagram, int records);

    struct Ports {
        int viewer, send, feedback;
    };
    /// Of the host and its viewer, on 127.0.0.1; the process's for as long as it runs.
    static const Ports& ports();

    std::string printed;

private:
    std::unique_ptr<FakeHost> m_host;
    Logic_Test_Fly* m_logic = nullptr;
};

/// Frames of 1/240, 1/60 and 0.1 s and a random mixture from the first to the last, each series `seconds` long.
std::vector<std::vector<double>> makeFrameSeries(double seconds);

/// What `call` prints to standard output.
template <class F>
std::string printedBy(F call) {
    testing::internal::CaptureStdout();
    call();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}
