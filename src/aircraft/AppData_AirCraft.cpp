// Reads the aircraft configuration; opened once when the logic creates its aircraft.
#include "src/aircraft/AppData_AirCraft.h"

#include <engine/text/Log.h>

namespace {

/// The vectors read last: a vector that an entry lacks keeps the value of the previous entry.
struct LastVectors {
    float open_rot[3] = {}, close_rot[3] = {}, axis[3] = {};
};

vec3 readVector(const Package& entry, const char* key, float (&last)[3]) {
    entry.getFloats(key, last, 3);
    return {last[0], last[1], last[2]};
}

dvec3 readTriple(const Package& package, const char* key) {
    float values[3] = {};
    package.getFloats(key, values, 3);
    return {values[0], values[1], values[2]};
}

AirCraftPartInfo readPart(const Package& entry, LastVectors& last) {
    AirCraftPartInfo part;
    part.id = entry.getInt("id");
    part.show_name = entry.getString("show_name");
    part.node_name = entry.getString("node_name");
    part.open_rot = readVector(entry, "open_rot", last.open_rot);
    part.close_rot = readVector(entry, "close_rot", last.close_rot);
    part.axis = readVector(entry, "axis", last.axis);
    part.type = static_cast<std::int16_t>(entry.getInt("type"));
    const float digit = entry.getFloat("digit");
    const Item* const item = entry.getItem("digit");
    if (item && (item->getType() == Item::INT || item->getType() == Item::DOUBLE)) part.digit = digit;
    return part;
}

}  // namespace

AppData_AirCraft& AppData_AirCraft::get() {
    static AppData_AirCraft data;
    return data;
}

bool AppData_AirCraft::open() {
    m_package.clear();
    if (mjl::open(m_config_path, m_package, false)) return true;
    jLog::warning("Open config file failed:%s, use default config", m_config_path.c_str());
    return false;
}

bool AppData_AirCraft::save() const {
    return mjl::save(m_config_path, m_package, false);
}

dvec3 AppData_AirCraft::getSrcPosOffset() const {
    return readTriple(m_package, "src_pos_offset");
}
dvec3 AppData_AirCraft::getSrcRotDeflection() const {
    return readTriple(m_package, "src_rot_deflection");
}

AirCraftInfo AppData_AirCraft::getAircraftInfo() const {
    AirCraftInfo info{getPath(), getType(), {}};
    const Package* const entries = m_package.getPackage("ctrl_nodes");
    if (!entries) return info;
    LastVectors last;
    for (const Item& item : *entries) {
        if (const Package* const entry = item.getPackage()) {
            info.parts.append(readPart(*entry, last));
        } else {
            jLog::warning("%s:%d: control node \"%s\" is no package", m_config_path.c_str(), item.getLine(),
                          item.getName().c_str());
        }
    }
    return info;
}
