// A small aerobatic aircraft written as text: its prefab, with all kinds of control node, and its configuration.
#pragma once

#include <sstream>
#include <string>
#include <vector>

/// Control nodes "part_0" … "part_12", at rest at (position, 0, 0) with hpr (0, 0, 5): 0 to 6 turn, 7 moves, 8
/// and 9 are two meshes of one model with one material, 10 is a text, 11 a lamp, 12 moves too. Turning parts are open
/// at hpr (0, 10, 0) and closed at (0, 0, 20).
struct AerobaticModel {
    std::string start;  ///< keys for the placement, each with a comma behind it

    static constexpr const char* PREFAB = "data/plane/plane.prefab";
    static constexpr const char* MODEL = "data/plane/instruments.gltf";
    static constexpr int COUNT = 13;

    std::string config() const {
        static constexpr const char* KINDS[COUNT] = {
            R"("axis": [1, 0, 0], "type": 0)", R"("axis": [0, 1, 0], "type": 0)",  R"("axis": [0, 0, 1], "type": 0)",
            R"("axis": [1, 2, 3], "type": 0)", R"("axis": [1, 0, 0], "type": 0)",  R"("axis": [-2, 0, 0], "type": 0)",
            R"("axis": [0, 1, 0], "type": 0)", R"("axis": [1, -2, 0], "type": 2)", R"("axis": [0, 0.5, 2], "type": 3)",
            R"("axis": [1, 0, 0], "type": 3)", R"("axis": [0, 0, 1], "type": 4)",  R"("axis": [0, 0, 1], "type": 1)",
            R"("axis": [0, 0, 3], "type": 2)"};
        std::ostringstream text;
        text << "{ " << start << R"("path": ")" << PREFAB << R"(", "type": "extra300s", "ctrl_nodes": {)";
        for (int i = 0; i < COUNT; ++i) {
            text << (i ? ", \"" : " \"") << i << R"(": { "id": )" << 100 - i << R"(, "node_name": "part_)" << i
                 << R"(", "open_rot": [0, 10, 0], "close_rot": [0, 0, 20], )" << KINDS[i]
                 << (i == 7 || i == 8 ? R"(, "digit": 0.5 })" : " }");
        }
        text << " } }";
        return text.str();
    }

    std::string prefab() const {
        std::ostringstream text;
        text << R"({ "node": { "body": { "kind": "dynamic", "mass": 700, "shapes": [
            { "name": "body_box", "type": "box", "size": [1, 5, 1] }, { "name": "l_wheel", "type": "sphere" } ] },
            "mesh": "instruments.gltf", "children": [ { "name": "normal" }, { "name": "destroyed", "enabled": false },
            { "name": "L_wheel_pos" }, { "name": "fire", "enabled": false },
            { "name": "fire_spe", "type": "particles", "particles": { "emitting": false } },
            { "name": "cam_first_player", "position": [0, -1, 0.8], "hpr": [0, 90, 0] })";
        for (int i = 0; i < COUNT; ++i) {
            const std::string name = "part_" + std::to_string(i);
            if (i == 8 || i == 9) continue;
            text << R"(, { "name": ")" << name << R"(", "position": [)" << i << R"(, 0, 0], "hpr": [0, 0, 5])"
                 << (i == 10 ? R"(, "type": "text", "text": { "text": "-" } })" : " }");
        }
        text << " ] } }";
        return text.str();
    }

    /// One triangle, (0 0 0), (1 0 0), (0 1 0), in a node for each name.
    static std::string instruments(const std::vector<std::string>& names = {"part_8", "part_9"}) {
        std::string scene, nodes;
        for (std::size_t i = 0; i < names.size(); ++i) {
            const std::string comma = i ? ", " : "";
            scene += comma + std::to_string(i);
            nodes += comma + R"({ "mesh": 0, "name": ")" + names[i] + "\" }";
        }
        return R"({ "asset": { "version": "2.0" }, "scene": 0, "scenes": [ { "nodes": [)" + scene + R"(] } ],
            "nodes": [)" +
               nodes + R"(],
            "materials": [ { "name": "dials" } ],
            "meshes": [ { "primitives": [ { "attributes": { "POSITION": 0 }, "material": 0 } ] } ],
            "accessors": [ { "bufferView": 0, "componentType": 5126, "count": 3, "type": "VEC3",
                             "min": [0, 0, 0], "max": [1, 1, 0] } ],
            "bufferViews": [ { "buffer": 0, "byteLength": 36 } ],
            "buffers": [ { "byteLength": 36, "uri":
                "data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA" } ] })";
    }
};
