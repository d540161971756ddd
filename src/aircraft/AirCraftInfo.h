// The content of an aircraft configuration file.
#pragma once

#include <engine/math/Vec.h>
#include <engine/text/Containers.h>

#include <cstdint>

/// Effect of a control value on a control node.
enum PART_TYPE : std::int16_t {
    PART_ROTATION = 0,
    PART_ONOFF = 1,
    PART_OFFSET = 2,
    PART_UV_OFFSET = 3,
    PART_DIGIT = 4
};

/// One control node. Angles are degrees, (heading, pitch, roll) about (Z, X, Y).
struct AirCraftPartInfo {
    std::int32_t id = 0;                ///< id in the file; nodes are addressed by their position in the list instead
    jString show_name;                  ///< label on the panel
    jString node_name;                  ///< name of the node in the aircraft's prefab
    vec3 open_rot;                      ///< pose on the ground with the gear down
    vec3 close_rot;                     ///< pose in flight with the gear up
    vec3 axis;                          ///< direction of motion; a control value is multiplied by it
    jString reserved;                   ///< empty
    float digit = 1.0f;                 ///< scale of control values
    std::int16_t type = PART_ROTATION;  ///< a PART_TYPE; other values are stored: no motion
};

/// A whole aircraft.
struct AirCraftInfo {
    jString path;                     ///< path of its prefab
    jString type;                     ///< selects the class: "PlaneJ15", "Helicopter" or "extra300s"
    jVector<AirCraftPartInfo> parts;  ///< in file order; positions count from 0
};
