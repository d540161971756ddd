// A helicopter written as text, over the logic's world.
#pragma once

#include <cstring>
#include <memory>
#include <string>

#include "LogicWorld.h"
#include "engine/input/InputRouter.h"
#include "engine/physics/Body.h"
#include "engine/scene/ObjectPrefab.h"
#include "src/aircraft/Helicopter.h"

/// `TEST_F(HelicopterTest, …)`: wheels 2 m below the origin, hub parts as a model has them, lamps, rotor wash.
class HelicopterTest : public LogicTest {
protected:
    static constexpr const char* BODY = R"("body": { "mass": 214, "inertia": [5500, 4000, 6000],
        "center_of_mass": [0, 0, 1.5], "friction": 0.9, "shapes": [
            { "name": "body_box", "type": "box", "size": [2.4, 12, 2.4] },
            { "type": "sphere", "size": [0.7, 0.7, 0.7], "position": [0, 4.6, -1.65] },
            { "type": "sphere", "size": [0.9, 0.9, 0.9], "position": [-2, -2.2, -1.55] },
            { "type": "sphere", "size": [0.9, 0.9, 0.9], "position": [2, -2.2, -1.55] } ] })";
    static constexpr const char* PARTS = R"("mesh": "lamp.gltf", "children": [
        { "name": "pivot", "position": [0, 0, 3], "hpr": [-90, 0, 180], "children": [ { "name": "wing", "children": [
            { "name": "wing_mesh", "hpr": [-90, 0, 180] }, { "name": "wing_plane", "hpr": [-90, 0, 180] } ] } ] },
        { "name": "tail", "position": [1, -9, 2], "children": [ { "name": "tail_mesh" }, { "name": "tail_plane" } ] },
        { "name": "wiper_left", "hpr": [5, 35, 0] }, { "name": "wiper_right", "hpr": [-5, 35, 0] },
        { "name": "front_proj" } ])";

    /// Two lenses of one material that glows: "anticollision_tail_light" and "lens".
    void writeLamps() {
        const float corners[] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
        std::string bytes(sizeof corners, '\0');
        std::memcpy(bytes.data(), corners, sizeof corners);
        write("data/heli/lamp.bin", bytes);
        write("data/heli/lamp.gltf", R"({ "asset": { "version": "2.0" }, "scenes": [ { "nodes": [0, 1] } ],
            "nodes": [ { "name": "anticollision_tail_light", "mesh": 0 }, { "name": "lens", "mesh": 0 } ],
            "meshes": [ { "primitives": [ { "attributes": { "POSITION": 0 }, "material": 0 } ] } ],
            "materials": [ { "emissiveFactor": [1, 0, 0] } ],
            "accessors": [ { "bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3" } ],
            "bufferViews": [ { "buffer": 0, "byteLength": 36 } ],
            "buffers": [ { "uri": "lamp.bin", "byteLength": 36 } ] })");
    }
    /// The prefab of a body (may be empty) and the keys of its node; a file of its own each time, since files are kept.
    void writePrefab(const std::string& body, const std::string& parts) {
        writeLamps();
        prefab = "data/heli/" + std::to_string(++m_files) + ".prefab";
        write(prefab, "{ \"node\": { " + body + (body.empty() || parts.empty() ? "" : ", ") + parts + " } }");
        write(TestJet::CONFIG, R"({ "path": ")" + prefab + R"(", "type": "Helicopter" })");
    }

    /// A helicopter without the logic.
    void make(const std::string& body = BODY, const std::string& parts = PARTS) {
        writePrefab(body, parts);
        heli = std::make_unique<Helicopter>(&world(), prefab);
    }
    ~HelicopterTest() override {
        end();
        heli.reset();
    }
    Node* part(const char* name) { return heli->getModel()->getNodeByName(name); }
    /// Holds these keys and no others from the next frame on.
    void hold(const std::string& held) {
        for (const char key : std::string("wsadqerf")) {
            engine().getInput()->keyEvent(key, held.find(key) != std::string::npos);
        }
    }
    /// One frame of the helicopter alone.
    void step(double dt = 1.0 / 60.0, bool flight = true) {
        engine().beginFrame(dt);
        heli->updateKeys(engine().getFrameTime());
        if (flight) heli->updateFlight(engine().getFrameTime());
        engine().step();
        engine().endFrame();
    }

    std::string prefab;
    std::unique_ptr<Helicopter> heli;

private:
    int m_files = 0;
};
